#pragma once

#include "sqlite/zt_sqlitedatabase.h"
#include "sqlite/zt_tableinfo.h"
#include "ztlib/zt_parametergroup.h"

// A parameter set bound to a table: one parameter per column, and a new
// parameter for any other name asked for.
class SQLiteParameterSet : public ZT_ParameterSetAuto {
public:
    // An empty set named after the table (the name cleaned with ToName).
    explicit SQLiteParameterSet(const char* name);
    // A set of its own: new parameters with the same names, values and bindings.
    SQLiteParameterSet(const SQLiteParameterSet& other);

    // The bound table, not owned: it belongs to the definition cache of the
    // SQLiteParameters that made the set, and must be a ZT_TableInfo.
    ZT_ColumnInfo* GetDefinition() const override { return table; }
    void SetDefinition(ZT_ColumnInfo* definition) override { table = static_cast<ZT_TableInfo*>(definition); }
    ZT_TableInfo* GetTable() const { return table; }
    // Never null: a name not yet in the set gets a new, empty plain parameter
    // (owned by the set), so a misspelt name silently makes a new one.
    ZT_Parameter* Find(const char* name) override;

    // A copy of its own, owned by the caller.
    virtual SQLiteParameterSet* CloneTableSet() const { return new SQLiteParameterSet(*this); }
    // The value of the named parameter for editing in place; as Find, an unknown
    // name adds a parameter. Never null.
    virtual ZT_Value* GetValueRef(const char* name);
    virtual ZT_Value* ValueAt(const char* name) { return GetValueRef(name); }
    using ZT_ParameterSetAuto::GetValueRef;

private:
    ZT_TableInfo* table = nullptr; // owned by the definition cache
};

// Reads table definitions (parsed once per file, table and mask), builds
// parameter sets for them, loads a row into a set and writes a set back.
class SQLiteParameters {
public:
    // Not copyable: it owns the cache of parsed definitions.
    SQLiteParameters() = default;
    SQLiteParameters(const SQLiteParameters&) = delete;
    SQLiteParameters& operator=(const SQLiteParameters&) = delete;
    // Deletes every cached definition: sets made here must not outlive it.
    virtual ~SQLiteParameters() { cache.RemoveAll(); }

    // The CREATE statement of a table from sqlite_master, or "".
    ZT_String GetTableSql(ZT_SQLiteDatabase& db, const char* name);
    // The parsed definition (owned by this object), parsed once per file, table
    // and mask; null for an unknown table, which is asked for again next time.
    ZT_TableInfo* GetTableInfo(ZT_SQLiteDatabase& db, const char* name, int mask);
    // A definition already in the cache, or null; never reads a file.
    ZT_TableInfo* FindTableInfo(const char* fileName, const char* name, int mask);
    // A set bound to the table, one parameter per column with a default value (0,
    // false, 0.0 or ""); an unnamed, empty set for an unknown table.
    SQLiteParameterSet CreateParameterSet(ZT_SQLiteDatabase& db, const char* name, int mask);
    // CreateParameterSet with every column, then ReadRow into it.
    SQLiteParameterSet LoadRow(ZT_SQLiteDatabase& db, const char* name, const char* where);
    // Fills set from the first row that matches where (a condition without
    // "WHERE"; empty takes the first row of the table), every value as text;
    // a missing row gives empty texts. The statement goes through the format
    // engine once more, so a '%' in where is read as a format directive. False for
    // an unknown table or a failed query, leaving the set as it was.
    bool ReadRow(SQLiteParameterSet& set, ZT_SQLiteDatabase& db, const char* name, const char* where);
    // Writes the set with BuildUpdate or BuildInsert; flags only matter for the
    // insert. The statement goes through the format engine once more, so a '%' in
    // a value is read as a format directive. False when SQLite refuses it.
    bool UpdateRow(ZT_SQLiteDatabase& db, SQLiteParameterSet& set, int flags);
    bool InsertRow(ZT_SQLiteDatabase& db, SQLiteParameterSet& set, int flags);

private:
    // "file::table#MM" with the mask in two hexadecimal digits.
    static ZT_String CacheKey(const char* fileName, const char* name, int mask);

    ZT_StringMap<ZT_TableInfo, true> cache;
};

// The one table-access object of the row commands.
SQLiteParameters& TheSQLiteParameters();
