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
    // From a display text: the label is the text as it is, the name the text with
    // its [..] and (..) parts removed and cleaned with ToName.
    ZT_ColumnInfo(const char* text, int type);
    // The name is cleaned with ToName; a null label takes the name as given.
    ZT_ColumnInfo(const char* name, const char* label, const char* description, int type);
    ZT_ColumnInfo(const ZT_ColumnInfo&) = delete;
    ZT_ColumnInfo& operator=(const ZT_ColumnInfo&) = delete;
    virtual ~ZT_ColumnInfo() = default;

    // A ZT_ColumnType code.
    virtual int GetType() const { return type; }
    virtual void SetType(int code) { type = code; }

    // Cleaned name, display label and description.
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
    // The name is cleaned as a column's is.
    explicit ZT_TableInfo(const char* name) : ZT_ColumnInfo(name, columnTable) {}
    // Deletes the columns.
    ~ZT_TableInfo() override;

    // Appends a new column, owned by the table, and returns it.
    ZT_ColumnInfo* AddColumn(const char* name, const char* label, const char* description, int type);
    // Appends column and takes ownership of it. A name already present stays
    // found as the first column of that name.
    void InsertColumn(ZT_ColumnInfo* column);
    // The first column of that name (case-insensitive), or null; owned by the table.
    ZT_ColumnInfo* FindColumn(const char* name) const { return index.Lookup(name); }
    // Deletes the column found by that name; an unknown name does nothing.
    void RemoveColumn(const char* name);
    // Columns by 0-based index: GetColumn is null (after a diagnostic) and
    // GetColumnName "" for a bad index.
    int GetColumnCount() const { return columns.GetSize(); }
    ZT_ColumnInfo* GetColumn(int i) const;
    const char* GetColumnName(int i) const;
    // The cleaned table name.
    const char* GetTableName() const { return GetName().GetString(); }

    // Binds a parameter set to this table: each column to the parameter of
    // its name (a set whose Find makes missing ones gets one per column),
    // and the set to the table. Nothing is owned by the set.
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

// A new table (owned by the caller) from a CREATE TABLE text, or null when the
// text does not start with "CREATE TABLE" (case matters). Types come from type
// words anywhere in a definition; mask picks which columns are taken and
// whether key columns get type columnKey; everything after the first table
// constraint is ignored.
ZT_TableInfo* ParseCreateTable(const char* text, int mask);
