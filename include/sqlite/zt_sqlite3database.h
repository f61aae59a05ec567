#pragma once

#include "sqlite/zt_sqlitedatabase.h"

struct sqlite3;
struct sqlite3_stmt;

// The back end over the SQLite 3 library.
class ZT_SQLite3Database final : public ZT_SQLiteDatabase {
public:
    // Opens or creates the file at once; check IsOpen or GetError.
    explicit ZT_SQLite3Database(const char* file);
    // Closes the connection (unless keepOpen holds it).
    ~ZT_SQLite3Database();

    double Version() override { return 3.0; }
    bool QueryValueArgs(ZT_String& out, const char* format, const ZT_FormatArg* args, int count) override;
    int LastInsertRowId() override;

private:
    void Connect() override;
    void Disconnect() override;
    int Exec(const char* sql, char** message) override;
    int GetTable(const char* sql, ZT_SQLiteResult*& table, int& rows, int& columns, char** message) override;
    void FreeMessage(char* message) override;

    sqlite3* Handle() const { return static_cast<sqlite3*>(handle); }
    // The prepared first statement of sql, or null; a statement that does not
    // compile is not reported here.
    sqlite3_stmt* Prepare(const char* sql);
};
