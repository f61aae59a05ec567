#include "sqlite/SQLiteRowDialog.h"

#include "EnhGUI/DialogGeometry.h"
#include "sqlite/SQLBuilders.h"
#include "sqlite/zt_sqlitedatabase.h"
#include "zttl/zt_report.h"

#include <QCloseEvent>
#include <QPushButton>

#include <cstring>

namespace {

// Whether the edited row differs from the row as stored: reals by their
// exact number, texts byte for byte, anything else by its whole number.
bool RowChanged(SQLiteParameterSet& stored, SQLiteParameterSet& edited)
{
    for (int i = 0; i < edited.GetCount(); ++i) {
        ZT_Parameter* parameter = edited.GetAt(i);
        if (!parameter)
            continue;
        ZT_Value vb;
        parameter->GetValue(vb);
        ZT_Value va;
        if (ZT_Parameter* before = stored.Find(parameter->GetName()->GetString()))
            before->GetValue(va);
        if (va.IsDouble()) {
            if (va.GetDouble() != vb.GetDouble())
                return true;
        } else if (va.IsText()) {
            const char* a = va.GetString();
            const char* b = vb.GetText();
            if (*a == '\0' ? *b != '\0' : (*b == '\0' || strcmp(a, b) != 0))
                return true;
        } else if (va.GetInt() != vb.GetInt()) {
            return true;
        }
    }
    return false;
}

// Key lines are read-only and show the key padded with blanks; the row
// keeps the key it was loaded with, so an untouched row never looks changed.
void KeepStoredKeys(SQLiteParameterSet& stored, SQLiteParameterSet& edited)
{
    for (int i = 0; i < edited.GetCount(); ++i) {
        ZT_Parameter* parameter = edited.GetAt(i);
        if (!parameter || !parameter->GetDefinition() || parameter->GetDefinition()->GetType() != columnKey)
            continue;
        ZT_Value key;
        if (ZT_Parameter* before = stored.Find(parameter->GetName()->GetString()))
            parameter->SetValue(before->GetValue(key));
    }
}

} // namespace

SQLiteRowDialog::SQLiteRowDialog(ZT_SQLiteDatabase* db, SQLiteParameterSet* set, const char* where,
                                 const char* orderBy)
    : database(db), tableSet(set)
{
    tableName = tableSet->GetName()->GetString();
    if (!database)
        return;
    const ZT_String sql = tableAccess.GetTableSql(*database, tableName.GetString());
    canAppend = sql.ContainsLoosely("INTEGER PRIMARY KEY") || sql.ContainsLoosely("PRIMARY KEY INT");
    keyCount = CountKeyColumns(*tableSet);
    keyColumns = GetKeyColumnNames(*tableSet);

    ZT_String query("SELECT ");
    query.Append(keyColumns.GetString());
    query.Append(" FROM ");
    query.Append(tableName.GetString());
    if (where) {
        query.Append(" WHERE ");
        query.Append(where);
    }
    if (orderBy) {
        query.Append(" ORDER BY ");
        query.Append(orderBy);
    }
    // The query is the format text itself, as every statement of the program.
    if (keyCount == 1) {
        ZT_SQLiteList list;
        if (database->QueryList(list, query.GetString()))
            for (int i = 0; i < list.GetRowCount(); ++i)
                keys.Add(list.GetValue(i));
    } else {
        ZT_SQLiteTable ignored;
        database->QueryTable(ignored, query.GetString());
    }
    current = 0;
    title = tableName;
    if (title.IsEmpty())
        title = "Table Edit";
}

void SQLiteRowDialog::RunModal()
{
    if (!CreateDialogWindow(nullptr))
        return;
    TransferRow(false);
    QDialog::exec();
    hide();
}

