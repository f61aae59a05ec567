#include "DatabaseFile.h"
#include "DialogTestSupport.h"
#include "MessageCapture.h"
#include "Rowkeeper.h"
#include "TempDir.h"
#include "sqlite/SQLiteParameters.h"
#include "sqlite/SQLiteRowDialog.h"

#include <QLineEdit>
#include <gtest/gtest.h>

namespace {

// The row editor on files of both generations.
class RowDialog : public ::testing::TestWithParam<int> {
protected:
    void Open(const std::string& sql)
    {
        path = dir.File("rows.db");
        database = CreateAndReopen(path, GetParam(), sql);
        ASSERT_NE(database, nullptr);
    }
    std::string Rows(const std::string& sql) { return Rowkeeper({"--query-tab", path, sql}).out; }
    static QLineEdit* Edit(SQLiteRowDialog& dialog, int line)
    {
        return qobject_cast<QLineEdit*>(dialog.GetLine(line)->GetControlWindow());
    }
    static std::string State(SQLiteRowDialog& dialog)
    {
        std::string s = dialog.windowTitle().toStdString();
        s += dialog.GetButton(SQLiteRowDialog::idPrevious)->isEnabled() ? " <<" : " --";
        s += dialog.GetButton(SQLiteRowDialog::idNext)->isEnabled() ? " >>" : " --";
        return s;
    }

