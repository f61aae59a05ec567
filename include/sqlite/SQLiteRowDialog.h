#pragma once

#include "EnhGUI/DialogWindow.h"
#include "sqlite/SQLiteParameters.h"
#include "zttl/zt_arrayobval.h"

class ZT_SQLiteDatabase;

// Pages through the rows of one table, one row at a time, addressed by the
// table's single key column: "<<" and ">>" save the row on screen when it
// changed and move; ">>" past the last row of a table with an integer
// primary key appends a row; "OK" saves and closes. There is no Cancel:
// closing the window leaves only the row on screen unsaved.
class SQLiteRowDialog : public DialogWindow {
public:
    // Command ids of the buttons; idCancel has no button (closing sends it).
    enum ButtonId { idOk = 1, idCancel = 2, idPrevious = 16, idNext = 17 };

    // Neither database nor tableSet is owned; both must outlive the dialog. The
    // keys of the rows that match where (no "WHERE"; null for all), in orderBy
    // order (null for none), are read here. Paging needs exactly one key column;
    // with any other count the key list stays empty.
    SQLiteRowDialog(ZT_SQLiteDatabase* database, SQLiteParameterSet* tableSet, const char* where,
                    const char* orderBy);

    // Shows the first row and returns when the dialog closes.
    void RunModal();
    // Builds one line per parameter of the set and the three buttons; false when
    // a line cannot be made.
    virtual bool CreateDialogWindow(QWidget* parentWindow);
    // store: saves the row on screen when it differs from the stored one (keys
    // always as stored); otherwise loads the current row onto the screen. A
    // failed check without a single key column.
    virtual void TransferRow(bool store);

    // 0-based index of the row on screen, the number of rows, and whether ">>"
    // past the last row may append one.
    int GetCurrent() const { return current; }
    int GetKeyCount() const { return keys.GetSize(); }
    bool CanAppend() const { return canAppend; }
    // The button of idOk, idPrevious or idNext, or null (also before the window exists).
    QPushButton* GetButton(int id) const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    // Closing and Escape end the dialog without saving the row on screen.
    void closeEvent(QCloseEvent* event) override;
    void reject() override;
    // Handles a button id; false when it could not move (first row, last row
    // without append) or for an unknown id. idOk also copies the row on screen
    // into the caller's set.
    virtual bool OnCommand(int id);

private:
    // Inserts a row of defaults, which the database gives its key, and shows it.
    bool AppendRow();
    void PlaceButtons(int clientWidth, int clientHeight) override;
    void UpdateButtonsAndCaption();

    QPointer<QPushButton> nextButton;
    QPointer<QPushButton> previousButton;
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
