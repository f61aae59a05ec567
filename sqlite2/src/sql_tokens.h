#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sqlite2 {

// A token of an SQL text, by its place in the text.
struct Token {
    size_t begin = 0;
    size_t end = 0;
    char kind = 0; // 'w' word, 'q' quoted name or string, 'p' punctuation, 'n' number
};

// Splits SQL into tokens; blanks and comments are dropped.
std::vector<Token> Tokenize(std::string_view sql);

// The token's text as written.
inline std::string_view TokenText(std::string_view sql, const Token& token)
{
    return sql.substr(token.begin, token.end - token.begin);
}

// True for the word (any case), not for a quoted name spelled the same.
bool IsWord(std::string_view sql, const Token& token, const char* word);

// True for the one-character punctuation c.
bool IsPunct(std::string_view sql, const Token& token, char c);

// The word at token i upper-cased; empty past the end or for a non-word.
std::string Word(std::string_view sql, const std::vector<Token>& tokens, size_t i);

// The text of a quoted name or string without its quotes ('x', "x", [x],
// `x`; a doubled quote inside stands for one); other texts as they are.
std::string Dequote(std::string_view text);

// The name a word or quoted token stands for.
inline std::string DequotedName(std::string_view sql, const Token& token)
{
    return Dequote(sql.substr(token.begin, token.end - token.begin));
}

// A name between double quotes, inner quotes doubled.
std::string QuoteName(const std::string& name);

// A text as an SQL string literal, inner quotes doubled.
std::string StringLiteral(std::string_view text);

} // namespace sqlite2
