#include "DialogTestSupport.h"
#include "EnhGUI/ParamLines.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QTimeEdit>
#include <gtest/gtest.h>

namespace {

LineRect Rect(const QWidget* w)
{
    return LineRect::FromQRect(w->geometry());
}

class ParamLinesTest : public ::testing::Test {
protected:
    QWidget parent;
    ParamLines lines{&parent};
};

TEST_F(ParamLinesTest, AreaGivesThreeColumnsAndTwentyPixelLines)
{
    ASSERT_TRUE(lines.SetArea({0, 0, 100, 200}));
    EXPECT_EQ(lines.GetColumnWidth(), 23); // (80 - 10) / 3
    EXPECT_EQ(lines.GetLineRect(), (LineRect{10, 10, 90, 30}));

    ASSERT_TRUE(lines.AddEditLine("n", "N", "0", 0));
    ParamLine* line = lines.GetLine(0);
    EXPECT_EQ(Rect(line->GetLabelWindow()), (LineRect{10, 10, 56, 30}));
    EXPECT_EQ(Rect(line->GetControlWindow()), (LineRect{67, 10, 90, 30}));
    EXPECT_EQ(lines.GetLineRect(), (LineRect{10, 34, 90, 54})) << "the next line is one step down";

    lines.SetArea({0, 0, 5, 100});
    EXPECT_EQ(lines.GetColumnWidth(), -8) << "(-15 - 10) / 3 truncates toward zero, nothing clamped";
}

TEST_F(ParamLinesTest, LayoutModesSplitTheLine)
{
    lines.SetArea({0, 0, 340, 100}); // shrunk 10..330, w = 100
    lines.AddEditLine("a", "A", "0", 0);
    ParamLine* line = lines.GetLine(0);

    line->SetLayout(ParamLine::layoutWideControl);
    line->Layout({10, 10, 330, 30}, 100);
    EXPECT_EQ(Rect(line->GetLabelWindow()), (LineRect{10, 10, 110, 30}));
    EXPECT_EQ(Rect(line->GetControlWindow()), (LineRect{130, 10, 330, 30}));

    line->SetLayout(ParamLine::layoutHalves);
    line->Layout({11, 10, 330, 30}, 100); // M = 341 >> 1 = 170
    EXPECT_EQ(Rect(line->GetLabelWindow()), (LineRect{11, 10, 165, 30}));
    EXPECT_EQ(Rect(line->GetControlWindow()), (LineRect{175, 10, 330, 30}));

    line->Layout({-11, 0, 0, 20}, 0); // M = -11 >> 1 = -6, toward minus infinity
    EXPECT_EQ(Rect(line->GetLabelWindow()).right, -11);
    EXPECT_EQ(Rect(line->GetControlWindow()).left, -1);
}

TEST_F(ParamLinesTest, ColumnTypesChooseTheirControls)
{
    TypedSet t;
    t.Add("id", columnKey, "7")
        .Add("count", columnInteger)
        .Add("flag", columnBoolean)
        .Add("name", columnText)
        .Add("weight", columnReal)
        .Add("stamp", columnDateTime)
        .Add("born", columnDate)
        .Add("at", columnTime)
        .Add("secret", 7)
        .Add("section", 11)
        .Add("path", 6)
        .Add("blob", 5);
    ASSERT_TRUE(lines.Build({0, 0, 400, 600}, t.set));

    const char* expectedNames[] = {"id", "count", "flag", "name", "weight", "born", "at", "secret", "section", "path"};
    ASSERT_EQ(lines.GetLineCount(), 10) << "DATETIME and unknown types get no line";
    for (int i = 0; i < 10; ++i)
        EXPECT_STREQ(lines.GetLine(i)->GetName().GetString(), expectedNames[i]);

    EXPECT_EQ(lines.GetLine(0)->GetControlId(), 0xFFFFu) << "key values take no id";
    EXPECT_NE(qobject_cast<QLabel*>(lines.GetLine(0)->GetControlWindow()), nullptr);
    EXPECT_EQ(lines.GetLine(1)->GetControlId(), 0x2000u);
    EXPECT_EQ(lines.GetLine(9)->GetControlId(), 0x2007u) << "the heading took no id either";

    auto* count = qobject_cast<QLineEdit*>(lines.GetLine(1)->GetControlWindow());
    ASSERT_NE(count, nullptr);
    EXPECT_NE(count->validator(), nullptr) << "digits only";
    EXPECT_TRUE(count->alignment() & Qt::AlignRight);
    EXPECT_NE(qobject_cast<QCheckBox*>(lines.GetLine(2)->GetControlWindow()), nullptr);
    EXPECT_EQ(lines.GetLine(2)->GetLabelWindow(), nullptr);
    auto* name = qobject_cast<QLineEdit*>(lines.GetLine(3)->GetControlWindow());
    ASSERT_NE(name, nullptr);
    EXPECT_TRUE(name->alignment() & Qt::AlignHCenter);
    EXPECT_EQ(lines.GetLine(3)->GetLayoutMode(), ParamLine::layoutWideControl);
    EXPECT_EQ(lines.GetLine(4)->GetLayoutMode(), ParamLine::layoutWideLabel);
    EXPECT_NE(qobject_cast<QDateEdit*>(lines.GetLine(5)->GetControlWindow()), nullptr);
    EXPECT_NE(qobject_cast<QTimeEdit*>(lines.GetLine(6)->GetControlWindow()), nullptr);
    EXPECT_EQ(qobject_cast<QLineEdit*>(lines.GetLine(7)->GetControlWindow())->echoMode(), QLineEdit::Password);
    EXPECT_EQ(lines.GetLine(8)->GetControlWindow(), nullptr);
    EXPECT_EQ(Rect(lines.GetLine(8)->GetLabelWindow()), (LineRect{10, 202, 390, 222})) << "heading spans the line";
    auto* folder = static_cast<FolderParamLine*>(lines.GetLine(9));
    EXPECT_EQ(Rect(folder->GetButtonWindow()), (LineRect{372, 226, 390, 246}));

    EXPECT_EQ(GetWindowTextOf(lines.GetLine(3)->GetLabelWindow()), " name ") << "labels are padded";
}

TEST_F(ParamLinesTest, ArrangeHidesLinesThatDoNotFitAndShowsThemAgain)
{
    TypedSet t;
    for (const char* name : {"a", "b", "c", "d"})
        t.Add(name, columnText);
    lines.Build({0, 0, 200, 400}, t.set);
    parent.show();

    lines.Arrange({0, 0, 200, 60});
    EXPECT_TRUE(lines.GetLine(0)->GetControlWindow()->isVisible());
    EXPECT_EQ(Rect(lines.GetLine(1)->GetControlWindow()).top, 34);
    EXPECT_TRUE(lines.GetLine(1)->GetControlWindow()->isVisible());
    EXPECT_FALSE(lines.GetLine(2)->GetControlWindow()->isVisible()) << "58..78 does not end above 60";
    EXPECT_FALSE(lines.GetLine(3)->GetLabelWindow()->isVisible());

    lines.Arrange({0, 0, 200, 400});
    EXPECT_TRUE(lines.GetLine(3)->GetLabelWindow()->isVisible());
    EXPECT_EQ(Rect(lines.GetLine(3)->GetControlWindow()).top, 82);
}

TEST_F(ParamLinesTest, ExchangeShowsAndStoresValuesByName)
{
    TypedSet t;
    t.Add("id", columnKey, "17")
        .Add("flag", columnBoolean, "TRUE")
        .Add("other", columnBoolean, "yes")
        .Add("born", columnDate, "2005-03-07")
        .Add("name", columnText, nullptr)
        .Add("weight", columnReal, "2.5")
        .Add("at", columnTime, "12:30:00");
    lines.Build({0, 0, 400, 400}, t.set);
    ASSERT_TRUE(lines.Exchange(false, t.set));

    EXPECT_EQ(GetWindowTextOf(lines.GetLine(0)->GetControlWindow()), " 17 ");
    EXPECT_TRUE(qobject_cast<QCheckBox*>(lines.GetLine(1)->GetControlWindow())->isChecked());
    EXPECT_FALSE(qobject_cast<QCheckBox*>(lines.GetLine(2)->GetControlWindow())->isChecked());
    auto* born = qobject_cast<QDateEdit*>(lines.GetLine(3)->GetControlWindow());
    EXPECT_EQ(born->date(), QDate(2005, 3, 7));
    EXPECT_EQ(GetWindowTextOf(lines.GetLine(4)->GetControlWindow()), "(null)");

    // "2005-3-7" reads day 0 from its 8th and 9th characters: the picker keeps its date.
    t.Add("later", columnDate, "2005-3-7");
    lines.AddParameter(t.set.Find("later")->GetDefinition());
    auto* later = qobject_cast<QDateEdit*>(lines.GetLine(7)->GetControlWindow());
    later->setDate(QDate(2001, 2, 3));
    lines.Exchange(false, t.set);
    EXPECT_EQ(later->date(), QDate(2001, 2, 3));

    qobject_cast<QLineEdit*>(lines.GetLine(4)->GetControlWindow())->setText("Ann");
    born->setDate(QDate(1999, 12, 31));
    ASSERT_TRUE(lines.Exchange(true, t.set));
    EXPECT_EQ(t.Text("id"), " 17 ") << "the padded key goes back padded";
    EXPECT_EQ(t.Text("flag"), "1");
    EXPECT_EQ(t.Text("other"), "0");
    EXPECT_EQ(t.Text("born"), "1999-12-31");
    EXPECT_EQ(t.Text("name"), "Ann");
    EXPECT_EQ(t.Text("weight"), "2.5");
    EXPECT_EQ(t.Text("at"), "(null)") << "time-of-day lines are shown but never stored";
}

TEST_F(ParamLinesTest, LinesOutliveTheirParentWindowSafely)
{
    auto* owner = new QWidget;
    {
        ParamLines orphaned(owner);
        TypedSet t;
        t.Add("a", columnText, "x").Add("b", columnBoolean, "1");
        orphaned.Build({0, 0, 300, 300}, t.set);
        delete owner; // takes the line windows with it
        EXPECT_TRUE(orphaned.Exchange(false, t.set));
        EXPECT_TRUE(orphaned.Exchange(true, t.set));
        EXPECT_EQ(t.Text("a"), "(null)") << "a dead control reads as the empty value";
        EXPECT_TRUE(orphaned.Arrange({0, 0, 300, 300}));
    }
    ParamLines empty(nullptr);
    TypedSet none;
    EXPECT_TRUE(empty.Build({0, 0, 100, 100}, none.set));
    EXPECT_EQ(empty.GetLineCount(), 0);
    EXPECT_TRUE(empty.Exchange(true, none.set));
    TypedSet one;
    one.Add("a", columnText);
    EXPECT_FALSE(empty.AddParameter(one.set.GetAt(0)->GetDefinition())) << "no parent, no windows";
    EXPECT_FALSE(empty.AddParameter(nullptr));
}

} // namespace
