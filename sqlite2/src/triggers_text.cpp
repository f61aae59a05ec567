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

} // namespace sqlite2::trigger_text
