#pragma once

#include "ztlib/zt_parameter.h"
#include "zttl/zt_arrayimp.h"
#include "zttl/zt_stringmap.h"

// A parameter made of parameters: a dialog shows it line by line, and it is
// saved, loaded and copied like a single parameter.
class ZT_ParameterGroup : public ZT_Parameter {
public:
    ZT_Value* GetValueRef() override { return &value; }
    ZT_Value& GetValue(ZT_Value& out) const override
    {
        out = ZT_Value();
        return out;
    }
    void SetValue(const ZT_Value&) override {}
    void Save(ZT_OutlineWriter& writer) const override;
    void Load(ZT_OutlineReader& reader) override;
    ZT_ParameterGroup* AsGroup() override { return this; }

    virtual int GetCount() const = 0;
    virtual bool Contains(const char* name) const = 0;
    virtual const ZT_String* GetChildName(int index) const = 0;
    virtual ZT_Parameter* GetAt(int index) { return Find(GetChildName(index)->GetString()); }
    virtual ZT_Parameter* Find(const char* name) = 0;
    virtual ZT_Value& GetValueOf(ZT_Value& out, const char* name);
    virtual void SetValueOf(const char* name, const ZT_Value& newValue);
    virtual ZT_Parameter* CloneAt(int index) = 0;

private:
    ZT_Value value; // a group has no value of its own
};

// The set: children in insertion order, found by name without regard to
// case. Copies share the child parameters (the notice on the trace says so).
class ZT_ParameterSetAuto : public ZT_ParameterGroup {
public:
    ZT_ParameterSetAuto() = default;
    ZT_ParameterSetAuto(const ZT_ParameterSetAuto& other);
    ~ZT_ParameterSetAuto() override;

    ZT_Parameter* Clone() const override { return new ZT_ParameterSetAuto(*this); }
    const ZT_String* GetName() const override { return &name; }
    void SetName(const char* text) override { name = ToName(text); }
    ZT_ColumnInfo* GetDefinition() const override { return definition; }
    void SetDefinition(ZT_ColumnInfo* column) override { definition = column; }

    int GetCount() const override { return children.GetSize(); }
    bool Contains(const char* childName) const override { return index.Contains(childName); }
    const ZT_String* GetChildName(int i) const override;
    ZT_Parameter* GetAt(int i) override { return children.GetAt(i); }
    ZT_Parameter* Find(const char* childName) override { return index.Lookup(childName); }
    ZT_Parameter* CloneAt(int i) override;
    virtual void RemoveAll();
    virtual ZT_Value& GetValueByName(ZT_Value& out, const char* childName);
    virtual ZT_Value& GetValueAt(ZT_Value& out, int i);

    // Appends a new handle sharing the reference's parameter. A name already
    // present stays found as the first; the new child is listed all the same.
    // An empty handle (no target) is not added.
    void AddShared(const ZT_ParameterRef& reference);

protected:
    // Appends a handle that owns a parameter made for this set; a null
    // parameter is reported and not added.
    void AddOwned(ZT_Parameter* parameter);

private:
    void Append(ZT_ParameterRef* reference);

    ZT_ArrayPtr<ZT_ParameterRef> children;    // owned
    ZT_StringMap<ZT_ParameterRef> index;      // not owning
    ZT_String name;
    ZT_ColumnInfo* definition = nullptr;      // not owned
};
