#include "TempDir.h"
#include "TestFiles.h"
#include "sqlite/zt_sqlite2database.h"

#include <gtest/gtest.h>

#include <filesystem>

TEST(Sqlite2Backend, OpenDatabasePicksTheSecondGeneration)
{
    TempDir dir;
    std::string path = CopyOfFixture(dir, "person");
    ZT_SQLiteDatabase* database = OpenDatabase(path.c_str());
    ASSERT_NE(database, nullptr);
    EXPECT_EQ(database->Version(), 2.0);
    database->Close();
    ReleaseDatabase(database);
}

TEST(Sqlite2Backend, HoldersFollowTheSameIndexRules)
{
    TempDir dir;
    ZT_SQLite2Database database(CopyOfFixture(dir, "person").c_str());
    ASSERT_TRUE(database.IsOpen());
    ZT_SQLiteTable table;
    ASSERT_EQ(database.QueryTable(table, "SELECT id, note FROM person WHERE id IN (%d, %d) ORDER BY id", 1, 2), 1);
    EXPECT_EQ(table.GetRowCount(), 2);
    EXPECT_STREQ(table.GetCell(0, 1), "2");
    EXPECT_EQ(table.GetCell(1, 0), nullptr) << "NULL";
    EXPECT_STREQ(table.GetCell(1, 1), "") << "empty text";
    EXPECT_STREQ(table.GetCell(2, 0), "2");
    EXPECT_EQ(table.GetCell(2, 1), nullptr);

    ZT_SQLiteList list;
    ASSERT_EQ(database.QueryList(list, "SELECT name FROM person WHERE id <= 2 ORDER BY id"), 1);
    EXPECT_STREQ(list.GetValue(1), "Quin1");
    EXPECT_EQ(list.GetValue(2), nullptr);

    ZT_SQLiteRecord record;
    ASSERT_EQ(database.QueryRecord(record, "SELECT name, weight FROM person WHERE id = 40"), 1);
    EXPECT_STREQ(record.GetValue(1), "56.0");
    EXPECT_EQ(record.GetValue(2), nullptr);

    ZT_String value;
    EXPECT_TRUE(database.QueryValue(value, "SELECT note FROM person WHERE id = 1"));
    EXPECT_STREQ(value, "");
    EXPECT_FALSE(database.QueryValue(value, "SELECT missing FROM person"));
    EXPECT_STREQ(database.GetError(), "no such column: missing");
}

TEST(Sqlite2Backend, WritesPersistAndLastInsertRowId)
{
    TempDir dir;
    std::string path = CopyOfFixture(dir, "person");
    {
        ZT_SQLite2Database database(path.c_str());
        ASSERT_TRUE(database.ExecuteFormat("INSERT INTO person(name) VALUES('%s')", "New"));
        EXPECT_EQ(database.LastInsertRowId(), 41);
        EXPECT_TRUE(database.TableExists("person"));
        EXPECT_FALSE(database.TableExists("nobody"));
    }
    ZT_SQLite2Database reopened(path.c_str());
    ZT_String name;
    EXPECT_TRUE(reopened.QueryValue(name, "SELECT name FROM person WHERE id = 41"));
    EXPECT_STREQ(name, "New");
}

namespace {

void PutBigEndian(std::string& bytes, size_t at, uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        bytes[at + size_t(i)] = char(value >> (24 - 8 * i));
}

// The journal a 2.8 writer leaves when it dies after spilling a page: one
// record with page 3's original content and the original page count.
std::string JournalRestoringPage3(const std::string& original)
{
    std::string journal("\xd9\xd5\x05\xf9\x20\xa1\x63\xd6", 8);
    journal.resize(20 + 1032);
    const uint32_t seed = 0x1234567;
    PutBigEndian(journal, 8, 1);
    PutBigEndian(journal, 12, seed);
    PutBigEndian(journal, 16, uint32_t(original.size() / 1024));
    PutBigEndian(journal, 20, 3);
    journal.replace(24, 1024, original.substr(2 * 1024, 1024));
    PutBigEndian(journal, 24 + 1024, seed + 3);
    return journal;
}

} // namespace

TEST(Sqlite2Backend, HotJournalSurvivesOpenDatabaseAndIsRolledBack)
{
    TempDir dir;
    const std::string path = CopyOfFixture(dir, "person");
    const std::string original = ReadWholeFile(path);
    WriteWholeFile(path + "-journal", JournalRestoringPage3(original));
    std::string torn = original;
    torn.replace(2 * 1024, 1024, std::string(1024, '\x55')); // a half-written page
    torn.append(3 * 1024, '\0');                              // and pages the dead writer added
    WriteWholeFile(path, torn);

    ZT_SQLiteDatabase* database = OpenDatabase(path.c_str());
    ASSERT_NE(database, nullptr);
    EXPECT_EQ(database->Version(), 2.0);
    ZT_String count;
    EXPECT_TRUE(database->QueryValue(count, "SELECT count(*) FROM person"));
    EXPECT_STREQ(count, "40");
    database->Close();
    ReleaseDatabase(database);
    EXPECT_EQ(ReadWholeFile(path), original);
    EXPECT_FALSE(std::filesystem::exists(path + "-journal")) << "the journal is gone once rolled back";
}
