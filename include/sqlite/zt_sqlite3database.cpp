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

void ZT_SQLite3Database::FreeMessage(char* message)
{
    sqlite3_free(message);
}

void ZT_SQLite3Database::Connect()
{
    sqlite3* connection = nullptr;
    if (sqlite3_open(name, &connection) != 0) {
        if (connection)
            SetError(sqlite3_errmsg(connection));
        sqlite3_close(connection);
        return;
    }
    handle = connection;
}

void ZT_SQLite3Database::Disconnect()
{
    sqlite3_close(Handle());
}

int ZT_SQLite3Database::Exec(const char* sql, char** message)
{
    return sqlite3_exec(Handle(), sql, nullptr, nullptr, message);
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

int ZT_SQLite3Database::GetTable(const char* sql, ZT_SQLiteResult*& table, int& rows, int& columns, char** message)
{
    char** cells = nullptr;
    int code = GetPackedTable(Handle(), sql, &cells, &rows, &columns, message);
    if (code == 0)
        table = new ZT_SQLite3Result(cells);
    return code;
}

int ZT_SQLite3Database::LastInsertRowId()
{
    return handle ? int(sqlite3_last_insert_rowid(Handle())) : 0;
}
