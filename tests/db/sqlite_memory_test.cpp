// SQLite's memory methods, used directly: every other test runs SQLite on them.
#include "sqlite/zt_sqlitememory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

const sqlite3_mem_methods& memory = ZT_SQLiteMemoryMethods();

void Fill(void* block, int size, char seed)
{
    for (int i = 0; i < size; ++i)
        static_cast<char*>(block)[i] = char(seed + i);
}

bool Holds(const void* block, int size, char seed)
{
    for (int i = 0; i < size; ++i)
        if (static_cast<const char*>(block)[i] != char(seed + i))
            return false;
    return true;
}

} // namespace

TEST(SqliteMemory, BlocksOfEverySizeAreDistinctAlignedAndAsLargeAsPromised)
{
    std::vector<std::pair<void*, int>> blocks;
    for (int size : {1, 7, 8, 15, 16, 17, 100, 511, 1023, 1024, 1025, 4096, 70000})
        for (int copy = 0; copy < 3; ++copy) {
            void* block = memory.xMalloc(size);
            ASSERT_NE(block, nullptr) << size;
            EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % 8, 0u) << size;
            EXPECT_GE(memory.xSize(block), size);
            EXPECT_EQ(memory.xSize(block), memory.xRoundup(size)) << size;
            Fill(block, memory.xSize(block), char(blocks.size()));
            blocks.emplace_back(block, memory.xSize(block));
        }
    // No block overlapped another: each still holds its own pattern.
    for (size_t i = 0; i < blocks.size(); ++i)
        EXPECT_TRUE(Holds(blocks[i].first, blocks[i].second, char(i))) << i;
    for (auto& [block, size] : blocks)
        memory.xFree(block);
    EXPECT_EQ(memory.xMalloc(0), nullptr);
    memory.xFree(nullptr);
}

TEST(SqliteMemory, ReallocationKeepsTheContentAcrossSizes)
{
    void* block = memory.xRealloc(nullptr, 10);
    ASSERT_NE(block, nullptr);
    Fill(block, 10, 'a');
    int kept = 10;
    // Within the size class, past it, past the small sizes, and back down.
    for (int size : {12, 40, 900, 5000, 100000, 600, 3}) {
        block = memory.xRealloc(block, size);
        ASSERT_NE(block, nullptr) << size;
        EXPECT_GE(memory.xSize(block), size);
        EXPECT_TRUE(Holds(block, std::min(kept, size), 'a')) << size;
        Fill(block, size, 'a');
        kept = size;
    }
    memory.xFree(block);
}

TEST(SqliteMemory, FreedBlocksAreReusedForTheirSize)
{
    void* first = memory.xMalloc(200);
    memory.xFree(first);
    void* second = memory.xMalloc(195); // the same 208-byte class
    EXPECT_EQ(second, first);
    memory.xFree(second);
}
