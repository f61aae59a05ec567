// Damaged files: whatever bytes a page holds, cursors and changes answer with
// a status (corruption, mostly) and never read or write outside their pages.
#include "BtreeSupport.h"
#include "TempDir.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

using namespace sqlite2;

namespace {

// A few hundred steps of everything a cursor does; the statuses do not matter.
void Exercise(BTree& tree, uint32_t root, std::mt19937& random)
{
    Cursor cursor(tree, root);
    (void)cursor.First();
    for (int steps = 0; steps < 300 && cursor.Valid(); ++steps) {
        std::string_view key, data;
        (void)cursor.Payload(key, data);
        (void)cursor.Next();
    }
    (void)cursor.Last();
    for (int steps = 0; steps < 100 && cursor.Valid(); ++steps)
        (void)cursor.Previous();
    for (int i = 0; i < 30; ++i) {
        bool found = false;
        const std::string key = RowKey(int32_t(random() % 3000));
        (void)cursor.Seek(key, found);
        std::string text;
        (void)cursor.Key(text);
        (void)cursor.Data(text);
        if (random() % 2)
            (void)cursor.Insert(key, std::string(random() % 2000, 'i'));
        else if (cursor.Valid())
            (void)cursor.Delete();
    }
}

} // namespace

TEST(BtreeDamaged, RandomBytesInTreePagesAreSurvived)
{
    TempDir dir;
    const std::string clean = dir.File("clean.db");
    uint32_t root = 0;
    ASSERT_NO_FATAL_FAILURE(root = WriteTableT(clean, [](Cursor& cursor) {
        std::mt19937 random(2);
        for (int i = 0; i < 1500; ++i)
            ASSERT_TRUE(cursor.Insert(RowKey(i * 2), std::string(RandomLength(random, 5000), 'c')));
        for (int i = 0; i < 1500; i += 3)
            ASSERT_TRUE(DeleteEntry(cursor, RowKey(i * 2)));
    }));
    const std::string original = ReadWholeFile(clean);
    const size_t pages = original.size() / 1024;
    std::mt19937 random(31);
    for (int round = 0; round < 200; ++round) {
        std::string bytes = original;
        // Damage a few bytes of a few pages (page 1 stays readable).
        for (int hits = 0; hits < 1 + int(random() % 6); ++hits) {
            const size_t page = 1 + random() % (pages - 1);
            const size_t at = page * 1024 + (random() % 3 ? random() % 16 : random() % 1024);
            bytes[at] = char(random() % 3 ? random() : bytes[at] ^ (1 << (random() % 8)));
        }
        const std::string path = dir.File("damaged" + std::to_string(round) + ".db");
        WriteWholeFile(path, bytes);
        TestDb db(path);
        ASSERT_TRUE(db.pager.BeginWrite());
        Exercise(db.tree, root, random);
        (void)db.tree.DropTree(root);
        db.Rollback();
    }
}
