// Page 1, meta values, the free list, whole trees, files of the other byte
// order and changes to the real fixture files.
#include "BtreeSupport.h"
#include "TempDir.h"
#include "TestFiles.h"
#include "index_key.h"

#include <gtest/gtest.h>

using namespace sqlite2;

namespace {

int PagesThatDiffer(const std::string& before, const std::string& after)
{
    int pages = 0;
    for (size_t at = 0; at < std::max(before.size(), after.size()); at += 1024)
        if (at >= before.size() || at >= after.size() || before.compare(at, 1024, after, at, 1024) != 0)
            ++pages;
    return pages;
}

// A table with one index on one column, changed row by row with its index
// kept in step, as the engine does.
struct IndexedTable {
    BTree& tree;
    uint32_t table;
    uint32_t index;
    size_t column;
    bool numeric;

    std::string IndexKey(const Row& row, int32_t rowid) const
    {
        return EncodeIndexKey({{&row[column], numeric}}, rowid);
    }

    Row Read(int32_t rowid)
    {
        Cursor cursor(tree, table);
        bool found = false;
        std::string data;
        Row row;
        EXPECT_TRUE(cursor.Seek(RowKey(rowid), found));
        EXPECT_TRUE(found);
        EXPECT_TRUE(cursor.Data(data));
        EXPECT_TRUE(DecodeRecord(data, row));
        return row;
    }

    void Delete(int32_t rowid)
    {
        Row old = Read(rowid);
        for (auto [root, key] : {std::pair{table, RowKey(rowid)}, std::pair{index, IndexKey(old, rowid)}}) {
            Cursor cursor(tree, root);
            bool found = false;
            ASSERT_TRUE(cursor.Seek(key, found));
            ASSERT_TRUE(found);
            ASSERT_TRUE(cursor.Delete());
        }
    }

    void Insert(int32_t rowid, const Row& row)
    {
        Cursor rows(tree, table), entries(tree, index);
        ASSERT_TRUE(rows.Insert(RowKey(rowid), EncodeRecord(row)));
        ASSERT_TRUE(entries.Insert(IndexKey(row, rowid), ""));
    }

    std::vector<int32_t> Rowids()
    {
        std::vector<int32_t> rowids;
        Cursor cursor(tree, table);
        EXPECT_TRUE(cursor.First());
        while (cursor.Valid()) {
            std::string key;
            EXPECT_TRUE(cursor.Key(key));
            rowids.push_back(DecodeRowidKey(key));
            EXPECT_TRUE(cursor.Next());
        }
        return rowids;
    }
};

using BtreeFileWrite = BtreeWriteTest;
using BtreeFileWithTable = BtreeNewTableTest;

} // namespace

TEST(BtreeFile, NewFileGetsPageOneAndAnEmptySchema)
{
    TempDir dir;
    const std::string path = dir.File("new.db");
    {
        TestDb db(path);
        EXPECT_TRUE(db.tree.IsEmpty());
        EXPECT_EQ(db.tree.Meta(60), 0u);
        db.Begin();
        EXPECT_FALSE(db.tree.IsEmpty());
        db.Commit();
    }
    const std::string bytes = ReadWholeFile(path);
    ASSERT_EQ(bytes.size(), 2048u);
    EXPECT_EQ(bytes.substr(0, 48), std::string(magicText, 48));
    EXPECT_EQ(bytes.substr(48, 4), std::string("\x28\x75\xe3\xda", 4)) << "native order";
    EXPECT_EQ(bytes.substr(1024, 12), std::string("\0\0\0\0\0\0\x08\0\xf8\x03\0\0", 12)) << "empty root";
    EXPECT_EQ(FileProblems(path), noProblems);
    TestDb again(path);
    EXPECT_FALSE(again.tree.IsEmpty());
    EXPECT_FALSE(again.tree.Order().bigEndian);
}

TEST(BtreeFile, OnePageFileKeepsPageTwoForTheSchema)
{
    TempDir dir;
    const std::string path = dir.File("short.db");
    std::string first(1024, '\0');
    first.replace(0, 48, magicText, 48);
    first.replace(48, 4, "\x28\x75\xe3\xda");
    WriteWholeFile(path, first);
    TestDb db(path);
    ASSERT_FALSE(db.tree.IsEmpty());
    db.Begin();
    EXPECT_GT(db.AddTable("t", "CREATE TABLE t(x)"), 2u);
    db.Commit();
    EXPECT_EQ(db.RootOf("t"), 3u);
    EXPECT_EQ(FileProblems(path), noProblems);
}

