#include "reader.h"

#include "sql_tokens.h"

#include <algorithm>

namespace sqlite2 {

namespace {

// One stored row: its rowid and its record, a view into the image or into
// an assembled overflow payload.
struct RowRef {
    int32_t rowid;
    std::string_view record;
};

// The rows of one table, located in the image when the file is opened and
// shared by every cursor; they stay valid while any statement uses them.
struct TableRows {
    std::shared_ptr<const FileImage> image;
    ReaderTable table;
    bool loaded = false;
    std::string error;
    std::vector<RowRef> rows;
    std::deque<std::string> assembled;

    bool Load()
    {
        if (loaded)
            return error.empty();
        loaded = true;
        return image->WalkTree(
            table.root,
            [this](std::string_view key, std::string_view data, bool stable) {
                if (key.size() != 4)
                    return false;
                if (!stable)
                    data = assembled.emplace_back(data);
                rows.push_back({DecodeRowidKey(key), data});
                return true;
            },
            error);
    }
};

struct Module {
    std::vector<std::shared_ptr<TableRows>> tables;
};

struct VirtualTable : sqlite3_vtab {
    std::shared_ptr<TableRows> rows;
};

struct Cursor : sqlite3_vtab_cursor {
    std::shared_ptr<TableRows> rows;
    size_t position = 0;
    size_t end = 0;
    size_t decodedPosition = SIZE_MAX;
    std::vector<ValueView> decoded;
};

int Connect(sqlite3* db, void* aux, int argc, const char* const* argv, sqlite3_vtab** out, char** error)
{
    auto* module = static_cast<Module*>(aux);
    size_t index = argc > 3 ? size_t(strtoul(argv[3], nullptr, 10)) : SIZE_MAX;
    if (index >= module->tables.size()) {
        *error = sqlite3_mprintf("no such table");
        return SQLITE_ERROR;
    }
    const ReaderTable& table = module->tables[index]->table;
    // The rowid column keeps its INTEGER, the others have no type: the
    // same comparisons as in the mirror.
    std::string declaration = "CREATE TABLE x(";
    for (size_t c = 0; c < table.columns.size(); ++c) {
        declaration += (c ? ", " : "") + QuoteName(table.columns[c]);
        if (int(c) == table.integerPrimaryKey)
            declaration += " INTEGER";
    }
    declaration += ")";
    int rc = sqlite3_declare_vtab(db, declaration.c_str());
    if (rc != SQLITE_OK)
        return rc;
    auto* vtab = new (std::nothrow) VirtualTable;
    if (!vtab)
        return SQLITE_NOMEM;
    *static_cast<sqlite3_vtab*>(vtab) = {};
    vtab->rows = module->tables[index];
    *out = vtab;
    return SQLITE_OK;
}

int Disconnect(sqlite3_vtab* vtab)
{
    delete static_cast<VirtualTable*>(vtab);
    return SQLITE_OK;
}

// A rowid equality is a lookup; anything else scans in rowid order.
int BestIndex(sqlite3_vtab* vtab, sqlite3_index_info* info)
{
    const int rowidColumn = static_cast<VirtualTable*>(vtab)->rows->table.integerPrimaryKey;
    for (int i = 0; i < info->nConstraint; ++i) {
        const auto& constraint = info->aConstraint[i];
        if (constraint.usable && constraint.op == SQLITE_INDEX_CONSTRAINT_EQ &&
            (constraint.iColumn == -1 || (rowidColumn >= 0 && constraint.iColumn == rowidColumn))) {
            info->aConstraintUsage[i].argvIndex = 1;
            info->idxNum = 1;
            info->estimatedCost = 10;
            info->estimatedRows = 1;
            info->idxFlags = SQLITE_INDEX_SCAN_UNIQUE;
            return SQLITE_OK;
        }
    }
    if (info->nOrderBy == 1 && info->aOrderBy[0].iColumn == -1 && !info->aOrderBy[0].desc)
        info->orderByConsumed = 1;
    info->idxNum = 0;
    info->estimatedCost = 1e6;
    return SQLITE_OK;
}

int Open(sqlite3_vtab* vtab, sqlite3_vtab_cursor** out)
{
    auto* cursor = new (std::nothrow) Cursor;
    if (!cursor)
        return SQLITE_NOMEM;
    *static_cast<sqlite3_vtab_cursor*>(cursor) = {};
    cursor->rows = static_cast<VirtualTable*>(vtab)->rows;
    *out = cursor;
    return SQLITE_OK;
}

int Close(sqlite3_vtab_cursor* cursor)
{
    delete static_cast<Cursor*>(cursor);
    return SQLITE_OK;
}

// The rowid a value stands for, as the INTEGER affinity would read it.
bool AsRowid(sqlite3_value* value, int32_t& rowid)
{
    int type = sqlite3_value_numeric_type(value);
    if (type == SQLITE_INTEGER) {
        sqlite3_int64 n = sqlite3_value_int64(value);
        rowid = int32_t(n);
        return n >= INT32_MIN && n <= INT32_MAX;
    }
    if (type == SQLITE_FLOAT) {
        double d = sqlite3_value_double(value);
        rowid = int32_t(d);
        return d >= INT32_MIN && d <= INT32_MAX && double(rowid) == d;
    }
    return false;
}

int Filter(sqlite3_vtab_cursor* base, int idxNum, const char*, int argc, sqlite3_value** argv)
{
    auto* cursor = static_cast<Cursor*>(base);
    TableRows& rows = *cursor->rows;
    if (!rows.Load()) {
        sqlite3_free(base->pVtab->zErrMsg);
        base->pVtab->zErrMsg = sqlite3_mprintf("%s", rows.error.c_str());
        return SQLITE_CORRUPT;
    }
    cursor->decodedPosition = SIZE_MAX;
    cursor->position = 0;
    cursor->end = rows.rows.size();
    int32_t rowid = 0;
    if (idxNum == 1) {
        if (argc < 1 || !AsRowid(argv[0], rowid)) {
            cursor->end = 0;
            return SQLITE_OK;
        }
        auto found = std::lower_bound(rows.rows.begin(), rows.rows.end(), rowid,
                                      [](const RowRef& row, int32_t id) { return row.rowid < id; });
        cursor->position = size_t(found - rows.rows.begin());
        cursor->end = found != rows.rows.end() && found->rowid == rowid ? cursor->position + 1 : cursor->position;
    }
    return SQLITE_OK;
}

int Next(sqlite3_vtab_cursor* base)
{
    ++static_cast<Cursor*>(base)->position;
    return SQLITE_OK;
}

int Eof(sqlite3_vtab_cursor* base)
{
    auto* cursor = static_cast<Cursor*>(base);
    return cursor->position >= cursor->end;
}

int Column(sqlite3_vtab_cursor* base, sqlite3_context* context, int column)
{
    auto* cursor = static_cast<Cursor*>(base);
    const RowRef& row = cursor->rows->rows[cursor->position];
    if (column == cursor->rows->table.integerPrimaryKey) {
        sqlite3_result_int64(context, row.rowid);
        return SQLITE_OK;
    }
    if (cursor->decodedPosition != cursor->position) {
        if (!DecodeRecordViews(row.record, cursor->decoded)) {
            sqlite3_result_error(context, "database disk image is malformed", -1);
            return SQLITE_CORRUPT;
        }
        cursor->decodedPosition = cursor->position;
    }
    if (column >= 0 && size_t(column) < cursor->decoded.size() && cursor->decoded[size_t(column)]) {
        const std::string_view text = *cursor->decoded[size_t(column)];
        sqlite3_result_text(context, text.data(), int(text.size()), SQLITE_TRANSIENT);
    } else {
        sqlite3_result_null(context);
    }
    return SQLITE_OK;
}

int Rowid(sqlite3_vtab_cursor* base, sqlite3_int64* rowid)
{
    auto* cursor = static_cast<Cursor*>(base);
    *rowid = cursor->rows->rows[cursor->position].rowid;
    return SQLITE_OK;
}

sqlite3_module RowsModule()
{
    sqlite3_module module{};
    module.xCreate = Connect;
    module.xConnect = Connect;
    module.xBestIndex = BestIndex;
    module.xDisconnect = Disconnect;
    module.xDestroy = Disconnect;
    module.xOpen = Open;
    module.xClose = Close;
    module.xFilter = Filter;
    module.xNext = Next;
    module.xEof = Eof;
    module.xColumn = Column;
    module.xRowid = Rowid;
    return module;
}

const sqlite3_module rowsModule = RowsModule();

} // namespace

Reader::~Reader()
{
    Close();
}

void Reader::Close()
{
    // Statements still open keep the connection, its tables and the image
    // alive until they are finalized.
    if (connection)
        sqlite3_close_v2(connection);
    connection = nullptr;
}

bool Reader::Build(std::shared_ptr<const FileImage> image, const std::vector<ReaderTable>& tables,
                   const std::vector<std::string>& viewStatements, std::string& error)
{
    Close();
    if (sqlite3_open(":memory:", &connection) != SQLITE_OK) {
        Close();
        return false;
    }
    auto* module = new (std::nothrow) Module;
    if (!module) {
        Close();
        return false;
    }
    for (const ReaderTable& table : tables) {
        auto rows = std::make_shared<TableRows>();
        rows->image = image;
        rows->table = table;
        if (!rows->Load()) {
            error = rows->error;
            delete module;
            Close();
            return false;
        }
        module->tables.push_back(rows);
    }
    if (sqlite3_create_module_v2(connection, "sqlite2_rows", &rowsModule, module,
                                 [](void* aux) { delete static_cast<Module*>(aux); }) != SQLITE_OK) {
        Close();
        return false;
    }
    for (size_t i = 0; i < tables.size(); ++i) {
        std::string create =
            "CREATE VIRTUAL TABLE " + QuoteName(tables[i].name) + " USING sqlite2_rows(" + std::to_string(i) + ")";
        if (sqlite3_exec(connection, create.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
            Close();
            return false;
        }
    }
    // A view that fails here is simply missing; its statements go to the mirror.
    for (const std::string& view : viewStatements)
        sqlite3_exec(connection, view.c_str(), nullptr, nullptr, nullptr);
    return true;
}

} // namespace sqlite2
