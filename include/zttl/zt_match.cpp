// The text tests of the table-definition parser and the row commands.
#include "zttl/zt_string.h"

#include <cstring>

void ZT_String::MakeLower()
{
    for (int i = 0; i < length && data; ++i)
        if (data[i] >= 'A' && data[i] <= 'Z')
            data[i] = char(data[i] - 'A' + 'a');
}

void ZT_String::FoldForMatch(bool withPunctuation)
{
    for (int i = 0; i < length && data; ++i) {
        switch (static_cast<unsigned char>(data[i])) {
        case 0xE1: case 0xE0: case 0xE2: case 0xE3: data[i] = 'a'; break;
        case 0xE9: case 0xE8: case 0xEA: data[i] = 'e'; break;
        case 0xE7: data[i] = 'c'; break;
        case '*': case '?': case '-': case '_':
            if (withPunctuation)
                data[i] = ' ';
            break;
        default: break;
        }
    }
}

bool ZT_String::StartsWith(const char* text) const
{
    if (IsEmpty() || !text)
        return false;
    return Find(text) == 0;
}

bool ZT_String::IsEqual(const char* text) const
{
    if (!text)
        return IsEmpty();
    if (!data)
        return *text == 0;
    return strcmp(data, text) == 0;
}

bool ZT_String::ContainsLoosely(const char* text) const
{
    if (!text)
        return false;
    ZT_String haystack(*this), needle(text);
    haystack.MakeLower();
    needle.MakeLower();
    if (!haystack.IsEmpty() && haystack.Find(needle.GetString()) >= 0)
        return true;
    haystack.FoldForMatch(true);
    needle.FoldForMatch(true);
    return !haystack.IsEmpty() && haystack.Find(needle.GetString()) >= 0;
}

ZT_String& ZT_String::AppendWithSeparator(const char* text, const char* separator)
{
    if (length != 0) {
        Append(separator);
        Append(text);
    } else {
        Set(text);
    }
    return *this;
}
