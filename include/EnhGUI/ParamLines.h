#pragma once

#include "EnhGUI/LineRect.h"
#include "EnhGUI/ParamLine.h"
#include "zttl/zt_arrayimp.h"

class QWidget;
class ZT_ColumnInfo;
class ZT_ParameterGroup;

// A parameter set shown as a stack of lines in a parent window: one line
// per parameter, the control chosen by the parameter's column type, values
// exchanged by parameter name. Lines are placed in three columns of width
// w; lines that do not fit the area are hidden, never scrolled.
class ParamLines {
public:
    static constexpr int FirstControlId = 0x2000;
    static constexpr int LastCommandId = 0x2080;

    explicit ParamLines(QWidget* parent);
    ParamLines(const ParamLines&) = delete;
    ParamLines& operator=(const ParamLines&) = delete;
    virtual ~ParamLines();

    virtual bool Exchange(bool toParameters, ZT_ParameterGroup& set);
    virtual bool Build(const LineRect& area, ZT_ParameterGroup& set);
    virtual void RemoveAll();
    virtual bool SetArea(const LineRect& area);
    virtual bool AddParameter(const ZT_ColumnInfo* definition);
    virtual bool AddEditLine(const char* name, const char* label, const char* hint, uint32_t extraStyle);
    virtual bool AddLine(ParamLine* line, const char* label, const char* hint);
    bool Arrange(const LineRect& area);

    int GetLineCount() const { return lines.GetSize(); }
    ParamLine* GetLine(int index) const { return lines.IsValidIndex(index) ? lines.GetAt(index) : nullptr; }
    const LineRect& GetLineRect() const { return lineRect; }
    int GetColumnWidth() const { return columnWidth; }
    int GetMargin() const { return margin; }
    void SetMargin(int pixels) { margin = pixels; }
    int GetLineStep() const { return lineStep; }

protected:
    // A click on a line's button, by control id; the dialogs act on it.
    virtual void OnControlClicked(int) {}

    int nextControlId = FirstControlId;
    int margin = 10;
    LineRect lineRect;
    int columnWidth = 0;
    int lineStep = 24;
    QWidget* parent;
    ZT_ArrayPtr<ParamLine> lines;
};
