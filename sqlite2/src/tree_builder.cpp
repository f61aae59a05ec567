// Bulk building of SQLite 2 B-trees: every entry is stored once (interior
// cells are real entries) and all leaves end at the same depth.
#include "tree_builder.h"

#include <algorithm>

namespace sqlite2 {

uint32_t PageSet::Allocate()
{
    pages.emplace_back(pageSize, 0);
    return uint32_t(pages.size());
}

std::string PageSet::Bytes() const
{
    std::string bytes;
    bytes.reserve(pages.size() * pageSize);
    for (const auto& page : pages)
        bytes.append(reinterpret_cast<const char*>(page.data()), pageSize);
    return bytes;
}

namespace {

// A cell ready to be placed: header fields, local payload and overflow link.
struct Cell {
    uint32_t keyLength = 0;
    uint32_t dataLength = 0;
    std::string local;
    uint32_t overflow = 0;
    uint32_t leftChild = 0;

    int Size() const
    {
        return overflow ? 252 : cellHeaderSize + int((local.size() + 3) / 4 * 4);
    }
};

Cell MakeCell(PageSet& pages, const Entry& entry)
{
    Cell cell;
    cell.keyLength = uint32_t(entry.key.size());
    cell.dataLength = uint32_t(entry.data.size());
    std::string payload = entry.key + entry.data;
    if (payload.size() <= size_t(maxLocalPayload)) {
        cell.local = payload;
        return cell;
    }
    cell.local = payload.substr(0, maxLocalPayload);
    uint32_t previous = 0;
    for (size_t at = maxLocalPayload; at < payload.size(); at += overflowPayload) {
        uint32_t page = pages.Allocate();
        if (previous)
            pages.Order().Put32(pages.Page(previous), page);
        else
            cell.overflow = page;
        size_t take = std::min<size_t>(overflowPayload, payload.size() - at);
        memcpy(pages.Page(page) + 4, payload.data() + at, take);
        previous = page;
    }
    return cell;
}

// Writes cells packed from offset 8 and one free block for the rest.
void WritePage(PageSet& pages, uint32_t number, const std::vector<Cell>& cells, uint32_t rightChild)
{
    const ByteOrder& order = pages.Order();
    uint8_t* page = pages.Page(number);
    memset(page, 0, pageSize);
    order.Put32(page, rightChild);
    int offset = pageHeaderSize;
    order.Put16(page + 4, cells.empty() ? 0 : uint16_t(offset));
    for (size_t i = 0; i < cells.size(); ++i) {
        const Cell& cell = cells[i];
        uint8_t* at = page + offset;
        int size = cell.Size();
        order.Put32(at, cell.leftChild);
        order.Put16(at + 4, uint16_t(cell.keyLength));
        order.Put16(at + 6, i + 1 < cells.size() ? uint16_t(offset + size) : 0);
        at[8] = uint8_t(cell.keyLength >> 16);
        at[9] = uint8_t(cell.dataLength >> 16);
        order.Put16(at + 10, uint16_t(cell.dataLength));
        memcpy(at + cellHeaderSize, cell.local.data(), cell.local.size());
        if (cell.overflow)
            order.Put32(at + 248, cell.overflow);
        offset += size;
    }
    if (offset < pageSize) {
        order.Put16(page + 6, uint16_t(offset));
        order.Put16(page + offset, uint16_t(pageSize - offset));
        order.Put16(page + offset + 2, 0);
    }
}

} // namespace

void BuildTree(PageSet& pages, uint32_t root, const std::vector<Entry>& entries)
{
    const int fill = pageSize - pageHeaderSize;
    std::vector<Cell> level;
    level.reserve(entries.size());
    for (const Entry& entry : entries)
        level.push_back(MakeCell(pages, entry));
    uint32_t extraChild = 0; // the right-most child of the level (0 on leaves)

    for (;;) {
        int total = 0;
        for (const Cell& cell : level)
            total += cell.Size();
        if (total <= fill) {
            WritePage(pages, root, level, extraChild);
            return;
        }
        // Split the level into pages; the cells between pages move up.
        std::vector<Cell> parents;
        std::vector<uint32_t> children;
        std::vector<Cell> current;
        int used = 0;
        for (size_t i = 0; i < level.size(); ++i) {
            Cell& cell = level[i];
            if (used + cell.Size() <= fill) {
                used += cell.Size();
                current.push_back(std::move(cell));
                continue;
            }
            uint32_t page = pages.Allocate();
            if (i + 1 < level.size()) {
                WritePage(pages, page, current, cell.leftChild);
                cell.leftChild = page;
                parents.push_back(std::move(cell));
                children.push_back(page);
                current.clear();
                used = 0;
            } else {
                // The last cell: take the page's last cell up instead.
                Cell separator = std::move(current.back());
                current.pop_back();
                WritePage(pages, page, current, separator.leftChild);
                separator.leftChild = page;
                parents.push_back(std::move(separator));
                current.clear();
                current.push_back(std::move(cell));
                used = current.back().Size();
            }
        }
        uint32_t lastPage = pages.Allocate();
        WritePage(pages, lastPage, current, extraChild);
        level = std::move(parents);
        extraChild = lastPage;
    }
}

} // namespace sqlite2
