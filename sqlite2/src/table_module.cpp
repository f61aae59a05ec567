#include "table_module.h"

#include "database.h"
#include "index_key.h"
#include "sql_tokens.h"
#include "table_rows.h"
#include "table_vtab.h"
#include "value_rules.h"

#include <cmath>
#include <cstring>
#include <strings.h>

namespace sqlite2 {

namespace {

const char* const kSchemaTableSql =
    "CREATE TABLE sqlite_master(type text, name text, tbl_name text, rootpage integer, sql text)";

// SQLite 3's affinity for a declared type, reduced to what matters here:
// does it make values text (TEXT), leave them alone (BLOB) or numbers.
enum class Affinity { Text, Blob, Number };

Affinity AffinityOf(const std::string& type)
{
    std::string upper;
    for (char c : type)
        upper.push_back(char(toupper(uint8_t(c))));
    if (upper.find("INT") != std::string::npos)
        return Affinity::Number;
    if (upper.find("CHAR") != std::string::npos || upper.find("CLOB") != std::string::npos ||
        upper.find("TEXT") != std::string::npos)
        return Affinity::Text;
    if (upper.empty() || upper.find("BLOB") != std::string::npos)
        return Affinity::Blob;
    return Affinity::Number;
}

// The declared type SQLite 3 sees: the column's own where its affinity
// agrees with the 2.x class, else one that does.
std::string DeclaredType(const ColumnInfo& column)
{
    const Affinity affinity = AffinityOf(column.type);
    // Numbers keep their text too: the numeric collation compares them, as
    // SQLite 3's conversions would also take " 3" or "0x" texts for numbers.
    return affinity == Affinity::Text ? column.type : "TEXT";
}

} // namespace

const TableSchema& SchemaTable()
{
    static const TableSchema table = [] {
        TableSchema schema{"sqlite_master", 2, kSchemaTableSql, {}, {}};
        ParseTableDefinition(kSchemaTableSql, schema.info);
        return schema;
    }();
    return table;
}

namespace {

int Connect(sqlite3* db, void* aux, int argc, const char* const* argv, sqlite3_vtab** out, char** error)
{
    auto* database = static_cast<Database*>(aux);
    auto vtab = std::make_unique<TableVtab>();
    vtab->database = database;
    // An eponymous table is named by its module (argv[2]); an attached
    // file's table, declared with CREATE VIRTUAL TABLE, by its argument.
    const bool declared = argc > 3;
    vtab->name = declared ? Dequote(argv[3]) : argc > 2 ? argv[2] : "";
    vtab->onOwnConnection = !declared;
    vtab->schemaTable = vtab->name == kSchemaTableName;
    if (vtab->schemaTable)
        vtab->name = "sqlite_master";
    const TableSchema* table = vtab->Table();
    if (!table) {
        *error = sqlite3_mprintf("%s%s", message::noSuchTable, vtab->name.c_str());
        return SQLITE_ERROR;
    }
    sqlite3_vtab_config(db, SQLITE_VTAB_CONSTRAINT_SUPPORT, 1);
    if (int rc = sqlite3_declare_vtab(db, DeclaredTable(*table).c_str()); rc != SQLITE_OK) {
        *error = sqlite3_mprintf("%s", sqlite3_errmsg(db));
        return rc;
    }
    *out = vtab.release();
    return SQLITE_OK;
}

int Disconnect(sqlite3_vtab* vtab)
{
    delete static_cast<TableVtab*>(vtab);
    return SQLITE_OK;
}

// Query plans, in idxNum.
enum Plan : int {
    kFullScan = 0,
    kRowidEquals = 1,
    kIndexScan = 2, // with the bits below; idxStr names the index
    kIndexEquals = 4,
    kIndexLower = 8,
    kIndexUpper = 16,
};

bool IsRowidColumn(const TableSchema& table, int column)
{
    return column < 0 || column == table.info.integerPrimaryKey;
}

// Uses an index only where SQLite 3 compares with the column's own rules.
bool CollationFits(sqlite3_index_info* info, int constraint, const ColumnInfo& column)
{
    const char* collation = sqlite3_vtab_collation(info, constraint);
    return strcasecmp(collation ? collation : "BINARY", column.numeric ? kNumericCollation : "BINARY") == 0;
}

// The constraint that asks for one rowid, or -1.
int RowidEquality(const TableSchema& table, const sqlite3_index_info* info)
{
    for (int c = 0; c < info->nConstraint; ++c) {
        const auto& constraint = info->aConstraint[c];
        if (constraint.usable && constraint.op == SQLITE_INDEX_CONSTRAINT_EQ &&
            IsRowidColumn(table, constraint.iColumn))
            return c;
    }
    return -1;
}

// The constraints on an index's first column that the index can serve.
struct IndexBounds {
    int equals = -1;
    int lower = -1;
    int upper = -1;
};

IndexBounds BoundsOn(sqlite3_index_info* info, const TableSchema& table, int column)
{
    IndexBounds bounds;
    for (int c = 0; c < info->nConstraint; ++c) {
        const auto& constraint = info->aConstraint[c];
        if (!constraint.usable || constraint.iColumn != column ||
            !CollationFits(info, c, table.info.columns[size_t(column)]))
            continue;
        if (constraint.op == SQLITE_INDEX_CONSTRAINT_EQ)
            bounds.equals = c;
        else if (constraint.op == SQLITE_INDEX_CONSTRAINT_GT || constraint.op == SQLITE_INDEX_CONSTRAINT_GE)
            bounds.lower = c;
        else if (constraint.op == SQLITE_INDEX_CONSTRAINT_LT || constraint.op == SQLITE_INDEX_CONSTRAINT_LE)
            bounds.upper = c;
    }
    return bounds;
}

double IndexCost(const IndexSchema& index, const IndexBounds& bounds)
{
    if (bounds.equals >= 0)
        return index.unique && index.columns.size() == 1 ? 2 : 20;
    if (bounds.lower >= 0 && bounds.upper >= 0)
        return 5000;
    return bounds.lower >= 0 || bounds.upper >= 0 ? 50000 : 1e9;
}

// Makes the index the plan: its bounds become Filter's arguments, in the
// order Filter reads them (the value sought, or the lower then the upper bound).
void UseIndex(sqlite3_index_info* info, const IndexSchema& index, const IndexBounds& bounds, double cost)
{
    for (int c = 0; c < info->nConstraint; ++c)
        info->aConstraintUsage[c].argvIndex = 0;
    int plan = kIndexScan, argument = 0;
    auto use = [&](int constraint, int bit) {
        if (constraint < 0)
            return;
        plan |= bit;
        info->aConstraintUsage[constraint].argvIndex = ++argument;
    };
    if (bounds.equals >= 0) {
        use(bounds.equals, kIndexEquals);
    } else {
        use(bounds.lower, kIndexLower);
        use(bounds.upper, kIndexUpper);
    }
    if (info->needToFreeIdxStr)
        sqlite3_free(info->idxStr);
    info->idxStr = sqlite3_mprintf("%s", index.name.c_str());
    info->needToFreeIdxStr = 1;
    info->idxNum = plan;
    info->estimatedCost = cost;
    info->estimatedRows = sqlite3_int64(cost);
}

// Plans: one rowid; else the cheapest index whose first column is bounded;
// else a scan of the table in rowid order.
int BestIndex(sqlite3_vtab* base, sqlite3_index_info* info)
{
    auto* vtab = static_cast<TableVtab*>(base);
    const TableSchema* table = vtab->Table();
    if (!table)
        return SQLITE_ERROR;
    info->idxNum = kFullScan;
    info->estimatedCost = 1e6;
    info->estimatedRows = 1000000;
    if (const int rowid = RowidEquality(*table, info); rowid >= 0) {
        info->idxNum = kRowidEquals;
        info->aConstraintUsage[rowid].argvIndex = 1;
        info->estimatedCost = 1;
        info->estimatedRows = 1;
        info->idxFlags = SQLITE_INDEX_SCAN_UNIQUE;
        return SQLITE_OK;
    }
    for (const IndexSchema& index : table->indexes) {
        const int first = index.columns.empty() ? -2 : index.columns[0];
        if (first < 0)
            continue;
        const IndexBounds bounds = BoundsOn(info, *table, first);
        if (const double cost = IndexCost(index, bounds); cost < info->estimatedCost)
            UseIndex(info, index, bounds, cost);
    }
    // A scan already comes in rowid order.
    if (info->nOrderBy == 1 && info->aOrderBy[0].iColumn < 0 && !info->aOrderBy[0].desc && info->idxNum == kFullScan)
        info->orderByConsumed = 1;
    return SQLITE_OK;
}

struct TableCursor : sqlite3_vtab_cursor {
    const TableSchema* table = nullptr; // looked up again when the schema was read again
    uint64_t generation = 0;
    std::unique_ptr<Cursor> rows;
    std::unique_ptr<Cursor> entries; // the index, for index plans
    const IndexSchema* index = nullptr;
    int plan = kFullScan;
    std::string prefix;      // kIndexEquals: the fields every entry starts with
    std::string upper;       // kIndexUpper: no entry's fields beyond these
    bool done = true;
    int32_t rowid = 0;
    bool loaded = false;
    std::string record;
    std::vector<ValueView> values;
};

TableVtab* VtabOf(sqlite3_vtab_cursor* cursor)
{
    return static_cast<TableVtab*>(cursor->pVtab);
}

int OpenCursor(sqlite3_vtab*, sqlite3_vtab_cursor** out)
{
    *out = new TableCursor();
    return SQLITE_OK;
}

int CloseCursor(sqlite3_vtab_cursor* cursor)
{
    delete static_cast<TableCursor*>(cursor);
    return SQLITE_OK;
}

// A rowid asked for as a number SQLite 3 or 2.8 would take as one.
bool RowidOf(sqlite3_value* value, int32_t& rowid)
{
    double number = 0;
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
    case SQLITE_FLOAT:
        number = sqlite3_value_double(value);
        break;
    case SQLITE_TEXT: {
        const char* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
        if (!PassesNumberTest(text))
            return false;
        number = TextToNumber(text);
        break;
    }
    default:
        return false;
    }
    if (number != std::floor(number) || number < INT32_MIN || number > INT32_MAX)
        return false;
    rowid = int32_t(number);
    return true;
}

// The fields of a one-column key for a value SQLite 3 compares with.
std::string FieldKey(const TableSchema& table, const IndexSchema& index, sqlite3_value* value)
{
    Row row(table.info.columns.size());
    row[size_t(index.columns[0])] = StoredValue(value);
    IndexSchema first = index;
    first.columns.resize(1);
    return RowIndexKey(table.info, first, row, 0, true);
}

int SettleIndexEntry(TableCursor* cursor);

int Filter(sqlite3_vtab_cursor* base, int plan, const char* indexName, int argc, sqlite3_value** argv)
{
    auto* cursor = static_cast<TableCursor*>(base);
    TableVtab* vtab = VtabOf(base);
    const TableSchema* table = vtab->Table();
    if (!table)
        return SQLITE_ERROR;
    BTree& tree = vtab->database->Tree();
    cursor->table = table;
    cursor->generation = vtab->database->SchemaGeneration();
    cursor->plan = plan;
    cursor->loaded = false;
    cursor->done = false;
    cursor->entries.reset();
    cursor->rows = std::make_unique<Cursor>(tree, table->root);
    Status status;
    if (tree.IsEmpty()) {
        cursor->done = true;
        return SQLITE_OK;
    }
    if (plan == kRowidEquals) {
        bool found = false;
        if (argc < 1 || !RowidOf(argv[0], cursor->rowid)) {
            cursor->done = true;
            return SQLITE_OK;
        }
        status = cursor->rows->Seek(EncodeRowidKey(cursor->rowid), found);
        cursor->done = !found;
        return status ? SQLITE_OK : Fail(base->pVtab, status);
    }
    if (plan & kIndexScan) {
        const TableSchema* owner = nullptr;
        cursor->index = vtab->database->CurrentSchema().FindIndex(indexName ? indexName : "", &owner);
        if (!cursor->index || owner != table)
            return SQLITE_ERROR;
        cursor->entries = std::make_unique<Cursor>(tree, cursor->index->root);
        int argument = 0;
        cursor->prefix.clear();
        cursor->upper.clear();
        bool exact = false;
        if (plan & kIndexEquals) {
            cursor->prefix = FieldKey(*table, *cursor->index, argv[argument++]);
            status = cursor->entries->Seek(cursor->prefix, exact);
        } else if (plan & kIndexLower) {
            status = cursor->entries->Seek(FieldKey(*table, *cursor->index, argv[argument++]), exact);
        } else {
            status = cursor->entries->First();
        }
        if (status && (plan & kIndexUpper))
            cursor->upper = FieldKey(*table, *cursor->index, argv[argument]);
        if (!status)
            return Fail(base->pVtab, status);
        return SettleIndexEntry(cursor);
    }
    status = cursor->rows->First();
    if (!status)
        return Fail(base->pVtab, status);
    cursor->done = !cursor->rows->Valid();
    return SQLITE_OK;
}

// Moves the table cursor to the row of the index entry under the index
// cursor, or ends the scan when the entry is past the plan's range.
int SettleIndexEntry(TableCursor* cursor)
{
    if (!cursor->entries->Valid()) {
        cursor->done = true;
        return SQLITE_OK;
    }
    std::string key;
    Status status = cursor->entries->Key(key);
    if (!status || key.size() < 4)
        return Fail(cursor->pVtab, status ? Status::Corrupt() : status);
    const std::string_view fields(key.data(), key.size() - 4);
    if ((!cursor->prefix.empty() && fields.substr(0, cursor->prefix.size()) != cursor->prefix) ||
        (!cursor->upper.empty() && fields.substr(0, cursor->upper.size()) > cursor->upper)) {
        cursor->done = true;
        return SQLITE_OK;
    }
    cursor->rowid = DecodeRowidKey(std::string_view(key).substr(key.size() - 4));
    bool found = false;
    status = cursor->rows->Seek(EncodeRowidKey(cursor->rowid), found);
    if (!status)
        return Fail(cursor->pVtab, status);
    if (!found)
        return Fail(cursor->pVtab, Status::Corrupt());
    cursor->loaded = false;
    return SQLITE_OK;
}

int Next(sqlite3_vtab_cursor* base)
{
    auto* cursor = static_cast<TableCursor*>(base);
    cursor->loaded = false;
    if (cursor->plan == kRowidEquals) {
        cursor->done = true;
        return SQLITE_OK;
    }
    if (cursor->plan & kIndexScan) {
        Status status = cursor->entries->Next();
        return status ? SettleIndexEntry(cursor) : Fail(base->pVtab, status);
    }
    Status status = cursor->rows->Next();
    if (!status)
        return Fail(base->pVtab, status);
    cursor->done = !cursor->rows->Valid();
    return SQLITE_OK;
}

int Eof(sqlite3_vtab_cursor* base)
{
    return static_cast<TableCursor*>(base)->done;
}

// The current row's record, decoded once per row.
int LoadRow(TableCursor* cursor)
{
    if (cursor->loaded)
        return SQLITE_OK;
    std::string_view key, data;
    Status status = cursor->rows->Payload(key, data);
    if (!status)
        return Fail(cursor->pVtab, status);
    if (key.size() != 4)
        return Fail(cursor->pVtab, Status::Corrupt());
    cursor->rowid = DecodeRowidKey(key);
    cursor->record.assign(data);
    if (!DecodeRecordViews(cursor->record, cursor->values))
        return Fail(cursor->pVtab, Status::Corrupt());
    cursor->loaded = true;
    return SQLITE_OK;
}

int Column(sqlite3_vtab_cursor* base, sqlite3_context* context, int column)
{
    // A column an UPDATE leaves alone: the row writer keeps the stored value.
    if (sqlite3_vtab_nochange(context))
        return SQLITE_OK;
    auto* cursor = static_cast<TableCursor*>(base);
    if (int rc = LoadRow(cursor); rc != SQLITE_OK)
        return rc;
    TableVtab* vtab = VtabOf(base);
    if (cursor->generation != vtab->database->SchemaGeneration()) {
        cursor->table = vtab->Table();
        cursor->generation = vtab->database->SchemaGeneration();
    }
    const TableSchema* table = cursor->table;
    if (table && column == table->info.integerPrimaryKey) {
        sqlite3_result_int(context, cursor->rowid);
    } else if (size_t(column) < cursor->values.size() && cursor->values[size_t(column)]) {
        const std::string_view text = *cursor->values[size_t(column)];
        // A stored text normally keeps its NUL (the record is a std::string,
        // so the byte after any field can be read): handed over as
        // terminated, SQLite finds where the text ends (at its first NUL)
        // and need not reallocate each value to add one.
        const bool terminated = text.data()[text.size()] == '\0';
        sqlite3_result_text(context, text.data(), terminated ? -1 : int(strnlen(text.data(), text.size())),
                            SQLITE_TRANSIENT);
    } else {
        sqlite3_result_null(context);
    }
    return SQLITE_OK;
}

int RowidMethod(sqlite3_vtab_cursor* base, sqlite3_int64* rowid)
{
    auto* cursor = static_cast<TableCursor*>(base);
    if (int rc = LoadRow(cursor); rc != SQLITE_OK)
        return rc;
    *rowid = cursor->rowid;
    return SQLITE_OK;
}

} // namespace

