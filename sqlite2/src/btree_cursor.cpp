// Cursors: positions in one tree, found by key again after any change.
//
// A cursor is a stack of the pages from the root down to its entry. On the
// last page the index is the entry's cell; on the pages above it is the child
// taken (Count() for the right child). An interior cell is an entry of its
// own, visited after its left subtree.
//
// After Delete, after a Seek past every entry, or when another cursor removed
// its entry, the cursor stands between entries, after the key it remembers:
// it rests on the entry that follows that key (what Valid, Key and Data then
// see), Next() stays there, Previous() goes to the entry before the key and
// Delete removes the entry rested on.
#include "btree.h"

#include "btree_edit.h"
#include "btree_overflow.h"
#include "btree_page.h"

#include <vector>

namespace sqlite2 {

using namespace btree;

namespace {

struct Level {
    uint32_t page = 0;
    PageHandle handle; // keeps the bytes the view points into alive
    PageView view;
    int index = 0;
};

// Byte order, then length. The keys of table trees (4 bytes) are compared
// as numbers, without a library call: this runs at every step of a search.
int CompareKeys(std::string_view a, std::string_view b)
{
    if (a.size() == 4 && b.size() == 4) {
        const auto* x = reinterpret_cast<const uint8_t*>(a.data());
        const auto* y = reinterpret_cast<const uint8_t*>(b.data());
        const uint32_t left = uint32_t(x[0]) << 24 | uint32_t(x[1]) << 16 | uint32_t(x[2]) << 8 | x[3];
        const uint32_t right = uint32_t(y[0]) << 24 | uint32_t(y[1]) << 16 | uint32_t(y[2]) << 8 | y[3];
        return (left > right) - (left < right);
    }
    int c = a.compare(b);
    return (c > 0) - (c < 0);
}

Status NoEntry()
{
    return {kError, "cursor is not on an entry"};
}

} // namespace

struct Cursor::State {
    enum class Mode { Unset, Entry, Between };

    BTree& tree;
    uint32_t root;
    std::vector<Level> stack;
    Mode mode = Mode::Unset;
    bool onEntry = false;  // the stack ends on an entry
    std::string key;       // the entry's (or the removed entry's) key
    uint64_t seen = 0;     // the tree's change count the stack belongs to
    std::string scratch;   // payloads continued on overflow pages
    std::string otherKey;  // keys compared during a search

    State(BTree& tree, uint32_t root) : tree(tree), root(root) {}

