// ATTACH of other 2.x files, against what real SQLite 2.8.17 answers for the
// same statements: the attached file's tables, views and triggers work, the
// main file's tables go first for unqualified names, one transaction spans
// both files, and what 2.8 refuses is refused in its words without a file
// being made or changed.
#include "Sqlite2Checker.h"
#include "Sqlite2Dump.h"
#include "TempDir.h"
#include "TestFiles.h"

#include <sqlite3.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace {

std::string ErrorOf(sqlite* db, const std::string& sql)
{
    char* error = nullptr;
    const int rc = sqlite_exec(db, sql.c_str(), nullptr, nullptr, &error);
    std::string text = error ? error : "";
    sqlite_freemem(error);
    return rc == SQLITE_OK ? "(no error)" : text;
}

using Rows = std::vector<std::vector<std::string>>;

// A main file with table t, and beside it a file to attach with a table of
// the same name, a table with a trigger, and a view.
class Sqlite2Attach : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (const std::string& path : {mainPath, otherPath}) {
            sqlite* db = sqlite_open(path.c_str(), 0, nullptr);
            ASSERT_NE(db, nullptr);
            const char* sql = path == mainPath ? "CREATE TABLE t(a, b); INSERT INTO t VALUES(1, 2)"
                                               : "CREATE TABLE t(k); INSERT INTO t VALUES('bt');"
                                                 "CREATE TABLE u(x INTEGER PRIMARY KEY, y); CREATE TABLE log(v);"
                                                 "CREATE TRIGGER tr AFTER INSERT ON u BEGIN"
                                                 " INSERT INTO log VALUES('ins ' || new.y); END;"
                                                 "CREATE VIEW vu AS SELECT y FROM u";
            ASSERT_EQ(ErrorOf(db, sql), "(no error)");
            sqlite_close(db);
        }
        db = sqlite_open(mainPath.c_str(), 0, nullptr);
        ASSERT_NE(db, nullptr);
    }
    void TearDown() override
    {
        sqlite_close(db);
        EXPECT_TRUE(CheckSqlite2File(mainPath).empty());
        EXPECT_TRUE(CheckSqlite2File(otherPath).empty());
    }

    TempDir dir;
    const std::string mainPath = dir.File("main.db");
    const std::string otherPath = dir.File("other.db");
    sqlite* db = nullptr;
};

} // namespace

TEST_F(Sqlite2Attach, TheOtherFilesTablesViewsAndTriggersWork)
{
    ASSERT_EQ(ErrorOf(db, "ATTACH DATABASE '" + otherPath + "' AS aux"), "(no error)");
    EXPECT_EQ(Query(db, "SELECT * FROM t"), (Rows{{"1", "2"}})) << "the main file's t goes first";
    EXPECT_EQ(Query(db, "SELECT * FROM aux.t"), (Rows{{"bt"}}));
    EXPECT_EQ(ErrorOf(db, "INSERT INTO u VALUES(1, 'one')"), "(no error)");
    EXPECT_EQ(ErrorOf(db, "BEGIN; INSERT INTO u VALUES(2, 'two'); INSERT INTO t VALUES(5, 6); ROLLBACK"),
              "(no error)");
    EXPECT_EQ(ErrorOf(db, "INSERT INTO aux.u(y) VALUES('three')"), "(no error)");
    EXPECT_EQ(Query(db, "SELECT * FROM log"), (Rows{{"ins one"}, {"ins three"}}));
    EXPECT_EQ(Query(db, "SELECT * FROM vu"), (Rows{{"one"}, {"three"}}));
    EXPECT_EQ(Query(db, "SELECT count(*) FROM t"), (Rows{{"1"}}));
    EXPECT_EQ(ErrorOf(db, "INSERT INTO u VALUES(1, 'dup')"), "PRIMARY KEY must be unique");
    EXPECT_EQ(Query(db, "SELECT u.y, t.a FROM u, t ORDER BY u.x"), (Rows{{"one", "1"}, {"three", "1"}}));
    EXPECT_EQ(Query(db, "SELECT name FROM aux.sqlite_master WHERE type = 'table'"), (Rows{{"t"}, {"u"}, {"log"}}));
    EXPECT_EQ(ErrorOf(db, "DETACH aux"), "(no error)");
    EXPECT_EQ(ErrorOf(db, "SELECT * FROM u"), "no such table: u");

    sqlite* other = sqlite_open(otherPath.c_str(), 0, nullptr);
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(Dump(other), "BEGIN TRANSACTION;\n"
                           "CREATE TABLE log(v);\n"
                           "INSERT INTO log VALUES('ins one');\n"
                           "INSERT INTO log VALUES('ins three');\n"
                           "CREATE TABLE t(k);\n"
                           "INSERT INTO t VALUES('bt');\n"
                           "CREATE TABLE u(x INTEGER PRIMARY KEY, y);\n"
                           "INSERT INTO u VALUES(1,'one');\n"
                           "INSERT INTO u VALUES(2,'three');\n"
                           "CREATE VIEW vu AS SELECT y FROM u;\n"
                           "CREATE TRIGGER tr AFTER INSERT ON u BEGIN INSERT INTO log VALUES('ins ' || new.y); END;\n"
                           "COMMIT;\n");
    sqlite_close(other);
}

TEST_F(Sqlite2Attach, RefusesWhat28RefusesAndNoFileIsMadeOrChanged)
{
    const std::string threePath = dir.File("three.db");
    sqlite3* three = nullptr;
    ASSERT_EQ(sqlite3_open(threePath.c_str(), &three), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(three, "CREATE TABLE q(a)", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(three);
    const std::string threeBytes = ReadWholeFile(threePath), otherBytes = ReadWholeFile(otherPath);

    EXPECT_EQ(ErrorOf(db, "ATTACH '" + threePath + "' AS c"), "file is encrypted or is not a database");
    EXPECT_EQ(ErrorOf(db, "ATTACH DATABASE '" + dir.File("missing.db") + "' AS x"), "cannot attach empty database: x");
    EXPECT_EQ(ErrorOf(db, "ATTACH '" + otherPath + "' AS main"), "database main is already in use");
    EXPECT_EQ(ErrorOf(db, "ATTACH '" + otherPath + "'"), "near \"'" + otherPath + "'\": syntax error");
    EXPECT_EQ(ErrorOf(db, "ATTACH '" + otherPath + "' AS"), "near \"AS\": syntax error");
    EXPECT_EQ(ErrorOf(db, "DETACH DATABASE aux"), "no such database: aux");
    EXPECT_EQ(ErrorOf(db, "DETACH"), "near \"DETACH\": syntax error");
    ASSERT_EQ(ErrorOf(db, "ATTACH '" + otherPath + "' AS aux"), "(no error)");
    EXPECT_EQ(ErrorOf(db, "ATTACH '" + otherPath + "' AS AUX"), "database AUX is already in use");
    // 2.8 would attach a file twice; two handles on one file in one process
    // would lose each other's locks, so this engine says no.
    EXPECT_EQ(ErrorOf(db, "ATTACH '" + otherPath + "' AS aux2"),
              "cannot attach " + otherPath + ": the file is already open in this connection");
    EXPECT_EQ(ErrorOf(db, "ATTACH '" + mainPath + "' AS self"),
              "cannot attach " + mainPath + ": the file is already open in this connection");

    EXPECT_FALSE(std::filesystem::exists(dir.File("missing.db")));
    EXPECT_EQ(ReadWholeFile(threePath), threeBytes);
    EXPECT_EQ(ReadWholeFile(otherPath), otherBytes);
}
