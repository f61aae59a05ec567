#pragma once

#include "zttl/zt_arraygrow.h"
#include "zttl/zt_report.h"

#include <cstdlib>
#include <cstring>
#include <new>

// Growable array of objects that own heap memory. The block is zero-filled
// on growth, so a new element starts in its all-zero (empty) state.
template <class T>
class ZT_ArrayObVal {
public:
    ZT_ArrayObVal() = default;
    // Copies each element with its copy constructor; assignment is not offered.
    ZT_ArrayObVal(const ZT_ArrayObVal& other)
    {
        RemoveAll();
        for (int i = 0; i < other.count; ++i)
            Add(other.data[i]);
    }
    ZT_ArrayObVal& operator=(const ZT_ArrayObVal&) = delete;
    // Frees the block only: the elements' own memory is released by a derived
    // class (as ZT_StringList does) or not at all.
    virtual ~ZT_ArrayObVal() { ZT_FreeBlock(data, count, capacity); }

    // SetSize(0) frees the block without releasing the elements' own memory.
    bool SetSize(int n)
    {
        return ZT_ResizeChecked(data, count, capacity, n, 4, "zt_arrayobval", 94);
    }

    // Checked access (0-based). A bad index is reported and answered with the
    // first (i < 0) or last element; an empty array answers a shared scratch
    // element.
    T& GetAt(int i)
    {
        if (!data) {
            ReportMessage("E_ ZT_ArrayObVal<T>::[%d] EMPTY", i);
            ZT_Assert(false, "zt_arrayobval", 194);
            static T scratch;
            return scratch;
        }
        if (i < 0) {
            ReportMessage("E_ ZT_ArrayObVal<T>::[%d] ILLEGAL INDEX", i);
            ZT_Assert(false, "zt_arrayobval", 195);
            return data[0];
        }
        if (i < count)
            return data[i];
        ReportMessage("E_ ZT_ArrayObVal<T>::[%d] ILLEGAL INDEX", i);
        ZT_Assert(false, "zt_arrayobval", 196);
        return data[count > 0 ? count - 1 : 0];
    }

    // Copy-constructs element at the end; nothing happens when memory runs out.
    void Add(const T& element)
    {
        int last = count;
        if (SetSize(count + 1))
            new (data + last) T(element);
    }

    // Virtual so that a derived list that owns more (the texts of
    // ZT_StringList) frees it also when cleared through this type.
    virtual void RemoveAll() { SetSize(0); }
    // Element count, allocated capacity, and whether the count is 0.
    int GetSize() const { return count; }
    int GetCapacity() const { return capacity; }
    bool IsEmpty() const { return count == 0; }

protected:
    T* data = nullptr;
    int count = 0;
    int capacity = 0;
};

// One owned copy of a text, or null for no text.
struct ZT_TextElement {
    char* text = nullptr;

    ZT_TextElement() = default;
    // Copies the text; assignment is not offered. There is no destructor: the
    // list that holds the element frees the text.
    ZT_TextElement(const ZT_TextElement& other) { Store(other.text); }
    ZT_TextElement& operator=(const ZT_TextElement&) = delete;

    // Frees the old copy first; an empty or null text stores null.
    void Store(const char* newText)
    {
        free(text);
        text = (newText && *newText) ? strdup(newText) : nullptr;
    }
};

// The list of owned texts that the splitting operations return.
class ZT_StringList : public ZT_ArrayObVal<ZT_TextElement> {
public:
    ZT_StringList() = default;
    // Copy and assignment copy every text.
    ZT_StringList(const ZT_StringList& other) : ZT_ArrayObVal<ZT_TextElement>(other) {}
    ZT_StringList& operator=(const ZT_StringList& other)
    {
        if (this != &other) {
            RemoveAll();
            for (int i = 0; i < other.count; ++i)
                Add(other.data[i].text);
        }
        return *this;
    }
    // Frees the texts and the block.
    ~ZT_StringList() override { FreeTexts(); }

    using ZT_ArrayObVal<ZT_TextElement>::Add;
    // Adds a copy of text; "" and null are stored as null.
    void Add(const char* text)
    {
        int last = count;
        if (SetSize(count + 1))
            data[last].Store(text);
    }

    // Stores a copy of text at i, growing the list to i + 1 elements (the new
    // ones null); i < 0 is ignored.
    void SetAtGrow(int i, const char* text)
    {
        if (i < 0)
            return;
        if (i + 1 >= count && !SetSize(i + 1))
            return;
        data[i].Store(text);
    }

    // Element i; a missing one is first filled with "<not initialized>", so
    // that a statement built from it shows the gap instead of failing.
    const char* GetAtOrInit(int i)
    {
        if (i < 0 || i >= count)
            SetAtGrow(i, "<not initialized>");
        return (i >= 0 && i < count) ? data[i].text : "<not initialized>";
    }

    // Unchecked; null for an element added with an empty text.
    const char* operator[](int i) const { return data[i].text; }

    // Index of the first element equal to text (case-sensitive), or -1. A null
    // text finds the first null or empty element.
    int FindIndex(const char* text) const
    {
        if (!data)
            return -1;
        for (int i = 0; i < count; ++i) {
            const char* element = data[i].text;
            if (!text) {
                if (!element || !*element)
                    return i;
            } else if (element && strcmp(element, text) == 0) {
                return i;
            }
        }
        return -1;
    }

    // Unlike the generic array, the list also frees its texts here.
    void RemoveAll() override
    {
        FreeTexts();
        SetSize(0);
    }

private:
    // Frees every text and leaves the elements null.
    void FreeTexts()
    {
        for (int i = 0; i < count; ++i) {
            free(data[i].text);
            data[i].text = nullptr;
        }
    }
};
