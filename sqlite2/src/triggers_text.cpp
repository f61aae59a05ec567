#include "triggers_text.h"

#include <cstring>
#include <strings.h>

namespace sqlite2::trigger_text {

bool IsName(const Token& token)
{
    return token.kind == 'w' || token.kind == 'q';
}

bool NameIs(std::string_view sql, const Token& token, const char* word)
{
    return IsName(token) && strcasecmp(DequotedName(sql, token).c_str(), word) == 0;
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
