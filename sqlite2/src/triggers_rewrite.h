#pragma once

// How a trigger program's statement is made runnable on SQLite 3 (private
// to the trigger runner).
#include "status.h"

#include <string>
#include <string_view>
#include <vector>

namespace sqlite2 {

// The SQL function RAISE(...) becomes: sqlite2_raise('ABORT', 'message').
inline constexpr const char* kRaiseFunction = "sqlite2_raise";

// Where a parameter of a rewritten statement takes its value from.
struct RowReference {
    bool isNew = false;
    int column = -1; // -1: the rowid
};

struct RewrittenStatement {
    std::string sql;
    std::vector<RowReference> parameters; // parameter n is parameters[n - 1]
};

// Which pseudo rows a trigger's program may name, and their columns.
struct PseudoRows {
    const std::vector<std::string>* columns = nullptr;
    bool hasOld = false;
    bool hasNew = false;
};

// Replaces every NEW.x / OLD.x (names in any case, possibly quoted; x may
// also be rowid, oid or _rowid_ unless a column has that name) by a
// parameter, and every RAISE(kind[, message]) by the raise function. An
// error with 2.8's "no such column: NEW.x" for a column the table lacks or a
// row the event does not have (OLD in an INSERT trigger, NEW in a DELETE one).
Status RewriteTriggerStatement(std::string_view sql, const PseudoRows& rows, RewrittenStatement& out);

} // namespace sqlite2
