#pragma once

// Helpers of the pager tests: files made of recognisable pages, and other
// processes (the pager's locks are per process, so a second user of a file
// must be a second process).
#include "TempDir.h"
#include "TestFiles.h"
#include "pager.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>

namespace pagertest {

constexpr size_t kPage = sqlite2::kPageSize;

bool Exists(const std::string& path);

// A page whose bytes tell its number and a version apart from every other.
std::string PatternPage(uint32_t n, char version);
// A file of the given number of pattern pages.
std::string PatternFile(uint32_t pages, char version);
// Page n (1-based) of a file's bytes.
std::string PageOf(const std::string& file, uint32_t n);
void SetPage(std::string& file, uint32_t n, const std::string& page);

std::string Bytes(const sqlite2::PageHandle& page);
// Page n of the pager (writing) set to PatternPage(n, version).
bool WritePatternPage(sqlite2::Pager& pager, uint32_t n, char version);
// The same for each of the pages, for pages 1..last, or for `count` pages
// appended one after the other; false at the first that fails.
bool WritePatternPages(sqlite2::Pager& pager, std::initializer_list<uint32_t> pages, char version);
bool WritePatternPagesUpTo(sqlite2::Pager& pager, uint32_t last, char version);
bool AppendPatternPages(sqlite2::Pager& pager, int count, char version);
void Fill(const sqlite2::PageHandle& page, const std::string& bytes);

// The locks a test's pager takes before the test goes on: none, the read
// lock, the read lock and then the write lock, or the write lock straight
// from unlocked.
enum class Locks { kNone, kRead, kWrite, kWriteFromUnlocked };

// A test with its own folder, a database file in it and a pager for that file.
class PagerFileTest : public ::testing::Test {
protected:
    // Opens the pager on the file and takes the locks.
    ::testing::AssertionResult OpenPager(Locks locks);
    // The same, once the file has been given these bytes.
    ::testing::AssertionResult OpenPager(const std::string& bytes, Locks locks);

    TempDir dir;
    const std::string path = dir.File("pages.db");
    sqlite2::Pager pager;
};

// Runs body in a child process and returns what it reports ("" when all was
// well), or why the child did not finish. With unprivileged, a child of root
// gives up root first, so that file permissions apply to it.
std::string InChild(const std::function<std::string()>& body, bool unprivileged = false);

// The lock another process sees on the whole file: "unlocked", "read" or
// "write" (with the range when it is not the whole file).
std::string LockSeenByOthers(const std::string& path);

// A child process that stops at a point of its work (holding a lock, say)
// until the test lets it go on.
class OtherProcess {
public:
    // body runs in the child; it calls Pause with its report ("" = fine) at
    // the point where the test should look.
    explicit OtherProcess(const std::function<void(OtherProcess&)>& body);
    ~OtherProcess();
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    // In the parent: waits for the child's Pause and returns its report.
    std::string WaitForPause();
    // In the parent: lets the child finish and returns "" or why it failed.
    std::string Finish();

    // In the child.
    void Pause(const std::string& report);

private:
    int pid = -1;
    int reportPipe[2] = {-1, -1};
    int goPipe[2] = {-1, -1};
};

// The write observer tests install counts here; crash tests end the process
// when it reaches zero.
extern long writesSeen;
extern long writesBeforeExit;
void CountingObserver();

} // namespace pagertest
