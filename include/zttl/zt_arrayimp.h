#pragma once

// Growable array of pointers to objects. The array deletes an object only
// through RemoveAt, Remove and RemoveAll; its destructor frees the slots alone.
class ZT_ArrayPtrBase {
public:
    // Not copyable: the objects have one owner.
    ZT_ArrayPtrBase() = default;
    ZT_ArrayPtrBase(const ZT_ArrayPtrBase&) = delete;
    ZT_ArrayPtrBase& operator=(const ZT_ArrayPtrBase&) = delete;
    // Frees the slots only; the objects still in the array are not deleted.
    ~ZT_ArrayPtrBase();

    // Count of slots in use and of slots allocated.
    int GetSize() const { return count; }
    int GetCapacity() const { return capacity; }
    // Index bases are 0.
    bool IsValidIndex(int i) const { return i >= 0 && i < count; }
    // Grows in steps of growBy slots, new slots null; shrinking forgets the
    // objects without deleting them, and SetSize(0) frees the block. False when
    // memory runs out (the array is unchanged).
    bool SetSize(int n);

protected:
    // Null, after a diagnostic, for a bad index or an empty array.
    void* GetSlot(int i) const;
    // Stores p at i, growing the array to i + 1 slots when needed; i < 0 is ignored.
    void SetSlotGrow(int i, void* p);
    // Index of p, or -1.
    int FindSlot(const void* p) const;
    // Removes slot i and returns what it held (the caller deletes it).
    void* TakeAt(int i);

    int count = 0;
    int capacity = 0;
    int growBy = 7;
    void** data = nullptr;
};

// The typed face of ZT_ArrayPtrBase: it owns the T objects put into it.
template <class T>
class ZT_ArrayPtr : public ZT_ArrayPtrBase {
public:
    ~ZT_ArrayPtr() = default;

    // Null, after a diagnostic, for a bad index.
    T* GetAt(int i) const { return static_cast<T*>(GetSlot(i)); }
    T* operator[](int i) const { return GetAt(i); }
    // Takes ownership of p. A slot that is overwritten is not deleted.
    void SetAtGrow(int i, T* p) { SetSlotGrow(i, p); }
    // Takes ownership of p.
    void Add(T* p) { SetSlotGrow(count, p); }
    // Index of p (compared by address), or -1.
    int FindIndex(const T* p) const { return FindSlot(p); }
    // RemoveAt and Remove delete the object and close the gap; a bad index or an
    // unknown object does nothing.
    void RemoveAt(int i) { delete static_cast<T*>(TakeAt(i)); }
    void Remove(const T* p) { RemoveAt(FindIndex(p)); }
    // Deletes every object and frees the slots.
    void RemoveAll()
    {
        for (int i = 0; i < count; ++i) {
            delete static_cast<T*>(data[i]);
            data[i] = nullptr;
        }
        SetSize(0);
    }
};
