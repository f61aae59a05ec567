#pragma once

#include "btree.h"
#include "schema_text.h"
#include "triggers.h"

#include <map>
#include <memory>

namespace sqlite2 {

// An index of a 2.x table: explicit (CREATE INDEX) or automatic (from a
// UNIQUE or PRIMARY KEY constraint, named "(TABLE autoindex N)").
struct IndexSchema {
    std::string name;
    std::string table;
    uint32_t root = 0;
    std::vector<int> columns; // positions in the table; -1 for the rowid
    bool unique = false;
    Conflict conflict = Conflict::Default;
};

struct TableSchema {
    std::string name;
    uint32_t root = 0;
    std::string sql;
    TableInfo info;
    std::vector<IndexSchema> indexes; // in schema order
};

// One row of sqlite_master as it is in the file.
struct SchemaRow {
    int32_t rowid = 0;
    std::string type, name, table;
    uint32_t root = 0;
    Value sql;
};

// The schema of a 2.x file as 2.8 loads it: the rows of sqlite_master in
// rowid order, each statement parsed; a statement 2.8 could not load (a
// table that does not parse, an index or trigger of an unknown table) is
// left out silently, as 2.8 does.
struct Schema {
    std::vector<SchemaRow> rows;
    std::map<std::string, TableSchema> tables; // by lower-case name
    std::vector<SchemaRow> views;
    std::vector<TriggerDefinition> triggers;
    std::vector<SchemaRow> triggerRows; // parallel to triggers

    // Corrupt for a schema table that cannot be read.
    Status Load(BTree& tree);
    TableSchema* FindTable(const std::string& name);
    // The table (and position of) the index with this name, or null.
    const IndexSchema* FindIndex(const std::string& name, const TableSchema** table = nullptr) const;
};

std::string Lower(std::string text);

// Index columns as TableInfo positions for a list of names; false when a
// name is not a column of the table.
bool IndexColumns(const TableInfo& info, const std::vector<std::string>& names, std::vector<int>& columns);

} // namespace sqlite2
