#pragma once

#include "zttl/zt_string.h"

// Text escaping for HTML, C-style strings, URLs and CSV fields. Each returns
// a new string unless it says otherwise.

// "&", "<" and ">" as entities; everything else unchanged.
ZT_String HtmlEscape(const char* text);
// Changes text in place: the markup characters are escaped twice on purpose
// ("<" ends as "&amp;lt;"), Latin-1 letters and signs become named entities,
// and quotes become \' and \" with quotesAsBackslash, else &#x27; and &quot;.
void HtmlEntities(ZT_String& text, bool quotesAsBackslash);
// Backslash, both quotes, newline and tab as C escapes.
ZT_String CEscape(const char* text);

// Options of UrlEncode.
enum ZT_UrlFlags {
    urlBackslashQuotes = 0x01,
    urlKeepBackslash = 0x04,
    urlBlankAsPlus = 0x10,
};
// Letters, digits and "_.-/:" stay; '\' becomes '/' unless urlKeepBackslash;
// everything else (always '&' and '%') becomes %XX. urlBlankAsPlus writes a
// blank as '+', urlBackslashQuotes puts '\' before quotes. Null gives "".
ZT_String UrlEncode(const char* text, int flags);
// The text in double quotes with inner quotes doubled; "" for null or "".
ZT_String CsvQuote(const char* text);
