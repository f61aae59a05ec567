#pragma once

#include "sqlite/zt_sqliteresult.h"

#include <cstdio>

// Holds one query result with its column and row counts. The three kinds
// differ only in how they are read.
class ZT_SQLiteResultSet {
public:
    ZT_SQLiteResultSet() = default;
    ZT_SQLiteResultSet(const ZT_SQLiteResultSet&) = delete;
    ZT_SQLiteResultSet& operator=(const ZT_SQLiteResultSet&) = delete;
    virtual ~ZT_SQLiteResultSet();

    void Clear();
    void Attach(ZT_SQLiteResult* newResult, int columnCount, int rowCount);
    int GetColumnCount() const { return columns; }
    int GetRowCount() const { return rows; }

protected:
    int columns = 0;
    int rows = 0; // data rows, the name row not counted
    ZT_SQLiteResult* result = nullptr;
};

// One column, read by row.
class ZT_SQLiteList : public ZT_SQLiteResultSet {
public:
    const char* GetValue(int row) const;
};

// One row, read by column.
class ZT_SQLiteRecord : public ZT_SQLiteResultSet {
public:
    const char* GetValue(int column) const;
};

// A whole table, read by cell.
class ZT_SQLiteTable : public ZT_SQLiteResultSet {
public:
    const char* GetCell(int column, int row) const;
    const char* GetColumnName(int column) const;
    void PrintAsciiTable(FILE* stream) const;
};
