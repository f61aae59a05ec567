#pragma once

#include "ztlib/zt_outline.h"
#include "zttl/zt_value.h"

class ZT_ColumnInfo;
class ZT_ParameterGroup;

// A named, typed value that a dialog line edits and the SQL builders read.
class ZT_Parameter {
public:
    ZT_Parameter() = default;
    ZT_Parameter(const ZT_Parameter&) = delete;
    ZT_Parameter& operator=(const ZT_Parameter&) = delete;
    virtual ~ZT_Parameter() = default;

    // A new parameter owned by the caller; null for kinds that cannot be copied.
    virtual ZT_Parameter* Clone() const;
    virtual ZT_Value* GetValueRef() = 0;
    virtual ZT_Value& GetValue(ZT_Value& out) const = 0;
    virtual void SetValue(const ZT_Value& value);
    virtual const ZT_String* GetName() const = 0;
    virtual void SetName(const char*) {}
    virtual int GetOptions() const { return 0; }
    virtual void Save(ZT_OutlineWriter& writer) const;
    virtual void Load(ZT_OutlineReader& reader);
    virtual ZT_ColumnInfo* GetDefinition() const = 0;
    virtual void SetDefinition(ZT_ColumnInfo* definition) = 0;
    virtual const ZT_String* GetLabel() const;
    virtual ZT_ParameterGroup* AsGroup() { return nullptr; }
};

// A shared handle: every copy refers to the same target, which is deleted
// once, when the last handle goes. Operations are forwarded to the target.
// A null target is refused with a report; such an empty handle answers like
// a parameter with nothing in it (empty name and value, null value reference
// and clone, writes nothing) and sets do not take it.
class ZT_ParameterRef : public ZT_Parameter {
public:
    explicit ZT_ParameterRef(ZT_Parameter* owned);
    ZT_ParameterRef(const ZT_ParameterRef& other);
    ~ZT_ParameterRef() override;

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

    ZT_Parameter* GetTarget() const { return target; }
    int GetShareCount() const { return counter ? *counter : 0; }

private:
    ZT_Parameter* target;
    int* counter; // null together with target
};