    TempDir dir;
    std::string path;
    DatabaseHandle database;
    SQLiteParameters parameters;
};

const char* threeRows = "CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT);"
                        "INSERT INTO t VALUES(1, 'a'); INSERT INTO t VALUES(2, 'b'); INSERT INTO t VALUES(3, 'c')";

TEST_P(RowDialog, PagesThroughRowsAndAppendsPastTheLast)
{
    Open(threeRows);
    SQLiteParameterSet set = parameters.LoadRow(*database, "t", "");
    SQLiteRowDialog dialog(database.get(), &set, nullptr, nullptr);
    ASSERT_EQ(dialog.GetKeyCount(), 3);
    EXPECT_TRUE(dialog.CanAppend());
    std::vector<std::string> seen;
    auto press = [&](int id) { dialog.GetButton(id)->click(); };
    PlayWhenShown({[&] { seen.push_back(State(dialog) + " " + Edit(dialog, 1)->text().toStdString()); },
                   [&] { press(SQLiteRowDialog::idNext); },
                   [&] { press(SQLiteRowDialog::idNext); },
                   [&] { seen.push_back(State(dialog) + " " + Edit(dialog, 1)->text().toStdString()); },
                   [&] { press(SQLiteRowDialog::idNext); },
                   [&] { seen.push_back(State(dialog) + " " + Edit(dialog, 1)->text().toStdString()); },
                   [&] { press(SQLiteRowDialog::idOk); }});
    dialog.RunModal();
    EXPECT_EQ(seen, (std::vector<std::string>{"t [1/3] -- >> a", "t [3/3] << >> c", "t [4/4] << >> "}));
    EXPECT_EQ(Rows("SELECT id, name FROM t WHERE id > 3"), "4\t\n");
}

TEST_P(RowDialog, OnlyChangedRowsAreWrittenAndTheRowOnScreenNotOnClose)
{
    Open(threeRows);
    SQLiteParameterSet set = parameters.LoadRow(*database, "t", "");
    SQLiteRowDialog dialog(database.get(), &set, nullptr, nullptr);
    MessageCapture trace;
    int updatesBeforeEdit = -1;
    PlayWhenShown({[&] { dialog.GetButton(SQLiteRowDialog::idNext)->click(); },
                   [&] { dialog.GetButton(SQLiteRowDialog::idPrevious)->click(); },
                   [&] { updatesBeforeEdit = trace.Count("UPDATE"); },
                   [&] { Edit(dialog, 1)->setText("A"); },
                   [&] { dialog.GetButton(SQLiteRowDialog::idNext)->click(); },
                   [&] { Edit(dialog, 1)->setText("B"); },
                   [&] { dialog.close(); }});
    dialog.RunModal();
    EXPECT_EQ(updatesBeforeEdit, 0) << "paging alone writes nothing";
    EXPECT_EQ(trace.Count("UPDATE"), 1);
    EXPECT_EQ(Rows("SELECT id, name FROM t ORDER BY id"), "1\tA\n2\tb\n3\tc\n") << "the row on screen is not saved on close";
}

TEST_P(RowDialog, OkSavesTheRowOnScreen)
{
    Open(threeRows);
    SQLiteParameterSet set = parameters.LoadRow(*database, "t", "");
    SQLiteRowDialog dialog(database.get(), &set, nullptr, nullptr);
    PlayWhenShown({[&] { dialog.GetButton(SQLiteRowDialog::idNext)->click(); },
                   [&] { Edit(dialog, 1)->setText("50%% off, 10% o"); },
                   [&] { dialog.GetButton(SQLiteRowDialog::idOk)->click(); }});
    dialog.RunModal();
    EXPECT_EQ(Rows("SELECT id, name FROM t WHERE id = 2"), "2\t50% off, 10\n")
        << "values go through the format engine on their way to the database";
}

TEST_P(RowDialog, WithoutAnIntegerKeyTheLastRowEndsPaging)
{
    Open("CREATE TABLE t(id INT PRIMARY KEY, name TEXT); INSERT INTO t VALUES(1, 'a'); "
         "INSERT INTO t VALUES(2, 'b')");
    SQLiteParameterSet set = parameters.LoadRow(*database, "t", "");
    SQLiteRowDialog dialog(database.get(), &set, nullptr, nullptr);
    EXPECT_FALSE(dialog.CanAppend());
    std::string atEnd;
    PlayWhenShown({[&] { dialog.GetButton(SQLiteRowDialog::idNext)->click(); },
                   [&] { atEnd = State(dialog); },
                   [&] { dialog.GetButton(SQLiteRowDialog::idOk)->click(); }});
    dialog.RunModal();
    EXPECT_EQ(atEnd, "t [2/2] << --");
}

TEST_P(RowDialog, CaptionCountsAllRows)
{
    std::string sql = "CREATE TABLE people(id INTEGER PRIMARY KEY, name TEXT);";
    for (int i = 1; i <= 41; ++i)
        sql += "INSERT INTO people(name) VALUES('p" + std::to_string(i) + "');";
    Open(sql);
    SQLiteParameterSet set = parameters.LoadRow(*database, "people", "");
    SQLiteRowDialog dialog(database.get(), &set, nullptr, nullptr);
    std::string caption;
    PlayWhenShown({[&] { dialog.GetButton(SQLiteRowDialog::idNext)->click(); },
                   [&] { dialog.GetButton(SQLiteRowDialog::idNext)->click(); },
                   [&] { caption = dialog.windowTitle().toStdString(); },
                   [&] { dialog.close(); }});
    dialog.RunModal();
    EXPECT_EQ(caption, "people [3/41]");
}

TEST_P(RowDialog, WhereTextRestrictsTheReachableRows)
{
    Open(threeRows);
    SQLiteParameterSet set = parameters.LoadRow(*database, "t", "");
    SQLiteRowDialog dialog(database.get(), &set, "id >= 2", "id DESC");
    ASSERT_EQ(dialog.GetKeyCount(), 2);
    std::string first;
    PlayWhenShown({[&] { first = Edit(dialog, 1)->text().toStdString(); }, [&] { dialog.close(); }});
    dialog.RunModal();
    EXPECT_EQ(first, "c");
}

TEST_P(RowDialog, SeveralKeysLeaveTheLinesAsBuilt)
{
    Open("CREATE TABLE t(id INTEGER PRIMARY KEY, code TEXT UNIQUE, name TEXT); INSERT INTO t VALUES(1, 'x', 'a')");
    SQLiteParameterSet set = parameters.LoadRow(*database, "t", "");
    SQLiteRowDialog dialog(database.get(), &set, nullptr, nullptr);
    MessageCapture trace;
    std::string state;
    PlayWhenShown({[&] { state = State(dialog); }, [&] { dialog.GetButton(SQLiteRowDialog::idOk)->click(); }});
    dialog.RunModal();
    EXPECT_EQ(dialog.GetKeyCount(), 0);
    EXPECT_EQ(state, "t << >>") << "plain title, both paging buttons enabled";
    EXPECT_EQ(trace.Count("UPDATE"), 0);
}

INSTANTIATE_TEST_SUITE_P(Generations, RowDialog, ::testing::Values(2, 3),
                         [](const auto& info) { return "SQLite" + std::to_string(info.param); });

} // namespace
