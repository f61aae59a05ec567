#include "DialogTestSupport.h"
#include "EnhGUI/ParamsDialog.h"
#include "EnhGUI/WindowMetrics.h"
#include "MessageCapture.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

namespace {

QLineEdit* Edit(ParamsDialog& dialog, int line)
{
    return qobject_cast<QLineEdit*>(dialog.GetLine(line)->GetControlWindow());
}

TEST(ParamsDialog, OkStoresTheControlsIntoTheSet)
{
    TypedSet t("person");
    t.Add("id", columnKey, "3").Add("name", columnText, "Ann").Add("weight", columnReal, "52.5");
    ParamsDialog dialog(t.set, nullptr, nullptr);
    PlayWhenShown({[&] { Edit(dialog, 1)->setText("Bea"); },
                   [&] { Edit(dialog, 2)->clear(); },
                   [&] { QTest::mouseClick(dialog.GetOkButton(), Qt::LeftButton); }});
    EXPECT_EQ(dialog.RunModal(), 1);
    EXPECT_EQ(t.Text("name"), "Bea");
    EXPECT_EQ(t.Text("weight"), "") << "an emptied edit stores an empty text";
    EXPECT_EQ(t.Text("id"), " 3 ");
}

TEST(ParamsDialog, CancelCloseAndEscapeLeaveTheSetUntouched)
{
    for (const char* way : {"cancel", "close", "escape"}) {
        TypedSet t("person");
        t.Add("name", columnText, "Ann");
        ParamsDialog dialog(t.set, nullptr, nullptr);
        const std::string how = way;
        PlayWhenShown({[&] { Edit(dialog, 0)->setText("Bea"); },
                       [&] {
                           if (how == "cancel")
                               QTest::mouseClick(dialog.GetCancelButton(), Qt::LeftButton);
                           else if (how == "close")
                               dialog.close();
                           else
                               QTest::keyClick(Edit(dialog, 0), Qt::Key_Escape);
                       }});
        EXPECT_EQ(dialog.RunModal(), 0) << way;
        EXPECT_EQ(t.Text("name"), "Ann") << way;
    }
}

TEST(ParamsDialog, EnterAcceptsAndTabWalksTheLinesInOrder)
{
    TypedSet t("person");
    t.Add("id", columnKey, "3").Add("name", columnText, "Ann").Add("weight", columnReal, "1");
    ParamsDialog dialog(t.set, nullptr, nullptr);
    QWidget* firstFocus = nullptr;
    QWidget* secondFocus = nullptr;
    PlayWhenShown({[&] { firstFocus = dialog.focusWidget(); },
                   [&] { QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab); },
                   [&] { secondFocus = dialog.focusWidget(); },
                   [&] { QTest::keyClick(dialog.focusWidget(), Qt::Key_Return); }});
    EXPECT_EQ(dialog.RunModal(), 1);
    EXPECT_EQ(firstFocus, dialog.GetLine(1)->GetControlWindow()) << "the key value line takes no focus";
    EXPECT_EQ(secondFocus, dialog.GetLine(2)->GetControlWindow());
}

TEST(ParamsDialog, WindowIsSizedFromTheParameterCount)
{
    TypedSet t("person");
    t.Add("id", columnKey, "3").Add("name", columnText, "Ann").Add("weight", columnReal, "52.5");
    ParamsDialog dialog(t.set, nullptr, nullptr);
    ASSERT_TRUE(dialog.CreateDialogWindow(nullptr));
    const int margin = WindowMetrics::FrameSize();
    const int minimum = WindowMetrics::MinimumWindowHeight() + WindowMetrics::IconHeight() +
                        4 * WindowMetrics::ScrollBarHeight();
    const int content = 24 + 3 * margin + 24 * 3;
    EXPECT_EQ(dialog.height(), std::max(content, minimum));
    EXPECT_EQ(dialog.width(), WindowMetrics::MaximizedSize().width() / 4);
    EXPECT_EQ(dialog.GetMargin(), margin);

    const QRect ok = dialog.GetOkButton()->geometry();
    const QRect cancel = dialog.GetCancelButton()->geometry();
    const int quarter = (dialog.width() - 2 * margin) >> 2;
    EXPECT_EQ(ok, QRect(margin, dialog.height() - margin - 24, quarter, 24));
    EXPECT_EQ(cancel.right() + 1, dialog.width() - margin);
    EXPECT_EQ(cancel.width(), quarter);
    EXPECT_EQ(dialog.GetLine(0)->GetControlWindow()->geometry().top(), margin);
    dialog.close();
}

TEST(ParamsDialog, ShrinkingHidesTrailingLinesAndGrowingShowsThem)
{
    TypedSet t("many");
    for (int i = 0; i < 40; ++i)
        t.Add(("p" + std::to_string(i)).c_str(), columnText, "v");
    ParamsDialog dialog(t.set, nullptr, nullptr);
    ASSERT_TRUE(dialog.CreateDialogWindow(nullptr));
    const int margin = dialog.GetMargin();

    dialog.resize(dialog.width(), 200);
    // Lines must end above 200 - margin - 24; each is 20 high, 24 apart from margin down.
    int visible = 0;
    for (int i = 0; i < dialog.GetLineCount(); ++i)
        visible += dialog.GetLine(i)->GetControlWindow()->isVisible();
    int expected = 0;
    while (margin + expected * 24 + 20 < 200 - margin - 24)
        ++expected;
    EXPECT_EQ(visible, expected);
    EXPECT_FALSE(dialog.GetLine(39)->GetLabelWindow()->isVisible());
    EXPECT_EQ(dialog.GetOkButton()->geometry().bottom() + 1, 200 - margin);

    dialog.resize(dialog.width(), 24 * 40 + 3 * margin + 24);
    EXPECT_TRUE(dialog.GetLine(39)->GetControlWindow()->isVisible());
    dialog.close();
}

TEST(ParamsDialog, TitleFallsBackToTheSetNameThenDialog)
{
    TypedSet named("people");
    ParamsDialog a(named.set, "", nullptr);
    ASSERT_TRUE(a.CreateDialogWindow(nullptr));
    EXPECT_EQ(a.windowTitle(), "people") << "an empty title counts as none";
    a.close();
    ParamsDialog b(named.set, "Edit one", nullptr);
    ASSERT_TRUE(b.CreateDialogWindow(nullptr));
    EXPECT_EQ(b.windowTitle(), "Edit one");
    b.close();
    TypedSet unnamed("");
    ParamsDialog c(unnamed.set, nullptr, nullptr);
    ASSERT_TRUE(c.CreateDialogWindow(nullptr));
    EXPECT_EQ(c.windowTitle(), "Dialog");
    c.close();
}

TEST(ParamsDialog, ButtonClicksOfLinesReachTheLineByPosition)
{
    TypedSet t("flags");
    t.Add("a", columnBoolean, "0").Add("b", columnBoolean, "0");
    ParamsDialog dialog(t.set, nullptr, nullptr);
    MessageCapture trace;
    PlayWhenShown({[&] { qobject_cast<QCheckBox*>(dialog.GetLine(1)->GetControlWindow())->click(); },
                   [&] { dialog.GetOkButton()->click(); }});
    EXPECT_EQ(dialog.RunModal(), 1);
    EXPECT_EQ(trace.Count(" User set parameter 1"), 1);
    EXPECT_EQ(t.Text("a"), "0");
    EXPECT_EQ(t.Text("b"), "1");
}

} // namespace
