#include "MessageCapture.h"
#include "sqlite/zt_tableinfo.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using Table = std::unique_ptr<ZT_TableInfo>;

// "name:type" for every column, in order.
std::string Columns(const ZT_TableInfo& table)
{
    std::string text;
    for (int i = 0; i < table.GetColumnCount(); ++i)
        text += std::string(i ? " " : "") + table.GetColumnName(i) + ":" + std::to_string(table.GetColumn(i)->GetType());
    return text;
}

} // namespace

TEST(ParseCreateTable, TypesKeysAndTrace)
{
    Table table;
    {
        MessageCapture capture;
        table.reset(ParseCreateTable(
            "CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT, price REAL, born DATE, at DATETIME, note)", 255));
    }
    ASSERT_NE(table, nullptr);
    EXPECT_STREQ(table->GetTableName(), "t");
    EXPECT_EQ(table->GetType(), columnTable);
    EXPECT_EQ(Columns(*table), "id:255 name:3 price:4 born:12 at:14 note:3");
    EXPECT_STREQ(table->GetColumn(1)->GetDescription(), "auto generated");
    const std::vector<std::string>& traced = MessageCapture::Lines();
    ASSERT_GE(traced.size(), 2u);
    EXPECT_EQ(traced[0], "COLUMN DEF == id INTEGER PRIMARY KEY\n");
    EXPECT_EQ(traced[1], "COLUMN DEF == name TEXT\n");

    Table ordinary(ParseCreateTable(
        "CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT, price REAL, born DATE, at DATETIME, note)", 0x01));
    EXPECT_EQ(Columns(*ordinary), "name:3 price:4 born:12 at:14 note:3");
    Table withKeys(ParseCreateTable("CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT)", 0x03));
    EXPECT_EQ(Columns(*withKeys), "id:1 name:3");
}

TEST(ParseCreateTable, TypeWordsAnywhereInTheDefinition)
{
    Table table(ParseCreateTable("CREATE TABLE t(updated TEXT, realm CHAR(8), stamp TIMESTAMP, name VARCHAR(20), "
                                 "a DECIMAL(10,2), b INT, email TEXT UNIQUE, primary_key_col integer)",
                                 255));
    EXPECT_EQ(Columns(*table), "updated:12 realm:3 stamp:13 name:3 a:3 b:3 email:255 primary_key_col:255");
}

TEST(ParseCreateTable, TableConstraints)
{
    Table primary(ParseCreateTable("CREATE TABLE t(a INTEGER, b TEXT, PRIMARY KEY(a))", 255));
    EXPECT_EQ(Columns(*primary), "a:255 b:3");
    Table removed(ParseCreateTable("CREATE TABLE t(a INTEGER, b TEXT, PRIMARY KEY(a))", 0x01));
    EXPECT_EQ(Columns(*removed), "b:3");
    Table unknown(ParseCreateTable("CREATE TABLE t(a INTEGER, PRIMARY KEY (x))", 255));
    EXPECT_EQ(Columns(*unknown), "a:1 PRIMARY:255") << "named after the keyword";
    EXPECT_STREQ(unknown->GetColumn(1)->GetLabel(), "PRIMARY");
    Table after(ParseCreateTable("CREATE TABLE t(a INTEGER, UNIQUE(a), b TEXT)", 255));
    EXPECT_EQ(Columns(*after), "a:255") << "definitions after a table constraint are ignored";
    Table two(ParseCreateTable("CREATE TABLE t(a INTEGER, b TEXT, c, UNIQUE(a, b))", 255));
    EXPECT_EQ(Columns(*two), "a:255 b:255 c:3");
}

TEST(ParseCreateTable, NamesAndMalformedTexts)
{
    EXPECT_EQ(ParseCreateTable("create table t (a)", 255), nullptr);
    EXPECT_EQ(ParseCreateTable(" CREATE TABLE t(a)", 255), nullptr);
    EXPECT_EQ(ParseCreateTable(nullptr, 255), nullptr);
    Table bare(ParseCreateTable("CREATE TABLE t", 255));
    ASSERT_NE(bare, nullptr);
    EXPECT_EQ(bare->GetColumnCount(), 0);
    Table ifNot(ParseCreateTable("CREATE TABLE IF NOT EXISTS t(a)", 255));
    EXPECT_STREQ(ifNot->GetTableName(), "IF");
    EXPECT_EQ(ifNot->GetColumnCount(), 0);
    Table bracketed(ParseCreateTable("CREATE TABLE [my_t](a)", 255));
    EXPECT_STREQ(bracketed->GetTableName(), "");
    EXPECT_STREQ(bracketed->GetLabel(), "[my_t]");
    Table quoted(ParseCreateTable("CREATE TABLE \"people\"(a)", 255));
    EXPECT_STREQ(quoted->GetTableName(), "people");
    Table unclosed(ParseCreateTable("CREATE TABLE t(a INTEGER, b TEXT", 255));
    EXPECT_EQ(Columns(*unclosed), "a:1 b:3");
    Table same(ParseCreateTable("CREATE TABLE t(A TEXT, a INTEGER)", 255));
    EXPECT_EQ(same->GetColumnCount(), 2);
    EXPECT_EQ(same->FindColumn("a"), same->GetColumn(0));
    same->RemoveColumn("a");
    EXPECT_EQ(Columns(*same), "a:1");
}

TEST(StringTests, LooseMatching)
{
    ZT_String text("primary_key");
    EXPECT_TRUE(text.ContainsLoosely("PRIMARY KEY"));
    EXPECT_TRUE(ZT_String("PRIMARY-KEY").ContainsLoosely("PRIMARY KEY"));
    EXPECT_FALSE(ZT_String("PRIMARY  KEY").ContainsLoosely("PRIMARY KEY"));
    EXPECT_TRUE(ZT_String("caf\xE9").ContainsLoosely("cafe"));
    EXPECT_FALSE(ZT_String().ContainsLoosely("a"));
    EXPECT_TRUE(ZT_String("CREATE TABLE x").StartsWith("CREATE TABLE"));
    EXPECT_FALSE(ZT_String(" CREATE TABLE").StartsWith("CREATE"));
    EXPECT_FALSE(ZT_String().StartsWith(""));
    EXPECT_TRUE(ZT_String().IsEqual(""));
    EXPECT_TRUE(ZT_String().IsEqual(nullptr));
    EXPECT_FALSE(ZT_String("Unique").IsEqual("UNIQUE"));
    ZT_String lower("AbC\xC4");
    lower.MakeLower();
    EXPECT_STREQ(lower, "abc\xC4");
}
