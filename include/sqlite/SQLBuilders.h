#pragma once

#include "sqlite/zt_tableinfo.h"
#include "ztlib/zt_parametergroup.h"

// Statements built from a table definition or a bound parameter set: names
// bare, values between double quotes without escaping, no SQL NULL (an
// empty text instead). Only parameters bound to a column take part.
ZT_String BuildSelect(const ZT_TableInfo& table);
ZT_String BuildUpdate(ZT_ParameterGroup& set);
// Key columns are left to the database unless flags has writeKeyColumns.
ZT_String BuildInsert(ZT_ParameterGroup& set, int flags);
ZT_String BuildCreateTable(ZT_ParameterGroup& set);
int CountKeyColumns(ZT_ParameterGroup& set);
ZT_String GetKeyColumnNames(ZT_ParameterGroup& set);
ZT_StringList GetKeyColumnList(ZT_ParameterGroup& set);

constexpr int writeKeyColumns = 0x40;
