#include "EnhGUI/ParamsDialog.h"

#include "EnhGUI/DialogGeometry.h"
#include "zttl/zt_report.h"
#include "ztlib/zt_parametergroup.h"

#include <QCloseEvent>
#include <QPushButton>

ParamsDialog::ParamsDialog(ZT_ParameterGroup& set, const char* titleText, void*)
    : parameters(&set)
{
    title = titleText;
    if (title.IsEmpty())
        title = set.GetName() ? set.GetName()->GetString() : "";
    if (title.IsEmpty())
        title = "Dialog";
}

int ParamsDialog::RunModal()
{
    if (!CreateDialogWindow(nullptr))
        return -1;
    Exchange(false, *parameters);
    QDialog::exec();
    DestroyWindow();
    return accepted ? 1 : 0;
}

bool ParamsDialog::CreateDialogWindow(QWidget* parentWindow)
{
    const DialogGeometry geometry = StartWindow(parentWindow, parameters->GetCount());
    const LineRect area{0, 0, geometry.width, geometry.height - margin - lineStep};
    if (!Build(area, *parameters))
        return false;

    okButton = MakeDialogButton(this, "OK", 1);
    cancelButton = MakeDialogButton(this, "Cancel", 2);
    okButton->setDefault(true);
    connect(okButton, &QPushButton::clicked, this, [this] { OnCommand(1); });
    connect(cancelButton, &QPushButton::clicked, this, [this] { OnCommand(2); });
    PlaceButtons(geometry.width, geometry.height);
    okButton->setFont(font);
    cancelButton->setFont(font);
    closing = false;
    show();
    FocusFirstLine(*this);
    return true;
}

bool ParamsDialog::AddLine(ParamLine* line, const char* label, const char* hint)
{
    if (layoutOverride >= 0)
        line->SetLayout(uint8_t(layoutOverride & 0xFF));
    return DialogWindow::AddLine(line, label, hint);
}

void ParamsDialog::PlaceButtons(int clientWidth, int clientHeight)
{
    const LineRect band = DialogGeometry::ButtonBand(clientWidth, clientHeight, margin, lineStep);
    const int quarter = band.Width() >> 2;
    okButton->setGeometry(LineRect{band.left, band.top, band.left + quarter, band.bottom}.ToQRect());
    cancelButton->setGeometry(LineRect{band.right - quarter, band.top, band.right, band.bottom}.ToQRect());
}

// Resizing re-places the lines; those that no longer fit are hidden.
void ParamsDialog::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    if (closing || !okButton)
        return;
    ArrangeWindow();
}

bool ParamsDialog::OnCommand(int id)
{
    if (id == 1) {
        accepted = true;
        Exchange(true, *parameters);
    }
    if (id == 1 || id == 2) {
        closing = true;
        done(id);
        return true;
    }
    return false;
}

void ParamsDialog::OnParamCommand(int id)
{
    ZT_Trace(" User set parameter %d\n", id - FirstControlId);
    DialogWindow::OnParamCommand(id);
}

// The close box and Escape end the dialog as Cancel does, storing nothing.
void ParamsDialog::closeEvent(QCloseEvent* event)
{
    closing = true;
    QDialog::closeEvent(event);
}

void ParamsDialog::reject()
{
    closing = true;
    done(0);
}

void ParamsDialog::DestroyWindow()
{
    closing = true;
    hide();
    font = QFont();
}
