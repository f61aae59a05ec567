// CREATE and DROP of the objects of a 2.x file: the schema rows and trees
// are written the way 2.8 writes them, and SQLite 3 is told of the change.
#include "database.h"

#include "statement_text.h"
#include "table_module.h"
#include "table_rows.h"
#include "table_vtab.h"

#include <strings.h>

namespace sqlite2 {

namespace {

bool SameName(const std::string& a, const std::string& b)
{
    return strcasecmp(a.c_str(), b.c_str()) == 0;
}

Status AddSchemaRow(BTree& tree, const std::string& type, const std::string& name, const std::string& table,
                    uint32_t root, const Value& sql)
{
    TableRows rows(tree, SchemaTable());
    int32_t rowid = 0;
    if (Status status = rows.NewRowid(rowid); !status)
        return status;
    Row row{type, name, table, std::to_string(root), sql};
    return rows.Insert(rowid, row);
}

Status RemoveSchemaRows(BTree& tree, const std::vector<int32_t>& rowids)
{
    TableRows rows(tree, SchemaTable());
    for (int32_t rowid : rowids)
        if (Status status = rows.Delete(rowid); !status)
            return status;
    return Status::Ok();
}

// The error SQLite 3 gives for a statement it cannot even prepare (syntax,
// "already exists"), or Ok.
Status CheckWithSqlite3(sqlite3* connection, std::string_view statement)
{
    sqlite3_stmt* prepared = nullptr;
    const std::string text(statement);
    int rc = sqlite3_prepare_v2(connection, text.c_str(), -1, &prepared, nullptr);
    sqlite3_finalize(prepared);
    return rc == SQLITE_OK ? Status::Ok() : Status(kError, sqlite3_errmsg(connection));
}

bool NameTaken(const Schema& schema, const std::string& name)
{
    for (const SchemaRow& row : schema.rows)
        if (SameName(row.name, name))
            return true;
    return false;
}

} // namespace

// Runs a change of the schema in the write transaction (its own one
// outside BEGIN ... COMMIT), with the schema cookie moved on so that every
// connection reads the schema again, and the file format marked 4.
Status Database::WriteSchemaChange(const std::function<Status()>& change)
{
    if (Status status = BeginWrite(); !status)
        return status;
    Status status = change();
    if (status)
        status = tree->SetMeta(60, tree->Meta(60) + 1);
    if (status)
        status = tree->SetMeta(64, 4);
    if (!status) {
        if (sqlite3_get_autocommit(connection))
            RollbackWrite();
        return status;
    }
    if (sqlite3_get_autocommit(connection))
        status = CommitWrite();
    schemaLoaded = false;
    if (Status refreshed = RefreshSchema(); !refreshed && status)
        status = refreshed;
    return status;
}

Status Database::RunSchemaStatement(std::string_view sql, bool& handled)
{
    const std::vector<Token> tokens = Tokenize(sql);
    const std::string verb = Word(sql, tokens, 0);
    size_t i = 1;
    handled = false;
    if (verb != "CREATE" && verb != "DROP")
        return Status::Ok();
    const std::string second = Word(sql, tokens, 1);
    if (second == "TEMP" || second == "TEMPORARY")
        return Status::Ok(); // temporary objects live on the SQLite 3 side only
    bool unique = false;
    if (verb == "CREATE" && second == "UNIQUE") {
        unique = true;
        ++i;
    }
    const std::string kind = Word(sql, tokens, i++);
    if (kind != "TABLE" && kind != "INDEX" && kind != "VIEW" && kind != "TRIGGER")
        return Status::Ok();
    handled = true;
    if (verb == "DROP") {
        bool ifExists = false;
        if (Word(sql, tokens, i) == "IF" && Word(sql, tokens, i + 1) == "EXISTS") {
            ifExists = true;
            i += 2;
        }
        if (i >= tokens.size())
            return SyntaxErrorNear(kind);
        return DropObject(kind, DequotedName(sql, tokens[i]), ifExists);
    }
    const std::string_view body = StatementBody(sql);
    if (kind == "TABLE")
        return CreateTable(body);
    if (kind == "INDEX")
        return CreateIndex(body, unique);
    if (kind == "VIEW")
        return CreateView(body);
    return CreateTrigger(body);
}

Status Database::CreateTable(std::string_view body)
{
    if (Status status = CheckWithSqlite3(connection, WithSchemaTableName(body, kSchemaTableName)); !status)
        return status;
    TableInfo info;
    const std::vector<Token> tokens = Tokenize(body);
    size_t nameAt = 2;
    if (!ParseTableDefinition(body, info) || tokens.size() <= nameAt)
        return {kError, "CREATE TABLE ... AS SELECT is not supported for 2.x files"};
    const std::string name = DequotedName(body, tokens[nameAt]);
    if (NameTaken(schema, name))
        return {kError, "table " + name + " already exists"};
    const std::string stored(body.substr(0, info.storedLength));
    return WriteSchemaChange([&]() -> Status {
        // 2.8 allocates the automatic indexes' roots before the table's.
        std::vector<uint32_t> indexRoots(info.automaticIndexes.size());
        for (uint32_t& root : indexRoots)
            if (Status status = tree->CreateTree(root); !status)
                return status;
        uint32_t root = 0;
        if (Status status = tree->CreateTree(root); !status)
            return status;
        if (Status status = AddSchemaRow(*tree, "table", name, name, root, stored); !status)
            return status;
        for (size_t n = 0; n < indexRoots.size(); ++n) {
            const std::string indexName = "(" + name + " autoindex " + std::to_string(n + 1) + ")";
            if (Status status = AddSchemaRow(*tree, "index", indexName, name, indexRoots[n], std::nullopt); !status)
                return status;
        }
        return Status::Ok();
    });
}

Status Database::CreateIndex(std::string_view body, bool unique)
{
    const std::vector<Token> tokens = Tokenize(body);
    size_t i = unique ? 3 : 2;
    if (i + 2 >= tokens.size() || Word(body, tokens, i + 1) != "ON")
        return SyntaxErrorNear(body.substr(tokens.back().begin));
    const std::string name = DequotedName(body, tokens[i]);
    size_t at = i + 2;
    if (at + 2 < tokens.size() && IsPunct(body, tokens[at + 1], '.'))
        at += 2;
    const std::string tableName = DequotedName(body, tokens[at]);
    TableSchema* table = schema.FindTable(tableName);
    if (!table)
        return Status::NoSuchTable(tableName);
    if (NameTaken(schema, name))
        return {kError, "index " + name + " already exists"};
    std::vector<std::string> names;
    IndexSchema index{name, table->name, 0, {}, unique, Conflict::Default};
    if (!ParseCreateIndexColumns(body, names))
        return SyntaxErrorNear(name);
    if (!IndexColumns(table->info, names, index.columns))
        return {kError, "table " + table->name + " has no column named " + names.front()};
    size_t close = body.rfind(')');
    const std::string stored(body.substr(0, close == std::string_view::npos ? body.size() : close + 1));
    return WriteSchemaChange([&]() -> Status {
        if (Status status = tree->CreateTree(index.root); !status)
            return status;
        TableSchema withIndex = *table;
        withIndex.indexes = {index};
        TableRows rows(*tree, withIndex);
        Cursor cursor(*tree, table->root);
        Cursor entries(*tree, index.root);
        Status status = cursor.First();
        for (; status && cursor.Valid(); status = cursor.Next()) {
            std::string key, data;
            if (!(status = cursor.Key(key)) || !(status = cursor.Data(data)))
                return status;
            Row row;
            const int32_t rowid = DecodeRowidKey(key);
            if (!RecordRow(table->info, data, rowid, row))
                return Status::Corrupt();
            if (unique) {
                const IndexSchema* duplicate = nullptr;
                int32_t holder = 0;
                if (!(status = rows.FindDuplicate(row, rowid, duplicate, holder)))
                    return status;
                if (duplicate)
                    return {kConstraint, "indexed columns are not unique"};
            }
            if (!(status = entries.Insert(RowIndexKey(table->info, index, row, rowid), {})))
                return status;
        }
        if (!status)
            return status;
        return AddSchemaRow(*tree, "index", name, table->name, index.root, stored);
    });
}

Status Database::CreateView(std::string_view body)
{
    const std::vector<Token> tokens = Tokenize(body);
    if (tokens.size() < 4)
        return SyntaxErrorNear("VIEW");
    const std::string name = DequotedName(body, tokens[2]);
    if (NameTaken(schema, name))
        return {kError, "table " + name + " already exists"};
    if (Status status = CheckWithSqlite3(connection, WithSchemaTableName(body, kSchemaTableName)); !status)
        return status;
    const std::string stored(body);
    return WriteSchemaChange([&] { return AddSchemaRow(*tree, "view", name, name, 0, stored); });
}

Status Database::CreateTrigger(std::string_view body)
{
    TriggerDefinition trigger;
    if (Status status = ParseCreateTrigger(body, trigger); !status)
        return status;
    if (NameTaken(schema, trigger.name))
        return {kError, "trigger " + trigger.name + " already exists"};
    bool onView = false;
    for (const SchemaRow& row : schema.views)
        onView |= SameName(row.name, trigger.table);
    const TableSchema* table = schema.FindTable(trigger.table);
    if (!table && !onView)
        return Status::NoSuchTable(trigger.table);
    if (onView && trigger.timing != TriggerDefinition::Timing::InsteadOf)
        return {kError, "cannot create " +
                            std::string(trigger.timing == TriggerDefinition::Timing::Before ? "BEFORE" : "AFTER") +
                            " trigger on view: " + trigger.table};
    const std::string stored(body);
    const std::string tableName = table ? table->name : trigger.table;
    return WriteSchemaChange([&] { return AddSchemaRow(*tree, "trigger", trigger.name, tableName, 0, stored); });
}

Status Database::DropObject(const std::string& kind, const std::string& name, bool ifExists)
{
    std::vector<int32_t> rowids;
    std::vector<uint32_t> trees;
    const SchemaRow* target = nullptr;
    const std::string type = kind == "TABLE" ? "table" : kind == "INDEX" ? "index" : kind == "VIEW" ? "view" : "trigger";
    for (const SchemaRow& row : schema.rows)
        if (row.type == type && SameName(row.name, name))
            target = &row;
    if (!target || (type == "index" && !target->sql)) {
        if (ifExists)
            return Status::Ok();
        if (target)
            return {kError, "index associated with UNIQUE or PRIMARY KEY constraint cannot be dropped"};
        return {kError, "no such " + type + ": " + name};
    }
    rowids.push_back(target->rowid);
    if (type == "table" || type == "index")
        trees.push_back(target->root);
    if (type == "table") {
        // The table's indexes and triggers go with it.
        for (const SchemaRow& row : schema.rows)
            if ((row.type == "index" || row.type == "trigger") && SameName(row.table, name)) {
                rowids.push_back(row.rowid);
                if (row.type == "index")
                    trees.push_back(row.root);
            }
    }
    return WriteSchemaChange([&]() -> Status {
        for (uint32_t root : trees)
            if (Status status = tree->DropTree(root); !status)
                return status;
        return RemoveSchemaRows(*tree, rowids);
    });
}

} // namespace sqlite2
