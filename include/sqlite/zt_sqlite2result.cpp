#include "sqlite/zt_sqliteresult.h"

#include "sqlite.h"

void ZT_SQLite2Result::FreeTable()
{
    if (table) {
        sqlite_free_table(table);
        table = nullptr;
    }
}

ZT_SQLite2Result::~ZT_SQLite2Result()
{
    Release();
}
