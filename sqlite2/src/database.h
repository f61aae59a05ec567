#pragma once

#include "btree.h"
#include "pager.h"
#include "schema.h"
#include "triggers.h"

#include <functional>
#include <map>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <string_view>
#include <vector>

namespace sqlite2 {

// A statement of the file as SQLite 3 is given it: sqlite_master under its
// name on the SQLite 3 side, and the operands of || joined as 2.8 prints them.
std::string Sqlite3Text(std::string_view statement);

// A 2.x database file open for SQL: its B-trees under a SQLite 3 connection
// where every table of the file is a virtual table over its B-tree and every
// view a SQLite 3 view, so SQLite 3 evaluates the SQL while every row is
// read from and written to the file's own pages.
//
// Locks are SQLite 2's: the read lock is held from the start of a statement
// until it is finished (or until a transaction ends), the write lock from
// the first change until the commit. Between statements the file is
// unlocked; the next statement sees whatever other programs committed, the
// schema included.
class Database {
public:
    Database() = default;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    ~Database();

    // Opens (creating an empty file for a new name), rolls back a hot
    // journal and reads the schema. The file is unlocked afterwards.
    Status Open(const std::string& path);

    // Prepares the first statement of sql (schema statements are run here
    // and answer with a null statement). Takes the read lock, which Finish
    // releases. tail is set past the statement.
    Status Prepare(const char* sql, sqlite3_stmt** statement, const char** tail);
    // Ends a statement that Prepare started: finalizes it, and once no
    // statement runs and no transaction is open, commits what the statement
    // changed and releases the lock. Returns the statement's outcome.
    Status Finish(sqlite3_stmt* statement);

    sqlite3* Connection() const { return connection; }
    int64_t LastInsertRowid() const { return lastInsertRowid; }

    // For the table module.
    BTree& Tree() { return *tree; }
    Schema& CurrentSchema() { return schema; }
    // Moves on whenever the schema is read again (its objects are then new).
    uint64_t SchemaGeneration() const { return schemaGeneration; }
    TriggerRunner& Triggers() { return *triggers; }
    // The write transaction that SQLite 3's calls on the tables drive; each
    // is a no-op when it has nothing to do, as every table of a statement
    // passes the same call on.
    Status BeginWrite();
    Status CommitWrite();
    void RollbackWrite();
    void OpenSavepoint(int level);
    void ReleaseSavepoint(int level);
    void RollbackToSavepoint(int level);
    // The columns an INSERT into the table names, when the running statement
    // is such an INSERT (the others get their DEFAULT); null otherwise.
    const std::vector<bool>* InsertedColumns(const TableSchema& table) const;
    void NoteInsertedRowid(int64_t rowid);
    // The running top-level statement's OR clause (REPLACE for REPLACE INTO);
    // Default when it has none.
    Conflict StatementConflict() const { return statementConflict; }
    // The file as it was when the running top-level statement began to
    // write, so that a statement that fails leaves nothing behind (ABORT).
    void MarkStatementStart();
    void UndoStatement();
    int& TriggerDepth() { return triggerDepth; }

    // An attached file is a Database of its own (its pager, B-trees, schema,
    // and a connection where its trigger programs run) whose tables are also
    // tables of the schema it was attached as on its owner's connection. The
    // owner's statements drive it: they take its locks, give the statement's
    // OR clause and INSERT columns, and end its write transaction.
    Database& StatementOwner() { return *owner; }
    bool IsAttached() const { return owner != this; }

private:
    struct PendingInsert {
        std::string table;            // lower case
        std::vector<std::string> columns; // as named
    };

    Status StartStatement();
    Status RefreshSchema();
    void DeclareSchema();
    // One table of the file on SQLite 3's side, by its entry of DeclareSchema.
    bool ShowTable(const std::string& entry);
    void HideTable(const std::string& entry);
    Status RebuildConnection();
    // CREATE and DROP of the file's tables, indexes, views and triggers
    // (schema_statements.cpp); handled is false for any other statement.
    Status RunSchemaStatement(std::string_view sql, bool& handled);
    // ATTACH and DETACH (attach_statements.cpp); handled is false for any
    // other statement.
    Status RunAttachStatement(std::string_view sql, bool& handled);
    Status Attach(const std::string& path, const std::string& name);
    Status Detach(const std::string& name);
    // Shows an attached file's tables and views on this connection again
    // when its schema was read anew.
    Status DeclareAttached(size_t index);
    // The attached files' part of a statement's start and end.
    Status StartAttachedStatements();
    void EndAttachedStatements(bool release);
    Status WriteSchemaChange(const std::function<Status()>& change);
    Status CreateTable(std::string_view body);
    Status CreateIndex(std::string_view body, bool unique);
    Status CreateView(std::string_view body);
    Status CreateTrigger(std::string_view body);
    Status DropObject(const std::string& kind, const std::string& name, bool ifExists);
    void EndStatement();

    Pager pager;
    std::unique_ptr<BTree> tree;
    Schema schema;
    uint32_t schemaCookie = 0;
    bool schemaLoaded = false;
    uint64_t schemaGeneration = 0;
    std::map<std::string, std::string> declared; // what SQLite 3 was given, by "kind:name"
    std::string transactionVerb;                 // of the statement running, if BEGIN/COMMIT/...
    sqlite3* connection = nullptr;
    std::unique_ptr<TriggerRunner> triggers;
    int activeStatements = 0;
    int triggerDepth = 0;
    int64_t lastInsertRowid = 0;
    PendingInsert pendingInsert;
    mutable std::vector<bool> insertedColumns;
    std::vector<int> savepoints; // the pager's savepoint for each level
    Conflict statementConflict = Conflict::Default;
    Conflict transactionConflict = Conflict::Default; // BEGIN's ON CONFLICT, while its transaction runs
    int statementStart = -1; // the pager's savepoint, while a statement writes

    struct AttachedFile {
        std::string name; // as attached; SQLite 3 knows it under the same name
        std::unique_ptr<Database> file;
        uint64_t declaredGeneration = 0; // the file's schema generation its tables were shown for
    };
    std::vector<AttachedFile> attached;
    Database* owner = this;
};

} // namespace sqlite2
