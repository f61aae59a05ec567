#pragma once

#include "zttl/zt_string.h"

// Text escaping for HTML, C-style strings, URLs and CSV fields.
ZT_String HtmlEscape(const char* text);
void HtmlEntities(ZT_String& text, bool quotesAsBackslash);
ZT_String CEscape(const char* text);

enum ZT_UrlFlags {
    urlBackslashQuotes = 0x01,
    urlKeepBackslash = 0x04,
    urlBlankAsPlus = 0x10,
};
ZT_String UrlEncode(const char* text, int flags);
ZT_String CsvQuote(const char* text);
