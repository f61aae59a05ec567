#pragma once

// Growable array of pointers to objects. The array deletes an object only
// through RemoveAt, Remove and RemoveAll; its destructor frees the slots alone.
class ZT_ArrayPtrBase {
public:
    ZT_ArrayPtrBase() = default;
    ZT_ArrayPtrBase(const ZT_ArrayPtrBase&) = delete;
    ZT_ArrayPtrBase& operator=(const ZT_ArrayPtrBase&) = delete;
    ~ZT_ArrayPtrBase();

    int GetSize() const { return count; }
    int GetCapacity() const { return capacity; }
    bool IsValidIndex(int i) const { return i >= 0 && i < count; }
    bool SetSize(int n);

protected:
    void* GetSlot(int i) const;
    void SetSlotGrow(int i, void* p);
    int FindSlot(const void* p) const;
    // Removes slot i and returns what it held (the caller deletes it).
    void* TakeAt(int i);

    int count = 0;
    int capacity = 0;
    int growBy = 7;
    void** data = nullptr;
};

template <class T>
class ZT_ArrayPtr : public ZT_ArrayPtrBase {
public:
    ~ZT_ArrayPtr() = default;

    // Null, after a diagnostic, for a bad index.
    T* GetAt(int i) const { return static_cast<T*>(GetSlot(i)); }
    T* operator[](int i) const { return GetAt(i); }
    void SetAtGrow(int i, T* p) { SetSlotGrow(i, p); }
    void Add(T* p) { SetSlotGrow(count, p); }
    int FindIndex(const T* p) const { return FindSlot(p); }
    void RemoveAt(int i) { delete static_cast<T*>(TakeAt(i)); }
    void Remove(const T* p) { RemoveAt(FindIndex(p)); }
    void RemoveAll()
    {
        for (int i = 0; i < count; ++i) {
            delete static_cast<T*>(data[i]);
            data[i] = nullptr;
        }
        SetSize(0);
    }
};
