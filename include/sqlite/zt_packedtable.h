#pragma once

#include "sqlite/zt_packedtablebuilder.h"

struct sqlite3;

// sqlite3_get_table with the same rules (names row first, columns from the
// first statement that reports any, rows of every statement, the
// "incompatible queries" error, empty_result_callbacks honoured), but with
// all texts packed into one block instead of one allocation per value:
// big results take less memory and far fewer allocations.
// The array is released with ZT_FreePackedTable, never sqlite3_free_table.
int GetPackedTable(sqlite3* db, const char* sql, char*** result, int* rows, int* columns, char** errorMessage);
