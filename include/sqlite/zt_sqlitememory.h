#pragma once

// SQLite's memory, served from size classes. A query allocates a few
// hundred small blocks while SQLite opens, parses and plans, most of them
// once each: the C library's first-time allocation path costs several times
// what a size class's free list does. Blocks freed go back to their class
// and are reused; the memory goes back to the system when the process ends.
// Single-threaded, like the program's whole use of SQLite.
#include <sqlite3.h>

// The methods for sqlite3_config (SQLITE_CONFIG_MALLOC, ...).
const sqlite3_mem_methods& ZT_SQLiteMemoryMethods();
