#include "Sqlite2Dump.h"
#include "TempDir.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

namespace {

const std::vector<std::string> fixtures = {"big", "decltypes", "dropped", "empty", "freepages", "keys", "overflow",
                                           "person", "swapped", "swapped_tree", "texts", "types"};

// The schema rows as the file itself stores them (names of automatic
// indexes and root pages included).
std::string StoredSchemaRows(const std::string& path)
{
    sqlite* db = sqlite_open(path.c_str(), 0, nullptr);
    if (!db)
        return "error: cannot open";
    std::string text;
    for (const auto& row : Query(db, "SELECT type, name, tbl_name, rootpage, sql FROM sqlite_master ORDER BY rowid")) {
        for (size_t i = 0; i < row.size(); ++i)
            text += (i ? "|" : "") + row[i];
        text += "\n";
    }
    sqlite_close(db);
    return text;
}

class Fixtures : public ::testing::TestWithParam<std::string> {};

} // namespace

TEST_P(Fixtures, SchemaRowsMatchTheGoldenFile)
{
    EXPECT_EQ(StoredSchemaRows(FixturePath(GetParam() + ".db")), ReadWholeFile(FixturePath(GetParam() + ".schema.txt")));
}

TEST_P(Fixtures, TableRowsMatchTheGoldenFile)
{
    TempDir dir;
    std::string path = dir.File("copy.db");
    CopyFile(FixturePath(GetParam() + ".db"), path);
    char* error = nullptr;
    sqlite* db = sqlite_open(path.c_str(), 0, &error);
    ASSERT_NE(db, nullptr) << (error ? error : "");
    EXPECT_EQ(TableRows(db), ReadWholeFile(FixturePath(GetParam() + ".rows.txt")));
    sqlite_close(db);
    EXPECT_EQ(ReadWholeFile(path), ReadWholeFile(FixturePath(GetParam() + ".db"))) << "reading changes nothing";
}

TEST(FixtureSchema, OriginalStatementsAreVisible)
{
    TempDir dir;
    std::string path = dir.File("copy.db");
    CopyFile(FixturePath("person.db"), path);
    sqlite* db = sqlite_open(path.c_str(), 0, nullptr);
    ASSERT_NE(db, nullptr);
    auto rows = Query(db, "SELECT type, sql FROM sqlite_master WHERE name='person'");
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0][1], "CREATE TABLE person(id INTEGER PRIMARY KEY, name TEXT, born DATE, weight REAL, "
                          "active BOOLEAN, note)");
    // Values keep their stored spelling whatever the declared type.
    auto weight = Query(db, "SELECT weight, typeof(weight) FROM person WHERE id = 40");
    EXPECT_EQ(weight[0][0], "56.0");
    sqlite_close(db);
}

INSTANTIATE_TEST_SUITE_P(AllFixtures, Fixtures, ::testing::ValuesIn(fixtures));
