#include "EnhGUI/ParamLine.h"

#include "EnhGUI/WindowText.h"
#include "zttl/zt_report.h"

#include <QLabel>

ParamLine::ParamLine(const char* lineName, unsigned id) : name(lineName), controlId(id) {}

// Windows already taken down with their parent are gone from the pointers.
ParamLine::~ParamLine()
{
    delete control.data();
    delete label.data();
}

void ParamLine::SetLabel(const char* text)
{
    if (IsLive(label))
        SetWindowText(label, ZT_String().Format(" %s ", text).GetString());
}

void ParamLine::SetText(const char* text)
{
    if (IsLive(control))
        SetWindowText(control, text);
}

ZT_Value ParamLine::GetValue()
{
    ZT_Value value;
    if (IsLive(control))
        value.SetText(GetWindowText(control).GetString());
    return value;
}

void ParamLine::SetFont(const QFont& font)
{
    if (label)
        label->setFont(font);
    if (control)
        control->setFont(font);
}

void ParamLine::Hide(bool hide)
{
    if (label)
        label->setVisible(!hide);
    if (control)
        control->setVisible(!hide);
}

void ParamLine::Layout(const LineRect& line, int w)
{
    ZT_Assert(IsLive(label), "include/EnhGUI/ParamLines", 101);
    ZT_Assert(IsLive(control), "include/EnhGUI/ParamLines", 102);
    const int L = line.left, T = line.top, R = line.right, B = line.bottom;
    if (layoutMode == layoutWideLabel) {
        MoveWindow(label, L, T, L + 2 * w, B);
        MoveWindow(control, R - w, T, R, B);
    } else if (layoutMode == layoutWideControl) {
        MoveWindow(label, L, T, L + w, B);
        MoveWindow(control, R - 2 * w, T, R, B);
    } else {
        const int M = (L + R) >> 1;
        MoveWindow(label, L, T, M - 5, B);
        MoveWindow(control, M + 5, T, R, B);
    }
}

// A framed caption, text vertically centred, "&" shown as it is.
bool ParamLine::CreateLabel(QWidget* parent)
{
    if (!parent)
        return false;
    auto* caption = new QLabel(QStringLiteral("  "), parent);
    caption->setTextFormat(Qt::PlainText);
    caption->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    caption->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    caption->setObjectName(QString::fromUtf8(name.GetString()) + QStringLiteral(".label"));
    caption->setGeometry(0, 0, 100, 20);
    caption->show();
    label = caption;
    return true;
}

void ParamLine::MoveWindow(QWidget* window, int left, int top, int right, int bottom)
{
    if (!window)
        return;
    window->setGeometry(left, top, right - left, bottom - top);
    window->update();
}

// Controls are found by their parameter's name, by scripts and tests alike.
void ParamLine::NameControl()
{
    if (control)
        control->setObjectName(QString::fromUtf8(name.GetString()));
}
