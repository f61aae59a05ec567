#include "schema.h"

#include "sql_tokens.h"

#include <cctype>
#include <strings.h>

namespace sqlite2 {

namespace {

bool IsUniqueIndexText(std::string_view sql)
{
    std::vector<Token> tokens = Tokenize(sql);
    return tokens.size() > 1 && IsWord(sql, tokens[1], "UNIQUE");
}

// "(T autoindex N)" names the N-th automatic index of table T.
int AutomaticIndexNumber(const std::string& name, const std::string& table)
{
    const std::string prefix = "(" + table + " autoindex ";
    if (name.size() <= prefix.size() + 1 || strncasecmp(name.c_str(), prefix.c_str(), prefix.size()) != 0 ||
        name.back() != ')')
        return 0;
    return atoi(name.c_str() + prefix.size());
}

bool ReadRow(std::string_view key, std::string_view data, SchemaRow& row)
{
    Row fields;
    if (key.size() != 4 || !DecodeRecord(data, fields) || fields.size() < 5 || !fields[3])
        return false;
    row.rowid = DecodeRowidKey(key);
    row.type = fields[0].value_or("");
    row.name = fields[1].value_or("");
    row.table = fields[2].value_or("");
    row.root = uint32_t(strtoul(fields[3]->c_str(), nullptr, 10));
    row.sql = fields[4];
    return true;
}

// Every row of sqlite_master (page 2), in rowid order.
Status ReadRows(BTree& tree, std::vector<SchemaRow>& rows)
{
    Cursor cursor(tree, 2);
    Status status = cursor.First();
    for (; status && cursor.Valid(); status = cursor.Next()) {
        std::string key, data;
        if (Status read = cursor.Key(key); !read)
            return read;
        if (Status read = cursor.Data(data); !read)
            return read;
        SchemaRow row;
        if (!ReadRow(key, data, row))
            return {kCorrupt, "malformed database schema"};
        rows.push_back(row);
    }
    return status;
}

void AddTable(Schema& schema, const SchemaRow& row)
{
    TableSchema table{row.name, row.root, *row.sql, {}, {}};
    if (ParseTableDefinition(*row.sql, table.info))
        schema.tables[Lower(row.name)] = std::move(table);
}

// A CREATE INDEX text: its columns must all be columns of the table.
bool ReadExplicitIndex(const std::string& sql, const TableSchema& table, IndexSchema& index)
{
    std::vector<std::string> names;
    if (!ParseCreateIndexColumns(sql, names) || !IndexColumns(table.info, names, index.columns))
        return false;
    index.unique = IsUniqueIndexText(sql);
    return true;
}

// An index without text: one the table's constraints imply, by its number.
bool ReadAutomaticIndex(const std::string& name, const TableSchema& table, IndexSchema& index)
{
    int number = AutomaticIndexNumber(name, table.name);
    if (number < 1 || size_t(number) > table.info.automaticIndexes.size())
        return false;
    index.columns = table.info.automaticIndexes[size_t(number) - 1];
    index.conflict = table.info.automaticIndexConflicts[size_t(number) - 1];
    index.unique = true;
    return true;
}

void AddIndex(Schema& schema, const SchemaRow& row)
{
    TableSchema* table = schema.FindTable(row.table);
    if (!table)
        return;
    IndexSchema index{row.name, table->name, row.root, {}, false, Conflict::Default};
    const bool read = row.sql ? ReadExplicitIndex(*row.sql, *table, index) : ReadAutomaticIndex(row.name, *table, index);
    if (read)
        table->indexes.push_back(std::move(index));
}

void AddTrigger(Schema& schema, const SchemaRow& row)
{
    TriggerDefinition trigger;
    if (ParseCreateTrigger(*row.sql, trigger)) {
        schema.triggers.push_back(std::move(trigger));
        schema.triggerRows.push_back(row);
    }
}

// One row of sqlite_master into the schema; a row that does not load is left
// out (an index finds only the tables of earlier rows).
void AddRow(Schema& schema, const SchemaRow& row)
{
    if (row.type == "table" && row.sql)
        AddTable(schema, row);
    else if (row.type == "index")
        AddIndex(schema, row);
    else if (row.type == "view" && row.sql)
        schema.views.push_back(row);
    else if (row.type == "trigger" && row.sql)
        AddTrigger(schema, row);
}

} // namespace

std::string Lower(std::string text)
{
    for (char& c : text)
        c = char(tolower(uint8_t(c)));
    return text;
}

bool IndexColumns(const TableInfo& info, const std::vector<std::string>& names, std::vector<int>& columns)
{
    columns.clear();
    for (const std::string& name : names) {
        int found = -2;
        for (size_t c = 0; c < info.columns.size(); ++c)
            if (strcasecmp(info.columns[c].name.c_str(), name.c_str()) == 0)
                found = int(c);
        if (found == -2)
            return false;
        columns.push_back(found);
    }
    return true;
}

Status Schema::Load(BTree& tree)
{
    *this = Schema();
    if (tree.IsEmpty())
        return Status::Ok();
    if (Status status = ReadRows(tree, rows); !status)
        return status;
    for (const SchemaRow& row : rows)
        AddRow(*this, row);
    return Status::Ok();
}

TableSchema* Schema::FindTable(const std::string& name)
{
    auto found = tables.find(Lower(name));
    return found == tables.end() ? nullptr : &found->second;
}

const IndexSchema* Schema::FindIndex(const std::string& name, const TableSchema** owner) const
{
    for (const auto& [key, table] : tables)
        for (const IndexSchema& index : table.indexes)
            if (strcasecmp(index.name.c_str(), name.c_str()) == 0) {
                if (owner)
                    *owner = &table;
                return &index;
            }
    return nullptr;
}

} // namespace sqlite2
