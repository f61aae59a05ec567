#pragma once

#include "sqlite/zt_tableinfo.h"
#include "ztlib/zt_parametergroup.h"
#include "ztlib/zt_parameterplain.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <string>
#include <vector>

// A parameter set whose parameters carry any type code, each with a value.
class TypedSet {
public:
    explicit TypedSet(const char* name = "things") { set.SetName(name); }
    ~TypedSet() { definitions.RemoveAll(); }

    TypedSet& Add(const char* name, int type, const char* value = "")
    {
        auto* definition = new ZT_ColumnInfo(name, name, nullptr, type);
        definitions.Add(definition);
        auto* parameter = new ZT_ParameterPlain(name);
        parameter->SetDefinition(definition);
        if (value) { // null: the empty value, with no kind
            ZT_Value v;
            v.SetText(value);
            parameter->SetValue(v);
        }
        set.AddShared(ZT_ParameterRef(parameter));
        return *this;
    }
    std::string Text(const char* name)
    {
        ZT_Value v;
        set.GetValueOf(v, name);
        return v.GetText();
    }

    ZT_ParameterSetAuto set;

private:
    ZT_ArrayPtr<ZT_ColumnInfo> definitions;
};

// Runs steps one after another once the event loop (a dialog's modal loop)
// is running; each step sees the effect of the one before.
void PlayWhenShown(std::vector<std::function<void()>> steps);

// The active modal window, as a person would see it.
QWidget* ModalWindow();

// The text a window shows.
std::string GetWindowTextOf(const QWidget* window);
