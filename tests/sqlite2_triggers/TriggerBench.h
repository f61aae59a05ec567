#pragma once

// A plain SQLite 3 connection whose ordinary tables stand in for a 2.x
// file's tables, with a trigger runner on it. Insert/Update/Delete change a
// row the way a 2.x table's xUpdate does: BEFORE triggers, the change, AFTER
// triggers. The SQL function write_row('table', v1, v2, ...) does the same
// from inside a trigger body, so programs can nest.
#include "triggers.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

class TriggerBench {
public:
    TriggerBench();
    ~TriggerBench();
    TriggerBench(const TriggerBench&) = delete;
    TriggerBench& operator=(const TriggerBench&) = delete;

    // Creates the table on the connection; numeric says which columns are of 2.x's numeric class.
    void AddTable(const std::string& name, std::vector<std::string> columns, std::vector<bool> numeric);
    // Parses the CREATE TRIGGER texts (failing the test on a bad one) and hands them to the runner, in this order.
    void SetTriggers(const std::vector<std::string>& texts);

    void Exec(const std::string& sql);
    // The first column of every row; NULL shows as "NULL".
    std::vector<std::string> Column(const std::string& sql);

    sqlite2::Status Insert(const std::string& table, int64_t rowid, const sqlite2::Row& row, bool* ignored = nullptr);
    // An UPDATE whose SET list names every column.
    sqlite2::Status Update(const std::string& table, int64_t rowid, const sqlite2::Row& row, bool* ignored = nullptr,
                           int64_t newRowid = -1);
    // An UPDATE whose SET list names the columns marked in `set`.
    sqlite2::Status UpdateSetting(const std::string& table, int64_t rowid, const sqlite2::Row& row,
                                  const std::vector<bool>& set, bool* ignored = nullptr, int64_t newRowid = -1);
    sqlite2::Status Delete(const std::string& table, int64_t rowid, bool* ignored = nullptr);

    sqlite3* Connection() const { return connection; }
    sqlite2::TriggerRunner& Runner() { return *runner; }
    const sqlite2::TriggerTable& Table(const std::string& name) const { return tables.at(name); }

private:
    static void WriteRow(sqlite3_context* context, int count, sqlite3_value** arguments);
    sqlite2::Row Read(const std::string& table, int64_t rowid);
    void Store(const std::string& table, int64_t rowid, const sqlite2::Row& row);

    sqlite3* connection = nullptr;
    std::unique_ptr<sqlite2::TriggerRunner> runner;
    std::map<std::string, sqlite2::TriggerTable> tables;
};
