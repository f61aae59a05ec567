#pragma once

#include "CommandMode.h"
#include "zttl/zt_string.h"

class ZT_SQLiteDatabase;

// The dialogs live in a module of their own, loaded only by the row
// commands, so that queries never pay for starting the toolkit.
// False when the module or the toolkit cannot start (no display included).
bool InitDialogToolkit(int argc, char** argv);

// Runs a row command inside the module; the database is already open.
int RunRowCommand(CommandMode mode, ZT_SQLiteDatabase* database, const ZT_String& table, const ZT_String& where);
