#pragma once

#include "format.h"
#include "status.h"

#include <map>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <string_view>
#include <vector>

namespace sqlite2 {

// A CREATE TRIGGER text of a 2.x file, taken apart.
struct TriggerDefinition {
    enum class Timing { Before, After, InsteadOf };
    enum class Event { Insert, Update, Delete };

    std::string name;
    std::string table;                      // the table (or view) it is on, dequoted
    Timing timing = Timing::Before;
    Event event = Event::Insert;
    std::vector<std::string> updateColumns; // UPDATE OF a, b (dequoted); empty: any
    std::string when;                       // the WHEN expression's text; empty: always
    std::vector<std::string> statements;    // the body's statements, without their ';'
    bool forEachRow = true;                 // false: FOR EACH STATEMENT, which 2.8 accepts but never fires
};

// An error, with a message in 2.8's words, for a text that is not a CREATE
// TRIGGER 2.8 would accept.
Status ParseCreateTrigger(std::string_view sql, TriggerDefinition& trigger);

// What a trigger program sees of one row: the column names of its table,
// which of them hold numbers (2.x's numeric class), and the values.
struct TriggerRow {
    int64_t rowid = 0;
    const Row* values = nullptr;
    // The new row of an UPDATE: which columns its SET list names (2.8 fires
    // UPDATE OF a for SET a=a too, and not when a changes without being set).
    const std::vector<bool>* assigned = nullptr;
};
struct TriggerTable {
    std::string name;
    std::vector<std::string> columns;
    std::vector<bool> numeric;
};

// How a RAISE() in a trigger program ended the statement.
enum class RaiseKind { None, Ignore, Abort, Fail, Rollback };

// Runs the trigger programs of a 2.x file's tables, row by row, on the
// SQLite 3 connection where the statement runs (the trigger bodies reach the
// same tables). Triggers on views are left to SQLite 3 itself.
//
// A body statement or WHEN clause is run with every NEW.x / OLD.x (and
// NEW.rowid / OLD.rowid) replaced by the row's value, and RAISE(...) by a
// function of the connection that ends the program. A trigger does not fire
// again while it is running (2.8 has no recursive triggers).
class TriggerRunner {
public:
    // Registers the RAISE function on the connection.
    explicit TriggerRunner(sqlite3* connection);
    ~TriggerRunner();
    TriggerRunner(const TriggerRunner&) = delete;
    TriggerRunner& operator=(const TriggerRunner&) = delete;

    // The schema's triggers (replaced as a whole when the schema is read).
    void SetTriggers(std::vector<TriggerDefinition> triggers);
    bool HasTriggers(const std::string& table) const;

    // Fires, in 2.8's order, every trigger on table.name for this event and
    // timing whose WHEN clause holds (for UPDATE OF, when one of its columns
    // changed). oldRow is null for INSERT, newRow for DELETE. On RAISE(IGNORE)
    // ignoreRow is set and the rest of this row's triggers are skipped; on
    // RAISE(ABORT|FAIL|ROLLBACK, message) or a failing body statement, the
    // error comes back (kConstraint with the RAISE message) and LastRaise()
    // says which.
    Status Fire(const TriggerTable& table, TriggerDefinition::Timing timing, TriggerDefinition::Event event,
                const TriggerRow* oldRow, const TriggerRow* newRow, bool& ignoreRow);
    RaiseKind LastRaise() const { return lastRaise; }

private:
    struct Program;
    static void RaiseFunction(sqlite3_context* context, int count, sqlite3_value** arguments);
    bool Fires(const TriggerDefinition& trigger, const TriggerTable& table, TriggerDefinition::Event event) const;
    Status PrepareAll(const TriggerTable& table, TriggerDefinition::Event event);
    Status Prepare(size_t index, const TriggerTable& table);
    Status RunProgram(const Program& program, const TriggerTable& table, const TriggerRow* oldRow,
                      const TriggerRow* newRow, bool& ignoreRow);
    Status Execute(sqlite3_stmt* statement, bool* result, bool& ignoreRow);

    sqlite3* connection;
    std::vector<TriggerDefinition> triggers;
    std::vector<std::unique_ptr<Program>> programs; // by trigger; prepared on first use
    std::vector<const TriggerDefinition*> running;
    RaiseKind lastRaise = RaiseKind::None;
    RaiseKind pendingRaise = RaiseKind::None; // what the raise function recorded last
    std::string pendingMessage;
};

} // namespace sqlite2
