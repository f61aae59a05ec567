// ATTACH and DETACH on a 2.x file: refused in 2.8's words where 2.8 refuses,
// with a clear message for another 2.x file, and never a file changed or
// made.
#include "TempDir.h"
#include "TestFiles.h"

#include <sqlite.h>
#include <sqlite3.h>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

std::string ErrorOf(sqlite* db, const std::string& sql)
{
    char* error = nullptr;
    const int rc = sqlite_exec(db, sql.c_str(), nullptr, nullptr, &error);
    std::string text = error ? error : "";
    sqlite_freemem(error);
    return rc == SQLITE_OK ? "(no error)" : text;
}

bool Exists(const std::string& path)
{
    struct stat entry;
    return stat(path.c_str(), &entry) == 0;
}

} // namespace

TEST(Sqlite2Attach, IsRefusedAndLeavesEveryFileAsItWas)
{
    TempDir dir;
    const std::string mainPath = dir.File("main.db");
    const std::string other2 = CopyOfFixture(dir, "person");
    const std::string other3 = dir.File("three.db");
    sqlite3* three = nullptr;
    ASSERT_EQ(sqlite3_open(other3.c_str(), &three), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(three, "CREATE TABLE q(a); INSERT INTO q VALUES(1)", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(three);
    const std::string person = ReadWholeFile(other2), q = ReadWholeFile(other3);

    sqlite* db = sqlite_open(mainPath.c_str(), 0, nullptr);
    ASSERT_NE(db, nullptr);
    ASSERT_EQ(ErrorOf(db, "CREATE TABLE t(a); INSERT INTO t VALUES(1)"), "(no error)");
    const std::string before = ReadWholeFile(mainPath);

    EXPECT_EQ(ErrorOf(db, "ATTACH '" + other3 + "' AS c"), "file is encrypted or is not a database");
    EXPECT_EQ(ErrorOf(db, "ATTACH DATABASE '" + dir.File("missing.db") + "' AS x"), "cannot attach empty database: x");
    EXPECT_EQ(ErrorOf(db, "ATTACH '" + other2 + "' AS main"), "database main is already in use");
    EXPECT_EQ(ErrorOf(db, "ATTACH '" + other2 + "' AS aux"),
              "cannot attach " + other2 + ": attaching another 2.x database is not supported");
    EXPECT_EQ(ErrorOf(db, "ATTACH '" + other2 + "'"), "near \"'" + other2 + "'\": syntax error");
    EXPECT_EQ(ErrorOf(db, "ATTACH '" + other2 + "' AS"), "near \"AS\": syntax error");
    EXPECT_EQ(ErrorOf(db, "DETACH DATABASE aux"), "no such database: aux");
    EXPECT_EQ(ErrorOf(db, "DETACH"), "near \"DETACH\": syntax error");

    // The connection goes on working; nothing was made or changed.
    EXPECT_EQ(ErrorOf(db, "INSERT INTO t VALUES(2)"), "(no error)");
    sqlite_close(db);
    EXPECT_FALSE(Exists(dir.File("missing.db")));
    EXPECT_EQ(ReadWholeFile(other2), person);
    EXPECT_EQ(ReadWholeFile(other3), q);
    EXPECT_NE(ReadWholeFile(mainPath), before);
}
