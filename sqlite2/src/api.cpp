// The SQLite 2.8 C interface over the engine.
#include "sqlite.h"

#include "engine.h"

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

int Finish(sqlite* db, int rc, char* message3, char** errmsg)
{
    if (errmsg)
        *errmsg = nullptr;
    if (rc != SQLITE_OK)
        SetMessage(errmsg, In28Words(message3 ? message3 : sqlite3_errmsg(db->engine.Mirror())));
    sqlite3_free(message3);
    return WriteBack(db, rc & 0xFF, errmsg);
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
    char* message = nullptr;
    int rc = sqlite3_exec(db->engine.Mirror(), sql, callback, arg, &message);
    return Finish(db, rc, message, errmsg);
}

int sqlite_get_table(sqlite* db, const char* sql, char*** result, int* nrow, int* ncolumn, char** errmsg)
{
    if (!db || !sql || !result)
        return SQLITE_MISUSE;
    char* message = nullptr;
    int rc = sqlite3_get_table(db->engine.Mirror(), sql, result, nrow, ncolumn, &message);
    return Finish(db, rc, message, errmsg);
}

void sqlite_free_table(char** result)
{
    sqlite3_free_table(result);
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
    if (sqlite3_prepare_v2(db->engine.Mirror(), sql, -1, &machine->statement, tail) != SQLITE_OK) {
        SetMessage(errmsg, In28Words(sqlite3_errmsg(db->engine.Mirror())));
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
    delete vm;
    if (rc != SQLITE_OK)
        SetMessage(errmsg, In28Words(sqlite3_errmsg(db->engine.Mirror())));
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
