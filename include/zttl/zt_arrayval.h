#pragma once

#include "zttl/zt_arraygrow.h"
#include "zttl/zt_report.h"

#include <cstdlib>
#include <cstring>

// Growable array of plain values, copied bitwise. Growth is in steps of 16
// elements measured from the count, so short arrays stay small.
template <class T>
class ZT_ArrayVal {
public:
    ZT_ArrayVal() = default;
    // Copy and assignment copy the elements bitwise.
    ZT_ArrayVal(const ZT_ArrayVal& other) { CopyFrom(other); }
    ZT_ArrayVal& operator=(const ZT_ArrayVal& other)
    {
        if (this != &other) {
            SetSize(0);
            CopyFrom(other);
        }
        return *this;
    }
    // Frees the block.
    virtual ~ZT_ArrayVal() { ZT_FreeBlock(data, count, capacity); }

    // Sets the count; growth zero-fills the new elements, SetSize(0) frees the
    // block. False when memory runs out (the array is unchanged).
    bool SetSize(int n)
    {
        return ZT_ResizeChecked(data, count, capacity, n, 16, "zt_arrayval", 90);
    }

    // Gives back storage once more than half of the block is unused.
    void FreeExtra()
    {
        if (!data)
            return;
        if (count == 0) {
            free(data);
            data = nullptr;
            capacity = 0;
            return;
        }
        if (capacity - count > capacity / 2) {
            T* shrunk = static_cast<T*>(realloc(data, size_t(count + 1) * sizeof(T)));
            if (!shrunk)
                return;
            data = shrunk;
            capacity = count + 1;
        }
    }

    // Checked access (0-based): a bad index is reported and answered with the
    // nearest element; an empty array answers T() (the non-const form a shared
    // scratch element).
    T GetAt(int i) const
    {
        const T* element = Checked(i, 188);
        return element ? *element : T();
    }
    T& GetAt(int i)
    {
        T* element = const_cast<T*>(Checked(i, 199));
        if (element)
            return *element;
        static T scratch;
        scratch = T();
        return scratch;
    }

    // Stores value at i (0-based), growing to i + 1 elements when needed; i < 0 is
    // ignored.
    void SetAtGrow(int i, const T& value)
    {
        if (i < 0)
            return;
        if (i + 1 >= count && !SetSize(i + 1))
            return;
        data[i] = value;
    }

    // Element count, allocated capacity and the raw block (null when empty).
    int GetSize() const { return count; }
    int GetCapacity() const { return capacity; }
    const T* GetData() const { return data; }

protected:
    T* data = nullptr;
    int count = 0;
    int capacity = 0;

private:
    // firstLine is the number of the "EMPTY" check; the two index checks take
    // the next two numbers.
    const T* Checked(int i, int firstLine) const
    {
        if (!data) {
            ReportMessage("E_ ZT_ArrayVal<T>::[%d] EMPTY", i);
            ZT_Assert(false, "zt_arrayval", firstLine);
            return nullptr;
        }
        if (i < 0) {
            ReportMessage("E_ ZT_ArrayVal<T>::[%d] ILLEGAL INDEX", i);
            ZT_Assert(false, "zt_arrayval", firstLine + 1);
            return data;
        }
        if (i < count)
            return data + i;
        ReportMessage("E_ ZT_ArrayVal<T>::[%d] ILLEGAL INDEX", i);
        ZT_Assert(false, "zt_arrayval", firstLine + 2);
        return count > 0 ? data + count - 1 : data;
    }

    // Takes the elements of other into this array, which must be empty.
    void CopyFrom(const ZT_ArrayVal& other)
    {
        if (other.count > 0 && SetSize(other.count))
            memcpy(static_cast<void*>(data), other.data, size_t(other.count) * sizeof(T));
    }
};
