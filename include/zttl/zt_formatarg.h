#pragma once

#include <cstdint>

class ZT_String;

// One argument of a format call, tagged with its kind. The engine is always
// told how many arguments it has, so a conversion without one reads 0 or "".
class ZT_FormatArg {
public:
    // Integers (char and bool included) of any width are kept in 64 bits;
    // unsigned 64-bit values above the signed range wrap. A text or string
    // argument is kept by pointer: it must outlive the format call.
    ZT_FormatArg(int v) : kind(Integer), integer(v) {}
    ZT_FormatArg(unsigned v) : kind(Integer), integer(v) {}
    ZT_FormatArg(long v) : kind(Integer), integer(v) {}
    ZT_FormatArg(unsigned long v) : kind(Integer), integer(int64_t(v)) {}
    ZT_FormatArg(long long v) : kind(Integer), integer(v) {}
    ZT_FormatArg(unsigned long long v) : kind(Integer), integer(int64_t(v)) {}
    ZT_FormatArg(char v) : kind(Integer), integer(v) {}
    ZT_FormatArg(bool v) : kind(Integer), integer(v) {}
    ZT_FormatArg(double v) : kind(Real), real(v) {}
    ZT_FormatArg(const char* v) : kind(Text), text(v) {}
    ZT_FormatArg(char* v) : kind(Text), text(v) {}
    ZT_FormatArg(const ZT_String& v) : kind(String), string(&v) {}

    // The low 32 bits of an integer, a real truncated toward zero (0 when not
    // finite, wrapping beyond 64 bits), 0 for a text.
    int32_t AsInt() const;
    // AsInt reinterpreted as unsigned.
    uint32_t AsUnsigned() const { return uint32_t(AsInt()); }
    // An integer or real as a double, 0.0 for a text.
    double AsDouble() const;
    // The text of a text or string argument ("" for null), "" for numbers.
    const char* AsText() const;

private:
    enum Kind { Integer, Real, Text, String } kind;
    union {
        int64_t integer;
        double real;
        const char* text;
        const ZT_String* string;
    };
};
