// The B-tree page format: checked reading and packed writing.
#include "btree_page.h"

#include <algorithm>

namespace sqlite2::btree {

bool PageView::Load(const ByteOrder& byteOrder, const uint8_t* page)
{
    order = &byteOrder;
    bytes = page;
    rightChild = order->Get32(page);
    count = 0;
    for (int offset = order->Get16(page + 4); offset != 0; offset = order->Get16(page + offset + 6)) {
        // A page holds at most 63 cells, so a longer list has a cycle.
        if (count == kMaxCells || offset % 4 != 0 || offset < pageHeaderSize || offset > pageSize - 16)
            return false;
        const uint8_t* cell = page + offset;
        uint64_t payload = uint64_t(order->Get16(cell + 4) + 65536u * cell[8]) + order->Get16(cell + 10) +
                           65536u * cell[9];
        if (offset + CellSize(payload) > pageSize)
            return false;
        if ((order->Get32(cell) != 0) != (rightChild != 0))
            return false;
        offsets[count++] = uint16_t(offset);
    }
    return true;
}

uint32_t PageView::Child(int i) const
{
    return i < count ? order->Get32(bytes + offsets[i]) : rightChild;
}

CellInfo PageView::Cell(int i) const
{
    const uint8_t* cell = bytes + offsets[i];
    CellInfo info;
    info.leftChild = order->Get32(cell);
    info.keyLength = order->Get16(cell + 4) + 65536u * cell[8];
    info.dataLength = order->Get16(cell + 10) + 65536u * cell[9];
    info.local = cell + cellHeaderSize;
    info.fits = offsets[i] + CellSize(info.Payload()) <= pageSize;
    if (info.fits && info.Payload() > uint64_t(maxLocalPayload))
        info.overflow = order->Get32(cell + cellHeaderSize + maxLocalPayload);
    return info;
}

int Node::Used() const
{
    int used = 0;
    for (const NodeCell& cell : cells)
        used += cell.Size();
    return used;
}

void Node::SetChild(size_t i, uint32_t page)
{
    if (i < cells.size())
        cells[i].leftChild = page;
    else
        rightChild = page;
}

Node DecodeNode(const PageView& view)
{
    Node node;
    node.rightChild = view.RightChild();
    node.cells.reserve(size_t(view.Count()) + 1);
    for (int i = 0; i < view.Count(); ++i) {
        CellInfo info = view.Cell(i);
        NodeCell cell;
        cell.leftChild = info.leftChild;
        cell.keyLength = info.keyLength;
        cell.dataLength = info.dataLength;
        cell.SetLocal(info.local, info.LocalLength());
        cell.overflow = info.overflow;
        node.cells.push_back(std::move(cell));
    }
    return node;
}

void EncodeNode(const ByteOrder& order, const Node& node, uint8_t* page)
{
    memset(page, 0, pageSize);
    order.Put32(page, node.rightChild);
    int offset = pageHeaderSize;
    order.Put16(page + 4, node.cells.empty() ? 0 : uint16_t(offset));
    for (size_t i = 0; i < node.cells.size(); ++i) {
        const NodeCell& cell = node.cells[i];
        uint8_t* at = page + offset;
        int size = cell.Size();
        order.Put32(at, cell.leftChild);
        order.Put16(at + 4, uint16_t(cell.keyLength));
        order.Put16(at + 6, i + 1 < node.cells.size() ? uint16_t(offset + size) : 0);
        at[8] = uint8_t(cell.keyLength >> 16);
        at[9] = uint8_t(cell.dataLength >> 16);
        order.Put16(at + 10, uint16_t(cell.dataLength));
        memcpy(at + cellHeaderSize, cell.local, cell.localLength);
        if (cell.overflow)
            order.Put32(at + cellHeaderSize + maxLocalPayload, cell.overflow);
        offset += size;
    }
    if (offset < pageSize) {
        order.Put16(page + 6, uint16_t(offset));
        order.Put16(page + offset, uint16_t(pageSize - offset));
    }
}

} // namespace sqlite2::btree
