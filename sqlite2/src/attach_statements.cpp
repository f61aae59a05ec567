// ATTACH and DETACH of other 2.x files, as 2.8 has them: the file's tables
// (and views) become those of the schema it is attached as; unqualified
// names find the main file's first. Files 2.8 refuses are refused in its
// words, and no file is made or changed by a refused ATTACH.
#include "attach_statements.h"

#include "database.h"
#include "format.h"
#include "sql_tokens.h"
#include "table_module.h"

#include <strings.h>
#include <vector>

namespace sqlite2 {

namespace {

Status Exec(sqlite3* connection, const std::string& sql)
{
    char* error = nullptr;
    if (sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, &error) == SQLITE_OK)
        return Status::Ok();
    Status status{kError, error ? error : "unknown error"};
    sqlite3_free(error);
    return status;
}

// The view's statement with the view's name put in the attached schema.
std::string InSchema(const std::string& schema, std::string_view statement)
{
    const std::vector<Token> tokens = Tokenize(statement);
    if (tokens.size() < 3)
        return std::string(statement);
    return std::string(statement.substr(0, tokens[2].begin)) + QuoteName(schema) + "." +
           std::string(statement.substr(tokens[2].begin));
}

} // namespace

std::string AttachedModuleName(const std::string& name)
{
    return "sqlite2_attached_" + name;
}

Status Database::RunAttachStatement(std::string_view sql, bool& handled)
{
    std::vector<Token> tokens = Tokenize(sql);
    handled = !tokens.empty() && (IsWord(sql, tokens[0], "ATTACH") || IsWord(sql, tokens[0], "DETACH"));
    if (!handled)
        return Status::Ok();
    while (tokens.size() > 1 && IsPunct(sql, tokens.back(), ';'))
        tokens.pop_back();
    const size_t at = tokens.size() > 1 && IsWord(sql, tokens[1], "DATABASE") ? 2 : 1;
    if (IsWord(sql, tokens[0], "DETACH"))
        return at < tokens.size() ? Detach(DequotedName(sql, tokens[at]))
                                  : SyntaxErrorNear(TokenText(sql, tokens.back()));
    // ATTACH [DATABASE] 'file' AS name
    if (at + 2 >= tokens.size() || !IsWord(sql, tokens[at + 1], "AS"))
        return SyntaxErrorNear(TokenText(sql, tokens.back()));
    return Attach(Dequote(TokenText(sql, tokens[at])), DequotedName(sql, tokens[at + 2]));
}

Status Database::Attach(const std::string& path, const std::string& name)
{
    bool taken = strcasecmp(name.c_str(), "main") == 0 || strcasecmp(name.c_str(), "temp") == 0;
    for (const AttachedFile& other : attached)
        taken |= strcasecmp(other.name.c_str(), name.c_str()) == 0;
    if (taken)
        return {kError, "database " + name + " is already in use"};
    switch (ReadFileStart(path)) {
    case FileStart::Missing:
    case FileStart::Empty:
        return {kError, "cannot attach empty database: " + name};
    case FileStart::ShortSqlite2:
    case FileStart::Other:
        return {kNotADatabase, message::notADatabase};
    case FileStart::Sqlite2:
        break;
    }
    // Two pagers of one process on one file would share, and so lose, each
    // other's POSIX locks.
    bool open = pager.IsSameFile(path);
    for (const AttachedFile& other : attached)
        open |= other.file->pager.IsSameFile(path);
    if (open)
        return {kError, "cannot attach " + path + ": the file is already open in this connection"};
    auto file = std::make_unique<Database>();
    file->owner = this;
    if (Status status = file->Open(path); !status)
        return status;
    if (Status status = Exec(connection, "ATTACH ':memory:' AS " + QuoteName(name)); !status)
        return status;
    if (!AddFileModule(connection, file.get(), AttachedModuleName(name))) {
        (void)Exec(connection, "DETACH " + QuoteName(name));
        return Status::NoMemory();
    }
    attached.push_back({name, std::move(file), 0});
    DeclareSchema(); // the main file's tables now go first
    // The statement that attaches holds no lock on the new file yet.
    if (Status status = attached.back().file->StartStatement(); !status)
        return status;
    return DeclareAttached(attached.size() - 1);
}

Status Database::Detach(const std::string& name)
{
    for (size_t a = 0; a < attached.size(); ++a) {
        if (strcasecmp(attached[a].name.c_str(), name.c_str()) != 0)
            continue;
        if (Status status = Exec(connection, "DETACH " + QuoteName(attached[a].name)); !status)
            return status;
        RemoveTableModule(connection, AttachedModuleName(attached[a].name));
        attached.erase(attached.begin() + ptrdiff_t(a));
        return Status::Ok();
    }
    return {kError, "no such database: " + name};
}

// The attached schema is made anew: its tables as virtual tables of the
// file's module, its views with their statements, sqlite_master read-only.
Status Database::DeclareAttached(size_t index)
{
    AttachedFile& entry = attached[index];
    Database& file = *entry.file;
    const std::string schema = QuoteName(entry.name);
    const std::string module = AttachedModuleName(entry.name);
    for (const std::string kind : {"view", "table"}) {
        std::vector<std::string> names;
        sqlite3_stmt* list = nullptr;
        const std::string query = "SELECT name FROM " + schema + ".sqlite_master WHERE type='" + kind + "'";
        if (sqlite3_prepare_v2(connection, query.c_str(), -1, &list, nullptr) == SQLITE_OK)
            while (sqlite3_step(list) == SQLITE_ROW)
                names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(list, 0)));
        sqlite3_finalize(list);
        for (const std::string& old : names)
            (void)Exec(connection, "DROP " + std::string(kind == "view" ? "VIEW " : "TABLE ") + schema +
                                       "." + QuoteName(old));
    }
    (void)Exec(connection, DeclareTableStatement(entry.name, kSchemaTableName, module));
    Schema& tables = file.CurrentSchema();
    for (const SchemaRow& row : tables.rows)
        if (row.type == "table" && tables.FindTable(row.name))
            (void)Exec(connection, DeclareTableStatement(entry.name, row.name, module));
    // Like 2.8, a view whose statement does not work is left out.
    for (const SchemaRow& row : tables.rows)
        if (row.type == "view" && row.sql)
            (void)Exec(connection, InSchema(entry.name, Sqlite3Text(*row.sql)));
    entry.declaredGeneration = file.SchemaGeneration();
    return Status::Ok();
}

Status Database::StartAttachedStatements()
{
    for (size_t a = 0; a < attached.size(); ++a) {
        Database& file = *attached[a].file;
        if (Status status = file.StartStatement(); !status)
            return status;
        if (file.SchemaGeneration() != attached[a].declaredGeneration)
            if (Status status = DeclareAttached(a); !status)
                return status;
    }
    return Status::Ok();
}

// release: the running statement's savepoint in each file is let go.
void Database::EndAttachedStatements(bool release)
{
    const bool idle = activeStatements == 0 && sqlite3_get_autocommit(connection);
    for (AttachedFile& entry : attached) {
        Database& file = *entry.file;
        if (release && file.statementStart >= 0 && file.pager.IsWriting())
            file.pager.Release(file.statementStart);
        if (release)
            file.statementStart = -1;
        if (!idle)
            continue;
        if (file.pager.IsWriting())
            (void)file.CommitWrite();
        file.pager.EndRead();
    }
}

} // namespace sqlite2
