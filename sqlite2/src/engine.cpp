#include "engine.h"

#include "index_key.h"
#include "number_spelling.h"
#include "sql_tokens.h"
#include "tree_builder.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <strings.h>

namespace sqlite2 {

namespace {

std::string Lower(std::string text)
{
    for (char& c : text)
        c = char(tolower(uint8_t(c)));
    return text;
}

int SchemaVersion(sqlite3* db)
{
    int version = 0;
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db, "PRAGMA schema_version", -1, &statement, nullptr) == SQLITE_OK &&
        sqlite3_step(statement) == SQLITE_ROW)
        version = sqlite3_column_int(statement, 0);
    sqlite3_finalize(statement);
    return version;
}

// Values are text in a 2.x file; numbers computed by SQL are written the way 2.8 prints them.
Value ColumnText(sqlite3_stmt* statement, int column)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_NULL:
        return std::nullopt;
    case SQLITE_FLOAT: {
        char text[64];
        snprintf(text, sizeof text, "%.15g", sqlite3_column_double(statement, column));
        return std::string(text);
    }
    case SQLITE_INTEGER:
        // 2.8 computes with 32-bit integers: 2147483647+1 is stored as -2147483648.
        return std::to_string(int32_t(uint32_t(uint64_t(sqlite3_column_int64(statement, column)))));
    default: {
        const char* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        return std::string(text ? text : ""); // a text ends at its first NUL in a 2.x file
    }
    }
}

struct SchemaObject {
    std::string type, name, table, sql;
    bool hasSql = false;
    uint32_t root = 0;
};

// "sqlite_autoindex_T_N" is "(T autoindex N)" in a 2.x file.
std::string FileIndexName(const SchemaObject& object)
{
    const std::string prefix = "sqlite_autoindex_";
    if (object.name.compare(0, prefix.size(), prefix) != 0)
        return object.name;
    size_t underscore = object.name.rfind('_');
    return "(" + object.table + " autoindex " + object.name.substr(underscore + 1) + ")";
}

} // namespace

Engine::~Engine()
{
    if (mirror)
        sqlite3_close_v2(mirror);
}

bool Engine::Open(const std::string& path, std::string& error)
{
    return file.Open(path, error) && Load(error);
}

