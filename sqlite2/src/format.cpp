#include "format.h"

#include <cstdio>
#include <cstring>

namespace sqlite2 {

const char magicText[48] = "** This file contains an SQLite 2.1 database **";

FileStart ReadFileStart(const std::string& path)
{
    FILE* file = fopen(path.c_str(), "rb");
    if (!file)
        return FileStart::Missing;
    char start[sizeof magicText] = {};
    const size_t length = fread(start, 1, sizeof start, file);
    fclose(file);
    if (length == 0)
        return FileStart::Empty;
    if (memcmp(start, magicText, length) != 0)
        return FileStart::Other;
    return length == sizeof start ? FileStart::Sqlite2 : FileStart::ShortSqlite2;
}

std::string EncodeRowidKey(int32_t rowid)
{
    std::string key(4, '\0');
    PutBE32(reinterpret_cast<uint8_t*>(key.data()), uint32_t(rowid) ^ 0x80000000u);
    return key;
}

int32_t DecodeRowidKey(std::string_view key)
{
    if (key.size() != 4)
        return 0;
    return int32_t(GetBE32(reinterpret_cast<const uint8_t*>(key.data())) ^ 0x80000000u);
}

std::string EncodeRecord(const Row& row)
{
    size_t total = 0;
    for (const Value& value : row)
        if (value)
            total += value->size() + 1;
    size_t slots = row.size() + 1;
    int width = total + slots < 256 ? 1 : total + 2 * slots < 65536 ? 2 : 3;
    std::string record;
    record.reserve(total + width * slots);
    size_t offset = width * slots;
    auto putOffset = [&](size_t v) {
        for (int i = 0; i < width; ++i)
            record.push_back(char(uint8_t(v >> (8 * i))));
    };
    for (const Value& value : row) {
        putOffset(offset);
        if (value)
            offset += value->size() + 1;
    }
    putOffset(offset);
    for (const Value& value : row)
        if (value) {
            record += *value;
            record.push_back('\0');
        }
    return record;
}

namespace {

// The field offsets of a record: 1, 2 or 3 little-endian bytes each, by the record's size.
template <int width>
size_t OffsetAt(const unsigned char* bytes, size_t slot)
{
    size_t v = 0;
    for (int i = 0; i < width; ++i)
        v |= size_t(bytes[slot * width + i]) << (8 * i);
    return v;
}

template <int width>
bool DecodeFields(std::string_view data, std::vector<ValueView>& out)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(data.data());
    const size_t length = data.size();
    if (length < size_t(width))
        return false;
    const size_t first = OffsetAt<width>(bytes, 0);
    if (first % width != 0 || first < size_t(width) || first > length)
        return false;
    const size_t fields = first / width - 1;
    out.resize(fields);
    size_t previous = first;
    for (size_t i = 0; i < fields; ++i) {
        const size_t end = OffsetAt<width>(bytes, i + 1);
        if (end < previous || end > length)
            return false;
        if (end == previous) {
            out[i].reset();
        } else {
            // The stored text ends with its NUL terminator; a missing one is tolerated.
            const size_t length = end - previous - (data[end - 1] == '\0' ? 1 : 0);
            out[i] = std::string_view(data.data() + previous, length);
        }
        previous = end;
    }
    return true;
}

} // namespace

bool DecodeRecordViews(std::string_view data, std::vector<ValueView>& out)
{
    if (data.empty()) {
        out.clear();
        return true;
    }
    const size_t length = data.size();
    if (length < 256)
        return DecodeFields<1>(data, out);
    return length < 65536 ? DecodeFields<2>(data, out) : DecodeFields<3>(data, out);
}

bool DecodeRecord(std::string_view data, Row& out)
{
    std::vector<ValueView> views;
    out.clear();
    if (!DecodeRecordViews(data, views))
        return false;
    for (const ValueView& view : views)
        out.emplace_back(view ? Value(std::string(view->data(), strnlen(view->data(), view->size())))
                              : Value(std::nullopt));
    return true;
}

} // namespace sqlite2
