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
    // Constructors and assignment copy the text.
    ZT_String() = default;
    ZT_String(const char* text) { Set(text); }
    ZT_String(const ZT_String& other);
    ZT_String& operator=(const ZT_String& other);
    ZT_String& operator=(const char* text)
    {
        Set(text);
        return *this;
    }
    // Frees the buffer.
    ~ZT_String() override;

    // Replaces the text; null or "" frees the buffer. text may point into this
    // string's own buffer.
    void Set(const char* text);
    // Never null: "" without a buffer, "ZT_String ERROR" if the length went negative.
    const char* GetString() const;
    // Same as GetString.
    operator const char*() const { return GetString(); }
    // The cached length. It can lag behind the text after the few operations that
    // say so (Unquote without a closing quote, an overflowing AppendDouble,
    // SetAt); UpdateLength brings it back in line.
    int GetLength() const { return length; }
    // True without a buffer, for "" and when the cached length is below 1.
    bool IsEmpty() const { return !data || data[0] == 0 || length < 1; }
    // Frees the buffer.
    void Empty();
    // 0 for an empty string.
    char FirstChar() const { return data ? data[0] : 0; }
    // Writes c at index i (0-based), growing the zero-filled buffer to i + 1 bytes
    // when needed; a negative index is ignored. The cached length is not updated.
    void SetAt(int i, char c);
    // Recomputes the length from the terminating NUL and gives back unused storage.
    void UpdateLength();

    // Append, += and AppendText add text at the end and return *this; null or ""
    // adds nothing.
    ZT_String& Append(const char* text);
    ZT_String& operator+=(const char* text) { return Append(text); }
    ZT_String& AppendText(const char* text);
    // Adds one byte and counts it, even a NUL (which then ends GetString early).
    ZT_String& AppendChar(char c);
    // Puts text in front; null or "" changes nothing. Returns *this.
    ZT_String& Prepend(const char* text);
    // Upper-case hexadecimal in exactly `digits` digits: zero-filled on the
    // left, or only the low-order digits when the value needs more. digits < 0
    // takes as many as the value needs, 0 counts as 1.
    ZT_String& AppendHex(uint32_t value, int digits);

    // 0-based index of the first c at or after start, or -1 (also for c == 0, an
    // empty string, or start past the end). A negative start counts as 0.
    int FindChar(char c, int start = 0) const;
    // As FindChar for a text; a null text is never found, "" is found at start.
    int Find(const char* text, int start = 0) const;
    // Copy of the first n bytes: the whole string when n >= length, empty when n < 0.
    ZT_String Left(int n) const;
    // Copy from index i to the end; empty when i is past the end, 0 for negative i.
    ZT_String From(int i) const;
    // The bytes at the positions where mask holds mark, up to the shorter of both.
    ZT_String PickByMask(const char* mask, char mark) const;
    // Changes this string to at most n bytes from start (n < 0: to the end) and
    // also returns a copy of the result. A start past the end empties the string.
    ZT_String Mid(int start, int n = -1);
    // Removes white space (ZT_IsSpace) at both ends.
    void Trim();
    // Keeps what lies between a leading '"' (after white space) and the last '"'.
    // Without a closing quote only the opening one goes, and the cached length is
    // deliberately left one too large.
    void Unquote();
    // Drops leading and trailing white space and shortens each inner run of it to
    // its last character.
    void CollapseSpaces();
    // Returns how many bytes were replaced.
    int ReplaceChar(char from, char to);
    // Replaces every occurrence, left to right and not overlapping; nothing
    // happens for a null or empty what or a null with.
    void Replace(const char* what, const char* with);
    // Returns the text before the first separator and removes it from this string
    // together with the separator's first character only: the rest of a longer
    // separator stays in front. Without a separator the whole text is returned
    // and this string is emptied.
    ZT_String SplitOff(const char* separator);
    // Latin-1 lower-case a, e and c with accents become the plain letters.
    void FoldAccents();
    // FoldAccents, and with withPunctuation also "*?-_" become blanks.
    void FoldForMatch(bool withPunctuation = true);
    // ASCII letters only.
    void MakeLower();
    // False for an empty string or a null text.
    bool StartsWith(const char* text) const;
    // Case-sensitive; a null text equals only an empty string.
    bool IsEqual(const char* text) const;
    // Case-insensitive, and then also with accents and "*?-_" folded. False
    // for a null text and for an empty string.
    bool ContainsLoosely(const char* text) const;
    // Appends separator and text, or takes text when the string is empty.
    ZT_String& AppendWithSeparator(const char* text, const char* separator);
    // Replaces each open...close pair (inner pairs first) by one blank. An open
    // mark without a close cuts the text before it, and the byte before the mark
    // goes as well. start is used by the recursion; callers leave it at -1.
    void StripTags(const char* open, const char* close, int start = -1);

    template <class... A>
    // Format replaces the text, FormatAppend adds to it; both return *this. The
    // arguments are tagged by type, so a missing one reads as 0 or "" and an extra
    // one is ignored.
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
    // The format engine. A directive is '%', optional flags (one blank, then '-' or
    // '+', then another blank), a width, ".precision" and a conversion:
    //   %d %u  integer with exactly width digits (see AppendInt: %2d of 123 is "23")
    //   %D     integer grouped with '.', blank-padded on the left to width
    //   %x %X  upper-case hexadecimal in exactly width digits
    //   %c     one character (a 0 appends nothing)
    //   %f     AppendDouble with width, precision, sign mode and pad
    //   %s     text cut to width (with "..") and blank-padded; left-aligned after
    //          '-' or '+'
    //   %S     text cut to width, then escaped by the next letter: h HTML entities,
    //          c C escapes, f URL, q CSV quoting; any other character after
    //          %S is swallowed and the text is left as it is
    //   %V     text as is; %t a stamp (AppendTime); %% a '%'
    //   %T     a stamp by the next letter: l local date and time, m the same for
    //          Unix time, s AppendDuration, x AppendClock; any other
    //          character is swallowed too and AppendTime used
    // A blank flag or a width starting with '0' sets the pad for the rest of the
    // call, not just this directive. '*', '#' and length letters are not understood:
    // an unknown conversion is reported and dropped without taking an argument.
    // A null format appends nothing.
    ZT_String& FormatAppendArgs(const char* format, const ZT_FormatArg* args, int count);

    // Decimal in exactly digits digits, zero-filled on the left; a value that
    // needs more keeps only its low digits (deliberate: the fixed columns rely on
    // it). digits < 0 takes as many as needed, 0 counts as 1, at most 64. A '-'
    // goes in front and is not counted. fill is ignored: the fill is always '0'.
    ZT_String& AppendInt(int32_t value, int digits = -1, char fill = '0');
    // Decimal with '.' between groups of three ("1.000.000"); digits is ignored.
    ZT_String& AppendGrouped(int32_t value, int digits = -1);
    // width integer places (< 0: as many as needed), then '.' and decimals digits,
    // rounded half away from zero; the '.' is written even for 0 decimals
    // ("2."). A value that is not finite counts as 0. mode 0 signs only negatives, 1 puts a blank and
    // any other a '+' before positives; the sign takes a place of its own in front
    // of the field. With pad 0 the sign sits right before the digits, otherwise at
    // the left edge; pad '0' fills the integer places with zeros. An integer part
    // wider than width appends width + 1 + decimals '#' without updating the
    // cached length, as the fixed columns expect.
    ZT_String& AppendDouble(double value, int width, int decimals, int mode = 0, char pad = 0);
    // Cuts the text to n bytes, the last two of them ".." from n = 5 on; n <= 0
    // or a text that fits leaves it unchanged.
    void Truncate(int n);
    // Local "hh:mm" for a stamp of today, otherwise "dd.mm." (plus the year when
    // it is not this year or forceYear) and " hh:mm". A stamp <= 0 appends nothing.
    ZT_String& AppendTime(ZT_Stamp stamp, bool forceDate = false, bool forceYear = false);
    // "dd.mm.yyyy hh:mm:ss".
    ZT_String& AppendDateTime(const struct tm& fields);
    // The two largest units, the second rounded and wrapping ("59s", "1m30s",
    // "1h 0m" also for 1 h 59 m 40 s, "1d 0h", "14w 1d", "99w"). Above 2492 days
    // the program's own "year" is used and its remainder is printed unreduced.
    ZT_String& AppendDuration(uint32_t seconds);
    // "hh:mm:ss" above one hour, else three blanks and "mm:ss" (3600 is "   00:00").
    ZT_String& AppendClock(uint32_t seconds);

