#include "schema_text.h"

#include "sql_tokens.h"

#include <cctype>
#include <cstring>
#include <strings.h>

namespace sqlite2 {

Conflict ConflictNamed(std::string_view word)
{
    if (word == "ROLLBACK")
        return Conflict::Rollback;
    if (word == "ABORT")
        return Conflict::Abort;
    if (word == "FAIL")
        return Conflict::Fail;
    if (word == "IGNORE")
        return Conflict::Ignore;
    if (word == "REPLACE")
        return Conflict::Replace;
    return Conflict::Default;
}

namespace {

bool IsConstraintStart(std::string_view sql, const Token& token)
{
    for (const char* word : {"CONSTRAINT", "NULL", "NOT", "PRIMARY", "UNIQUE", "CHECK", "COLLATE", "DEFAULT",
                             "REFERENCES", "DEFERRABLE"})
        if (IsWord(sql, token, word))
            return true;
    return false;
}

std::string WithoutSpace(std::string_view text)
{
    std::string result;
    for (char c : text)
        if (!isspace(uint8_t(c)))
            result.push_back(c);
    return result;
}

// Splits the tokens between the parentheses at first at top-level commas.
std::vector<std::vector<Token>> SplitList(std::string_view sql, const std::vector<Token>& tokens, size_t open,
                                          size_t& close)
{
    std::vector<std::vector<Token>> parts(1);
    int depth = 0;
    for (size_t i = open + 1; i < tokens.size(); ++i) {
        const Token& token = tokens[i];
        if (IsPunct(sql, token, '(')) {
            ++depth;
        } else if (IsPunct(sql, token, ')')) {
            if (depth == 0) {
                close = i;
                return parts;
            }
            --depth;
        } else if (depth == 0 && IsPunct(sql, token, ',')) {
            parts.emplace_back();
            continue;
        }
        parts.back().push_back(token);
    }
    close = tokens.size();
    return {};
}

size_t FindOpeningParenthesis(std::string_view sql, const std::vector<Token>& tokens)
{
    for (size_t i = 0; i < tokens.size(); ++i)
        if (IsPunct(sql, tokens[i], '('))
            return i;
    return tokens.size();
}

std::vector<std::string> NamesInParentheses(std::string_view sql, const std::vector<Token>& part, size_t from)
{
    std::vector<std::string> names;
    bool expectName = false;
    for (size_t i = from; i < part.size(); ++i) {
        if (IsPunct(sql, part[i], '(') || IsPunct(sql, part[i], ',')) {
            expectName = true;
        } else if (IsPunct(sql, part[i], ')')) {
            break;
        } else if (expectName) {
            names.push_back(Dequote(sql.substr(part[i].begin, part[i].end - part[i].begin)));
            expectName = false;
        }
    }
    return names;
}

Conflict ConflictAfter(std::string_view sql, const std::vector<Token>& part, size_t i)
{
    if (i + 2 >= part.size() || !IsWord(sql, part[i], "ON") || !IsWord(sql, part[i + 1], "CONFLICT"))
        return Conflict::Default;
    return ConflictNamed(Word(sql, part, i + 2));
}

// DEFAULT takes a literal in 2.8: a string, a word, a signed number or NULL.
std::optional<std::string> DefaultAfter(std::string_view sql, const std::vector<Token>& part, size_t i)
{
    if (i >= part.size() || IsWord(sql, part[i], "NULL"))
        return std::nullopt;
    bool negative = false;
    if (IsPunct(sql, part[i], '-') || IsPunct(sql, part[i], '+')) {
        negative = sql[part[i].begin] == '-';
        if (++i >= part.size())
            return std::nullopt;
    }
    std::string value = Dequote(sql.substr(part[i].begin, part[i].end - part[i].begin));
    if (negative)
        value.insert(value.begin(), '-');
    return value;
}

// True when the words first and second stand at i and i + 1.
bool WordsAt(std::string_view sql, const std::vector<Token>& part, size_t i, const char* first, const char* second)
{
    return i + 1 < part.size() && IsWord(sql, part[i], first) && IsWord(sql, part[i + 1], second);
}

// A PRIMARY KEY or UNIQUE constraint: the unique index it implies.
struct Key {
    bool isPrimary;
    std::vector<int> columns;
    Conflict conflict;
};

// Reads the parts of a column list (column definitions, then table
// constraints) into a TableInfo, one part at a time.
class TableParser {
public:
    TableParser(std::string_view sql, TableInfo& info) : sql(sql), info(info) {}

