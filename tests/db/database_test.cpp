#include "MessageCapture.h"
#include "TempDir.h"
#include "sqlite/zt_sqlite3database.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

class Database : public ::testing::Test {
protected:
    void SetUp() override
    {
        database.reset(new ZT_SQLite3Database(dir.File("t.db").c_str()));
        ASSERT_TRUE(database->IsOpen());
        ASSERT_TRUE(database->ExecuteFormat("CREATE TABLE t(a, b); INSERT INTO t VALUES(1, NULL);"
                                            "INSERT INTO t VALUES('two', '');"));
    }
    TempDir dir;
    MessageCapture reports;
    std::unique_ptr<ZT_SQLite3Database> database;
};

} // namespace

TEST_F(Database, TableCellsAndBounds)
{
    ZT_SQLiteTable table;
    ASSERT_EQ(database->QueryTable(table, "SELECT a, b FROM t ORDER BY rowid"), 1);
    EXPECT_EQ(table.GetColumnCount(), 2);
    EXPECT_EQ(table.GetRowCount(), 2);
    EXPECT_STREQ(table.GetColumnName(1), "b");
    EXPECT_STREQ(table.GetCell(0, 0), "1");
    EXPECT_EQ(table.GetCell(1, 0), nullptr) << "SQL NULL";
    EXPECT_STREQ(table.GetCell(1, 1), "") << "empty text";
    EXPECT_STREQ(table.GetCell(2, 0), "two") << "column == count reads the next row's first cell";
    EXPECT_EQ(table.GetCell(2, 1), nullptr) << "but never past the array";
    EXPECT_EQ(table.GetCell(-1, 0), nullptr);
    EXPECT_EQ(table.GetCell(0, 2), nullptr);
    EXPECT_EQ(table.GetCell(0, -1), nullptr);
}

TEST_F(Database, ListsIgnoreTheColumnCount)
{
    ZT_SQLiteList list;
    ASSERT_EQ(database->QueryList(list, "SELECT a FROM t ORDER BY rowid"), 1);
    EXPECT_STREQ(list.GetValue(1), "two");
    EXPECT_EQ(list.GetValue(2), nullptr);
    ASSERT_EQ(database->QueryList(list, "SELECT a, b FROM t ORDER BY rowid"), 1);
    EXPECT_STREQ(list.GetValue(1), "1") << "entry 2 is the first value of row 0";
}

TEST_F(Database, RecordsReadTheFirstRow)
{
    ZT_SQLiteRecord record;
    ASSERT_EQ(database->QueryRecord(record, "SELECT a, b FROM t WHERE a = %d", 1), 1);
    EXPECT_STREQ(record.GetValue(0), "1");
    EXPECT_EQ(record.GetValue(1), nullptr);
    EXPECT_EQ(record.GetValue(2), nullptr);
    EXPECT_EQ(record.GetValue(-1), nullptr);
}

TEST_F(Database, EmptyAndFailedQueries)
{
    ZT_SQLiteTable table;
    ASSERT_EQ(database->QueryTable(table, "SELECT a FROM t WHERE 0"), 1);
    EXPECT_EQ(table.GetRowCount(), 0);
    EXPECT_EQ(table.GetCell(0, 0), nullptr);
    EXPECT_EQ(database->QueryTable(table, "SELECT nope FROM t"), 0);
    EXPECT_EQ(table.GetColumnCount(), 0) << "a failed query leaves the holder cleared";
    EXPECT_STREQ(database->GetError(), "no such column: nope");
    EXPECT_EQ(reports.Lines().back(), "SQLITE no such column: nope\n");
    EXPECT_FALSE(database->Execute("DROP TABLE nope"));
    EXPECT_EQ(reports.Lines().back(), "SQLite exec failed: no such table: nope\n");
}

TEST_F(Database, QueryValue)
{
    ZT_String value("unchanged");
    EXPECT_FALSE(database->QueryValue(value, "SELECT a FROM t WHERE 0"));
    EXPECT_STREQ(value, "unchanged");
    EXPECT_TRUE(database->QueryValue(value, "SELECT b FROM t WHERE a = %d", 1));
    EXPECT_STREQ(value, "");
    EXPECT_TRUE(database->QueryValue(value, "SELECT '%s' || '%%'", "x"));
    EXPECT_STREQ(value, "x%");
}

TEST_F(Database, TableExistsNeedsTheSchemaRow)
{
    EXPECT_TRUE(database->TableExists("t"));
    EXPECT_FALSE(database->TableExists("T")) << "the schema query itself compares the name exactly";
    EXPECT_FALSE(database->TableExists("u"));
    EXPECT_EQ(database->Version(), 3.0);
}

TEST_F(Database, LastInsertRowId)
{
    ASSERT_TRUE(database->ExecuteFormat("INSERT INTO t VALUES(%d, %s)", 3, "'c'"));
    EXPECT_EQ(database->LastInsertRowId(), 3);
}

TEST(DatabaseLifetime, ReleaseLeavesTheConnectionOpenCloseEndsIt)
{
    TempDir dir;
    std::string file = dir.File("lock.db");
    ZT_SQLiteDatabase* first = OpenDatabase(file.c_str());
    ASSERT_NE(first, nullptr);
    ASSERT_TRUE(first->ExecuteFormat("CREATE TABLE t(a); BEGIN EXCLUSIVE; INSERT INTO t VALUES(1)"));
    ReleaseDatabase(first); // the exclusive lock is still held
    ZT_SQLite3Database second(file.c_str());
    EXPECT_FALSE(second.Execute("INSERT INTO t VALUES(2)"));
    EXPECT_STREQ(second.GetError(), "database is locked");
}

TEST(DatabaseLifetime, GenerationsAndUnusableObjects)
{
    TempDir dir;
    ZT_SQLiteDatabase* other = CreateDatabase(dir.File("x.db").c_str(), 7);
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(other->Version(), 3.0);
    EXPECT_TRUE(other->WasCreated());
    other->Close();
    ReleaseDatabase(other);

    ZT_SQLite3Database broken((dir.Path() + "/missing/dir/x.db").c_str());
    EXPECT_FALSE(broken.IsOpen());
    ZT_SQLiteTable table;
    EXPECT_EQ(broken.QueryTable(table, "SELECT 1"), 0);
    EXPECT_FALSE(broken.Execute("SELECT 1"));
    EXPECT_NE(broken.GetError(), nullptr);
    ZT_String value;
    EXPECT_FALSE(broken.QueryValue(value, "SELECT 1"));
}
