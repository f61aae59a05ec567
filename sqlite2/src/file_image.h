#pragma once

#include "format.h"

#include <functional>

namespace sqlite2 {

// One entry of a B-tree: the key and the data, overflow chains reassembled.
struct Entry {
    std::string key;
    std::string data;
};

// The pages of a 2.x database file as read from disk, with checked access.
// Nothing in the file is trusted: every page number, offset and size is
// checked, and a page reached twice is corruption.
class FileImage {
public:
    // False with a message for a file that is neither empty nor a 2.x database.
    bool Load(std::string fileBytes, std::string& error);

    bool IsEmptyDatabase() const { return pageCount < 2; }
    uint32_t PageCount() const { return pageCount; }
    const ByteOrder& Order() const { return order; }
    // Page n (1-based); pages past the end read as zeros.
    const uint8_t* Page(uint32_t n) const;
    uint32_t Meta(int offset) const { return pageCount ? order.Get32(Page(1) + offset) : 0; }
    const std::string& Bytes() const { return bytes; }

    // In-order entries of the tree rooted at root.
    bool ReadTree(uint32_t root, std::vector<Entry>& entries, std::string& error) const;

    // The same entries one by one, without copies where possible: stable is
    // true when the views point into the image (payload on one page), false
    // when they point into a buffer that the next entry reuses.
    using EntrySink = std::function<bool(std::string_view key, std::string_view data, bool stable)>;
    bool WalkTree(uint32_t root, const EntrySink& sink, std::string& error) const;

private:
    struct Walk;

    std::string bytes;
    uint32_t pageCount = 0;
    ByteOrder order;
};

} // namespace sqlite2
