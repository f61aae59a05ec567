#include "sqlite/zt_tableinfo.h"

#include "zttl/zt_report.h"

ZT_ColumnInfo::ZT_ColumnInfo(const char* text, int type) : label(text), type(type)
{
    ZT_String cleaned(text);
    cleaned.StripTags("[", "]");
    cleaned.StripTags("(", ")");
    name = ToName(cleaned.GetString());
}

ZT_ColumnInfo::ZT_ColumnInfo(const char* columnName, const char* columnLabel, const char* columnDescription, int type)
    : name(ToName(columnName)), label(columnLabel ? columnLabel : columnName), description(columnDescription),
      type(type)
{
}

ZT_TableInfo::~ZT_TableInfo()
{
    index.RemoveAll();
    columns.RemoveAll();
}

ZT_ColumnInfo* ZT_TableInfo::AddColumn(const char* name, const char* label, const char* description, int type)
{
    ZT_ColumnInfo* column = new ZT_ColumnInfo(name, label, description, type);
    InsertColumn(column);
    return column;
}

void ZT_TableInfo::InsertColumn(ZT_ColumnInfo* column)
{
    // The index keeps the first column of a name; the list keeps them all.
    index.SetAt(column->GetName().GetString(), column, false, false);
    columns.Add(column);
}

void ZT_TableInfo::RemoveColumn(const char* columnName)
{
    ZT_ColumnInfo* column = FindColumn(columnName);
    if (!column)
        return;
    index.Remove(column);
    columns.Remove(column);
}

ZT_ColumnInfo* ZT_TableInfo::GetColumn(int i) const
{
    return columns.GetAt(i);
}

const char* ZT_TableInfo::GetColumnName(int i) const
{
    ZT_ColumnInfo* column = GetColumn(i);
    return column ? column->GetName().GetString() : "";
}
