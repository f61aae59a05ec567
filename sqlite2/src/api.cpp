// The SQLite 2.8 C interface over the engine.
#include "sqlite.h"

#include "database.h"
#include "sqlite/zt_packedtablebuilder.h"
#include "sql_tokens.h"
#include "value_rules.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

struct sqlite {
    sqlite2::Database database;
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

// SQLite 3 says "incomplete input" where 2.8 names the last word it read.
std::string SyntaxIn28Words(const std::string& message, const char* sql)
{
    if (message != "incomplete input" || !sql)
        return In28Words(message.c_str());
    std::vector<sqlite2::Token> tokens = sqlite2::Tokenize(sql);
    while (!tokens.empty() && sqlite2::IsPunct(sql, tokens.back(), ';'))
        tokens.pop_back();
    if (tokens.empty())
        return message;
    return sqlite2::SyntaxErrorNear(sqlite2::TokenText(sql, tokens.back())).Message();
}

void SetMessage(char** errmsg, const std::string& text)
{
    if (errmsg)
        *errmsg = strdup(text.c_str());
}

// The C API's answer for an outcome: its code, and its message in *errmsg.
int Finish(const sqlite2::Status& status, char** errmsg, const char* sql = nullptr)
{
    if (errmsg)
        *errmsg = nullptr;
    if (!status)
        SetMessage(errmsg, SyntaxIn28Words(status.Message(), sql));
    return status.Code() & 0xFF;
}

bool PragmaIsOn(sqlite3* connection, const char* pragma)
{
    const std::string sql = std::string("PRAGMA ") + pragma;
    sqlite3_stmt* statement = nullptr;
    bool on = sqlite3_prepare_v2(connection, sql.c_str(), -1, &statement, nullptr) == SQLITE_OK &&
              sqlite3_step(statement) == SQLITE_ROW && sqlite3_column_int(statement, 0) != 0;
    sqlite3_finalize(statement);
    return on;
}

// SQLite 3 gives no count row for an UPDATE of a virtual table; with
// count_changes on, 2.8 answers one ("rows updated").
bool CountsUpdate(sqlite3_stmt* statement, sqlite3* connection)
{
    const char* sql = sqlite3_sql(statement);
    const std::string_view text = sql ? sql : "";
    const std::vector<sqlite2::Token> tokens = sqlite2::Tokenize(text.substr(0, 16));
    return !tokens.empty() && sqlite2::IsWord(text, tokens[0], "UPDATE") && PragmaIsOn(connection, "count_changes");
}

// True when the callback asked to stop.
bool DeliverCount(sqlite_callback callback, void* arg, const char* name, int count)
{
    std::string text = std::to_string(count);
    const char* values[] = {text.c_str()};
    const char* names[] = {name};
    return callback(arg, 1, const_cast<char**>(values), const_cast<char**>(names)) != 0;
}

// Steps one prepared statement to its end, handing each row to the callback
// (and, with empty_result_callbacks, a statement without rows once with
// no values). True when the callback asked to stop.
bool DeliverRows(sqlite3_stmt* statement, bool emptyCallbacks, sqlite_callback callback, void* arg)
{
    const int columns = sqlite3_column_count(statement);
    std::vector<const char*> names;
    std::vector<const char*> values(static_cast<size_t>(columns), nullptr);
    std::vector<std::string> buffers(static_cast<size_t>(columns)); // reals as 2.8 prints them, reused row after row
    bool calledBack = false;
    for (;;) {
        const int rc = sqlite3_step(statement);
        const bool row = rc == SQLITE_ROW;
        if (callback && (row || (rc == SQLITE_DONE && !calledBack && emptyCallbacks))) {
            if (!calledBack) {
                for (int c = 0; c < columns; ++c)
                    names.push_back(sqlite3_column_name(statement, c));
                calledBack = true;
            }
            for (int c = 0; row && c < columns; ++c)
                values[size_t(c)] = sqlite2::ResultText(statement, c, buffers[size_t(c)]);
            if (callback(arg, columns, row ? const_cast<char**>(values.data()) : nullptr,
                         const_cast<char**>(names.data())))
                return true;
        }
        if (!row)
            return false;
    }
}

// sqlite3_exec's loop, each statement prepared where the engine runs it:
// rows to the callback, the first failure ends the text (failed then points
// at the statement that failed).
sqlite2::Status ExecuteEachStatement(sqlite* db, const char* sql, sqlite_callback callback, void* arg,
                                     const char*& failed)
{
    sqlite2::Database& database = db->database;
    const char* rest = sql;
    while (rest && *rest) {
        sqlite3_stmt* statement = nullptr;
        const char* tail = nullptr;
        failed = rest;
        if (sqlite2::Status status = database.Prepare(rest, &statement, &tail); !status)
            return status;
        rest = tail;
        if (!statement)
            continue;
        // The pragma may have been set by an earlier statement of this text.
        sqlite3* connection = database.Connection();
        const bool countsUpdate = callback && CountsUpdate(statement, connection);
        const bool emptyCallbacks = callback && !countsUpdate && PragmaIsOn(connection, "empty_result_callbacks");
        bool aborted = DeliverRows(statement, emptyCallbacks, callback, arg);
        const int changes = sqlite3_changes(connection);
        const sqlite2::Status status = database.Finish(statement);
        if (!status && !aborted)
            return status;
        if (!aborted && countsUpdate)
            aborted = DeliverCount(callback, arg, "rows updated", changes);
        if (aborted)
            return {sqlite2::kAbort, "callback requested query abort"};
        while (*rest && isspace(static_cast<unsigned char>(*rest)))
            ++rest;
    }
    return sqlite2::Status::Ok();
}

} // namespace