    Status Push(uint32_t page, Pager::Access access = Pager::Access::kAlone);
    Status DescendLeftmost(uint32_t page);
    Status DescendRightmost(uint32_t page);
    Status StepNext();
    Status StepPrevious();
    Status Compare(const Level& level, int cell, std::string_view wanted, int& result);
    Status Descend(std::string_view wanted, bool& found);
    Status ToInsertionPoint();
    Status Locate(std::string_view wanted, bool exact);
    Status Current(CellInfo& cell) const;
    Status ReadKey(std::string& out);
    Status Refresh(const TreeEdit& edit);
    Status Settle(Status status);
    // Rebuilds the stack by key when the tree changed since it was built
    // (inline: every use of a cursor asks, and almost always it has not).
    Status Sync() { return mode == Mode::Unset || seen == tree.ChangeCount() ? Status::Ok() : Relocate(); }
    Status Relocate();
    Path ToPath() const;
};

Status Cursor::State::Push(uint32_t page, Pager::Access access)
{
    Pager& pager = tree.Pages();
    if (stack.size() > size_t(kMaxDepth) || page < 2 || (page > pager.PageCount() && page != root))
        return Status::Corrupt();
    Level level;
    level.page = page;
    if (Status status = pager.Read(page, level.handle, access); !status)
        return status;
    if (!level.view.Load(tree.Order(), level.handle->bytes))
        return Status::Corrupt();
    // Only the root of an empty tree may be without cells.
    if (level.view.Count() == 0 && (page != root || !level.view.IsLeaf()))
        return Status::Corrupt();
    stack.push_back(std::move(level));
    return Status::Ok();
}

// Used by scans in key order only (First, Next), which the pager may read ahead for.
Status Cursor::State::DescendLeftmost(uint32_t page)
{
    for (;;) {
        if (Status status = Push(page, Pager::Access::kScan); !status)
            return status;
        Level& level = stack.back();
        level.index = 0;
        if (level.view.IsLeaf()) {
            onEntry = level.view.Count() > 0;
            return Status::Ok();
        }
        page = level.view.Child(0);
    }
}

Status Cursor::State::DescendRightmost(uint32_t page)
{
    for (;;) {
        if (Status status = Push(page); !status)
            return status;
        Level& level = stack.back();
        if (level.view.IsLeaf()) {
            level.index = level.view.Count() - 1;
            onEntry = level.view.Count() > 0;
            return Status::Ok();
        }
        level.index = level.view.Count();
        page = level.view.RightChild();
    }
}

Status Cursor::State::StepNext()
{
    Level& top = stack.back();
    if (!top.view.IsLeaf()) {
        // After an interior entry comes the smallest entry of the subtree to its right.
        ++top.index;
        return DescendLeftmost(top.view.Child(top.index));
    }
    if (++top.index < top.view.Count())
        return Status::Ok();
    // Past a leaf's last entry: up to the first page left through a left child.
    stack.pop_back();
    while (!stack.empty() && stack.back().index >= stack.back().view.Count())
        stack.pop_back();
    onEntry = !stack.empty();
    return Status::Ok();
}

Status Cursor::State::StepPrevious()
{
    Level& top = stack.back();
    if (!top.view.IsLeaf())
        return DescendRightmost(top.view.Child(top.index));
    if (top.index > 0) {
        --top.index;
        return Status::Ok();
    }
    stack.pop_back();
    while (!stack.empty() && stack.back().index == 0)
        stack.pop_back();
    if (!stack.empty())
        --stack.back().index;
    onEntry = !stack.empty();
    return Status::Ok();
}

Status Cursor::State::Compare(const Level& level, int cell, std::string_view wanted, int& result)
{
    CellInfo info = level.view.Cell(cell);
    if (!info.fits)
        return Status::Corrupt();
    if (info.KeyIsLocal()) {
        result = CompareKeys(info.LocalKey(), wanted);
        return Status::Ok();
    }
    // The local bytes start the key: they often decide without the chain.
    std::string_view local(reinterpret_cast<const char*>(info.local), maxLocalPayload);
    result = CompareKeys(local, wanted.substr(0, maxLocalPayload));
    if (result != 0 || wanted.size() <= size_t(maxLocalPayload)) {
        result = result ? result : 1;
        return Status::Ok();
    }
    if (Status status = ReadPayload(tree.Pages(), tree.Order(), info, 0, info.keyLength, otherKey); !status)
        return status;
    result = CompareKeys(otherKey, wanted);
    return Status::Ok();
}

// Down from the root to the entry with this key (found), or to the place on
// a leaf where it would be inserted.
Status Cursor::State::Descend(std::string_view wanted, bool& found)
{
    // Pages of the current stack are still good when the tree has not
    // changed: the upper levels of one search are mostly those of the last.
    const bool unchanged = seen == tree.ChangeCount();
    onEntry = false;
    found = false;
    uint32_t page = root;
    for (size_t depth = 0;; ++depth) {
        if (!unchanged || depth >= stack.size() || stack[depth].page != page) {
            stack.resize(depth);
            if (Status status = Push(page); !status)
                return status;
        }
        Level& level = stack[depth];
        int low = 0, high = level.view.Count();
        while (low < high) {
            const int middle = (low + high) / 2;
            int order = 0;
            if (Status status = Compare(level, middle, wanted, order); !status)
                return status;
            if (order == 0) {
                level.index = middle;
                found = onEntry = true;
                stack.resize(depth + 1);
                return Status::Ok();
            }
            if (order < 0)
                low = middle + 1;
            else
                high = middle;
        }
        level.index = low;
        if (level.view.IsLeaf()) {
            stack.resize(depth + 1);
            return Status::Ok();
        }
        page = level.view.Child(low);
    }
}

// From a leaf's insertion point to the smallest entry after it.
Status Cursor::State::ToInsertionPoint()
{
    Level& leaf = stack.back();
    if (leaf.index < leaf.view.Count()) {
        onEntry = true;
        return Status::Ok();
    }
    if (leaf.view.Count() == 0) {
        onEntry = false;
        return Status::Ok();
    }
    leaf.index = leaf.view.Count() - 1;
    onEntry = true;
    return StepNext();
}

// Finds the place of a key again: on it when it exists and `exact`,
// otherwise on the smallest larger entry, between entries.
Status Cursor::State::Locate(std::string_view wanted, bool exact)
{
    bool found = false;
    if (Status status = Descend(wanted, found); !status)
        return status;
    if (found && exact) {
        mode = Mode::Entry;
        return Status::Ok();
    }
    mode = Mode::Between;
    return found ? StepNext() : ToInsertionPoint();
}

Status Cursor::State::Current(CellInfo& cell) const
{
    if (!onEntry)
        return NoEntry();
    const Level& level = stack.back();
    cell = level.view.Cell(level.index);
    return cell.fits ? Status::Ok() : Status::Corrupt();
}

Status Cursor::State::ReadKey(std::string& out)
{
    CellInfo cell;
    if (Status status = Current(cell); !status)
        return status;
    if (cell.KeyIsLocal()) {
        out.assign(cell.LocalKey());
        return Status::Ok();
    }
    return ReadPayload(tree.Pages(), tree.Order(), cell, 0, cell.keyLength, out);
}

// After a change that put cells on other pages, the way down is searched
// again; otherwise only the pages written are read again, the stack stays.
Status Cursor::State::Refresh(const TreeEdit& edit)
{
    for (Level& level : stack) {
        if (!edit.Changed(level.page))
            continue;
        if (Status status = tree.Pages().Read(level.page, level.handle); !status)
            return status;
        if (!level.view.Load(tree.Order(), level.handle->bytes) || level.index >= level.view.Count())
            return Status::Corrupt();
    }
    onEntry = true;
    return Status::Ok();
}

// Ends a move: the cursor remembers the key of its new entry, or forgets
// its place when the move failed or left the tree.
Status Cursor::State::Settle(Status status)
{
    seen = tree.ChangeCount();
    if (status && onEntry)
        status = ReadKey(key);
    if (!status || !onEntry) {
        mode = Mode::Unset;
        onEntry = false;
        stack.clear();
        return status;
    }
    mode = Mode::Entry;
    return status;
}

// Sync for a tree that changed: the stack is found again by key.
Status Cursor::State::Relocate()
{
    Status status = Locate(key, mode == Mode::Entry);
    seen = tree.ChangeCount();
    if (!status) {
        mode = Mode::Unset;
        onEntry = false;
        stack.clear();
    }
    return status;
}

Path Cursor::State::ToPath() const
{
    Path path;
    for (const Level& level : stack)
        path.push_back({level.page, level.index});
    return path;
}

Cursor::Cursor(BTree& tree, uint32_t root) : state(std::make_shared<State>(tree, root)) {}

bool Cursor::Valid() const
{
    return state->Sync() && state->onEntry;
}

Status Cursor::First()
{
    state->stack.clear();
    return state->Settle(state->DescendLeftmost(state->root));
}

Status Cursor::Last()
{
    state->stack.clear();
    return state->Settle(state->DescendRightmost(state->root));
}

Status Cursor::Next()
{
    if (Status status = state->Sync(); !status)
        return status;
    if (state->mode == State::Mode::Between)
        return state->Settle(Status::Ok()); // already on the entry that followed
    if (!state->onEntry)
        return Status::Ok();
    return state->Settle(state->StepNext());
}

Status Cursor::Previous()
{
    if (Status status = state->Sync(); !status)
        return status;
    if (state->mode == State::Mode::Between && !state->onEntry) {
        // The removed entry was the last one: the entry before it is now last.
        state->stack.clear();
        return state->Settle(state->DescendRightmost(state->root));
    }
    if (!state->onEntry)
        return Status::Ok();
    return state->Settle(state->StepPrevious());
}

Status Cursor::Seek(std::string_view key, bool& found)
{
    State& s = *state;
    Status status = s.Descend(key, found);
    if (status && !found)
        status = s.ToInsertionPoint();
    if (status && !s.onEntry) {
        // Past every entry, the cursor still stands after them: Previous()
        // goes to the last one.
        s.mode = State::Mode::Between;
        s.key = key;
        s.seen = s.tree.ChangeCount();
        return status;
    }
    return s.Settle(status);
}

Status Cursor::Key(std::string& key)
{
    if (Status status = state->Sync(); !status)
        return status;
    return state->ReadKey(key);
}

Status Cursor::Data(std::string& data)
{
    if (Status status = state->Sync(); !status)
        return status;
    CellInfo cell;
    if (Status status = state->Current(cell); !status)
        return status;
    if (cell.Payload() <= uint64_t(maxLocalPayload)) {
        data.assign(reinterpret_cast<const char*>(cell.local) + cell.keyLength, cell.dataLength);
        return Status::Ok();
    }
    return ReadPayload(state->tree.Pages(), state->tree.Order(), cell, cell.keyLength, cell.dataLength, data);
}

Status Cursor::Payload(std::string_view& key, std::string_view& data)
{
    if (Status status = state->Sync(); !status)
        return status;
    CellInfo cell;
    if (Status status = state->Current(cell); !status)
        return status;
    std::string_view whole;
    if (cell.Payload() <= uint64_t(maxLocalPayload)) {
        whole = {reinterpret_cast<const char*>(cell.local), size_t(cell.Payload())};
    } else {
        Status status =
            ReadPayload(state->tree.Pages(), state->tree.Order(), cell, 0, size_t(cell.Payload()), state->scratch);
        if (!status)
            return status;
        whole = state->scratch;
    }
    key = whole.substr(0, cell.keyLength);
    data = whole.substr(cell.keyLength);
    return Status::Ok();
}

Status Cursor::Insert(std::string_view key, std::string_view data)
{
    // 2.x has no empty cells: a cell holds at least one payload byte.
    if (key.empty() && data.empty())
        return {kError, "empty entry"};
    State& s = *state;
    bool found = false;
    if (Status status = s.Descend(key, found); !status)
        return s.Settle(status);
    TreeEdit edit(s.tree, s.root);
    Status status = found ? edit.Replace(s.ToPath(), key, data) : edit.Insert(s.ToPath(), key, data);
    s.tree.NoteChange();
    if (status)
        status = edit.Restructured() ? s.Descend(key, found) : s.Refresh(edit);
    return s.Settle(status);
}

Status Cursor::Delete()
{
    State& s = *state;
    if (Status status = s.Sync(); !status)
        return status;
    // Between entries (after an earlier Delete) the entry rested on goes.
    std::string removed;
    if (Status status = s.ReadKey(removed); !status)
        return status;
    TreeEdit edit(s.tree, s.root);
    Status status = edit.Remove(s.ToPath());
    s.tree.NoteChange();
    s.key = std::move(removed);
    if (status)
        status = s.Locate(s.key, false);
    s.seen = s.tree.ChangeCount();
    if (!status) {
        s.mode = State::Mode::Unset;
        s.onEntry = false;
        s.stack.clear();
    }
    return status;
}

} // namespace sqlite2
