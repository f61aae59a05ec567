// The pager's locks as other processes see them, and what it does when
// another process holds one.
#include "FileChangeSteps.h"
#include "PagerTestSupport.h"

#include <gtest/gtest.h>

#include <climits>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

using namespace pagertest;
using sqlite2::PageHandle;
using sqlite2::Pager;

namespace {

class PagerLocking : public PagerFileTest {
protected:
    void SetUp() override { WriteWholeFile(path, PatternFile(6, 'a')); }
};

// How many descriptors of this process are open on the file.
std::string watchedPath;
int mostDescriptorsSeen = 0;

void CountDescriptors()
{
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (std::filesystem::read_symlink(entry.path(), error) == watchedPath)
            ++count;
    }
    mostDescriptorsSeen = std::max(mostDescriptorsSeen, count);
}

} // namespace

TEST_F(PagerLocking, LocksCoverTheWholeFileAndFollowTheState)
{
    ASSERT_TRUE(pager.Open(path));
    EXPECT_EQ(LockSeenByOthers(path), "unlocked") << "Open takes no lock";
    ASSERT_TRUE(pager.BeginRead());
    EXPECT_EQ(LockSeenByOthers(path), "read");
    ASSERT_TRUE(pager.BeginWrite());
    EXPECT_EQ(LockSeenByOthers(path), "write");
    PageHandle page;
    ASSERT_TRUE(pager.Write(2, page));
    Fill(page, PatternPage(2, 'b'));
    ASSERT_TRUE(pager.Commit());
    EXPECT_EQ(LockSeenByOthers(path), "read") << "a commit ends in the read lock";
    ASSERT_TRUE(pager.BeginWrite());
    pager.Rollback();
    EXPECT_EQ(LockSeenByOthers(path), "read") << "a rollback ends in the read lock";
    pager.EndRead();
    EXPECT_EQ(LockSeenByOthers(path), "unlocked");
}

TEST_F(PagerLocking, AReaderElsewhereMakesBeginWriteBusy)
{
    OtherProcess reader([&](OtherProcess& self) {
        Pager other;
        self.Pause(other.Open(path) && other.BeginRead() ? "" : "cannot read");
    });
    ASSERT_EQ(reader.WaitForPause(), "");

    ASSERT_TRUE(pager.Open(path));
    ASSERT_TRUE(pager.BeginRead()) << "readers share";
    sqlite2::Status status = pager.BeginWrite();
    EXPECT_EQ(status.Code(), sqlite2::kBusy);
    EXPECT_EQ(status.Message(), "database is locked");
    EXPECT_TRUE(pager.IsReading());
    EXPECT_FALSE(pager.IsWriting());
    pager.EndRead();
    EXPECT_EQ(pager.BeginWrite().Code(), sqlite2::kBusy) << "from unlocked, too";
    EXPECT_FALSE(pager.IsReading()) << "a refused BeginWrite from unlocked leaves no lock";

    EXPECT_EQ(reader.Finish(), "");
    EXPECT_TRUE(pager.BeginWrite());
}

TEST_F(PagerLocking, AWriterElsewhereMakesBeginReadBusyAndItsJournalIsLeftAlone)
{
    OtherProcess writer([&](OtherProcess& self) {
        Pager other;
        PageHandle page;
        bool ok = other.Open(path) && other.BeginRead() && other.BeginWrite() && other.Write(3, page);
        self.Pause(ok ? "" : "cannot write");
    });
    ASSERT_EQ(writer.WaitForPause(), "");
    // As if the writer were in the middle of its commit.
    const std::string journal = std::string("\xD9\xD5\x05\xF9\x20\xA1\x63\xD6", 8) + std::string(8, '\0') +
                                std::string("\0\0\0\2", 4);
    WriteWholeFile(path + "-journal", journal);
    const std::string before = ReadWholeFile(path);

    ASSERT_TRUE(pager.Open(path));
    sqlite2::Status status = pager.BeginRead();
    EXPECT_EQ(status.Code(), sqlite2::kBusy);
    EXPECT_EQ(status.Message(), "database is locked");
    EXPECT_FALSE(pager.IsReading());
    EXPECT_EQ(ReadWholeFile(path), before);
    EXPECT_EQ(ReadWholeFile(path + "-journal"), journal);
    EXPECT_EQ(writer.Finish(), "");
}

