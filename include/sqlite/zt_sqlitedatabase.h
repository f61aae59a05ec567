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
    // Not copyable: an object is one connection.
    ZT_SQLiteDatabase(const ZT_SQLiteDatabase&) = delete;
    ZT_SQLiteDatabase& operator=(const ZT_SQLiteDatabase&) = delete;

    // 2.0 or 3.0, by back end.
    virtual double Version() = 0;
    // Runs the statements as they are (no format pass). False when not open or
    // when SQLite refuses; the message is then in GetError and reported.
    virtual bool Execute(const char* sql);
    // The first column of the first row into out; false (out unchanged) without a
    // row or when the statement does not compile.
    virtual bool QueryValueArgs(ZT_String& out, const char* format, const ZT_FormatArg* args, int count) = 0;
    // The whole result into the holder: 1 on success, 0 on failure (reported,
    // message in GetError, holder emptied).
    virtual int QueryListArgs(ZT_SQLiteList& result, const char* format, const ZT_FormatArg* args, int count);
    virtual int QueryRecordArgs(ZT_SQLiteRecord& result, const char* format, const ZT_FormatArg* args, int count);
    virtual int QueryTableArgs(ZT_SQLiteTable& result, const char* format, const ZT_FormatArg* args, int count);
    // Rowid of the last insert on this connection, cut to int; 0 when not open.
    virtual int LastInsertRowId() = 0;
    // Opens the connection (a missing file is created by the library); true when
    // already open, false for a name that did not fit or that SQLite refuses.
    virtual bool Open();
    // Called by OpenOrCreate after it created the file; the back ends add nothing.
    virtual void OnCreated() {}
    // Whether the connection is open.
    virtual bool IsOpen() { return handle != nullptr; }
    // Closes the connection; answers true, also when keepOpen holds it open.
    // The 2.x back end first detaches the databases attached to it.
    virtual bool Close();
    // Opens the file, or creates it (OnCreated, WasCreated) when the name is not
    // an existing file. The back ends call it from their constructors.
    virtual bool OpenOrCreate();
    // Whether sqlite_master lists name (compared without regard to case).
    virtual bool TableExists(const char* name);

    template <class... A>
    // The formatted forms: the format engine renders the statement first, so a
    // '%' in a statement given as format must be written "%%". The values are not
    // escaped: a '"' inside a "%s" value ends the quoted text.
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

    // Renders and runs the statement with Execute.
    bool ExecuteFormatArgs(const char* format, const ZT_FormatArg* args, int count);
    // The last message SQLite gave (or ours, for an unusable object); null when none.
    const char* GetError() const { return error.IsEmpty() ? nullptr : error.GetString(); }
    // The file name as given; "" when it did not fit.
    const char* GetName() const { return name; }
    // Whether the last OpenOrCreate made a new file.
    bool WasCreated() const { return created; }

protected:
    // A name of 260 bytes or more is kept as "", so that Open fails.
    explicit ZT_SQLiteDatabase(const char* file);
    // Does not close: see above.
    ~ZT_SQLiteDatabase();

    // Fills a holder from the library's get_table call; shared by the three query kinds.
    int FillResult(ZT_SQLiteResultSet& result, const char* sql);
    // Error text kept until the next one or ClearError.
    void SetError(const char* text) { error.Set(text); }
    // Takes over a message the library allocated (or null): keeps its text as
    // the error and frees it.
    void TakeError(char* message);
    // An object whose file did not open answers every statement with this.
    bool RejectUnopened(const char* reportFormat);
    // A failed library call: takes over its message, reports it with
    // reportFormat and answers false.
    bool Fail(char* message, const char* reportFormat);
    // The statement the format engine makes of format and arguments.
    static ZT_String Render(const char* format, const ZT_FormatArg* args, int count);
    void ClearError() { error.Empty(); }
    // False when the name did not fit.
    bool NameIsUsable() const { return name[0] != 0; }
    // The common start of Open: forgets the last error, and refuses an
    // unusable name with SQLite's own message.
    bool StartOpening();

    // What each generation's library does in the steps above, on the open
    // handle where there is one. Connect sets handle, or leaves it null with any
    // message in the error text; Disconnect closes it, and Close forgets it.
    virtual void Connect() = 0;
    virtual void Disconnect() = 0;
    // The library's exec and get_table: 0 on success, otherwise message holds
    // the library's text (or null). A failed GetTable leaves no array behind; a
    // successful one gives the array's owner in table.
    virtual int Exec(const char* sql, char** message) = 0;
    virtual int GetTable(const char* sql, ZT_SQLiteResult*& table, int& rows, int& columns, char** message) = 0;
    // Frees a message (or null) the library allocated.
    virtual void FreeMessage(char* message) = 0;

    template <class... A>
    // The arguments plus a 0 that is never counted, so that even a call without
    // arguments has an array to point to.
    static std::array<ZT_FormatArg, sizeof...(A) + 1> Pack(const A&... args)
    {
        return {ZT_FormatArg(args)..., ZT_FormatArg(0)};
    }

    // File name, all zero when it did not fit.
    char name[260];
    ZT_String error;
    bool created = false;
    // While set, Close leaves the connection open; every Open clears it.
    bool keepOpen = false;
    // Databases attached to this connection, by name; not owned.
    ZT_StringMap<ZT_SQLiteDatabase> attached;
    // The library's connection, null when closed.
    void* handle = nullptr;

    friend void ReleaseDatabase(ZT_SQLiteDatabase* database);
};

// Picks the generation of an existing file (3.x first, then 2.x; a 2.x file
// or the journal of an interrupted 2.x writer goes to 2.x straight away); a
// name that does not exist becomes a new 3.x file. Null when neither can read
// it. The caller owns the object: end it with Close and ReleaseDatabase, or
// with KeepDatabaseUntilExit.
ZT_SQLiteDatabase* OpenDatabase(const char* file);
// Generation 2 makes a 2.x back end, anything else a 3.x one; the object is
// returned even when its file could not be opened.
ZT_SQLiteDatabase* CreateDatabase(const char* file, int generation);
// Runs only the interface's own clean-up: the connection stays open.
void ReleaseDatabase(ZT_SQLiteDatabase* database);

// Neither closes nor releases: the object and its connection end with the process.
void KeepDatabaseUntilExit(ZT_SQLiteDatabase* database);

// Formats one or two texts into a diagnostic for ReportMessage: format takes
// them as "%s"; a null text1 is "(null)", a null format reports nothing.
void ReportError(const char* format, const char* text1, const char* text2 = nullptr);
