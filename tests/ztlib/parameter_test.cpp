#include "sqlite/zt_tableinfo.h"
#include "ztlib/zt_parametergroup.h"
#include "ztlib/zt_parameterplain.h"
#include "zttl/zt_report.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> traced;
void Collect(const char* line) { traced.push_back(line); }

struct Counted : ZT_ParameterPlain {
    static int alive;
    explicit Counted(const char* name) : ZT_ParameterPlain(name) { ++alive; }
    ~Counted() override { --alive; }
};
int Counted::alive = 0;

ZT_Value Text(const char* text)
{
    ZT_Value value;
    value.SetText(text);
    return value;
}

std::string ValueOf(ZT_Parameter& parameter)
{
    ZT_Value value;
    parameter.GetValue(value);
    return value.GetText();
}

} // namespace

TEST(Parameter, NamesAreCleanedAndLabelsComeFromTheColumn)
{
    ZT_ParameterPlain parameter("My Column!");
    EXPECT_STREQ(*parameter.GetName(), "My_Column");
    EXPECT_STREQ(*parameter.GetLabel(), "My_Column");
    ZT_ColumnInfo column("My_Column", "My column (kg)", nullptr, columnReal);
    parameter.SetDefinition(&column);
    EXPECT_STREQ(*parameter.GetLabel(), "My column (kg)");
    EXPECT_EQ(parameter.GetOptions(), 0);

    ZT_ParameterPlain copy(parameter);
    EXPECT_EQ(copy.GetDefinition(), nullptr) << "the binding is not copied";
    EXPECT_STREQ(*copy.GetName(), "My_Column");
}

TEST(Parameter, ReferencesShareAndDeleteTheTargetOnce)
{
    {
        ZT_ParameterRef first(new Counted("age"));
        {
            ZT_ParameterRef second(first);
            second.SetValue(Text("42"));
            EXPECT_EQ(ValueOf(first), "42");
            EXPECT_EQ(first.GetShareCount(), 2);
        }
        EXPECT_EQ(Counted::alive, 1);
        std::unique_ptr<ZT_Parameter> clone(first.Clone());
        clone->SetValue(Text("7"));
        EXPECT_EQ(ValueOf(first), "42") << "a clone is independent";
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST(ParameterSet, CopiesShareTheirChildren)
{
    traced.clear();
    ZT_MessageSink previous = ZT_SetMessageSink(Collect);
    auto* source = new ZT_ParameterSetAuto;
    source->SetName("person row");
    for (const char* name : {"id", "name", "born"})
        source->AddShared(ZT_ParameterRef(new Counted(name)));
    ZT_ParameterSetAuto copy(*source);
    EXPECT_EQ(traced.back(), "ZT_ParameterSetAuto::copy_ptrs .. is this intent?\n");
    EXPECT_STREQ(*copy.GetName(), "person_row");
    copy.SetValueOf("NAME", Text("Ann"));
    ZT_Value value;
    EXPECT_STREQ(source->GetValueOf(value, "name").GetText(), "Ann");
    delete source;
    EXPECT_EQ(Counted::alive, 3) << "the copy keeps them alive";
    copy.RemoveAll();
    EXPECT_EQ(Counted::alive, 0);
    ZT_SetMessageSink(previous);
}

TEST(ParameterSet, DuplicateNamesFindTheFirst)
{
    ZT_ParameterSetAuto set;
    ZT_ParameterRef first(new ZT_ParameterPlain("Age"));
    ZT_ParameterRef second(new ZT_ParameterPlain("AGE"));
    first.SetValue(Text("first"));
    set.AddShared(first);
    set.AddShared(second);
    EXPECT_EQ(set.GetCount(), 2);
    EXPECT_TRUE(set.Contains("age"));
    EXPECT_EQ(ValueOf(*set.Find("age")), "first");
    EXPECT_STREQ(*set.GetChildName(1), "AGE");
    ZT_Value missing;
    EXPECT_STREQ(set.GetValueOf(missing, "nobody").GetText(), "(null)");
    EXPECT_EQ(missing.GetKindBits(), 0);
    EXPECT_STREQ(set.GetValueAt(missing, 9).GetText(), "(null)");
    set.SetValueOf("nobody", Text("x")); // ignored
    EXPECT_EQ(set.GetCount(), 2);
}

TEST(ParameterSet, GroupsHaveNoValueOfTheirOwn)
{
    ZT_ParameterSetAuto set;
    set.SetValue(Text("ignored"));
    ZT_Value value;
    EXPECT_EQ(set.GetValue(value).GetKindBits(), 0);
    EXPECT_EQ(set.AsGroup(), &set);
    std::unique_ptr<ZT_Parameter> clone(set.Clone());
    ASSERT_NE(clone, nullptr);
    EXPECT_NE(clone->AsGroup(), nullptr);
}

TEST(ParameterSet, SaveAndLoadRoundTrip)
{
    ZT_ParameterSetAuto set;
    set.SetName("settings");
    ZT_ParameterRef count(new ZT_ParameterPlain("count"));
    ZT_ParameterRef title(new ZT_ParameterPlain("title"));
    ZT_Value number;
    number.SetInt(12);
    count.SetValue(number);
    title.SetValue(Text("say \"hi\""));
    set.AddShared(count);
    set.AddShared(title);
    ZT_OutlineWriter writer;
    set.Save(writer);
    EXPECT_EQ(writer.GetText(), "settings {\n  count = 12\n  title = \"say \\\"hi\\\"\"\n}\n");

    count.SetValue(Text("changed"));
    title.SetValue(Text("changed"));
    ZT_OutlineReader reader(writer.GetText());
    set.Load(reader);
    EXPECT_EQ(ValueOf(count), "12");
    EXPECT_EQ(ValueOf(title), "say \"hi\"");
}
