#include "RowCommands.h"

#include "DialogToolkit.h"
#include "sqlite/SQLBuilders.h"
#include "sqlite/SQLiteParameters.h"
#include "sqlite/zt_sqlitedatabase.h"

#include <cstdio>

namespace {

// The name goes in as it is: a quote or "%" in it spoils the query, and
// the empty definition that follows ends the command.
ZT_String ReadDefinition(ZT_SQLiteDatabase* database, const ZT_String& table)
{
    ZT_String query("SELECT sql FROM sqlite_master WHERE name=\"");
    query.Append(table.GetString());
    query.Append("\"");
    ZT_String definition;
    database->QueryValue(definition, query.GetString());
    return definition;
}

void PrintWriteFailure(const char* statement, ZT_SQLiteDatabase* database)
{
    fprintf(stderr, "Error: %s failed.\n", statement);
    const char* error = database->GetError();
    fprintf(stderr, "SQLITE: %s\n", error ? error : "");
}

void InsertRow(ZT_SQLiteDatabase* database, const ZT_String& table)
{
    SQLiteParameterSet row = TheSQLiteParameters().CreateParameterSet(*database, table.GetString(), 0xff);
    if (RunParamsDialog(row) > 0 && !TheSQLiteParameters().InsertRow(*database, row, 0))
        PrintWriteFailure("INSERT", database);
}

void EditRow(ZT_SQLiteDatabase* database, const ZT_String& table, const ZT_String& where)
{
    SQLiteParameterSet row = TheSQLiteParameters().LoadRow(*database, table.GetString(), where.GetString());
    if (RunParamsDialog(row) > 0 && !TheSQLiteParameters().UpdateRow(*database, row, 0))
        PrintWriteFailure("UPDATE", database);
}

// Several key columns are only warned about; the editor opens regardless.
void EditRows(ZT_SQLiteDatabase* database, const ZT_String& table, const ZT_String& where)
{
    SQLiteParameterSet rows = TheSQLiteParameters().LoadRow(*database, table.GetString(), where.GetString());
    if (CountKeyColumns(rows) > 1)
        fputs("Error: More than one UNIQUE, not yet implemented. Sorry, had to go to bed..\n", stderr);
    RunRowEditor(*database, rows);
}

} // namespace

int RunRowCommand(CommandMode mode, ZT_SQLiteDatabase* database, const ZT_String& table, const ZT_String& where)
{
    const ZT_String definition = ReadDefinition(database, table);
    if (definition.IsEmpty()) {
        fprintf(stderr, "Error: Failed to read table definiton for %s.\n", table.GetString());
        ReleaseDatabase(database);
        return 4;
    }
    if (!definition.StartsWith("CREATE TABLE")) {
        fprintf(stderr, "Error: %s must be a table.\n", table.GetString());
        ReleaseDatabase(database);
        return 4;
    }
    if (mode == modeInsertRow)
        InsertRow(database, table);
    else if (mode == modeEditRow)
        EditRow(database, table, where);
    else
        EditRows(database, table, where);
    ReleaseDatabase(database);
    return 0;
}
