// The writing half of the table module: rows inserted, updated and deleted
// the way 2.8 does it, and SQLite 3's transaction calls passed to the file.
#include "table_rows.h"
#include "table_vtab.h"
#include "value_rules.h"

#include "index_key.h"

#include <cmath>

namespace sqlite2 {

namespace {

// The statement's OR clause; ABORT is also what SQLite 3 says when there is
// none, so it leaves the choice to the constraint's own clause.
Conflict StatementConflict(sqlite3* connection)
{
    switch (sqlite3_vtab_on_conflict(connection)) {
    case SQLITE_ROLLBACK:
        return Conflict::Rollback;
    case SQLITE_IGNORE:
        return Conflict::Ignore;
    case SQLITE_FAIL:
        return Conflict::Fail;
    case SQLITE_REPLACE:
        return Conflict::Replace;
    default:
        return Conflict::Default;
    }
}

Conflict Resolve(Conflict statement, Conflict constraint)
{
    return statement != Conflict::Default ? statement : constraint;
}

// A value given for the INTEGER PRIMARY KEY (or the rowid): 2.8 takes a
// whole number in 32 bits, written in any spelling, and refuses the rest.
bool RowidFromValue(const Value& value, int32_t& rowid)
{
    if (!value || !PassesNumberTest(*value))
        return false;
    const double number = TextToNumber(*value);
    if (number != std::floor(number) || number < INT32_MIN || number > INT32_MAX)
        return false;
    rowid = int32_t(number);
    return true;
}

class RowWriter {
public:
    RowWriter(TableVtab& vtab, const TableSchema& table)
        : vtab(vtab), database(*vtab.database), table(table), rows(database.Tree(), table),
          mode(database.TriggerDepth() == 0 ? database.StatementOwner().StatementConflict()
                                            : StatementConflict(database.Connection()))
    {
        triggerTable.name = table.name;
        for (const ColumnInfo& column : table.info.columns) {
            triggerTable.columns.push_back(column.name);
            triggerTable.numeric.push_back(column.numeric);
        }
    }

    Status Delete(int32_t rowid);
    Status Insert(sqlite3_value** values, sqlite3_value* givenRowid, int32_t& rowid);
    Status Update(int32_t oldRowid, sqlite3_value** values, sqlite3_value* givenRowid);

private:
    using Timing = TriggerDefinition::Timing;
    using Event = TriggerDefinition::Event;

    Row NewRow(sqlite3_value** values, bool applyDefaults) const;
    // An UPDATE's new row: columns its SET list does not name keep the old
    // row's values (SQLite 3 does not even fetch them), and assigned says
    // which columns it names.
    Row UpdatedRow(sqlite3_value** values, const Row& old, int32_t oldRowid);
    Status RowidFor(const Row& row, sqlite3_value* givenRowid, int32_t& rowid);
    Status CheckNotNull(Row& row, bool& skip) const;
    Status MakeRoom(const Row& row, int32_t rowid, bool& skip);
    Status Fire(Timing timing, Event event, const Row* oldRow, int32_t oldRowid, const Row* newRow,
                int32_t newRowid, bool& skip);

