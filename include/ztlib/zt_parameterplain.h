#pragma once

#include "ztlib/zt_parameter.h"

// The leaf parameter: owns its cleaned name and its value, and may be bound
// to the column it stands for.
class ZT_ParameterPlain : public ZT_Parameter {
public:
    // The name is cleaned with ToName; the value starts empty.
    explicit ZT_ParameterPlain(const char* name) : name(ToName(name)) {}
    // Copies name and value; the binding to a column is not copied.
    ZT_ParameterPlain(const ZT_ParameterPlain& other);

    // A copy owned by the caller.
    ZT_Parameter* Clone() const override { return new ZT_ParameterPlain(*this); }
    // The value itself, a copy of it, or a replacement by a copy.
    ZT_Value* GetValueRef() override { return &value; }
    ZT_Value& GetValue(ZT_Value& out) const override
    {
        out.Assign(value);
        return out;
    }
    void SetValue(const ZT_Value& newValue) override { value.Assign(newValue); }
    const ZT_String* GetName() const override { return &name; }
    // The name is cleaned with ToName.
    void SetName(const char* text) override { name = ToName(text); }
    // The bound column, not owned.
    ZT_ColumnInfo* GetDefinition() const override { return definition; }
    // Binds the column (not owned); one of another name is kept but is a failed
    // check.
    void SetDefinition(ZT_ColumnInfo* column) override;

private:
    ZT_String name;
    ZT_Value value;
    ZT_ColumnInfo* definition = nullptr; // not owned
};
