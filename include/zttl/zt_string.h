#pragma once

#include "zttl/zt_arrayobval.h"
#include "zttl/zt_arrayval.h"
#include "zttl/zt_formatarg.h"

#include <cstdint>
#include <ctime>

// Seconds since the program's own epoch (Unix time 1009839600).
using ZT_Stamp = int32_t;
constexpr long ZT_StampEpoch = 1009839600L;

// The byte string used throughout: no encoding awareness, grows in 16-byte
// steps and compacts itself after most edits.
class ZT_String : public ZT_ArrayVal<char> {
public:
    ZT_String() = default;
    ZT_String(const char* text) { Set(text); }
    ZT_String(const ZT_String& other);
    ZT_String& operator=(const ZT_String& other);
    ZT_String& operator=(const char* text)
    {
        Set(text);
        return *this;
    }
    ~ZT_String() override;

    void Set(const char* text);
    const char* GetString() const;
    operator const char*() const { return GetString(); }
    int GetLength() const { return length; }
    bool IsEmpty() const { return !data || data[0] == 0 || length < 1; }
    void Empty();
    char FirstChar() const { return data ? data[0] : 0; }
    void SetAt(int i, char c);
    void UpdateLength();

    ZT_String& Append(const char* text);
    ZT_String& operator+=(const char* text) { return Append(text); }
    ZT_String& AppendText(const char* text);
    ZT_String& AppendChar(char c);
    ZT_String& Prepend(const char* text);
    // Upper-case hexadecimal in exactly `digits` digits: zero-filled on the
    // left, or only the low-order digits when the value needs more. digits < 0
    // takes as many as the value needs, 0 counts as 1.
    ZT_String& AppendHex(uint32_t value, int digits);

    int FindChar(char c, int start = 0) const;
    int Find(const char* text, int start = 0) const;
    ZT_String Left(int n) const;
    ZT_String From(int i) const;
    ZT_String PickByMask(const char* mask, char mark) const;
    ZT_String Mid(int start, int n = -1);
    void Trim();
    void Unquote();
    void CollapseSpaces();
    int ReplaceChar(char from, char to);
    void Replace(const char* what, const char* with);
    ZT_String SplitOff(const char* separator);
    void FoldAccents();
    void FoldForMatch(bool withPunctuation = true);
    void MakeLower();
    bool StartsWith(const char* text) const;
    bool IsEqual(const char* text) const;
    // Case-insensitive, and then also with accents and "*?-_" folded.
    bool ContainsLoosely(const char* text) const;
    // Appends separator and text, or takes text when the string is empty.
    ZT_String& AppendWithSeparator(const char* text, const char* separator);
    void StripTags(const char* open, const char* close, int start = -1);

    // Formatting.
    template <class... A>
    ZT_String& Format(const char* format, const A&... args)
    {
        Empty();
        return FormatAppend(format, args...);
    }
    template <class... A>
    ZT_String& FormatAppend(const char* format, const A&... args)
    {
        if constexpr (sizeof...(A) == 0) {
            return FormatAppendArgs(format, nullptr, 0);
        } else {
            const ZT_FormatArg list[] = {ZT_FormatArg(args)...};
            return FormatAppendArgs(format, list, int(sizeof...(A)));
        }
    }
    ZT_String& FormatAppendArgs(const char* format, const ZT_FormatArg* args, int count);

    ZT_String& AppendInt(int32_t value, int digits = -1, char fill = '0');
    ZT_String& AppendGrouped(int32_t value, int digits = -1);
    ZT_String& AppendDouble(double value, int width, int decimals, int mode = 0, char pad = 0);
    void Truncate(int n);
    ZT_String& AppendTime(ZT_Stamp stamp, bool forceDate = false, bool forceYear = false);
    ZT_String& AppendDateTime(const struct tm& fields);
    ZT_String& AppendDuration(uint32_t seconds);
    ZT_String& AppendClock(uint32_t seconds);

protected:
    void SetLengthField(int newLength) { length = newLength; }

private:
    void AppendBytes(const char* text, int n);

    int length = 0;
};

ZT_String operator+(const ZT_String& left, const char* right);

ZT_String Trimmed(ZT_String text);
ZT_String TrimmedUnquoted(ZT_String text);
ZT_StringList Split(const char* separator, ZT_String text);
ZT_String ToName(const char* text);

ZT_Stamp StampNow();
bool SameDay(ZT_Stamp a, ZT_Stamp b);
bool SameYear(ZT_Stamp a, ZT_Stamp b);

// White space of every trimming and splitting operation: blank and 0x00..0x0D.
inline bool ZT_IsSpace(char c)
{
    return c == ' ' || (static_cast<signed char>(c) >= 0 && c <= 0x0D);
}
