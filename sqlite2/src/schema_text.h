#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sqlite2 {

// One column of a CREATE TABLE text, as SQLite 2 reads it.
struct ColumnInfo {
    std::string name;
    std::string type;  // source text of the declared type, possibly empty
    bool numeric = true; // index key class: text for BLOB/CLOB/CHAR/TEXT types
};

struct TableInfo {
    std::vector<ColumnInfo> columns;
    int integerPrimaryKey = -1; // the column that is the rowid, if any
    // Columns of the unique indexes the statement implies, in the order
    // SQLite 2 creates them as "(TABLE autoindex N)".
    std::vector<std::vector<int>> automaticIndexes;
    // The same statement without declared types (the rowid column keeps its
    // INTEGER), so SQLite 3 stores every value exactly as the text it was.
    std::string typelessSql;
};

// False for a text that is not a CREATE TABLE with a column list.
bool ParseCreateTable(std::string_view sql, TableInfo& info);

// The column names of a CREATE INDEX text, dequoted.
bool ParseCreateIndexColumns(std::string_view sql, std::vector<std::string>& columns);

// The BLOB/CLOB/CHAR/TEXT rule for a declared type (white space ignored).
bool IsTextType(std::string_view type);

} // namespace sqlite2
