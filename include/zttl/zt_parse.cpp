#include "zttl/zt_parse.h"

#include <cstring>
#include <strings.h>

int32_t ParseInt(const char* text)
{
    if (!text)
        return 0;
    while (*text == ' ')
        ++text;
    if (strlen(text) > 2) {
        if (text[1] == 'x' || text[1] == 'X')
            return int32_t(ParseHex(text + 2));
        if (text[0] == '#')
            return int32_t(ParseHex(text + 1));
    }
    uint32_t value = 0; // wraps silently on overflow, as the program's arithmetic does
    bool negative = false;
    int pos = 0;
    if (text[0] == '-' || text[0] == '+') {
        negative = text[0] == '-';
        pos = 1;
    }
    for (; pos < 12 && text[pos] >= '0' && text[pos] <= '9'; ++pos)
        value = value * 10u + uint32_t(text[pos] - '0');
    return int32_t(negative ? 0u - value : value);
}

uint32_t ParseHex(const char* text)
{
    uint32_t value = 0;
    if (!text)
        return 0;
    for (int i = 0; i < 8 && text[i]; ++i) {
        char c = text[i];
        uint32_t digit;
        if (c >= '0' && c <= '9')
            digit = uint32_t(c - '0');
        else if (c >= 'a' && c <= 'f')
            digit = uint32_t(c - 'a' + 10);
        else if (c >= 'A' && c <= 'F')
            digit = uint32_t(c - 'A' + 10);
        else
            break;
        value = value * 16u + digit;
    }
    return value;
}

double ParseDouble(const char* text)
{
    if (!text)
        return 0.0;
    while (*text == ' ')
        ++text;
    bool negative = false;
    int pos = 0;
    if (text[0] == '-') {
        negative = true;
        pos = 1;
    }
    double value = 0.0;
    for (; pos < 32 && text[pos] >= '0' && text[pos] <= '9'; ++pos)
        value = value * 10.0 + (text[pos] - '0');
    if (pos < 32 && text[pos] == '.') {
        ++pos;
        double weight = 0.1;
        for (; pos < 32 && text[pos] >= '0' && text[pos] <= '9'; ++pos, weight /= 10.0)
            value += (text[pos] - '0') * weight;
    }
    return negative ? -value : value;
}

int CompareNoCase(const ZT_String& string, const char* text)
{
    if (!text || !*text)
        return string.IsEmpty() ? 0 : 1;
    if (string.IsEmpty())
        return -1;
    return strcasecmp(string.GetString(), text);
}

bool IsNumeric(const ZT_String& string)
{
    if (!string.GetData())
        return false;
    for (const char* p = string.GetString(); *p; ++p)
        if (!ZT_IsSpace(*p) && !(*p >= '0' && *p <= '9'))
            return false;
    return true;
}
