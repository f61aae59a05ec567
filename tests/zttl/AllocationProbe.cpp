#include "AllocationProbe.h"

#include <cstddef>

extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t n, size_t size);
void* __real_realloc(void* block, size_t size);
char* __real_strdup(const char* text);
void __real_free(void* block);
}

namespace {
int allowedBeforeFailing = -1; // negative: never fail
long allocated = 0;
long freed = 0;

bool Refused()
{
    if (allowedBeforeFailing < 0)
        return false;
    if (allowedBeforeFailing == 0)
        return true;
    --allowedBeforeFailing;
    return false;
}

template <class P>
P Counted(P block)
{
    if (block)
        ++allocated;
    return block;
}
} // namespace

extern "C" {
void* __wrap_malloc(size_t size) { return Refused() ? nullptr : Counted(__real_malloc(size)); }
void* __wrap_calloc(size_t n, size_t size) { return Refused() ? nullptr : Counted(__real_calloc(n, size)); }
char* __wrap_strdup(const char* text) { return Refused() ? nullptr : Counted(__real_strdup(text)); }

void* __wrap_realloc(void* block, size_t size)
{
    if (Refused())
        return nullptr;
    // Only a fresh block counts; a moved one is still the same allocation.
    return block ? __real_realloc(block, size) : Counted(__real_realloc(block, size));
}

void __wrap_free(void* block)
{
    if (block)
        ++freed;
    __real_free(block);
}
}

AllocationProbe::AllocationProbe() : allocatedAtStart(allocated), freedAtStart(freed) {}

AllocationProbe::~AllocationProbe() { Restore(); }

void AllocationProbe::FailAfter(int allowed) { allowedBeforeFailing = allowed < 0 ? 0 : allowed; }

void AllocationProbe::Restore() { allowedBeforeFailing = -1; }

long AllocationProbe::Outstanding() const
{
    return (allocated - allocatedAtStart) - (freed - freedAtStart);
}
