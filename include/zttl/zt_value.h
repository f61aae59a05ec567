#pragma once

#include "zttl/zt_string.h"

// A typed value: at the same time a text and, by its kind bits, a boolean,
// an integer, a colour, a time stamp, a range of two 16-bit numbers or a
// double. The string part caches the text form of the other kinds.
class ZT_Value : public ZT_String {
public:
    // The kind bits; kindText is added to another kind once its text is cached.
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
    // Copying takes the text, the numbers and the kind.
    ZT_Value(const ZT_Value& other) : ZT_String(other), number(other.number), real(other.real), kind(other.kind) {}
    ZT_Value& operator=(const ZT_Value& other)
    {
        Assign(other);
        return *this;
    }

    // Same as assignment.
    void Assign(const ZT_Value& other);
    // Empties the text and clears the kind (the numbers stay but no longer count).
    void Clear();
    // SetInt and SetDouble set the number and make it the only kind; the old text
    // stays in the string part until GetText replaces it.
    void SetInt(int32_t n);
    void SetDouble(double d);
    // Takes text without its enclosing quotes, assuming the closing quote is the
    // last character; a text of one or two characters that starts with '"' leaves
    // the old text as it was. The kind is not changed.
    void SetQuotedText(const char* text);
    // A text value holding exactly this text (null is the empty text).
    void SetText(const char* text)
    {
        Set(text);
        kind = kindText;
    }
    // Reads the kind from the text's form, after leading white space: "\"...\""
    // text, "#hex" colour, true/false, "a..b" range, a '.' double, a leading letter
    // text, anything else an integer. False only for null.
    bool SetFromText(const char* text);

    // The text form, cached in the string part (which is why this is not const):
    // doubles with 3 decimals, colours as "#" and a decimal number, booleans as
    // "true"/"false". An empty value and a range answer "(null)", though a range
    // still fills the string part with "low..high".
    const char* GetText();
    // Appends the form SetFromText reads back: texts in quotes, hexadecimal kinds
    // as "0x..." and colours as "#...", integers in decimal or, with hexInts,
    // "0x..."; a zero time stamp is "(null)".
    void ToText(ZT_String& out, bool hexInts) const;
    // The integer of an integral kind; a double rounded half away from zero (0
    // out of range); a text "true"/"false" (which also adds the bool kind), a
    // numeric text, or a "#..." text (which turns the value into a colour). 0
    // otherwise.
    int32_t GetInt();
    // The two signed 16-bit halves of a range, and the double.
    int32_t GetLow() const { return int16_t(uint32_t(number) & 0xFFFF); }
    int32_t GetHigh() const { return int16_t(uint32_t(number) >> 16); }
    double GetDouble() const { return real; }

    // All kind bits as stored.
    uint16_t GetKindBits() const { return kind; }
    // The one kind that counts, by precedence: double, hex, int, range, colour,
    // bool, time, then text; 0 for an empty value.
    uint16_t GetKind() const;
    // Kind tests: IsRange and IsText need that kind alone.
    bool IsDouble() const { return kind & kindDouble; }
    bool IsIntegral() const { return kind & (kindBool | kindHex | kindInt | kindColour | kindTime); }
    bool IsRange() const { return kind == kindRange; }
    bool IsText() const { return kind == kindText; }

private:
    // Packs both into the number; the kind is set by the caller.
    void SetRange(int32_t low, int32_t high);
    bool HasText() const { return kind & kindText; }

    int32_t number = 0;
    double real = 0.0;
    uint16_t kind = 0;
};
