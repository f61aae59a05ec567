#include "triggers.h"

#include "concat_operands.h"
#include "number_spelling.h"
#include "sql_tokens.h"
#include "triggers_rewrite.h"
#include "triggers_text.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <strings.h>

namespace sqlite2 {

namespace {

using Timing = TriggerDefinition::Timing;
using Event = TriggerDefinition::Event;

// One prepared statement of a trigger program and where its parameters
// take their values from.
struct PreparedStatement {
    sqlite3_stmt* handle = nullptr;
    std::vector<RowReference> parameters;

    PreparedStatement() = default;
    PreparedStatement(const PreparedStatement&) = delete;
    PreparedStatement& operator=(const PreparedStatement&) = delete;
    ~PreparedStatement() { sqlite3_finalize(handle); }
};

// A text that reads back the same when printed as the number it holds
// ("5", "-3", "2.5"), so binding it as a number loses nothing; "007",
// "1.50" or "1e3" stay texts, since a trigger that copies them must store
// them as they were written.
bool BindCanonicalNumber(sqlite3_stmt* statement, int index, const std::string& text)
{
    if (text.empty() || isspace(static_cast<unsigned char>(text[0])))
        return false;
    const char* begin = text.c_str();
    char* end = nullptr;
    errno = 0;
    const long long integer = strtoll(begin, &end, 10);
    if (errno == 0 && *end == '\0') {
        if (std::to_string(integer) != text)
            return false;
        sqlite3_bind_int64(statement, index, integer);
        return true;
    }
    const double real = strtod(begin, &end);
    if (*end != '\0' || !std::isfinite(real))
        return false;
    char printed[64];
    snprintf(printed, sizeof printed, "%.15g", real);
    if (text != printed)
        return false;
    sqlite3_bind_double(statement, index, real);
    return true;
}

void BindValue(sqlite3_stmt* statement, int index, const Value& value, bool numeric)
{
    if (!value)
        sqlite3_bind_null(statement, index);
    else if (!numeric || !BindCanonicalNumber(statement, index, *value))
        sqlite3_bind_text(statement, index, value->data(), int(value->size()), SQLITE_TRANSIENT);
}

void Bind(const PreparedStatement& statement, const TriggerTable& table, const TriggerRow* oldRow,
          const TriggerRow* newRow)
{
    for (size_t p = 0; p < statement.parameters.size(); ++p) {
        const RowReference& reference = statement.parameters[p];
        const TriggerRow* row = reference.isNew ? newRow : oldRow;
        const int index = int(p + 1);
        if (!row) {
            sqlite3_bind_null(statement.handle, index);
        } else if (reference.column < 0) {
            sqlite3_bind_int64(statement.handle, index, row->rowid);
        } else {
            const size_t column = size_t(reference.column);
            const bool numeric = column < table.numeric.size() && table.numeric[column];
            const bool present = row->values && column < row->values->size();
            BindValue(statement.handle, index, present ? (*row->values)[column] : Value(), numeric);
        }
    }
}

// Literals written in an INSERT or UPDATE keep their spelling in a 2.x file,
// inside a trigger as much as outside.
std::string Respelled(const std::string& statement)
{
    const std::vector<Token> tokens = Tokenize(statement);
    if (!tokens.empty() && (IsWord(statement, tokens[0], "INSERT") ||
                            IsWord(statement, tokens[0], "UPDATE") ||
                            IsWord(statement, tokens[0], "REPLACE")))
        return KeepNumberSpelling(statement);
    return statement;
}

Status PrepareOne(sqlite3* connection, const std::string& sql, const PseudoRows& rows,
                  std::unique_ptr<PreparedStatement>& out)
{
    RewrittenStatement rewritten;
    if (Status status = RewriteTriggerStatement(sql, rows, rewritten); !status)
        return status;
    out = std::make_unique<PreparedStatement>();
    out->parameters = std::move(rewritten.parameters);
    const std::string text = WithConcatAs28(rewritten.sql);
    if (sqlite3_prepare_v2(connection, text.c_str(), -1, &out->handle, nullptr) != SQLITE_OK) {
        Status status{kError, sqlite3_errmsg(connection)};
        out.reset();
        return status;
    }
    return Status::Ok();
}

// For UPDATE OF: whether the UPDATE's SET list names one of the columns.
bool NamedColumnSet(const TriggerDefinition& trigger, const TriggerTable& table, const TriggerRow* newRow)
{
    if (trigger.updateColumns.empty())
        return true;
    if (!newRow || !newRow->assigned)
        return false;
    const std::vector<bool>& set = *newRow->assigned;
    for (const std::string& name : trigger.updateColumns)
        for (size_t c = 0; c < table.columns.size() && c < set.size(); ++c)
            if (set[c] && strcasecmp(name.c_str(), table.columns[c].c_str()) == 0)
                return true;
    return false;
}

RaiseKind KindNamed(const unsigned char* word)
{
    const std::string kind = word ? reinterpret_cast<const char*>(word) : "";
    if (kind == "IGNORE")
        return RaiseKind::Ignore;
    if (kind == "FAIL")
        return RaiseKind::Fail;
    if (kind == "ROLLBACK")
        return RaiseKind::Rollback;
    return RaiseKind::Abort;
}

// The rowid SQLite 3 reports to the user is the statement's, not that of a
// row a trigger body inserted.
class LastRowidKeeper {
public:
    explicit LastRowidKeeper(sqlite3* connection)
        : connection(connection), rowid(sqlite3_last_insert_rowid(connection))
    {
    }
    ~LastRowidKeeper() { sqlite3_set_last_insert_rowid(connection, rowid); }
    LastRowidKeeper(const LastRowidKeeper&) = delete;
    LastRowidKeeper& operator=(const LastRowidKeeper&) = delete;

private:
    sqlite3* connection;
    sqlite3_int64 rowid;
};

} // namespace

// A trigger's WHEN clause and body, prepared for the columns of its table.
struct TriggerRunner::Program {
    std::vector<std::string> columns;
    std::unique_ptr<PreparedStatement> when; // null: no WHEN clause
    std::vector<std::unique_ptr<PreparedStatement>> statements;
};

TriggerRunner::TriggerRunner(sqlite3* connection) : connection(connection)
{
    sqlite3_create_function_v2(connection, kRaiseFunction, 2, SQLITE_UTF8, this, RaiseFunction, nullptr, nullptr,
                               nullptr);
}

TriggerRunner::~TriggerRunner()
{
    programs.clear();
    sqlite3_create_function_v2(connection, kRaiseFunction, 2, SQLITE_UTF8, nullptr, nullptr, nullptr, nullptr,
                               nullptr);
}

// Records what RAISE asked for and fails the statement that called it; the
// statement's runner (possibly several trigger levels up) reads the record.
void TriggerRunner::RaiseFunction(sqlite3_context* context, int, sqlite3_value** arguments)
{
    auto* runner = static_cast<TriggerRunner*>(sqlite3_user_data(context));
    if (runner->running.empty()) {
        sqlite3_result_error(context, "RAISE() may only be used within a trigger-program", -1);
        return;
    }
    runner->pendingRaise = KindNamed(sqlite3_value_text(arguments[0]));
    const unsigned char* message = sqlite3_value_text(arguments[1]);
    runner->pendingMessage = message ? reinterpret_cast<const char*>(message) : "";
    sqlite3_result_error(context, runner->pendingMessage.c_str(), -1);
}

void TriggerRunner::SetTriggers(std::vector<TriggerDefinition> definitions)
{
    triggers = std::move(definitions);
    programs.clear();
    programs.resize(triggers.size());
}

bool TriggerRunner::HasTriggers(const std::string& table) const
{
    return std::any_of(triggers.begin(), triggers.end(), [&](const TriggerDefinition& trigger) {
        return strcasecmp(trigger.table.c_str(), table.c_str()) == 0;
    });
}

// 2.8 never fires FOR EACH STATEMENT triggers, and the runner only serves
// tables (INSTEAD OF triggers are on views).
bool TriggerRunner::Fires(const TriggerDefinition& trigger, const TriggerTable& table, Event event) const
{
    return trigger.event == event && trigger.forEachRow && trigger.timing != Timing::InsteadOf &&
           strcasecmp(trigger.table.c_str(), table.name.c_str()) == 0;
}

Status TriggerRunner::Prepare(size_t index, const TriggerTable& table)
{
    std::unique_ptr<Program>& program = programs[index];
    if (program && program->columns == table.columns)
        return Status::Ok();
    const TriggerDefinition& trigger = triggers[index];
    auto prepared = std::make_unique<Program>();
    prepared->columns = table.columns;
    const PseudoRows rows{&table.columns, trigger.event != Event::Insert, trigger.event != Event::Delete};
    if (!trigger.when.empty())
        if (Status status = PrepareOne(connection, "SELECT CASE WHEN (" + trigger.when + ") THEN 1 ELSE 0 END", rows,
                                       prepared->when);
            !status)
            return status;
    for (const std::string& text : trigger.statements) {
        prepared->statements.emplace_back();
        if (Status status = PrepareOne(connection, Respelled(text), rows, prepared->statements.back()); !status)
            return status;
    }
    program = std::move(prepared);
    return Status::Ok();
}

// 2.8 compiles every trigger of the event along with the statement, so a
// broken program fails the statement before any row changes, whether or
// not its WHEN clause would hold.
Status TriggerRunner::PrepareAll(const TriggerTable& table, Event event)
{
    for (size_t t = 0; t < triggers.size(); ++t)
        if (Fires(triggers[t], table, event))
            if (Status status = Prepare(t, table); !status)
                return status;
    return Status::Ok();
}

// Steps a statement to its end (rows of a body's SELECT are dropped; the
// first row of a WHEN clause goes to result).
Status TriggerRunner::Execute(sqlite3_stmt* statement, bool* result, bool& ignoreRow)
{
    pendingRaise = RaiseKind::None;
    int rc;
    while ((rc = sqlite3_step(statement)) == SQLITE_ROW)
        if (result) {
            *result = sqlite3_column_int(statement, 0) != 0;
            result = nullptr;
        }
    Status status;
    if (rc != SQLITE_DONE) {
        if (pendingRaise == RaiseKind::Ignore) {
            // Consumed here: an IGNORE ends this row's triggers, not the
            // statements of the levels above.
            pendingRaise = RaiseKind::None;
            ignoreRow = true;
        } else if (pendingRaise != RaiseKind::None) {
            status = {kConstraint, pendingMessage};
        } else {
            status = {StatusCode(sqlite3_extended_errcode(connection) & 0xff), sqlite3_errmsg(connection)};
        }
        lastRaise = ignoreRow ? RaiseKind::Ignore : pendingRaise;
    }
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
    return status;
}

Status TriggerRunner::RunProgram(const Program& program, const TriggerTable& table, const TriggerRow* oldRow,
                                 const TriggerRow* newRow, bool& ignoreRow)
{
    if (program.when) {
        Bind(*program.when, table, oldRow, newRow);
        bool holds = false;
        if (Status status = Execute(program.when->handle, &holds, ignoreRow); !status || ignoreRow || !holds)
            return status;
    }
    for (const auto& statement : program.statements) {
        Bind(*statement, table, oldRow, newRow);
        if (Status status = Execute(statement->handle, nullptr, ignoreRow); !status || ignoreRow)
            return status;
    }
    return Status::Ok();
}

// Triggers fire newest first: 2.8 puts each trigger it reads from the
// schema (or creates) at the head of its table's list.
Status TriggerRunner::Fire(const TriggerTable& table, Timing timing, Event event, const TriggerRow* oldRow,
                           const TriggerRow* newRow, bool& ignoreRow)
{
    ignoreRow = false;
    lastRaise = RaiseKind::None;
    LastRowidKeeper keepRowid(connection);
    if (Status status = PrepareAll(table, event); !status)
        return status;
    for (size_t t = triggers.size(); t-- > 0;) {
        const TriggerDefinition& trigger = triggers[t];
        if (!Fires(trigger, table, event) || trigger.timing != timing ||
            std::find(running.begin(), running.end(), &trigger) != running.end() ||
            (event == Event::Update && !NamedColumnSet(trigger, table, newRow)))
            continue;
        running.push_back(&trigger);
        Status status = RunProgram(*programs[t], table, oldRow, newRow, ignoreRow);
        running.pop_back();
        if (!status || ignoreRow)
            return status;
    }
    lastRaise = RaiseKind::None;
    return Status::Ok();
}

} // namespace sqlite2