protected:
    // Sets the cached length without looking at the text.
    void SetLengthField(int newLength) { length = newLength; }

private:
    // Appends n bytes (which may lie in this string's own buffer).
    void AppendBytes(const char* text, int n);

    int length = 0;
};

// A copy of left with right appended.
ZT_String operator+(const ZT_String& left, const char* right);

// Trimmed and trimmed-then-unquoted copies.
ZT_String Trimmed(ZT_String text);
ZT_String TrimmedUnquoted(ZT_String text);
// The pieces between separators (cut as SplitOff does). It stops at the first
// empty piece, so "a,,b" gives only "a".
ZT_StringList Split(const char* separator, ZT_String text);
// An identifier made of a display text: accents folded, everything before the
// first letter, '-' or '_' dropped, other characters than letters, digits and
// "-_." blanked (':' is blanked too), blank runs collapsed, the ends trimmed
// and the remaining blanks turned into '_'.
ZT_String ToName(const char* text);

// The current time as a stamp.
ZT_Stamp StampNow();
// Same local calendar day or year.
bool SameDay(ZT_Stamp a, ZT_Stamp b);
bool SameYear(ZT_Stamp a, ZT_Stamp b);

// White space of every trimming and splitting operation: blank and 0x00..0x0D.
inline bool ZT_IsSpace(char c)
{
    return c == ' ' || (static_cast<signed char>(c) >= 0 && c <= 0x0D);
}
