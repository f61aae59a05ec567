#pragma once

#include <string>
#include <vector>

// Every problem found in a 2.x database file; empty when the file is sound:
// page accounting, cell and free-block bounds, key order, balanced trees,
// exact overflow chains, the free list, every page used exactly once,
// schema rows and root pages, and one index entry per table row.
std::vector<std::string> CheckSqlite2File(const std::string& path);
std::vector<std::string> CheckSqlite2Bytes(const std::string& bytes);
