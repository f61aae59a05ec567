#include "sqlite/zt_resultmemory.h"

#include <cstdlib>
#include <cstring>
#include <sys/mman.h>

namespace {

// Blocks from this size on are mapped.
constexpr size_t kMappedFrom = size_t(1) << 20;

// Before the data, keeping its alignment.
struct alignas(16) BlockHeader {
    size_t capacity; // bytes of data
    bool mapped;
};

BlockHeader* HeaderOf(void* block)
{
    return static_cast<BlockHeader*>(block) - 1;
}

// Whole huge pages: the system then places the mapping on huge-page
// boundaries, and none of it is left to small pages.
constexpr size_t kHugePage = size_t(2) << 20;

size_t MappedSize(size_t capacity)
{
    return (capacity + sizeof(BlockHeader) + kHugePage - 1) / kHugePage * kHugePage;
}

BlockHeader* Map(size_t bytes)
{
    void* mapped = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED)
        return nullptr;
#ifdef MADV_HUGEPAGE
    madvise(mapped, bytes, MADV_HUGEPAGE); // advice only: without huge pages nothing changes
#endif
    return static_cast<BlockHeader*>(mapped);
}

} // namespace

void* ZT_ResizeResultBlock(void* block, size_t capacity)
{
    BlockHeader* old = block ? HeaderOf(block) : nullptr;
    if (capacity + sizeof(BlockHeader) < kMappedFrom && (!old || !old->mapped)) {
        auto* grown = static_cast<BlockHeader*>(realloc(old, capacity + sizeof(BlockHeader)));
        if (!grown)
            return nullptr;
        *grown = {capacity, false};
        return grown + 1;
    }
    const size_t bytes = MappedSize(capacity);
    BlockHeader* grown = nullptr;
    if (old && old->mapped) {
        // The mapping moves as a whole, huge-page advice included; its pages are not copied.
        void* moved = mremap(old, MappedSize(old->capacity), bytes, MREMAP_MAYMOVE);
        if (moved == MAP_FAILED)
            return nullptr;
        grown = static_cast<BlockHeader*>(moved);
    } else {
        grown = Map(bytes);
        if (!grown)
            return nullptr;
        if (old) {
            memcpy(grown + 1, old + 1, old->capacity < capacity ? old->capacity : capacity);
            free(old);
        }
    }
    *grown = {bytes - sizeof(BlockHeader), true};
    return grown + 1;
}

void ZT_FreeResultBlock(void* block)
{
    if (!block)
        return;
    BlockHeader* header = HeaderOf(block);
    if (header->mapped)
        munmap(header, MappedSize(header->capacity));
    else
        free(header);
}
