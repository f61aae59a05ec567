#include "EnhGUI/ParamLines.h"

#include "sqlite/zt_tableinfo.h"
#include "ztlib/zt_parametergroup.h"

#include <QAbstractButton>

namespace {

// Parameter kinds beyond the column types of a table definition.
constexpr int typeFolder = 6;
constexpr int typeSecret = 7;
constexpr int typeValue = 9;
constexpr int typeText2 = 10;
constexpr int typeHeading = 11;

} // namespace

ParamLines::ParamLines(QWidget* parentWindow) : parent(parentWindow) {}

ParamLines::~ParamLines()
{
    RemoveAll();
}

bool ParamLines::SetArea(const LineRect& area)
{
    const LineRect shrunk{area.left + margin, area.top + margin, area.right - margin, area.bottom - margin};
    lineRect = shrunk;
    lineRect.bottom = shrunk.top + 20;
    columnWidth = (shrunk.Width() - 10) / 3;
    nextControlId = FirstControlId;
    return true;
}

bool ParamLines::AddLine(ParamLine* line, const char* label, const char*)
{
    line->SetLabel(label);
    line->Layout(lineRect, columnWidth);
    const int id = int(line->GetControlId());
    for (QAbstractButton* button : line->ClickSources())
        QObject::connect(button, &QAbstractButton::clicked, button, [this, id] { OnControlClicked(id); });
    lines.Add(line);
    lineRect.top += lineStep;
    lineRect.bottom += lineStep;
    return true;
}

bool ParamLines::AddParameter(const ZT_ColumnInfo* definition)
{
    if (!definition)
        return false;
    const char* name = definition->GetName().GetString();
    ParamLine* line = nullptr;
    uint32_t style = 0;
    switch (definition->GetType()) {
    case columnInteger:
        line = new EditParamLine(name, unsigned(nextControlId++));
        style = editDigitsOnly | editRightAligned;
        break;
    case columnBoolean:
        line = new CheckParamLine(name, unsigned(nextControlId++));
        break;
    case columnText:
    case typeText2:
        line = new WideEditParamLine(name, unsigned(nextControlId++));
        style = editCentred;
        break;
    case columnReal:
        line = new EditParamLine(name, unsigned(nextControlId++));
        style = editRightAligned;
        break;
    case typeFolder:
        line = new FolderParamLine(name, unsigned(nextControlId++));
        break;
    case typeSecret:
        line = new WideEditParamLine(name, unsigned(nextControlId++));
        style = editMasked | editCentred;
        break;
    case typeValue:
    case columnKey:
        line = new ValueParamLine(name);
        break;
    case typeHeading:
        line = new HeadingParamLine(name);
        break;
    case columnDate:
        line = new DateParamLine(name, unsigned(nextControlId++), 0);
        break;
    case columnTime:
        line = new DateParamLine(name, unsigned(nextControlId++), 1);
        break;
    default:
        return true; // a type without a line is skipped
    }
    if (!line->Create(parent, style)) {
        delete line;
        return false;
    }
    return AddLine(line, definition->GetLabel().GetString(), "0");
}

bool ParamLines::Build(const LineRect& area, ZT_ParameterGroup& set)
{
    if (!SetArea(area))
        return false;
    for (int i = 0; i < set.GetCount(); ++i)
        if (ZT_Parameter* parameter = set.GetAt(i))
            AddParameter(parameter->GetDefinition());
    return true;
}

bool ParamLines::AddEditLine(const char* name, const char* label, const char* hint, uint32_t extraStyle)
{
    auto* line = new EditParamLine(name, unsigned(nextControlId++));
    line->Create(parent, extraStyle);
    return AddLine(line, label, hint);
}

bool ParamLines::Arrange(const LineRect& area)
{
    if (!SetArea(area))
        return false;
    int i = 0;
    for (; i < lines.GetSize() && lineRect.bottom < area.bottom; ++i) {
        if (ParamLine* line = lines.GetAt(i)) {
            line->Hide(false);
            line->Layout(lineRect, columnWidth);
        }
        lineRect.top += lineStep;
        lineRect.bottom += lineStep;
    }
    for (; i < lines.GetSize(); ++i)
        if (ParamLine* line = lines.GetAt(i))
            line->Hide(true);
    return true;
}

bool ParamLines::Exchange(bool toParameters, ZT_ParameterGroup& set)
{
    for (int i = 0; i < lines.GetSize(); ++i) {
        ParamLine* line = lines.GetAt(i);
        if (!line)
            continue;
        const char* name = line->GetName().GetString();
        if (toParameters) {
            set.SetValueOf(name, line->GetValue());
        } else {
            ZT_Value value;
            set.GetValueOf(value, name);
            line->SetText(value.GetText());
        }
    }
    return true;
}

void ParamLines::RemoveAll()
{
    lines.RemoveAll();
    lines.SetSize(0);
}
