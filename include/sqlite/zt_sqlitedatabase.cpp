#include "sqlite/zt_sqlitedatabase.h"

#include "sqlite/zt_sqlite2database.h"
#include "sqlite/zt_sqlite3database.h"
#include "sqlite/zt_sqlitememory.h"
#include "zttl/zt_parse.h"
#include "zttl/zt_report.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <sqlite3.h>
#include <string>
#include <sys/stat.h>
#include <vector>

ZT_SQLiteDatabase::ZT_SQLiteDatabase(const char* file)
{
    memset(name, 0, sizeof name);
    // A name that does not fit is refused rather than cut: Open then fails.
    if (file && strlen(file) < sizeof name)
        strcpy(name, file);
}

ZT_SQLiteDatabase::~ZT_SQLiteDatabase() = default;

namespace {

const char notOpenMessage[] = "unable to open database file";

// Connections released without Close, and objects left to the end of the
// process, stay alive until it ends; keeping them listed says that this is
// intended, not a leak.
std::vector<void*>& LeftToProcessEnd()
{
    static auto* connections = new std::vector<void*>; // never destroyed, like the connections
    return *connections;
}

// The program runs on one thread: SQLite's mutexes and its memory
// statistics only cost time (a lock per allocation, several per row), and
// its memory comes from the size classes of zt_sqlitememory. Both
// generations need this, the 2.x engine evaluating on SQLite 3 as well, and
// it must happen before SQLite's first use.
void ConfigureLibraryOnce()
{
    static const bool configured = [] {
        sqlite3_config(SQLITE_CONFIG_SINGLETHREAD);
        sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
        sqlite3_config(SQLITE_CONFIG_MALLOC, &ZT_SQLiteMemoryMethods());
        return true;
    }();
    (void)configured;
}

} // namespace

void ReleaseDatabase(ZT_SQLiteDatabase* database)
{
    if (!database)
        return;
    if (database->handle)
        LeftToProcessEnd().push_back(database->handle);
    database->~ZT_SQLiteDatabase();
    ::operator delete(database);
}

bool ZT_SQLiteDatabase::OpenOrCreate()
{
    created = false;
    struct stat entry;
    if (NameIsUsable() && stat(name, &entry) == 0 && !S_ISDIR(entry.st_mode))
        return Open();
    if (!Open())
        return false;
    OnCreated();
    created = true;
    return true;
}

bool ZT_SQLiteDatabase::StartOpening()
{
    ClearError();
    keepOpen = false;
    ConfigureLibraryOnce();
    if (NameIsUsable())
        return true;
    SetError(notOpenMessage);
    return false;
}

bool ZT_SQLiteDatabase::Open()
{
    if (handle)
        return true;
    if (!StartOpening())
        return false;
    Connect();
    return handle != nullptr;
}

bool ZT_SQLiteDatabase::Close()
{
    if (keepOpen)
        return true;
    if (handle) {
        Disconnect();
        handle = nullptr;
    }
    return true;
}

void ZT_SQLiteDatabase::TakeError(char* message)
{
    if (message)
        SetError(message);
    FreeMessage(message);
}

bool ZT_SQLiteDatabase::RejectUnopened(const char* reportFormat)
{
    SetError(notOpenMessage);
    ReportError(reportFormat, GetError());
    return false;
}

bool ZT_SQLiteDatabase::Fail(char* message, const char* reportFormat)
{
    TakeError(message);
    ReportError(reportFormat, GetError());
    return false;
}

bool ZT_SQLiteDatabase::Execute(const char* sql)
{
    if (!handle)
        return RejectUnopened("SQLite exec failed: %s");
    char* message = nullptr;
    if (Exec(sql, &message) != 0)
        return Fail(message, "SQLite exec failed: %s");
    return true;
}

int ZT_SQLiteDatabase::FillResult(ZT_SQLiteResultSet& result, const char* sql)
{
    result.Clear();
    if (!handle)
        return RejectUnopened("SQLITE %s");
    ZT_SQLiteResult* table = nullptr;
    int rows = 0;
    int columns = 0;
    char* message = nullptr;
    if (GetTable(sql, table, rows, columns, &message) != 0)
        return Fail(message, "SQLITE %s");
    result.Attach(table, columns, rows);
    return 1;
}

