// Pages read, changed, committed and read again, by this pager and by a
// fresh one on the same file.
#include "FileChangeSteps.h"
#include "PagerTestSupport.h"

#include <gtest/gtest.h>

using namespace pagertest;
using sqlite2::PageHandle;
using sqlite2::Pager;

namespace {

std::string Fixture(const std::string& name)
{
    return ReadWholeFile(FixturePath(name));
}

// The file's pages as a fresh pager reads them.
std::string ReadThroughPager(const std::string& path)
{
    Pager pager;
    if (!pager.Open(path) || !pager.BeginRead())
        return "(cannot read)";
    std::string content;
    for (uint32_t n = 1; n <= pager.PageCount(); ++n) {
        PageHandle page;
        if (!pager.Read(n, page))
            return "(read of page " + std::to_string(n) + " failed)";
        content += Bytes(page);
    }
    return content;
}

using PagerRoundTrip = PagerFileTest;

} // namespace

TEST_F(PagerRoundTrip, ANewNameBecomesAnEmptyFileThatGrowsByAppendedPages)
{
    // The fixture's file is not made: its name is new. The file is read
    // once its pager is gone.
    {
        Pager writer;
        ASSERT_TRUE(writer.Open(path));
        EXPECT_TRUE(Exists(path));
        EXPECT_FALSE(writer.IsReadOnly());
        ASSERT_TRUE(writer.BeginRead());
        EXPECT_EQ(writer.PageCount(), 0u);
        PageHandle page;
        ASSERT_TRUE(writer.Read(2, page));
        EXPECT_EQ(Bytes(page), std::string(kPage, '\0'));

        ASSERT_TRUE(writer.BeginWrite());
        for (uint32_t n = 1; n <= 3; ++n) {
            ASSERT_TRUE(writer.Write(writer.PageCount() + 1, page));
            EXPECT_EQ(Bytes(page), std::string(kPage, '\0')) << "an appended page starts as zeros";
            Fill(page, PatternPage(n, 'a'));
        }
        EXPECT_EQ(writer.PageCount(), 3u);
        EXPECT_EQ(ReadWholeFile(path).size(), 0u) << "nothing reaches the file before Commit";
        ASSERT_TRUE(writer.Commit());
        EXPECT_TRUE(writer.IsReading());
        EXPECT_FALSE(writer.IsWriting());
        EXPECT_FALSE(Exists(path + "-journal"));
    }
    EXPECT_EQ(ReadWholeFile(path), PatternFile(3, 'a'));
    EXPECT_EQ(ReadThroughPager(path), PatternFile(3, 'a'));
}

TEST_F(PagerRoundTrip, ACommittedChangeReachesExactlyItsPage)
{
    const std::string old = Fixture("big.db");
    WriteWholeFile(path, old);

    std::string expected = old;
    {
        Pager writer;
        ASSERT_TRUE(writer.Open(path));
        ASSERT_TRUE(writer.BeginRead());
        EXPECT_EQ(writer.PageCount(), old.size() / kPage);
        PageHandle page;
        ASSERT_TRUE(writer.Read(700, page));
        EXPECT_EQ(Bytes(page), PageOf(old, 700));
        ASSERT_TRUE(writer.BeginWrite());
        ASSERT_TRUE(writer.Write(700, page));
        page->bytes[100] ^= 0xFF;
        SetPage(expected, 700, Bytes(page));
        ASSERT_TRUE(writer.Write(1, page));
        page->bytes[1023] ^= 0x55;
        SetPage(expected, 1, Bytes(page));
        ASSERT_TRUE(writer.Commit());

        // The writer keeps reading what it committed.
        ASSERT_TRUE(writer.Read(700, page));
        EXPECT_EQ(Bytes(page), PageOf(expected, 700));
        writer.EndRead();
    }
    EXPECT_EQ(ReadWholeFile(path), expected);
    EXPECT_EQ(ReadThroughPager(path), expected);
}

TEST_F(PagerRoundTrip, WriteHandsOutTheBufferReadHandedOut)
{
    ASSERT_TRUE(OpenPager(PatternFile(4, 'a'), Locks::kRead));
    PageHandle read, written;
    ASSERT_TRUE(pager.Read(2, read));
    ASSERT_TRUE(pager.BeginWrite());
    ASSERT_TRUE(pager.Write(2, written));
    EXPECT_EQ(read.get(), written.get()) << "a change through one handle must show through the other";
    written->bytes[5] = 'X';
    PageHandle again;
    ASSERT_TRUE(pager.Read(2, again));
    EXPECT_EQ(again->bytes[5], 'X');
}

