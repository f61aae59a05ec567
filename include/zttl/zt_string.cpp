#include "zttl/zt_string.h"

#include <cctype>
#include <climits>
#include <cstring>
#include <initializer_list>
#include <string>

ZT_String::ZT_String(const ZT_String& other) : ZT_ArrayVal<char>()
{
    length = other.length;
    SetSize(other.count);
    if (other.data && data)
        memcpy(data, other.data, size_t(other.count));
    UpdateLength();
}

ZT_String& ZT_String::operator=(const ZT_String& other)
{
    if (this == &other)
        return *this;
    if (other.IsEmpty()) {
        Empty();
        return *this;
    }
    SetSize(other.count);
    if (other.count)
        memcpy(data, other.data, size_t(other.count));
    UpdateLength();
    ZT_Assert(data || length == 0, "zt_string", 170);
    return *this;
}

ZT_String::~ZT_String()
{
    count = 0;
    capacity = 0;
    length = 0;
    free(data);
    data = nullptr;
}

void ZT_String::Set(const char* text)
{
    if (!text || !*text) {
        SetSize(0);
        length = 0;
        return;
    }
    size_t n = strlen(text);
    if (data && text >= data && text < data + capacity) {
        // Assigning a piece of our own text: the buffer is large enough already.
        memmove(data, text, n + 1);
    } else {
        if (!SetSize(int(n + 1)))
            return;
        memcpy(data, text, n + 1);
    }
    UpdateLength();
    ZT_Assert(data || length == 0, "zt_string", 203);
}

const char* ZT_String::GetString() const
{
    if (length < 0)
        return "ZT_String ERROR";
    return data ? data : "";
}

void ZT_String::Empty()
{
    length = 0;
    SetSize(0);
}

void ZT_String::SetAt(int i, char c)
{
    if (i < 0)
        return;
    if (i + 1 >= count && !SetSize(i + 1))
        return;
    data[i] = c;
}

void ZT_String::UpdateLength()
{
    if (!data) {
        length = 0;
        return;
    }
    length = int(strlen(data));
    SetSize(length + 1);
    FreeExtra();
}

void ZT_String::AppendBytes(const char* text, int n)
{
    if (n <= 0)
        return;
    if (data && text >= data && text < data + capacity) {
        std::string copy(text, size_t(n));
        AppendBytes(copy.data(), n);
        return;
    }
    if (!SetSize(length + n + 1))
        return;
    memcpy(data + length, text, size_t(n));
    data[length + n] = 0;
    length = int(strlen(data));
}

ZT_String& ZT_String::Append(const char* text)
{
    if (!text)
        return *this;
    if (!data) {
        Set(text);
        return *this;
    }
    AppendBytes(text, int(strlen(text)));
    ZT_Assert(capacity > length, "zt_string", 228);
    return *this;
}

ZT_String& ZT_String::AppendText(const char* text)
{
    if (text && *text)
        AppendBytes(text, int(strlen(text)));
    return *this;
}

ZT_String& ZT_String::AppendChar(char c)
{
    if (!SetSize(length + 2))
        return *this;
    data[length] = c;
    data[length + 1] = 0;
    ++length;
    return *this;
}

ZT_String& ZT_String::Prepend(const char* text)
{
    if (!text || !*text)
        return *this;
    std::string prefix(text);
    int n = int(prefix.size());
    if (!SetSize(length + n + 2))
        return *this;
    memmove(data + n, data, size_t(length) + 1);
    memcpy(data, prefix.data(), size_t(n));
    UpdateLength();
    return *this;
}

ZT_String& ZT_String::AppendHex(uint32_t value, int digits)
{
    if (digits < 0) {
        digits = 1;
        for (uint32_t rest = value >> 4; rest; rest >>= 4)
            ++digits;
    }
    if (digits == 0)
        digits = 1;
    // A field wider than the eight digits of a 32-bit value is zero-filled on
    // the left; one too wide for any string is refused instead of overflowing.
    if (length < 0 || digits > INT_MAX - 32 - length || !SetSize(length + digits + 1))
        return *this;
    for (int i = length + digits - 1; i >= length; --i, value >>= 4)
        data[i] = "0123456789ABCDEF"[value & 0xF];
    length += digits;
    data[length] = 0;
    return *this;
}

