#pragma once

#include "EnhGUI/ParamLines.h"
#include "zttl/zt_string.h"

#include <QDialog>
#include <QFont>
#include <QPointer>
#include <QPushButton>

class ZT_ParameterGroup;

// Edits one parameter set in a modal, resizable window: a line per
// parameter and OK/Cancel along the bottom. Only OK changes the set.
class ParamsDialog : public QDialog, public ParamLines {
public:
    ParamsDialog(ZT_ParameterGroup& set, const char* title, void* unused);
    ~ParamsDialog() override;

    // 1 after OK, 0 after Cancel or closing, -1 when the window cannot be made.
    virtual int RunModal();
    virtual bool CreateDialogWindow(QWidget* parentWindow);
    bool AddLine(ParamLine* line, const char* label, const char* hint) override;
    int exec() override { return RunModal(); }

    // Every line split in halves, whatever its kind prefers.
    void SetHalvesLayout() { layoutOverride = 0; }

    QPushButton* GetOkButton() const { return okButton; }
    QPushButton* GetCancelButton() const { return cancelButton; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void reject() override;
    void OnControlClicked(int id) override;
    virtual bool OnCommand(int id);
    void OnParamCommand(int id);

private:
    void PlaceButtons(int clientWidth, int clientHeight);
    void DestroyWindow();

    QFont font;
    ZT_String title;
    QPointer<QPushButton> okButton;
    QPointer<QPushButton> cancelButton;
    bool accepted = false;
    ZT_ParameterGroup* parameters;
    int layoutOverride = -1;
    bool closing = false;
};
