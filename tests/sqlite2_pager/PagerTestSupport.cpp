#include "PagerTestSupport.h"

#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pagertest {

long writesSeen = 0;
long writesBeforeExit = -1;

void CountingObserver()
{
    ++writesSeen;
    if (writesBeforeExit == 0)
        _exit(77);
    if (writesBeforeExit > 0)
        --writesBeforeExit;
}

bool Exists(const std::string& path)
{
    struct stat info;
    return lstat(path.c_str(), &info) == 0;
}

std::string PatternPage(uint32_t n, char version)
{
    std::string page(kPage, '\0');
    for (size_t i = 0; i < kPage; ++i)
        page[i] = char((n * 131 + i * 7 + uint8_t(version) * 29) & 0xFF);
    page[0] = version;
    memcpy(page.data() + 1, &n, 4);
    return page;
}

std::string PatternFile(uint32_t pages, char version)
{
    std::string file;
    for (uint32_t n = 1; n <= pages; ++n)
        file += PatternPage(n, version);
    return file;
}

std::string PageOf(const std::string& file, uint32_t n)
{
    return file.substr(size_t(n - 1) * kPage, kPage);
}

void SetPage(std::string& file, uint32_t n, const std::string& page)
{
    if (file.size() < size_t(n) * kPage)
        file.resize(size_t(n) * kPage);
    file.replace(size_t(n - 1) * kPage, kPage, page);
}

std::string Bytes(const sqlite2::PageHandle& page)
{
    return std::string(reinterpret_cast<const char*>(page->bytes), kPage);
}

void Fill(const sqlite2::PageHandle& page, const std::string& bytes)
{
    memcpy(page->bytes, bytes.data(), kPage);
}

bool WritePatternPage(sqlite2::Pager& pager, uint32_t n, char version)
{
    sqlite2::PageHandle page;
    if (!pager.Write(n, page))
        return false;
    Fill(page, PatternPage(n, version));
    return true;
}

bool WritePatternPages(sqlite2::Pager& pager, std::initializer_list<uint32_t> pages, char version)
{
    for (uint32_t n : pages)
        if (!WritePatternPage(pager, n, version))
            return false;
    return true;
}

bool WritePatternPagesUpTo(sqlite2::Pager& pager, uint32_t last, char version)
{
    for (uint32_t n = 1; n <= last; ++n)
        if (!WritePatternPage(pager, n, version))
            return false;
    return true;
}

bool AppendPatternPages(sqlite2::Pager& pager, int count, char version)
{
    for (int i = 0; i < count; ++i)
        if (!WritePatternPage(pager, pager.PageCount() + 1, version))
            return false;
    return true;
}

::testing::AssertionResult PagerFileTest::OpenPager(Locks locks)
{
    if (!pager.Open(path))
        return ::testing::AssertionFailure() << "cannot open " << path;
    if ((locks == Locks::kRead || locks == Locks::kWrite) && !pager.BeginRead())
        return ::testing::AssertionFailure() << "no read lock";
    if ((locks == Locks::kWrite || locks == Locks::kWriteFromUnlocked) && !pager.BeginWrite())
        return ::testing::AssertionFailure() << "no write lock";
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult PagerFileTest::OpenPager(const std::string& bytes, Locks locks)
{
    WriteWholeFile(path, bytes);
    return OpenPager(locks);
}

namespace {

void DropRoot()
{
    if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0))
        _exit(3);
}

std::string ReadAllFrom(int fd)
{
    std::string text;
    char buffer[256];
    ssize_t n;
    while ((n = read(fd, buffer, sizeof buffer)) > 0)
        text.append(buffer, size_t(n));
    return text;
}

std::string DescribeEnd(int status)
{
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
        return "";
    if (WIFEXITED(status))
        return "child exited with " + std::to_string(WEXITSTATUS(status));
    return "child died of signal " + std::to_string(WTERMSIG(status));
}

} // namespace

std::string InChild(const std::function<std::string()>& body, bool unprivileged)
{
    int fds[2];
    if (pipe(fds) != 0)
        return "no pipe";
    pid_t child = fork();
    if (child == 0) {
        close(fds[0]);
        if (unprivileged)
            DropRoot();
        std::string report = body();
        if (write(fds[1], report.data(), report.size()) < 0)
            _exit(2);
        _exit(0);
    }
    close(fds[1]);
    std::string report = ReadAllFrom(fds[0]);
    close(fds[0]);
    int status = 0;
    waitpid(child, &status, 0);
    std::string end = DescribeEnd(status);
    return end.empty() ? report : end + (report.empty() ? "" : ": " + report);
}

std::string LockSeenByOthers(const std::string& path)
{
    return InChild([&] {
        int fd = open(path.c_str(), O_RDONLY);
        if (fd < 0)
            return std::string("cannot open");
        struct flock probe {};
        probe.l_type = F_WRLCK;
        probe.l_whence = SEEK_SET;
        if (fcntl(fd, F_GETLK, &probe) != 0)
            return std::string("F_GETLK failed");
        close(fd);
        if (probe.l_type == F_UNLCK)
            return std::string("unlocked");
        std::string kind = probe.l_type == F_RDLCK ? "read" : "write";
        if (probe.l_start != 0 || probe.l_len != 0)
            kind += " from " + std::to_string(probe.l_start) + " length " + std::to_string(probe.l_len);
        return kind;
    });
}

OtherProcess::OtherProcess(const std::function<void(OtherProcess&)>& body)
{
    if (pipe(reportPipe) != 0 || pipe(goPipe) != 0)
        return;
    pid = fork();
    if (pid == 0) {
        close(reportPipe[0]);
        close(goPipe[1]);
        body(*this);
        _exit(0);
    }
    close(reportPipe[1]);
    close(goPipe[0]);
}

OtherProcess::~OtherProcess()
{
    Finish();
}

void OtherProcess::Pause(const std::string& report)
{
    std::string line = report + "\n";
    if (write(reportPipe[1], line.data(), line.size()) < 0)
        _exit(2);
    char go;
    while (read(goPipe[0], &go, 1) > 0) {
    }
}

std::string OtherProcess::WaitForPause()
{
    std::string report;
    char c;
    while (read(reportPipe[0], &c, 1) == 1) {
        if (c == '\n')
            return report;
        report += c;
    }
    return "the child ended before pausing" + (report.empty() ? "" : ": " + report);
}

std::string OtherProcess::Finish()
{
    if (pid <= 0)
        return pid == 0 ? "" : "no child";
    close(goPipe[1]);
    close(reportPipe[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    pid = 0;
    return DescribeEnd(status);
}

} // namespace pagertest
