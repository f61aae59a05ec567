#pragma once

#include "zttl/zt_string.h"

// Lenient text-to-number parsers shared by values and dialog lines: they
// never fail, unreadable text gives 0 or a truncated number.
int32_t ParseInt(const char* text);
uint32_t ParseHex(const char* text);
double ParseDouble(const char* text);

// 0 when equal ignoring case; a null or empty text equals only an empty string.
int CompareNoCase(const ZT_String& string, const char* text);
// True when every character is white space or a digit (a sign makes it false).
bool IsNumeric(const ZT_String& string);
