// Reading, writing and freeing overflow chains.
#include "btree_overflow.h"

#include <algorithm>
#include <unordered_set>

namespace sqlite2::btree {

namespace {

bool IsPageInFile(Pager& pager, uint32_t page)
{
    return page >= 2 && page <= pager.PageCount();
}

// One chain page as it must be: the link, the bytes, zeros after them.
void FillChainPage(const ByteOrder& order, uint32_t next, std::string_view bytes, uint8_t* page)
{
    memset(page, 0, pageSize);
    order.Put32(page, next);
    memcpy(page + 4, bytes.data(), bytes.size());
}

} // namespace

Status WritePageIfChanged(Pager& pager, uint32_t number, const uint8_t* content)
{
    PageHandle page;
    if (Status status = pager.Read(number, page); !status)
        return status;
    if (memcmp(page->bytes, content, pageSize) == 0)
        return Status::Ok();
    if (Status status = pager.Write(number, page); !status)
        return status;
    memcpy(page->bytes, content, pageSize);
    return Status::Ok();
}

Status ReadPayload(Pager& pager, const ByteOrder& order, const CellInfo& cell, uint64_t from, size_t length,
                   std::string& out)
{
    out.clear();
    const uint64_t end = from + length;
    // A chain cannot carry more than the file's pages hold.
    if (end > cell.Payload() || cell.Payload() > uint64_t(pager.PageCount()) * overflowPayload + maxLocalPayload)
        return Status::Corrupt();
    out.reserve(length);
    const uint64_t local = cell.LocalLength();
    if (from < local)
        out.append(reinterpret_cast<const char*>(cell.local + from), size_t(std::min(end, local) - from));
    uint32_t next = cell.overflow;
    for (uint64_t at = maxLocalPayload; at < end; at += overflowPayload) {
        if (!IsPageInFile(pager, next))
            return Status::Corrupt();
        PageHandle page;
        if (Status status = pager.Read(next, page); !status)
            return status;
        const uint64_t pageEnd = at + overflowPayload;
        if (pageEnd > from) {
            uint64_t start = std::max(from, at);
            out.append(reinterpret_cast<const char*>(page->bytes + 4 + (start - at)),
                       size_t(std::min(end, pageEnd) - start));
        }
        next = order.Get32(page->bytes);
    }
    return Status::Ok();
}

Status ChainPages(Pager& pager, const ByteOrder& order, uint32_t first, uint64_t payload,
                  std::vector<uint32_t>& pages)
{
    pages.clear();
    const uint32_t length = ChainLength(payload);
    if (length > pager.PageCount())
        return Status::Corrupt();
    std::unordered_set<uint32_t> seen;
    uint32_t next = first;
    for (uint32_t i = 0; i < length; ++i) {
        // A chain that runs into itself would have its pages freed twice.
        if (!IsPageInFile(pager, next) || !seen.insert(next).second)
            return Status::Corrupt();
        pages.push_back(next);
        PageHandle page;
        if (Status status = pager.Read(next, page); !status)
            return status;
        next = order.Get32(page->bytes);
    }
    return Status::Ok();
}

Status WriteChain(BTree& tree, std::string_view rest, const std::vector<uint32_t>& reuse, uint32_t& first)
{
    const size_t length = (rest.size() + overflowPayload - 1) / overflowPayload;
    std::vector<uint32_t> pages(reuse.begin(), reuse.begin() + std::min(length, reuse.size()));
    while (pages.size() < length) {
        uint32_t page = 0;
        if (Status status = tree.AllocatePage(page); !status)
            return status;
        pages.push_back(page);
    }
    for (size_t i = length; i < reuse.size(); ++i)
        if (Status status = tree.FreePage(reuse[i]); !status)
            return status;
    uint8_t content[pageSize];
    for (size_t i = 0; i < length; ++i) {
        std::string_view bytes = rest.substr(i * overflowPayload, overflowPayload);
        FillChainPage(tree.Order(), i + 1 < length ? pages[i + 1] : 0, bytes, content);
        if (Status status = WritePageIfChanged(tree.Pages(), pages[i], content); !status)
            return status;
    }
    first = length ? pages[0] : 0;
    return Status::Ok();
}

Status FreeChain(BTree& tree, uint32_t first, uint64_t payload)
{
    std::vector<uint32_t> pages;
    if (Status status = ChainPages(tree.Pages(), tree.Order(), first, payload, pages); !status)
        return status;
    for (uint32_t page : pages)
        if (Status status = tree.FreePage(page); !status)
            return status;
    return Status::Ok();
}

} // namespace sqlite2::btree