bool SQLiteRowDialog::CreateDialogWindow(QWidget* parentWindow)
{
    const DialogGeometry geometry = StartWindow(parentWindow, tableSet->GetCount());
    // Narrowed here and once more by Build: twice the margin until the first resize.
    LineRect area{0, 0, geometry.width, geometry.height - margin - lineStep};
    area.left += margin;
    area.right -= margin;
    if (!Build(area, *tableSet))
        return false;

    previousButton = MakeDialogButton(this, "<<", idPrevious);
    nextButton = MakeDialogButton(this, ">>", idNext);
    okButton = MakeDialogButton(this, "OK", idOk);
    connect(previousButton, &QPushButton::clicked, this, [this] { OnCommand(idPrevious); });
    connect(nextButton, &QPushButton::clicked, this, [this] { OnCommand(idNext); });
    connect(okButton, &QPushButton::clicked, this, [this] { OnCommand(idOk); });
    PlaceButtons(geometry.width, geometry.height);
    okButton->setFont(font);
    previousButton->setFont(font);
    nextButton->setFont(font);
    show();
    FocusFirstLine(*this);
    return true;
}

QPushButton* SQLiteRowDialog::GetButton(int id) const
{
    switch (id) {
    case idOk:
        return okButton;
    case idPrevious:
        return previousButton;
    case idNext:
        return nextButton;
    default:
        return nullptr;
    }
}

void SQLiteRowDialog::PlaceButtons(int clientWidth, int clientHeight)
{
    const LineRect band = DialogGeometry::ButtonBand(clientWidth, clientHeight, margin, lineStep);
    const int quarter = band.Width() >> 2;
    const LineRect previous{band.left, band.top, band.left + quarter, band.bottom};
    previousButton->setGeometry(previous.ToQRect());
    nextButton->setGeometry(previous.ToQRect().translated(quarter, 0));
    okButton->setGeometry(LineRect{band.right - quarter, band.top, band.right, band.bottom}.ToQRect());
}

void SQLiteRowDialog::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    if (!okButton || !isVisible())
        return;
    ArrangeWindow();
}

void SQLiteRowDialog::TransferRow(bool store)
{
    if (keyCount != 1) {
        ZT_Assert(false, "include/sqlite/SQLiteRowDialog", 189); // a fixed number, like every check
        return;
    }
    const char* key = keys.GetAt(current).text;
    ZT_String condition(keyColumns);
    condition.Append("=\"");
    condition.Append(key ? key : "");
    condition.Append("\"");

    if (store) {
        SQLiteParameterSet stored = tableAccess.LoadRow(*database, tableName.GetString(), condition.GetString());
        SQLiteParameterSet edited(stored);
        Exchange(true, edited);
        KeepStoredKeys(stored, edited);
        if (RowChanged(stored, edited))
            tableAccess.UpdateRow(*database, edited, 0);
    } else {
        SQLiteParameterSet row = tableAccess.LoadRow(*database, tableName.GetString(), condition.GetString());
        Exchange(false, row);
    }
    UpdateButtonsAndCaption();
}

void SQLiteRowDialog::UpdateButtonsAndCaption()
{
    if (nextButton)
        nextButton->setEnabled(current + 1 < keys.GetSize() || canAppend);
    if (previousButton)
        previousButton->setEnabled(current > 0);
    setWindowTitle(QString::fromUtf8(
        ZT_String().Format("%s [%d/%d]", title.GetString(), current + 1, keys.GetSize()).GetString()));
}

// A row of default values; the database gives it its key.
bool SQLiteRowDialog::AppendRow()
{
    SQLiteParameterSet row = tableAccess.CreateParameterSet(*database, tableName.GetString(), 255);
    if (!tableAccess.InsertRow(*database, row, 0))
        return false;
    const ZT_String key = ZT_String().Format("%d", database->LastInsertRowId());
    keys.Add(key.GetString());
    current = keys.FindIndex(key.GetString());
    TransferRow(false);
    return true;
}

bool SQLiteRowDialog::OnCommand(int id)
{
    switch (id) {
    case idPrevious:
        TransferRow(true);
        if (current <= 0)
            return false;
        --current;
        TransferRow(false);
        return true;
    case idNext:
        TransferRow(true);
        if (current + 1 < keys.GetSize()) {
            ++current;
            TransferRow(false);
            return true;
        }
        return canAppend && AppendRow();
    case idOk:
        TransferRow(true);
        Exchange(true, *tableSet);
        [[fallthrough]];
    case idCancel:
        done(id);
        return true;
    default:
        return false;
    }
}

// Closing and Escape end the editor without saving the row on screen.
void SQLiteRowDialog::closeEvent(QCloseEvent* event)
{
    event->ignore();
    OnCommand(idCancel);
}

void SQLiteRowDialog::reject()
{
    OnCommand(idCancel);
}
