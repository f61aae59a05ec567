#pragma once

#include <cstdint>

class ZT_String;

// One argument of a format call, tagged with its kind. The engine is always
// told how many arguments it has, so a conversion without one reads 0 or "".
class ZT_FormatArg {
public:
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

    int32_t AsInt() const;
    uint32_t AsUnsigned() const { return uint32_t(AsInt()); }
    double AsDouble() const;
    const char* AsText() const; // never null

private:
    enum Kind { Integer, Real, Text, String } kind;
    union {
        int64_t integer;
        double real;
        const char* text;
        const ZT_String* string;
    };
};
