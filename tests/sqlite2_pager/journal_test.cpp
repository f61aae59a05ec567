// The journal a commit writes, byte by byte.
#include "FileChangeSteps.h"
#include "PagerTestSupport.h"

#include <gtest/gtest.h>

#include <map>
#include <sys/stat.h>

using namespace pagertest;
using sqlite2::PageHandle;
using sqlite2::Pager;

namespace {

uint32_t BE32(const std::string& bytes, size_t at)
{
    auto b = [&](size_t i) { return uint32_t(uint8_t(bytes[at + i])); };
    return b(0) << 24 | b(1) << 16 | b(2) << 8 | b(3);
}

// The journal as it was just before each write of the commit; the last one
// seen is the complete journal (the last write is the deletion).
std::string journalPath;
std::string lastJournal;
mode_t journalMode = 0;

void CopyJournal()
{
    struct stat info;
    if (stat(journalPath.c_str(), &info) == 0) {
        lastJournal = ReadWholeFile(journalPath);
        journalMode = info.st_mode & 07777;
    }
}

using PagerJournal = PagerFileTest;

} // namespace

TEST_F(PagerJournal, HoldsTheOriginalOfEveryChangedOrCutPageOnceInFormat3)
{
    const std::string old = PatternFile(12, 'a');
    WriteWholeFile(path, old);
    journalPath = path + "-journal";
    std::vector<uint32_t> seeds;

    for (int round = 0; round < 2; ++round) {
        lastJournal.clear();
        file_change_steps::SetObserver(CopyJournal);
        Pager writer;
        ASSERT_TRUE(writer.Open(path));
        ASSERT_TRUE(writer.BeginWrite());
        ASSERT_TRUE(WritePatternPage(writer, 3, 'b'));
        ASSERT_TRUE(WritePatternPage(writer, 9, 'b'));
        ASSERT_TRUE(WritePatternPage(writer, 3, 'c')); // still one record
        PageHandle unchanged;
        ASSERT_TRUE(writer.Write(5, unchanged)); // no change, no record
        ASSERT_TRUE(writer.Truncate(10));        // pages 11 and 12 cut off
        ASSERT_TRUE(WritePatternPage(writer, 11, 'd')); // appended again after the cut
        ASSERT_TRUE(writer.Commit());
        file_change_steps::SetObserver(nullptr);
        WriteWholeFile(path, old);

        ASSERT_GE(lastJournal.size(), 20u);
        EXPECT_EQ(lastJournal.substr(0, 8), std::string("\xD9\xD5\x05\xF9\x20\xA1\x63\xD6", 8));
        const uint32_t records = BE32(lastJournal, 8);
        const uint32_t seed = BE32(lastJournal, 12);
        EXPECT_EQ(BE32(lastJournal, 16), 12u) << "the original page count";
        EXPECT_EQ(lastJournal.size(), 20 + size_t(records) * 1032);
        EXPECT_EQ(journalMode, 0600u);
        seeds.push_back(seed);

        std::map<uint32_t, int> seen;
        for (uint32_t i = 0; i < records; ++i) {
            const size_t at = 20 + size_t(i) * 1032;
            const uint32_t n = BE32(lastJournal, at);
            ++seen[n];
            EXPECT_EQ(lastJournal.substr(at + 4, kPage), PatternPage(n, 'a')) << "original of page " << n;
            EXPECT_EQ(BE32(lastJournal, at + 4 + kPage), seed + n) << "checksum of page " << n;
        }
        EXPECT_EQ(seen, (std::map<uint32_t, int>{{3, 1}, {9, 1}, {11, 1}, {12, 1}}));
    }
    EXPECT_NE(seeds[0], seeds[1]) << "each journal gets its own seed";
}

TEST_F(PagerJournal, AGrowthAloneIsJournalledByItsOriginalSize)
{
    journalPath = path + "-journal";
    lastJournal.clear();
    file_change_steps::SetObserver(CopyJournal);
    ASSERT_TRUE(OpenPager(PatternFile(3, 'a'), Locks::kWriteFromUnlocked));
    ASSERT_TRUE(WritePatternPage(pager, 4, 'b'));
    ASSERT_TRUE(pager.Commit());
    file_change_steps::SetObserver(nullptr);
    ASSERT_EQ(lastJournal.size(), 20u) << "a header without records";
    EXPECT_EQ(BE32(lastJournal, 8), 0u);
    EXPECT_EQ(BE32(lastJournal, 16), 3u);
    EXPECT_EQ(ReadWholeFile(path), PatternFile(3, 'a') + PatternPage(4, 'b'));
}

TEST_F(PagerJournal, AnExistingJournalIsNeverOverwrittenByACommit)
{
    // Somebody else's journal appearing under our write lock is not ours to
    // replace or remove.
    ASSERT_TRUE(OpenPager(PatternFile(3, 'a'), Locks::kWriteFromUnlocked));
    ASSERT_TRUE(WritePatternPage(pager, 2, 'b'));
    WriteWholeFile(path + "-journal", "theirs");
    EXPECT_FALSE(pager.Commit());
    EXPECT_EQ(ReadWholeFile(path + "-journal"), "theirs");
    EXPECT_EQ(ReadWholeFile(path), PatternFile(3, 'a'));
    EXPECT_TRUE(pager.IsReading());
    EXPECT_FALSE(pager.IsWriting());
}
