#pragma once

#include "sqlite/zt_sqliteresultset.h"
#include "zttl/zt_string.h"
#include "zttl/zt_stringmap.h"

#include <array>

// The one way the system talks to a database file, with a back end per
// SQLite generation. Every query takes a format text and arguments that the
// format engine renders before SQLite sees the statement.
//
// The destructor is deliberately not virtual: releasing an object through
// this interface (ReleaseDatabase) leaves its connection open, and only an
// explicit Close ends it. Deleting a back end as its own type closes it.
class ZT_SQLiteDatabase {
public:
    ZT_SQLiteDatabase(const ZT_SQLiteDatabase&) = delete;
    ZT_SQLiteDatabase& operator=(const ZT_SQLiteDatabase&) = delete;

    virtual double Version() = 0;
    virtual bool Execute(const char* sql) = 0;
    virtual bool QueryValueArgs(ZT_String& out, const char* format, const ZT_FormatArg* args, int count) = 0;
    virtual int QueryListArgs(ZT_SQLiteList& result, const char* format, const ZT_FormatArg* args, int count);
    virtual int QueryRecordArgs(ZT_SQLiteRecord& result, const char* format, const ZT_FormatArg* args, int count);
    virtual int QueryTableArgs(ZT_SQLiteTable& result, const char* format, const ZT_FormatArg* args, int count);
    virtual int LastInsertRowId() = 0;
    virtual bool Open() = 0;
    virtual void OnCreated() = 0;
    virtual bool IsOpen() { return handle != nullptr; }
    virtual bool Close() { return false; }
    virtual bool OpenOrCreate();
    virtual bool TableExists(const char* name);

    template <class... A>
    bool ExecuteFormat(const char* format, const A&... args)
    {
        return ExecuteFormatArgs(format, Pack(args...).data(), int(sizeof...(A)));
    }
    template <class... A>
    bool QueryValue(ZT_String& out, const char* format, const A&... args)
    {
        return QueryValueArgs(out, format, Pack(args...).data(), int(sizeof...(A)));
    }
    template <class... A>
    int QueryList(ZT_SQLiteList& result, const char* format, const A&... args)
    {
        return QueryListArgs(result, format, Pack(args...).data(), int(sizeof...(A)));
    }
    template <class... A>
    int QueryRecord(ZT_SQLiteRecord& result, const char* format, const A&... args)
    {
        return QueryRecordArgs(result, format, Pack(args...).data(), int(sizeof...(A)));
    }
    template <class... A>
    int QueryTable(ZT_SQLiteTable& result, const char* format, const A&... args)
    {
        return QueryTableArgs(result, format, Pack(args...).data(), int(sizeof...(A)));
    }

    bool ExecuteFormatArgs(const char* format, const ZT_FormatArg* args, int count);
    // The last message SQLite gave (or ours, for an unusable object); null when none.
    const char* GetError() const { return error.IsEmpty() ? nullptr : error.GetString(); }
    const char* GetName() const { return name; }
    bool WasCreated() const { return created; }

protected:
    explicit ZT_SQLiteDatabase(const char* file);
    ~ZT_SQLiteDatabase();

    // Fills a holder from the library's get_table call; shared by the three query kinds.
    virtual int FillResult(ZT_SQLiteResultSet& result, const char* sql) = 0;
    void SetError(const char* text) { error.Set(text); }
    // An object whose file did not open answers every statement with this.
    bool RejectUnopened(const char* reportFormat);
    static ZT_String Render(const char* format, const ZT_FormatArg* args, int count);
    void ClearError() { error.Empty(); }
    bool NameIsUsable() const { return name[0] != 0; }
    // The common start of Open: forgets the last error, and refuses an
    // unusable name with SQLite's own message.
    bool StartOpening();

    template <class... A>
    static std::array<ZT_FormatArg, sizeof...(A) + 1> Pack(const A&... args)
    {
        return {ZT_FormatArg(args)..., ZT_FormatArg(0)};
    }

    char name[260];
    ZT_String error;
    bool created = false;
    bool keepOpen = false;
    ZT_StringMap<ZT_SQLiteDatabase> attached;
    void* handle = nullptr;

    friend void ReleaseDatabase(ZT_SQLiteDatabase* database);
};

// Picks the generation of an existing file (3.x first, then 2.x); a name
// that does not exist becomes a new 3.x file. Null when neither can read it.
ZT_SQLiteDatabase* OpenDatabase(const char* file);
// Generation 2 makes a 2.x back end, anything else a 3.x one; the object is
// returned even when its file could not be opened.
ZT_SQLiteDatabase* CreateDatabase(const char* file, int generation);
// Runs only the interface's own clean-up: the connection stays open.
void ReleaseDatabase(ZT_SQLiteDatabase* database);

// Neither closes nor releases: the object and its connection end with the process.
void KeepDatabaseUntilExit(ZT_SQLiteDatabase* database);

// Formats one or two texts into a diagnostic for ReportMessage.
void ReportError(const char* format, const char* text1, const char* text2 = nullptr);
