#include "sqlite/zt_sqliteresultset.h"

ZT_SQLiteResultSet::~ZT_SQLiteResultSet()
{
    delete result;
    result = nullptr;
}

void ZT_SQLiteResultSet::Clear()
{
    delete result;
    result = nullptr;
    columns = 0;
    rows = 0;
}

void ZT_SQLiteResultSet::Attach(ZT_SQLiteResult* newResult, int columnCount, int rowCount)
{
    delete result;
    result = newResult;
    columns = columnCount;
    rows = rowCount;
}

const char* ZT_SQLiteList::GetValue(int row) const
{
    // The index ignores the column count: lists are filled by one-column queries.
    if (!result || row < 0 || row >= rows)
        return nullptr;
    return result->GetEntry(row + 1);
}

const char* ZT_SQLiteRecord::GetValue(int column) const
{
    if (!result || column < 0 || column >= columns)
        return nullptr;
    return result->GetEntry(columns + column);
}

const char* ZT_SQLiteTable::GetCell(int column, int row) const
{
    // column == columns is admitted: it reads the first cell of the next row.
    if (!result || row < 0 || row >= rows || column < 0 || column > columns)
        return nullptr;
    if (column == columns && row == rows - 1)
        return nullptr; // would be past the array
    return result->GetEntry((row + 1) * columns + column);
}

const char* ZT_SQLiteTable::GetColumnName(int column) const
{
    if (!result || column < 0 || column >= columns)
        return nullptr;
    return result->GetEntry(column);
}