ZT_String operator+(const ZT_String& left, const char* right)
{
    ZT_String result(left);
    result.Append(right);
    return result;
}

int ZT_String::FindChar(char c, int start) const
{
    if (IsEmpty())
        return -1;
    if (start < 0)
        start = 0;
    if (start > length)
        return -1;
    const char* hit = strchr(data + start, c);
    return (hit && c) ? int(hit - data) : -1;
}

int ZT_String::Find(const char* text, int start) const
{
    if (IsEmpty() || !text)
        return -1;
    if (start < 0)
        start = 0;
    if (start > length)
        return -1;
    const char* hit = strstr(data + start, text);
    return hit ? int(hit - data) : -1;
}

ZT_String ZT_String::Left(int n) const
{
    ZT_String result;
    if (n < 0)
        return result;
    if (IsEmpty() || n >= length)
        return *this;
    std::string piece(data, size_t(n));
    result.Set(piece.c_str());
    return result;
}

ZT_String ZT_String::From(int i) const
{
    if (i < 0)
        i = 0;
    if (i > length || !data)
        return ZT_String();
    return ZT_String(data + i);
}

ZT_String ZT_String::PickByMask(const char* mask, char mark) const
{
    ZT_String result;
    if (!mask || !data)
        return result;
    int n = std::min(length, int(strlen(mask)));
    for (int i = 0; i < n; ++i)
        if (mask[i] == mark)
            result.AppendChar(data[i]);
    return result;
}

ZT_String ZT_String::Mid(int start, int n)
{
    if (start < 0)
        start = 0;
    if (start > length) {
        Empty();
        return *this;
    }
    if (data) {
        memmove(data, data + start, size_t(length - start) + 1);
        int remaining = length - start;
        if (n >= 0 && n < remaining)
            data[n] = 0;
    }
    UpdateLength();
    return *this;
}

void ZT_String::Trim()
{
    if (IsEmpty())
        return;
    int first = 0;
    while (first < length && ZT_IsSpace(data[first]))
        ++first;
    int last = length;
    while (last > first && ZT_IsSpace(data[last - 1]))
        --last;
    memmove(data, data + first, size_t(last - first));
    data[last - first] = 0;
    UpdateLength();
}

ZT_String Trimmed(ZT_String text)
{
    text.Trim();
    return text;
}

ZT_String TrimmedUnquoted(ZT_String text)
{
    text.Trim();
    text.Unquote();
    return text;
}

void ZT_String::Unquote()
{
    if (IsEmpty())
        return;
    int p = 0;
    while (p < length && ZT_IsSpace(data[p]))
        ++p;
    if (data[p] != '"')
        return;
    char* rest = data + p + 1;
    char* closing = strrchr(rest, '"');
    if (closing) {
        size_t n = size_t(closing - rest);
        memmove(data, rest, n);
        data[n] = 0;
        UpdateLength();
    } else {
        // Without a closing quote the stored length is deliberately left as it was.
        memmove(data, rest, strlen(rest) + 1);
    }
}

void ZT_String::CollapseSpaces()
{
    if (IsEmpty())
        return;
    int in = 0;
    while (in < length && ZT_IsSpace(data[in]))
        ++in;
    int out = 0;
    while (in < length) {
        if (ZT_IsSpace(data[in])) {
            int runEnd = in;
            while (runEnd + 1 < length && ZT_IsSpace(data[runEnd + 1]))
                ++runEnd;
            if (runEnd + 1 >= length)
                break; // trailing white space goes
            data[out++] = data[runEnd];
            in = runEnd + 1;
        } else {
            data[out++] = data[in++];
        }
    }
    data[out] = 0;
    UpdateLength();
    ZT_Assert(length == int(strlen(GetString())), "zt_string", 759);
}

