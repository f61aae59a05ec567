// Reads that run straight from the file's pages must answer exactly as the
// mirror does once it holds the rows.
#include "Sqlite2Dump.h"
#include "TempDir.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <fstream>

namespace {

using Rows = std::vector<std::vector<std::string>>;

sqlite* OpenOrFail(const std::string& path)
{
    char* error = nullptr;
    sqlite* db = sqlite_open(path.c_str(), 0, &error);
    EXPECT_NE(db, nullptr) << (error ? error : "");
    sqlite_freemem(error);
    return db;
}

// The answer with its error, so that failures are compared too.
Rows Answer(sqlite* db, const std::string& sql)
{
    try {
        return Query(db, sql);
    } catch (const std::exception& failure) {
        return {{"error", failure.what()}};
    }
}

std::vector<std::string> ReadQueries(sqlite* db)
{
    std::vector<std::string> queries;
    for (const auto& object : Query(db, "SELECT type, name FROM sqlite_master WHERE type IN ('table', 'view')")) {
        const std::string name = "\"" + object[1] + "\"";
        queries.push_back("SELECT * FROM " + name);
        if (object[0] == "view")
            continue;
        for (const char* shape : {"SELECT rowid, * FROM %s ORDER BY rowid", "SELECT count(*) FROM %s",
                                  "SELECT * FROM %s WHERE rowid = 5", "SELECT * FROM %s WHERE rowid = '7'",
                                  "SELECT * FROM %s WHERE rowid = 3.0", "SELECT * FROM %s WHERE rowid = 'x'",
                                  "SELECT max(rowid), min(rowid), count(*) FROM %s WHERE rowid > 2",
                                  "SELECT * FROM %s ORDER BY rowid DESC LIMIT 3",
                                  "SELECT * FROM %s WHERE rowid IN (1, 2, 99999)"}) {
            std::string sql = shape;
            sql.replace(sql.find("%s"), 2, name);
            queries.push_back(sql);
        }
    }
    queries.push_back("SELECT * FROM no_such_table");
    queries.push_back("SELECT 1, 'two'");
    return queries;
}

TEST(Sqlite2Reader, ReadsInsideATransactionAnswerAsOutside)
{
    for (const std::string name : {"person", "keys", "big", "overflow", "swapped", "swapped_tree", "types", "texts",
                                   "decltypes", "dropped", "freepages"}) {
        sqlite* lazy = OpenOrFail(FixturePath(name + ".db"));
        sqlite* full = OpenOrFail(FixturePath(name + ".db"));
        ASSERT_TRUE(lazy && full);
        // Inside a transaction the lock and the cached pages are kept between statements.
        ASSERT_EQ(sqlite_exec(full, "BEGIN", nullptr, nullptr, nullptr), SQLITE_OK);
        for (const std::string& sql : ReadQueries(lazy))
            EXPECT_EQ(Answer(lazy, sql), Answer(full, sql)) << name << ": " << sql;
        sqlite_exec(full, "ROLLBACK", nullptr, nullptr, nullptr);
        sqlite_close(lazy);
        sqlite_close(full);
    }
}

TEST(Sqlite2Reader, AnOpenReadOutlivesAWriteOfTheSameConnection)
{
    TempDir dir;
    const std::string path = CopyOfFixture(dir, "person");
    sqlite* db = OpenOrFail(path);
    ASSERT_NE(db, nullptr);
    const int before = std::stoi(Query(db, "SELECT count(*) FROM person")[0][0]);

    sqlite_vm* vm = nullptr;
    ASSERT_EQ(sqlite_compile(db, "SELECT id, name FROM person", nullptr, &vm, nullptr), SQLITE_OK);
    int columns = 0;
    const char** values = nullptr;
    const char** names = nullptr;
    ASSERT_EQ(sqlite_step(vm, &columns, &values, &names), SQLITE_ROW);
    ASSERT_EQ(sqlite_exec(db, "INSERT INTO person(name) VALUES('late')", nullptr, nullptr, nullptr), SQLITE_OK);
    int seen = 1;
    while (sqlite_step(vm, &columns, &values, &names) == SQLITE_ROW)
        ++seen;
    EXPECT_GE(seen, before) << "the open read goes on past the change";
    EXPECT_LE(seen, before + 1);
    EXPECT_EQ(sqlite_finalize(vm, nullptr), SQLITE_OK);
    EXPECT_EQ(Query(db, "SELECT count(*) FROM person")[0][0], std::to_string(before + 1));
    sqlite_close(db);
}

TEST(Sqlite2Reader, DamagedTablePagesAreReportedWhenRead)
{
    TempDir dir;
    const std::string path = CopyOfFixture(dir, "person");
    // person's root is page 3: its first cell offset now points outside the page.
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(2 * 1024 + 4);
    const char badOffset[2] = {'\xFF', '\x0F'};
    file.write(badOffset, 2);
    file.close();
    // Like 2.8, the file opens (its schema is sound) and the damaged table
    // is reported when a statement reaches it; other tables stay readable.
    sqlite* db = OpenOrFail(path);
    ASSERT_NE(db, nullptr);
    char* error = nullptr;
    EXPECT_EQ(sqlite_exec(db, "SELECT count(*) FROM person", nullptr, nullptr, &error), SQLITE_CORRUPT);
    ASSERT_NE(error, nullptr);
    EXPECT_STREQ(error, "database disk image is malformed");
    sqlite_freemem(error);
    EXPECT_EQ(Query(db, "SELECT count(*) FROM person_log")[0][0], "1");
    sqlite_close(db);
}

TEST(Sqlite2Reader, AStoredTextEndsAtItsFirstNul)
{
    // 2.8 stores C strings; a field that holds a NUL inside (another
    // writer's, or damage) reads, compares and is rewritten as its text up
    // to that NUL.
    TempDir dir;
    const std::string path = dir.File("nul.db");
    sqlite* db = OpenOrFail(path);
    ASSERT_NE(db, nullptr);
    ASSERT_EQ(sqlite_exec(db, "CREATE TABLE t(a, b); INSERT INTO t VALUES('abQQQcd', 1)", nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite_close(db);
    std::string bytes = ReadWholeFile(path);
    const size_t at = bytes.find("abQQQcd");
    ASSERT_NE(at, std::string::npos);
    bytes[at + 3] = '\0';
    WriteWholeFile(path, bytes);

    db = OpenOrFail(path);
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(Answer(db, "SELECT a, length(a), a || '!' FROM t"), (Rows{{"abQ", "3", "abQ!"}}));
    EXPECT_EQ(Answer(db, "SELECT b FROM t WHERE a = 'abQ'"), (Rows{{"1"}}));
    ASSERT_EQ(sqlite_exec(db, "UPDATE t SET b = 2", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_EQ(Answer(db, "SELECT a, b FROM t"), (Rows{{"abQ", "2"}}));
    EXPECT_EQ(Answer(db, "SELECT count(*) FROM t WHERE a = 'abQ'"), (Rows{{"1"}}));
    sqlite_close(db);
}

} // namespace

TEST(Sqlite2GetTable, RowsOfEveryStatementInOneTableOfOneWidth)
{
    sqlite* db = OpenOrFail(FixturePath("person.db"));
    ASSERT_NE(db, nullptr);
    char** table = nullptr;
    int rows = 0;
    int columns = 0;
    char* error = nullptr;
    ASSERT_EQ(sqlite_get_table(db, "SELECT 1 AS a, NULL AS b; SELECT 3, 'x'", &table, &rows, &columns, &error),
              SQLITE_OK);
    ASSERT_EQ(rows, 2);
    ASSERT_EQ(columns, 2);
    EXPECT_STREQ(table[0], "a");
    EXPECT_STREQ(table[2], "1");
    EXPECT_EQ(table[3], nullptr);
    EXPECT_STREQ(table[5], "x");
    sqlite_free_table(table);

    table = nullptr;
    EXPECT_EQ(sqlite_get_table(db, "SELECT 1, 2; SELECT 3", &table, &rows, &columns, &error), SQLITE_ERROR);
    EXPECT_EQ(table, nullptr);
    ASSERT_NE(error, nullptr);
    EXPECT_STREQ(error, "sqlite_get_table() called with two or more incompatible queries");
    sqlite_freemem(error);
    sqlite_close(db);
}
