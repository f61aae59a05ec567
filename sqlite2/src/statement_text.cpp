#include "statement_text.h"

#include <cctype>
#include <strings.h>

namespace sqlite2 {

size_t StatementEnd(std::string_view sql)
{
    const std::vector<Token> tokens = Tokenize(sql);
    bool trigger = false;
    for (size_t i = 0; i < tokens.size() && i < 4; ++i)
        trigger |= Word(sql, tokens, i) == "TRIGGER";
    if (trigger && Word(sql, tokens, 0) == "CREATE") {
        for (size_t i = 0; i + 1 < tokens.size(); ++i)
            if (Word(sql, tokens, i) == "END" && IsPunct(sql, tokens[i + 1], ';'))
                return tokens[i + 1].end;
        return sql.size();
    }
    for (const Token& token : tokens)
        if (IsPunct(sql, token, ';'))
            return token.end;
    return sql.size();
}

std::string_view StatementBody(std::string_view statement)
{
    const std::vector<Token> tokens = Tokenize(statement);
    if (tokens.empty())
        return {};
    size_t last = tokens.size() - 1;
    if (IsPunct(statement, tokens[last], ';') && last > 0)
        --last;
    return statement.substr(tokens[0].begin, tokens[last].end - tokens[0].begin);
}

std::string WithSchemaTableName(std::string_view statement, const char* name)
{
    std::string result;
    size_t copied = 0;
    for (const Token& token : Tokenize(statement)) {
        if (token.kind != 'w' && token.kind != 'q')
            continue;
        if (token.kind == 'q' && statement[token.begin] == '\'')
            continue; // a string, not a name
        if (strcasecmp(DequotedName(statement, token).c_str(), "sqlite_master") != 0)
            continue;
        result.append(statement.substr(copied, token.begin - copied));
        result.append(name);
        copied = token.end;
    }
    if (copied == 0)
        return std::string(statement);
    result.append(statement.substr(copied));
    return result;
}

bool InsertTarget(std::string_view statement, std::string& table, std::vector<std::string>& columns)
{
    const std::vector<Token> tokens = Tokenize(statement);
    size_t i = 0;
    const std::string verb = Word(statement, tokens, i);
    if (verb != "INSERT" && verb != "REPLACE")
        return false;
    ++i;
    if (Word(statement, tokens, i) == "OR")
        i += 2;
    if (Word(statement, tokens, i) == "INTO")
        ++i;
    if (i >= tokens.size())
        return false;
    table = DequotedName(statement, tokens[i++]);
    if (i + 1 < tokens.size() && IsPunct(statement, tokens[i], '.')) {
        table = DequotedName(statement, tokens[i + 1]);
        i += 2;
    }
    columns.clear();
    if (i < tokens.size() && IsPunct(statement, tokens[i], '(')) {
        for (++i; i < tokens.size(); ++i) {
            if (tokens[i].kind == 'p') {
                if (statement[tokens[i].begin] == ')')
                    break;
                continue;
            }
            columns.push_back(DequotedName(statement, tokens[i]));
        }
    }
    return true;
}

} // namespace sqlite2
