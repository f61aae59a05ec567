#include "Sqlite2Dump.h"
#include "TempDir.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <random>

namespace {

// Opens and reads everything; any answer is fine as long as nothing crashes.
void ReadEverything(const std::string& path)
{
    char* error = nullptr;
    sqlite* db = sqlite_open(path.c_str(), 0, &error);
    sqlite_freemem(error);
    if (!db)
        return;
    try {
        TableRows(db);
    } catch (const std::exception&) {
    }
    sqlite_close(db);
}

} // namespace

TEST(Sqlite2Robustness, RefusesFilesThatAreNoDatabase)
{
    TempDir dir;
    std::string path = dir.File("text.db");
    WriteWholeFile(path, std::string(3000, 'x'));
    char* error = nullptr;
    EXPECT_EQ(sqlite_open(path.c_str(), 0, &error), nullptr);
    ASSERT_NE(error, nullptr);
    EXPECT_STREQ(error, "file is encrypted or is not a database");
    sqlite_freemem(error);
    EXPECT_EQ(ReadWholeFile(path), std::string(3000, 'x'));
}

TEST(Sqlite2Robustness, NewNameBecomesAnEmptyDatabase)
{
    TempDir dir;
    std::string path = dir.File("new.db");
    sqlite* db = sqlite_open(path.c_str(), 0, nullptr);
    ASSERT_NE(db, nullptr);
    EXPECT_TRUE(Query(db, "SELECT name FROM sqlite_master").empty());
    sqlite_close(db);
    EXPECT_EQ(ReadWholeFile(path), "");
}

TEST(Sqlite2Robustness, TruncatedAndDamagedFilesNeverCrash)
{
    TempDir dir;
    std::mt19937 random(2026);
    for (const char* name : {"person", "overflow", "swapped_tree", "keys"}) {
        const std::string original = ReadWholeFile(FixturePath(std::string(name) + ".db"));
        for (size_t cut : {size_t(100), size_t(1024), size_t(1500), original.size() / 2}) {
            std::string path = dir.File("cut.db");
            WriteWholeFile(path, original.substr(0, cut));
            ReadEverything(path);
        }
        for (int round = 0; round < 60; ++round) {
            std::string damaged = original;
            for (int flips = 0; flips < 8; ++flips)
                damaged[random() % damaged.size()] = char(random());
            std::string path = dir.File("damaged.db");
            WriteWholeFile(path, damaged);
            ReadEverything(path);
        }
    }
}

TEST(Sqlite2Robustness, HotJournalIsRolledBack)
{
    TempDir dir;
    const std::string path = CopyOfFixture(dir, "person");
    const std::string original = ReadWholeFile(path);
    sqlite* db = sqlite_open(path.c_str(), 0, nullptr);
    ASSERT_NE(db, nullptr);
    ASSERT_EQ(sqlite_exec(db, "DELETE FROM person WHERE id > 5", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite_close(db);
    const std::string changed = ReadWholeFile(path);
    ASSERT_NE(changed, original);

    // A journal holding the original pages, as a writer that died would leave it.
    std::string journal("\xD9\xD5\x05\xF9\x20\xA1\x63\xD6", 8);
    auto be32 = [](uint32_t v) {
        return std::string{char(v >> 24), char(v >> 16), char(v >> 8), char(v)};
    };
    uint32_t pages = uint32_t(original.size() / 1024), seed = 77;
    journal += be32(pages) + be32(seed) + be32(pages);
    for (uint32_t page = 1; page <= pages; ++page)
        journal += be32(page) + original.substr((page - 1) * 1024, 1024) + be32(seed + page);
    WriteWholeFile(path + "-journal", journal);

    sqlite* reopened = sqlite_open(path.c_str(), 0, nullptr);
    ASSERT_NE(reopened, nullptr);
    EXPECT_EQ(Query(reopened, "SELECT count(*) FROM person")[0][0], "40");
    sqlite_close(reopened);
    EXPECT_EQ(ReadWholeFile(path), original);
    EXPECT_EQ(ReadWholeFile(path + "-journal"), "");
}
