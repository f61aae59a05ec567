#include "sql_tokens.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <strings.h>

namespace sqlite2 {

namespace {

// The text between two quote characters, each one inside it doubled.
std::string Quoted(std::string_view text, char quote)
{
    std::string quoted(1, quote);
    for (char c : text) {
        quoted.push_back(c);
        if (c == quote)
            quoted.push_back(quote);
    }
    quoted.push_back(quote);
    return quoted;
}

bool IsWordByte(unsigned char c)
{
    return isalnum(c) || c == '_' || c == '$' || c >= 0x80;
}

// A number: digits with an optional fraction and exponent ("1.50", ".5", "1e3").
size_t NumberEnd(std::string_view sql, size_t i)
{
    auto digits = [&](size_t j) {
        while (j < sql.size() && isdigit(uint8_t(sql[j])))
            ++j;
        return j;
    };
    size_t j = digits(i);
    if (j < sql.size() && sql[j] == '.')
        j = digits(j + 1);
    if (j < sql.size() && (sql[j] == 'e' || sql[j] == 'E')) {
        size_t k = j + 1;
        if (k < sql.size() && (sql[k] == '+' || sql[k] == '-'))
            ++k;
        if (k < sql.size() && isdigit(uint8_t(sql[k])))
            j = digits(k);
    }
    return j;
}

// Where the blank or comment at i ends; i itself when none starts there.
size_t SkipEnd(std::string_view sql, size_t i)
{
    if (isspace(uint8_t(sql[i])))
        return i + 1;
    if (sql.substr(i, 2) == "--") {
        while (i < sql.size() && sql[i] != '\n')
            ++i;
        return i;
    }
    if (sql.substr(i, 2) == "/*") {
        size_t close = sql.find("*/", i + 2);
        return close == std::string_view::npos ? sql.size() : close + 2;
    }
    return i;
}

// A quoted name or string starting at i; a doubled quote inside (not for
// [x]) stands for one. Unterminated, it runs to the end of the text.
Token QuotedToken(std::string_view sql, size_t i)
{
    const char closing = sql[i] == '[' ? ']' : sql[i];
    size_t j = i + 1;
    while (j < sql.size()) {
        if (sql[j] == closing) {
            if (closing == ']' || j + 1 >= sql.size() || sql[j + 1] != closing)
                break;
            ++j;
        }
        ++j;
    }
    return {i, std::min(j + 1, sql.size()), 'q'};
}

size_t WordEnd(std::string_view sql, size_t j)
{
    while (j < sql.size() && IsWordByte(uint8_t(sql[j])))
        ++j;
    return j;
}

bool StartsNumber(std::string_view sql, size_t i)
{
    return isdigit(uint8_t(sql[i])) || (sql[i] == '.' && i + 1 < sql.size() && isdigit(uint8_t(sql[i + 1])));
}

Token NumberToken(std::string_view sql, size_t i)
{
    size_t j = NumberEnd(sql, i);
    // "0x1F" or "12abc" is no plain number: one word.
    if (j < sql.size() && IsWordByte(uint8_t(sql[j])))
        return {i, WordEnd(sql, j), 'w'};
    return {i, j, 'n'};
}

bool IsQuote(char c)
{
    return c == '\'' || c == '"' || c == '`' || c == '[';
}

// The token starting at i, which is no blank and no comment.
Token NextToken(std::string_view sql, size_t i)
{
    if (IsQuote(sql[i]))
        return QuotedToken(sql, i);
    if (StartsNumber(sql, i))
        return NumberToken(sql, i);
    if (IsWordByte(uint8_t(sql[i])))
        return {i, WordEnd(sql, i), 'w'};
    return {i, i + 1, 'p'};
}

} // namespace

std::vector<Token> Tokenize(std::string_view sql)
{
    std::vector<Token> tokens;
    size_t i = 0;
    while (i < sql.size()) {
        if (size_t skipped = SkipEnd(sql, i); skipped != i) {
            i = skipped;
            continue;
        }
        tokens.push_back(NextToken(sql, i));
        i = tokens.back().end;
    }
    return tokens;
}

bool IsWord(std::string_view sql, const Token& token, const char* word)
{
    return token.kind == 'w' && token.end - token.begin == strlen(word) &&
           strncasecmp(sql.data() + token.begin, word, token.end - token.begin) == 0;
}

bool IsPunct(std::string_view sql, const Token& token, char c)
{
    return token.kind == 'p' && sql[token.begin] == c;
}

std::string Word(std::string_view sql, const std::vector<Token>& tokens, size_t i)
{
    if (i >= tokens.size() || tokens[i].kind != 'w')
        return {};
    std::string word(TokenText(sql, tokens[i]));
    for (char& c : word)
        c = char(toupper(uint8_t(c)));
    return word;
}

std::string Dequote(std::string_view text)
{
    if (text.size() >= 2 && (text[0] == '\'' || text[0] == '"' || text[0] == '`' || text[0] == '[')) {
        char closing = text[0] == '[' ? ']' : text[0];
        std::string result;
        for (size_t i = 1; i + 1 < text.size(); ++i) {
            result.push_back(text[i]);
            if (text[i] == closing && closing != ']' && i + 2 < text.size() && text[i + 1] == closing)
                ++i;
        }
        return result;
    }
    return std::string(text);
}

std::string QuoteName(const std::string& name)
{
    return Quoted(name, '"');
}

std::string StringLiteral(std::string_view text)
{
    return Quoted(text, '\'');
}

} // namespace sqlite2
