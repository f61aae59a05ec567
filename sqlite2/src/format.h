#pragma once

// Constants and byte-order helpers of the SQLite 2.x file format.
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sqlite2 {

constexpr int pageSize = 1024;
constexpr int pageHeaderSize = 8;
constexpr int cellHeaderSize = 12;
constexpr int maxLocalPayload = 236;
constexpr int overflowPayload = 1020;
constexpr uint32_t magicInteger = 0xDAE37528u;
extern const char magicText[48];

// What the first bytes of a file say it is: nothing there, an empty file,
// the 2.x header text, a file shorter than that text whose bytes match it
// as far as they go, or something else.
enum class FileStart { Missing, Empty, Sqlite2, ShortSqlite2, Other };
FileStart ReadFileStart(const std::string& path);

// A value of a row: nullopt is SQL NULL, everything else is text.
using Value = std::optional<std::string>;
using Row = std::vector<Value>;

// Integers of the B-tree structures follow the file's own byte order.
struct ByteOrder {
    bool bigEndian = false;

    uint32_t Get32(const uint8_t* p) const
    {
        return bigEndian ? (uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3])
                         : (uint32_t(p[3]) << 24 | uint32_t(p[2]) << 16 | uint32_t(p[1]) << 8 | p[0]);
    }
    uint16_t Get16(const uint8_t* p) const
    {
        return bigEndian ? uint16_t(p[0] << 8 | p[1]) : uint16_t(p[1] << 8 | p[0]);
    }
    void Put32(uint8_t* p, uint32_t v) const
    {
        for (int i = 0; i < 4; ++i)
            p[bigEndian ? 3 - i : i] = uint8_t(v >> (8 * i));
    }
    void Put16(uint8_t* p, uint16_t v) const
    {
        p[bigEndian ? 1 : 0] = uint8_t(v);
        p[bigEndian ? 0 : 1] = uint8_t(v >> 8);
    }
};

inline uint32_t GetBE32(const uint8_t* p)
{
    return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
}
inline void PutBE32(uint8_t* p, uint32_t v)
{
    p[0] = uint8_t(v >> 24);
    p[1] = uint8_t(v >> 16);
    p[2] = uint8_t(v >> 8);
    p[3] = uint8_t(v);
}

// Table keys: the rowid, sign bit flipped, big-endian, so that memcmp sorts them.
std::string EncodeRowidKey(int32_t rowid);
int32_t DecodeRowidKey(std::string_view key);

// Row records: little-endian offsets of 1, 2 or 3 bytes, then NUL-terminated texts.
std::string EncodeRecord(const Row& row);
bool DecodeRecord(std::string_view data, Row& out);
// The same without copying: the texts are views into data, each ending
// before its field's final NUL. 2.8's text ends at the first NUL: a field
// holding more than one is seen whole, and a reader stops at the first.
using ValueView = std::optional<std::string_view>;
bool DecodeRecordViews(std::string_view data, std::vector<ValueView>& out);

} // namespace sqlite2
