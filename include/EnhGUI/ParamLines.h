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
    // Control ids handed to the lines count up from FirstControlId; clicks up to
    // LastCommandId are passed on to the line.
    static constexpr int FirstControlId = 0x2000;
    static constexpr int LastCommandId = 0x2080;

    // The lines' windows are made in parent, which is not owned.
    explicit ParamLines(QWidget* parent);
    ParamLines(const ParamLines&) = delete;
    ParamLines& operator=(const ParamLines&) = delete;
    // Deletes the lines.
    virtual ~ParamLines();

    // Copies values by line name: into the set's parameters, or from them onto the
    // screen (as text). Always true.
    virtual bool Exchange(bool toParameters, ZT_ParameterGroup& set);
    // Starts over in area (SetArea) and adds a line for each parameter bound to a
    // column; parameters without a line kind are skipped, as are lines that fail.
    virtual bool Build(const LineRect& area, ZT_ParameterGroup& set);
    // Deletes every line and its windows.
    virtual void RemoveAll();
    // Plans lines from the top of area shrunk by the margin: the first line 20
    // pixels high, column width a third of the width less 10. Restarts the
    // control ids.
    virtual bool SetArea(const LineRect& area);
    // Adds the line the column type asks for; a type without a line kind adds
    // nothing but answers true. False for a null definition or a failed Create.
    virtual bool AddParameter(const ZT_ColumnInfo* definition);
    // Adds an edit line with EditStyle bits.
    virtual bool AddEditLine(const char* name, const char* label, const char* hint, uint32_t extraStyle);
    // Takes ownership of line, labels and places it at the next line position and
    // connects its click sources; hint is not used.
    virtual bool AddLine(ParamLine* line, const char* label, const char* hint);
    // Places the lines anew in area; lines that do not fit are hidden.
    bool Arrange(const LineRect& area);

    // Lines (0-based, null for a bad index; owned here) and the layout in use.
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
