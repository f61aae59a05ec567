#include "Sqlite2Checker.h"
#include "Sqlite2Dump.h"
#include "TempDir.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

namespace {

std::string ScenarioFile(const std::string& name, const std::string& suffix)
{
    return FixturePath("scenarios/" + name + suffix);
}

std::string Trimmed(std::string text)
{
    while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
        text.pop_back();
    return text;
}

class Scenarios : public ::testing::TestWithParam<std::string> {};

} // namespace

TEST_P(Scenarios, ProduceTheExpectedDump)
{
    const std::string name = GetParam();
    TempDir dir;
    std::string path = dir.File("scenario.db");
    std::string start = Trimmed(ReadWholeFile(ScenarioFile(name, ".start")));
    if (start != "new")
        CopyFile(FixturePath(start), path);
    const std::string before = ReadWholeFile(path);

    sqlite* db = sqlite_open(path.c_str(), 0, nullptr);
    ASSERT_NE(db, nullptr);
    char* error = nullptr;
    sqlite_exec(db, ReadWholeFile(ScenarioFile(name, ".sql")).c_str(), nullptr, nullptr, &error);
    sqlite_freemem(error);
    sqlite_close(db);

    sqlite* reopened = sqlite_open(path.c_str(), 0, nullptr);
    ASSERT_NE(reopened, nullptr);
    EXPECT_EQ(Dump(reopened), ReadWholeFile(ScenarioFile(name, ".dump")));
    sqlite_close(reopened);
    const std::string after = ReadWholeFile(path);
    if (before.size() >= 52) {
        EXPECT_EQ(after.substr(48, 4), before.substr(48, 4)) << "the byte order is kept";
    }
    EXPECT_EQ(after.size() % 1024, 0u);
    for (const std::string& problem : CheckSqlite2File(path))
        ADD_FAILURE() << problem;
}

INSTANTIATE_TEST_SUITE_P(WriteScenarios, Scenarios,
                         ::testing::Values("01-new-table", "02-insert-indexed", "03-update-indexed",
                                           "04-delete-across-pages", "05-drop-table", "06-create-index-existing",
                                           "07-transaction", "08-rollback", "09-grow-into-overflow",
                                           "10-shrink-from-overflow", "11-unique-violation",
                                           "12-new-table-in-freepages", "13-swapped-write",
                                           "14-numbers-as-written", "15-swapped-tree-write"));
