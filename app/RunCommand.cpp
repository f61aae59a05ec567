#include "RunCommand.h"

#include "QueryOutput.h"
#include "RowCommands.h"
#include "sqlite/zt_sqlitedatabase.h"

#include <cstdio>

namespace {

void PrintError(const char* text)
{
    if (text)
        fputs(text, stderr);
    fputs("\n", stderr);
}

int RunStatements(ZT_SQLiteDatabase* database, const ZT_String& sql)
{
    // The SQL is the format text itself: "%%" reaches SQLite as "%".
    if (!sql.IsEmpty() && !database->ExecuteFormat(sql.GetString())) {
        fprintf(stderr, "Error: Execution of %s failed.\n", sql.GetString());
        fputs("SQLITE: ", stderr);
        PrintError(database->GetError());
        KeepDatabaseUntilExit(database);
        return 10;
    }
    database->Close();
    ReleaseDatabase(database);
    return 0;
}

int RunQueryOne(ZT_SQLiteDatabase* database, const ZT_String& sql)
{
    ZT_String value;
    if (!database->QueryValue(value, sql.GetString())) {
        ReleaseDatabase(database);
        return 12;
    }
    fputs(value.GetString(), stdout);
    fputs("\n", stdout);
    ReleaseDatabase(database);
    return 0;
}

int RunQueryTable(CommandMode mode, ZT_SQLiteDatabase* database, const ZT_String& sql)
{
    ZT_SQLiteTable* table = new ZT_SQLiteTable;
    if (!database->QueryTable(*table, sql.GetString())) {
        PrintError(database->GetError());
        ReleaseDatabase(database);
        delete table;
        return 12;
    }
    if (mode == modeQueryTab)
        PrintSeparated(*table, '\t', stdout);
    else if (mode == modeQueryCsv)
        PrintSeparated(*table, ',', stdout);
    else
        table->PrintAsciiTable(stdout);
    ReleaseDatabase(database);
    delete table;
    return 0;
}

} // namespace

int RunCommand(CommandMode mode, const ZT_String& file, const ZT_String& table, const ZT_String& sql)
{
    ZT_SQLiteDatabase* database = nullptr;
    if (mode == modeCreate2)
        database = CreateDatabase(file.GetString(), 2);
    else if (mode == modeCreate3)
        database = CreateDatabase(file.GetString(), 3);
    else
        database = OpenDatabase(file.GetString());
    if (!database) {
        fprintf(stderr, "Error: Failed to open database %s.\n", file.GetString());
        return 3;
    }

    switch (mode) {
    case modeCreate2:
    case modeCreate3:
    case modeExec:
        return RunStatements(database, sql);
    case modeQueryOne:
        return RunQueryOne(database, sql);
    case modeQueryTab:
    case modeQueryCsv:
    case modeQueryTable:
        return RunQueryTable(mode, database, sql);
    case modeEditRow:
    case modeEditRows:
    case modeInsertRow:
        return RunRowCommand(mode, database, table, sql);
    case modeNone:
        break;
    }
    ReleaseDatabase(database);
    return 0;
}
