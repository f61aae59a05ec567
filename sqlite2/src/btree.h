#pragma once

#include "format.h"
#include "pager.h"

#include <string>
#include <string_view>

namespace sqlite2 {

// The B-trees of a 2.x file over a Pager: page 1 (byte order, meta values,
// free list) and tree creation and removal. Every change keeps the file
// acceptable to real SQLite 2.8: balanced trees, every non-root page with at
// least one cell, cells and free blocks covering each page, exact overflow
// chains, an exact free list.
//
// All calls need the pager reading; calls that change anything need it
// writing. Page 1 is read again by ReadHeader, which the owner calls after
// every BeginRead (the cache was forgotten, another program may have
// written).
class BTree {
public:
    explicit BTree(Pager& pager) : pager(pager) {}

    Pager& Pages() { return pager; }

    // Reads page 1. An empty database (no pages, or page 1 all zeros and no
    // page 2) is fine: IsEmpty() is then true. NotADatabase for a wrong magic
    // text or integer; "unsupported file format" (kError) for a format above 4.
    Status ReadHeader();
    bool IsEmpty() const { return empty; }
    const ByteOrder& Order() const { return order; }

    // Makes an empty database a 2.x database: page 1 in the native byte
    // order and an empty schema root on page 2 (writing only).
    Status Initialize();

    // Meta values by their offset on page 1: 60 schema cookie, 64 file
    // format, 68 cache size, 72 synchronous (0 for an empty database).
    uint32_t Meta(int offset) const;
    Status SetMeta(int offset, uint32_t value);

    // A new empty tree; its root page never moves.
    Status CreateTree(uint32_t& root);
    // Every page of the tree (overflow pages included) goes to the free list.
    Status DropTree(uint32_t root);

    // Free list: a page taken from it (or the file grown by one page), and a
    // page given back to it.
    Status AllocatePage(uint32_t& page);
    Status FreePage(uint32_t page);

    // Bumped by every change to any tree, so that cursors know when to find
    // their place again.
    uint64_t ChangeCount() const { return changes; }
    void NoteChange() { ++changes; }

private:
    Status Grow(uint32_t& page);

    Pager& pager;
    ByteOrder order;
    bool empty = true;
    uint64_t changes = 0;
};

// A position in one B-tree, in key order. Keys compare as unsigned byte
// strings, a prefix before its extensions. A cursor survives changes made
// through other cursors (or itself): it finds its place again by its key.
class Cursor {
public:
    Cursor(BTree& tree, uint32_t root);

    // Valid() is false on an empty tree or after stepping off either end.
    bool Valid() const;

    Status First();
    Status Last();
    Status Next();
    Status Previous();

    // Moves to the entry with this key if there is one (found = true),
    // otherwise to the smallest entry with a larger key (Valid() is false
    // when every key is smaller).
    Status Seek(std::string_view key, bool& found);

    // The key and data of the current entry, overflow chains followed.
    Status Key(std::string& key);
    Status Data(std::string& data);
    // Both at once, the cheap way when the payload is on one page: the views
    // stay valid until the cursor moves or the tree changes.
    Status Payload(std::string_view& key, std::string_view& data);

    // Adds the entry, or replaces the data of the entry with this key. The
    // cursor is left on the entry.
    Status Insert(std::string_view key, std::string_view data);
    // Removes the current entry; Next() then moves to the entry that
    // followed it, Previous() to the one before.
    Status Delete();

private:
    struct State;
    std::shared_ptr<State> state;
};

} // namespace sqlite2
