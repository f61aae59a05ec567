#pragma once

#include "sqlite/zt_sqlitedatabase.h"

#include <memory>
#include <string>

// Closes a database and releases it as the program does.
struct CloseDatabase {
    void operator()(ZT_SQLiteDatabase* database) const;
};
using DatabaseHandle = std::unique_ptr<ZT_SQLiteDatabase, CloseDatabase>;

// Makes a file of the given generation (2 or 3) holding what sql (a format
// text: %% for %) makes, then opens it again the way the program opens
// files. Empty when either step fails.
DatabaseHandle CreateAndReopen(const std::string& path, int generation, const std::string& sql);
