// The packed reader must answer exactly as sqlite3_get_table does.
#include "sqlite/zt_packedtable.h"
#include "sqlite/zt_resultmemory.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

struct Answer {
    int rc = 0;
    int rows = 0;
    int columns = 0;
    std::vector<std::string> entries; // "<null>" for a null
    std::string message;
    bool operator==(const Answer&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Answer& a)
{
    out << "rc " << a.rc << " rows " << a.rows << " columns " << a.columns << " [";
    for (const std::string& e : a.entries)
        out << e << ",";
    return out << "] " << a.message;
}

template <class Get, class Free>
Answer Ask(sqlite3* db, const char* sql, Get get, Free release)
{
    Answer a;
    char** table = nullptr;
    char* message = nullptr;
    a.rc = get(db, sql, &table, &a.rows, &a.columns, &message);
    if (a.rc == SQLITE_OK) {
        // Names row plus the data rows, and for repeated name rows whatever
        // else the array holds: read as far as the reference's count says.
        for (int i = 0; i < (a.rows + 1) * a.columns; ++i)
            a.entries.push_back(table[i] ? table[i] : "<null>");
    }
    a.message = message ? message : "";
    sqlite3_free(message);
    release(table);
    return a;
}

TEST(PackedTable, AnswersAsGetTableDoes)
{
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(":memory:", &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, "CREATE TABLE t(a, b); INSERT INTO t VALUES(1, 'x'), (NULL, ''), (2.5, 'y')", nullptr,
                           nullptr, nullptr),
              SQLITE_OK);
    const char* queries[] = {
        "SELECT * FROM t",
        "SELECT a FROM t",
        "SELECT * FROM t WHERE 0",
        "SELECT 1, 2; SELECT 3, 4",
        "SELECT 1, 2; SELECT 3",
        "SELECT * FROM t WHERE 0; SELECT 3",
        "",
        "   ;  ; ",
        "CREATE TABLE u(x); INSERT INTO u VALUES(7); SELECT x AS renamed FROM u",
        "SELECT * FROM nowhere",
        "SELECT 1; SELEC 2",
        "PRAGMA empty_result_callbacks=ON; SELECT * FROM t WHERE 0",
        "SELECT * FROM t WHERE 0; SELECT 5, 6",
        "SELECT a, b FROM t WHERE 0; INSERT INTO u VALUES(8)",
        "PRAGMA empty_result_callbacks=OFF; SELECT count(*) FROM u",
        // Large enough for the result's memory to change hands on the way.
        "WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c WHERE x < 70000) "
        "SELECT x, printf('%040d', x), NULL FROM c",
    };
    for (const char* sql : queries) {
        Answer reference = Ask(db, sql, sqlite3_get_table, sqlite3_free_table);
        // Undo the statements' effects so that both readers see the same database.
        sqlite3_exec(db, "DROP TABLE IF EXISTS u", nullptr, nullptr, nullptr);
        Answer packed = Ask(db, sql, GetPackedTable, ZT_FreePackedTable);
        sqlite3_exec(db, "DROP TABLE IF EXISTS u", nullptr, nullptr, nullptr);
        EXPECT_EQ(packed, reference) << sql;
    }
    sqlite3_close(db);
}

TEST(ResultMemory, BlocksKeepTheirBytesAcrossEverySize)
{
    // From the C library's small blocks to mapped ones, growing and shrinking.
    std::vector<size_t> sizes = {100, 5000, 900000, 3 << 20, 9 << 20, 40 << 20, 2 << 20, 300};
    void* block = nullptr;
    size_t filled = 0;
    for (size_t size : sizes) {
        void* resized = ZT_ResizeResultBlock(block, size);
        ASSERT_NE(resized, nullptr) << size;
        block = resized;
        auto* bytes = static_cast<unsigned char*>(block);
        const size_t kept = std::min(filled, size);
        for (size_t i = 0; i < kept; i += 4093)
            ASSERT_EQ(bytes[i], static_cast<unsigned char>(i % 251)) << "size " << size << " byte " << i;
        for (size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<unsigned char>(i % 251);
        filled = size;
    }
    ZT_FreeResultBlock(block);
    ZT_FreeResultBlock(nullptr);
}

} // namespace
