#pragma once

#include "ztlib/zt_parameter.h"

// The leaf parameter: owns its cleaned name and its value, and may be bound
// to the column it stands for.
class ZT_ParameterPlain : public ZT_Parameter {
public:
    explicit ZT_ParameterPlain(const char* name) : name(ToName(name)) {}
    // Copies name and value; the binding to a column is not copied.
    ZT_ParameterPlain(const ZT_ParameterPlain& other);

    ZT_Parameter* Clone() const override { return new ZT_ParameterPlain(*this); }
    ZT_Value* GetValueRef() override { return &value; }
    ZT_Value& GetValue(ZT_Value& out) const override
    {
        out.Assign(value);
        return out;
    }
    void SetValue(const ZT_Value& newValue) override { value.Assign(newValue); }
    const ZT_String* GetName() const override { return &name; }
    void SetName(const char* text) override { name = ToName(text); }
    ZT_ColumnInfo* GetDefinition() const override { return definition; }
    void SetDefinition(ZT_ColumnInfo* column) override;

private:
    ZT_String name;
    ZT_Value value;
    ZT_ColumnInfo* definition = nullptr; // not owned
};
