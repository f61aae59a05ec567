#include "sqlite/zt_sqliteresult.h"

#include "sqlite/zt_packedtable.h"
#include "zttl/zt_report.h"

#include <cstdlib>
#include <new>

ZT_SQLiteResult::ZT_SQLiteResult(char** table) : table(table), counter(new (std::nothrow) int(1)) {}

void ZT_SQLiteResult::FreeTable()
{
    // Only the generation-specific kinds own a library array.
    ZT_Assert(false, "zt_sqliteresult", 32);
}

void ZT_SQLiteResult::Release()
{
    if (counter) {
        if (--*counter == 0) {
            FreeTable();
            delete counter;
        }
    }
    counter = nullptr;
}

ZT_SQLiteResult::~ZT_SQLiteResult()
{
    Release();
}

void ZT_SQLite3Result::FreeTable()
{
    if (table) {
        ZT_FreePackedTable(table);
        table = nullptr;
    }
}

// Each kind releases while it still has its own type, so its FreeTable runs;
// the base destructor then finds the counter gone.
ZT_SQLite3Result::~ZT_SQLite3Result()
{
    Release();
}
