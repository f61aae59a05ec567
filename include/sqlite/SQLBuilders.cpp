#include "sqlite/SQLBuilders.h"

namespace {

// Calls visit(parameter, definition) for every parameter bound to a column.
template <class Visit>
void ForEachBound(ZT_ParameterGroup& set, Visit visit)
{
    for (int i = 0; i < set.GetCount(); ++i) {
        ZT_Parameter* parameter = set.GetAt(i);
        if (parameter && parameter->GetDefinition())
            visit(*parameter, *parameter->GetDefinition());
    }
}

ZT_String ValueText(const ZT_Parameter& parameter)
{
    ZT_Value value;
    parameter.GetValue(value);
    return ZT_String(value.GetText());
}

ZT_String Quoted(const ZT_String& text)
{
    ZT_String quoted("\"");
    quoted.Append(text.GetString());
    quoted.Append("\"");
    return quoted;
}

} // namespace

ZT_String BuildSelect(const ZT_TableInfo& table)
{
    ZT_String list;
    for (int i = 0; i < table.GetColumnCount(); ++i)
        list.AppendWithSeparator(table.GetColumnName(i), ", ");
    ZT_String sql("SELECT ");
    sql.Append(list.GetString());
    sql.Append(" FROM ");
    sql.Append(table.GetTableName());
    return sql;
}

ZT_String BuildUpdate(ZT_ParameterGroup& set)
{
    ZT_String assignments, conditions;
    ForEachBound(set, [&](ZT_Parameter& parameter, ZT_ColumnInfo& definition) {
        ZT_String value = Trimmed(ValueText(parameter)); // surrounding quotes stay
        ZT_String item(*parameter.GetName());
        item.Append(definition.GetType() == columnKey ? "==" : "=");
        item.Append(Quoted(value).GetString());
        if (definition.GetType() == columnKey)
            conditions.AppendWithSeparator(item.GetString(), " AND ");
        else
            assignments.AppendWithSeparator(item.GetString(), ", ");
    });
    ZT_String sql("UPDATE ");
    sql.Append(set.GetName()->GetString());
    sql.Append(" SET ");
    sql.Append(assignments.GetString());
    if (!conditions.IsEmpty()) {
        sql.Append(" WHERE ");
        sql.Append(conditions.GetString());
    }
    return sql;
}

ZT_String BuildInsert(ZT_ParameterGroup& set, int flags)
{
    ZT_String names, values;
    ForEachBound(set, [&](ZT_Parameter& parameter, ZT_ColumnInfo& definition) {
        if (definition.GetType() == columnKey && !(flags & writeKeyColumns))
            return;
        ZT_String value = TrimmedUnquoted(ValueText(parameter)); // one pair of quotes goes
        names.AppendWithSeparator(parameter.GetName()->GetString(), ", ");
        values.AppendWithSeparator(Quoted(value).GetString(), ", ");
    });
    ZT_String sql("INSERT INTO ");
    sql.Append(set.GetName()->GetString());
    if (!names.IsEmpty()) {
        sql.Append(" (");
        sql.Append(names.GetString());
        sql.Append(") VALUES(");
        sql.Append(values.GetString());
        sql.Append(")");
    }
    return sql;
}

ZT_String BuildCreateTable(ZT_ParameterGroup& set)
{
    ZT_String sql("CREATE TABLE ");
    sql.Append(set.GetName()->GetString());
    ZT_String columns;
    ForEachBound(set, [&](ZT_Parameter& parameter, ZT_ColumnInfo& definition) {
        ZT_String item(*parameter.GetName());
        switch (definition.GetType()) {
        case columnInteger: item.Append(" INTEGER"); break;
        case columnReal: item.Append(" REAL"); break;
        case columnDate: item.Append(" DATE"); break;
        case columnTime: item.Append(" TIME"); break;
        case columnDateTime: item.Append(" DATETIME"); break;
        case columnKey: item.Append(" UNIQUE"); break;
        default: break;
        }
        columns.AppendWithSeparator(item.GetString(), ", ");
    });
    // The column list never made it into the text, and nothing relies on
    // more: the statement ends in "()".
    if (!columns.IsEmpty())
        sql.Append("()");
    return sql;
}

int CountKeyColumns(ZT_ParameterGroup& set)
{
    int keys = 0;
    ForEachBound(set, [&](ZT_Parameter&, ZT_ColumnInfo& definition) { keys += definition.GetType() == columnKey; });
    return keys;
}

ZT_String GetKeyColumnNames(ZT_ParameterGroup& set)
{
    ZT_String names;
    ForEachBound(set, [&](ZT_Parameter&, ZT_ColumnInfo& definition) {
        if (definition.GetType() == columnKey)
            names.AppendWithSeparator(definition.GetName().GetString(), ", ");
    });
    return names;
}

ZT_StringList GetKeyColumnList(ZT_ParameterGroup& set)
{
    ZT_StringList names;
    ForEachBound(set, [&](ZT_Parameter&, ZT_ColumnInfo& definition) {
        if (definition.GetType() == columnKey)
            names.Add(definition.GetName().GetString());
    });
    return names;
}
