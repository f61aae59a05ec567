#pragma once

#include "btree.h"
#include "schema.h"

namespace sqlite2 {

// The rows of one 2.x table and its indexes: every change to a row changes
// its index entries in the same step, so the indexes always match the table.
// Rows have one value per column; the INTEGER PRIMARY KEY column's value is
// the rowid (stored as NULL in the record, as 2.8 does).
class TableRows {
public:
    TableRows(BTree& tree, const TableSchema& table) : tree(tree), table(table) {}

    Status Read(int32_t rowid, Row& row, bool& found);
    // A rowid for a new row: one more than the largest, or a random unused
    // one when the largest is 2147483647 (2.8's rule).
    Status NewRowid(int32_t& rowid);

    // The unique index whose key the row would repeat (NULLs never repeat),
    // and the rowid that holds it; index null when there is none.
    Status FindDuplicate(const Row& row, int32_t rowid, const IndexSchema*& index, int32_t& holder);

    // Writes the row and its index entries; the rowid must be free (Delete first).
    Status Insert(int32_t rowid, const Row& row);
    // Removes the row and its index entries; nothing when there is no such row.
    Status Delete(int32_t rowid);

private:
    BTree& tree;
    const TableSchema& table;
};

// The key of a row in an index; fieldsOnly leaves out the rowid suffix.
std::string RowIndexKey(const TableInfo& info, const IndexSchema& index, const Row& row, int32_t rowid,
                        bool fieldsOnly = false);

// 2.8's message for a repeated unique key: "column a is not unique" or
// "columns a, b are not unique".
std::string NotUniqueMessage(const TableSchema& table, const IndexSchema& index);

// The record of a row as stored (the rowid column as NULL), and back.
std::string RowRecord(const TableInfo& info, const Row& row);
bool RecordRow(const TableInfo& info, std::string_view record, int32_t rowid, Row& row);

} // namespace sqlite2
