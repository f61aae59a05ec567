#pragma once

#include "ztlib/zt_outline.h"
#include "zttl/zt_value.h"

class ZT_ColumnInfo;
class ZT_ParameterGroup;

// A named, typed value that a dialog line edits and the SQL builders read.
class ZT_Parameter {
public:
    // Not copyable; Clone makes copies.
    ZT_Parameter() = default;
    ZT_Parameter(const ZT_Parameter&) = delete;
    ZT_Parameter& operator=(const ZT_Parameter&) = delete;
    virtual ~ZT_Parameter() = default;

    // A new parameter owned by the caller; null (after a failed check) for
    // kinds that cannot be copied.
    virtual ZT_Parameter* Clone() const;
    // The stored value for editing in place, or null when there is none.
    virtual ZT_Value* GetValueRef() = 0;
    // Copies the value into out and returns out (an empty value when there is none).
    virtual ZT_Value& GetValue(ZT_Value& out) const = 0;
    // Copies value into GetValueRef's value; nothing happens without one.
    virtual void SetValue(const ZT_Value& value);
    // Never null; owned by the parameter.
    virtual const ZT_String* GetName() const = 0;
    // Kinds that keep a name clean it with ToName; others ignore it.
    virtual void SetName(const char*) {}
    // Option bits of the kind; 0 here.
    virtual int GetOptions() const { return 0; }
    // One element named after the parameter: a text value quoted, other kinds in
    // the form ZT_Value::SetFromText reads back.
    virtual void Save(ZT_OutlineWriter& writer) const;
    // Sets the value from the reader's current element text.
    virtual void Load(ZT_OutlineReader& reader);
    // The column the parameter is bound to (not owned), or null.
    virtual ZT_ColumnInfo* GetDefinition() const = 0;
    virtual void SetDefinition(ZT_ColumnInfo* definition) = 0;
    // The bound column's label, else the name.
    virtual const ZT_String* GetLabel() const;
    // This parameter as a group, or null for a leaf.
    virtual ZT_ParameterGroup* AsGroup() { return nullptr; }
};

// A shared handle: every copy refers to the same target, which is deleted
// once, when the last handle goes. Operations are forwarded to the target.
// A null target is refused with a report; such an empty handle answers like
// a parameter with nothing in it (empty name and value, null value reference
// and clone, writes nothing) and sets do not take it.
class ZT_ParameterRef : public ZT_Parameter {
public:
    // Takes ownership of owned.
    explicit ZT_ParameterRef(ZT_Parameter* owned);
    // Shares other's target.
    ZT_ParameterRef(const ZT_ParameterRef& other);
    // Deletes the target when this is its last handle.
    ~ZT_ParameterRef() override;

    // A new handle (owned by the caller) to a clone of the target, not a share;
    // null when the target cannot be cloned.
    ZT_Parameter* Clone() const override;
    ZT_Value* GetValueRef() override { return target ? target->GetValueRef() : nullptr; }
    ZT_Value& GetValue(ZT_Value& out) const override;
    void SetValue(const ZT_Value& value) override;
    const ZT_String* GetName() const override;
    void SetName(const char* name) override;
    void Save(ZT_OutlineWriter& writer) const override;
    void Load(ZT_OutlineReader& reader) override;
    ZT_ColumnInfo* GetDefinition() const override { return target ? target->GetDefinition() : nullptr; }
    void SetDefinition(ZT_ColumnInfo* definition) override;
    ZT_ParameterGroup* AsGroup() override { return target ? target->AsGroup() : nullptr; }

    // The shared target (not owned by the caller) and how many handles share it.
    ZT_Parameter* GetTarget() const { return target; }
    int GetShareCount() const { return counter ? *counter : 0; }

private:
    ZT_Parameter* target;
    int* counter; // null together with target
};
