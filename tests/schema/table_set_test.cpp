#include "DatabaseFile.h"
#include "MessageCapture.h"
#include "Rowkeeper.h"
#include "TempDir.h"
#include "sqlite/SQLBuilders.h"
#include "sqlite/SQLiteParameters.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Value(SQLiteParameterSet& set, const char* name)
{
    ZT_Value value;
    set.GetValueOf(value, name);
    return value.GetText();
}

void SetText(SQLiteParameterSet& set, const char* name, const char* text)
{
    set.ValueAt(name)->SetText(text);
}

// Both generations: the same round trip must work on either file.
class TableSet : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        path = dir.File("people.db");
        database = CreateAndReopen(path, GetParam(),
                                   "CREATE TABLE people(id INTEGER PRIMARY KEY, name TEXT, weight REAL, "
                                   "born DATE, active BOOLEAN, note); "
                                   "INSERT INTO people(name) VALUES('first')");
        ASSERT_NE(database, nullptr);
        ASSERT_EQ(database->Version(), double(GetParam()));
    }
    std::string QueryTab(const std::string& sql) { return Rowkeeper({"--query-tab", path, sql}).out; }

    TempDir dir;
    std::string path;
    DatabaseHandle database;
    SQLiteParameters parameters;
};

} // namespace

TEST_P(TableSet, FreshSetHasTypedDefaults)
{
    SQLiteParameterSet set = parameters.CreateParameterSet(*database, "people", 255);
    ASSERT_EQ(set.GetCount(), 6);
    EXPECT_STREQ(*set.GetName(), "people");
    EXPECT_EQ(set.GetDefinition()->GetType(), columnTable);
    EXPECT_EQ(set.Find("id")->GetDefinition()->GetType(), columnKey);
    EXPECT_EQ(Value(set, "weight"), "0.000");
    EXPECT_EQ(Value(set, "note"), "");
    EXPECT_STREQ(BuildInsert(set, 0),
                 "INSERT INTO people (name, weight, born, active, note) VALUES(\"\", \"0.000\", \"\", \"\", \"\")");
    EXPECT_EQ(parameters.GetTableInfo(*database, "people", 255), parameters.GetTableInfo(*database, "PEOPLE", 255))
        << "one cache entry, whatever the letter case";
    EXPECT_NE(parameters.FindTableInfo(path.c_str(), "people", 255), nullptr);
    SQLiteParameterSet unknown = parameters.CreateParameterSet(*database, "nobody", 255);
    EXPECT_EQ(unknown.GetCount(), 0);
    EXPECT_EQ(unknown.GetDefinition(), nullptr);
}

TEST_P(TableSet, InsertLoadUpdateRoundTrip)
{
    SQLiteParameterSet fresh = parameters.CreateParameterSet(*database, "people", 255);
    SetText(fresh, "name", "Ann");
    SetText(fresh, "weight", "61.5");
    SetText(fresh, "note", "50%% off");
    ASSERT_TRUE(parameters.InsertRow(*database, fresh, 0)) << database->GetError();

    MessageCapture capture;
    SQLiteParameterSet loaded = parameters.LoadRow(*database, "people", "  name='Ann'  ");
    EXPECT_TRUE(capture.Has("SELECT id, name, weight, born, active, note FROM people WHERE name='Ann';\n"));
    EXPECT_EQ(Value(loaded, "id"), "2");
    EXPECT_EQ(Value(loaded, "note"), "50% off") << "%% reached the database as %";
    EXPECT_EQ(Value(loaded, "weight"), "61.5");

    SetText(loaded, "weight", "60");
    ASSERT_TRUE(parameters.UpdateRow(*database, loaded, 0)) << database->GetError();
    // A 2.x file keeps the text as written; SQLite 3 gives the REAL column its affinity.
    std::string weight = GetParam() == 2 ? "60" : "60.0";
    EXPECT_EQ(QueryTab("SELECT id, name, weight FROM people ORDER BY id"), "1\tfirst\t\n2\tAnn\t" + weight + "\n");
}

TEST_P(TableSet, EmptyWhereTakesTheFirstRowAndNoMatchLeavesEmptyTexts)
{
    MessageCapture capture;
    SQLiteParameterSet first = parameters.LoadRow(*database, "people", "   ");
    EXPECT_TRUE(capture.Has("SELECT id, name, weight, born, active, note FROM people LIMIT 1;\n"));
    EXPECT_EQ(Value(first, "name"), "first");

    SQLiteParameterSet none("people");
    EXPECT_TRUE(parameters.ReadRow(none, *database, "people", "id = 99"));
    EXPECT_EQ(Value(none, "name"), "");
    EXPECT_EQ(Value(none, "weight"), "") << "not the typed default";
}

TEST_P(TableSet, FindAddsUnboundParametersThatBuildersSkip)
{
    SQLiteParameterSet set = parameters.LoadRow(*database, "people", "id=1");
    set.Find("extra")->SetValue(ZT_Value());
    EXPECT_EQ(set.GetCount(), 7);
    EXPECT_EQ(set.Find("extra")->GetDefinition(), nullptr);
    SQLiteParameterSet copy(set);
    EXPECT_EQ(copy.GetCount(), 7);
    SetText(copy, "name", "changed");
    EXPECT_EQ(Value(set, "name"), "first") << "a table set's copy has parameters of its own";
    std::unique_ptr<SQLiteParameterSet> clone(set.CloneTableSet());
    EXPECT_EQ(clone->GetDefinition(), set.GetDefinition());
}

INSTANTIATE_TEST_SUITE_P(BothGenerations, TableSet, ::testing::Values(3, 2));
