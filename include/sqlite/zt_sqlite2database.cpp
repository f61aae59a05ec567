#include "sqlite/zt_sqlite2database.h"

#include "sqlite.h"
#include "zttl/zt_report.h"

ZT_SQLite2Database::ZT_SQLite2Database(const char* file) : ZT_SQLiteDatabase(file)
{
    OpenOrCreate();
}

ZT_SQLite2Database::~ZT_SQLite2Database()
{
    ZT_SQLite2Database::Close();
}

void ZT_SQLite2Database::FreeMessage(char* message)
{
    sqlite_freemem(message);
}

void ZT_SQLite2Database::Connect()
{
    char* message = nullptr;
    handle = sqlite_open(name, 0, &message);
    if (handle && message)
        ReportError("E_ SQLITE: %s", message);
    else if (!handle && message)
        ReportError("E_ Failed to open %s. SQLITE: %s", name, message);
    TakeError(message);
}

void ZT_SQLite2Database::Disconnect()
{
    sqlite_close(Handle());
}

bool ZT_SQLite2Database::Close()
{
    if (keepOpen)
        return true;
    while (!attached.IsEmpty()) {
        if (!Detach(attached.KeyAt(0)))
            attached.RemoveAt(0);
    }
    return ZT_SQLiteDatabase::Close();
}

bool ZT_SQLite2Database::Detach(const char* attachName)
{
    if (!ExecuteFormat("DETACH DATABASE %s", attachName))
        return false;
    int index = attached.FindIndex(attachName);
    if (index >= 0) {
        // The attached object shares our connection and must never close it.
        if (ZT_SQLite2Database* other = static_cast<ZT_SQLite2Database*>(attached.ValueAt(index)))
            other->handle = nullptr;
        attached.RemoveAt(index);
    }
    return true;
}

int ZT_SQLite2Database::Exec(const char* sql, char** message)
{
    return sqlite_exec(Handle(), sql, nullptr, nullptr, message);
}

sqlite_vm* ZT_SQLite2Database::Prepare(const char* sql)
{
    if (!handle) {
        ReportMessage("SQLite: No Database open!");
        return nullptr;
    }
    const char* tail = nullptr;
    sqlite_vm* vm = nullptr;
    char* message = nullptr;
    if (sqlite_compile(Handle(), sql, &tail, &vm, &message) != 0) {
        Fail(message, "SQLITE %s");
        return nullptr;
    }
    return vm;
}

bool ZT_SQLite2Database::QueryValueArgs(ZT_String& out, const char* format, const ZT_FormatArg* args, int count)
{
    ZT_String sql = Render(format, args, count);
    sqlite_vm* vm = Prepare(sql.GetString());
    if (!vm)
        return false;
    int columns = 0;
    const char** values = nullptr;
    const char** names = nullptr;
    int step = sqlite_step(vm, &columns, &values, &names);
    bool accepted = (step == SQLITE_ROW || step == SQLITE_DONE) && columns >= 1 && values;
    if (accepted)
        out.Set(values[0]);
    char* message = nullptr;
    sqlite_finalize(vm, &message);
    TakeError(message);
    return accepted;
}

int ZT_SQLite2Database::GetTable(const char* sql, ZT_SQLiteResult*& table, int& rows, int& columns, char** message)
{
    char** cells = nullptr;
    int code = sqlite_get_table(Handle(), sql, &cells, &rows, &columns, message);
    if (code != 0) {
        if (cells)
            sqlite_free_table(cells);
        return code;
    }
    table = new ZT_SQLite2Result(cells);
    return 0;
}

int ZT_SQLite2Database::LastInsertRowId()
{
    return handle ? sqlite_last_insert_rowid(Handle()) : 0;
}
