#include "table_rows.h"

#include "index_key.h"

#include <random>

namespace sqlite2 {

std::string RowRecord(const TableInfo& info, const Row& row)
{
    Row stored = row;
    stored.resize(info.columns.size());
    if (info.integerPrimaryKey >= 0)
        stored[size_t(info.integerPrimaryKey)] = std::nullopt;
    return EncodeRecord(stored);
}

bool RecordRow(const TableInfo& info, std::string_view record, int32_t rowid, Row& row)
{
    if (!DecodeRecord(record, row))
        return false;
    row.resize(info.columns.size()); // a row written before an ALTER-less schema change
    if (info.integerPrimaryKey >= 0)
        row[size_t(info.integerPrimaryKey)] = std::to_string(rowid);
    return true;
}

std::string NotUniqueMessage(const TableSchema& table, const IndexSchema& index)
{
    std::string names;
    for (int column : index.columns) {
        if (!names.empty())
            names += ", ";
        names += column >= 0 ? table.info.columns[size_t(column)].name : "rowid";
    }
    return (index.columns.size() > 1 ? "columns " : "column ") + names +
           (index.columns.size() > 1 ? " are not unique" : " is not unique");
}

std::string RowIndexKey(const TableInfo& info, const IndexSchema& index, const Row& row, int32_t rowid,
                        bool fieldsOnly)
{
    const Value rowidText = std::to_string(rowid);
    std::vector<IndexField> fields;
    for (int column : index.columns) {
        const bool valid = column >= 0 && size_t(column) < row.size();
        const bool numeric = !valid || info.columns[size_t(column)].numeric || column == info.integerPrimaryKey;
        fields.push_back({valid ? &row[size_t(column)] : &rowidText, numeric});
    }
    std::string key = EncodeIndexKey(fields, rowid);
    if (fieldsOnly)
        key.resize(key.size() - 4);
    return key;
}

Status TableRows::Read(int32_t rowid, Row& row, bool& found)
{
    Cursor cursor(tree, table.root);
    Status status = cursor.Seek(EncodeRowidKey(rowid), found);
    if (!status || !found)
        return status;
    std::string data;
    if (status = cursor.Data(data); !status)
        return status;
    if (!RecordRow(table.info, data, rowid, row))
        return Status::Corrupt();
    return Status::Ok();
}

Status TableRows::NewRowid(int32_t& rowid)
{
    Cursor cursor(tree, table.root);
    Status status = cursor.Last();
    if (!status)
        return status;
    if (!cursor.Valid()) {
        rowid = 1;
        return Status::Ok();
    }
    std::string key;
    if (status = cursor.Key(key); !status)
        return status;
    const int32_t largest = DecodeRowidKey(key);
    if (largest < INT32_MAX) {
        rowid = largest + 1;
        return Status::Ok();
    }
    std::mt19937 random(std::random_device{}());
    for (int attempt = 0; attempt < 1000; ++attempt) {
        rowid = int32_t(random() & 0x7fffffff);
        bool taken = false;
        if (status = cursor.Seek(EncodeRowidKey(rowid), taken); !status)
            return status;
        if (!taken && rowid > 0)
            return Status::Ok();
    }
    return {kFull, message::full};
}

Status TableRows::FindDuplicate(const Row& row, int32_t rowid, const IndexSchema*& index, int32_t& holder)
{
    index = nullptr;
    // 2.8 checks the newest index first, those that replace last.
    std::vector<const IndexSchema*> order;
    for (auto it = table.indexes.rbegin(); it != table.indexes.rend(); ++it)
        if (it->conflict != Conflict::Replace)
            order.push_back(&*it);
    for (auto it = table.indexes.rbegin(); it != table.indexes.rend(); ++it)
        if (it->conflict == Conflict::Replace)
            order.push_back(&*it);
    for (const IndexSchema* next : order) {
        const IndexSchema& candidate = *next;
        if (!candidate.unique)
            continue;
        bool hasNull = false;
        for (int column : candidate.columns)
            hasNull |= column >= 0 && size_t(column) < row.size() && !row[size_t(column)];
        if (hasNull)
            continue;
        const std::string fields = RowIndexKey(table.info, candidate, row, rowid, true);
        Cursor cursor(tree, candidate.root);
        bool exact = false;
        Status status = cursor.Seek(fields, exact);
        for (; status && cursor.Valid(); status = cursor.Next()) {
            std::string key;
            if (status = cursor.Key(key); !status)
                return status;
            if (key.size() != fields.size() + 4 || key.compare(0, fields.size(), fields) != 0)
                break;
            const int32_t other = DecodeRowidKey(std::string_view(key).substr(fields.size()));
            if (other != rowid) {
                index = &candidate;
                holder = other;
                return Status::Ok();
            }
        }
        if (!status)
            return status;
    }
    return Status::Ok();
}

Status TableRows::Insert(int32_t rowid, const Row& row)
{
    Cursor cursor(tree, table.root);
    if (Status status = cursor.Insert(EncodeRowidKey(rowid), RowRecord(table.info, row)); !status)
        return status;
    for (const IndexSchema& index : table.indexes) {
        Cursor entries(tree, index.root);
        if (Status status = entries.Insert(RowIndexKey(table.info, index, row, rowid), {}); !status)
            return status;
    }
    return Status::Ok();
}

Status TableRows::Delete(int32_t rowid)
{
    Row row;
    bool found = false;
    Status status = Read(rowid, row, found);
    if (!status || !found)
        return status;
    for (const IndexSchema& index : table.indexes) {
        Cursor entries(tree, index.root);
        bool exact = false;
        if (status = entries.Seek(RowIndexKey(table.info, index, row, rowid), exact); !status)
            return status;
        if (exact && (status = entries.Delete(), !status))
            return status;
    }
    Cursor cursor(tree, table.root);
    bool exact = false;
    if (status = cursor.Seek(EncodeRowidKey(rowid), exact); !status)
        return status;
    return exact ? cursor.Delete() : Status::Ok();
}

} // namespace sqlite2
