#include "DialogTestSupport.h"
#include "EnhGUI/ParamsDialog.h"
#include "EnhGUI/ShellBrowseDestination.h"
#include "TempDir.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

QLabel* StatusLine(QDialog* chooser)
{
    const QList<QLabel*> labels = chooser->findChildren<QLabel*>();
    return labels.isEmpty() ? nullptr : labels.last();
}

void Press(QDialog* chooser, QDialogButtonBox::StandardButton which)
{
    chooser->findChild<QDialogButtonBox*>()->button(which)->click();
}

class FolderChooser : public ::testing::Test {
protected:
    void SetUp() override
    {
        start = dir.File("start");
        other = dir.File("other");
        mkdir(start.c_str(), 0700);
        mkdir(other.c_str(), 0700);
    }
    TempDir dir;
    std::string start, other;
};

TEST_F(FolderChooser, OpensOnTheStartFolderAndFollowsTheSelection)
{
    ShellBrowseDestination chooser(nullptr, 0);
    chooser.SetFlags(ShellBrowser::onlyFileSystemFolders | ShellBrowser::withStatusText);
    chooser.SetStartFolder(start.c_str());
    std::string statusAtStart, statusAfterMove, titleWhileOpen;
    PlayWhenShown({[] {},
                   [&] { statusAtStart = StatusLine(chooser.GetChooserWindow())->text().toStdString(); },
                   [&] {
                       chooser.SetTitle("ignored while open");
                       chooser.SetSelection(other.c_str());
                   },
                   [&] {
                       statusAfterMove = StatusLine(chooser.GetChooserWindow())->text().toStdString();
                       titleWhileOpen = chooser.GetChooserWindow()->windowTitle().toStdString();
                       Press(chooser.GetChooserWindow(), QDialogButtonBox::Ok);
                   }});
    ASSERT_TRUE(chooser.Run());
    EXPECT_EQ(statusAtStart, start);
    EXPECT_EQ(statusAfterMove, other);
    EXPECT_EQ(titleWhileOpen, "Browse for Folder");
    EXPECT_EQ(chooser.GetPath().GetString(), other);
    EXPECT_EQ(chooser.GetChooserWindow(), nullptr);
    EXPECT_STREQ(chooser.GetTitle().GetString(), "Browse for Folder");
}

TEST_F(FolderChooser, CancelKeepsThePreviousPath)
{
    ShellBrowseDestination chooser(nullptr, 0);
    chooser.SetStartFolder(start.c_str());
    PlayWhenShown({[] {}, [&] { Press(chooser.GetChooserWindow(), QDialogButtonBox::Ok); }});
    ASSERT_TRUE(chooser.Run());
    chooser.SetTitle("Second look");
    chooser.SetStartFolder(other.c_str());
    std::string title;
    PlayWhenShown({[] {}, [&] {
                       title = chooser.GetChooserWindow()->windowTitle().toStdString();
                       Press(chooser.GetChooserWindow(), QDialogButtonBox::Cancel);
                   }});
    EXPECT_FALSE(chooser.Run());
    EXPECT_EQ(title, "Second look") << "settings change again once the chooser is closed";
    EXPECT_EQ(chooser.GetPath().GetString(), start);
}

TEST_F(FolderChooser, FolderLineButtonFillsItsEdit)
{
    TypedSet t("paths");
    t.Add("target", 6, start.c_str());
    ParamsDialog dialog(t.set, nullptr, nullptr);
    std::string chooserTitle;
    PlayWhenShown({[&] {
        // The chooser runs modally inside the click; it is driven from there.
        QTimer::singleShot(0, [&] {
            QWidget* chooser = ModalWindow();
            chooserTitle = chooser->windowTitle().toStdString();
            QTimer::singleShot(0, [chooser] { static_cast<QDialog*>(chooser)->accept(); });
        });
        auto* line = static_cast<FolderParamLine*>(dialog.GetLine(0));
        static_cast<QPushButton*>(line->GetButtonWindow())->click();
        dialog.GetOkButton()->click();
    }});
    ASSERT_EQ(dialog.RunModal(), 1);
    EXPECT_EQ(chooserTitle, " target ") << "the label's text, blanks included";
    EXPECT_EQ(t.Text("target"), start) << "the start folder was selected and confirmed";
}

} // namespace
