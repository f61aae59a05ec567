// The format engine and the number writers it shares with the value model.
#include "zttl/zt_escape.h"
#include "zttl/zt_string.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

int32_t ZT_FormatArg::AsInt() const
{
    switch (kind) {
    case Integer: return int32_t(integer);
    case Real: return std::isfinite(real) ? int32_t(int64_t(real)) : 0;
    default: return 0;
    }
}

double ZT_FormatArg::AsDouble() const
{
    switch (kind) {
    case Integer: return double(integer);
    case Real: return real;
    default: return 0.0;
    }
}

const char* ZT_FormatArg::AsText() const
{
    switch (kind) {
    case Text: return text ? text : "";
    case String: return string->GetString();
    default: return "";
    }
}

namespace {

// Hands out the arguments in order; past the end it answers 0 or "".
class ArgumentReader {
public:
    ArgumentReader(const ZT_FormatArg* args, int count) : args(args), count(count) {}
    const ZT_FormatArg& Next()
    {
        static const ZT_FormatArg missing(0);
        return (args && next < count) ? args[next++] : missing;
    }
    // %s of a missing argument is an empty text, not "0".
    const char* NextText()
    {
        if (!args || next >= count)
            return "";
        return args[next++].AsText();
    }

private:
    const ZT_FormatArg* args;
    int count;
    int next = 0;
};

void PadTo(ZT_String& out, const ZT_String& text, int width, bool padRight)
{
    int blanks = width - text.GetLength();
    if (padRight)
        out.Append(text.GetString());
    for (int i = 0; i < blanks; ++i)
        out.AppendChar(' ');
    if (!padRight)
        out.Append(text.GetString());
}

int DecimalDigits(int64_t magnitude)
{
    int digits = 0;
    for (; magnitude > 0; magnitude /= 10)
        ++digits;
    return digits;
}

// Sign modes of a conversion, as AppendDouble takes them.
enum SignMode { signNone = 0, signBlank = 1, signPlus = 3 };

// What one "%..." says besides its conversion character. The pad character
// is not part of it: a flag that sets it holds for the rest of the call.
struct FormatDirective {
    int width = -1; // -1: none given
    int precision = 0;
    int mode = signNone; // '-' asks for a blank sign, '+' for a plus; either left-aligns %s
};

// Digits are read while the number is below 100000; further ones are skipped.
int ParseBoundedNumber(const char*& p)
{
    int number = 0;
    while (*p >= '0' && *p <= '9' && number < 100000)
        number = number * 10 + (*p++ - '0');
    while (*p >= '0' && *p <= '9')
        ++p;
    return number;
}

// The flags in the only order understood: an optional blank, '-' or '+',
// and another optional blank. A blank makes the pad a blank.
const char* ParseFlags(const char* p, FormatDirective& directive, char& pad)
{
    if (*p == ' ') {
        pad = ' ';
        ++p;
    }
    if (*p == '-') {
        directive.mode = signBlank;
        ++p;
    } else if (*p == '+') {
        directive.mode = signPlus;
        ++p;
    }
    if (*p == ' ') {
        pad = ' ';
        ++p;
    }
    return p;
}

// A width that starts with '0' also makes the pad a '0'.
const char* ParseWidth(const char* p, FormatDirective& directive, char& pad)
{
    if (*p >= '0' && *p <= '9') {
        if (*p == '0')
            pad = '0';
        directive.width = ParseBoundedNumber(p);
    }
    return p;
}

// "." alone is a precision of 0.
const char* ParsePrecision(const char* p, FormatDirective& directive)
{
    if (*p == '.') {
        ++p;
        directive.precision = ParseBoundedNumber(p);
    }
    return p;
}

// Everything between the '%' and the conversion character.
const char* ParseHeader(const char* p, FormatDirective& directive, char& pad)
{
    p = ParseFlags(p, directive, pad);
    p = ParseWidth(p, directive, pad);
    return ParsePrecision(p, directive);
}

void AppendPaddedText(ZT_String& out, const char* text, const FormatDirective& directive)
{
    if (directive.width < 1) {
        out.Append(text);
        return;
    }
    ZT_String cell(text);
    cell.Truncate(directive.width);
    PadTo(out, cell, directive.width, directive.mode != signNone);
}

// %S with its optional escaping letter; returns the position after the letter.
const char* AppendEscapedText(ZT_String& out, const char* p, const FormatDirective& directive, ArgumentReader& reader)
{
    ZT_String text(reader.NextText());
    text.Truncate(directive.width);
    char modifier = *p;
    if (modifier)
        ++p;
    switch (modifier) {
    case 'h': HtmlEntities(text, false); break;
    case 'c': text = CEscape(text); break;
    case 'f': text = UrlEncode(text, 0); break;
    case 'q': text = CsvQuote(text); break;
    default: break;
    }
    out.Append(text.GetString());
    return p;
}

// %T with its selector letter; returns the position after the letter.
const char* AppendTimeOfKind(ZT_String& out, const char* p, ArgumentReader& reader)
{
    const ZT_FormatArg& value = reader.Next();
    char selector = char(tolower(static_cast<unsigned char>(*p)));
    if (*p)
        ++p;
    if (selector == 'l' || selector == 'm') {
        long unixTime = selector == 'l' ? long(value.AsInt()) + ZT_StampEpoch : long(value.AsInt());
        time_t when = unixTime;
        struct tm fields {};
        if (value.AsInt() > 0 && localtime_r(&when, &fields))
            out.AppendDateTime(fields);
    } else if (selector == 's') {
        out.AppendDuration(value.AsUnsigned());
    } else if (selector == 'x') {
        out.AppendClock(value.AsUnsigned());
    } else {
        out.AppendTime(value.AsInt(), false, false);
    }
    return p;
}

// Performs the conversion at p; returns the position after it (and after
// the letter that %S and %T take).
const char* AppendConversion(ZT_String& out, const char* p, const FormatDirective& directive, char pad, ArgumentReader& reader)
{
    char conversion = *p++;
    switch (conversion) {
    case '%':
        out.AppendChar('%');
        break;
    case 'd':
        out.AppendInt(reader.Next().AsInt(), directive.width < 1 ? -1 : directive.width);
        break;
    case 'u':
        out.AppendInt(reader.Next().AsInt(), directive.width);
        break;
    case 'D': {
        ZT_String grouped;
        grouped.AppendGrouped(reader.Next().AsInt(), -1);
        PadTo(out, grouped, directive.width, false);
        break;
    }
    case 'x':
    case 'X':
        out.AppendHex(reader.Next().AsUnsigned(), directive.width);
        break;
    case 'c':
        // A NUL cannot be part of the text: a missing character appends nothing.
        if (char c = char(reader.Next().AsInt()))
            out.AppendChar(c);
        break;
    case 'f':
        out.AppendDouble(reader.Next().AsDouble(), directive.width, directive.precision, directive.mode, pad);
        break;
    case 's':
        AppendPaddedText(out, reader.NextText(), directive);
        break;
    case 'S':
        return AppendEscapedText(out, p, directive, reader);
    case 'V':
        out.Append(reader.NextText());
        break;
    case 't':
        out.AppendTime(reader.Next().AsInt(), false, false);
        break;
    case 'T':
        return AppendTimeOfKind(out, p, reader);
    default:
        // Dropped without taking an argument.
        ZT_Assert(false, "zt_string", 1906);
        break;
    }
    return p;
}

} // namespace

