#pragma once

#include <string>
#include <string_view>

namespace sqlite2 {

// The function that turns one operand of || into the text 2.8 would join:
// a real with 15 significant digits (-4221.0 gives "-4221"), an integer as
// its digits, anything else unchanged.
inline constexpr const char* kConcatTextFunction = "sqlite2_text";

// 2.8 holds every value as text, so `'x' || -a` with a = '4221.0' joins
// "-4221", where SQLite 3 would join the real's own spelling "-4221.0".
// Every operand of || is therefore wrapped in kConcatTextFunction, and a
// number literal standing alone (with at most a sign) is joined as spelled
// ('x' || -1.50 is "x-1.50" in 2.8). Returns the statement unchanged when
// it has no ||.
std::string WithConcatAs28(std::string_view statement);

} // namespace sqlite2
