#pragma once

#include "sqlite/zt_sqlitedatabase.h"

struct sqlite;
struct sqlite_vm;

// The back end over our SQLite 2.x engine.
class ZT_SQLite2Database final : public ZT_SQLiteDatabase {
public:
    explicit ZT_SQLite2Database(const char* file);
    ~ZT_SQLite2Database();

    double Version() override { return 2.0; }
    bool Execute(const char* sql) override;
    bool QueryValueArgs(ZT_String& out, const char* format, const ZT_FormatArg* args, int count) override;
    int LastInsertRowId() override;
    bool Open() override;
    void OnCreated() override {}
    bool Close() override;
    bool Detach(const char* attachName);

protected:
    int FillResult(ZT_SQLiteResultSet& result, const char* sql) override;

private:
    sqlite* Handle() const { return static_cast<sqlite*>(handle); }
    sqlite_vm* Prepare(const char* sql);
    void TakeError(char* message);
};