TEST(BtreeFile, ReadHeaderRefusesOtherFiles)
{
    TempDir dir;
    const std::string path = dir.File("other.db");
    WriteWholeFile(path, std::string(2048, 'x'));
    {
        Pager pager;
        ASSERT_TRUE(pager.Open(path));
        ASSERT_TRUE(pager.BeginRead());
        BTree tree(pager);
        EXPECT_EQ(tree.ReadHeader().Code(), kNotADatabase);
    }
    std::string bytes = ReadWholeFile(FixturePath("person.db"));
    bytes[64] = 5; // file format 5
    WriteWholeFile(path, bytes);
    Pager pager;
    ASSERT_TRUE(pager.Open(path));
    ASSERT_TRUE(pager.BeginRead());
    BTree tree(pager);
    Status status = tree.ReadHeader();
    EXPECT_EQ(status.Code(), kError);
    EXPECT_EQ(status.Message(), "unsupported file format");
}

TEST(BtreeFile, MetaValuesAreKept)
{
    TempDir dir;
    const std::string path = dir.File("meta.db");
    {
        TestDb db(path);
        db.Begin();
        ASSERT_TRUE(db.tree.SetMeta(68, uint32_t(-2000)));
        ASSERT_TRUE(db.tree.SetMeta(72, 3));
        EXPECT_FALSE(db.tree.SetMeta(52, 1)) << "the free list is the B-tree's own";
        uint32_t root = db.AddTable("t", "CREATE TABLE t(x)");
        Cursor cursor(db.tree, root);
        ASSERT_TRUE(InsertTextRows(cursor, 3000, [](int i) { return std::string(i % 700, 'm'); }));
        db.Commit();
    }
    TestDb db(path);
    EXPECT_EQ(db.tree.Meta(60), 1u);
    EXPECT_EQ(db.tree.Meta(64), 4u);
    EXPECT_EQ(int32_t(db.tree.Meta(68)), -2000);
    EXPECT_EQ(db.tree.Meta(72), 3u);
    EXPECT_EQ(FileProblems(path), noProblems);
}

TEST_F(BtreeFileWrite, DroppedTreeGoesToTheFreeListAndIsReused)
{
    const uint32_t keep = db.AddTable("keep", "CREATE TABLE keep(x)");
    const uint32_t drop = db.AddTable("gone", "CREATE TABLE gone(x)");
    std::mt19937 random(1);
    Cursor kept(db.tree, keep), dropped(db.tree, drop);
    for (int i = 0; i < 1500; ++i) {
        ASSERT_TRUE(kept.Insert(RowKey(i), TextRecord(std::string(random() % 400, 'k'))));
        ASSERT_TRUE(dropped.Insert(RowKey(i), TextRecord(std::string(random() % 3000, 'd'))));
    }
    db.Commit();
    const uint64_t size = FileSize(path);

    db.Begin();
    ASSERT_TRUE(db.tree.DropTree(drop));
    Cursor schema(db.tree, 2);
    ASSERT_TRUE(DeleteEntry(schema, RowKey(2)));
    db.Commit();
    EXPECT_EQ(FileProblems(path), noProblems);
    EXPECT_GT(db.tree.Meta(56), 600u) << "more than two trunk pages";

    db.Begin();
    uint32_t again = db.AddTable("again", "CREATE TABLE again(x)");
    Cursor refill(db.tree, again);
    ASSERT_TRUE(InsertTextRows(refill, 1500, [&](int) { return std::string(random() % 3000, 'a'); }));
    db.Commit();
    EXPECT_LE(FileSize(path), size + 20 * 1024);
    EXPECT_EQ(FileProblems(path), noProblems);
}

TEST(BtreeFile, BigEndianFileKeepsItsOrder)
{
    TempDir dir;
    const std::string path = CopyOfFixture(dir, "swapped_tree");
    TestDb db(path);
    ASSERT_TRUE(db.tree.Order().bigEndian);
    IndexedTable items{db.tree, db.RootOf("items"), db.RootOf("items_label"), 1, false};
    ASSERT_NE(items.table, 0u);
    db.Begin();
    std::mt19937 random(9);
    std::vector<int32_t> rowids = items.Rowids();
    for (size_t i = 0; i < rowids.size(); i += 2)
        ASSERT_NO_FATAL_FAILURE(items.Delete(rowids[i]));
    for (int32_t rowid = 2000; rowid < 2600; ++rowid) {
        Row row{Value(), Value("label-" + std::to_string(random() % 100000)), Value(std::to_string(rowid)),
                Value(std::string(random() % 4000, 'b'))};
        ASSERT_NO_FATAL_FAILURE(items.Insert(rowid, row));
    }
    db.Commit();
    EXPECT_EQ(FileProblems(path), noProblems);
    const std::string bytes = ReadWholeFile(path);
    EXPECT_EQ(bytes.substr(48, 4), std::string("\xda\xe3\x75\x28", 4));
    TestDb again(path);
    EXPECT_TRUE(again.tree.Order().bigEndian);
    EXPECT_EQ(IndexedTable({again.tree, items.table, items.index, 1, false}).Rowids().size(),
              rowids.size() / 2 + 600);
}

