#pragma once

#include "schema.h"

#include <sqlite3.h>

namespace sqlite2 {

class Database;

// The virtual tables through which SQLite 3 reads and writes the tables of a
// 2.x file. Each table is an eponymous virtual table: a module registered
// under the table's own name, so that naming the table in SQL is all it
// takes. SQLite 3 asks for its columns only when a statement first uses it,
// which keeps opening a file with many tables cheap.
//
// Values come back as the texts they are stored with; numeric-class columns
// carry the numeric collation so that comparisons, sorting, min/max and
// grouping follow 2.8's number rules. Writes keep the table's indexes,
// UNIQUE and NOT NULL constraints, DEFAULT values, INTEGER PRIMARY KEY and
// triggers the way 2.8 does, each row in one step.

// The name the file's sqlite_master has on the SQLite 3 side (read-only).
inline constexpr const char* kSchemaTableName = "sqlite2_master";

// Shows the file's table `name` (or kSchemaTableName) to SQL on the
// connection. False when SQLite 3 refuses the name.
bool AddTableModule(sqlite3* connection, Database* database, const std::string& name);

// Hides it again: the table was dropped or its definition changed. Statements
// prepared before must be finished first.
void RemoveTableModule(sqlite3* connection, const std::string& name);

// The module through which a connection shows a file's tables in a schema:
// "CREATE VIRTUAL TABLE aux.t USING moduleName(t)", kSchemaTableName for the
// file's sqlite_master. Used for attached files (on their owner's
// connection) and for the main file's tables while others are attached.
// Removed with RemoveTableModule.
bool AddFileModule(sqlite3* connection, Database* file, const std::string& moduleName);

// The CREATE VIRTUAL TABLE that shows the file's table (or kSchemaTableName)
// in the schema through that module.
std::string DeclareTableStatement(const std::string& schema, const std::string& table, const std::string& module);

// The main file's own module of that kind.
inline constexpr const char* kFileModuleName = "sqlite2_file";

// The table as declared to SQLite 3.
std::string DeclaredTable(const TableSchema& table);

} // namespace sqlite2
