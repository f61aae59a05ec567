#pragma once

#include "zttl/zt_report.h"

#include <cstdlib>
#include <cstring>
#include <strings.h>

// Sorted map from case-insensitive text keys to object pointers. Insertion
// shifts entries; lookups are binary searches. With DeleteValues the map
// owns its values and deletes them when cleared or replaced on request.
template <class T, bool DeleteValues = false>
class ZT_StringMap {
public:
    ZT_StringMap() = default;
    ZT_StringMap(const ZT_StringMap&) = delete;
    ZT_StringMap& operator=(const ZT_StringMap&) = delete;
    // Frees the keys, and the values when the map owns them.
    ~ZT_StringMap() { RemoveAll(); }

    // Stores value under key; an existing key keeps its first spelling and is
    // only overwritten with replace (deleting the old value with deleteOld).
    // False for a null key, a refused replacement, or when memory runs out:
    // then the failure is reported and the map is left exactly as it was.
    bool SetAt(const char* key, T* value, bool replace = true, bool deleteOld = false)
    {
        if (!key)
            return false;
        int p = LowerBound(key);
        if (p < count && Compare(key, data[p].key) == 0) {
            if (!replace)
                return false;
            if (deleteOld && data[p].value)
                delete data[p].value;
            data[p].value = value;
            return true;
        }
        // Both allocations come before any change, so a failure undoes nothing.
        char* copy = nullptr;
        if (*key && !(copy = strdup(key)))
            return OutOfMemory(key);
        if (!RoomForOneMore()) {
            free(copy);
            return OutOfMemory(key);
        }
        data[count] = Entry();
        if (p < count) {
            memmove(data + p + 1, data + p, size_t(count - p) * sizeof(Entry));
            data[p] = Entry();
        }
        data[p].key = copy;
        data[p].value = value;
        ++count;
        return true;
    }

    // 0-based index of key (case-insensitive), or -1; null and "" are never found.
    int FindIndex(const char* key) const
    {
        if (!key || !*key)
            return -1;
        ZT_Assert(count >= 0, "zt_stringmap", 305);
        if (count == 0)
            return -1;
        ZT_Assert(data != nullptr, "zt_stringmap", 311);
        int p = LowerBound(key);
        return (p < count && Compare(key, data[p].key) == 0) ? p : -1;
    }

    // The value stored under key, or null; Contains says whether key is there.
    T* Lookup(const char* key) const
    {
        int i = FindIndex(key);
        return i >= 0 ? data[i].value : nullptr;
    }
    bool Contains(const char* key) const { return FindIndex(key) >= 0; }

    // Key and value at index i in key order, or null for a bad index. The key
    // belongs to the map.
    const char* KeyAt(int i) const
    {
        ZT_Assert(count >= 0, "zt_stringmap", 295);
        if (i < 0 || i >= count)
            return nullptr;
        ZT_Assert(data != nullptr, "zt_stringmap", 298);
        return data[i].key;
    }
    T* ValueAt(int i) const { return (i >= 0 && i < count) ? data[i].value : nullptr; }

    // Index of the first entry holding value (by address), or -1.
    int ValueIndex(const T* value) const
    {
        for (int i = 0; i < count; ++i)
            if (data[i].value == value)
                return i;
        return -1;
    }

    // The value is not deleted.
    void RemoveAt(int i)
    {
        if (i < 0 || i >= count)
            return;
        free(data[i].key);
        memmove(data + i, data + i + 1, size_t(count - i - 1) * sizeof(Entry));
        --count;
    }
    // Removes the entry of value without deleting it.
    void Remove(const T* value) { RemoveAt(ValueIndex(value)); }

    // Frees the keys and the block; deletes the values only with DeleteValues.
    void RemoveAll()
    {
        for (int i = 0; i < count; ++i) {
            free(data[i].key);
            if constexpr (DeleteValues)
                delete data[i].value;
        }
        free(data);
        data = nullptr;
        count = 0;
        capacity = 0;
    }

    // Entry count and whether it is 0.
    int GetSize() const { return count; }
    bool IsEmpty() const { return count == 0; }

private:
    struct Entry {
        void* reserved = nullptr;
        char* key = nullptr;
        T* value = nullptr;
    };

    // The first block holds 4 entries and each growth adds 4. A failed
    // reallocation keeps the old block, which is still valid.
    bool RoomForOneMore()
    {
        if (!data) {
            Entry* block = static_cast<Entry*>(calloc(4, sizeof(Entry)));
            if (!block)
                return false;
            data = block;
            capacity = 4;
        } else if (count + 1 > capacity) {
            Entry* block = static_cast<Entry*>(realloc(data, size_t(capacity + 4) * sizeof(Entry)));
            if (!block)
                return false;
            data = block;
            capacity += 4;
        }
        return true;
    }

    // Reports the failure and answers false for SetAt.
    static bool OutOfMemory(const char* key)
    {
        ReportMessage("E_ ZT_StringMap::SetAt() out of memory, \"%s\" not added", key);
        return false;
    }

    // Case-insensitive, null as "".
    static int Compare(const char* a, const char* b) { return strcasecmp(a ? a : "", b ? b : ""); }

    // Position of the first entry whose key is not less than key.
    int LowerBound(const char* key) const
    {
        if (!key || count == 0)
            return 0;
        if (data[count - 1].key && Compare(key, data[count - 1].key) > 0)
            return count;
        if (data[0].key && Compare(data[0].key, key) > 0)
            return 0;
        int lo = 0;
        int hi = count - 1;
        while (hi - lo > 0) {
            int mid = (lo + hi) / 2;
            int order = Compare(key, data[mid].key);
            if (order > 0)
                lo = mid + 1;
            else if (order < 0)
                hi = mid;
            else
                return mid;
        }
        return Compare(key, data[lo].key) > 0 ? lo + 1 : lo;
    }

    Entry* data = nullptr;
    int count = 0;
    int capacity = 0;
};
