#include "triggers_rewrite.h"

#include "triggers_text.h"

#include <cctype>
#include <strings.h>

namespace sqlite2 {

namespace {

using namespace trigger_text;

// The column x of NEW.x / OLD.x: a column of the table first, then the
// rowid's three names; -2 when there is no such column.
int ColumnIndex(const std::vector<std::string>& columns, const std::string& name)
{
    for (size_t c = 0; c < columns.size(); ++c)
        if (strcasecmp(columns[c].c_str(), name.c_str()) == 0)
            return int(c);
    for (const char* rowid : {"rowid", "oid", "_rowid_"})
        if (strcasecmp(name.c_str(), rowid) == 0)
            return -1;
    return -2;
}

class Rewriter {
public:
    Rewriter(std::string_view sql, const PseudoRows& rows, RewrittenStatement& out)
        : sql(sql), tokens(Tokenize(sql)), rows(rows), out(out)
    {
    }

    bool Run(std::string& error)
    {
        out = RewrittenStatement();
        size_t copied = 0; // source text up to here is already in out.sql
        for (size_t i = 0; i < tokens.size(); ++i) {
            size_t last = i;
            std::string replacement;
            if (IsReference(i)) {
                if (!Reference(i, replacement, error))
                    return false;
                last = i + 2;
            } else if (!Raise(i, replacement, last)) {
                continue;
            }
            out.sql.append(sql.substr(copied, tokens[i].begin - copied));
            out.sql.append(replacement);
            copied = tokens[last].end;
            i = last;
        }
        out.sql.append(sql.substr(copied));
        return true;
    }

private:
    // NEW . x or OLD . x, not itself the tail of a qualified name.
    bool IsReference(size_t i) const
    {
        return i + 2 < tokens.size() && (NameIs(sql, tokens[i], "new") || NameIs(sql, tokens[i], "old")) &&
               IsPunct(sql, tokens[i + 1], '.') && IsName(tokens[i + 2]) &&
               !(i > 0 && IsPunct(sql, tokens[i - 1], '.'));
    }

    bool Reference(size_t i, std::string& replacement, std::string& error)
    {
        const bool isNew = NameIs(sql, tokens[i], "new");
        const std::string row = DequotedName(sql, tokens[i]);
        const std::string name = DequotedName(sql, tokens[i + 2]);
        const int column = ColumnIndex(*rows.columns, name);
        if (column == -2 || !(isNew ? rows.hasNew : rows.hasOld)) {
            error = "no such column: " + row + "." + name;
            return false;
        }
        out.parameters.push_back({isNew, column});
        replacement.assign(1, '?');
        replacement += std::to_string(out.parameters.size());
        return true;
    }

    // RAISE ( IGNORE ) or RAISE ( ABORT|FAIL|ROLLBACK , message ); the
    // message is a name or a string in 2.8's grammar. Anything else is left
    // for SQLite 3 to refuse.
    bool Raise(size_t i, std::string& replacement, size_t& last) const
    {
        if (!IsWord(sql, tokens[i], "RAISE") || i + 3 >= tokens.size() || !IsPunct(sql, tokens[i + 1], '('))
            return false;
        const Token& kind = tokens[i + 2];
        std::string message;
        if (IsWord(sql, kind, "IGNORE") && IsPunct(sql, tokens[i + 3], ')')) {
            last = i + 3;
        } else if ((IsWord(sql, kind, "ABORT") || IsWord(sql, kind, "FAIL") || IsWord(sql, kind, "ROLLBACK")) &&
                   i + 5 < tokens.size() && IsPunct(sql, tokens[i + 3], ',') && IsName(tokens[i + 4]) &&
                   IsPunct(sql, tokens[i + 5], ')')) {
            message = DequotedName(sql, tokens[i + 4]);
            last = i + 5;
        } else {
            return false;
        }
        std::string kindWord(TokenText(sql, kind));
        for (char& c : kindWord)
            c = char(toupper(static_cast<unsigned char>(c)));
        replacement = std::string(kRaiseFunction) + "(" + StringLiteral(kindWord) + ", " + StringLiteral(message) + ")";
        return true;
    }

    std::string_view sql;
    std::vector<Token> tokens;
    const PseudoRows& rows;
    RewrittenStatement& out;
};

} // namespace

Status RewriteTriggerStatement(std::string_view sql, const PseudoRows& rows, RewrittenStatement& out)
{
    std::string error;
    if (Rewriter(sql, rows, out).Run(error))
        return Status::Ok();
    return {kError, error};
}

} // namespace sqlite2
