#pragma once

#include "sqlite/zt_tableinfo.h"
#include "ztlib/zt_parametergroup.h"

// Statements built from a table definition or a bound parameter set: names
// bare, values between double quotes without escaping, no SQL NULL (an
// empty text instead). Only parameters bound to a column take part, in the
// set's order.

// "SELECT a, b FROM t" over every column of the table, without a condition.
ZT_String BuildSelect(const ZT_TableInfo& table);
// "UPDATE t SET a=\"..\", .. WHERE k==\"..\" AND ..": key columns form the
// condition, the others the assignments; values are trimmed but keep any
// quotes of their own. Without key columns there is no WHERE clause.
ZT_String BuildUpdate(ZT_ParameterGroup& set);
// "INSERT INTO t (a, b) VALUES(\"..\", \"..\")", each value trimmed and
// stripped of one pair of quotes; just "INSERT INTO t" when no column is
// written. Key columns are left to the database unless flags has writeKeyColumns.
ZT_String BuildInsert(ZT_ParameterGroup& set, int flags);
// "CREATE TABLE t", followed by "()" when any column is bound: the column list
// itself is never written, and nothing relies on it.
ZT_String BuildCreateTable(ZT_ParameterGroup& set);
// The key columns (type columnKey) of the bound parameters: their number,
// their names joined by ", ", and the names as a list.
int CountKeyColumns(ZT_ParameterGroup& set);
ZT_String GetKeyColumnNames(ZT_ParameterGroup& set);
ZT_StringList GetKeyColumnList(ZT_ParameterGroup& set);

// Flag of BuildInsert and SQLiteParameters::InsertRow.
constexpr int writeKeyColumns = 0x40;
