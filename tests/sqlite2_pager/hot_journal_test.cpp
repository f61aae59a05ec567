// Journals left by dead writers, written byte by byte here in the three
// formats SQLite 2 rolls back, are rolled back by the next BeginRead.
#include "PagerTestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sys/stat.h>

using namespace pagertest;
using sqlite2::PageHandle;
using sqlite2::Pager;

namespace {

std::string BE32(uint32_t v)
{
    return {char(v >> 24), char(v >> 16), char(v >> 8), char(v)};
}

std::string Native32(uint32_t v)
{
    std::string bytes(4, '\0');
    memcpy(bytes.data(), &v, 4);
    return bytes;
}

const std::string magic3 = "\xD9\xD5\x05\xF9\x20\xA1\x63\xD6";
const std::string magic2 = "\xD9\xD5\x05\xF9\x20\xA1\x63\xD5";
const std::string magic1 = "\xD9\xD5\x05\xF9\x20\xA1\x63\xD4";
const uint32_t seed = 0x9E3779B9u; // seed + page number wraps around

struct Record {
    uint32_t page;
    char version;
    bool badChecksum = false;
};

std::string Format3(uint32_t nRec, uint32_t originalPages, const std::vector<Record>& records)
{
    std::string journal = magic3 + BE32(nRec) + BE32(seed) + BE32(originalPages);
    for (const Record& r : records)
        journal += BE32(r.page) + PatternPage(r.page, r.version) + BE32(seed + r.page + (r.badChecksum ? 1 : 0));
    return journal;
}

std::string OldFormat(bool bigEndian, uint32_t originalPages, const std::vector<Record>& records)
{
    auto number = [&](uint32_t v) { return bigEndian ? BE32(v) : Native32(v); };
    std::string journal = (bigEndian ? magic2 : magic1) + number(originalPages);
    for (const Record& r : records)
        journal += number(r.page) + PatternPage(r.page, r.version);
    return journal;
}

// The database as a dead writer left it: pages 1..8 of version 'n' (new),
// grown to 10 pages.
class PagerHotJournal : public PagerFileTest {
protected:
    void SetUp() override { WriteWholeFile(path, PatternFile(10, 'n')); }

    // What the next reader finds: the file's content, or why it could not read.
    std::string RollBack(const std::string& journal)
    {
        WriteWholeFile(path + "-journal", journal);
        Pager reader;
        if (!reader.Open(path))
            return "(cannot open)";
        sqlite2::Status status = reader.BeginRead();
        if (!status)
            return "(" + status.Message() + ")";
        PageHandle page;
        if (!reader.Read(1, page))
            return "(cannot read)";
        if (reader.PageCount() != ReadWholeFile(path).size() / kPage)
            return "(page count " + std::to_string(reader.PageCount()) + " differs from the file)";
        return ReadWholeFile(path);
    }

    // Pages 1..pages of version 'n' except those listed with theirs.
    static std::string Expected(uint32_t pages, const std::vector<Record>& restored)
    {
        std::string file = PatternFile(pages, 'n');
        for (const Record& r : restored)
            SetPage(file, r.page, PatternPage(r.page, r.version));
        return file;
    }
};

} // namespace

TEST_F(PagerHotJournal, Format3RestoresItsRecordsAndTheOriginalSize)
{
    EXPECT_EQ(RollBack(Format3(2, 8, {{2, 'o'}, {8, 'o'}})), Expected(8, {{2, 'o'}, {8, 'o'}}));
    EXPECT_FALSE(Exists(path + "-journal"));
}

TEST_F(PagerHotJournal, Format3WithNoRecordCountOnlyTruncates)
{
    // The writer died before syncing its records, so before touching the file.
    EXPECT_EQ(RollBack(Format3(0, 8, {{2, 'o'}, {3, 'o'}})), Expected(8, {}));
    EXPECT_FALSE(Exists(path + "-journal"));
}

TEST_F(PagerHotJournal, Format3StopsAtTheFirstBadChecksum)
{
    EXPECT_EQ(RollBack(Format3(3, 9, {{2, 'o'}, {3, 'o', true}, {4, 'o'}})), Expected(9, {{2, 'o'}}));
}

TEST_F(PagerHotJournal, Format3StopsAtPageZeroAndAtAnIncompleteRecord)
{
    std::string journal = Format3(3, 10, {{2, 'o'}, {0, 'o'}, {4, 'o'}});
    EXPECT_EQ(RollBack(journal), Expected(10, {{2, 'o'}}));
    SetUp();
    journal = Format3(3, 10, {{2, 'o'}, {3, 'o'}, {4, 'o'}});
    journal.resize(journal.size() - 1);
    EXPECT_EQ(RollBack(journal), Expected(10, {{2, 'o'}, {3, 'o'}}));
}

