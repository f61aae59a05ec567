#pragma once

class ZT_ParameterGroup;
class SQLiteParameterSet;
class ZT_SQLiteDatabase;

// The dialogs live in a module of their own, loaded only by the row
// commands, so that queries never pay for starting the toolkit. Two builds
// of this interface: the program's hands a row command over to the dialog
// host (DialogHandover.cpp; on success it does not return), the host's loads
// the module (DialogToolkit.cpp).
// False when the host, the module or the toolkit cannot start (no display included).
bool InitDialogToolkit(int argc, char** argv);

// Edits one row's values; above 0 when the user accepted them.
int RunParamsDialog(ZT_ParameterGroup& set);

// Pages through the rows of the set's table, writing changes as it goes.
void RunRowEditor(ZT_SQLiteDatabase& database, SQLiteParameterSet& set);
