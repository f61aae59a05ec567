// A writer killed at any point of a write-back leaves a file that, once its
// journal is rolled back, holds exactly the old or the new state.
#include "FileChangeSteps.h"
#include "Sqlite2Checker.h"
#include "Sqlite2Dump.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string DumpOf(const std::string& path)
{
    sqlite* db = sqlite_open(path.c_str(), 0, nullptr);
    if (!db)
        return "(cannot open)";
    std::string dump = Dump(db);
    sqlite_close(db);
    return dump;
}

long writesLeft = -1;

// Ends the process as a power cut would, once the writes allowed are spent.
void StopAfterWrites()
{
    if (writesLeft >= 0 && writesLeft-- == 0)
        _exit(99);
}

// Runs the change in a child that stops dead after the given number of writes.
// Returns true when the child finished the change.
bool RunChild(const std::string& path, const std::string& sql, long writes)
{
    pid_t child = fork();
    if (child == 0) {
        writesLeft = writes;
        file_change_steps::SetObserver(StopAfterWrites);
        sqlite* db = sqlite_open(path.c_str(), 0, nullptr);
        int rc = db ? sqlite_exec(db, sql.c_str(), nullptr, nullptr, nullptr) : -1;
        _exit(rc == SQLITE_OK ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

struct Change {
    const char* fixture;
    const char* sql;
};

class CrashDuringWrite : public ::testing::TestWithParam<Change> {};

} // namespace

TEST_P(CrashDuringWrite, LeavesTheOldOrTheNewState)
{
    const Change change = GetParam();
    TempDir dir;
    const std::string start = ReadWholeFile(FixturePath(std::string(change.fixture) + ".db"));
    const std::string path = dir.File("crash.db");

    std::ofstream(path, std::ios::binary) << start;
    const std::string oldDump = DumpOf(path);
    ASSERT_TRUE(RunChild(path, change.sql, -1));
    const std::string newDump = DumpOf(path);
    ASSERT_NE(oldDump, newDump);

    int crashes = 0;
    for (long writes = 0; writes < 100000; writes += writes < 40 ? 1 : 17) {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << start;
        unlink((path + "-journal").c_str());
        bool finished = RunChild(path, change.sql, writes);
        std::string dump = DumpOf(path); // rolls back a journal the child left
        EXPECT_TRUE(dump == oldDump || dump == newDump) << "after " << writes << " writes";
        if (!finished) {
            EXPECT_EQ(dump, oldDump) << "an unfinished write must not show, after " << writes << " writes";
        }
        for (const std::string& problem : CheckSqlite2File(path))
            ADD_FAILURE() << "after " << writes << " writes: " << problem;
        if (finished)
            break;
        ++crashes;
    }
    EXPECT_GT(crashes, 3);
}

INSTANTIATE_TEST_SUITE_P(Changes, CrashDuringWrite,
                         ::testing::Values(Change{"person", "UPDATE person SET name = 'Renamed' WHERE id <= 5"},
                                           Change{"keys", "DELETE FROM keys WHERE id > 3"},
                                           Change{"overflow", "DELETE FROM blobs WHERE rowid % 2 = 0"}));
