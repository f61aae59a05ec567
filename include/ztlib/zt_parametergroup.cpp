#include "ztlib/zt_parametergroup.h"

#include "zttl/zt_report.h"

void ZT_ParameterGroup::Save(ZT_OutlineWriter& writer) const
{
    writer.BeginElement(GetName()->GetString());
    auto* self = const_cast<ZT_ParameterGroup*>(this);
    for (int i = 0; i < GetCount(); ++i)
        if (ZT_Parameter* child = self->GetAt(i))
            child->Save(writer);
    writer.EndElement(0);
}

void ZT_ParameterGroup::Load(ZT_OutlineReader& reader)
{
    std::string element = reader.GetElementName();
    while (reader.NextElement(element.c_str())) {
        if (ZT_Parameter* child = Find(reader.GetElementName()))
            child->Load(reader);
        else
            ZT_Assert(false, "zt_parametergroup", 127);
    }
}

ZT_Value& ZT_ParameterGroup::GetValueOf(ZT_Value& out, const char* childName)
{
    if (ZT_Parameter* child = Find(childName))
        return child->GetValue(out);
    out = ZT_Value();
    return out;
}

void ZT_ParameterGroup::SetValueOf(const char* childName, const ZT_Value& newValue)
{
    if (ZT_Parameter* child = Find(childName))
        child->SetValue(newValue);
}

ZT_ParameterSetAuto::ZT_ParameterSetAuto(const ZT_ParameterSetAuto& other) : ZT_ParameterGroup()
{
    SetName(other.GetName()->GetString());
    SetDefinition(other.GetDefinition());
    for (int i = 0; i < other.GetCount(); ++i)
        if (ZT_ParameterRef* child = other.children.GetAt(i))
            AddShared(*child);
    ZT_Trace("%s", "ZT_ParameterSetAuto::copy_ptrs .. is this intent?\n");
}

ZT_ParameterSetAuto::~ZT_ParameterSetAuto()
{
    RemoveAll();
}

const ZT_String* ZT_ParameterSetAuto::GetChildName(int i) const
{
    ZT_ParameterRef* child = children.GetAt(i);
    static const ZT_String none;
    return child ? child->GetName() : &none;
}

ZT_Parameter* ZT_ParameterSetAuto::CloneAt(int i)
{
    ZT_ParameterRef* child = children.GetAt(i);
    return child ? child->Clone() : nullptr;
}

void ZT_ParameterSetAuto::RemoveAll()
{
    index.RemoveAll();
    children.RemoveAll();
    name.Empty();
}

ZT_Value& ZT_ParameterSetAuto::GetValueByName(ZT_Value& out, const char* childName)
{
    if (ZT_ParameterRef* child = index.Lookup(childName))
        return child->GetValue(out);
    out = ZT_Value();
    return out;
}

ZT_Value& ZT_ParameterSetAuto::GetValueAt(ZT_Value& out, int i)
{
    if (children.IsValidIndex(i))
        return children.GetAt(i)->GetValue(out);
    out = ZT_Value();
    return out;
}

void ZT_ParameterSetAuto::AddShared(const ZT_ParameterRef& reference)
{
    Append(new ZT_ParameterRef(reference));
}

void ZT_ParameterSetAuto::AddOwned(ZT_Parameter* parameter)
{
    Append(new ZT_ParameterRef(parameter));
}

void ZT_ParameterSetAuto::Append(ZT_ParameterRef* reference)
{
    // Dialogs and builders use every child's value and name: an empty handle
    // (already reported when it was made) has neither.
    if (!reference->GetTarget()) {
        delete reference;
        return;
    }
    children.Add(reference);
    index.SetAt(reference->GetName()->GetString(), reference, false, false);
}
