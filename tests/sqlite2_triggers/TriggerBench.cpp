#include "TriggerBench.h"

#include "sql_tokens.h"
#include "value_rules.h"

#include <gtest/gtest.h>

using namespace sqlite2;
using Timing = TriggerDefinition::Timing;
using Event = TriggerDefinition::Event;

TriggerBench::TriggerBench()
{
    EXPECT_EQ(sqlite3_open(":memory:", &connection), SQLITE_OK);
    // Trigger programs are evaluated with 2.8's rules, as on a database's connection.
    Install28Rules(connection);
    runner = std::make_unique<TriggerRunner>(connection);
    sqlite3_create_function_v2(connection, "write_row", -1, SQLITE_UTF8, this, WriteRow, nullptr, nullptr, nullptr);
}

TriggerBench::~TriggerBench()
{
    runner.reset();
    sqlite3_close(connection);
}

void TriggerBench::AddTable(const std::string& name, std::vector<std::string> columns, std::vector<bool> numeric)
{
    std::string sql = "CREATE TABLE " + QuoteName(name) + "(";
    for (size_t c = 0; c < columns.size(); ++c)
        sql += (c ? ", " : "") + QuoteName(columns[c]);
    Exec(sql + ")");
    tables[name] = TriggerTable{name, std::move(columns), std::move(numeric)};
}

void TriggerBench::SetTriggers(const std::vector<std::string>& texts)
{
    std::vector<TriggerDefinition> triggers;
    for (const std::string& text : texts) {
        TriggerDefinition trigger;
        const Status status = ParseCreateTrigger(text, trigger);
        EXPECT_TRUE(status.ok()) << text << ": " << status.Message();
        triggers.push_back(std::move(trigger));
    }
    runner->SetTriggers(std::move(triggers));
}

void TriggerBench::Exec(const std::string& sql)
{
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, &error), SQLITE_OK)
        << sql << ": " << (error ? error : "");
    sqlite3_free(error);
}

std::vector<std::string> TriggerBench::Column(const std::string& sql)
{
    std::vector<std::string> values;
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(connection, sql.c_str(), -1, &statement, nullptr), SQLITE_OK) << sql;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        const unsigned char* text = sqlite3_column_text(statement, 0);
        values.push_back(text ? reinterpret_cast<const char*>(text) : "NULL");
    }
    sqlite3_finalize(statement);
    return values;
}

Row TriggerBench::Read(const std::string& table, int64_t rowid)
{
    const TriggerTable& info = tables.at(table);
    Row row;
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(connection, ("SELECT * FROM " + QuoteName(table) + " WHERE rowid = ?").c_str(), -1,
                       &statement, nullptr);
    sqlite3_bind_int64(statement, 1, rowid);
    if (sqlite3_step(statement) == SQLITE_ROW)
        for (size_t c = 0; c < info.columns.size(); ++c) {
            const unsigned char* text = sqlite3_column_text(statement, int(c));
            row.push_back(text ? Value(reinterpret_cast<const char*>(text)) : std::nullopt);
        }
    sqlite3_finalize(statement);
    return row;
}

// Stored as texts, as a 2.x file holds every value.
void TriggerBench::Store(const std::string& table, int64_t rowid, const Row& row)
{
    const TriggerTable& info = tables.at(table);
    std::string names = "rowid", marks = "?";
    for (const std::string& column : info.columns) {
        names += ", " + QuoteName(column);
        marks += ", ?";
    }
    const std::string sql = "INSERT OR REPLACE INTO " + QuoteName(table) + "(" + names + ") VALUES(" + marks + ")";
    sqlite3_stmt* statement = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(connection, sql.c_str(), -1, &statement, nullptr), SQLITE_OK) << sql;
    sqlite3_bind_int64(statement, 1, rowid);
    for (size_t c = 0; c < row.size() && c < info.columns.size(); ++c)
        if (row[c])
            sqlite3_bind_text(statement, int(c + 2), row[c]->c_str(), -1, SQLITE_TRANSIENT);
    EXPECT_EQ(sqlite3_step(statement), SQLITE_DONE) << sqlite3_errmsg(connection);
    sqlite3_finalize(statement);
}

Status TriggerBench::Insert(const std::string& table, int64_t rowid, const Row& row, bool* ignored)
{
    const TriggerTable& info = tables.at(table);
    TriggerRow after{rowid, &row};
    bool ignore = false;
    Status status = runner->Fire(info, Timing::Before, Event::Insert, nullptr, &after, ignore);
    if (ignored)
        *ignored = ignore;
    if (!status || ignore)
        return status;
    Store(table, rowid, row);
    return runner->Fire(info, Timing::After, Event::Insert, nullptr, &after, ignore);
}

Status TriggerBench::Update(const std::string& table, int64_t rowid, const Row& row, bool* ignored, int64_t newRowid)
{
    return UpdateSetting(table, rowid, row, std::vector<bool>(tables.at(table).columns.size(), true), ignored,
                         newRowid);
}

Status TriggerBench::UpdateSetting(const std::string& table, int64_t rowid, const Row& row,
                                   const std::vector<bool>& set, bool* ignored, int64_t newRowid)
{
    const TriggerTable& info = tables.at(table);
    const Row old = Read(table, rowid);
    TriggerRow before{rowid, &old}, after{newRowid < 0 ? rowid : newRowid, &row, &set};
    bool ignore = false;
    Status status = runner->Fire(info, Timing::Before, Event::Update, &before, &after, ignore);
    if (ignored)
        *ignored = ignore;
    if (!status || ignore)
        return status;
    Exec("DELETE FROM " + QuoteName(table) + " WHERE rowid = " + std::to_string(rowid));
    Store(table, after.rowid, row);
    return runner->Fire(info, Timing::After, Event::Update, &before, &after, ignore);
}

Status TriggerBench::Delete(const std::string& table, int64_t rowid, bool* ignored)
{
    const TriggerTable& info = tables.at(table);
    const Row old = Read(table, rowid);
    TriggerRow before{rowid, &old};
    bool ignore = false;
    Status status = runner->Fire(info, Timing::Before, Event::Delete, &before, nullptr, ignore);
    if (ignored)
        *ignored = ignore;
    if (!status || ignore)
        return status;
    Exec("DELETE FROM " + QuoteName(table) + " WHERE rowid = " + std::to_string(rowid));
    return runner->Fire(info, Timing::After, Event::Delete, &before, nullptr, ignore);
}

// write_row('table', v1, ...): a new row at the end of the table, failing
// the calling statement with the runner's message as an xUpdate would.
void TriggerBench::WriteRow(sqlite3_context* context, int count, sqlite3_value** arguments)
{
    auto* bench = static_cast<TriggerBench*>(sqlite3_user_data(context));
    const std::string table = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));
    Row row;
    for (int i = 1; i < count; ++i) {
        const unsigned char* text = sqlite3_value_text(arguments[i]);
        row.push_back(text ? Value(reinterpret_cast<const char*>(text)) : std::nullopt);
    }
    const std::vector<std::string> last = bench->Column("SELECT ifnull(max(rowid), 0) FROM " + QuoteName(table));
    Status status = bench->Insert(table, std::stoll(last.at(0)) + 1, row);
    if (!status)
        sqlite3_result_error(context, status.Message().c_str(), -1);
}
