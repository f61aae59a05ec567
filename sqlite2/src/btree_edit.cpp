// Adding, replacing and removing entries, and balancing the pages afterwards.
#include "btree_edit.h"

#include "btree_overflow.h"

#include <algorithm>

namespace sqlite2::btree {

namespace {

// A page that lost cells is balanced with its siblings once it is less than
// a third full: fewer rebalances than at half, and no page stays nearly empty.
constexpr int kUnderfull = kUsableSpace / 3;

// Siblings balanced together: the page and up to two neighbours.
constexpr int kSiblings = 3;

} // namespace

Status TreeEdit::Load(uint32_t page, Node*& node)
{
    if (auto found = nodes.find(page); found != nodes.end()) {
        node = &found->second.node;
        return Status::Ok();
    }
    Pager& pager = tree.Pages();
    if (page < 2 || (page > pager.PageCount() && page != root))
        return Status::Corrupt();
    PageHandle handle;
    if (Status status = pager.Read(page, handle); !status)
        return status;
    PageView view;
    if (!view.Load(tree.Order(), handle->bytes))
        return Status::Corrupt();
    Cached& cached = nodes[page];
    cached.node = DecodeNode(view);
    cached.originalUsed = cached.node.Used();
    node = &cached.node;
    return Status::Ok();
}

Node& TreeEdit::Change(uint32_t page)
{
    Cached& cached = nodes[page];
    cached.dirty = true;
    return cached.node;
}

Status TreeEdit::MakeCell(std::string_view key, std::string_view data, const std::vector<uint32_t>& reuse,
                          NodeCell& cell)
{
    if (key.size() > kMaxFieldLength || data.size() > kMaxFieldLength)
        return {kError, "string or blob too big"};
    cell.keyLength = uint32_t(key.size());
    cell.dataLength = uint32_t(data.size());
    std::string payload;
    payload.reserve(key.size() + data.size());
    payload.append(key).append(data);
    const size_t local = std::min<size_t>(payload.size(), maxLocalPayload);
    cell.SetLocal(payload.data(), local);
    return WriteChain(tree, std::string_view(payload).substr(local), reuse, cell.overflow);
}

Status TreeEdit::Insert(const Path& path, std::string_view key, std::string_view data)
{
    Node* leaf = nullptr;
    if (Status status = Load(path.back().page, leaf); !status)
        return status;
    const size_t index = size_t(path.back().index);
    if (!leaf->IsLeaf() || index > leaf->cells.size())
        return Status::Corrupt();
    NodeCell cell;
    if (Status status = MakeCell(key, data, {}, cell); !status)
        return status;
    Node& changed = Change(path.back().page);
    changed.cells.insert(changed.cells.begin() + ptrdiff_t(index), std::move(cell));
    return Rebalance(path);
}

Status TreeEdit::CellAt(const Path& path, Node*& node, size_t& index)
{
    if (Status status = Load(path.back().page, node); !status)
        return status;
    index = size_t(path.back().index);
    return index < node->cells.size() ? Status::Ok() : Status::Corrupt();
}

Status TreeEdit::Replace(const Path& path, std::string_view key, std::string_view data)
{
    Node* node = nullptr;
    size_t index = 0;
    if (Status status = CellAt(path, node, index); !status)
        return status;
    const NodeCell& old = node->cells[index];
    std::vector<uint32_t> chain;
    if (Status status = ChainPages(tree.Pages(), tree.Order(), old.overflow, old.Payload(), chain); !status)
        return status;
    NodeCell cell;
    if (Status status = MakeCell(key, data, chain, cell); !status)
        return status;
    cell.leftChild = old.leftChild;
    Change(path.back().page).cells[index] = std::move(cell);
    return Rebalance(path);
}

Status TreeEdit::Remove(Path path)
{
    Node* node = nullptr;
    size_t index = 0;
    if (Status status = CellAt(path, node, index); !status)
        return status;
    const uint32_t page = path.back().page;
    NodeCell removed = std::move(node->cells[index]);
    if (Status status = FreeChain(tree, removed.overflow, removed.Payload()); !status)
        return status;
    if (node->IsLeaf()) {
        Node& leaf = Change(page);
        leaf.cells.erase(leaf.cells.begin() + ptrdiff_t(index));
        return Rebalance(path);
    }
    // An interior entry also separates two subtrees: the first entry of the
    // subtree after it takes its place, and that entry's leaf shrinks.
    path.back().index = int(index + 1);
    uint32_t below = node->Child(index + 1);
    for (;;) {
        Node* child = nullptr;
        if (path.size() > size_t(kMaxDepth))
            return Status::Corrupt();
        if (Status status = Load(below, child); !status)
            return status;
        path.push_back({below, 0});
        if (child->IsLeaf())
            break;
        below = child->Child(0);
    }
    Node& leaf = Change(path.back().page);
    if (leaf.cells.empty())
        return Status::Corrupt();
    NodeCell next = std::move(leaf.cells.front());
    leaf.cells.erase(leaf.cells.begin());
    next.leftChild = removed.leftChild;
    Change(page).cells[index] = std::move(next);
    return Rebalance(path);
}

bool TreeEdit::Changed(uint32_t page) const
{
    auto found = nodes.find(page);
    return found != nodes.end() && found->second.dirty;
}

bool TreeEdit::NeedsBalance(uint32_t page) const
{
    auto found = nodes.find(page);
    if (found == nodes.end() || !found->second.dirty)
        return false;
    const Cached& cached = found->second;
    const int used = cached.node.Used();
    return used > kUsableSpace || cached.node.cells.empty() || (used < kUnderfull && used < cached.originalUsed);
}

Status TreeEdit::Rebalance(const Path& path)
{
    // Balancing a page changes its parent, the next page up the path; pages
    // higher up keep their place, so the path stays valid as it is climbed.
    for (size_t depth = path.size() - 1; depth > 0; --depth)
        if (NeedsBalance(path[depth].page))
            if (Status status = BalanceChildren(path[depth - 1].page, path[depth - 1].index); !status)
                return status;
    if (Status status = FixRoot(); !status)
        return status;
    return Flush();
}

Status TreeEdit::LoadSiblings(uint32_t parentPage, int first, int count, std::vector<uint32_t>& pages)
{
    Node* parent = nullptr;
    if (Status status = Load(parentPage, parent); !status)
        return status;
    pages.clear();
    bool leaves = false;
    for (int j = 0; j < count; ++j) {
        const uint32_t page = parent->Child(size_t(first + j));
        // A page listed twice or pointing back up would be merged with itself.
        if (page == parentPage || page == root || std::find(pages.begin(), pages.end(), page) != pages.end())
            return Status::Corrupt();
        Node* sibling = nullptr;
        if (Status status = Load(page, sibling); !status)
            return status;
        if (j == 0)
            leaves = sibling->IsLeaf();
        else if (sibling->IsLeaf() != leaves)
            return Status::Corrupt();
        pages.push_back(page);
    }
    return Status::Ok();
}

Status TreeEdit::AssignPages(std::vector<uint32_t>& pages, size_t wanted)
{
    while (pages.size() < wanted) {
        uint32_t page = 0;
        if (Status status = tree.AllocatePage(page); !status)
            return status;
        nodes.erase(page);
        pages.push_back(page);
    }
    while (pages.size() > wanted) {
        nodes.erase(pages.back());
        if (Status status = tree.FreePage(pages.back()); !status)
            return status;
        pages.pop_back();
    }
    return Status::Ok();
}

// Spreads the cells of a child page and its neighbours, with the parent's
// cells between them, over as many pages as they need: splits a page that
// holds too much, merges pages that hold little. All pages stay on one level.
Status TreeEdit::BalanceChildren(uint32_t parentPage, int child)
{
    restructured = true;
    Node* parent = nullptr;
    if (Status status = Load(parentPage, parent); !status)
        return status;
    const int children = int(parent->cells.size()) + 1;
    const int count = std::min(kSiblings, children);
    const int first = std::clamp(child - 1, 0, children - count);
    std::vector<uint32_t> pages;
    if (Status status = LoadSiblings(parentPage, first, count, pages); !status)
        return status;

    // The cells in key order; a separator takes the right child of the page
    // before it as its left child.
    std::vector<NodeCell> items;
    uint32_t lastRight = 0;
    for (int j = 0; j < count; ++j) {
        Node& sibling = nodes[pages[size_t(j)]].node;
        for (NodeCell& cell : sibling.cells)
            items.push_back(std::move(cell));
        lastRight = sibling.rightChild;
        if (j + 1 < count) {
            NodeCell& separator = parent->cells[size_t(first + j)];
            separator.leftChild = sibling.rightChild;
            items.push_back(std::move(separator));
        }
    }
    Node& newParent = Change(parentPage);
    newParent.cells.erase(newParent.cells.begin() + first, newParent.cells.begin() + first + count - 1);

    std::vector<int> sizes;
    for (const NodeCell& cell : items)
        sizes.push_back(cell.Size());
    const std::vector<size_t> dividers = Partition(sizes);
    if (Status status = AssignPages(pages, dividers.size() + 1); !status)
        return status;

    std::vector<NodeCell> separators;
    size_t start = 0;
    for (size_t m = 0; m < pages.size(); ++m) {
        const bool last = m + 1 == pages.size();
        const size_t end = last ? items.size() : dividers[m];
        Node& node = Change(pages[m]);
        node.cells.assign(std::make_move_iterator(items.begin() + ptrdiff_t(start)),
                          std::make_move_iterator(items.begin() + ptrdiff_t(end)));
        node.rightChild = last ? lastRight : items[end].leftChild;
        if (!last) {
            separators.push_back(std::move(items[end]));
            separators.back().leftChild = pages[m];
        }
        start = end + 1;
    }
    newParent.cells.insert(newParent.cells.begin() + first, std::make_move_iterator(separators.begin()),
                           std::make_move_iterator(separators.end()));
    newParent.SetChild(size_t(first) + separators.size(), pages.back());
    return Status::Ok();
}

// The root never moves: it grows the tree by handing its content to a new
// child that is then split, and shrinks it by taking over the content of
// its only child.
Status TreeEdit::FixRoot()
{
    if (nodes.find(root) == nodes.end())
        return Status::Ok();
    for (int round = 0; round < kMaxDepth; ++round) {
        Node& node = nodes[root].node;
        if (node.Used() > kUsableSpace) {
            uint32_t page = 0;
            if (Status status = tree.AllocatePage(page); !status)
                return status;
            nodes.erase(page);
            Change(page) = std::move(node);
            Change(root) = Node{{}, {}};
            Change(root).rightChild = page;
            if (Status status = BalanceChildren(root, 0); !status)
                return status;
        } else if (node.cells.empty() && node.rightChild) {
            const uint32_t page = node.rightChild;
            Node* only = nullptr;
            if (page == root)
                return Status::Corrupt();
            if (Status status = Load(page, only); !status)
                return status;
            restructured = true;
            Change(root) = std::move(*only);
            nodes.erase(page);
            if (Status status = tree.FreePage(page); !status)
                return status;
        } else {
            return Status::Ok();
        }
    }
    return Status::Corrupt();
}

Status TreeEdit::Flush()
{
    uint8_t content[pageSize];
    for (const auto& [page, cached] : nodes) {
        if (!cached.dirty)
            continue;
        if (cached.node.Used() > kUsableSpace || (page != root && cached.node.cells.empty()))
            return {kError, "internal error: unbalanced page"};
        EncodeNode(tree.Order(), cached.node, content);
        if (Status status = WritePageIfChanged(tree.Pages(), page, content); !status)
            return status;
    }
    return Status::Ok();
}

} // namespace sqlite2::btree
