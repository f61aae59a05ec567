#pragma once

#include "schema.h"

#include <sqlite3.h>

namespace sqlite2 {

class Database;

// The virtual-table module through which SQLite 3 reads and writes the
// tables of a 2.x file: "CREATE VIRTUAL TABLE x USING sqlite2(name)" shows
// the file's table name (or sqlite_master, read-only).
//
// Values come back as the texts they are stored with; numeric-class columns
// carry the numeric collation and NUMERIC affinity so that comparisons,
// sorting, min/max and grouping follow 2.8's number rules. Writes keep the
// table's indexes, UNIQUE and NOT NULL constraints, DEFAULT values,
// INTEGER PRIMARY KEY and triggers the way 2.8 does, each row in one step.
void RegisterTableModule(sqlite3* connection, Database* database);

inline constexpr const char* kModuleName = "sqlite2";
// The name the file's sqlite_master has on the SQLite 3 side.
inline constexpr const char* kSchemaTableName = "sqlite2_master";

// The table as declared to SQLite 3.
std::string DeclaredTable(const TableSchema& table);

} // namespace sqlite2