    TableVtab& vtab;
    Database& database;
    const TableSchema& table;
    TableRows rows;
    Conflict mode;
    TriggerTable triggerTable;
    std::vector<bool> assigned; // by UpdatedRow, for the UPDATE OF triggers
};

Row RowWriter::NewRow(sqlite3_value** values, bool applyDefaults) const
{
    const std::vector<bool>* named =
        applyDefaults && database.TriggerDepth() == 0 ? database.StatementOwner().InsertedColumns(table) : nullptr;
    Row row;
    for (size_t c = 0; c < table.info.columns.size(); ++c) {
        if (named && c < named->size() && !(*named)[c])
            row.push_back(table.info.columns[c].defaultValue);
        else
            row.push_back(StoredValue(values[c]));
    }
    return row;
}

Row RowWriter::UpdatedRow(sqlite3_value** values, const Row& old, int32_t oldRowid)
{
    Row row;
    assigned.assign(table.info.columns.size(), true);
    for (size_t c = 0; c < table.info.columns.size(); ++c) {
        if (!sqlite3_value_nochange(values[c])) {
            row.push_back(StoredValue(values[c]));
            continue;
        }
        assigned[c] = false;
        const bool key = int(c) == table.info.integerPrimaryKey;
        row.push_back(key ? Value(std::to_string(oldRowid)) : c < old.size() ? old[c] : Value());
    }
    return row;
}

Status RowWriter::RowidFor(const Row& row, sqlite3_value* givenRowid, int32_t& rowid)
{
    const int key = table.info.integerPrimaryKey;
    Value given = key >= 0 ? row[size_t(key)] : StoredValue(givenRowid);
    if (!given)
        return rows.NewRowid(rowid);
    if (!RowidFromValue(given, rowid))
        return {kMismatch, "datatype mismatch"};
    return Status::Ok();
}

Status RowWriter::CheckNotNull(Row& row, bool& skip) const
{
    for (size_t c = 0; c < table.info.columns.size(); ++c) {
        const ColumnInfo& column = table.info.columns[c];
        if (!column.notNull || row[c] || int(c) == table.info.integerPrimaryKey)
            continue;
        const Conflict resolution = Resolve(mode, column.notNullConflict);
        if (resolution == Conflict::Replace && column.defaultValue) {
            row[c] = column.defaultValue;
            continue;
        }
        if (resolution == Conflict::Ignore) {
            skip = true;
            return Status::Ok();
        }
        return {kConstraint, table.name + "." + column.name + " may not be NULL"};
    }
    return Status::Ok();
}

// Settles the row's rowid and unique keys against the rows already there:
// REPLACE removes those rows, IGNORE skips the new one, the rest fail.
Status RowWriter::MakeRoom(const Row& row, int32_t rowid, bool& skip)
{
    Row existing;
    bool taken = false;
    if (Status status = rows.Read(rowid, existing, taken); !status)
        return status;
    if (taken) {
        if (mode == Conflict::Ignore) {
            skip = true;
            return Status::Ok();
        }
        if (mode != Conflict::Replace)
            return {kConstraint, "PRIMARY KEY must be unique"};
        if (Status status = rows.Delete(rowid); !status)
            return status;
    }
    for (;;) {
        const IndexSchema* index = nullptr;
        int32_t holder = 0;
        if (Status status = rows.FindDuplicate(row, rowid, index, holder); !status || !index)
            return status;
        const Conflict resolution = Resolve(mode, index->conflict);
        if (resolution == Conflict::Ignore) {
            skip = true;
            return Status::Ok();
        }
        if (resolution != Conflict::Replace)
            return {kConstraint, NotUniqueMessage(table, *index)};
        if (Status status = rows.Delete(holder); !status)
            return status;
    }
}

Status RowWriter::Fire(Timing timing, Event event, const Row* oldRow, int32_t oldRowid, const Row* newRow,
                       int32_t newRowid, bool& skip)
{
    TriggerRunner& triggers = database.Triggers();
    if (!triggers.HasTriggers(table.name))
        return Status::Ok();
    TriggerRow before{oldRowid, oldRow}, after{newRowid, newRow};
    if (event == Event::Update)
        after.assigned = &assigned;
    ++database.TriggerDepth();
    Status status = triggers.Fire(triggerTable, timing, event, oldRow ? &before : nullptr,
                                  newRow ? &after : nullptr, skip);
    --database.TriggerDepth();
    // Inside a trigger program 2.8 names a missing table with its database.
    const std::string missing = message::noSuchTable;
    if (!status && status.Message().compare(0, missing.size(), missing) == 0 &&
        status.Message().find('.') == std::string::npos)
        return {status.Code(), missing + "main." + status.Message().substr(missing.size())};
    return status;
}

Status RowWriter::Delete(int32_t rowid)
{
    Row old;
    bool found = false, skip = false;
    if (Status status = rows.Read(rowid, old, found); !status || !found)
        return status;
    if (Status status = Fire(Timing::Before, Event::Delete, &old, rowid, nullptr, 0, skip); !status || skip)
        return status;
    if (Status status = rows.Delete(rowid); !status)
        return status;
    return Fire(Timing::After, Event::Delete, &old, rowid, nullptr, 0, skip);
}

Status RowWriter::Insert(sqlite3_value** values, sqlite3_value* givenRowid, int32_t& rowid)
{
    Row row = NewRow(values, true);
    bool skip = false;
    if (Status status = CheckNotNull(row, skip); !status || skip)
        return status;
    // 2.8 picks a new row's rowid after its BEFORE triggers, which see -1.
    const int key = table.info.integerPrimaryKey;
    const bool automatic = !(key >= 0 ? row[size_t(key)] : StoredValue(givenRowid));
    rowid = -1;
    if (!automatic) {
        if (Status status = RowidFor(row, givenRowid, rowid); !status)
            return status;
    }
    if (key >= 0)
        row[size_t(key)] = std::to_string(rowid);
    if (Status status = Fire(Timing::Before, Event::Insert, nullptr, 0, &row, rowid, skip); !status || skip)
        return status;
    if (automatic) {
        if (Status status = rows.NewRowid(rowid); !status)
            return status;
        if (key >= 0)
            row[size_t(key)] = std::to_string(rowid);
    }
    if (Status status = MakeRoom(row, rowid, skip); !status || skip)
        return status;
    if (Status status = rows.Insert(rowid, row); !status)
        return status;
    if (database.TriggerDepth() == 0)
        database.StatementOwner().NoteInsertedRowid(rowid);
    return Fire(Timing::After, Event::Insert, nullptr, 0, &row, rowid, skip);
}

Status RowWriter::Update(int32_t oldRowid, sqlite3_value** values, sqlite3_value* givenRowid)
{
    Row old;
    bool found = false, skip = false;
    if (Status status = rows.Read(oldRowid, old, found); !status || !found)
        return status;
    Row row = UpdatedRow(values, old, oldRowid);
    if (Status status = CheckNotNull(row, skip); !status || skip)
        return status;
    int32_t rowid = oldRowid;
    if (Status status = RowidFor(row, givenRowid, rowid); !status)
        return status;
    if (table.info.integerPrimaryKey >= 0)
        row[size_t(table.info.integerPrimaryKey)] = std::to_string(rowid);
    if (Status status = Fire(Timing::Before, Event::Update, &old, oldRowid, &row, rowid, skip); !status || skip)
        return status;
    // The old row goes first, so that its own keys do not count against it.
    if (Status status = rows.Delete(oldRowid); !status)
        return status;
    if (Status status = MakeRoom(row, rowid, skip); !status)
        return status;
    if (skip)
        return rows.Insert(oldRowid, old);
    if (Status status = rows.Insert(rowid, row); !status)
        return status;
    return Fire(Timing::After, Event::Update, &old, oldRowid, &row, rowid, skip);
}

} // namespace

int UpdateRow(sqlite3_vtab* base, int argc, sqlite3_value** argv, sqlite3_int64* newRowid)
{
    auto* vtab = static_cast<TableVtab*>(base);
    if (vtab->schemaTable)
        return Fail(base, {kError, "table sqlite_master may not be modified"});
    const TableSchema* table = vtab->Table();
    if (!table)
        return Fail(base, Status::NoSuchTable(vtab->name));
    Database& database = *vtab->database;
    const bool topLevel = database.TriggerDepth() == 0;
    if (topLevel)
        database.MarkStatementStart();
    RowWriter writer(*vtab, *table);
    Status status;
    if (argc == 1) {
        status = writer.Delete(int32_t(sqlite3_value_int64(argv[0])));
    } else if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
        int32_t rowid = 0;
        status = writer.Insert(argv + 2, argv[1], rowid);
        *newRowid = rowid;
    } else {
        status = writer.Update(int32_t(sqlite3_value_int64(argv[0])), argv + 2, argv[1]);
    }
    if (!status && topLevel && database.StatementOwner().StatementConflict() != Conflict::Fail)
        database.UndoStatement(); // ABORT: the rows this statement already wrote go too
    return status ? SQLITE_OK : Fail(base, status);
}

