// The line kinds: edit, check box, date, read-only value and heading.
#include "EnhGUI/ParamLine.h"

#include "EnhGUI/WindowText.h"
#include "zttl/zt_parse.h"
#include "zttl/zt_report.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QTimeEdit>

namespace {

QLabel* MakeStatic(QWidget* parent, Qt::Alignment alignment)
{
    auto* text = new QLabel(parent);
    text->setTextFormat(Qt::PlainText);
    text->setAlignment(alignment | Qt::AlignVCenter);
    text->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    text->setGeometry(0, 0, 100, 20);
    text->show();
    return text;
}

} // namespace

EditParamLine::EditParamLine(const char* lineName, unsigned id) : ParamLine(lineName, id)
{
    layoutMode = layoutWideLabel;
}

bool EditParamLine::Create(QWidget* parent, uint32_t extraStyle)
{
    if (!CreateLabel(parent))
        return false;
    auto* edit = new QLineEdit(parent);
    if (extraStyle & editDigitsOnly)
        edit->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), edit));
    if (extraStyle & editCentred)
        edit->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    else if (extraStyle & editRightAligned)
        edit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    if (extraStyle & editMasked)
        edit->setEchoMode(QLineEdit::Password);
    edit->setGeometry(0, 0, 100, 20);
    edit->show();
    control = edit;
    NameControl();
    return true;
}

WideEditParamLine::WideEditParamLine(const char* lineName, unsigned id) : EditParamLine(lineName, id)
{
    layoutMode = layoutWideControl;
}

// The check box carries its own caption, on the left of the box.
bool CheckParamLine::Create(QWidget* parent, uint32_t)
{
    if (!parent)
        return false;
    auto* box = new QCheckBox(parent);
    box->setLayoutDirection(Qt::RightToLeft);
    box->setGeometry(0, 0, 100, 20);
    box->show();
    control = box;
    NameControl();
    return true;
}

void CheckParamLine::SetLabel(const char* text)
{
    if (IsLive(control))
        SetWindowText(control, text);
}

// Only the whole-number reading counts: "TRUE" checks the box, "yes" does not.
void CheckParamLine::SetText(const char* text)
{
    if (!IsLive(control))
        return;
    ZT_Value value;
    value.SetText(text);
    static_cast<QCheckBox*>(control.data())->setChecked(value.GetInt() != 0);
}

ZT_Value CheckParamLine::GetValue()
{
    ZT_Value value;
    if (IsLive(control))
        value.SetInt(static_cast<QCheckBox*>(control.data())->isChecked() ? 1 : 0);
    return value;
}

void CheckParamLine::Layout(const LineRect& line, int)
{
    if (!IsLive(control))
        return;
    Hide(false);
    MoveWindow(control, line.left, line.top, line.right, line.bottom);
}

QList<QAbstractButton*> CheckParamLine::ClickSources() const
{
    if (auto* box = qobject_cast<QCheckBox*>(control.data()))
        return {box};
    return {};
}

DateParamLine::DateParamLine(const char* lineName, unsigned id, int timeFlag)
    : ParamLine(lineName, id), timeOfDay(timeFlag)
{
    layoutMode = layoutWideLabel;
}

bool DateParamLine::Create(QWidget* parent, uint32_t)
{
    if (!CreateLabel(parent))
        return false;
    QDateTimeEdit* picker = nullptr;
    if (timeOfDay) {
        picker = new QTimeEdit(QTime::currentTime(), parent);
        picker->setDisplayFormat(QStringLiteral("HH:mm:ss"));
    } else {
        picker = new QDateEdit(QDate::currentDate(), parent);
        picker->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
        picker->setCalendarPopup(true);
    }
    picker->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    picker->setGeometry(0, 0, 100, 20);
    picker->show();
    control = picker;
    NameControl();
    return true;
}

// Like the platform picker, an impossible date (month or day 0 included)
// leaves the picker on the date it shows.
void DateParamLine::ShowDate(int year, int month, int day)
{
    const QDate date(year, month, day);
    if (date.isValid())
        static_cast<QDateTimeEdit*>(control.data())->setDate(date);
}

// Time-of-day lines are shown but never loaded or stored.
void DateParamLine::SetText(const char* text)
{
    if (!IsLive(control))
        return;
    if (timeOfDay) {
        ShowDate(0, 0, 0);
        return;
    }
    const ZT_String value(text);
    const int year = ParseInt(value.PickByMask("YYYY-MM-DD", 'Y').GetString());
    const int month = ParseInt(value.PickByMask("YYYY-MM-DD", 'M').GetString());
    const int day = ParseInt(value.PickByMask("YYYY-MM-DD", 'D').GetString());
    ShowDate(year, month, day);
}

ZT_Value DateParamLine::GetValue()
{
    ZT_Value value;
    if (timeOfDay || !IsLive(control))
        return value;
    const QDate date = static_cast<QDateTimeEdit*>(control.data())->date();
    value.SetText(ZT_String().Format("%04d-%02d-%02d", date.year(), date.month(), date.day()).GetString());
    return value;
}

ValueParamLine::ValueParamLine(const char* lineName) : ParamLine(lineName, noControlId)
{
    layoutMode = layoutWideLabel;
}

bool ValueParamLine::Create(QWidget* parent, uint32_t)
{
    if (!CreateLabel(parent))
        return false;
    control = MakeStatic(parent, Qt::AlignRight);
    NameControl();
    return true;
}

// Shown with a blank on each side, and read back with them.
void ValueParamLine::SetText(const char* text)
{
    if (IsLive(control))
        SetWindowText(control, ZT_String().Format(" %s ", text).GetString());
}

HeadingParamLine::HeadingParamLine(const char* lineName) : ParamLine(lineName, noControlId)
{
    layoutMode = layoutWideLabel;
}

bool HeadingParamLine::Create(QWidget* parent, uint32_t)
{
    return CreateLabel(parent);
}

void HeadingParamLine::Layout(const LineRect& line, int)
{
    ZT_Assert(IsLive(label), "include/EnhGUI/ParamLines", 350);
    MoveWindow(label, line.left, line.top, line.right, line.bottom);
}
