#include "file_image.h"

#include <algorithm>

namespace sqlite2 {

namespace {
const uint8_t zeroPage[pageSize] = {};
const char corrupt[] = "database disk image is malformed";
} // namespace

bool FileImage::Load(std::string fileBytes, std::string& error)
{
    bytes = std::move(fileBytes);
    pageCount = uint32_t(bytes.size() / pageSize);
    if (bytes.empty())
        return true;
    const auto* first = reinterpret_cast<const uint8_t*>(bytes.data());
    if (bytes.size() < 52 || memcmp(first, magicText, sizeof magicText) != 0) {
        error = "file is encrypted or is not a database";
        return false;
    }
    if (GetBE32(first + 48) == magicInteger) {
        order.bigEndian = true;
    } else if (ByteOrder{}.Get32(first + 48) == magicInteger) {
        order.bigEndian = false;
    } else {
        error = "file is encrypted or is not a database";
        return false;
    }
    if (pageCount == 0) {
        error = corrupt;
        return false;
    }
    int32_t format = int32_t(Meta(64));
    if (format != 0 && format != 3 && format != 4) {
        error = "unsupported file format";
        return false;
    }
    return true;
}

const uint8_t* FileImage::Page(uint32_t n) const
{
    if (n == 0 || n > pageCount)
        return zeroPage;
    return reinterpret_cast<const uint8_t*>(bytes.data()) + size_t(n - 1) * pageSize;
}

struct FileImage::Walk {
    const FileImage& image;
    std::vector<bool> seen;
    const EntrySink& sink;
    std::string& error;
    std::string assembled; // payloads that continue on overflow pages

    bool Fail()
    {
        error = corrupt;
        return false;
    }

    bool Claim(uint32_t page)
    {
        // Page 2 of a one-page file is the empty schema root, read as zeros.
        if (page == 0 || (page > image.pageCount && !(page == 2 && image.pageCount == 1)))
            return false;
        if (page < seen.size()) {
            if (seen[page])
                return false;
            seen[page] = true;
        }
        return true;
    }

    bool ReadPayload(const uint8_t* page, int offset)
    {
        const ByteOrder& order = image.order;
        const uint8_t* cell = page + offset;
        uint32_t keyLength = order.Get16(cell + 4) + 65536u * cell[8];
        uint32_t dataLength = order.Get16(cell + 10) + 65536u * cell[9];
        uint64_t payload = uint64_t(keyLength) + dataLength;
        std::string& bytes = assembled;
        if (payload <= uint64_t(maxLocalPayload)) {
            if (offset + cellHeaderSize + payload > uint64_t(pageSize))
                return Fail();
            std::string_view local(reinterpret_cast<const char*>(cell + cellHeaderSize), size_t(payload));
            return sink(local.substr(0, keyLength), local.substr(keyLength), true) || Fail();
        } else {
            if (offset + 252 > pageSize)
                return Fail();
            // A chain cannot hold more than the file's pages can carry.
            if (payload > uint64_t(image.pageCount) * overflowPayload + maxLocalPayload)
                return Fail();
            bytes.reserve(size_t(payload));
            bytes.assign(reinterpret_cast<const char*>(cell + cellHeaderSize), maxLocalPayload);
            uint32_t next = order.Get32(cell + 248);
            while (bytes.size() < payload) {
                if (!Claim(next))
                    return Fail();
                const uint8_t* overflow = image.Page(next);
                size_t take = std::min<uint64_t>(overflowPayload, payload - bytes.size());
                bytes.append(reinterpret_cast<const char*>(overflow + 4), take);
                next = order.Get32(overflow);
            }
        }
        std::string_view whole(bytes);
        return sink(whole.substr(0, keyLength), whole.substr(keyLength), false) || Fail();
    }

    bool Visit(uint32_t pageNumber, int depth)
    {
        if (depth > 40 || !Claim(pageNumber))
            return Fail();
        const uint8_t* page = image.Page(pageNumber);
        const ByteOrder& order = image.order;
        uint32_t rightChild = order.Get32(page);
        int offset = order.Get16(page + 4);
        for (int cells = 0; offset != 0; ++cells) {
            if (cells >= 64 || offset % 4 != 0 || offset < pageHeaderSize || offset > pageSize - 16)
                return Fail();
            uint32_t leftChild = order.Get32(page + offset);
            if ((leftChild != 0) != (rightChild != 0))
                return Fail();
            if (leftChild && !Visit(leftChild, depth + 1))
                return false;
            if (!ReadPayload(page, offset))
                return false;
            offset = order.Get16(page + offset + 6);
        }
        return rightChild == 0 || Visit(rightChild, depth + 1);
    }
};

bool FileImage::WalkTree(uint32_t root, const EntrySink& sink, std::string& error) const
{
    Walk walk{*this, std::vector<bool>(size_t(pageCount) + 1, false), sink, error, {}};
    return walk.Visit(root, 0);
}

bool FileImage::ReadTree(uint32_t root, std::vector<Entry>& entries, std::string& error) const
{
    return WalkTree(
        root,
        [&entries](std::string_view key, std::string_view data, bool) {
            entries.push_back({std::string(key), std::string(data)});
            return true;
        },
        error);
}

} // namespace sqlite2
