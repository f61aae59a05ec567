#include "sqlite/zt_packedtable.h"

#include <sqlite3.h>

int GetPackedTable(sqlite3* db, const char* sql, char*** result, int* rows, int* columns, char** errorMessage)
{
    *result = nullptr;
    *rows = 0;
    *columns = 0;
    if (errorMessage)
        *errorMessage = nullptr;
    ZT_PackedTableBuilder builder("sqlite3_get_table() called with two or more incompatible queries");
    int rc = sqlite3_exec(db, sql, ZT_PackedTableBuilder::Collect, &builder, errorMessage);
    if (rc != SQLITE_OK && !builder.Failure())
        return rc;
    *result = builder.Finish();
    if (const char* failure = builder.Failure()) {
        if (errorMessage) {
            sqlite3_free(*errorMessage);
            *errorMessage = sqlite3_mprintf("%s", failure);
        }
        return builder.OutOfMemory() ? SQLITE_NOMEM : SQLITE_ERROR;
    }
    *rows = builder.Rows();
    *columns = builder.Columns();
    return SQLITE_OK;
}
