// ParseCreateTrigger: the CREATE TRIGGER grammar of SQLite 2.8.
#include "triggers.h"
#include "triggers_text.h"

namespace sqlite2 {

namespace {

using namespace trigger_text;

// Walks the tokens of one CREATE TRIGGER text. A failure names the token
// 2.8's parser stopped at; at the end of the text that is the last token,
// since 2.8 reports a missing part "near" what it read last.
class TriggerParser {
public:
    TriggerParser(std::string_view sql, TriggerDefinition& trigger)
        : sql(sql), tokens(Tokenize(sql)), trigger(trigger)
    {
    }

    bool Parse()
    {
        return Head() && Timing() && Event() && Target() && ForEach() && When() && Body() && Tail();
    }

    Status Error() const
    {
        if (tokens.empty())
            return SyntaxErrorNear(""); // nothing at all to point at
        const Token& at = failedAt < tokens.size() ? tokens[failedAt] : tokens.back();
        return SyntaxErrorNear(TokenText(sql, at));
    }

private:
    bool AtEnd() const { return i >= tokens.size(); }
    bool Word(const char* word) const { return !AtEnd() && IsWord(sql, tokens[i], word); }
    bool Punct(char c) const { return !AtEnd() && IsPunct(sql, tokens[i], c); }
    bool Fail()
    {
        failedAt = i;
        return false;
    }
    bool Expect(const char* word)
    {
        if (!Word(word))
            return Fail();
        ++i;
        return true;
    }
    bool Name(std::string& name)
    {
        if (AtEnd() || !IsName(tokens[i]))
            return Fail();
        name = DequotedName(sql, tokens[i++]);
        return true;
    }

    // CREATE [TEMP|TEMPORARY] TRIGGER name: the name is never qualified in 2.8.
    bool Head()
    {
        if (!Expect("CREATE"))
            return false;
        if (Word("TEMP") || Word("TEMPORARY"))
            ++i;
        return Expect("TRIGGER") && Name(trigger.name);
    }

    // The timing is optional (BEFORE when left out).
    bool Timing()
    {
        if (Word("BEFORE")) {
            ++i;
        } else if (Word("AFTER")) {
            trigger.timing = TriggerDefinition::Timing::After;
            ++i;
        } else if (Word("INSTEAD")) {
            ++i;
            if (!Expect("OF"))
                return false;
            trigger.timing = TriggerDefinition::Timing::InsteadOf;
        }
        return true;
    }

    bool Event()
    {
        if (Word("INSERT")) {
            trigger.event = TriggerDefinition::Event::Insert;
        } else if (Word("DELETE")) {
            trigger.event = TriggerDefinition::Event::Delete;
        } else if (Word("UPDATE")) {
            trigger.event = TriggerDefinition::Event::Update;
            if (i + 1 < tokens.size() && IsWord(sql, tokens[i + 1], "OF")) {
                i += 2;
                return UpdateColumns();
            }
        } else {
            return Fail();
        }
        ++i;
        return true;
    }

    bool UpdateColumns()
    {
        for (;;) {
            if (Word("ON"))
                return Fail();
            std::string column;
            if (!Name(column))
                return false;
            trigger.updateColumns.push_back(std::move(column));
            if (!Punct(','))
                return true;
            ++i;
        }
    }

    // ON [database.]table
    bool Target()
    {
        if (!Expect("ON") || !Name(trigger.table))
            return false;
        if (Punct('.')) {
            ++i;
            return Name(trigger.table);
        }
        return true;
    }

    // FOR EACH ROW | FOR EACH STATEMENT (accepted, but never run by 2.8).
    bool ForEach()
    {
        if (!Word("FOR"))
            return true;
        ++i;
        if (!Expect("EACH"))
            return false;
        if (Word("STATEMENT"))
            trigger.forEachRow = false;
        else if (!Word("ROW"))
            return Fail();
        ++i;
        return true;
    }

    // Moves on to the first token outside parentheses that stop accepts, or
    // to the end.
    template <typename Stop>
    void SkipToOutsideParentheses(Stop stop)
    {
        for (int depth = 0; !AtEnd(); ++i) {
            if (Punct('('))
                ++depth;
            else if (Punct(')'))
                --depth;
            else if (depth <= 0 && stop())
                break;
        }
    }

    // WHEN expr: the expression runs to the first BEGIN outside parentheses.
    // 2.8 reads a BEGIN right after WHEN as a name in the expression, so
    // what it trips over is the token after it.
    bool When()
    {
        if (!Word("WHEN"))
            return true;
        const size_t first = ++i;
        SkipToOutsideParentheses([this] { return Word("BEGIN"); });
        if (AtEnd())
            return Fail();
        if (i == first) {
            ++i;
            return Fail();
        }
        trigger.when = std::string(sql.substr(tokens[first].begin, tokens[i - 1].end - tokens[first].begin));
        return true;
    }

    // BEGIN stmt; ... END: only INSERT, UPDATE, DELETE, SELECT (and
    // REPLACE) may be in the body, each closed by its ';'.
    bool Body()
    {
        if (!Expect("BEGIN"))
            return false;
        while (!Word("END")) {
            if (!(Word("INSERT") || Word("UPDATE") || Word("DELETE") || Word("SELECT") || Word("REPLACE")))
                return Fail();
            if (!Statement())
                return false;
        }
        ++i;
        return true;
    }

    bool Statement()
    {
        const size_t first = i;
        SkipToOutsideParentheses([this] { return Punct(';'); });
        if (AtEnd())
            return Fail();
        trigger.statements.emplace_back(sql.substr(tokens[first].begin, tokens[i - 1].end - tokens[first].begin));
        ++i;
        return true;
    }

    // After END: at most the closing ';'.
    bool Tail()
    {
        if (Punct(';'))
            ++i;
        return AtEnd() || Fail();
    }

    std::string_view sql;
    std::vector<Token> tokens;
    TriggerDefinition& trigger;
    size_t i = 0;
    size_t failedAt = 0;
};

} // namespace

Status ParseCreateTrigger(std::string_view sql, TriggerDefinition& trigger)
{
    trigger = TriggerDefinition();
    TriggerParser parser(sql, trigger);
    if (parser.Parse())
        return Status::Ok();
    return parser.Error();
}

} // namespace sqlite2