ZT_String& ZT_String::FormatAppendArgs(const char* format, const ZT_FormatArg* args, int argCount)
{
    if (!format)
        return *this;
    ArgumentReader reader(args, argCount);
    char pad = 0; // once set by a flag it stays for the rest of the call
    const char* p = format;
    while (*p) {
        const char* plainStart = p;
        while (*p && *p != '%')
            ++p;
        AppendBytes(plainStart, int(p - plainStart));
        if (!*p)
            break;
        FormatDirective directive;
        p = ParseHeader(p + 1, directive, pad);
        if (!*p)
            break;
        p = AppendConversion(*this, p, directive, pad, reader);
    }
    return *this;
}

ZT_String& ZT_String::AppendInt(int32_t value, int digits, char)
{
    int64_t magnitude = value < 0 ? -int64_t(value) : int64_t(value);
    if (digits < 0)
        digits = DecimalDigits(magnitude);
    if (digits == 0)
        digits = 1;
    if (digits > 64)
        digits = 64;
    char text[80];
    int at = 0;
    if (value < 0)
        text[at++] = '-';
    for (int i = digits - 1; i >= 0; --i, magnitude /= 10)
        text[at + i] = char('0' + magnitude % 10);
    at += digits;
    text[at] = 0;
    AppendBytes(text, at);
    return *this;
}