TEST_F(PagerRoundTrip, TruncationShrinksTheFileAndLaterAppendsStartFromZeros)
{
    ASSERT_TRUE(OpenPager(PatternFile(10, 'a'), Locks::kRead));
    PageHandle page;
    ASSERT_TRUE(pager.Read(8, page)); // cached before the cut
    ASSERT_TRUE(pager.BeginWrite());
    ASSERT_TRUE(pager.Truncate(6));
    EXPECT_EQ(pager.PageCount(), 6u);
    ASSERT_TRUE(pager.Read(8, page));
    EXPECT_EQ(Bytes(page), std::string(kPage, '\0')) << "a page cut off reads as zeros";
    ASSERT_TRUE(pager.Write(7, page));
    EXPECT_EQ(Bytes(page), std::string(kPage, '\0')) << "a page appended after a cut is new";
    ASSERT_TRUE(pager.Commit());
    pager.EndRead();

    std::string expected = PatternFile(6, 'a') + std::string(kPage, '\0');
    EXPECT_EQ(ReadWholeFile(path), expected);
}

TEST_F(PagerRoundTrip, PagesPastTheEndReadAsZerosAndOnlyTheNextOneCanBeAppended)
{
    // A trailing partial page is not a page.
    ASSERT_TRUE(OpenPager(PatternFile(2, 'a') + "partial", Locks::kRead));
    EXPECT_EQ(pager.PageCount(), 2u);
    PageHandle page;
    ASSERT_TRUE(pager.Read(3, page));
    EXPECT_EQ(Bytes(page), std::string(kPage, '\0'));
    EXPECT_EQ(pager.Read(0, page).Code(), sqlite2::kCorrupt);

    ASSERT_TRUE(pager.BeginWrite());
    EXPECT_FALSE(pager.Write(4, page)) << "page 4 would leave a hole at page 3";
    EXPECT_FALSE(pager.Write(0, page));
    EXPECT_TRUE(pager.Write(3, page));
    EXPECT_EQ(pager.PageCount(), 3u);
}

TEST_F(PagerRoundTrip, CallsOutOfTurnAreRefused)
{
    ASSERT_TRUE(OpenPager(PatternFile(2, 'a'), Locks::kNone));
    PageHandle page;
    EXPECT_FALSE(pager.Read(1, page)) << "no read without the read lock";
    ASSERT_TRUE(pager.BeginRead());
    EXPECT_FALSE(pager.Write(1, page)) << "no change without the write lock";
    EXPECT_FALSE(pager.Truncate(1));
    ASSERT_TRUE(pager.BeginWrite());
    pager.EndRead();
    EXPECT_TRUE(pager.IsWriting()) << "EndRead must not end a write";
    ASSERT_TRUE(pager.Write(1, page));
    Fill(page, PatternPage(1, 'b'));
    ASSERT_TRUE(pager.Commit());
    EXPECT_EQ(PageOf(ReadWholeFile(path), 1), PatternPage(1, 'b'));
}

TEST_F(PagerRoundTrip, RollbackForgetsEveryChange)
{
    const std::string old = PatternFile(5, 'a');
    ASSERT_TRUE(OpenPager(old, Locks::kWrite));
    PageHandle held;
    ASSERT_TRUE(pager.Write(2, held));
    Fill(held, PatternPage(2, 'b'));
    PageHandle page;
    ASSERT_TRUE(pager.Write(6, page));
    ASSERT_TRUE(pager.Truncate(3));
    pager.Rollback();
    EXPECT_TRUE(pager.IsReading());
    EXPECT_FALSE(pager.IsWriting());
    EXPECT_EQ(pager.PageCount(), 5u);
    for (uint32_t n = 1; n <= 5; ++n) {
        ASSERT_TRUE(pager.Read(n, page));
        EXPECT_EQ(Bytes(page), PatternPage(n, 'a')) << "page " << n;
    }
    EXPECT_EQ(Bytes(held), PatternPage(2, 'a')) << "a held page shows its old content again";

    ASSERT_TRUE(pager.BeginWrite());
    ASSERT_TRUE(pager.Commit());
    EXPECT_EQ(ReadWholeFile(path), old);
}

