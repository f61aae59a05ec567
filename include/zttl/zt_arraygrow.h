#pragma once

#include "zttl/zt_report.h"

#include <cstdlib>
#include <cstring>

// Where growth starts zeroing. The pointer array clears from the count, so
// slots forgotten by an earlier shrink come back null; the value arrays
// clear only the slots the growth allocates.
enum class ZT_ClearFrom { Count, Capacity };

// Frees the block and leaves the array empty.
template <class T>
void ZT_FreeBlock(T*& data, int& count, int& capacity)
{
    count = 0;
    capacity = 0;
    free(static_cast<void*>(data));
    data = nullptr;
}

// The SetSize of the array kinds, on their block of T and its counts. n <= 0
// frees the block; n within the capacity only sets the count; beyond it the
// capacity becomes the count plus whole steps of step elements past n, and
// the block is zeroed from clearFrom to the new capacity. False when memory
// runs out (nothing changed).
template <class T>
bool ZT_ResizeBlock(T*& data, int& count, int& capacity, int n, int step, ZT_ClearFrom clearFrom)
{
    if (n <= 0) {
        ZT_FreeBlock(data, count, capacity);
        return true;
    }
    if (n <= capacity) {
        count = n;
        return true;
    }
    int newCapacity = count + ((n - count) / step + 1) * step;
    T* grown = static_cast<T*>(realloc(static_cast<void*>(data), size_t(newCapacity) * sizeof(T)));
    if (!grown)
        return false;
    const int clearStart = clearFrom == ZT_ClearFrom::Count ? count : capacity;
    memset(static_cast<void*>(grown + clearStart), 0, size_t(newCapacity - clearStart) * sizeof(T));
    data = grown;
    capacity = newCapacity;
    count = n;
    return true;
}

// ZT_ResizeBlock as the value arrays call it: after their three checks of
// the counts and n, numbered from firstCheck in header's series.
template <class T>
bool ZT_ResizeChecked(T*& data, int& count, int& capacity, int n, int step, const char* header, int firstCheck)
{
    ZT_Assert(count >= 0, header, firstCheck);
    ZT_Assert(capacity >= 0, header, firstCheck + 1);
    ZT_Assert(n >= 0, header, firstCheck + 2);
    return ZT_ResizeBlock(data, count, capacity, n, step, ZT_ClearFrom::Capacity);
}
