#include "sqlite/SQLiteParameters.h"

#include "sqlite/SQLBuilders.h"
#include "ztlib/zt_parameterplain.h"
#include "zttl/zt_report.h"

SQLiteParameterSet::SQLiteParameterSet(const char* name)
{
    SetName(name);
}

SQLiteParameterSet::SQLiteParameterSet(const SQLiteParameterSet& other) : ZT_ParameterSetAuto()
{
    SetName(other.GetName()->GetString());
    SetDefinition(other.GetDefinition());
    auto& source = const_cast<SQLiteParameterSet&>(other);
    for (int i = 0; i < source.GetCount(); ++i) {
        ZT_Parameter* parameter = source.ZT_ParameterSetAuto::GetAt(i);
        if (!parameter)
            continue;
        ZT_Value value;
        ZT_Parameter* mine = Find(parameter->GetName()->GetString());
        mine->SetValue(parameter->GetValue(value));
        mine->SetDefinition(parameter->GetDefinition());
    }
}

ZT_Parameter* SQLiteParameterSet::Find(const char* name)
{
    if (ZT_Parameter* found = ZT_ParameterSetAuto::Find(name))
        return found;
    ZT_Parameter* created = new ZT_ParameterPlain(name);
    AddOwned(created);
    return ZT_ParameterSetAuto::Find(name) ? ZT_ParameterSetAuto::Find(name) : created;
}

ZT_Value* SQLiteParameterSet::GetValueRef(const char* name)
{
    return Find(name)->GetValueRef();
}

ZT_String SQLiteParameters::CacheKey(const char* fileName, const char* name, int mask)
{
    ZT_String key(fileName);
    key.Append("::");
    key.Append(name);
    key.Append("#");
    key.AppendHex(uint32_t(mask), 2);
    return key;
}

ZT_String SQLiteParameters::GetTableSql(ZT_SQLiteDatabase& db, const char* name)
{
    ZT_String sql;
    if (!db.QueryValue(sql, "SELECT sql FROM sqlite_master WHERE name=\"%s\"", name))
        sql.Empty();
    return sql;
}

ZT_TableInfo* SQLiteParameters::GetTableInfo(ZT_SQLiteDatabase& db, const char* name, int mask)
{
    ZT_String key = CacheKey(db.GetName(), name, mask);
    if (ZT_TableInfo* cached = cache.Lookup(key.GetString()))
        return cached;
    // An unknown table is cached as null, which is no hit: it is looked up again next time.
    ZT_TableInfo* info = ParseCreateTable(GetTableSql(db, name).GetString(), mask);
    cache.SetAt(key.GetString(), info, true, true);
    return info;
}

ZT_TableInfo* SQLiteParameters::FindTableInfo(const char* fileName, const char* name, int mask)
{
    return cache.Lookup(CacheKey(fileName, name, mask).GetString());
}

SQLiteParameterSet SQLiteParameters::CreateParameterSet(ZT_SQLiteDatabase& db, const char* name, int mask)
{
    ZT_TableInfo* info = GetTableInfo(db, name, mask);
    if (!info)
        return SQLiteParameterSet(nullptr);
    SQLiteParameterSet set(name);
    info->BindToTable(set);
    for (int i = 0; i < info->GetColumnCount(); ++i) {
        ZT_Parameter* parameter = set.Find(info->GetColumnName(i));
        if (!parameter || !parameter->GetDefinition())
            continue;
        ZT_Value value;
        switch (parameter->GetDefinition()->GetType()) {
        case columnInteger: value.SetInt(0); break;
        case columnBoolean: value.SetFromText("false"); break;
        case columnReal: value.SetDouble(0.0); break;
        default: value.SetText(""); break;
        }
        parameter->SetValue(value);
    }
    return set;
}

SQLiteParameterSet SQLiteParameters::LoadRow(ZT_SQLiteDatabase& db, const char* name, const char* where)
{
    SQLiteParameterSet set = CreateParameterSet(db, name, takeEverything);
    ReadRow(set, db, name, where);
    return set;
}

bool SQLiteParameters::ReadRow(SQLiteParameterSet& set, ZT_SQLiteDatabase& db, const char* name, const char* where)
{
    ZT_TableInfo* info = GetTableInfo(db, name, takeEverything);
    if (!info)
        return false;
    ZT_String sql = BuildSelect(*info);
    ZT_String condition = Trimmed(where);
    if (condition.IsEmpty()) {
        sql.Append(" LIMIT 1");
    } else {
        sql.Append(" WHERE ");
        sql.Append(condition.GetString());
    }
    sql.Append(";");
    ZT_Trace("%s\n", sql.GetString());
    ZT_SQLiteRecord record;
    if (!db.QueryRecord(record, sql.GetString()))
        return false;
    for (int i = 0; i < info->GetColumnCount(); ++i) {
        ZT_Parameter* parameter = set.Find(info->GetColumnName(i));
        if (!parameter)
            continue;
        const char* text = record.GetValue(i);
        ZT_Value value;
        value.SetText(text);
        parameter->SetValue(value);
        ZT_Trace("%s='%s' ", info->GetColumnName(i), text ? text : "");
    }
    ZT_Trace("%s", "\n");
    return true;
}

bool SQLiteParameters::UpdateRow(ZT_SQLiteDatabase& db, SQLiteParameterSet& set, int)
{
    ZT_String sql = BuildUpdate(set);
    ZT_Trace("%s\n", sql.GetString());
    return db.ExecuteFormat(sql.GetString());
}

bool SQLiteParameters::InsertRow(ZT_SQLiteDatabase& db, SQLiteParameterSet& set, int flags)
{
    ZT_String sql = BuildInsert(set, flags);
    ZT_Trace("%s\n", sql.GetString());
    return db.ExecuteFormat(sql.GetString());
}

SQLiteParameters& TheSQLiteParameters()
{
    static SQLiteParameters parameters; // built on first use: queries never pay for it
    return parameters;
}
