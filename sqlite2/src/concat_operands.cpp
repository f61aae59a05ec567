#include "concat_operands.h"

#include "sql_tokens.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

namespace sqlite2 {

namespace {

constexpr size_t kNone = size_t(-1);

// A change to the text: [begin, end) becomes text (begin == end inserts).
// Among changes at one place, lower order goes first: an operand's closing
// parenthesis before another's opening one, an outer opening before an
// inner one.
struct Edit {
    size_t begin;
    size_t end;
    int order;
    std::string text;
};

// Words after which an expression starts: a '-' or '+' following one of them
// is a sign, not a subtraction or addition.
bool StartsExpression(std::string_view word)
{
    static const char* const words[] = {"SELECT", "WHERE", "AND",   "OR",   "NOT",    "WHEN",   "THEN",   "ELSE",
                                        "BY",     "SET",   "IS",    "LIKE", "GLOB",   "BETWEEN", "IN",    "CASE",
                                        "ON",     "HAVING", "VALUES", "DISTINCT", "ALL", "LIMIT", "OFFSET", "ESCAPE",
                                        "RETURN"};
    for (const char* w : words)
        if (word == w)
            return true;
    return false;
}

class ConcatRewriter {
public:
    explicit ConcatRewriter(std::string_view sql) : sql(sql), tokens(Tokenize(sql)) {}

    std::string Rewrite()
    {
        for (size_t i = 0; i + 1 < tokens.size(); ++i) {
            if (!IsConcat(i))
                continue;
            const size_t leftFirst = i > 0 ? LeftOperandStart(i - 1) : kNone;
            if (leftFirst != kNone)
                Join(leftFirst, i - 1);
            const size_t rightLast = i + 2 < tokens.size() ? RightOperandEnd(i + 2) : kNone;
            if (rightLast != kNone)
                Join(i + 2, rightLast);
            ++i;
        }
        return Apply();
    }

private:
    bool Punct(size_t i, char c) const { return i < tokens.size() && IsPunct(sql, tokens[i], c); }
    bool IsSign(size_t i) const { return Punct(i, '-') || Punct(i, '+') || Punct(i, '~'); }
    bool IsName(size_t i) const { return tokens[i].kind == 'w' || tokens[i].kind == 'q'; }
    // ?1, :name or @name: a parameter is its mark and the word or number after it.
    bool IsParameterMark(size_t i) const
    {
        return (Punct(i, '?') || Punct(i, ':') || Punct(i, '@')) && i + 1 < tokens.size() &&
               tokens[i].end == tokens[i + 1].begin && tokens[i + 1].kind != 'p';
    }

    bool IsConcat(size_t i) const { return Punct(i, '|') && Punct(i + 1, '|') && tokens[i].end == tokens[i + 1].begin; }

    // True when token i can be the last of an operand, so that a '-' after
    // it is a subtraction.
    bool EndsOperand(size_t i) const
    {
        if (tokens[i].kind == 'n' || tokens[i].kind == 'q' || Punct(i, ')'))
            return true;
        return tokens[i].kind == 'w' && !StartsExpression(Word(sql, tokens, i));
    }

    size_t MatchingOpen(size_t close) const
    {
        int depth = 0;
        for (size_t i = close + 1; i-- > 0;) {
            depth += Punct(i, ')') ? 1 : Punct(i, '(') ? -1 : 0;
            if (depth == 0)
                return i;
        }
        return kNone;
    }

    size_t MatchingClose(size_t open) const
    {
        int depth = 0;
        for (size_t i = open; i < tokens.size(); ++i) {
            depth += Punct(i, '(') ? 1 : Punct(i, ')') ? -1 : 0;
            if (depth == 0)
                return i;
        }
        return kNone;
    }

    // CASE ... END, nested ones counted; walking back from END or on from CASE.
    size_t MatchingCase(size_t at, int step) const
    {
        int depth = 0;
        for (size_t i = at; i < tokens.size(); i += size_t(step)) {
            const std::string word = Word(sql, tokens, i);
            depth += word == "CASE" ? step : word == "END" ? -step : 0;
            if (depth == 0)
                return i;
            if (i == 0 && step < 0)
                break;
        }
        return kNone;
    }

