#include "zttl/zt_value.h"

#include "zttl/zt_parse.h"

#include <cmath>
#include <cstring>
#include <initializer_list>
#include <strings.h>

void ZT_Value::Assign(const ZT_Value& other)
{
    if (this == &other)
        return;
    ZT_String::operator=(other);
    number = other.number;
    real = other.real;
    kind = other.kind;
}

void ZT_Value::Clear()
{
    Empty();
    kind = 0;
}

void ZT_Value::SetInt(int32_t n)
{
    number = n;
    kind = kindInt;
}

void ZT_Value::SetDouble(double d)
{
    real = d;
    kind = kindDouble;
}

void ZT_Value::SetRange(int32_t low, int32_t high)
{
    number = int32_t((uint32_t(uint16_t(high)) << 16) | uint16_t(low));
}

void ZT_Value::SetQuotedText(const char* text)
{
    if (!text) {
        Empty();
        return;
    }
    if (text[0] != '"') {
        Set(text);
        return;
    }
    size_t n = strlen(text);
    if (n <= 2)
        return; // a bare "" or a lone quote leaves the text as it was
    ZT_String inner(text + 1);
    // The closing quote is assumed to be the last character.
    if (strchr(text + 1, '"'))
        inner.SetAt(int(n) - 2, 0);
    inner.UpdateLength();
    ZT_String::operator=(inner);
}

bool ZT_Value::SetFromText(const char* text)
{
    if (!text)
        return false;
    while (ZT_IsSpace(*text) && *text)
        ++text;
    if (*text == '"') {
        SetQuotedText(text);
        kind = kindText;
    } else if (*text == '#') {
        number = int32_t(ParseHex(text + 1));
        kind = kindColour;
    } else if (strcmp(text, "true") == 0 || strcmp(text, "false") == 0) {
        number = text[0] == 't';
        kind = kindBool;
    } else if (const char* dots = strstr(text, "..")) {
        SetRange(ParseInt(text), ParseInt(dots + 2));
        kind = kindRange;
    } else if (strchr(text, '.')) {
        real = ParseDouble(text);
        kind = kindDouble;
    } else if ((*text | 0x20) >= 'a' && (*text | 0x20) <= 'z') {
        SetQuotedText(text);
        kind = kindText;
    } else {
        SetInt(ParseInt(text));
    }
    return true;
}

uint16_t ZT_Value::GetKind() const
{
    for (uint16_t bit : {kindDouble, kindHex, kindInt, kindRange, kindColour, kindBool, kindTime})
        if (kind & bit)
            return bit;
    return (kind & 0x80) ? kindText : 0;
}

const char* ZT_Value::GetText()
{
    if (HasText())
        return GetString();
    if (kind & kindDouble) {
        Empty();
        AppendDouble(real, -1, 3);
    } else if (kind & kindColour) {
        Set("#");
        AppendInt(number, -1);
    } else if (kind & kindBool) {
        Set(number ? "true" : "false");
    } else if (kind & kindTime) {
        Empty();
        AppendTime(number, false, false);
    } else if (kind & (kindHex | kindInt)) {
        Empty();
        AppendInt(number, -1);
    } else {
        // A range fills the string part but still reads as "(null)", as does an empty value.
        if (kind & kindRange) {
            Empty();
            AppendInt(GetLow(), -1);
            Append("..");
            AppendInt(GetHigh(), -1);
        }
        return "(null)";
    }
    kind |= kindText;
    return GetString();
}

void ZT_Value::ToText(ZT_String& out, bool hexInts) const
{
    if (kind == kindText) {
        out.AppendChar('"');
        out.Append(GetString());
        out.AppendChar('"');
    } else if (kind & kindHex) {
        out.Append("0x");
        out.AppendHex(uint32_t(number), -1);
    } else if (kind & kindColour) {
        out.Append("#");
        out.AppendHex(uint32_t(number), -1);
    } else if (kind & kindBool) {
        out.Append(number ? "true" : "false");
    } else if (kind & kindTime) {
        if (number == 0)
            out.Append("(null)");
        else
            out.AppendTime(number, false, false);
    } else if (kind & kindInt) {
        if (hexInts) {
            out.Append("0x");
            out.AppendHex(uint32_t(number), -1);
        } else {
            out.AppendInt(number, -1);
        }
    } else if (kind == kindRange) {
        out.AppendInt(GetLow(), -1);
        out.Append("..");
        out.AppendInt(GetHigh(), -1);
    } else if (kind & kindDouble) {
        out.AppendDouble(real, -1, 3);
    } else {
        ZT_Value copy(*this);
        out.Append(copy.GetText());
    }
}

int32_t ZT_Value::GetInt()
{
    if (IsIntegral())
        return number;
    if (kind & kindDouble) {
        double rounded = real <= 0 ? real - 0.5 : real + 0.5;
        if (!std::isfinite(rounded) || rounded >= 2147483648.0 || rounded <= -2147483649.0)
            return 0;
        return int32_t(rounded);
    }
    if (HasText()) {
        if (strcasecmp(GetString(), "true") == 0) {
            kind |= kindBool;
            number = 1;
            return 1;
        }
        if (strcasecmp(GetString(), "false") == 0) {
            kind |= kindBool;
            number = 0;
            return 0;
        }
        if (IsNumeric(*this))
            return ParseInt(GetString());
        if (FirstChar() == '#') {
            number = ParseInt(GetString());
            kind = kindColour;
            return number;
        }
    }
    return 0;
}