static void SetError(sqlite3_vtab* vtab, const std::string& message)
{
    sqlite3_free(vtab->zErrMsg);
    vtab->zErrMsg = sqlite3_mprintf("%s", message.c_str());
}

int Fail(sqlite3_vtab* vtab, const Status& status)
{
    SetError(vtab, status.Message());
    switch (status.Code()) {
    case kBusy:
        return SQLITE_BUSY;
    case kReadOnly:
        return SQLITE_READONLY;
    case kFull:
        return SQLITE_FULL;
    case kCorrupt:
        return SQLITE_CORRUPT;
    case kConstraint:
        return SQLITE_CONSTRAINT;
    case kMismatch:
        return SQLITE_MISMATCH;
    case kIoError:
        return SQLITE_IOERR;
    default:
        return SQLITE_ERROR;
    }
}

std::string DeclaredTable(const TableSchema& table)
{
    std::string sql = "CREATE TABLE x(";
    for (size_t c = 0; c < table.info.columns.size(); ++c) {
        const ColumnInfo& column = table.info.columns[c];
        if (c)
            sql += ", ";
        sql += QuoteName(column.name);
        if (int(c) == table.info.integerPrimaryKey) {
            sql += " INTEGER";
            continue;
        }
        const std::string type = DeclaredType(column);
        if (!type.empty())
            sql += " " + type;
        if (column.numeric)
            sql += std::string(" COLLATE ") + kNumericCollation;
    }
    return sql + ")";
}

