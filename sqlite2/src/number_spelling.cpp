#include "number_spelling.h"

#include "sql_tokens.h"

#include <cstring>
#include <strings.h>
#include <utility>
#include <vector>

namespace sqlite2 {

namespace {

struct Replacement {
    size_t begin;
    size_t end;
    std::string text;
};

class Spelling {
public:
    explicit Spelling(std::string_view sql) : sql(sql), tokens(Tokenize(sql)) {}

    std::string Rewrite()
    {
        if (tokens.empty())
            return std::string(sql);
        if (IsWordAt(0, "INSERT") || IsWordAt(0, "REPLACE"))
            InsertValues();
        else if (IsWordAt(0, "UPDATE"))
            UpdateAssignments();
        std::string result(sql);
        for (auto r = replacements.rbegin(); r != replacements.rend(); ++r)
            result.replace(r->begin, r->end - r->begin, r->text);
        return result;
    }

private:
    bool IsWordAt(size_t i, const char* word) const { return IsWord(sql, tokens[i], word); }
    bool IsPunctAt(size_t i, char c) const { return IsPunct(sql, tokens[i], c); }

    // An item [first, last) that is a number with at most a sign becomes a text.
    void Item(size_t first, size_t last)
    {
        if (last == first + 1 && tokens[first].kind == 'n') {
            Quote(first, first, "");
        } else if (last == first + 2 && tokens[first + 1].kind == 'n' &&
                   (IsPunctAt(first, '-') || IsPunctAt(first, '+'))) {
            Quote(first, first + 1, IsPunctAt(first, '-') ? "-" : "");
        }
    }

    void Quote(size_t from, size_t number, const char* sign)
    {
        const Token& n = tokens[number];
        std::string text = "'";
        text.append(sign);
        text.append(sql.substr(n.begin, n.end - n.begin));
        text.push_back('\'');
        replacements.push_back({tokens[from].begin, n.end, std::move(text)});
    }

    // INSERT ... VALUES (a, b), (c, d): every item of every row.
    void InsertValues()
    {
        size_t i = 0;
        int depth = 0;
        for (; i < tokens.size(); ++i) {
            if (IsPunctAt(i, '('))
                ++depth;
            else if (IsPunctAt(i, ')'))
                --depth;
            else if (depth == 0 && IsWordAt(i, "VALUES"))
                break;
        }
        for (++i; i < tokens.size() && IsPunctAt(i, '(');) {
            size_t itemStart = i + 1;
            depth = 0;
            size_t j = i + 1;
            for (; j < tokens.size(); ++j) {
                if (IsPunctAt(j, '(')) {
                    ++depth;
                } else if (IsPunctAt(j, ')')) {
                    if (depth-- == 0)
                        break;
                } else if (depth == 0 && IsPunctAt(j, ',')) {
                    Item(itemStart, j);
                    itemStart = j + 1;
                }
            }
            if (j >= tokens.size())
                return;
            Item(itemStart, j);
            i = j + 1;
            if (i < tokens.size() && IsPunctAt(i, ','))
                ++i;
        }
    }

    // UPDATE t SET a = 1.50, b = x + 1 WHERE ...: every value that stands alone.
    void UpdateAssignments()
    {
        size_t i = 0;
        while (i < tokens.size() && !IsWordAt(i, "SET"))
            ++i;
        size_t valueStart = 0;
        int depth = 0;
        for (++i; i < tokens.size(); ++i) {
            if (IsPunctAt(i, '(')) {
                ++depth;
            } else if (IsPunctAt(i, ')')) {
                --depth;
            } else if (depth == 0 && IsPunctAt(i, '=') && valueStart == 0) {
                valueStart = i + 1;
            } else if (depth == 0 && (IsPunctAt(i, ',') || IsWordAt(i, "WHERE") || IsPunctAt(i, ';'))) {
                if (valueStart)
                    Item(valueStart, i);
                valueStart = 0;
                if (!IsPunctAt(i, ','))
                    return;
            }
        }
        if (valueStart)
            Item(valueStart, tokens.size());
    }

    std::string_view sql;
    std::vector<Token> tokens;
    std::vector<Replacement> replacements;
};

} // namespace

std::string KeepNumberSpelling(std::string_view statement)
{
    return Spelling(statement).Rewrite();
}

} // namespace sqlite2