// An attached file's own connection runs only its trigger programs, inside
// a statement of its owner: the owner's connection ends the file's
// transaction and keeps its savepoints.
bool DrivenByOwner(sqlite3_vtab* base)
{
    const auto* vtab = static_cast<TableVtab*>(base);
    return vtab->onOwnConnection && vtab->database->IsAttached();
}

int BeginWrite(sqlite3_vtab* base)
{
    Status status = static_cast<TableVtab*>(base)->database->BeginWrite();
    return status ? SQLITE_OK : Fail(base, status);
}

// The commit happens here, where SQLite 3 still listens for an error (it
// ignores what xCommit returns); the other tables find nothing left to do.
int SyncWrite(sqlite3_vtab* base)
{
    if (DrivenByOwner(base))
        return SQLITE_OK;
    Status status = static_cast<TableVtab*>(base)->database->CommitWrite();
    return status ? SQLITE_OK : Fail(base, status);
}

int CommitWrite(sqlite3_vtab*)
{
    return SQLITE_OK;
}

int RollbackWrite(sqlite3_vtab* base)
{
    if (DrivenByOwner(base))
        return SQLITE_OK;
    static_cast<TableVtab*>(base)->database->RollbackWrite();
    return SQLITE_OK;
}

int OpenSavepoint(sqlite3_vtab* base, int level)
{
    if (DrivenByOwner(base))
        return SQLITE_OK;
    static_cast<TableVtab*>(base)->database->OpenSavepoint(level);
    return SQLITE_OK;
}

int ReleaseSavepoint(sqlite3_vtab* base, int level)
{
    if (DrivenByOwner(base))
        return SQLITE_OK;
    static_cast<TableVtab*>(base)->database->ReleaseSavepoint(level);
    return SQLITE_OK;
}

int RollbackToSavepoint(sqlite3_vtab* base, int level)
{
    if (DrivenByOwner(base))
        return SQLITE_OK;
    static_cast<TableVtab*>(base)->database->RollbackToSavepoint(level);
    return SQLITE_OK;
}

} // namespace sqlite2
