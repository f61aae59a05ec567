// A tree of 200 000 entries: searches go down a few pages, a scan reads each
// page once. The limits are loose (sanitizer builds on a busy machine); a
// search or a step that grew with the tree would still be far beyond them.
#include "BtreeSupport.h"

#include <chrono>
#include <gtest/gtest.h>

using namespace sqlite2;

namespace {

double Seconds(std::chrono::steady_clock::time_point since)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

using BtreePerformance = BtreeNewTableTest;

} // namespace

TEST_F(BtreePerformance, SeekAndScanOfTwoHundredThousandEntries)
{
    const int count = 200000;
    Cursor cursor(db.tree, root);
    auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < count; ++i)
        ASSERT_TRUE(cursor.Insert(RowKey(i), TextRecord("row " + std::to_string(i))));
    const double insert = Seconds(start);
    db.Commit();

    std::mt19937 random(1);
    start = std::chrono::steady_clock::now();
    for (int i = 0; i < 20000; ++i) {
        bool found = false;
        ASSERT_TRUE(cursor.Seek(RowKey(int32_t(random() % count)), found));
        ASSERT_TRUE(found);
    }
    const double seeks = Seconds(start);

    start = std::chrono::steady_clock::now();
    size_t entries = 0, bytes = 0;
    ASSERT_TRUE(cursor.First());
    while (cursor.Valid()) {
        std::string_view key, data;
        ASSERT_TRUE(cursor.Payload(key, data));
        bytes += data.size();
        ++entries;
        ASSERT_TRUE(cursor.Next());
    }
    const double scan = Seconds(start);
    EXPECT_EQ(entries, size_t(count));
    RecordProperty("insert_seconds", std::to_string(insert));
    RecordProperty("seek_seconds", std::to_string(seeks));
    RecordProperty("scan_seconds", std::to_string(scan));
    std::printf("200000 inserts %.2f s, 20000 seeks %.2f s, scan %.2f s\n", insert, seeks, scan);
    EXPECT_LT(seeks, 20.0);
    EXPECT_LT(scan, 20.0);
    EXPECT_EQ(FileProblems(path), std::vector<std::string>{});
}
