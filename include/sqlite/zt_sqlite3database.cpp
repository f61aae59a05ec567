#include "sqlite/zt_sqlite3database.h"

#include "sqlite/zt_packedtable.h"
#include "zttl/zt_report.h"

#include <sqlite3.h>

ZT_SQLite3Database::ZT_SQLite3Database(const char* file) : ZT_SQLiteDatabase(file)
{
    OpenOrCreate();
}

ZT_SQLite3Database::~ZT_SQLite3Database()
{
    ZT_SQLite3Database::Close();
}

void ZT_SQLite3Database::TakeError(char* message)
{
    if (message)
        SetError(message);
    sqlite3_free(message);
}

bool ZT_SQLite3Database::Open()
{
    if (handle)
        return true;
    if (!StartOpening())
        return false;
    sqlite3* connection = nullptr;
    if (sqlite3_open(name, &connection) != 0) {
        if (connection)
            SetError(sqlite3_errmsg(connection));
        sqlite3_close(connection);
        handle = nullptr;
        return false;
    }
    handle = connection;
    return handle != nullptr;
}

bool ZT_SQLite3Database::Close()
{
    if (keepOpen)
        return true;
    if (handle) {
        sqlite3_close(Handle());
        handle = nullptr;
    }
    return true;
}

bool ZT_SQLite3Database::Execute(const char* sql)
{
    if (!handle)
        return RejectUnopened("SQLite exec failed: %s");
    char* message = nullptr;
    if (sqlite3_exec(Handle(), sql, nullptr, nullptr, &message) != 0) {
        TakeError(message);
        ReportError("SQLite exec failed: %s", GetError());
        return false;
    }
    return true;
}

sqlite3_stmt* ZT_SQLite3Database::Prepare(const char* sql)
{
    if (!handle) {
        ReportMessage("SQLite: No Database open!");
        return nullptr;
    }
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    if (sqlite3_prepare(Handle(), sql, -1, &statement, &tail) != 0)
        return nullptr;
    return statement;
}

bool ZT_SQLite3Database::QueryValueArgs(ZT_String& out, const char* format, const ZT_FormatArg* args, int count)
{
    ZT_String sql = Render(format, args, count);
    sqlite3_stmt* statement = Prepare(sql.GetString());
    if (!statement)
        return false; // also for an empty text, which prepares to no statement
    bool accepted = sqlite3_step(statement) == SQLITE_ROW;
    if (accepted)
        out.Set(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)));
    sqlite3_finalize(statement);
    return accepted;
}

int ZT_SQLite3Database::FillResult(ZT_SQLiteResultSet& result, const char* sql)
{
    result.Clear();
    if (!handle)
        return RejectUnopened("SQLITE %s");
    char** table = nullptr;
    int rows = 0;
    int columns = 0;
    char* message = nullptr;
    if (GetPackedTable(Handle(), sql, &table, &rows, &columns, &message) != 0) {
        TakeError(message);
        ReportError("SQLITE %s", GetError());
        return 0;
    }
    result.Attach(new ZT_SQLite3Result(table), columns, rows);
    return 1;
}

int ZT_SQLite3Database::LastInsertRowId()
{
    return handle ? int(sqlite3_last_insert_rowid(Handle())) : 0;
}
