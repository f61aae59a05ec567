#pragma once

#include "sqlite/zt_sqlitedatabase.h"

struct sqlite;
struct sqlite_vm;

// The back end over our SQLite 2.x engine.
class ZT_SQLite2Database final : public ZT_SQLiteDatabase {
public:
    // Opens or creates the file at once; check IsOpen or GetError.
    explicit ZT_SQLite2Database(const char* file);
    // Closes the connection (unless keepOpen holds it).
    ~ZT_SQLite2Database();

    double Version() override { return 2.0; }
    bool QueryValueArgs(ZT_String& out, const char* format, const ZT_FormatArg* args, int count) override;
    int LastInsertRowId() override;
    bool Close() override;
    // "DETACH DATABASE attachName"; the object attached under that name loses the
    // shared connection without closing it. False when SQLite refuses.
    bool Detach(const char* attachName);

private:
    void Connect() override;
    void Disconnect() override;
    int Exec(const char* sql, char** message) override;
    int GetTable(const char* sql, ZT_SQLiteResult*& table, int& rows, int& columns, char** message) override;
    void FreeMessage(char* message) override;

    sqlite* Handle() const { return static_cast<sqlite*>(handle); }
    // The compiled first statement of sql, or null (reported).
    sqlite_vm* Prepare(const char* sql);
};
