#pragma once

#include "format.h"

#include <sqlite3.h>

namespace sqlite2 {

// The name of the collation that compares the texts of a numeric-class
// column the way 2.8 does (see CompareAs28).
inline constexpr const char* kNumericCollation = "sqlite2_numeric";

// 2.8's comparison of two stored texts of a numeric column: texts that pass
// the number test compare as numbers and sort before all other texts, which
// compare byte by byte. <0, 0 or >0.
int CompareAs28(std::string_view a, std::string_view b);

// Makes a SQLite 3 connection evaluate like 2.8 where the difference is
// visible in everyday queries: the numeric collation, and sum() as 2.8 has
// it (a floating-point sum that is 0, not NULL, over no rows), and the
// function WithConcatAs28 wraps the operands of || in.
void Install28Rules(sqlite3* connection);

// The text a value is stored with in a 2.x file: texts up to their first
// NUL, integers as 2.8's 32-bit results, reals with 15 significant digits.
Value StoredValue(sqlite3_value* value);

// A result value as 2.8 prints it (reals with 15 significant digits); null
// for NULL. The text lives in buffer or in the statement.
const char* ResultText(sqlite3_stmt* statement, int column, std::string& buffer);

} // namespace sqlite2
