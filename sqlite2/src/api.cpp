// The SQLite 2.8 C interface over the engine.
#include "sqlite.h"

#include "engine.h"
#include "packed_table.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

struct sqlite {
    sqlite2::Engine engine;
};

struct sqlite_vm {
    sqlite* db = nullptr;
    sqlite3* connection = nullptr; // the mirror or the reader
    sqlite3_stmt* statement = nullptr;
    std::vector<std::string> texts;
    std::vector<const char*> values;
    std::vector<const char*> names;
};

namespace {

// Where SQLite 2.8 worded a message differently, its words are used.
std::string In28Words(const char* message)
{
    std::string text = message ? message : "unknown error";
    const std::string unique = "UNIQUE constraint failed: ";
    const std::string notNull = "NOT NULL constraint failed: ";
    if (text.compare(0, unique.size(), unique) == 0) {
        std::string column = text.substr(unique.size());
        column = column.substr(0, column.find(','));
        return "column " + column.substr(column.find('.') + 1) + " is not unique";
    }
    if (text.compare(0, notNull.size(), notNull) == 0)
        return text.substr(notNull.size()) + " may not be NULL";
    return text;
}

void SetMessage(char** errmsg, const std::string& text)
{
    if (errmsg)
        *errmsg = strdup(text.c_str());
}

// Runs after every call that may have changed the database.
int WriteBack(sqlite* db, int rc, char** errmsg)
{
    std::string error;
    if (!db->engine.WriteBackChanges(error)) {
        if (errmsg && !*errmsg)
            SetMessage(errmsg, error);
        return rc == SQLITE_OK ? (error == "database is locked" ? SQLITE_BUSY : SQLITE_IOERR) : rc;
    }
    return rc;
}

int Finish(sqlite* db, int rc, const std::string& message, char** errmsg)
{
    if (errmsg)
        *errmsg = nullptr;
    if (rc != SQLITE_OK)
        SetMessage(errmsg, In28Words(message.c_str()));
    return WriteBack(db, rc & 0xFF, errmsg);
}

bool EmptyResultCallbacks(sqlite3* mirror)
{
    sqlite3_stmt* statement = nullptr;
    bool on = sqlite3_prepare_v2(mirror, "PRAGMA empty_result_callbacks", -1, &statement, nullptr) == SQLITE_OK &&
              sqlite3_step(statement) == SQLITE_ROW && sqlite3_column_int(statement, 0) != 0;
    sqlite3_finalize(statement);
    return on;
}

// sqlite3_exec's loop, each statement prepared where the engine runs it:
// rows to the callback, once with no values for a statement without rows
// when empty_result_callbacks is on, the first failure ends the text.
int RunStatements(sqlite* db, const char* sql, sqlite_callback callback, void* arg, std::string& error)
{
    const bool emptyCallbacks = callback && EmptyResultCallbacks(db->engine.Mirror());
    std::vector<const char*> names;
    std::vector<const char*> values;
    const char* rest = sql;
    while (rest && *rest) {
        sqlite3_stmt* statement = nullptr;
        sqlite3* connection = nullptr;
        const char* tail = nullptr;
        int rc = db->engine.Prepare(rest, &statement, &tail, &connection, error);
        if (rc != SQLITE_OK)
            return rc;
        rest = tail;
        if (!statement)
            continue;
        const int columns = sqlite3_column_count(statement);
        bool calledBack = false;
        for (;;) {
            rc = sqlite3_step(statement);
            if (callback && (rc == SQLITE_ROW || (rc == SQLITE_DONE && !calledBack && emptyCallbacks))) {
                if (!calledBack) {
                    names.clear();
                    for (int c = 0; c < columns; ++c)
                        names.push_back(sqlite3_column_name(statement, c));
                    calledBack = true;
                }
                values.clear();
                if (rc == SQLITE_ROW)
                    for (int c = 0; c < columns; ++c)
                        values.push_back(reinterpret_cast<const char*>(sqlite3_column_text(statement, c)));
                if (callback(arg, columns, rc == SQLITE_ROW ? const_cast<char**>(values.data()) : nullptr,
                             const_cast<char**>(names.data()))) {
                    sqlite3_finalize(statement);
                    error = "callback requested query abort";
                    return SQLITE_ABORT;
                }
            }
            if (rc != SQLITE_ROW)
                break;
        }
        if (sqlite3_finalize(statement) != SQLITE_OK) {
            error = sqlite3_errmsg(connection);
            return sqlite3_errcode(connection);
        }
        while (*rest && isspace(static_cast<unsigned char>(*rest)))
            ++rest;
    }
    return SQLITE_OK;
}

} // namespace

