#pragma once

// The layout of one B-tree page of a 2.x file: reading it with every offset
// checked, and the decoded form that the tree's changes work on.
#include "format.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace sqlite2::btree {

constexpr int kUsableSpace = pageSize - pageHeaderSize; // 1016
constexpr int kMaxCells = kUsableSpace / 16;             // 63
constexpr int kMaxCellSize = cellHeaderSize + maxLocalPayload + 4;
// Key and data lengths are 24-bit fields of the cell header.
constexpr uint32_t kMaxFieldLength = 0xFFFFFF;
// Deeper than any tree a 2.x file can hold: a deeper descent is a cycle.
constexpr int kMaxDepth = 40;

// Bytes a cell with this payload occupies on its page (padding and the
// overflow link included).
inline int CellSize(uint64_t payload)
{
    return payload > uint64_t(maxLocalPayload) ? kMaxCellSize : cellHeaderSize + int((payload + 3) / 4 * 4);
}

// The overflow pages a payload of this size needs.
inline uint32_t ChainLength(uint64_t payload)
{
    return payload > uint64_t(maxLocalPayload)
               ? uint32_t((payload - maxLocalPayload + overflowPayload - 1) / overflowPayload)
               : 0;
}

// The header fields of one cell, read in the file's byte order.
struct CellInfo {
    uint32_t leftChild = 0;
    uint32_t keyLength = 0;
    uint32_t dataLength = 0;
    uint32_t overflow = 0;       // first overflow page, 0 when all is local
    const uint8_t* local = nullptr; // the payload bytes kept in the cell
    // Whether the cell lies within its page: a view kept while the page may
    // have been rewritten is checked before its bytes are used.
    bool fits = false;

    uint64_t Payload() const { return uint64_t(keyLength) + dataLength; }
    size_t LocalLength() const { return size_t(std::min<uint64_t>(Payload(), maxLocalPayload)); }
    bool KeyIsLocal() const { return keyLength <= LocalLength(); }
    std::string_view LocalKey() const { return {reinterpret_cast<const char*>(local), keyLength}; }
};

// A page read for searching and scanning: the cells in key order, found by
// following the page's list once. Nothing in the page is trusted: Load
// refuses lists that are out of bounds, misaligned, too long or that mix
// leaf and interior cells.
class PageView {
public:
    bool Load(const ByteOrder& order, const uint8_t* bytes);

    int Count() const { return count; }
    bool IsLeaf() const { return rightChild == 0; }
    uint32_t RightChild() const { return rightChild; }
    // Child i of an interior page: the left child of cell i, or the right
    // child for i == Count().
    uint32_t Child(int i) const;
    CellInfo Cell(int i) const;

private:
    const ByteOrder* order = nullptr;
    const uint8_t* bytes = nullptr;
    uint32_t rightChild = 0;
    int count = 0;
    uint16_t offsets[kMaxCells]; // the first count are set by Load
};

// A cell taken off its page: what moves between pages when the tree is
// rebalanced. The overflow chain stays where it is.
struct NodeCell {
    uint32_t leftChild = 0;
    uint32_t keyLength = 0;
    uint32_t dataLength = 0;
    uint32_t overflow = 0;
    // Kept inline: pages are decoded on every change, one allocation per
    // cell would cost more than the copy.
    uint16_t localLength = 0;
    uint8_t local[maxLocalPayload];

    void SetLocal(const void* bytes, size_t length)
    {
        localLength = uint16_t(length);
        memcpy(local, bytes, length);
    }

    uint64_t Payload() const { return uint64_t(keyLength) + dataLength; }
    int Size() const { return CellSize(Payload()); }
};

// A page's content in decoded form; it may briefly hold more than fits
// while a change is being balanced.
struct Node {
    uint32_t rightChild = 0;
    std::vector<NodeCell> cells;

    bool IsLeaf() const { return rightChild == 0; }
    int Used() const;
    uint32_t Child(size_t i) const { return i < cells.size() ? cells[i].leftChild : rightChild; }
    void SetChild(size_t i, uint32_t page);
};

Node DecodeNode(const PageView& view);
// Writes the node packed from offset 8 with one free block after the
// cells, the layout that covers every byte exactly. The node must fit.
void EncodeNode(const ByteOrder& order, const Node& node, uint8_t* page);

} // namespace sqlite2::btree
