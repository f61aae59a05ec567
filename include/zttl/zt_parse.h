#pragma once

#include "zttl/zt_string.h"

// Lenient text-to-number parsers shared by values and dialog lines: they
// never fail, unreadable text gives 0 or a truncated number.

// Decimal after leading blanks, with an optional sign and at most 12
// characters including it; overflow wraps. A text of more than two characters
// with 'x' or 'X' second (whatever comes first) or '#' first is hexadecimal.
int32_t ParseInt(const char* text);
// Up to 8 hexadecimal digits, stopping at the first other character.
uint32_t ParseHex(const char* text);
// Decimal with an optional '-' and fraction, no exponent; only the first 32
// characters after the blanks are read.
double ParseDouble(const char* text);

// 0 when equal ignoring case; a null or empty text equals only an empty string.
int CompareNoCase(const ZT_String& string, const char* text);
// True when every character is white space or a digit (a sign makes it
// false); false for an empty string.
bool IsNumeric(const ZT_String& string);