TEST_F(PagerRoundTrip, ACommitWithoutARealChangeWritesNothing)
{
    ASSERT_TRUE(OpenPager(PatternFile(5, 'a'), Locks::kRead));
    file_change_steps::SetObserver(CountingObserver);
    writesSeen = 0;

    ASSERT_TRUE(pager.BeginWrite());
    ASSERT_TRUE(pager.Commit());
    EXPECT_EQ(writesSeen, 0) << "no change";

    ASSERT_TRUE(pager.BeginWrite());
    PageHandle page;
    ASSERT_TRUE(pager.Write(3, page)); // made changeable, left as it was
    ASSERT_TRUE(pager.Commit());
    EXPECT_EQ(writesSeen, 0) << "a page written back unchanged";
    file_change_steps::SetObserver(nullptr);
    EXPECT_FALSE(Exists(path + "-journal"));
    EXPECT_EQ(ReadWholeFile(path), PatternFile(5, 'a'));
}

TEST_F(PagerRoundTrip, AScanLetsGoOfPagesButNeverOfChangesOrHeldPages)
{
    const uint32_t pages = 8192; // four times what the cache keeps
    ASSERT_TRUE(OpenPager(PatternFile(pages, 'a'), Locks::kRead));
    PageHandle held;
    ASSERT_TRUE(pager.Read(3, held));
    std::weak_ptr<sqlite2::PageBuffer> released;
    {
        PageHandle page;
        ASSERT_TRUE(pager.Read(5, page));
        released = page;
    }
    ASSERT_TRUE(pager.BeginWrite());
    PageHandle changed;
    ASSERT_TRUE(pager.Write(7, changed));
    Fill(changed, PatternPage(7, 'b'));
    changed.reset();

    for (uint32_t n = 1; n <= pages; ++n) {
        PageHandle page;
        ASSERT_TRUE(pager.Read(n, page));
        ASSERT_EQ(Bytes(page), n == 7 ? PatternPage(7, 'b') : PatternPage(n, 'a')) << "page " << n;
    }
    EXPECT_TRUE(released.expired()) << "a scan must not keep the whole file in memory";

    PageHandle page;
    ASSERT_TRUE(pager.Read(7, page));
    EXPECT_EQ(Bytes(page), PatternPage(7, 'b')) << "a change must survive the scan";
    ASSERT_TRUE(pager.Write(3, page));
    EXPECT_EQ(page.get(), held.get()) << "a held page must stay the cached one";
    ASSERT_TRUE(pager.Commit());
    std::string file = ReadWholeFile(path);
    EXPECT_EQ(PageOf(file, 7), PatternPage(7, 'b'));
    EXPECT_EQ(file.size(), size_t(pages) * kPage);
}

TEST_F(PagerRoundTrip, PagesReadInNearlyFileOrderAreThoseOfTheFile)
{
    // A scan that skips ahead a little has the pager read the following
    // pages along; pages changed meanwhile, the end of the file (a half
    // page there is no page) and pages appended past it read as they are.
    const uint32_t pages = 300;
    ASSERT_TRUE(OpenPager(PatternFile(pages, 'a') + std::string(kPage / 2, 'z'), Locks::kRead));
    ASSERT_TRUE(pager.BeginWrite());
    ASSERT_TRUE(WritePatternPages(pager, {40, 41, 299}, 'b'));
    ASSERT_TRUE(AppendPatternPages(pager, 3, 'c'));
    std::vector<uint32_t> order;
    for (uint32_t n = 1; n + 3 <= pager.PageCount(); n += 4)
        order.insert(order.end(), {n, n + 2, n + 1, n + 3}); // forward in small jumps, a step back now and then
    for (uint32_t n = order.back() + 1; n <= pager.PageCount(); ++n)
        order.push_back(n);
    for (uint32_t n : order) {
        PageHandle page;
        ASSERT_TRUE(pager.Read(n, page, Pager::Access::kScan)) << "page " << n;
        const char version = n > pages ? 'c' : n == 40 || n == 41 || n == 299 ? 'b' : 'a';
        ASSERT_EQ(Bytes(page), PatternPage(n, version)) << "page " << n;
    }
    ASSERT_TRUE(pager.Commit());
}

TEST_F(PagerRoundTrip, ARealDatabaseReadsPageForPage)
{
    for (const char* name : {"overflow.db", "swapped_tree.db", "empty.db"}) {
        WriteWholeFile(path, Fixture(name));
        EXPECT_EQ(ReadThroughPager(path), Fixture(name)) << name;
    }
}

TEST_F(PagerRoundTrip, ADirectoryCannotBeOpened)
{
    sqlite2::Status status = pager.Open(dir.Path());
    EXPECT_EQ(status.Code(), sqlite2::kCantOpen);
    EXPECT_EQ(status.Message(), "unable to open database file");
    EXPECT_FALSE(pager.BeginRead());
}
