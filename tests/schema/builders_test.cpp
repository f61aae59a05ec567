#include "sqlite/SQLBuilders.h"
#include "ztlib/zt_parameterplain.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

// A set named after the table, one bound parameter per column, values as given.
class BoundSet {
public:
    BoundSet(const char* sql, std::vector<std::pair<const char*, ZT_Value>> values)
        : table(ParseCreateTable(sql, 255))
    {
        set.SetName(table->GetTableName());
        for (auto& [name, value] : values) {
            ZT_ParameterRef parameter(new ZT_ParameterPlain(name));
            parameter.SetValue(value);
            if (ZT_ColumnInfo* column = table->FindColumn(name))
                parameter.SetDefinition(column);
            set.AddShared(parameter);
        }
    }
    std::unique_ptr<ZT_TableInfo> table;
    ZT_ParameterSetAuto set;
};

ZT_Value Text(const char* text)
{
    ZT_Value value;
    value.SetText(text);
    return value;
}

} // namespace

TEST(Builders, SelectUpdateInsert)
{
    BoundSet person("CREATE TABLE person(id INTEGER PRIMARY KEY, name TEXT, born DATE)",
                    {{"id", Text("7")}, {"name", Text("Ann")}, {"born", Text("1970-01-02")}});
    EXPECT_STREQ(BuildSelect(*person.table), "SELECT id, name, born FROM person");
    EXPECT_STREQ(BuildUpdate(person.set), "UPDATE person SET name=\"Ann\", born=\"1970-01-02\" WHERE id==\"7\"");
    EXPECT_STREQ(BuildInsert(person.set, 0), "INSERT INTO person (name, born) VALUES(\"Ann\", \"1970-01-02\")");
    EXPECT_STREQ(BuildInsert(person.set, writeKeyColumns),
                 "INSERT INTO person (id, name, born) VALUES(\"7\", \"Ann\", \"1970-01-02\")");
    EXPECT_STREQ(BuildCreateTable(person.set), "CREATE TABLE person()");
    EXPECT_EQ(CountKeyColumns(person.set), 1);
}

TEST(Builders, QuotingDiffersBetweenInsertAndUpdate)
{
    BoundSet t("CREATE TABLE t(k TEXT UNIQUE, a TEXT, b TEXT)",
               {{"k", Text("")}, {"a", Text("trailing ")}, {"b", Text("\"quoted\"")}});
    EXPECT_STREQ(BuildUpdate(t.set), "UPDATE t SET a=\"trailing\", b=\"\"quoted\"\" WHERE k==\"\"");
    EXPECT_STREQ(BuildInsert(t.set, 0), "INSERT INTO t (a, b) VALUES(\"trailing\", \"quoted\")");
}

TEST(Builders, TypedValuesAndTwoKeys)
{
    ZT_Value real, yes, number;
    real.SetDouble(2.5);
    yes.SetFromText("true");
    number.SetInt(0);
    BoundSet t("CREATE TABLE t(a TEXT UNIQUE, b INTEGER PRIMARY KEY, w REAL, ok BOOLEAN, n INTEGER)",
               {{"a", Text("1")}, {"b", Text("2")}, {"w", real}, {"ok", yes}, {"n", number}});
    EXPECT_STREQ(BuildUpdate(t.set), "UPDATE t SET w=\"2.500\", ok=\"true\", n=\"0\" WHERE a==\"1\" AND b==\"2\"");
    EXPECT_STREQ(GetKeyColumnNames(t.set), "a, b");
    EXPECT_EQ(CountKeyColumns(t.set), 2);
    ZT_StringList keys = GetKeyColumnList(t.set);
    ASSERT_EQ(keys.GetSize(), 2);
    EXPECT_STREQ(keys[1], "b");
}

TEST(Builders, UnboundParametersAreSkipped)
{
    BoundSet t("CREATE TABLE t(a TEXT)", {{"a", Text("x")}, {"extra", Text("y")}});
    EXPECT_STREQ(BuildUpdate(t.set), "UPDATE t SET a=\"x\"");
    EXPECT_STREQ(BuildInsert(t.set, 0), "INSERT INTO t (a) VALUES(\"x\")");
    BoundSet none("CREATE TABLE t(a TEXT)", {});
    EXPECT_STREQ(BuildInsert(none.set, 0), "INSERT INTO t");
    EXPECT_STREQ(BuildCreateTable(none.set), "CREATE TABLE t");
    EXPECT_STREQ(GetKeyColumnNames(none.set), "");
}

TEST(Builders, SeparatorsAndMissingListEntries)
{
    ZT_String text;
    text.AppendWithSeparator("", ", ");
    text.AppendWithSeparator("a", ", ");
    text.AppendWithSeparator("b", ", ");
    EXPECT_STREQ(text, "a, b");
    ZT_StringList list;
    list.Add("x");
    EXPECT_STREQ(list.GetAtOrInit(0), "x");
    EXPECT_STREQ(list.GetAtOrInit(2), "<not initialized>");
    EXPECT_EQ(list.GetSize(), 3);
}