TEST(BtreeFile, FourLevelFixtureStaysSound)
{
    TempDir dir;
    const std::string path = CopyOfFixture(dir, "big");
    TestDb db(path);
    IndexedTable big{db.tree, db.RootOf("big"), db.RootOf("big_qty"), 2, true};
    ASSERT_NE(big.index, 0u);
    std::vector<int32_t> rowids = big.Rowids();
    ASSERT_EQ(rowids.size(), 20000u);
    std::mt19937 random(13);
    db.Begin();
    std::shuffle(rowids.begin(), rowids.end(), random);
    for (size_t i = 0; i < 7000; ++i)
        ASSERT_NO_FATAL_FAILURE(big.Delete(rowids[i]));
    for (int32_t rowid = 30000; rowid < 33000; ++rowid) {
        Row row{Value(), Value("C" + std::to_string(random() % 1000000)), Value(std::to_string(random() % 5000)),
                Value("1.5"), Value(std::string(random() % 300, 'n'))};
        ASSERT_NO_FATAL_FAILURE(big.Insert(rowid, row));
    }
    db.Commit();
    EXPECT_EQ(FileProblems(path), noProblems);
    EXPECT_EQ(big.Rowids().size(), 16000u);
}

TEST(BtreeFile, OneRowChangesOnlyAFewPages)
{
    TempDir dir;
    const std::string path = CopyOfFixture(dir, "big");
    TestDb db(path);
    IndexedTable big{db.tree, db.RootOf("big"), db.RootOf("big_qty"), 2, true};
    std::string before = ReadWholeFile(path);
    auto changed = [&] {
        db.Commit();
        std::string after = ReadWholeFile(path);
        int pages = PagesThatDiffer(before, after);
        before = after;
        return pages;
    };
    db.Begin();
    Row row = big.Read(12345);
    ASSERT_NO_FATAL_FAILURE(big.Delete(12345));
    row[2] = "77";
    ASSERT_NO_FATAL_FAILURE(big.Insert(12345, row));
    EXPECT_LE(changed(), 6) << "update";
    db.Begin();
    ASSERT_NO_FATAL_FAILURE(big.Insert(50000, row));
    EXPECT_LE(changed(), 8) << "insert";
    db.Begin();
    ASSERT_NO_FATAL_FAILURE(big.Delete(777));
    EXPECT_LE(changed(), 8) << "delete";
    EXPECT_EQ(FileProblems(path), noProblems);
}

TEST(BtreeFile, FixturesAcceptChanges)
{
    for (const char* name : {"decltypes", "freepages", "keys", "overflow", "person", "swapped", "texts", "types"}) {
        SCOPED_TRACE(name);
        TempDir dir;
        const std::string path = CopyOfFixture(dir, name);
        TestDb db(path);
        db.Begin();
        // A new table filled and half emptied again next to what is there.
        const uint32_t root = db.AddTable("extra", "CREATE TABLE extra(x)");
        Cursor cursor(db.tree, root);
        ASSERT_TRUE(InsertTextRows(cursor, 600, [](int i) { return std::string(i * 7 % 2500, 'e'); }));
        for (int i = 0; i < 600; i += 2)
            ASSERT_TRUE(DeleteEntry(cursor, RowKey(i)));
        db.Commit();
        EXPECT_EQ(FileProblems(path), noProblems);
    }
}

TEST(BtreeFile, CorruptTreeIsReportedNotFollowed)
{
    TempDir dir;
    const std::string path = dir.File("loop.db");
    uint32_t root = 0;
    ASSERT_NO_FATAL_FAILURE(root = WriteTableT(path, [](Cursor& cursor) {
        ASSERT_TRUE(InsertTextRows(cursor, 500, [](int) { return std::string(100, 'x'); }));
    }));
    std::string bytes = ReadWholeFile(path);
    // The root's right child pointing back at the root.
    ByteOrder{}.Put32(reinterpret_cast<uint8_t*>(bytes.data()) + (root - 1) * 1024, root);
    WriteWholeFile(path, bytes);
    TestDb db(path);
    Cursor cursor(db.tree, root);
    EXPECT_EQ(cursor.Last().Code(), kCorrupt);
    EXPECT_FALSE(cursor.Valid());
    db.Begin();
    EXPECT_EQ(cursor.Insert(RowKey(100000), "x").Code(), kCorrupt);
    EXPECT_EQ(db.tree.DropTree(root).Code(), kCorrupt);
    db.Rollback();
}
