// The forgiving, purely textual reading of a CREATE TABLE statement. Types
// are found by type words anywhere in a column's definition (its name
// included), and everything after the first table constraint is ignored:
// both are the program's long-standing rules.
#include "sqlite/zt_tableinfo.h"

#include "zttl/zt_report.h"

namespace {

bool EndsName(char c)
{
    return ZT_IsSpace(c) || c == '(';
}

int ColumnType(const ZT_String& definition)
{
    int type = columnText;
    if (definition.ContainsLoosely("INTEGER"))
        type = columnInteger;
    if (definition.ContainsLoosely("REAL"))
        type = columnReal;
    if (definition.ContainsLoosely("CHAR") || definition.ContainsLoosely("TEXT"))
        type = columnText;
    if (definition.ContainsLoosely("DATETIME"))
        return columnDateTime;
    if (definition.ContainsLoosely("DATE"))
        type = columnDate;
    if (definition.ContainsLoosely("TIME"))
        type = columnTime;
    return type;
}

void ApplyTableConstraint(ZT_TableInfo& table, const ZT_String& definition, const ZT_String& word, int mask)
{
    int kind = 1;
    ZT_String list;
    if (word.IsEqual("UNIQUE")) {
        list = definition.From(word.GetLength());
        kind = takeUnique;
    } else if (word.IsEqual("PRIMARY")) {
        list = definition.From(word.GetLength() + 4); // meant to skip " KEY"
        kind = takePrimaryKey;
    }
    list.Trim();
    if (list.FirstChar() == '(') {
        int length = list.GetLength();
        list.Mid(1, length - 2);
    }
    list.Trim();
    if (list.IsEmpty())
        return;
    ZT_StringList items = Split(",", list);
    for (int i = 0; i < items.GetSize(); ++i) {
        ZT_String item = Trimmed(items[i]);
        if (mask & kind) {
            ZT_ColumnInfo* column = table.FindColumn(item.GetString());
            if (!column) // named after the keyword, not the item: kept as it always was
                column = table.AddColumn(word.GetString(), word.GetString(), "auto generated", columnText);
            if ((kind == takePrimaryKey && (mask & primaryKeyIsKey)) || (kind == takeUnique && (mask & uniqueIsKey)))
                column->SetType(columnKey);
        } else {
            table.RemoveColumn(item.GetString());
        }
    }
}

// Takes the table name off the front of s (the statement after "CREATE TABLE").
ZT_String TakeTableName(ZT_String& s)
{
    int nameLength = 0;
    while (nameLength < s.GetLength() && !EndsName(s.GetString()[nameLength]))
        ++nameLength;
    ZT_String name = s.Left(nameLength);
    s.Mid(nameLength, -1);
    s.Trim();
    return name;
}

// Takes the next column or constraint definition off the front of s: up to a
// comma outside parentheses, or up to the ')' that closes the column list, in
// which case s is emptied and closed is set.
ZT_String TakeDefinition(ZT_String& s, bool& closed)
{
    const char* p = s.GetString();
    int i = 0;
    int depth = 0;
    for (; p[i]; ++i) {
        if (p[i] == ',' && depth <= 0)
            break;
        if (p[i] == '(')
            ++depth;
        if (p[i] == ')' && --depth < 0)
            break;
    }
    ZT_String definition = s.Left(i);
    closed = depth < 0;
    if (closed)
        s.Empty();
    else
        s.Mid(i + 1, -1);
    return definition;
}

// The leading word of a definition: the column name or the constraint keyword.
ZT_String FirstWord(const ZT_String& definition)
{
    const char* d = definition.GetString();
    int wordLength = 0;
    while (d[wordLength] && !ZT_IsSpace(d[wordLength]) && d[wordLength] != '(' && d[wordLength] != ',')
        ++wordLength;
    return definition.Left(wordLength);
}

// Adds the column named word when mask asks for its kind (ordinary, primary key, unique).
void AddColumnDefinition(ZT_TableInfo& table, const ZT_String& definition, const ZT_String& word, int mask)
{
    int type = ColumnType(definition);
    int flag = takeOrdinary;
    if (definition.ContainsLoosely("PRIMARY KEY")) {
        flag = takePrimaryKey;
        if (mask & primaryKeyIsKey)
            type = columnKey;
    }
    if (definition.ContainsLoosely("UNIQUE")) {
        flag = takeUnique;
        if (mask & uniqueIsKey)
            type = columnKey;
    }
    if (mask & flag)
        table.AddColumn(word.GetString(), word.GetString(), "auto generated", type);
}

} // namespace

ZT_TableInfo* ParseCreateTable(const char* text, int mask)
{
    ZT_String s(text);
    if (!s.StartsWith("CREATE TABLE"))
        return nullptr;
    s.Mid(12, -1);
    s.Trim();
    ZT_String name = TakeTableName(s);
    ZT_TableInfo* table = new ZT_TableInfo(name.GetString());
    if (s.FirstChar() != '(')
        return table;
    s.Mid(1, -1);
    s.Trim();

    bool constraintsSeen = false;
    while (s.FirstChar() != ')' && s.FirstChar() != 0) {
        s.Trim();
        bool closed = false;
        ZT_String definition = TakeDefinition(s, closed);
        ZT_Trace("COLUMN DEF == %s\n", definition.GetString());
        ZT_String word = FirstWord(definition);
        if (word.IsEqual("PRIMARY") || word.IsEqual("UNIQUE") || word.IsEqual("CHECK")) {
            constraintsSeen = true;
            ApplyTableConstraint(*table, definition, word, mask);
        } else if (!constraintsSeen) {
            AddColumnDefinition(*table, definition, word, mask);
        }
        if (closed)
            break;
    }
    return table;
}
