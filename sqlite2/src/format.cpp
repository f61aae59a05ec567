#include "format.h"

#include <cstdio>

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

bool DecodeRecordViews(std::string_view data, std::vector<ValueView>& out)
{
    out.clear();
    if (data.empty())
        return true;
    const size_t length = data.size();
    const int width = length < 256 ? 1 : length < 65536 ? 2 : 3;
    auto offsetAt = [&](size_t slot) {
        size_t v = 0;
        for (int i = 0; i < width; ++i)
            v |= size_t(uint8_t(data[slot * width + i])) << (8 * i);
        return v;
    };
    if (length < size_t(width))
        return false;
    size_t first = offsetAt(0);
    if (first % width != 0 || first < size_t(width) || first > length)
        return false;
    size_t fields = first / width - 1;
    size_t previous = first;
    for (size_t i = 0; i < fields; ++i) {
        size_t end = offsetAt(i + 1);
        if (end < previous || end > length)
            return false;
        if (end == previous) {
            out.emplace_back(std::nullopt);
        } else {
            // The stored text ends with its NUL terminator; a missing one is tolerated.
            std::string_view text = data.substr(previous, end - previous);
            size_t nul = text.find('\0');
            out.emplace_back(nul == std::string_view::npos ? text : text.substr(0, nul));
        }
        previous = end;
    }
    return true;
}

bool DecodeRecord(std::string_view data, Row& out)
{
    std::vector<ValueView> views;
    out.clear();
    if (!DecodeRecordViews(data, views))
        return false;
    for (const ValueView& view : views)
        out.emplace_back(view ? Value(std::string(*view)) : Value(std::nullopt));
    return true;
}

} // namespace sqlite2
