#pragma once

#include "EnhGUI/DialogWindow.h"

class ZT_ParameterGroup;

// Edits one parameter set in a modal, resizable window: a line per
// parameter and OK/Cancel along the bottom. Only OK changes the set.
class ParamsDialog : public DialogWindow {
public:
    // set is not owned and must outlive the dialog. An empty title takes the
    // set's name, and without one "Dialog".
    ParamsDialog(ZT_ParameterGroup& set, const char* title, void* unused);

    // 1 after OK, 0 after Cancel or closing, -1 when the window cannot be made.
    virtual int RunModal();
    // Builds the lines and the buttons and shows the window; false when the
    // lines cannot be built.
    virtual bool CreateDialogWindow(QWidget* parentWindow);
    // Gives the line the dialog's font and any layout override first.
    bool AddLine(ParamLine* line, const char* label, const char* hint) override;
    // Same as RunModal.
    int exec() override { return RunModal(); }

    // Every line split in halves, whatever its kind prefers.
    void SetHalvesLayout() { layoutOverride = 0; }

    // The buttons, null before the window exists.
    QPushButton* GetOkButton() const { return okButton; }
    QPushButton* GetCancelButton() const { return cancelButton; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    // The close box and Escape end the dialog as Cancel does, storing nothing.
    void closeEvent(QCloseEvent* event) override;
    void reject() override;
    // 1 stores the lines into the set and closes, 2 closes; false for other ids.
    virtual bool OnCommand(int id);
    // Traces the click, then passes it on as every dialog does.
    void OnParamCommand(int id) override;

private:
    void PlaceButtons(int clientWidth, int clientHeight) override;
    void DestroyWindow();

    QPointer<QPushButton> cancelButton;
    bool accepted = false;
    ZT_ParameterGroup* parameters;
    int layoutOverride = -1;
    bool closing = false;
};
