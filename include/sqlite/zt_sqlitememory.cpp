#include "sqlite/zt_sqlitememory.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

// Blocks up to this size come from the size classes, 16 bytes apart; larger
// ones straight from the C library. Each block is preceded by its size.
constexpr size_t classStep = 16;
constexpr size_t largestSmall = 1024;
constexpr size_t classCount = largestSmall / classStep;
constexpr size_t arenaSize = 64 * 1024;
constexpr size_t headerSize = 8; // keeps the 8-byte alignment SQLite needs

struct FreeBlock {
    FreeBlock* next;
};

FreeBlock* freeLists[classCount + 1];
char* arenaNext = nullptr;
size_t arenaLeft = 0;

size_t ClassOf(size_t size)
{
    return (size + classStep - 1) / classStep;
}

uint64_t& SizeOf(void* block)
{
    return *reinterpret_cast<uint64_t*>(static_cast<char*>(block) - headerSize);
}

// A new small block of the class's size, carved from the current arena;
// what is left of an arena too short for it is given up.
void* Carve(size_t size)
{
    const size_t needed = size + headerSize;
    if (arenaLeft < needed) {
        arenaNext = static_cast<char*>(malloc(arenaSize));
        if (!arenaNext) {
            arenaLeft = 0;
            return nullptr;
        }
        arenaLeft = arenaSize;
    }
    char* block = arenaNext + headerSize;
    arenaNext += needed;
    arenaLeft -= needed;
    return block;
}

int Roundup(int size)
{
    if (size <= 0)
        return 0;
    if (size_t(size) <= largestSmall)
        return int(ClassOf(size_t(size)) * classStep);
    return size > INT32_MAX - 8 ? size : (size + 7) & ~7;
}

void* Allocate(int requested)
{
    if (requested <= 0)
        return nullptr;
    const size_t size = size_t(Roundup(requested));
    if (size > largestSmall) {
        char* raw = static_cast<char*>(malloc(size + headerSize));
        if (!raw)
            return nullptr;
        void* block = raw + headerSize;
        SizeOf(block) = size;
        return block;
    }
    void* block = nullptr;
    if (FreeBlock* reused = freeLists[size / classStep]) {
        freeLists[size / classStep] = reused->next;
        block = reused;
    } else if (!(block = Carve(size))) {
        return nullptr;
    }
    SizeOf(block) = size;
    return block;
}

void Release(void* block)
{
    if (!block)
        return;
    const size_t size = SizeOf(block);
    if (size > largestSmall) {
        free(static_cast<char*>(block) - headerSize);
        return;
    }
    auto* freed = static_cast<FreeBlock*>(block);
    freed->next = freeLists[size / classStep];
    freeLists[size / classStep] = freed;
}

int SizeMethod(void* block)
{
    return block ? int(SizeOf(block)) : 0;
}

void* Reallocate(void* block, int requested)
{
    if (!block)
        return Allocate(requested);
    const size_t old = SizeOf(block);
    if (requested > 0 && size_t(requested) <= largestSmall && size_t(Roundup(requested)) == old)
        return block; // the block's class already fits
    void* grown = Allocate(requested);
    if (!grown)
        return nullptr; // SQLite keeps the old block
    memcpy(grown, block, old < size_t(requested) ? old : size_t(requested));
    Release(block);
    return grown;
}

int Init(void*)
{
    return SQLITE_OK;
}

void Shutdown(void*) {}

const sqlite3_mem_methods methods = {Allocate, Release, Reallocate, SizeMethod, Roundup, Init, Shutdown, nullptr};

} // namespace

const sqlite3_mem_methods& ZT_SQLiteMemoryMethods()
{
    return methods;
}
