#pragma once

#include "CommandMode.h"
#include "zttl/zt_string.h"

class ZT_SQLiteDatabase;

// Inserts or edits rows of one table in dialogs made from its definition.
// Releases the database; 4 when the table has no definition or is not a
// table, 0 otherwise (failed writes and Cancel included).
int RunRowCommand(CommandMode mode, ZT_SQLiteDatabase* database, const ZT_String& table, const ZT_String& where);
