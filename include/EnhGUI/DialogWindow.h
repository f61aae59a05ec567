#pragma once

#include "EnhGUI/DialogGeometry.h"
#include "EnhGUI/ParamLines.h"
#include "zttl/zt_string.h"

#include <QDialog>
#include <QFont>
#include <QPointer>
#include <QPushButton>

class QWidget;

// What both parameter windows do alike when they come up.

// Makes dialog an application-modal, resizable top-level window with
// caption, system menu, minimize and maximize boxes, at the planned place
// and client size.
void PrepareDialogWindow(QDialog* dialog, QWidget* parent, const char* title, const DialogGeometry& geometry);
// A push button of the window, owned by it and shown; the id names it
// ("button<id>") for scripts and tests.
QPushButton* MakeDialogButton(QDialog* dialog, const char* caption, int id);
// The first line whose control takes the keyboard gets the focus; nothing
// happens when none does.
void FocusFirstLine(const ParamLines& lines);

// The common base of both parameter windows: a dialog holding its own lines,
// shown in the dialog's font above a band of buttons with OK at the right.
class DialogWindow : public QDialog, public ParamLines {
public:
    // Gives the line the dialog's font, then adds it as ParamLines does.
    bool AddLine(ParamLine* line, const char* label, const char* hint) override;

protected:
    // Without a parent until PrepareDialogWindow gives it one.
    DialogWindow();
    // Deletes the lines while the window is still whole.
    ~DialogWindow() override;

    // The common start of CreateDialogWindow: plans the window for
    // parameterCount lines (the lines take its margin), prepares it with the
    // title, takes the default font and removes the lines of an earlier window.
    DialogGeometry StartWindow(QWidget* parentWindow, int parameterCount);
    // Places the lines anew above the button band (those that no longer fit
    // are hidden), then the buttons.
    void ArrangeWindow();
    // Places the buttons in the band along the bottom of the client area.
    virtual void PlaceButtons(int clientWidth, int clientHeight) = 0;
    void OnControlClicked(int id) override;
    // Passes a click to the line at id - FirstControlId: lines are found by
    // position, so a line without an id before it shifts the match.
    virtual void OnParamCommand(int id);

    QFont font;
    ZT_String title;
    QPointer<QPushButton> okButton;
};
