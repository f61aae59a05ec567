#include "Sqlite2Dump.h"

#include "index_key.h"

#include <stdexcept>

std::vector<std::vector<std::string>> Query(sqlite* db, const std::string& sql)
{
    std::vector<std::vector<std::string>> rows;
    sqlite_vm* vm = nullptr;
    char* error = nullptr;
    if (sqlite_compile(db, sql.c_str(), nullptr, &vm, &error) != SQLITE_OK) {
        std::string message = error ? error : "";
        sqlite_freemem(error);
        throw std::runtime_error(sql + ": " + message);
    }
    int columns = 0;
    const char** values = nullptr;
    const char** names = nullptr;
    while (sqlite_step(vm, &columns, &values, &names) == SQLITE_ROW) {
        std::vector<std::string> row;
        for (int c = 0; c < columns; ++c)
            row.push_back(values[c] ? values[c] : "NULL");
        rows.push_back(row);
    }
    sqlite_finalize(vm, nullptr);
    return rows;
}

namespace {

std::string Join(const std::vector<std::string>& values)
{
    std::string line;
    for (size_t i = 0; i < values.size(); ++i)
        line += (i ? "|" : "") + values[i];
    return line;
}

std::string DumpValue(const char* value)
{
    if (!value)
        return "NULL";
    if (sqlite2::PassesNumberTest(value))
        return value;
    std::string quoted = "'";
    for (const char* p = value; *p; ++p) {
        quoted.push_back(*p);
        if (*p == '\'')
            quoted.push_back('\'');
    }
    return quoted + "'";
}

} // namespace

std::string TableRows(sqlite* db)
{
    std::string text;
    for (const auto& table : Query(db, "SELECT name FROM sqlite_master WHERE type='table' ORDER BY rowid")) {
        text += "== " + table[0] + "\n";
        for (const auto& row : Query(db, "SELECT rowid, * FROM \"" + table[0] + "\" ORDER BY rowid"))
            text += Join(row) + "\n";
    }
    return text;
}

std::string Dump(sqlite* db)
{
    std::string text = "BEGIN TRANSACTION;\n";
    auto objects = Query(db, "SELECT name, type, sql FROM sqlite_master WHERE sql NOT NULL "
                             "ORDER BY substr(type,2,1), name");
    for (const auto& object : objects) {
        text += object[2] + ";\n";
        if (object[1] != "table")
            continue;
        sqlite_vm* vm = nullptr;
        std::string select = "SELECT * FROM \"" + object[0] + "\" ORDER BY rowid";
        if (sqlite_compile(db, select.c_str(), nullptr, &vm, nullptr) != SQLITE_OK)
            continue;
        int columns = 0;
        const char** values = nullptr;
        while (sqlite_step(vm, &columns, &values, nullptr) == SQLITE_ROW) {
            text += "INSERT INTO " + object[0] + " VALUES(";
            for (int c = 0; c < columns; ++c)
                text += (c ? "," : "") + DumpValue(values[c]);
            text += ");\n";
        }
        sqlite_finalize(vm, nullptr);
    }
    return text + "COMMIT;\n";
}
