#pragma once

#include "TestFiles.h"
#include "sqlite.h"

#include <string>
#include <vector>

// Reading helpers over the 2.8 C interface, rendering as the 2.8 shell does.
std::vector<std::vector<std::string>> Query(sqlite* db, const std::string& sql); // NULL reads "NULL"
// "== TABLE" and "rowid|values..." for every table in schema order.
std::string TableRows(sqlite* db);
// The shell's .dump: tables with their rows, then views, indexes and triggers.
std::string Dump(sqlite* db);