TEST_F(PagerLocking, AHotJournalWithAnotherReaderPresentIsBusyAndUntouched)
{
    const std::string journal = std::string("\xD9\xD5\x05\xF9\x20\xA1\x63\xD6", 8) + std::string(8, '\0') +
                                std::string("\0\0\0\2", 4);
    WriteWholeFile(path + "-journal", journal);
    const std::string before = ReadWholeFile(path);
    // A process that locked the file before the journal appeared (as a real
    // SQLite 2 reader of an older moment would).
    OtherProcess reader([&](OtherProcess& self) {
        int fd = open(path.c_str(), O_RDONLY);
        struct flock lock {};
        lock.l_type = F_RDLCK;
        lock.l_whence = SEEK_SET;
        self.Pause(fd >= 0 && fcntl(fd, F_SETLK, &lock) == 0 ? "" : "cannot lock");
    });
    ASSERT_EQ(reader.WaitForPause(), "");

    ASSERT_TRUE(pager.Open(path));
    EXPECT_EQ(pager.BeginRead().Code(), sqlite2::kBusy);
    EXPECT_FALSE(pager.IsReading());
    EXPECT_EQ(LockSeenByOthers(path), "read") << "only the other reader's lock";
    EXPECT_EQ(ReadWholeFile(path), before);
    EXPECT_EQ(ReadWholeFile(path + "-journal"), journal);

    EXPECT_EQ(reader.Finish(), "");
    ASSERT_TRUE(pager.BeginRead());
    EXPECT_EQ(pager.PageCount(), 2u) << "rolled back once alone";
    EXPECT_FALSE(Exists(path + "-journal"));
}

TEST_F(PagerLocking, ReadsSeeWhatAnotherProcessCommittedWhileUnlocked)
{
    ASSERT_TRUE(OpenPager(Locks::kRead));
    PageHandle page;
    ASSERT_TRUE(pager.Read(2, page));
    EXPECT_EQ(Bytes(page), PatternPage(2, 'a'));
    pager.EndRead();

    EXPECT_EQ(InChild([&] {
                  Pager other;
                  PageHandle changed;
                  if (!other.Open(path) || !other.BeginWrite() || !other.Write(2, changed))
                      return std::string("cannot write");
                  Fill(changed, PatternPage(2, 'b'));
                  if (!other.Write(7, changed))
                      return std::string("cannot append");
                  Fill(changed, PatternPage(7, 'b'));
                  return std::string(other.Commit() ? "" : "cannot commit");
              }),
              "");

    ASSERT_TRUE(pager.BeginRead());
    EXPECT_EQ(pager.PageCount(), 7u);
    ASSERT_TRUE(pager.Read(2, page));
    EXPECT_EQ(Bytes(page), PatternPage(2, 'b')) << "the cache must be forgotten with the lock";
    ASSERT_TRUE(pager.Read(7, page));
    EXPECT_EQ(Bytes(page), PatternPage(7, 'b'));
}

TEST_F(PagerLocking, OneDescriptorServesTheFileEvenInRollbackAndCommit)
{
    // Closing a second descriptor would drop the locks the first one holds.
    char resolved[PATH_MAX];
    ASSERT_TRUE(realpath(path.c_str(), resolved));
    watchedPath = resolved;
    mostDescriptorsSeen = 0;
    const std::string journal = std::string("\xD9\xD5\x05\xF9\x20\xA1\x63\xD6", 8) + std::string(8, '\0') +
                                std::string("\0\0\0\4", 4);
    WriteWholeFile(path + "-journal", journal);

    file_change_steps::SetObserver(CountDescriptors);
    ASSERT_TRUE(OpenPager(Locks::kWrite));
    PageHandle page;
    ASSERT_TRUE(pager.Write(2, page));
    page->bytes[0] = 'q';
    ASSERT_TRUE(pager.Write(5, page));
    ASSERT_TRUE(pager.Commit());
    file_change_steps::SetObserver(nullptr);
    EXPECT_EQ(mostDescriptorsSeen, 1);
    EXPECT_EQ(LockSeenByOthers(path), "read");
}
