#include "ztlib/zt_parameter.h"

#include "sqlite/zt_tableinfo.h"
#include "zttl/zt_report.h"

ZT_Parameter* ZT_Parameter::Clone() const
{
    ZT_Assert(false, "zt_parameter", 62);
    return nullptr;
}

void ZT_Parameter::SetValue(const ZT_Value& value)
{
    if (ZT_Value* stored = GetValueRef())
        stored->Assign(value);
}

const ZT_String* ZT_Parameter::GetLabel() const
{
    const ZT_ColumnInfo* definition = GetDefinition();
    return definition ? &definition->GetLabel() : GetName();
}

void ZT_Parameter::Save(ZT_OutlineWriter& writer) const
{
    writer.BeginElement(GetName()->GetString());
    ZT_Value value;
    GetValue(value);
    if (value.GetKind() == ZT_Value::kindText) {
        writer.WriteString(value.GetText());
    } else {
        ZT_String text;
        value.ToText(text, false);
        writer.WriteRaw(text.GetString());
    }
    writer.EndElement(0);
}

void ZT_Parameter::Load(ZT_OutlineReader& reader)
{
    ZT_Value value;
    value.SetFromText(reader.GetElementText());
    SetValue(value);
}

ZT_ParameterRef::ZT_ParameterRef(ZT_Parameter* owned)
    : target(owned), counter(owned ? new int(1) : nullptr)
{
    // Refused here rather than crashing at the first forwarded call.
    if (!owned)
        ReportMessage("E_ ZT_ParameterRef: null target refused");
}

ZT_ParameterRef::ZT_ParameterRef(const ZT_ParameterRef& other)
    : ZT_Parameter(), target(other.target), counter(other.counter)
{
    if (counter)
        ++*counter;
}

ZT_ParameterRef::~ZT_ParameterRef()
{
    if (counter && --*counter == 0) {
        delete target;
        delete counter;
    }
}

ZT_Parameter* ZT_ParameterRef::Clone() const
{
    ZT_Parameter* copy = target ? target->Clone() : nullptr;
    return copy ? new ZT_ParameterRef(copy) : nullptr;
}

ZT_Value& ZT_ParameterRef::GetValue(ZT_Value& out) const
{
    if (target)
        return target->GetValue(out);
    out = ZT_Value();
    return out;
}

void ZT_ParameterRef::SetValue(const ZT_Value& value)
{
    if (target)
        target->SetValue(value);
}

const ZT_String* ZT_ParameterRef::GetName() const
{
    static const ZT_String none;
    return target ? target->GetName() : &none;
}

void ZT_ParameterRef::SetName(const char* name)
{
    if (target)
        target->SetName(name);
}

void ZT_ParameterRef::Save(ZT_OutlineWriter& writer) const
{
    if (target)
        target->Save(writer);
}

void ZT_ParameterRef::Load(ZT_OutlineReader& reader)
{
    if (target)
        target->Load(reader);
}

void ZT_ParameterRef::SetDefinition(ZT_ColumnInfo* definition)
{
    if (target)
        target->SetDefinition(definition);
}
