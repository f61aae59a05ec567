#include "database.h"

#include "attach_statements.h"
#include "concat_operands.h"
#include "number_spelling.h"
#include "statement_text.h"
#include "table_module.h"
#include "value_rules.h"

#include <algorithm>
#include <strings.h>

namespace sqlite2 {

namespace {

Status ConnectionError(sqlite3* connection, int rc)
{
    return {StatusCode(rc & 0xff), sqlite3_errmsg(connection)};
}

// 2.8's transaction statements carry words SQLite 3 does not take
// ("BEGIN TRANSACTION name ON CONFLICT ...", "END TRANSACTION").
std::string TransactionStatement(const std::string& verb)
{
    if (verb == "BEGIN")
        return "BEGIN";
    if (verb == "ROLLBACK")
        return "ROLLBACK";
    return "COMMIT";
}

// 2.8's grammar for transactions: BEGIN [TRANSACTION [name]] [ON CONFLICT
// algorithm], COMMIT / END / ROLLBACK [TRANSACTION [name]]. A word that does
// not fit is a syntax error near it, as in 2.8 (SQLite 3 would take
// "BEGIN DEFERRED"). onConflict is BEGIN's default for the transaction.
Status ReadTransactionStatement(std::string_view sql, std::vector<Token> tokens, Conflict& onConflict)
{
    // Past the last word, 2.8 names the ';' that ended the statement.
    const std::vector<Token> written = tokens;
    while (tokens.size() > 1 && IsPunct(sql, tokens.back(), ';'))
        tokens.pop_back();
    auto nearToken = [&](size_t i) {
        return SyntaxErrorNear(TokenText(sql, written[std::min(i, written.size() - 1)]));
    };
    onConflict = Conflict::Default;
    size_t i = 1;
    if (i < tokens.size() && IsWord(sql, tokens[i], "TRANSACTION")) {
        ++i;
        if (i < tokens.size() && tokens[i].kind != 'p' && tokens[i].kind != 'n' && !IsWord(sql, tokens[i], "ON"))
            ++i; // the transaction's name, which 2.8 ignores
    }
    if (i < tokens.size() && Word(sql, tokens, 0) == "BEGIN" && IsWord(sql, tokens[i], "ON")) {
        if (Word(sql, tokens, i + 1) != "CONFLICT")
            return nearToken(i + 1);
        onConflict = ConflictNamed(Word(sql, tokens, i + 2));
        if (onConflict == Conflict::Default)
            return nearToken(i + 2);
        i += 3;
    }
    return i < tokens.size() ? nearToken(i) : Status::Ok();
}

// "INSERT OR x", "UPDATE OR x", "REPLACE INTO".
Conflict ConflictClause(std::string_view sql, const std::vector<Token>& tokens)
{
    const std::string verb = Word(sql, tokens, 0);
    if (verb == "REPLACE")
        return Conflict::Replace;
    if ((verb == "INSERT" || verb == "UPDATE") && Word(sql, tokens, 1) == "OR")
        return ConflictNamed(Word(sql, tokens, 2));
    return Conflict::Default;
}

} // namespace

std::string Sqlite3Text(std::string_view statement)
{
    return WithConcatAs28(WithSchemaTableName(statement, kSchemaTableName));
}

Database::~Database()
{
    triggers.reset();
    if (connection)
        sqlite3_close_v2(connection);
    if (pager.IsWriting())
        pager.Rollback();
    pager.EndRead();
}

Status Database::Open(const std::string& path)
{
    // A new name becomes an empty database. A file shorter than a page has
    // no page 1 for the pager, but anything in it other than the start of
    // the 2.x header means it is something else.
    if (ReadFileStart(path) == FileStart::Other)
        return {kNotADatabase, message::notADatabase};
    if (Status status = pager.Open(path); !status)
        return status;
    tree = std::make_unique<BTree>(pager);
    if (Status status = RebuildConnection(); !status)
        return status;
    Status status = StartStatement();
    EndStatement();
    return status;
}

Status Database::RebuildConnection()
{
    triggers.reset();
    if (connection)
        sqlite3_close_v2(connection);
    connection = nullptr;
    // The connection is this object's alone and is never shared between
    // threads: its mutex would only cost a lock per call, several per value.
    if (sqlite3_open_v2(":memory:", &connection, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX,
                        nullptr) != SQLITE_OK)
        return Status::NoMemory();
    Install28Rules(connection);
    // 2.8 names a result column written "t.id" or "x.id" as written.
    sqlite3_exec(connection, "PRAGMA short_column_names=OFF", nullptr, nullptr, nullptr);
    AddFileModule(connection, this, kFileModuleName);
    triggers = std::make_unique<TriggerRunner>(connection);
    declared.clear();
    schemaLoaded = false;
    return Status::Ok();
}

// Takes the read lock and, when the file's schema changed since it was
// read (or was never read), reads it again and declares it to SQLite 3.
Status Database::StartStatement()
{
    if (!pager.IsReading()) {
        if (Status status = pager.BeginRead(); !status)
            return status;
        if (Status status = tree->ReadHeader(); !status) {
            pager.EndRead();
            return status;
        }
        tree->NoteChange();
    }
    if (schemaLoaded && tree->Meta(60) == schemaCookie)
        return Status::Ok();
    return RefreshSchema();
}

Status Database::RefreshSchema()
{
    ++schemaGeneration;
    if (Status status = schema.Load(*tree); !status)
        return status;
    schemaCookie = tree->Meta(60);
    schemaLoaded = true;
    DeclareSchema();
    triggers->SetTriggers(schema.triggers);
    return Status::Ok();
}

namespace {

// How a table of the file is shown to SQLite 3: an eponymous table (a module
// under its name) while nothing is attached, which costs nothing until a
// statement names it; a table of the main schema once another file is,
// since an attached schema's table would hide an eponymous one of the same
// name, where 2.8 finds the main file's first. "E" or "D", the name and the
// definition, a line each.
std::string TableEntry(bool inSchema, const std::string& name, const std::string& sql)
{
    return std::string(inSchema ? "D" : "E") + "\n" + name + "\n" + sql;
}

std::string EntryName(const std::string& entry)
{
    const size_t start = entry.find('\n') + 1;
    return entry.substr(start, entry.find('\n', start) - start);
}

} // namespace

bool Database::ShowTable(const std::string& entry)
{
    const std::string name = EntryName(entry);
    if (entry[0] == 'E')
        return AddTableModule(connection, this, name);
    const std::string create = DeclareTableStatement("main", name, kFileModuleName);
    return sqlite3_exec(connection, create.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

void Database::HideTable(const std::string& entry)
{
    const std::string name = EntryName(entry);
    if (entry[0] == 'E') {
        RemoveTableModule(connection, name);
        return;
    }
    const std::string drop = "DROP TABLE IF EXISTS main." + QuoteName(name);
    sqlite3_exec(connection, drop.c_str(), nullptr, nullptr, nullptr);
}

// Makes SQLite 3's side match the schema: a virtual table per table, the
// views, and the triggers of views (which SQLite 3 runs itself). Objects
// whose definition changed are made anew.
void Database::DeclareSchema()
{
    std::map<std::string, std::string> wanted; // SQLite 3 name -> statement that makes it
    std::vector<std::string> order;
    auto want = [&](const std::string& key, std::string sql) {
        wanted[key] = std::move(sql);
        order.push_back(key);
    };
    // A table's entry is how it is shown, its name and its definition: a
    // table made anew under the same name gets its new columns.
    const bool inSchema = !attached.empty();
    want(std::string("table:") + kSchemaTableName, TableEntry(inSchema, kSchemaTableName, ""));
    for (const SchemaRow& row : schema.rows) {
        if (row.type == "table" && row.sql && schema.FindTable(row.name))
            want("table:" + Lower(row.name), TableEntry(inSchema, row.name, *row.sql));
        else if (row.type == "view" && row.sql)
            want("view:" + Lower(row.name), Sqlite3Text(*row.sql));
    }
    for (size_t t = 0; t < schema.triggers.size(); ++t)
        if (!schema.FindTable(schema.triggers[t].table))
            want("trigger:" + Lower(schema.triggers[t].name),
                 Sqlite3Text(*schema.triggerRows[t].sql));

    for (auto it = declared.begin(); it != declared.end();) {
        auto found = wanted.find(it->first);
        if (found != wanted.end() && found->second == it->second) {
            ++it;
            continue;
        }
        const std::string kind = it->first.substr(0, it->first.find(':'));
        const std::string name = it->first.substr(kind.size() + 1);
        if (kind == "table") {
            HideTable(it->second);
        } else {
            const std::string drop = "DROP " + std::string(kind == "view" ? "VIEW" : "TRIGGER") + " IF EXISTS " +
                                     QuoteName(name);
            sqlite3_exec(connection, drop.c_str(), nullptr, nullptr, nullptr);
        }
        it = declared.erase(it);
    }
    for (const std::string& key : order) {
        if (declared.count(key))
            continue;
        const std::string& definition = wanted[key];
        // Like 2.8, an object whose statement does not work is left out.
        const bool made = key.compare(0, 6, "table:") == 0
                              ? ShowTable(definition)
                              : sqlite3_exec(connection, definition.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
        if (made)
            declared[key] = definition;
    }
}

void Database::EndStatement()
{
    EndAttachedStatements(false);
    if (activeStatements > 0 || !sqlite3_get_autocommit(connection))
        return;
    if (pager.IsWriting())
        (void)CommitWrite();
    pager.EndRead();
}

Status Database::Prepare(const char* sql, sqlite3_stmt** statement, const char** tail)
{
    *statement = nullptr;
    const std::string_view text(sql);
    const size_t end = StatementEnd(text);
    if (tail)
        *tail = sql + end;
    const std::string_view written = text.substr(0, end);
    const std::vector<Token> tokens = Tokenize(written);
    if (tokens.empty() || (tokens.size() == 1 && IsPunct(written, tokens[0], ';')))
        return Status::Ok();
    Status started = StartStatement();
    if (started)
        started = StartAttachedStatements();
    if (!started) {
        EndStatement();
        return started;
    }
    const std::string verb = Word(written, tokens, 0);
    bool handled = false;
    Status status = RunAttachStatement(written, handled);
    if (!handled)
        status = RunSchemaStatement(written, handled);
    if (handled) {
        if (!status && pager.IsWriting() && sqlite3_get_autocommit(connection))
            RollbackWrite();
        EndStatement();
        return status;
    }
    std::string rewritten;
    if (verb == "BEGIN" || verb == "END" || verb == "COMMIT" || verb == "ROLLBACK") {
        Conflict onConflict = Conflict::Default;
        if (Status syntax = ReadTransactionStatement(written, tokens, onConflict); !syntax) {
            EndStatement();
            return syntax;
        }
        if (verb == "BEGIN")
            transactionConflict = onConflict;
        rewritten = TransactionStatement(verb);
        transactionVerb = verb;
    } else {
        rewritten = Sqlite3Text(written);
        if (verb == "INSERT" || verb == "UPDATE" || verb == "REPLACE")
            rewritten = KeepNumberSpelling(rewritten);
    }
    pendingInsert = {};
    statementConflict = ConflictClause(written, tokens);
    // BEGIN's ON CONFLICT stands for every statement of the transaction that
    // has no OR clause of its own; in 2.8 it even overrides the constraints'.
    if (statementConflict == Conflict::Default && !sqlite3_get_autocommit(connection))
        statementConflict = transactionConflict;
    if (InsertTarget(written, pendingInsert.table, pendingInsert.columns))
        pendingInsert.table = Lower(pendingInsert.table);
    int rc = sqlite3_prepare_v2(connection, rewritten.c_str(), -1, statement, nullptr);
    if (rc != SQLITE_OK) {
        status = ConnectionError(connection, rc);
        EndStatement();
        return status;
    }
    ++activeStatements;
    return Status::Ok();
}

Status Database::Finish(sqlite3_stmt* statement)
{
    if (!statement)
        return Status::Ok();
    const int rc = sqlite3_finalize(statement);
    Status status = rc == SQLITE_OK ? Status::Ok() : ConnectionError(connection, rc);
    --activeStatements;
    // A transaction that only changed the schema has no table to end it.
    if (!transactionVerb.empty() && sqlite3_get_autocommit(connection) && pager.IsWriting()) {
        if (transactionVerb == "ROLLBACK" || !status)
            RollbackWrite();
        else if (Status committed = CommitWrite(); !committed && status)
            status = committed;
    }
    transactionVerb.clear();
    if (sqlite3_get_autocommit(connection))
        transactionConflict = Conflict::Default;
    pendingInsert = {};
    if (statementStart >= 0 && pager.IsWriting())
        pager.Release(statementStart);
    statementStart = -1;
    EndAttachedStatements(true);
    EndStatement();
    return status;
}

Status Database::BeginWrite()
{
    if (pager.IsWriting())
        return Status::Ok();
    if (Status status = pager.BeginWrite(); !status)
        return status;
    if (tree->IsEmpty())
        return tree->Initialize();
    return Status::Ok();
}

Status Database::CommitWrite()
{
    if (!pager.IsWriting())
        return Status::Ok();
    savepoints.clear();
    statementStart = -1;
    Status status = pager.Commit();
    if (!status) {
        tree->NoteChange();
        schemaLoaded = false;
        (void)tree->ReadHeader();
    }
    return status;
}

void Database::RollbackWrite()
{
    if (!pager.IsWriting())
        return;
    savepoints.clear();
    statementStart = -1;
    pager.Rollback();
    tree->NoteChange();
    (void)tree->ReadHeader();
    schemaLoaded = false; // schema statements of the transaction are undone too
}

void Database::OpenSavepoint(int level)
{
    if (!pager.IsWriting() || level < 0)
        return;
    while (int(savepoints.size()) <= level)
        savepoints.push_back(pager.OpenSavepoint());
}

void Database::ReleaseSavepoint(int level)
{
    while (level >= 0 && int(savepoints.size()) > level) {
        pager.Release(savepoints.back());
        savepoints.pop_back();
    }
}

void Database::RollbackToSavepoint(int level)
{
    if (level < 0 || int(savepoints.size()) <= level)
        return;
    pager.RollbackTo(savepoints[size_t(level)]);
    tree->NoteChange();
    (void)tree->ReadHeader();
}

void Database::MarkStatementStart()
{
    if (statementStart < 0 && pager.IsWriting())
        statementStart = pager.OpenSavepoint();
}

void Database::UndoStatement()
{
    if (statementStart < 0 || !pager.IsWriting())
        return;
    pager.RollbackTo(statementStart);
    tree->NoteChange();
    (void)tree->ReadHeader();
}

const std::vector<bool>* Database::InsertedColumns(const TableSchema& table) const
{
    if (triggerDepth > 0 || pendingInsert.table != Lower(table.name) || pendingInsert.columns.empty())
        return nullptr;
    insertedColumns.assign(table.info.columns.size(), false);
    for (const std::string& name : pendingInsert.columns)
        for (size_t c = 0; c < table.info.columns.size(); ++c)
            if (strcasecmp(name.c_str(), table.info.columns[c].name.c_str()) == 0)
                insertedColumns[c] = true;
    return &insertedColumns;
}

void Database::NoteInsertedRowid(int64_t rowid)
{
    lastInsertRowid = rowid;
}

} // namespace sqlite2
