#include "MessageCapture.h"
#include "sqlite/zt_tableinfo.h"
#include "ztlib/zt_parametergroup.h"
#include "ztlib/zt_parameterplain.h"
#include "zttl/zt_report.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

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

// Saves the parameter alone and loads the document into a fresh one of the same name.
std::string SavedAndLoaded(const ZT_Parameter& parameter, std::string* document = nullptr)
{
    ZT_OutlineWriter writer;
    parameter.Save(writer);
    if (document)
        *document = writer.GetText();
    ZT_ParameterPlain loaded(parameter.GetName()->GetString());
    ZT_OutlineReader reader(writer.GetText());
    loaded.Load(reader);
    EXPECT_EQ(loaded.GetValueRef()->GetKind(), ZT_Value::kindText);
    return ValueOf(loaded);
}

// Texts that the document format must carry unchanged.
const std::vector<std::string>& AwkwardTexts()
{
    static const std::vector<std::string> texts = {
        "ab\ncd", "\nlead", "trail\n", "\n", "\n\n", "two\n\nbreaks",
        "say \"hi\"", "\"", "\"\"", "\"quoted\"", "back\\slash", "\\", "ends\\",
        "\\n is not a break", "\\\"", "cr\rlf\r\n", "\r", "tab\there\t",
        "\x01\x02\x1b\x1f\x7f", "\\x41", "", " ", "  padded  ", "x = y", " = ", "{", "}",
        "name {", "12", "-3", "true", "3..7", "1.5", "#FF8000", "\xe9t\xe9 \xff"};
    return texts;
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

TEST(Parameter, ReferenceRefusesANullTarget)
{
    MessageCapture messages;
    ZT_ParameterRef empty(nullptr);
    EXPECT_TRUE(messages.Contains("ZT_ParameterRef: null target refused  \t[E]"));
    EXPECT_EQ(empty.GetTarget(), nullptr);
    EXPECT_EQ(empty.GetShareCount(), 0);

    // Every operation answers like a parameter with nothing in it.
    empty.SetValue(Text("x"));
    ZT_Value value;
    value.SetInt(5);
    EXPECT_EQ(empty.GetValue(value).GetKindBits(), 0);
    EXPECT_EQ(empty.GetValueRef(), nullptr);
    EXPECT_STREQ(*empty.GetName(), "");
    EXPECT_STREQ(*empty.GetLabel(), "");
    empty.SetName("named");
    EXPECT_STREQ(*empty.GetName(), "");
    empty.SetDefinition(nullptr);
    EXPECT_EQ(empty.GetDefinition(), nullptr);
    EXPECT_EQ(empty.AsGroup(), nullptr);
    ZT_Parameter* clone = empty.Clone();
    EXPECT_EQ(clone, nullptr);
    delete clone;
    ZT_OutlineWriter writer;
    empty.Save(writer);
    EXPECT_EQ(writer.GetText(), "");
    ZT_OutlineReader reader("t = 1\n");
    empty.Load(reader);

    ZT_ParameterRef copy(empty);
    EXPECT_EQ(copy.GetShareCount(), 0);
    ZT_ParameterSetAuto set;
    set.AddShared(copy);
    EXPECT_EQ(set.GetCount(), 0) << "a set takes no empty handle";
}

TEST(ParameterSet, CopiesShareTheirChildren)
{
    MessageCapture messages;
    auto* source = new ZT_ParameterSetAuto;
    source->SetName("person row");
    for (const char* name : {"id", "name", "born"})
        source->AddShared(ZT_ParameterRef(new Counted(name)));
    ZT_ParameterSetAuto copy(*source);
    ASSERT_FALSE(messages.Lines().empty());
    EXPECT_EQ(messages.Lines().back(), "ZT_ParameterSetAuto::copy_ptrs .. is this intent?\n");
    EXPECT_STREQ(*copy.GetName(), "person_row");
    copy.SetValueOf("NAME", Text("Ann"));
    ZT_Value value;
    EXPECT_STREQ(source->GetValueOf(value, "name").GetText(), "Ann");
    delete source;
    EXPECT_EQ(Counted::alive, 3) << "the copy keeps them alive";
    copy.RemoveAll();
    EXPECT_EQ(Counted::alive, 0);
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

TEST(Parameter, SavedTextsLoadByteForByte)
{
    ZT_ParameterPlain parameter("t");
    for (const std::string& text : AwkwardTexts()) {
        SCOPED_TRACE(testing::PrintToString(text));
        parameter.SetValue(Text(text.c_str()));
        std::string document;
        EXPECT_EQ(SavedAndLoaded(parameter, &document), text);
        EXPECT_EQ(std::count(document.begin(), document.end(), '\n'), 1) << "one line per element";
    }
}

TEST(Parameter, SavedLineBreakIsEscapedInPlace)
{
    ZT_ParameterPlain parameter("t");
    parameter.SetValue(Text("ab\ncd"));
    std::string document;
    EXPECT_EQ(SavedAndLoaded(parameter, &document), "ab\ncd");
    EXPECT_EQ(document, "t = \"ab\\ncd\"\n");
}

TEST(Parameter, EmptyNameSavesAndLoads)
{
    ZT_ParameterPlain parameter("");
    ASSERT_STREQ(*parameter.GetName(), "");
    for (const char* text : {"x", "", "\nlead", "a = b"}) {
        SCOPED_TRACE(testing::PrintToString(text));
        parameter.SetValue(Text(text));
        EXPECT_EQ(SavedAndLoaded(parameter), text);
    }
}

TEST(ParameterSet, NestedSetsCarryEveryTextBackUnchanged)
{
    const std::vector<std::string>& texts = AwkwardTexts();
    ZT_ParameterSetAuto inner;
    inner.SetName("inner");
    std::vector<ZT_ParameterRef> leaves;
    leaves.reserve(texts.size());
    for (size_t i = 0; i < texts.size(); ++i) {
        leaves.emplace_back(new ZT_ParameterPlain(("p" + std::to_string(i)).c_str()));
        leaves.back().SetValue(Text(texts[i].c_str()));
        inner.AddShared(leaves.back());
    }
    for (const char* outerName : {"outer", ""}) {
        SCOPED_TRACE(outerName);
        ZT_ParameterSetAuto outer;
        outer.SetName(outerName);
        ZT_ParameterRef before(new ZT_ParameterPlain("before"));
        ZT_ParameterRef after(new ZT_ParameterPlain("after"));
        before.SetValue(Text("}\n{"));
        after.SetValue(Text("\\"));
        outer.AddShared(before);
        outer.AddShared(ZT_ParameterRef(inner.Clone()));
        outer.AddShared(after);
        ZT_OutlineWriter writer;
        outer.Save(writer);

        for (ZT_ParameterRef& leaf : leaves)
            leaf.SetValue(Text("changed"));
        before.SetValue(Text("changed"));
        after.SetValue(Text("changed"));
        ZT_OutlineReader reader(writer.GetText());
        outer.Load(reader);
        for (size_t i = 0; i < texts.size(); ++i)
            EXPECT_EQ(ValueOf(leaves[i]), texts[i]) << "p" << i;
        EXPECT_EQ(ValueOf(before), "}\n{");
        EXPECT_EQ(ValueOf(after), "\\");
    }
}