bool Engine::Load(std::string& error)
{
    reader.Close();
    if (mirror) {
        sqlite3_close_v2(mirror); // a statement still open keeps it until finalized
        mirror = nullptr;
    }
    origins.clear();
    materialized = false;
    std::string content;
    bool read = file.ReadUnderLock(content, error);
    file.Unlock();
    auto loaded = std::make_shared<FileImage>();
    if (!read || !loaded->Load(std::move(content), error))
        return false;
    image = loaded;
    if (sqlite3_open(":memory:", &mirror) != SQLITE_OK) {
        error = "out of memory";
        return false;
    }
    // 2.8 parses CHECK constraints but never enforces them; the mirror's
    // typeless columns would compare their texts against numbers anyway.
    sqlite3_exec(mirror, "PRAGMA ignore_check_constraints=ON", nullptr, nullptr, nullptr);
    std::vector<ReaderTable> readerTables;
    std::vector<std::string> views;
    if (!image->IsEmptyDatabase()) {
        std::vector<Entry> schema;
        if (!image->ReadTree(2, schema, error))
            return false;
        std::vector<std::pair<std::string, std::string>> tables;
        sqlite3_exec(mirror, "BEGIN", nullptr, nullptr, nullptr);
        for (const Entry& entry : schema) {
            Row fields;
            if (!DecodeRecord(entry.data, fields) || fields.size() < 5) {
                error = "malformed database schema";
                return false;
            }
            if (!fields[0] || !fields[4])
                continue; // automatic indexes come with their tables
            const std::string& type = *fields[0];
            const std::string& sql = *fields[4];
            if (type == "table") {
                const std::string name = fields[1].value_or("");
                uint32_t root = uint32_t(strtoul(fields[3].value_or("0").c_str(), nullptr, 10));
                if (!CreateTable(name, sql, root))
                    continue;
                const TableInfo& info = origins[Lower(name)].info;
                ReaderTable table{name, root, {}, info.integerPrimaryKey};
                for (const ColumnInfo& column : info.columns)
                    table.columns.push_back(column.name);
                readerTables.push_back(std::move(table));
                tables.emplace_back(name, sql);
            } else {
                // Like 2.8, an object whose statement fails is simply left out.
                if (sqlite3_exec(mirror, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK && type == "view")
                    views.push_back(sql);
            }
        }
        // The mirror's tables were made without declared types; show the real statements.
        sqlite3_exec(mirror, "PRAGMA writable_schema=ON", nullptr, nullptr, nullptr);
        for (const auto& [name, sql] : tables) {
            sqlite3_stmt* update = nullptr;
            sqlite3_prepare_v2(mirror, "UPDATE sqlite_master SET sql=?1 WHERE type='table' AND name=?2", -1,
                               &update, nullptr);
            sqlite3_bind_text(update, 1, sql.c_str(), -1, SQLITE_TRANSIENT);
            sqlite3_bind_text(update, 2, name.c_str(), -1, SQLITE_TRANSIENT);
            sqlite3_step(update);
            sqlite3_finalize(update);
        }
        sqlite3_exec(mirror, "PRAGMA writable_schema=OFF; COMMIT", nullptr, nullptr, nullptr);
    }
    materialized = origins.empty();
    if (!materialized && !reader.Build(image, readerTables, views, error))
        return error.empty() && Materialize(error);
    sqlite3_set_last_insert_rowid(mirror, 0); // loading is not inserting
    TakeBaseline();
    return true;
}

bool Engine::CreateTable(const std::string& name, const std::string& sql, uint32_t root)
{
    TableOrigin origin;
    if (!ParseCreateTable(sql, origin.info) ||
        sqlite3_exec(mirror, origin.info.typelessSql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        return false; // a table 2.8 cannot parse does not exist for it either
    origin.name = name;
    origin.root = root;
    origins[Lower(name)] = std::move(origin);
    return true;
}

// The rows of every table copied into the mirror: needed before anything
// that writes, and before reads the reader cannot serve.
bool Engine::Materialize(std::string& error)
{
    if (materialized)
        return true;
    reader.Close();
    const sqlite3_int64 lastInserted = sqlite3_last_insert_rowid(mirror);
    sqlite3_exec(mirror, "BEGIN", nullptr, nullptr, nullptr);
    for (auto& [key, origin] : origins)
        if (!FillTable(origin, error)) {
            sqlite3_exec(mirror, "ROLLBACK", nullptr, nullptr, nullptr);
            return false;
        }
    sqlite3_exec(mirror, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_set_last_insert_rowid(mirror, lastInserted);
    materialized = true;
    TakeBaseline();
    return true;
}

bool Engine::FillTable(TableOrigin& origin, std::string& error)
{
    const TableInfo& info = origin.info;
    std::string insert = "INSERT INTO " + QuoteName(origin.name) + "(";
    std::string placeholders;
    if (info.integerPrimaryKey < 0) {
        insert += "rowid";
        placeholders = "?";
    }
    for (const ColumnInfo& column : info.columns) {
        if (!placeholders.empty()) {
            insert += ",";
            placeholders += ",";
        }
        insert += QuoteName(column.name);
        placeholders += "?";
    }
    insert += ") VALUES(" + placeholders + ")";
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(mirror, insert.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        error = sqlite3_errmsg(mirror);
        return false;
    }
    std::vector<Entry> entries;
    if (!image->ReadTree(origin.root, entries, error)) {
        sqlite3_finalize(statement);
        return false;
    }
    Row row;
    const int offset = info.integerPrimaryKey < 0 ? 1 : 0;
    for (Entry& entry : entries) {
        if (entry.key.size() != 4 || !DecodeRecord(entry.data, row)) {
            error = "database disk image is malformed";
            sqlite3_finalize(statement);
            return false;
        }
        int32_t rowid = DecodeRowidKey(entry.key);
        sqlite3_reset(statement);
        if (offset)
            sqlite3_bind_int(statement, 1, rowid);
        for (size_t c = 0; c < info.columns.size(); ++c) {
            int slot = int(c) + 1 + offset;
            if (int(c) == info.integerPrimaryKey)
                sqlite3_bind_int(statement, slot, rowid);
            else if (c < row.size() && row[c])
                sqlite3_bind_text(statement, slot, row[c]->data(), int(row[c]->size()), SQLITE_TRANSIENT);
            else
                sqlite3_bind_null(statement, slot);
        }
        if (sqlite3_step(statement) != SQLITE_DONE) {
            error = "database disk image is malformed";
            sqlite3_finalize(statement);
            return false;
        }
        origin.records.emplace(rowid, std::move(entry.data));
    }
    sqlite3_finalize(statement);
    return true;
}

namespace {

// What a statement touches, as the authorizer reports it while preparing.
struct StatementAccess {
    const std::map<std::string, Engine::TableOrigin>* tables;
    std::vector<std::string> tablesRead;
    bool schemaRead = false;
    bool other = false; // pragmas, transactions, attachments, functions of state

    static int Note(void* context, int action, const char* first, const char*, const char*, const char*)
    {
        auto* access = static_cast<StatementAccess*>(context);
        switch (action) {
        case SQLITE_READ: {
            const std::string table = Lower(first ? first : "");
            if (table == "sqlite_master" || table == "sqlite_temp_master" || table == "sqlite_schema" ||
                table == "sqlite_temp_schema")
                access->schemaRead = true;
            else if (access->tables->count(table) &&
                     std::find(access->tablesRead.begin(), access->tablesRead.end(), table) ==
                         access->tablesRead.end())
                access->tablesRead.push_back(table);
            else if (!access->tables->count(table))
                access->other = true; // a temporary or attached table the reader lacks
            break;
        }
        case SQLITE_SELECT:
        case SQLITE_FUNCTION:
        case SQLITE_RECURSIVE:
            break;
        default:
            access->other = true;
        }
        return SQLITE_OK;
    }
};

} // namespace

int Engine::Prepare(const char* sql, sqlite3_stmt** statement, const char** tail, sqlite3** connection,
                    std::string& error)
{
    *statement = nullptr;
    *connection = mirror;
    // A table made by an earlier statement has its declared types in the
    // mirror and would convert what is stored in it ('007' to 7): write the
    // change now, which reads the tables back without types.
    if (mirror && sqlite3_get_autocommit(mirror) && SchemaVersion(mirror) != baseSchemaVersion &&
        !WriteBackChanges(error))
        return SQLITE_IOERR;
    *connection = mirror;
    if (materialized) {
        const char* end = nullptr;
        int rc = sqlite3_prepare_v2(mirror, sql, -1, statement, &end);
        if (tail)
            *tail = end;
        if (rc != SQLITE_OK) {
            error = sqlite3_errmsg(mirror);
            return rc;
        }
        RespellNumbers(sql, end, statement);
        return SQLITE_OK;
    }

    StatementAccess access{&origins, {}, false, false};
    sqlite3_set_authorizer(mirror, StatementAccess::Note, &access);
    const char* end = nullptr;
    int rc = sqlite3_prepare_v2(mirror, sql, -1, statement, &end);
    sqlite3_set_authorizer(mirror, nullptr, nullptr);
    if (tail)
        *tail = end;
    if (rc != SQLITE_OK)
        error = sqlite3_errmsg(mirror);
    if (rc != SQLITE_OK || !*statement)
        return rc;

    const bool readsOnly = sqlite3_stmt_readonly(*statement) && !access.other;
    if (readsOnly && !access.schemaRead && access.tablesRead.size() <= 1 && sqlite3_get_autocommit(mirror) &&
        reader.Connection()) {
        sqlite3_stmt* onReader = nullptr;
        if (sqlite3_prepare_v2(reader.Connection(), sql, int(end - sql), &onReader, nullptr) == SQLITE_OK &&
            onReader) {
            sqlite3_finalize(*statement);
            *statement = onReader;
            *connection = reader.Connection();
            return SQLITE_OK;
        }
        sqlite3_finalize(onReader);
    }
    // Reading only the schema needs no rows; everything else gets them first.
    if (readsOnly && access.tablesRead.empty())
        return SQLITE_OK;
    if (!Materialize(error)) {
        sqlite3_finalize(*statement);
        *statement = nullptr;
        return SQLITE_CORRUPT;
    }
    RespellNumbers(sql, end, statement);
    return SQLITE_OK;
}

// Numbers written into rows keep their spelling, as 2.8 stores them; a
// statement that cannot be prepared so is kept as it was written.
void Engine::RespellNumbers(const char* sql, const char* end, sqlite3_stmt** statement)
{
    if (!*statement || sqlite3_stmt_readonly(*statement))
        return;
    const std::string_view written(sql, size_t(end - sql));
    const std::string respelled = KeepNumberSpelling(written);
    if (respelled == written)
        return;
    sqlite3_stmt* replacement = nullptr;
    if (sqlite3_prepare_v2(mirror, respelled.c_str(), -1, &replacement, nullptr) != SQLITE_OK || !replacement) {
        sqlite3_finalize(replacement);
        return;
    }
    sqlite3_finalize(*statement);
    *statement = replacement;
}

void Engine::TakeBaseline()
{
    baseChanges = sqlite3_total_changes64(mirror);
    baseSchemaVersion = SchemaVersion(mirror);
}

bool Engine::WriteBackChanges(std::string& error)
{
    if (!mirror || !sqlite3_get_autocommit(mirror))
        return true;
    bool schemaChanged = SchemaVersion(mirror) != baseSchemaVersion;
    if (!schemaChanged && sqlite3_total_changes64(mirror) == baseChanges)
        return true;
    if (sqlite3_int64 inserted = sqlite3_last_insert_rowid(mirror))
        insertedBeforeReload = inserted;
    std::string rebuilt;
    bool written = BuildFile(rebuilt, error) && file.Write(image->Bytes(), rebuilt, error);
    file.Unlock();
    // Reading the file back keeps the mirror exactly what the file says,
    // also after a failed write.
    std::string reloadError;
    if (!Load(reloadError) && written) {
        error = reloadError;
        return false;
    }
    return written;
}

sqlite3_int64 Engine::LastInsertRowId() const
{
    sqlite3_int64 inserted = mirror ? sqlite3_last_insert_rowid(mirror) : 0;
    return inserted ? inserted : insertedBeforeReload;
}

bool Engine::BuildFile(std::string& rebuilt, std::string& error)
{
    ByteOrder order = image->PageCount() ? image->Order() : ByteOrder{};
    PageSet pages(order);
    pages.Allocate(); // page 1
    pages.Allocate(); // page 2: the schema root

    std::vector<SchemaObject> objects;
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(mirror, "SELECT type, name, tbl_name, sql FROM sqlite_master ORDER BY rowid", -1,
                       &statement, nullptr);
    while (sqlite3_step(statement) == SQLITE_ROW) {
        SchemaObject object;
        object.type = ColumnText(statement, 0).value_or("");
        object.name = ColumnText(statement, 1).value_or("");
        object.table = ColumnText(statement, 2).value_or("");
        Value sql = ColumnText(statement, 3);
        object.hasSql = sql.has_value();
        object.sql = sql.value_or("");
        // SQLite 3's own bookkeeping tables have no place in a 2.x file.
        if (object.type == "table" && object.name.compare(0, 7, "sqlite_") == 0)
            continue;
        if (object.type == "table" || object.type == "index")
            object.root = pages.Allocate();
        objects.push_back(object);
    }
    sqlite3_finalize(statement);

    std::map<std::string, std::vector<std::pair<int32_t, Row>>> tableRows;
    std::map<std::string, TableInfo> tableInfos;
    for (const SchemaObject& object : objects) {
        if (object.type != "table")
            continue;
        TableInfo info;
        if (!ParseCreateTable(object.sql, info)) {
            error = "cannot store table " + object.name + " in a 2.x file";
            return false;
        }
        const TableOrigin* origin = nullptr;
        auto found = origins.find(Lower(object.name));
        if (found != origins.end())
            origin = &found->second;
        std::string query = "SELECT rowid, * FROM " + QuoteName(object.name) + " ORDER BY rowid";
        if (sqlite3_prepare_v2(mirror, query.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
            error = sqlite3_errmsg(mirror);
            return false;
        }
        std::vector<Entry> entries;
        auto& rows = tableRows[Lower(object.name)];
        Row stored;
        while (sqlite3_step(statement) == SQLITE_ROW) {
            sqlite3_int64 rowid = sqlite3_column_int64(statement, 0);
            if (rowid < INT32_MIN || rowid > INT32_MAX) {
                sqlite3_finalize(statement);
                error = "rowid out of range for a 2.x file";
                return false;
            }
            Row row;
            for (size_t c = 0; c < info.columns.size(); ++c)
                row.push_back(int(c) == info.integerPrimaryKey ? Value(std::nullopt)
                                                               : ColumnText(statement, int(c) + 1));
            Entry entry{EncodeRowidKey(int32_t(rowid)), {}};
            // A row the statements did not touch keeps the bytes it was stored with.
            if (origin) {
                auto record = origin->records.find(int32_t(rowid));
                if (record != origin->records.end() && DecodeRecord(record->second, stored) && stored == row)
                    entry.data = record->second;
            }
            if (entry.data.empty())
                entry.data = EncodeRecord(row);
            entries.push_back(std::move(entry));
            if (info.integerPrimaryKey >= 0)
                row[size_t(info.integerPrimaryKey)] = std::to_string(rowid);
            rows.emplace_back(int32_t(rowid), std::move(row));
        }
        sqlite3_finalize(statement);
        BuildTree(pages, object.root, entries);
        tableInfos[Lower(object.name)] = info;
    }

    for (const SchemaObject& object : objects) {
        if (object.type != "index")
            continue;
        const TableInfo& info = tableInfos[Lower(object.table)];
        std::vector<int> columns;
        std::string pragma = "PRAGMA index_info(" + QuoteName(object.name) + ")";
        sqlite3_prepare_v2(mirror, pragma.c_str(), -1, &statement, nullptr);
        while (sqlite3_step(statement) == SQLITE_ROW)
            columns.push_back(sqlite3_column_int(statement, 1));
        sqlite3_finalize(statement);
        std::vector<Entry> entries;
        for (const auto& [rowid, row] : tableRows[Lower(object.table)]) {
            std::vector<IndexField> fields;
            for (int column : columns) {
                bool valid = column >= 0 && size_t(column) < row.size();
                bool numeric = valid && (column == info.integerPrimaryKey || info.columns[size_t(column)].numeric);
                fields.push_back({valid ? &row[size_t(column)] : nullptr, numeric});
            }
            entries.push_back({EncodeIndexKey(fields, rowid), {}});
        }
        std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.key < b.key; });
        BuildTree(pages, object.root, entries);
    }

    std::vector<Entry> schema;
    int32_t schemaRowid = 0;
    for (const SchemaObject& object : objects) {
        bool automatic = object.type == "index" && object.name.compare(0, 17, "sqlite_autoindex_") == 0;
        Row row{object.type, FileIndexName(object), object.table, std::to_string(object.root),
                automatic || !object.hasSql ? Value(std::nullopt) : Value(object.sql)};
        schema.push_back({EncodeRowidKey(++schemaRowid), EncodeRecord(row)});
    }
    BuildTree(pages, 2, schema);

    // The schema cookie changes whenever the schema rows do, so that other
    // connections re-read them.
    std::vector<Entry> oldSchema;
    std::string ignored;
    bool schemaSame = !image->IsEmptyDatabase() && image->ReadTree(2, oldSchema, ignored) &&
                      oldSchema.size() == schema.size() &&
                      std::equal(schema.begin(), schema.end(), oldSchema.begin(), [](const Entry& a, const Entry& b) {
                          return a.key == b.key && a.data == b.data;
                      });
    uint8_t* first = pages.Page(1);
    if (image->PageCount())
        memcpy(first + 60, image->Page(1) + 60, 36); // keep the meta values
    memcpy(first, magicText, sizeof magicText);
    order.Put32(first + 48, magicInteger);
    order.Put32(first + 52, 0);
    order.Put32(first + 56, 0);
    uint32_t cookie = image->PageCount() ? image->Meta(60) : 0;
    if (!schemaSame || cookie == 0)
        cookie = cookie + 1 == 0 ? 1 : cookie + 1;
    order.Put32(first + 60, cookie);
    order.Put32(first + 64, 4);
    rebuilt = pages.Bytes();
    return true;
}

} // namespace sqlite2