namespace {

// Without xCreate a module serves only the table of its own name (an
// eponymous table); with it, tables declared by CREATE VIRTUAL TABLE.
sqlite3_module MakeModule(bool eponymousOnly)
{
    return {
        2,          eponymousOnly ? nullptr : Connect, Connect, BestIndex, Disconnect, Disconnect, OpenCursor,
        CloseCursor, Filter, Next, Eof, Column, RowidMethod, UpdateRow, BeginWrite, SyncWrite, CommitWrite,
        RollbackWrite, nullptr, nullptr, OpenSavepoint, ReleaseSavepoint, RollbackToSavepoint, nullptr,
    };
}

} // namespace

bool AddTableModule(sqlite3* connection, Database* database, const std::string& name)
{
    static const sqlite3_module module = MakeModule(true);
    return sqlite3_create_module(connection, name.c_str(), &module, database) == SQLITE_OK;
}

bool AddFileModule(sqlite3* connection, Database* file, const std::string& moduleName)
{
    static const sqlite3_module module = MakeModule(false);
    return sqlite3_create_module(connection, moduleName.c_str(), &module, file) == SQLITE_OK;
}

std::string DeclareTableStatement(const std::string& schema, const std::string& table, const std::string& module)
{
    return "CREATE VIRTUAL TABLE " + QuoteName(schema) + "." + QuoteName(table) + " USING " + module + "(" +
           QuoteName(table) + ")";
}

void RemoveTableModule(sqlite3* connection, const std::string& name)
{
    sqlite3_create_module(connection, name.c_str(), nullptr, nullptr);
}

} // namespace sqlite2