    // False for an empty part.
    bool ParsePart(const std::vector<Token>& part)
    {
        if (part.empty())
            return false;
        // Everything after the first table constraint is read as one.
        inConstraints = inConstraints || IsTableConstraintStart(part[0]);
        if (inConstraints)
            ParseTableConstraint(part);
        else
            ParseColumn(part);
        return true;
    }

    // Once every part is read: the rowid column and the automatic indexes.
    void Finish()
    {
        FindIntegerPrimaryKey();
        // Column constraints create their indexes before table constraints.
        AddAutomaticIndexes(columnKeys);
        AddAutomaticIndexes(tableKeys);
    }

private:
    bool IsTableConstraintStart(const Token& first) const
    {
        for (const char* word : {"CONSTRAINT", "PRIMARY", "UNIQUE", "CHECK", "FOREIGN"})
            if (IsWord(sql, first, word))
                return true;
        return false;
    }

    // Only the first PRIMARY KEY or UNIQUE of a table constraint counts.
    void ParseTableConstraint(const std::vector<Token>& part)
    {
        for (size_t i = 0; i < part.size(); ++i) {
            const bool isPrimary = WordsAt(sql, part, i, "PRIMARY", "KEY");
            if (isPrimary || IsWord(sql, part[i], "UNIQUE")) {
                AddTableKey(part, i, isPrimary);
                return;
            }
        }
    }

    // The key whose first word is at i: its column list, then ON CONFLICT
    // after the closing parenthesis.
    void AddTableKey(const std::vector<Token>& part, size_t i, bool isPrimary)
    {
        std::vector<int> keyColumns = ColumnPositions(NamesInParentheses(sql, part, i + (isPrimary ? 2 : 1)));
        if (isPrimary)
            primaryKey.insert(primaryKey.end(), keyColumns.begin(), keyColumns.end());
        size_t after = i + 1;
        while (after < part.size() && !IsPunct(sql, part[after], ')'))
            ++after;
        tableKeys.push_back({isPrimary, keyColumns, ConflictAfter(sql, part, after + 1)});
    }

    // Names unknown to the table are skipped.
    std::vector<int> ColumnPositions(const std::vector<std::string>& names) const
    {
        std::vector<int> positions;
        for (const std::string& name : names)
            for (size_t c = 0; c < info.columns.size(); ++c)
                if (strcasecmp(info.columns[c].name.c_str(), name.c_str()) == 0)
                    positions.push_back(int(c));
        return positions;
    }

    // A name, a declared type, then column constraints.
    void ParseColumn(const std::vector<Token>& part)
    {
        ColumnInfo column;
        column.name = DequotedName(sql, part[0]);
        for (size_t i = ParseType(part, column); i < part.size(); ++i)
            ParseColumnConstraint(part, i, column);
        info.columns.push_back(column);
    }

    // The type is every token after the name up to the first constraint word
    // outside parentheses. Returns the position of that word.
    size_t ParseType(const std::vector<Token>& part, ColumnInfo& column) const
    {
        const size_t typeBegin = part.size() > 1 ? part[1].begin : 0;
        size_t typeEnd = typeBegin;
        int depth = 0;
        size_t i = 1;
        for (; i < part.size(); ++i) {
            if (depth == 0 && IsConstraintStart(sql, part[i]))
                break;
            if (IsPunct(sql, part[i], '('))
                ++depth;
            if (IsPunct(sql, part[i], ')'))
                --depth;
            typeEnd = part[i].end;
        }
        column.type = std::string(sql.substr(typeBegin, typeEnd - typeBegin));
        column.numeric = !IsTextType(column.type);
        return i;
    }

