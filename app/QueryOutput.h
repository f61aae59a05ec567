#pragma once

#include "sqlite/zt_sqliteresultset.h"

#include <cstdio>

// Writes a result as separated text: no header, no quoting, no escaping.
// A result of fewer than two columns prints nothing at all.
void PrintSeparated(const ZT_SQLiteTable& table, char separator, FILE* stream);
