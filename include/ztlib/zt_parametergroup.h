#pragma once

#include "ztlib/zt_parameter.h"
#include "zttl/zt_arrayimp.h"
#include "zttl/zt_stringmap.h"

// A parameter made of parameters: a dialog shows it line by line, and it is
// saved, loaded and copied like a single parameter.
class ZT_ParameterGroup : public ZT_Parameter {
public:
    // A group has no value: GetValue answers an empty one and SetValue ignores it.
    ZT_Value* GetValueRef() override { return &value; }
    ZT_Value& GetValue(ZT_Value& out) const override
    {
        out = ZT_Value();
        return out;
    }
    void SetValue(const ZT_Value&) override {}
    // One element named after the group, holding each child's element.
    void Save(ZT_OutlineWriter& writer) const override;
    // Loads each child element into the child of that name; an unknown name is a
    // failed check and is skipped.
    void Load(ZT_OutlineReader& reader) override;
    ZT_ParameterGroup* AsGroup() override { return this; }

    // Number of children, and whether one is found by name (case-insensitive).
    virtual int GetCount() const = 0;
    virtual bool Contains(const char* name) const = 0;
    // Name of the child at index (0-based); never null.
    virtual const ZT_String* GetChildName(int index) const = 0;
    // Child at index, or null; not owned by the caller. This default looks the
    // name up, so of children with equal names it gives the first.
    virtual ZT_Parameter* GetAt(int index) { return Find(GetChildName(index)->GetString()); }
    // Child of that name (the first of equal names), or null; not owned by the caller.
    virtual ZT_Parameter* Find(const char* name) = 0;
    // Copy of the named child's value into out (empty when there is no such
    // child); returns out.
    virtual ZT_Value& GetValueOf(ZT_Value& out, const char* name);
    // Sets the named child's value; an unknown name is ignored.
    virtual void SetValueOf(const char* name, const ZT_Value& newValue);
    // A clone of the child at index, owned by the caller, or null.
    virtual ZT_Parameter* CloneAt(int index) = 0;

private:
    ZT_Value value; // a group has no value of its own
};

// The set: children in insertion order, found by name without regard to
// case. Copies share the child parameters (the notice on the trace says so).
class ZT_ParameterSetAuto : public ZT_ParameterGroup {
public:
    ZT_ParameterSetAuto() = default;
    // Copies name and definition and shares other's children.
    ZT_ParameterSetAuto(const ZT_ParameterSetAuto& other);
    // Drops this set's handles; a child goes with the last handle to it.
    ~ZT_ParameterSetAuto() override;

    // A new set owned by the caller that shares the children.
    ZT_Parameter* Clone() const override { return new ZT_ParameterSetAuto(*this); }
    const ZT_String* GetName() const override { return &name; }
    // The name is cleaned with ToName.
    void SetName(const char* text) override { name = ToName(text); }
    // The table the set is bound to (not owned), or null.
    ZT_ColumnInfo* GetDefinition() const override { return definition; }
    void SetDefinition(ZT_ColumnInfo* column) override { definition = column; }

    int GetCount() const override { return children.GetSize(); }
    bool Contains(const char* childName) const override { return index.Contains(childName); }
    const ZT_String* GetChildName(int i) const override;
    ZT_Parameter* GetAt(int i) override { return children.GetAt(i); }
    ZT_Parameter* Find(const char* childName) override { return index.Lookup(childName); }
    ZT_Parameter* CloneAt(int i) override;
    // Drops every child and also empties the set's name.
    virtual void RemoveAll();
    // As GetValueOf, by name or by index; out is emptied when there is no such
    // child, and returned.
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
    // Takes ownership of reference; an empty handle is deleted instead of added.
    void Append(ZT_ParameterRef* reference);

    ZT_ArrayPtr<ZT_ParameterRef> children;    // owned
    ZT_StringMap<ZT_ParameterRef> index;      // not owning
    ZT_String name;
    ZT_ColumnInfo* definition = nullptr;      // not owned
};
