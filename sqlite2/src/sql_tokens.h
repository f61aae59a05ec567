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

// A name between double quotes, inner quotes doubled.
std::string QuoteName(const std::string& name);

} // namespace sqlite2
