// A writer killed after any number of its writes leaves a file that the next
// BeginRead turns back into exactly the old or the new content.
#include "FileChangeSteps.h"
#include "PagerTestSupport.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <functional>
#include <sys/wait.h>
#include <unistd.h>

using namespace pagertest;
using sqlite2::PageHandle;
using sqlite2::Pager;

namespace {

using Change = std::function<bool(Pager&)>;

// The file as it was before the commit, without a journal.
void Restore(const std::string& path, const std::string& content)
{
    WriteWholeFile(path, content);
    unlink((path + "-journal").c_str());
}

// Runs the change and its commit in a child that ends after `writes` writes
// (-1: never). True when the child committed.
bool CommitInChild(const std::string& path, const Change& change, long writes)
{
    pid_t child = fork();
    if (child == 0) {
        writesBeforeExit = writes;
        file_change_steps::SetObserver(CountingObserver);
        Pager pager;
        bool ok = pager.Open(path) && pager.BeginRead() && pager.BeginWrite() && change(pager) && pager.Commit();
        _exit(ok ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// What a reader gets after the crash: the file once BeginRead has run.
std::string Recover(const std::string& path)
{
    Pager pager;
    if (!pager.Open(path) || !pager.BeginRead())
        return "(cannot read)";
    return ReadWholeFile(path);
}

struct Scenario {
    const char* name;
    Change change;
};

class PagerCrash : public ::testing::TestWithParam<Scenario> {};

} // namespace

TEST_P(PagerCrash, EveryInterruptedCommitRollsBackToTheOldContent)
{
    const Scenario& scenario = GetParam();
    TempDir dir;
    const std::string path = dir.File("crash.db");
    const std::string old = ReadWholeFile(FixturePath("big.db"));
    Restore(path, old);
    ASSERT_TRUE(CommitInChild(path, scenario.change, -1));
    const std::string updated = ReadWholeFile(path);
    ASSERT_NE(updated, old);

    long writes = 0;
    for (;; ++writes) {
        ASSERT_LT(writes, 1000) << "the commit never finishes";
        Restore(path, old);
        bool committed = CommitInChild(path, scenario.change, writes);
        std::string recovered = Recover(path);
        EXPECT_FALSE(Exists(path + "-journal")) << "after " << writes << " writes";
        if (committed) {
            EXPECT_EQ(recovered, updated) << "after " << writes << " writes";
            break;
        }
        // Until the journal is gone the commit has not happened.
        EXPECT_TRUE(recovered == old) << "after " << writes << " writes the file is neither old nor new";
    }
    EXPECT_GT(writes, 8) << "the commit should take several writes";
}

TEST_P(PagerCrash, AnInterruptedRollbackIsFinishedByTheNextReader)
{
    const Scenario& scenario = GetParam();
    TempDir dir;
    const std::string path = dir.File("crash.db");
    const std::string old = ReadWholeFile(FixturePath("big.db"));

    // A journal left just before the commit point: every page written.
    long lastWrite = 0;
    for (;; ++lastWrite) {
        ASSERT_LT(lastWrite, 1000);
        Restore(path, old);
        if (CommitInChild(path, scenario.change, lastWrite + 1))
            break;
    }
    Restore(path, old);
    ASSERT_FALSE(CommitInChild(path, scenario.change, lastWrite));
    ASSERT_TRUE(Exists(path + "-journal"));
    const std::string crashedFile = ReadWholeFile(path);
    const std::string crashedJournal = ReadWholeFile(path + "-journal");

    for (long writes = 0; writes < 200; ++writes) {
        WriteWholeFile(path, crashedFile);
        WriteWholeFile(path + "-journal", crashedJournal);
        pid_t child = fork();
        if (child == 0) {
            writesBeforeExit = writes;
            file_change_steps::SetObserver(CountingObserver);
            Pager pager;
            _exit(pager.Open(path) && pager.BeginRead() ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(Recover(path), old) << "rollback stopped after " << writes << " writes";
        if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
            return;
    }
    ADD_FAILURE() << "the rollback never finished";
}

INSTANTIATE_TEST_SUITE_P(
    Changes, PagerCrash,
    ::testing::Values(Scenario{"ChangeAndGrow",
                               [](Pager& pager) {
                                   return WritePatternPages(pager, {1u, 2u, 700u, pager.PageCount()}, 'n') &&
                                          AppendPatternPages(pager, 12, 'n');
                               }},
                      Scenario{"ChangeAndShrink",
                               [](Pager& pager) {
                                   return WritePatternPages(pager, {1u, 3u, 40u}, 'n') &&
                                          pager.Truncate(pager.PageCount() - 45);
                               }}),
    [](const ::testing::TestParamInfo<Scenario>& info) { return std::string(info.param.name); });
