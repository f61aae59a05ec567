// Commits the disk refuses (no room, a file size limit) and files that may
// not be written: the file keeps its old content and the pager its old pages.
#include "PagerTestSupport.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace pagertest;
using sqlite2::PageHandle;
using sqlite2::Pager;

namespace {

// A commit the disk refuses, after which everything must be as before: the
// file, the pager's pages and count, no journal. "" when it was so.
std::string CheckRefusedCommit(Pager& pager, const std::string& path, const std::string& old,
                               sqlite2::StatusCode code, const std::string& message)
{
    sqlite2::Status status = pager.Commit();
    if (status)
        return "the commit succeeded";
    if (status.Code() != code || status.Message() != message)
        return "unexpected failure " + status.Message();
    if (!pager.IsReading() || pager.IsWriting())
        return "not back to reading";
    if (ReadWholeFile(path) != old)
        return "the file changed";
    if (Exists(path + "-journal"))
        return "the journal was left";
    if (pager.PageCount() != old.size() / kPage)
        return "the page count kept the changes";
    for (uint32_t n = 1; n <= pager.PageCount(); ++n) {
        PageHandle page;
        if (!pager.Read(n, page) || Bytes(page) != PageOf(old, n))
            return "page " + std::to_string(n) + " kept its change";
    }
    return "";
}

// Runs a commit in a child whose files may not grow past `limit` bytes.
std::string CommitWithFileLimit(const std::string& path, rlim_t limit, const std::function<bool(Pager&)>& change,
                                const std::string& old)
{
    return InChild([&]() -> std::string {
        signal(SIGXFSZ, SIG_IGN);
        Pager pager;
        if (!pager.Open(path) || !pager.BeginWrite() || !change(pager))
            return "cannot prepare the write";
        struct rlimit cap = {limit, limit};
        if (setrlimit(RLIMIT_FSIZE, &cap) != 0)
            return "cannot limit the file size";
        return CheckRefusedCommit(pager, path, old, sqlite2::kIoError, "disk I/O error");
    });
}

bool WriteText(const char* path, const std::string& text)
{
    int fd = open(path, O_WRONLY);
    bool ok = fd >= 0 && write(fd, text.data(), text.size()) == ssize_t(text.size());
    if (fd >= 0)
        close(fd);
    return ok;
}

// Runs a commit in a child that sees a file system of `size` bytes at the
// folder: "skip" when the system lets it mount none.
std::string CommitOnSmallDisk(const std::string& folder, const std::string& size, const std::string& old,
                              const std::function<bool(Pager&)>& change)
{
    return InChild([&]() -> std::string {
        if (unshare(CLONE_NEWNS) != 0) {
            // Without root: a user namespace of our own, mapped to ourselves.
            uid_t uid = geteuid();
            gid_t gid = getegid();
            if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0 || !WriteText("/proc/self/setgroups", "deny") ||
                !WriteText("/proc/self/uid_map", std::to_string(uid) + " " + std::to_string(uid) + " 1") ||
                !WriteText("/proc/self/gid_map", std::to_string(gid) + " " + std::to_string(gid) + " 1"))
                return "skip";
        }
        // Private, so that the small disk never shows outside this child.
        if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("rowkeeper-test", folder.c_str(), "tmpfs", 0, ("size=" + size).c_str()) != 0)
            return "skip";
        const std::string path = folder + "/full.db";
        WriteWholeFile(path, old);
        if (ReadWholeFile(path) != old)
            return "skip";
        Pager pager;
        if (!pager.Open(path) || !pager.BeginWrite() || !change(pager))
            return "cannot prepare the write";
        return CheckRefusedCommit(pager, path, old, sqlite2::kFull, "database is full");
    });
}

// A commit of the change to a file of `pages` pattern pages, on a disk of
// `size` bytes, must be refused as "database is full" with nothing changed.
void ExpectFullDiskRefusal(uint32_t pages, const std::string& size, const std::function<bool(Pager&)>& change)
{
    TempDir dir;
    std::string outcome = CommitOnSmallDisk(dir.Path(), size, PatternFile(pages, 'a'), change);
    if (outcome == "skip")
        GTEST_SKIP() << "no small file system can be mounted here";
    EXPECT_EQ(outcome, "");
}

} // namespace

TEST(PagerRefusedWrite, ACommitRefusedWhileJournallingLeavesTheFileUntouched)
{
    TempDir dir;
    const std::string path = dir.File("refused.db");
    const std::string old = PatternFile(20, 'a');
    WriteWholeFile(path, old);
    // The journal (20 records) is a little larger than the file: it cannot be
    // written whole, while every page of the file could.
    EXPECT_EQ(CommitWithFileLimit(path, old.size() + 100,
                                  [](Pager& pager) { return WritePatternPagesUpTo(pager, 20, 'b'); },
                                  old),
              "");
}

TEST(PagerRefusedWrite, ACommitRefusedWhileWritingTheFileIsRolledBack)
{
    TempDir dir;
    const std::string path = dir.File("refused.db");
    const std::string old = PatternFile(10, 'a');
    WriteWholeFile(path, old);
    EXPECT_EQ(CommitWithFileLimit(path, 30 * kPage,
                                  [](Pager& pager) {
                                      return WritePatternPages(pager, {2u, 9u}, 'b') && AppendPatternPages(pager, 40, 'b');
                                  },
                                  old),
              "");
}

TEST(PagerRefusedWrite, AReadOnlyFileCanBeReadButNotWritten)
{
    TempDir dir;
    const std::string path = dir.File("readonly.db");
    chmod(dir.Path().c_str(), 0777);
    WriteWholeFile(path, PatternFile(3, 'a'));
    chmod(path.c_str(), 0444);
    EXPECT_EQ(InChild(
                  [&]() -> std::string {
                      Pager pager;
                      if (!pager.Open(path))
                          return "cannot open";
                      if (!pager.IsReadOnly())
                          return "opened for writing";
                      PageHandle page;
                      if (!pager.BeginRead() || !pager.Read(3, page) || Bytes(page) != PatternPage(3, 'a'))
                          return "cannot read";
                      sqlite2::Status status = pager.BeginWrite();
                      if (status.Code() != sqlite2::kReadOnly)
                          return "BeginWrite gave " + std::to_string(status.Code());
                      if (status.Message() != "attempt to write a readonly database")
                          return "BeginWrite said " + status.Message();
                      return pager.IsReading() && !pager.IsWriting() ? "" : "lost the read";
                  },
                  true),
              "");
}

TEST(PagerRefusedWrite, AFullDiskWhileWritingTheFileIsDatabaseIsFull)
{
    ExpectFullDiskRefusal(20, "64k",
                          [](Pager& pager) { return AppendPatternPages(pager, 100, 'b') && WritePatternPage(pager, 3, 'b'); });
}

TEST(PagerRefusedWrite, AFullDiskWhileJournallingIsDatabaseIsFull)
{
    ExpectFullDiskRefusal(30, "48k", [](Pager& pager) { return WritePatternPagesUpTo(pager, 30, 'b'); });
}