extern "C" {

sqlite* sqlite_open(const char* filename, int, char** errmsg)
{
    if (errmsg)
        *errmsg = nullptr;
    sqlite* db = new (std::nothrow) sqlite;
    if (!db) {
        SetMessage(errmsg, sqlite2::message::noMemory);
        return nullptr;
    }
    sqlite2::Status status =
        filename && *filename ? db->database.Open(filename) : sqlite2::Status(sqlite2::kCantOpen, "");
    if (!status) {
        SetMessage(errmsg, status.Message().empty() ? sqlite2::message::cantOpen : status.Message());
        delete db;
        return nullptr;
    }
    return db;
}

void sqlite_close(sqlite* db)
{
    delete db; // an unfinished transaction is rolled back
}

int sqlite_exec(sqlite* db, const char* sql, sqlite_callback callback, void* arg, char** errmsg)
{
    if (!db || !sql)
        return SQLITE_MISUSE;
    const char* failed = sql;
    const sqlite2::Status status = ExecuteEachStatement(db, sql, callback, arg, failed);
    return Finish(status, errmsg, failed);
}

int sqlite_get_table(sqlite* db, const char* sql, char*** result, int* nrow, int* ncolumn, char** errmsg)
{
    if (!db || !sql || !result)
        return SQLITE_MISUSE;
    *result = nullptr;
    ZT_PackedTableBuilder table("sqlite_get_table() called with two or more incompatible queries");
    const char* failed = sql;
    sqlite2::Status status = ExecuteEachStatement(db, sql, ZT_PackedTableBuilder::Collect, &table, failed);
    if (status || table.Failure())
        *result = table.Finish();
    if (const char* failure = table.Failure())
        status = {table.OutOfMemory() ? sqlite2::kNoMemory : sqlite2::kError, failure};
    if (status) {
        if (nrow)
            *nrow = table.Rows();
        if (ncolumn)
            *ncolumn = table.Columns();
    }
    return Finish(status, errmsg, failed);
}

void sqlite_free_table(char** result)
{
    ZT_FreePackedTable(result);
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
    sqlite2::Status status = db->database.Prepare(sql, &machine->statement, tail);
    if (!status) {
        delete machine;
        return Finish(status, errmsg, sql);
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
            std::string buffer;
            if (const char* text = sqlite2::ResultText(vm->statement, c, buffer)) {
                vm->texts[size_t(c)] = text;
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
    const sqlite2::Status status = vm->db->database.Finish(vm->statement);
    delete vm;
    return Finish(status, errmsg);
}

int sqlite_last_insert_rowid(sqlite* db)
{
    return db ? int(db->database.LastInsertRowid()) : 0;
}

void sqlite_freemem(void* p)
{
    free(p);
}

} // extern "C"