    // The constraint word at i, if any. Every token after the type is tried,
    // those inside CHECK (...) too.
    void ParseColumnConstraint(const std::vector<Token>& part, size_t i, ColumnInfo& column)
    {
        const int self = int(info.columns.size());
        if (WordsAt(sql, part, i, "PRIMARY", "KEY"))
            AddColumnPrimaryKey(part, i, self);
        if (IsWord(sql, part[i], "UNIQUE"))
            columnKeys.push_back({false, {self}, ConflictAfter(sql, part, i + 1)});
        if (WordsAt(sql, part, i, "NOT", "NULL")) {
            column.notNull = true;
            column.notNullConflict = ConflictAfter(sql, part, i + 2);
        }
        if (IsWord(sql, part[i], "DEFAULT"))
            column.defaultValue = DefaultAfter(sql, part, i + 1);
        if (IsWord(sql, part[i], "COLLATE") && i + 1 < part.size())
            column.numeric = !IsTextType(TokenText(sql, part[i + 1]));
    }

    // PRIMARY KEY at i, an optional ASC or DESC, then ON CONFLICT.
    void AddColumnPrimaryKey(const std::vector<Token>& part, size_t i, int self)
    {
        primaryKey.push_back(self);
        size_t after = i + 2;
        if (after < part.size() && (IsWord(sql, part[after], "ASC") || IsWord(sql, part[after], "DESC")))
            ++after;
        columnKeys.push_back({true, {self}, ConflictAfter(sql, part, after)});
    }

    // A primary key of one column declared INTEGER is the rowid.
    void FindIntegerPrimaryKey()
    {
        if (primaryKey.size() == 1 &&
            strcasecmp(WithoutSpace(info.columns[size_t(primaryKey[0])].type).c_str(), "INTEGER") == 0)
            info.integerPrimaryKey = primaryKey[0];
    }

    // The rowid needs no index; a key of no known column gets none.
    void AddAutomaticIndexes(const std::vector<Key>& keys)
    {
        for (const Key& key : keys)
            if (!(key.isPrimary && info.integerPrimaryKey >= 0) && !key.columns.empty()) {
                info.automaticIndexes.push_back(key.columns);
                info.automaticIndexConflicts.push_back(key.conflict);
            }
    }

    std::string_view sql;
    TableInfo& info;
    std::vector<int> primaryKey; // columns of every PRIMARY KEY, in statement order
    std::vector<Key> columnKeys, tableKeys; // each in statement order
    bool inConstraints = false;
};

} // namespace

bool IsTextType(std::string_view type)
{
    std::string squeezed = WithoutSpace(type);
    for (char& c : squeezed)
        c = char(toupper(uint8_t(c)));
    for (const char* pattern : {"BLOB", "CLOB", "CHAR", "TEXT"})
        if (squeezed.find(pattern) != std::string::npos)
            return true;
    return false;
}

bool ParseTableDefinition(std::string_view sql, TableInfo& info)
{
    info = TableInfo();
    std::vector<Token> tokens = Tokenize(sql);
    if (tokens.size() < 4 || !IsWord(sql, tokens[0], "CREATE"))
        return false;
    size_t open = FindOpeningParenthesis(sql, tokens);
    if (open >= tokens.size())
        return false;
    size_t close = 0;
    std::vector<std::vector<Token>> parts = SplitList(sql, tokens, open, close);
    if (parts.empty())
        return false;

    TableParser parser(sql, info);
    for (const auto& part : parts)
        if (!parser.ParsePart(part))
            return false;
    if (info.columns.empty())
        return false;
    parser.Finish();
    info.storedLength = close < tokens.size() ? tokens[close].end : sql.size();
    return true;
}

bool ParseCreateIndexColumns(std::string_view sql, std::vector<std::string>& columns)
{
    std::vector<Token> tokens = Tokenize(sql);
    size_t open = FindOpeningParenthesis(sql, tokens);
    if (open >= tokens.size())
        return false;
    size_t close = 0;
    columns.clear();
    for (const auto& part : SplitList(sql, tokens, open, close)) {
        if (part.empty())
            return false;
        columns.push_back(Dequote(sql.substr(part[0].begin, part[0].end - part[0].begin)));
    }
    return !columns.empty();
}

} // namespace sqlite2
