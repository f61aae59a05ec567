#pragma once

// The parts of the table module that its reading and writing halves share.
#include "database.h"
#include "schema.h"

#include <sqlite3.h>

namespace sqlite2 {

// The file's sqlite_master as a table (read-only).
const TableSchema& SchemaTable();

struct TableVtab : sqlite3_vtab {
    Database* database = nullptr;
    std::string name; // the file's table name
    bool schemaTable = false;
    // False for an attached file's table as its owner's connection sees it;
    // true on the connection of the file's own Database.
    bool onOwnConnection = true;

    const TableSchema* Table() const
    {
        return schemaTable ? &SchemaTable() : database->CurrentSchema().FindTable(name);
    }
};

// Puts the message on the vtab for SQLite 3 and returns its result code.
int Fail(sqlite3_vtab* vtab, const Status& status);

// The writing half (table_writes.cpp).
int UpdateRow(sqlite3_vtab* vtab, int argc, sqlite3_value** argv, sqlite3_int64* rowid);
int BeginWrite(sqlite3_vtab* vtab);
int SyncWrite(sqlite3_vtab* vtab);
int CommitWrite(sqlite3_vtab* vtab);
int RollbackWrite(sqlite3_vtab* vtab);
int OpenSavepoint(sqlite3_vtab* vtab, int level);
int ReleaseSavepoint(sqlite3_vtab* vtab, int level);
int RollbackToSavepoint(sqlite3_vtab* vtab, int level);

} // namespace sqlite2
