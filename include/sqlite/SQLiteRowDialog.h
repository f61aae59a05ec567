#pragma once

#include "EnhGUI/ParamLines.h"
#include "sqlite/SQLiteParameters.h"
#include "zttl/zt_arrayobval.h"

#include <QDialog>
#include <QFont>
#include <QPointer>
#include <QPushButton>

class ZT_SQLiteDatabase;

// Pages through the rows of one table, one row at a time, addressed by the
// table's single key column: "<<" and ">>" save the row on screen when it
// changed and move; ">>" past the last row of a table with an integer
// primary key appends a row; "OK" saves and closes. There is no Cancel:
// closing the window leaves only the row on screen unsaved.
class SQLiteRowDialog : public QDialog, public ParamLines {
public:
    enum ButtonId { idOk = 1, idCancel = 2, idPrevious = 16, idNext = 17 };

    SQLiteRowDialog(ZT_SQLiteDatabase* database, SQLiteParameterSet* tableSet, const char* where,
                    const char* orderBy);
    ~SQLiteRowDialog() override;

    void RunModal();
    virtual bool CreateDialogWindow(QWidget* parentWindow);
    virtual void TransferRow(bool store);
    bool AddLine(ParamLine* line, const char* label, const char* hint) override;

    int GetCurrent() const { return current; }
    int GetKeyCount() const { return keys.GetSize(); }
    bool CanAppend() const { return canAppend; }
    QPushButton* GetButton(int id) const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void reject() override;
    void OnControlClicked(int id) override;
    virtual bool OnCommand(int id);
    void OnParamCommand(int id);

private:
    bool AppendRow();
    void PlaceButtons(int clientWidth, int clientHeight);
    void UpdateButtonsAndCaption();

    ZT_String title;
    QPointer<QPushButton> okButton;
    QPointer<QPushButton> nextButton;
    QPointer<QPushButton> previousButton;
    QFont font;
    ZT_String tableName;
    ZT_StringList keys;
    int current = 0;
    bool canAppend = false;
    int keyCount = 0;
    ZT_String keyColumns;
    ZT_SQLiteDatabase* database;
    SQLiteParameterSet* tableSet;
    SQLiteParameters tableAccess;
};
