#include "ztlib/zt_parameterplain.h"

#include "sqlite/zt_tableinfo.h"
#include "zttl/zt_parse.h"
#include "zttl/zt_report.h"

ZT_ParameterPlain::ZT_ParameterPlain(const ZT_ParameterPlain& other) : ZT_Parameter(), name(*other.GetName())
{
    other.GetValue(value);
}

void ZT_ParameterPlain::SetDefinition(ZT_ColumnInfo* column)
{
    definition = column;
    // A binding to a column of another name is kept, but it is a mistake.
    if (column && CompareNoCase(column->GetName(), name.GetString()) != 0)
        ZT_Assert(false, "zt_parameterplain", 103);
}