ZT_String ZT_SQLiteDatabase::Render(const char* format, const ZT_FormatArg* args, int count)
{
    ZT_String sql;
    sql.FormatAppendArgs(format, args, count);
    return sql;
}

bool ZT_SQLiteDatabase::ExecuteFormatArgs(const char* format, const ZT_FormatArg* args, int count)
{
    return Execute(Render(format, args, count).GetString());
}

int ZT_SQLiteDatabase::QueryListArgs(ZT_SQLiteList& result, const char* format, const ZT_FormatArg* args, int count)
{
    return FillResult(result, Render(format, args, count).GetString());
}

int ZT_SQLiteDatabase::QueryRecordArgs(ZT_SQLiteRecord& result, const char* format, const ZT_FormatArg* args,
                                       int count)
{
    return FillResult(result, Render(format, args, count).GetString());
}

int ZT_SQLiteDatabase::QueryTableArgs(ZT_SQLiteTable& result, const char* format, const ZT_FormatArg* args,
                                      int count)
{
    return FillResult(result, Render(format, args, count).GetString());
}

bool ZT_SQLiteDatabase::TableExists(const char* tableName)
{
    ZT_String value;
    if (!QueryValue(value, "SELECT name FROM sqlite_master WHERE name=\"%s\"", tableName))
        return false;
    return CompareNoCase(value, tableName) == 0;
}

namespace {

template <class Backend>
ZT_SQLiteDatabase* TryGeneration(const char* file)
{
    Backend* database = new (std::nothrow) Backend(file);
    if (!database)
        return nullptr;
    ZT_SQLiteList probe;
    if (database->IsOpen() && database->QueryList(probe, "SELECT name FROM sqlite_master"))
        return database;
    delete database; // as its own type: this closes the connection
    return nullptr;
}

bool StartsWith(const std::string& path, const unsigned char* expected, size_t length)
{
    unsigned char bytes[64] = {};
    FILE* file = fopen(path.c_str(), "rb");
    if (!file)
        return false;
    const bool same = fread(bytes, 1, length, file) == length && memcmp(bytes, expected, length) == 0;
    fclose(file);
    return same;
}

// A 2.x file, or a file whose 2.x writer died and left its journal: the
// SQLite 3 library must not see it first, as it deletes a journal it
// cannot read, and with it the only way back to the file's last state.
bool IsSqlite2File(const char* file)
{
    static const unsigned char header[] = "** This file contains an SQLite 2.1 database **";
    if (StartsWith(file, header, sizeof header))
        return true;
    static const unsigned char journal[3][8] = {{0xd9, 0xd5, 0x05, 0xf9, 0x20, 0xa1, 0x63, 0xd4},
                                                {0xd9, 0xd5, 0x05, 0xf9, 0x20, 0xa1, 0x63, 0xd5},
                                                {0xd9, 0xd5, 0x05, 0xf9, 0x20, 0xa1, 0x63, 0xd6}};
    for (const auto& magic : journal)
        if (StartsWith(std::string(file) + "-journal", magic, sizeof magic))
            return true;
    return false;
}

} // namespace

void KeepDatabaseUntilExit(ZT_SQLiteDatabase* database)
{
    LeftToProcessEnd().push_back(database);
}

ZT_SQLiteDatabase* OpenDatabase(const char* file)
{
    if (file && IsSqlite2File(file))
        return TryGeneration<ZT_SQLite2Database>(file);
    if (ZT_SQLiteDatabase* database = TryGeneration<ZT_SQLite3Database>(file))
        return database;
    if (ZT_SQLiteDatabase* database = TryGeneration<ZT_SQLite2Database>(file))
        return database;
    return nullptr;
}

ZT_SQLiteDatabase* CreateDatabase(const char* file, int generation)
{
    if (generation == 2)
        return new (std::nothrow) ZT_SQLite2Database(file);
    return new (std::nothrow) ZT_SQLite3Database(file);
}

void ReportError(const char* format, const char* text1, const char* text2)
{
    if (!format)
        return;
    if (!text1)
        text1 = "(null)";
    size_t size = strlen(format) + strlen(text1) + (text2 ? strlen(text2) : 0) + 10;
    char* message = static_cast<char*>(malloc(size));
    if (!message)
        return;
    snprintf(message, size, format, text1, text2);
    ReportMessage("%s", message);
    free(message);
}
