#pragma once

#include "zttl/zt_string.h"

// A typed value: at the same time a text and, by its kind bits, a boolean,
// an integer, a colour, a time stamp, a range of two 16-bit numbers or a
// double. The string part caches the text form of the other kinds.
class ZT_Value : public ZT_String {
public:
    enum KindBits : uint16_t {
        kindBool = 0x01,
        kindHex = 0x02,
        kindInt = 0x04,
        kindColour = 0x08,
        kindTime = 0x10,
        kindRange = 0x20,
        kindDouble = 0x40,
        kindText = 0x80,
    };

    ZT_Value() = default;
    ZT_Value(const ZT_Value& other) : ZT_String(other), number(other.number), real(other.real), kind(other.kind) {}
    ZT_Value& operator=(const ZT_Value& other)
    {
        Assign(other);
        return *this;
    }

    void Assign(const ZT_Value& other);
    void Clear();
    void SetInt(int32_t n);
    void SetDouble(double d);
    void SetQuotedText(const char* text);
    // A text value holding exactly this text (null is the empty text).
    void SetText(const char* text)
    {
        Set(text);
        kind = kindText;
    }
    bool SetFromText(const char* text);

    const char* GetText();
    void ToText(ZT_String& out, bool hexInts) const;
    int32_t GetInt();
    int32_t GetLow() const { return int16_t(uint32_t(number) & 0xFFFF); }
    int32_t GetHigh() const { return int16_t(uint32_t(number) >> 16); }
    double GetDouble() const { return real; }

    uint16_t GetKindBits() const { return kind; }
    uint16_t GetKind() const;
    bool IsDouble() const { return kind & kindDouble; }
    bool IsIntegral() const { return kind & (kindBool | kindHex | kindInt | kindColour | kindTime); }
    bool IsRange() const { return kind == kindRange; }
    bool IsText() const { return kind == kindText; }

private:
    void SetRange(int32_t low, int32_t high);
    bool HasText() const { return kind & kindText; }

    int32_t number = 0;
    double real = 0.0;
    uint16_t kind = 0;
};
