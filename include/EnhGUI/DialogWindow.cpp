#include "EnhGUI/DialogWindow.h"

#include "EnhGUI/ParamLines.h"
#include "EnhGUI/WindowMetrics.h"

#include <QDialog>
#include <QPushButton>

void PrepareDialogWindow(QDialog* dialog, QWidget* parent, const char* title, const DialogGeometry& geometry)
{
    dialog->setParent(parent, Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                  Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
    // Modal from the moment it is shown, before its modal loop starts.
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->setWindowTitle(QString::fromUtf8(title));
    dialog->setSizeGripEnabled(false);
    dialog->move(geometry.position);
    dialog->resize(geometry.width, geometry.height);
}

QPushButton* MakeDialogButton(QDialog* dialog, const char* caption, int id)
{
    auto* button = new QPushButton(QString::fromUtf8(caption), dialog);
    button->setObjectName(QStringLiteral("button%1").arg(id));
    button->show();
    return button;
}

void FocusFirstLine(const ParamLines& lines)
{
    for (int i = 0; i < lines.GetLineCount(); ++i) {
        QWidget* control = lines.GetLine(i) ? lines.GetLine(i)->GetControlWindow() : nullptr;
        if (control && control->focusPolicy() & Qt::TabFocus) {
            control->window()->activateWindow();
            control->setFocus(Qt::TabFocusReason);
            return;
        }
    }
}

DialogWindow::DialogWindow() : QDialog(nullptr), ParamLines(this) {}

DialogWindow::~DialogWindow()
{
    RemoveAll();
}

DialogGeometry DialogWindow::StartWindow(QWidget* parentWindow, int parameterCount)
{
    const DialogGeometry geometry = DialogGeometry::For(parameterCount, lineStep);
    margin = geometry.margin;
    PrepareDialogWindow(this, parentWindow, title.GetString(), geometry);
    font = WindowMetrics::DefaultGuiFont();
    RemoveAll();
    return geometry;
}

bool DialogWindow::AddLine(ParamLine* line, const char* label, const char* hint)
{
    line->SetFont(font);
    return ParamLines::AddLine(line, label, hint);
}

void DialogWindow::ArrangeWindow()
{
    LineRect area = LineRect::FromQRect(rect());
    area.bottom -= margin + lineStep;
    Arrange(area);
    PlaceButtons(width(), height());
}

void DialogWindow::OnControlClicked(int id)
{
    if (id >= FirstControlId && id <= LastCommandId)
        OnParamCommand(id);
}

void DialogWindow::OnParamCommand(int id)
{
    if (ParamLine* line = GetLine(id - FirstControlId))
        line->OnAction();
}
