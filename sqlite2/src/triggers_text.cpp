#include "triggers_text.h"

#include <cstring>
#include <strings.h>

namespace sqlite2::trigger_text {

bool IsWord(std::string_view sql, const Token& token, const char* word)
{
    return token.kind == 'w' && token.end - token.begin == strlen(word) &&
           strncasecmp(sql.data() + token.begin, word, token.end - token.begin) == 0;
}

bool IsPunct(std::string_view sql, const Token& token, char c)
{
    return token.kind == 'p' && sql[token.begin] == c;
}

bool IsName(const Token& token)
{
    return token.kind == 'w' || token.kind == 'q';
}

std::string Dequoted(std::string_view sql, const Token& token)
{
    std::string_view text = Text(sql, token);
    if (token.kind != 'q' || text.size() < 2)
        return std::string(text);
    const char closing = text[0] == '[' ? ']' : text[0];
    std::string name;
    for (size_t i = 1; i + 1 < text.size(); ++i) {
        name.push_back(text[i]);
        if (text[i] == closing && closing != ']' && i + 2 < text.size() && text[i + 1] == closing)
            ++i;
    }
    return name;
}

bool NameIs(std::string_view sql, const Token& token, const char* word)
{
    return IsName(token) && strcasecmp(Dequoted(sql, token).c_str(), word) == 0;
}

std::string StringLiteral(std::string_view text)
{
    std::string literal = "'";
    for (char c : text) {
        literal.push_back(c);
        if (c == '\'')
            literal.push_back('\'');
    }
    return literal + "'";
}

} // namespace sqlite2::trigger_text
