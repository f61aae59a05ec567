#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sqlite2 {

// An ON CONFLICT choice; Default where the text names none.
enum class Conflict { Default, Rollback, Abort, Fail, Ignore, Replace };

// The choice an upper-cased word names (ROLLBACK, ABORT, FAIL, IGNORE,
// REPLACE); Default for any other word.
Conflict ConflictNamed(std::string_view word);

// One column of a CREATE TABLE text, as SQLite 2 reads it.
struct ColumnInfo {
    std::string name;
    std::string type;  // source text of the declared type, possibly empty
    bool numeric = true; // index key class: text for BLOB/CLOB/CHAR/TEXT types
    bool notNull = false;
    Conflict notNullConflict = Conflict::Default;
    std::optional<std::string> defaultValue; // DEFAULT's text; nullopt: NULL
};

struct TableInfo {
    std::vector<ColumnInfo> columns;
    int integerPrimaryKey = -1; // the column that is the rowid, if any
    // Columns of the unique indexes the statement implies, in the order
    // SQLite 2 creates them as "(TABLE autoindex N)".
    std::vector<std::vector<int>> automaticIndexes;
    std::vector<Conflict> automaticIndexConflicts; // one per automatic index
    // The text up to the closing parenthesis of the column list: what 2.8
    // stores in sqlite_master.
    size_t storedLength = 0;
};

// False for a text that is not a CREATE TABLE with a column list.
bool ParseTableDefinition(std::string_view sql, TableInfo& info);

// The column names of a CREATE INDEX text, dequoted.
bool ParseCreateIndexColumns(std::string_view sql, std::vector<std::string>& columns);

// The BLOB/CLOB/CHAR/TEXT rule for a declared type (white space ignored).
bool IsTextType(std::string_view type);

} // namespace sqlite2