TEST_F(PagerHotJournal, Format3SkipsRecordsPastTheOriginalSize)
{
    EXPECT_EQ(RollBack(Format3(3, 6, {{2, 'o'}, {9, 'o'}, {5, 'o'}})), Expected(6, {{2, 'o'}, {5, 'o'}}));
}

TEST_F(PagerHotJournal, Format3CountsItsRecordsWhenTheCountIsAllOnes)
{
    std::string journal = Format3(0xFFFFFFFFu, 10, {{1, 'o'}, {7, 'o'}});
    journal += std::string(500, 'x'); // part of a record never finished
    EXPECT_EQ(RollBack(journal), Expected(10, {{1, 'o'}, {7, 'o'}}));
}

TEST_F(PagerHotJournal, Format3ThatNeverGotItsWholeHeaderIsJustRemoved)
{
    EXPECT_EQ(RollBack(magic3 + BE32(0)), Expected(10, {})) << "12 bytes: nothing to restore";
    EXPECT_FALSE(Exists(path + "-journal"));
    EXPECT_EQ(RollBack(""), Expected(10, {}));
    EXPECT_FALSE(Exists(path + "-journal"));
}

TEST_F(PagerHotJournal, Format2HasBigEndianNumbersAndNoChecksums)
{
    EXPECT_EQ(RollBack(OldFormat(true, 7, {{3, 'o'}, {9, 'o'}, {6, 'o'}})), Expected(7, {{3, 'o'}, {6, 'o'}}));
    EXPECT_FALSE(Exists(path + "-journal"));
}

TEST_F(PagerHotJournal, Format1HasTheWritersOwnByteOrder)
{
    EXPECT_EQ(RollBack(OldFormat(false, 9, {{4, 'o'}, {1, 'o'}})), Expected(9, {{4, 'o'}, {1, 'o'}}));
    EXPECT_FALSE(Exists(path + "-journal"));
}

TEST_F(PagerHotJournal, AnUnknownJournalStopsTheReadAndIsKept)
{
    std::string journal = Format3(1, 4, {{2, 'o'}});
    journal[7] = char(0xD7);
    const std::string before = ReadWholeFile(path);
    WriteWholeFile(path + "-journal", journal);
    ASSERT_TRUE(OpenPager(Locks::kNone));
    sqlite2::Status status = pager.BeginRead();
    EXPECT_FALSE(status);
    EXPECT_FALSE(pager.IsReading());
    EXPECT_EQ(ReadWholeFile(path), before);
    EXPECT_EQ(ReadWholeFile(path + "-journal"), journal);
}

TEST_F(PagerHotJournal, AJournalBesideAReadOnlyFileOrDirectoryStopsTheRead)
{
    const std::string journal = Format3(1, 4, {{2, 'o'}});
    const std::string before = ReadWholeFile(path);
    chmod(dir.Path().c_str(), 0777);
    WriteWholeFile(path + "-journal", journal);
    chmod((path + "-journal").c_str(), 0644);
    auto tryToRead = [&] {
        return InChild(
            [&] {
                Pager pager;
                if (!pager.Open(path))
                    return std::string("cannot open");
                sqlite2::Status status = pager.BeginRead();
                if (status)
                    return std::string("read although the journal could not be rolled back");
                return std::string(pager.IsReading() ? "still reading" : "");
            },
            true);
    };

    chmod(path.c_str(), 0444);
    EXPECT_EQ(tryToRead(), "") << "read-only file";
    chmod(path.c_str(), 0666);
    chmod(dir.Path().c_str(), 0555);
    EXPECT_EQ(tryToRead(), "") << "read-only directory";
    chmod(dir.Path().c_str(), 0777);
    EXPECT_EQ(ReadWholeFile(path), before);
    EXPECT_EQ(ReadWholeFile(path + "-journal"), journal);
}

TEST_F(PagerHotJournal, ARealDatabaseComesBackByteForByte)
{
    // A commit of the fixture, killed after the journal was synced and half
    // of the pages were written, is recreated here by hand.
    const std::string original = ReadWholeFile(FixturePath("overflow.db"));
    const uint32_t pages = uint32_t(original.size() / kPage);
    std::string journal = magic3 + BE32(3) + BE32(seed) + BE32(pages);
    std::string damaged = original;
    for (uint32_t n : {pages, 1u, 17u}) {
        journal += BE32(n) + PageOf(original, n) + BE32(seed + n);
        SetPage(damaged, n, std::string(kPage, 'Z'));
    }
    damaged += std::string(5 * kPage, 'Y'); // grown, too
    WriteWholeFile(path, damaged);
    EXPECT_EQ(RollBack(journal), original);
}
