#pragma once

#include "sql_tokens.h"

#include <string>
#include <string_view>

namespace sqlite2 {

// Where the first statement of an SQL text ends: after its ';' (a CREATE
// TRIGGER's body included) or at the end of the text.
size_t StatementEnd(std::string_view sql);

// The statement's text without a trailing ';' and surrounding blanks: what
// 2.8 stores for a view or trigger.
std::string_view StatementBody(std::string_view statement);

// The statement with every mention of the file's sqlite_master turned into
// the name it has on the SQLite 3 side.
std::string WithSchemaTableName(std::string_view statement, const char* name);

// An INSERT's target table and the columns it names (none: all of them).
// False for any other statement.
bool InsertTarget(std::string_view statement, std::string& table, std::vector<std::string>& columns);

} // namespace sqlite2
