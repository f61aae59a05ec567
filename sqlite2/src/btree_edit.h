#pragma once

// One change to one tree: an entry added, replaced or removed, then the pages
// along its path balanced so that the file's invariants hold again. The
// pages involved are decoded once, changed in memory (where a page may
// briefly hold too much or nothing) and written back at the end, each only
// if its bytes changed.
#include "btree.h"
#include "btree_page.h"

#include <map>
#include <vector>

namespace sqlite2::btree {

// One step of the way down from the root: the page and the child taken from
// it; on the last page, the cell.
struct PathStep {
    uint32_t page = 0;
    int index = 0;
};
using Path = std::vector<PathStep>;

class TreeEdit {
public:
    TreeEdit(BTree& tree, uint32_t root) : tree(tree), root(root) {}

    // Adds the entry before cell path.back().index of the leaf the path ends on.
    Status Insert(const Path& path, std::string_view key, std::string_view data);
    // Gives the entry the path ends on (whose key is `key`) new data.
    Status Replace(const Path& path, std::string_view key, std::string_view data);
    // Removes the entry the path ends on; an interior entry is replaced by
    // the entry that follows it, taken from a leaf.
    Status Remove(Path path);

    // After a change: whether pages were split, merged or redistributed (the
    // pages along the path may then hold other cells), and whether a page
    // was written.
    bool Restructured() const { return restructured; }
    bool Changed(uint32_t page) const;

private:
    struct Cached {
        Node node;
        int originalUsed = 0; // bytes in use when read, to notice shrinking
        bool dirty = false;
    };

    Status Load(uint32_t page, Node*& node);
    // The node and index of the cell the path ends at; Corrupt when the page
    // has no such cell.
    Status CellAt(const Path& path, Node*& node, size_t& index);
    Node& Change(uint32_t page);
    Status MakeCell(std::string_view key, std::string_view data, const std::vector<uint32_t>& reuse,
                    NodeCell& cell);
    Status Rebalance(const Path& path);
    bool NeedsBalance(uint32_t page) const;
    Status LoadSiblings(uint32_t parentPage, int first, int count, std::vector<uint32_t>& pages);
    Status BalanceChildren(uint32_t parentPage, int child);
    Status AssignPages(std::vector<uint32_t>& pages, size_t wanted);
    Status FixRoot();
    Status Flush();

    BTree& tree;
    uint32_t root;
    std::map<uint32_t, Cached> nodes; // std::map: references stay valid while it grows
    bool restructured = false;
};

// Splits a sequence of cells (sizes in bytes, in key order) over as few pages
// as hold them, evened out: returns the positions of the cells that separate
// the pages (they move up to the parent). Every page gets at least one cell
// when there is any, and at most a page's usable space.
std::vector<size_t> Partition(const std::vector<int>& sizes);

} // namespace sqlite2::btree
