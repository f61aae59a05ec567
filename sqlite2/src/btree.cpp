// Page 1 of a 2.x file and whole trees: creation, clearing, removal.
#include "btree.h"

#include "btree_overflow.h"
#include "btree_page.h"

#include <bit>
#include <unordered_set>

namespace sqlite2 {

namespace {

constexpr int kFirstMeta = 52;
constexpr int kFirstSettableMeta = 60;
constexpr int kMetaEnd = 96;

bool IsAllZero(const uint8_t* bytes, size_t size)
{
    for (size_t i = 0; i < size; ++i)
        if (bytes[i])
            return false;
    return true;
}

// Collects every page of the tree below `page` (overflow chains included),
// each once; a page reached twice is corruption.
struct PageCollector {
    Pager& pager;
    const ByteOrder& order;
    std::unordered_set<uint32_t> seen;
    std::vector<uint32_t> pages;

    Status Collect(uint32_t page, int depth)
    {
        // A root past the end of the file reads as an empty leaf: nothing to collect.
        if (depth == 0 && page > pager.PageCount())
            return Status::Ok();
        if (depth > btree::kMaxDepth || page < 2 || page > pager.PageCount() || !seen.insert(page).second)
            return Status::Corrupt();
        PageHandle handle;
        if (Status status = pager.Read(page, handle); !status)
            return status;
        btree::PageView view;
        if (!view.Load(order, handle->bytes))
            return Status::Corrupt();
        pages.push_back(page);
        for (int i = 0; i < view.Count(); ++i) {
            btree::CellInfo cell = view.Cell(i);
            if (Status status = CollectChain(cell); !status)
                return status;
        }
        if (!view.IsLeaf())
            for (int i = 0; i <= view.Count(); ++i)
                if (Status status = Collect(view.Child(i), depth + 1); !status)
                    return status;
        return Status::Ok();
    }

    Status CollectChain(const btree::CellInfo& cell)
    {
        std::vector<uint32_t> chain;
        if (Status status = btree::ChainPages(pager, order, cell.overflow, cell.Payload(), chain); !status)
            return status;
        for (uint32_t page : chain) {
            if (!seen.insert(page).second)
                return Status::Corrupt();
            pages.push_back(page);
        }
        return Status::Ok();
    }
};

Status WriteEmptyLeaf(Pager& pager, const ByteOrder& order, uint32_t page)
{
    PageHandle handle;
    if (Status status = pager.Write(page, handle); !status)
        return status;
    btree::EncodeNode(order, btree::Node{}, handle->bytes);
    return Status::Ok();
}

} // namespace

Status BTree::ReadHeader()
{
    // Another program may have written since the last read: cursors find
    // their places again.
    NoteChange();
    empty = true;
    order = ByteOrder{};
    if (pager.PageCount() == 0)
        return Status::Ok();
    PageHandle first;
    if (Status status = pager.Read(1, first); !status)
        return status;
    const uint8_t* bytes = first->bytes;
    if (pager.PageCount() < 2 && IsAllZero(bytes, pageSize))
        return Status::Ok();
    if (memcmp(bytes, magicText, sizeof magicText) != 0)
        return {kNotADatabase, message::notADatabase};
    if (GetBE32(bytes + 48) == magicInteger)
        order.bigEndian = true;
    else if (ByteOrder{}.Get32(bytes + 48) != magicInteger)
        return {kNotADatabase, message::notADatabase};
    if (int32_t(order.Get32(bytes + 64)) > 4)
        return {kError, "unsupported file format"};
    empty = false;
    return Status::Ok();
}

Status BTree::Initialize()
{
    if (!empty)
        return Status::Ok();
    order.bigEndian = std::endian::native == std::endian::big;
    PageHandle first;
    if (Status status = pager.Write(1, first); !status)
        return status;
    memset(first->bytes, 0, pageSize);
    memcpy(first->bytes, magicText, sizeof magicText);
    order.Put32(first->bytes + 48, magicInteger);
    if (Status status = WriteEmptyLeaf(pager, order, 2); !status)
        return status;
    empty = false;
    NoteChange();
    return Status::Ok();
}

uint32_t BTree::Meta(int offset) const
{
    PageHandle first;
    if (empty || offset < kFirstMeta || offset >= kMetaEnd || offset % 4 != 0 || !pager.Read(1, first))
        return 0;
    return order.Get32(first->bytes + offset);
}

Status BTree::SetMeta(int offset, uint32_t value)
{
    // The free list fields below 60 belong to AllocatePage and FreePage.
    if (empty || offset < kFirstSettableMeta || offset >= kMetaEnd || offset % 4 != 0)
        return {kError, "no such meta value"};
    PageHandle first;
    if (Status status = pager.Write(1, first); !status)
        return status;
    order.Put32(first->bytes + offset, value);
    return Status::Ok();
}

Status BTree::CreateTree(uint32_t& root)
{
    if (Status status = AllocatePage(root); !status)
        return status;
    return WriteEmptyLeaf(pager, order, root);
}

Status BTree::DropTree(uint32_t root)
{
    // The schema table on page 2 belongs to every file.
    if (root < 3)
        return Status::Corrupt();
    PageCollector collector{pager, order, {}, {}};
    if (Status status = collector.Collect(root, 0); !status)
        return status;
    NoteChange();
    for (uint32_t page : collector.pages)
        if (Status status = FreePage(page); !status)
            return status;
    return Status::Ok();
}


} // namespace sqlite2
