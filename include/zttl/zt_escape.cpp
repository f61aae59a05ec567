#include "zttl/zt_escape.h"

#include <cstring>

ZT_String HtmlEscape(const char* text)
{
    ZT_String result(text);
    result.Replace("&", "&amp;");
    result.Replace("<", "&lt;");
    result.Replace(">", "&gt;");
    return result;
}

namespace {

struct Entity {
    unsigned char code;
    const char* name;
};

// Applied in this order; the order decides nothing but is kept as designed.
const Entity latin1Entities[] = {
    {0xB2, "&sup2;"}, {0xB3, "&sup3;"},
    {0xB0, "&deg;"}, {0xB4, "&acute;"}, {0x60, "&#145;"},
    {0xE4, "&auml;"}, {0xFC, "&uuml;"}, {0xF6, "&ouml;"}, {0xC4, "&Auml;"}, {0xDC, "&Uuml;"},
    {0xD6, "&Ouml;"}, {0xDF, "&szlig;"},
    {0xE1, "&aacute;"}, {0xE9, "&eacute;"}, {0xED, "&iacute;"}, {0xF3, "&oacute;"}, {0xFA, "&uacute;"},
    {0xC1, "&Aacute;"}, {0xC9, "&Eacute;"}, {0xCD, "&Iacute;"}, {0xD3, "&Oacute;"}, {0xDA, "&Uacute;"},
    {0xE0, "&agrave;"}, {0xE8, "&egrave;"}, {0xEC, "&igrave;"}, {0xF2, "&ograve;"}, {0xF9, "&ugrave;"},
    {0xC0, "&Agrave;"}, {0xC8, "&Egrave;"}, {0xCC, "&Igrave;"}, {0xD2, "&Ograve;"}, {0xD9, "&Ugrave;"},
    {0xE2, "&acirc;"}, {0xEA, "&ecirc;"}, {0xEE, "&icirc;"}, {0xF4, "&ocirc;"}, {0xFB, "&ucirc;"},
    {0xC2, "&Acirc;"}, {0xCA, "&Ecirc;"}, {0xCE, "&Icirc;"}, {0xD4, "&Ocirc;"}, {0xDB, "&Ucirc;"},
    {0xC3, "&Atilde;"}, {0xE3, "&atilde;"}, {0xC7, "&Ccedil;"}, {0xE7, "&ccedil;"},
};

void ReplaceCode(ZT_String& text, unsigned char code, const char* with)
{
    const char what[2] = {char(code), 0};
    text.Replace(what, with);
}

} // namespace

void HtmlEntities(ZT_String& text, bool quotesAsBackslash)
{
    text = HtmlEscape(text.GetString());
    // The markup characters are escaped a second time: "&" ends as "&amp;amp;".
    text.Replace("&", "&amp;");
    text.Replace("<", "&lt;");
    text.Replace(">", "&gt;");
    for (int i = 0; i < 2; ++i)
        ReplaceCode(text, latin1Entities[i].code, latin1Entities[i].name);
    text.Replace("'", quotesAsBackslash ? "\\'" : "&#x27;");
    text.Replace("\"", quotesAsBackslash ? "\\\"" : "&quot;");
    for (size_t i = 2; i < sizeof latin1Entities / sizeof latin1Entities[0]; ++i)
        ReplaceCode(text, latin1Entities[i].code, latin1Entities[i].name);
}

ZT_String CEscape(const char* text)
{
    ZT_String result(text);
    result.Replace("\\", "\\\\");
    result.Replace("'", "\\'");
    result.Replace("\"", "\\\"");
    result.Replace("\n", "\\n");
    result.Replace("\t", "\\t");
    return result;
}

ZT_String UrlEncode(const char* text, int flags)
{
    ZT_String result;
    if (!text)
        return result;
    for (const char* p = text; *p; ++p) {
        char c = *p;
        unsigned char byte = static_cast<unsigned char>(c);
        bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                     strchr("_.-/:", c);
        if ((flags & urlBackslashQuotes) && (c == '\'' || c == '"')) {
            result.AppendChar('\\');
            result.AppendChar(c);
        } else if (c == '&' || c == '%') {
            result.AppendChar('%');
            result.AppendHex(byte, 2);
        } else if (plain) {
            result.AppendChar(c);
        } else if (c == ' ' && (flags & urlBlankAsPlus)) {
            result.AppendChar('+');
        } else if (c == '\\' && !(flags & urlKeepBackslash)) {
            result.AppendChar('/');
        } else {
            result.AppendChar('%');
            result.AppendHex(byte, 2);
        }
    }
    return result;
}

ZT_String CsvQuote(const char* text)
{
    ZT_String result;
    if (!text || !*text)
        return result;
    ZT_String body(text);
    body.Replace("\"", "\"\"");
    result.AppendChar('"');
    result.Append(body.GetString());
    result.AppendChar('"');
    return result;
}
