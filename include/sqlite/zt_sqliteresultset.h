#pragma once

#include "sqlite/zt_sqliteresult.h"

#include <cstdio>

// Holds one query result with its column and row counts. The three kinds
// differ only in how they are read.
class ZT_SQLiteResultSet {
public:
    // Not copyable: the holder owns its result.
    ZT_SQLiteResultSet() = default;
    ZT_SQLiteResultSet(const ZT_SQLiteResultSet&) = delete;
    ZT_SQLiteResultSet& operator=(const ZT_SQLiteResultSet&) = delete;
    virtual ~ZT_SQLiteResultSet();

    // Deletes the result and sets both counts to 0.
    void Clear();
    // Takes ownership of newResult, deleting the one held before.
    void Attach(ZT_SQLiteResult* newResult, int columnCount, int rowCount);
    // Column count, and the count of data rows (the name row not counted).
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
    // Column 0 of data row row (0-based); null out of range or without a result.
    // The index ignores the column count, so on a result of several columns it
    // reads the wrong cells.
    const char* GetValue(int row) const;
};

// One row, read by column.
class ZT_SQLiteRecord : public ZT_SQLiteResultSet {
public:
    // The cell of the first data row (0-based column); null out of range.
    const char* GetValue(int column) const;
};

// A whole table, read by cell.
class ZT_SQLiteTable : public ZT_SQLiteResultSet {
public:
    // The cell (0-based); null out of range. column == GetColumnCount() is
    // deliberately admitted and reads the first cell of the next row (null in the
    // last row).
    const char* GetCell(int column, int row) const;
    // Name of a column (0-based); null out of range.
    const char* GetColumnName(int column) const;
    // Writes the aligned text table of the query command: columns 15 wide and
    // cut with "..", only those that fit in 100 characters; names, a rule, and
    // the rows. Beyond 19 rows it prints rows 1 to 19, ".. (rows-1 total) .." and
    // the second-to-last row, never the last (with exactly 20 rows the 19th shows
    // twice). Cells pass through the format engine once more ("%%" shows as "%").
    // A null stream writes nothing.
    void PrintAsciiTable(FILE* stream) const;
};
