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
class ZT_ParameterRef : public ZT_Parameter {
public:
    explicit ZT_ParameterRef(ZT_Parameter* owned);
    ZT_ParameterRef(const ZT_ParameterRef& other);
    ~ZT_ParameterRef() override;

    ZT_Parameter* Clone() const override;
    ZT_Value* GetValueRef() override { return target->GetValueRef(); }
    ZT_Value& GetValue(ZT_Value& out) const override { return target->GetValue(out); }
    void SetValue(const ZT_Value& value) override { target->SetValue(value); }
    const ZT_String* GetName() const override { return target->GetName(); }
    void SetName(const char* name) override { target->SetName(name); }
    void Save(ZT_OutlineWriter& writer) const override { target->Save(writer); }
    void Load(ZT_OutlineReader& reader) override { target->Load(reader); }
    ZT_ColumnInfo* GetDefinition() const override { return target->GetDefinition(); }
    void SetDefinition(ZT_ColumnInfo* definition) override { target->SetDefinition(definition); }
    ZT_ParameterGroup* AsGroup() override { return target->AsGroup(); }

    ZT_Parameter* GetTarget() const { return target; }
    int GetShareCount() const { return counter ? *counter : 0; }

private:
    ZT_Parameter* target;
    int* counter;
};
