#pragma once

#include "file_image.h"

namespace sqlite2 {

// The pages of a file being built: page 1 first, then whatever is allocated.
class PageSet {
public:
    explicit PageSet(ByteOrder order) : order(order) {}
    uint32_t Allocate();
    uint8_t* Page(uint32_t n) { return pages[n - 1].data(); }
    uint32_t Count() const { return uint32_t(pages.size()); }
    const ByteOrder& Order() const { return order; }
    std::string Bytes() const;

private:
    ByteOrder order;
    std::vector<std::vector<uint8_t>> pages;
};

// Builds a balanced B-tree of the entries (strictly ascending by key) with
// its root on the given, already allocated page.
void BuildTree(PageSet& pages, uint32_t root, const std::vector<Entry>& entries);

} // namespace sqlite2
