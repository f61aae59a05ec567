// Statement-level rollback inside a write: savepoints put back the pages and
// the page count as they were when they were opened.
#include "FileChangeSteps.h"
#include "PagerTestSupport.h"

#include <gtest/gtest.h>

using namespace pagertest;
using sqlite2::PageHandle;
using sqlite2::Pager;

namespace {

class PagerSavepoints : public PagerFileTest {
protected:
    void SetUp() override { ASSERT_TRUE(OpenPager(PatternFile(8, 'a'), Locks::kWrite)); }

    void Set(uint32_t n, char version)
    {
        PageHandle page;
        ASSERT_TRUE(pager.Write(n, page)) << "page " << n;
        Fill(page, PatternPage(n, version));
    }

    void Append(char version)
    {
        PageHandle page;
        uint32_t n = pager.PageCount() + 1;
        ASSERT_TRUE(pager.Write(n, page));
        Fill(page, PatternPage(n, version));
    }

    // The versions of pages 1..PageCount(), '0' for a page of zeros, '?'
    // for anything else.
    std::string Versions()
    {
        std::string versions;
        for (uint32_t n = 1; n <= pager.PageCount(); ++n) {
            PageHandle page;
            if (!pager.Read(n, page))
                return versions + "(read failed)";
            std::string bytes = Bytes(page);
            char v = bytes[0];
            versions += bytes == std::string(kPage, '\0') ? '0' : bytes == PatternPage(n, v) ? v : '?';
        }
        return versions;
    }

    std::string FileVersions()
    {
        std::string file = ReadWholeFile(path), versions;
        for (uint32_t n = 1; n <= file.size() / kPage; ++n) {
            std::string bytes = PageOf(file, n);
            versions += bytes == std::string(kPage, '\0') ? '0' : bytes == PatternPage(n, bytes[0]) ? bytes[0] : '?';
        }
        return versions;
    }
};

} // namespace

TEST_F(PagerSavepoints, RollingBackPutsPagesAndCountBackAndKeepsTheSavepoint)
{
    Set(2, 'b');
    int savepoint = pager.OpenSavepoint();
    Set(2, 'c');
    Set(3, 'c');
    Append('c');
    EXPECT_EQ(Versions(), "accaaaaac");
    pager.RollbackTo(savepoint);
    EXPECT_EQ(Versions(), "abaaaaaa");

    Set(4, 'd');
    Append('d');
    pager.RollbackTo(savepoint); // still open
    EXPECT_EQ(Versions(), "abaaaaaa");
    ASSERT_TRUE(pager.Commit());
    EXPECT_EQ(FileVersions(), "abaaaaaa");
}

TEST_F(PagerSavepoints, AnOuterSavepointUndoesWhatNestedOnesDid)
{
    int outer = pager.OpenSavepoint();
    Set(2, 'b');
    int inner = pager.OpenSavepoint();
    Set(2, 'c'); // first change of page 2 since the inner savepoint only
    Set(3, 'c');
    Append('c');
    pager.RollbackTo(inner);
    EXPECT_EQ(Versions(), "abaaaaaa");
    Set(3, 'd');
    pager.RollbackTo(outer);
    EXPECT_EQ(Versions(), "aaaaaaaa");
    ASSERT_TRUE(pager.Commit());
    EXPECT_EQ(FileVersions(), "aaaaaaaa");
    EXPECT_FALSE(Exists(path + "-journal"));
}

TEST_F(PagerSavepoints, ReleasingKeepsTheChangesButTheEnclosingOneCanStillUndoThem)
{
    int outer = pager.OpenSavepoint();
    Set(5, 'b');
    int inner = pager.OpenSavepoint();
    Set(6, 'c');
    Set(5, 'c');
    pager.Release(inner);
    EXPECT_EQ(Versions(), "aaaaccaa");
    pager.RollbackTo(outer);
    EXPECT_EQ(Versions(), "aaaaaaaa");

    Set(7, 'e');
    pager.Release(outer);
    ASSERT_TRUE(pager.Commit());
    EXPECT_EQ(FileVersions(), "aaaaaaea");
}

TEST_F(PagerSavepoints, ATruncationIsUndoneWithTheChangesOfTheCutPages)
{
    Set(7, 'b'); // changed before the savepoint: must come back as 'b'
    int savepoint = pager.OpenSavepoint();
    Set(6, 'c');
    ASSERT_TRUE(pager.Truncate(4));
    Append('d');
    EXPECT_EQ(Versions(), "aaaad");
    pager.RollbackTo(savepoint);
    EXPECT_EQ(Versions(), "aaaaaaba");
    ASSERT_TRUE(pager.Commit());
    EXPECT_EQ(FileVersions(), "aaaaaaba");
}

TEST_F(PagerSavepoints, PagesCutAndAppendedAgainInsideAReleasedSavepointComeBack)
{
    int outer = pager.OpenSavepoint();
    ASSERT_TRUE(pager.Truncate(5));
    Append('x');
    int inner = pager.OpenSavepoint();
    Set(6, 'y'); // the inner savepoint keeps the 'x', which the outer one must not take over
    Append('x');
    pager.Release(inner);
    EXPECT_EQ(Versions(), "aaaaayx");
    pager.RollbackTo(outer);
    EXPECT_EQ(Versions(), "aaaaaaaa");
    ASSERT_TRUE(pager.Commit());
    EXPECT_EQ(FileVersions(), "aaaaaaaa");
}

TEST_F(PagerSavepoints, AppendedPagesChangedAgainComeBackAsTheyWere)
{
    Append('b'); // page 9
    int savepoint = pager.OpenSavepoint();
    Set(9, 'c');
    ASSERT_TRUE(pager.Truncate(3));
    pager.RollbackTo(savepoint);
    EXPECT_EQ(Versions(), "aaaaaaaab");
    pager.Rollback();
    EXPECT_EQ(Versions(), "aaaaaaaa");
}

TEST_F(PagerSavepoints, ACommitAfterARollbackJournalsOnlyWhatReallyChanged)
{
    file_change_steps::SetObserver(CountingObserver);
    int savepoint = pager.OpenSavepoint();
    Set(2, 'b');
    Set(3, 'b');
    pager.RollbackTo(savepoint);
    pager.Release(savepoint);
    writesSeen = 0;
    ASSERT_TRUE(pager.Commit());
    file_change_steps::SetObserver(nullptr);
    EXPECT_EQ(writesSeen, 0) << "every change was undone";
    EXPECT_EQ(FileVersions(), "aaaaaaaa");
}