int ZT_String::ReplaceChar(char from, char to)
{
    int replaced = 0;
    for (int i = 0; i < length && data; ++i)
        if (data[i] == from) {
            data[i] = to;
            ++replaced;
        }
    return replaced;
}

void ZT_String::Replace(const char* what, const char* with)
{
    if (!what || !with || !*what || IsEmpty())
        return;
    size_t whatLength = strlen(what);
    size_t withLength = strlen(with);
    if (whatLength == 1 && !strchr(data, what[0]))
        return;
    std::string result;
    result.reserve(size_t(length));
    const char* cursor = data;
    int occurrences = 0;
    while (const char* hit = strstr(cursor, what)) {
        result.append(cursor, size_t(hit - cursor));
        result.append(with, withLength);
        cursor = hit + whatLength;
        ++occurrences;
    }
    if (!occurrences)
        return;
    result.append(cursor);
    if (withLength > whatLength && !SetSize(int(result.size()) + 17))
        return;
    if (!SetSize(int(result.size()) + 1))
        return;
    memcpy(data, result.c_str(), result.size() + 1);
    UpdateLength();
}

ZT_String ZT_String::SplitOff(const char* separator)
{
    if (IsEmpty())
        return ZT_String();
    int p = (separator && *separator) ? Find(separator) : -1;
    if (p < 0) {
        ZT_String all(*this);
        Empty();
        return all;
    }
    // Only the separator's first character is consumed; the rest stays in front.
    ZT_String before = Left(p);
    Mid(p + 1);
    return before;
}

ZT_StringList Split(const char* separator, ZT_String text)
{
    ZT_StringList pieces;
    while (!text.IsEmpty()) {
        ZT_String piece = text.SplitOff(separator);
        if (piece.IsEmpty())
            break;
        pieces.Add(piece.GetString());
    }
    return pieces;
}

void ZT_String::FoldAccents()
{
    for (int i = 0; i < length && data; ++i) {
        switch (static_cast<unsigned char>(data[i])) {
        case 0xE1: case 0xE0: case 0xE2: case 0xE3: data[i] = 'a'; break;
        case 0xE9: case 0xE8: case 0xEA: data[i] = 'e'; break;
        case 0xE7: data[i] = 'c'; break;
        default: break;
        }
    }
}

namespace {

bool IsAsciiLetter(char c)
{
    char lower = char(tolower(static_cast<unsigned char>(c)));
    return lower >= 'a' && lower <= 'z';
}

} // namespace

ZT_String ToName(const char* text)
{
    ZT_String name(text);
    name.FoldAccents();
    // ":" is in the allowed set below, but it is blanked here first on purpose.
    for (char c : {'*', '?', ':', '\\'})
        name.ReplaceChar(c, ' ');
    int first = 0;
    const char* s = name.GetString();
    while (s[first] && !(IsAsciiLetter(s[first]) || s[first] == '-' || s[first] == '_'))
        ++first;
    name.Mid(first);
    for (int i = 0; i < name.GetLength(); ++i) {
        char c = name.GetAt(i);
        bool allowed = IsAsciiLetter(c) || (c >= '0' && c <= '9') || strchr("-_.:", c);
        if (!allowed)
            name.SetAt(i, ' ');
    }
    name.CollapseSpaces();
    name.Trim();
    for (int i = 0; i < name.GetLength(); ++i) {
        unsigned char c = static_cast<unsigned char>(name.GetAt(i));
        if (c == ' ' || c < 0x20 || c > 0x7E)
            name.SetAt(i, '_');
    }
    return name;
}

void ZT_String::StripTags(const char* open, const char* close, int start)
{
    if (!open || !*open || !close || !*close)
        return;
    for (;;) {
        int p = Find(open, start < 0 ? 0 : start);
        if (p < 0)
            return;
        StripTags(open, close, p + 1);
        int q = Find(close, p + 1);
        if (q < 0) {
            // The character before the unclosed mark goes as well.
            *this = Left(p - 1);
            continue;
        }
        ZT_String result = Left(p);
        result.Append(" ");
        result.Append(From(q + int(strlen(close))).GetString());
        *this = result;
    }
}
