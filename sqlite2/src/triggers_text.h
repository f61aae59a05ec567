#pragma once

// Token helpers shared by the trigger parser and the rewriting of trigger
// programs (private to the trigger runner).
#include "sql_tokens.h"

#include <string>
#include <string_view>

namespace sqlite2::trigger_text {

// A word or a quoted name: what 2.8 takes as a name.
bool IsName(const Token& token);

// True when the dequoted name equals word, ignoring case ("NEW", "new", [New]).
bool NameIs(std::string_view sql, const Token& token, const char* word);

} // namespace sqlite2::trigger_text