extern "C" {

sqlite* sqlite_open(const char* filename, int, char** errmsg)
{
    if (errmsg)
        *errmsg = nullptr;
    sqlite* db = new (std::nothrow) sqlite;
    if (!db) {
        SetMessage(errmsg, "out of memory");
        return nullptr;
    }
    std::string error;
    if (!filename || !*filename || !db->engine.Open(filename, error)) {
        SetMessage(errmsg, error.empty() ? "unable to open database file" : error);
        delete db;
        return nullptr;
    }
    return db;
}

void sqlite_close(sqlite* db)
{
    delete db; // an unfinished transaction is dropped with the mirror
}

int sqlite_exec(sqlite* db, const char* sql, sqlite_callback callback, void* arg, char** errmsg)
{
    if (!db || !sql)
        return SQLITE_MISUSE;
    std::string error;
    int rc = RunStatements(db, sql, callback, arg, error);
    return Finish(db, rc, error, errmsg);
}

int sqlite_get_table(sqlite* db, const char* sql, char*** result, int* nrow, int* ncolumn, char** errmsg)
{
    if (!db || !sql || !result)
        return SQLITE_MISUSE;
    *result = nullptr;
    sqlite2::PackedTableBuilder table("sqlite_get_table() called with two or more incompatible queries");
    std::string error;
    int rc = RunStatements(db, sql, sqlite2::PackedTableBuilder::Collect, &table, error);
    if (rc == SQLITE_OK || table.Failure())
        *result = table.Finish();
    if (const char* failure = table.Failure()) {
        error = failure;
        rc = table.OutOfMemory() ? SQLITE_NOMEM : SQLITE_ERROR;
    }
    if (rc == SQLITE_OK) {
        if (nrow)
            *nrow = table.Rows();
        if (ncolumn)
            *ncolumn = table.Columns();
    }
    return Finish(db, rc, error, errmsg);
}

void sqlite_free_table(char** result)
{
    sqlite2::FreePackedTable(result);
}

int sqlite_compile(sqlite* db, const char* sql, const char** tail, sqlite_vm** vm, char** errmsg)
{
    if (errmsg)
        *errmsg = nullptr;
    if (!db || !sql || !vm)
        return SQLITE_MISUSE;
    *vm = nullptr;
    auto* machine = new (std::nothrow) sqlite_vm;
    if (!machine)
        return SQLITE_NOMEM;
    machine->db = db;
    std::string error;
    if (db->engine.Prepare(sql, &machine->statement, tail, &machine->connection, error) != SQLITE_OK) {
        SetMessage(errmsg, In28Words(error.c_str()));
        delete machine;
        return SQLITE_ERROR;
    }
    *vm = machine;
    return SQLITE_OK;
}

int sqlite_step(sqlite_vm* vm, int* ncolumn, const char*** values, const char*** names)
{
    if (!vm)
        return SQLITE_MISUSE;
    if (values)
        *values = nullptr;
    if (!vm->statement) {
        if (ncolumn)
            *ncolumn = 0;
        return SQLITE_DONE;
    }
    int rc = sqlite3_step(vm->statement);
    int columns = sqlite3_column_count(vm->statement);
    if (ncolumn)
        *ncolumn = columns;
    vm->names.clear();
    for (int c = 0; c < columns; ++c)
        vm->names.push_back(sqlite3_column_name(vm->statement, c));
    if (names)
        *names = vm->names.data();
    if (rc == SQLITE_ROW) {
        vm->texts.assign(size_t(columns), std::string());
        vm->values.assign(size_t(columns), nullptr);
        for (int c = 0; c < columns; ++c) {
            const unsigned char* text = sqlite3_column_text(vm->statement, c);
            if (text) {
                vm->texts[size_t(c)] = reinterpret_cast<const char*>(text);
                vm->values[size_t(c)] = vm->texts[size_t(c)].c_str();
            }
        }
        if (values)
            *values = vm->values.data();
        return SQLITE_ROW;
    }
    return rc == SQLITE_DONE ? SQLITE_DONE : SQLITE_ERROR;
}

int sqlite_finalize(sqlite_vm* vm, char** errmsg)
{
    if (errmsg)
        *errmsg = nullptr;
    if (!vm)
        return SQLITE_OK;
    int rc = vm->statement ? sqlite3_finalize(vm->statement) : SQLITE_OK;
    sqlite* db = vm->db;
    sqlite3* connection = vm->connection;
    delete vm;
    if (rc != SQLITE_OK)
        SetMessage(errmsg, In28Words(sqlite3_errmsg(connection)));
    return WriteBack(db, rc & 0xFF, errmsg);
}

int sqlite_last_insert_rowid(sqlite* db)
{
    return db ? int(db->engine.LastInsertRowId()) : 0;
}

void sqlite_freemem(void* p)
{
    free(p);
}

} // extern "C"