    // The first token of the operand that ends at token last.
    size_t LeftOperandStart(size_t last) const
    {
        if (last >= 2 && IsWord(sql, tokens[last - 1], "COLLATE"))
            last -= 2;
        size_t first = last;
        if (Punct(last, ')')) {
            first = MatchingOpen(last);
            if (first != kNone && first > 0 && tokens[first - 1].kind == 'w' &&
                !StartsExpression(Word(sql, tokens, first - 1)))
                --first; // a function's name, CAST or EXISTS
        } else if (IsWord(sql, tokens[last], "END")) {
            first = MatchingCase(last, -1);
        } else if (first > 0 && IsParameterMark(first - 1)) {
            --first;
        } else if (IsName(last)) {
            while (first >= 2 && Punct(first - 1, '.') && IsName(first - 2))
                first -= 2;
        }
        while (first != kNone && first > 0 && IsSign(first - 1) && (first == 1 || !EndsOperand(first - 2)))
            --first;
        return first;
    }

    // The last token of the operand that starts at token first.
    size_t RightOperandEnd(size_t first) const
    {
        size_t i = first;
        while (i < tokens.size() && IsSign(i))
            ++i;
        if (i >= tokens.size())
            return kNone;
        size_t last = i;
        if (Punct(i, '(')) {
            last = MatchingClose(i);
        } else if (IsParameterMark(i)) {
            last = i + 1;
        } else if (IsWord(sql, tokens[i], "CASE")) {
            last = MatchingCase(i, 1);
        } else if (IsName(i)) {
            while (Punct(last + 1, '.') && last + 2 < tokens.size() && IsName(last + 2))
                last += 2;
            if (Punct(last + 1, '('))
                last = MatchingClose(last + 1);
        }
        if (last != kNone && last + 2 < tokens.size() && IsWord(sql, tokens[last + 1], "COLLATE"))
            last += 2;
        return last;
    }

    // Tokens [first, last] are one operand of ||.
    void Join(size_t first, size_t last)
    {
        if (!operands.insert({first, last}).second)
            return;
        const Token& number = tokens[last];
        const bool signedNumber = last == first + 1 && (Punct(first, '-') || Punct(first, '+'));
        if (number.kind == 'n' && (last == first || signedNumber)) {
            std::string text = "'";
            if (Punct(first, '-'))
                text.push_back('-');
            text.append(TokenText(sql, number));
            text.push_back('\'');
            edits.push_back({tokens[first].begin, number.end, 2, std::move(text)});
            return;
        }
        // Outer operands span more tokens: their opening goes first.
        const int span = int(last - first);
        edits.push_back({tokens[first].begin, tokens[first].begin, 1 - span, std::string(kConcatTextFunction) + "("});
        edits.push_back({tokens[last].end, tokens[last].end, -1000000 + span, ")"});
    }

    std::string Apply()
    {
        if (edits.empty())
            return std::string(sql);
        std::sort(edits.begin(), edits.end(), [](const Edit& a, const Edit& b) {
            return a.begin != b.begin ? a.begin < b.begin : a.order < b.order;
        });
        std::string result;
        size_t copied = 0;
        for (const Edit& edit : edits) {
            result.append(sql.substr(copied, edit.begin - copied));
            result.append(edit.text);
            copied = edit.end;
        }
        result.append(sql.substr(copied));
        return result;
    }

    std::string_view sql;
    std::vector<Token> tokens;
    std::set<std::pair<size_t, size_t>> operands;
    std::vector<Edit> edits;
};

} // namespace

std::string WithConcatAs28(std::string_view statement)
{
    if (statement.find("||") == std::string_view::npos)
        return std::string(statement);
    return ConcatRewriter(statement).Rewrite();
}

} // namespace sqlite2