ZT_String& ZT_String::AppendGrouped(int32_t value, int)
{
    int64_t magnitude = value < 0 ? -int64_t(value) : int64_t(value);
    int digits = DecimalDigits(magnitude);
    int width = digits + (digits - 1) / 3;
    if (width < 1)
        width = 1;
    char text[32];
    int at = 0;
    if (value < 0)
        text[at++] = '-';
    int written = 0;
    for (int pos = width - 1; pos >= 0; --pos) {
        if (written == 3) {
            text[at + pos] = '.';
            written = 0;
            continue;
        }
        text[at + pos] = char('0' + magnitude % 10);
        magnitude /= 10;
        ++written;
    }
    at += width;
    text[at] = 0;
    AppendBytes(text, at);
    return *this;
}

ZT_String& ZT_String::AppendDouble(double value, int width, int decimals, int mode, char pad)
{
    if (!std::isfinite(value))
        value = 0.0;
    double magnitude = std::fabs(value);
    int intDigits = magnitude == 0.0 ? 1 : int(std::floor(std::log10(magnitude))) + 1;
    if (width < 0)
        width = intDigits;
    if (width < 1)
        width = 1;
    ZT_Assert(decimals < 16, "zt_string", 1520);
    ZT_Assert(width < 32, "zt_string", 1521);
    if (decimals > 32)
        decimals = 32;
    if (decimals < 0)
        decimals = 0;
    if (width > 64)
        width = 64;

    char sign = 0;
    if (value < 0) {
        sign = '-';
        value = -value;
    } else if (mode == 1) {
        sign = ' ';
    } else if (mode != 0) {
        sign = '+';
    }

    if (width < intDigits) {
        // The integer part does not fit: hashes, and the length field is left as it was.
        int hashes = width + 1 + decimals;
        if (!SetSize(length + hashes + 4))
            return *this;
        memset(data + length, '#', size_t(hashes));
        data[length + hashes] = 0;
        return *this;
    }

    int integerField = width + (sign ? 1 : 0);
    std::string field(size_t(integerField) + 1 + size_t(decimals), ' ');
    field[size_t(integerField)] = '.';

    for (int i = 0; i < decimals; ++i)
        value *= 10.0;
    value += 0.5;
    double scaled = std::floor(value);
    for (int i = decimals - 1; i >= 0; --i) {
        double digit = std::fmod(scaled, 10.0);
        field[size_t(integerField + 1 + i)] = char('0' + int(digit));
        scaled = std::floor(scaled / 10.0);
        value /= 10.0;
    }

    double integerPart = std::floor(value);
    int pos = integerField - 1;
    do {
        field[size_t(pos)] = char('0' + int(std::fmod(integerPart, 10.0)));
        integerPart = std::floor(integerPart / 10.0);
        --pos;
    } while (pos >= 0 && (integerPart > 0.0 || pad == '0'));

    if (sign) {
        if (pad == 0) {
            if (pos >= 0)
                field[size_t(pos)] = sign;
        } else {
            field[0] = sign;
        }
    }
    AppendBytes(field.c_str(), int(field.size()));
    return *this;
}

void ZT_String::Truncate(int n)
{
    if (n <= 0 || length <= n)
        return;
    if (n < 5) {
        data[n] = 0;
    } else {
        data[n - 2] = '.';
        data[n - 1] = '.';
        data[n] = 0;
    }
    UpdateLength();
}
