#include "attach_statements.h"

#include "format.h"
#include "sql_tokens.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <strings.h>
#include <vector>

namespace sqlite2 {

namespace {

// What the first bytes of a file say it is.
enum class FileKind { Missing, Empty, Sqlite2, Other };

FileKind KindOfFile(const std::string& path)
{
    FILE* file = fopen(path.c_str(), "rb");
    if (!file)
        return FileKind::Missing;
    char start[sizeof magicText] = {};
    const size_t length = fread(start, 1, sizeof start, file);
    fclose(file);
    if (length == 0)
        return FileKind::Empty;
    return length == sizeof start && memcmp(start, magicText, length) == 0 ? FileKind::Sqlite2 : FileKind::Other;
}

Status SyntaxErrorNear(std::string_view sql, const Token& token)
{
    return {kError, "near \"" + std::string(TokenText(sql, token)) + "\": syntax error"};
}

bool NameInUse(const std::string& name)
{
    return strcasecmp(name.c_str(), "main") == 0 || strcasecmp(name.c_str(), "temp") == 0;
}

Status Attach(std::string_view sql, const std::vector<Token>& tokens)
{
    // ATTACH [DATABASE] 'file' AS name
    const size_t at = IsWord(sql, tokens[1], "DATABASE") ? 2 : 1;
    if (at + 2 >= tokens.size() || !IsWord(sql, tokens[at + 1], "AS"))
        return SyntaxErrorNear(sql, tokens.back());
    const std::string path = Dequote(TokenText(sql, tokens[at]));
    const std::string name = DequotedName(sql, tokens[at + 2]);
    if (NameInUse(name))
        return {kError, "database " + name + " is already in use"};
    switch (KindOfFile(path)) {
    case FileKind::Missing:
    case FileKind::Empty:
        return {kError, "cannot attach empty database: " + name};
    case FileKind::Other:
        return {kNotADatabase, message::notADatabase};
    case FileKind::Sqlite2:
        break;
    }
    return {kError, "cannot attach " + path + ": attaching another 2.x database is not supported"};
}

} // namespace

Status RunAttachStatement(std::string_view statement, bool& handled)
{
    const std::vector<Token> tokens = Tokenize(statement);
    handled = !tokens.empty() && (IsWord(statement, tokens[0], "ATTACH") || IsWord(statement, tokens[0], "DETACH"));
    if (!handled)
        return Status::Ok();
    size_t last = tokens.size();
    while (last > 1 && IsPunct(statement, tokens[last - 1], ';'))
        --last;
    const std::vector<Token> words(tokens.begin(), tokens.begin() + ptrdiff_t(last));
    if (IsWord(statement, words[0], "ATTACH"))
        return words.size() < 4 ? SyntaxErrorNear(statement, words.back()) : Attach(statement, words);
    // DETACH [DATABASE] name: nothing is ever attached.
    const size_t at = words.size() > 1 && IsWord(statement, words[1], "DATABASE") ? 2 : 1;
    if (at >= words.size())
        return SyntaxErrorNear(statement, words.back());
    return {kError, "no such database: " + DequotedName(statement, words[at])};
}

} // namespace sqlite2
