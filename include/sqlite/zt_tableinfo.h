#pragma once

#include "zttl/zt_arrayimp.h"
#include "zttl/zt_string.h"
#include "zttl/zt_stringmap.h"

// Column type codes of a parsed table definition.
enum ZT_ColumnType {
    columnInteger = 1,
    columnBoolean = 2,
    columnText = 3,
    columnReal = 4,
    columnDate = 12,
    columnTime = 13,
    columnDateTime = 14,
    columnTable = 128,
    columnKey = 255,
};

// Selection mask of ParseCreateTable.
enum ZT_ColumnMask {
    takeOrdinary = 0x01,
    takePrimaryKey = 0x02,
    takeUnique = 0x04,
    primaryKeyIsKey = 0x20,
    uniqueIsKey = 0x40,
    takeEverything = 0xFF,
};

// One column of a table definition; also the definition a parameter is bound to.
class ZT_ColumnInfo {
public:
    ZT_ColumnInfo(const char* text, int type);
    ZT_ColumnInfo(const char* name, const char* label, const char* description, int type);
    ZT_ColumnInfo(const ZT_ColumnInfo&) = delete;
    ZT_ColumnInfo& operator=(const ZT_ColumnInfo&) = delete;
    virtual ~ZT_ColumnInfo() = default;

    virtual int GetType() const { return type; }
    virtual void SetType(int code) { type = code; }

    const ZT_String& GetName() const { return name; }
    const ZT_String& GetLabel() const { return label; }
    const ZT_String& GetDescription() const { return description; }

private:
    ZT_String name;
    ZT_String label;
    ZT_String description;
    int type;
};

// A parsed table: its name (type 128) and its columns in declaration order,
// also found by name without regard to letter case (the first of equal names).
class ZT_TableInfo : public ZT_ColumnInfo {
public:
    explicit ZT_TableInfo(const char* name) : ZT_ColumnInfo(name, columnTable) {}
    ~ZT_TableInfo() override;

    ZT_ColumnInfo* AddColumn(const char* name, const char* label, const char* description, int type);
    void InsertColumn(ZT_ColumnInfo* column);
    ZT_ColumnInfo* FindColumn(const char* name) const { return index.Lookup(name); }
    void RemoveColumn(const char* name);
    int GetColumnCount() const { return columns.GetSize(); }
    ZT_ColumnInfo* GetColumn(int i) const;
    const char* GetColumnName(int i) const;
    const char* GetTableName() const { return GetName().GetString(); }

    // Binds a parameter set to this table: one parameter per column.
    template <class Set>
    void BindToTable(Set& set)
    {
        for (int i = 0; i < GetColumnCount(); ++i)
            if (auto* parameter = set.Find(GetColumnName(i)))
                parameter->SetDefinition(GetColumn(i));
        set.SetDefinition(this);
    }

private:
    ZT_ArrayPtr<ZT_ColumnInfo> columns; // owned
    ZT_StringMap<ZT_ColumnInfo> index;   // not owning
};

// A new table (owned by the caller) from a CREATE TABLE text, or null.
ZT_TableInfo* ParseCreateTable(const char* text, int mask);
