#pragma once

#include "sqlite/zt_sqlitedatabase.h"
#include "sqlite/zt_tableinfo.h"
#include "ztlib/zt_parametergroup.h"

// A parameter set bound to a table: one parameter per column, and a new
// parameter for any other name asked for.
class SQLiteParameterSet : public ZT_ParameterSetAuto {
public:
    explicit SQLiteParameterSet(const char* name);
    // A set of its own: new parameters with the same names, values and bindings.
    SQLiteParameterSet(const SQLiteParameterSet& other);

    ZT_ColumnInfo* GetDefinition() const override { return table; }
    void SetDefinition(ZT_ColumnInfo* definition) override { table = static_cast<ZT_TableInfo*>(definition); }
    ZT_TableInfo* GetTable() const { return table; }
    ZT_Parameter* Find(const char* name) override;

    virtual SQLiteParameterSet* CloneTableSet() const { return new SQLiteParameterSet(*this); }
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
    SQLiteParameters() = default;
    SQLiteParameters(const SQLiteParameters&) = delete;
    SQLiteParameters& operator=(const SQLiteParameters&) = delete;
    virtual ~SQLiteParameters() { cache.RemoveAll(); }

    ZT_String GetTableSql(ZT_SQLiteDatabase& db, const char* name);
    ZT_TableInfo* GetTableInfo(ZT_SQLiteDatabase& db, const char* name, int mask);
    ZT_TableInfo* FindTableInfo(const char* fileName, const char* name, int mask);
    SQLiteParameterSet CreateParameterSet(ZT_SQLiteDatabase& db, const char* name, int mask);
    SQLiteParameterSet LoadRow(ZT_SQLiteDatabase& db, const char* name, const char* where);
    bool ReadRow(SQLiteParameterSet& set, ZT_SQLiteDatabase& db, const char* name, const char* where);
    bool UpdateRow(ZT_SQLiteDatabase& db, SQLiteParameterSet& set, int flags);
    bool InsertRow(ZT_SQLiteDatabase& db, SQLiteParameterSet& set, int flags);

private:
    static ZT_String CacheKey(const char* fileName, const char* name, int mask);

    ZT_StringMap<ZT_TableInfo, true> cache;
};

// The one table-access object of the row commands.
SQLiteParameters& TheSQLiteParameters();
