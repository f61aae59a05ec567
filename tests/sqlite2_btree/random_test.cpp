// Thousands of random inserts, updates and deletes, checked against a
// std::map model as they go and by the file checker after every commit.
#include "BtreeSupport.h"
#include "TempDir.h"
#include "index_key.h"

#include <gtest/gtest.h>

using namespace sqlite2;

namespace {

// Picks an existing key of the model (which must not be empty).
std::string AnyKey(const Model& model, std::mt19937& random)
{
    auto at = model.lower_bound(RandomText(random, 1 + random() % 6));
    return at == model.end() ? model.begin()->first : at->first;
}

std::string RowRecord(std::mt19937& random, size_t largest)
{
    return TextRecord(std::string(RandomLength(random, largest), char('a' + random() % 26)));
}

struct Mix {
    int inserts;
    int updates;
    int deletes;
};

// One random change through the cursor, mirrored in the model.
void RandomChange(Cursor& cursor, Model& model, std::mt19937& random, const Mix& mix,
                  const std::function<std::string()>& newKey, const std::function<std::string()>& newData)
{
    const int roll = int(random() % uint32_t(mix.inserts + mix.updates + mix.deletes));
    if (model.empty() || roll < mix.inserts) {
        std::string key = newKey(), data = newData();
        ASSERT_TRUE(cursor.Insert(key, data));
        model[key] = data;
    } else if (roll < mix.inserts + mix.updates) {
        std::string key = AnyKey(model, random), data = newData();
        ASSERT_TRUE(cursor.Insert(key, data));
        model[key] = data;
    } else {
        std::string key = AnyKey(model, random);
        ASSERT_TRUE(DeleteEntry(cursor, key));
        model.erase(key);
    }
}

// Rounds of random changes to one tree in a new file: the tree is compared
// with the model every `checkEvery` changes, its seeks at the end of a round,
// and the file is checked after each round's commit. Round `otherRound` uses
// the mix `other` instead of `usual`.
struct Rounds {
    int rounds;
    int changes;
    int checkEvery;
    int seeks;
    Mix usual;
    int otherRound;
    Mix other;
};

void ChangeInRounds(const std::string& table, const Rounds& plan, std::mt19937& random,
                    const std::function<std::string()>& newKey, const std::function<std::string()>& newData,
                    const std::vector<std::string>& raw = {})
{
    TempDir dir;
    const std::string path = dir.File(table + ".db");
    TestDb db(path);
    db.Begin();
    const uint32_t root = db.AddTable(table, "CREATE TABLE " + table + "(x)");
    Model model;
    Cursor cursor(db.tree, root);
    for (int round = 0; round < plan.rounds; ++round) {
        const Mix& mix = round == plan.otherRound ? plan.other : plan.usual;
        for (int i = 0; i < plan.changes; ++i) {
            ASSERT_NO_FATAL_FAILURE(RandomChange(cursor, model, random, mix, newKey, newData));
            if (i % plan.checkEvery == plan.checkEvery - 1)
                ExpectTreeEquals(db.tree, root, model);
        }
        ExpectSeeksAgree(db.tree, root, model, random, plan.seeks);
        db.Commit();
        EXPECT_EQ(FileProblems(path, raw), noProblems) << "round " << round;
        db.Begin();
    }
    db.Commit();
}

// Changes to a table and its index in a new file.
using BtreeRandomIndexed = BtreeWriteTest;
// Every row deleted and written again in a new table.
using BtreeRandomRefill = BtreeNewTableTest;

} // namespace

TEST(BtreeRandomChanges, TableOfRowsFromEmptyToHundredKilobytes)
{
    std::mt19937 random(11);
    ChangeInRounds("t",
                   {.rounds = 4, .changes = 1500, .checkEvery = 500, .seeks = 300, .usual = {5, 2, 2},
                    .otherRound = 2, .other = {1, 1, 5}},
                   random, [&] { return RowKey(int32_t(random() % 20000) - 5000); },
                   [&] { return RowRecord(random, 100000); });
}

TEST(BtreeRandomChanges, RawKeysOfEveryLengthWithData)
{
    std::mt19937 random(5);
    ChangeInRounds("raw",
                   {.rounds = 3, .changes = 2000, .checkEvery = 400, .seeks = 500, .usual = {6, 2, 2},
                    .otherRound = 1, .other = {1, 1, 4}},
                   random, [&] { return RandomText(random, 1 + RandomLength(random, 2000)); },
                   [&] { return RandomText(random, RandomLength(random, 20000)); }, {"raw"});
}

// A table and its index changed together, as the engine will: the checker
// then also finds one index entry per row.
TEST_F(BtreeRandomIndexed, TableAndItsIndexOfLongTexts)
{
    const uint32_t table = db.AddTable("t", "CREATE TABLE t(a TEXT)");
    const uint32_t index = db.AddTree("index", "ta", "t", "CREATE INDEX ta ON t(a)");
    std::mt19937 random(17);
    std::map<int32_t, Value> rows;
    Cursor rowCursor(db.tree, table), indexCursor(db.tree, index);
    auto indexKey = [](const Value& value, int32_t rowid) { return EncodeIndexKey({{&value, false}}, rowid); };
    auto removeIndexEntry = [&](int32_t rowid) {
        ASSERT_TRUE(DeleteEntry(indexCursor, indexKey(rows[rowid], rowid)));
    };
    for (int i = 0; i < 3000; ++i) {
        const int32_t rowid = int32_t(random() % 1500);
        const bool exists = rows.count(rowid) != 0;
        if (exists) {
            ASSERT_NO_FATAL_FAILURE(removeIndexEntry(rowid));
        }
        if (exists && random() % 3 == 0) {
            ASSERT_TRUE(DeleteEntry(rowCursor, RowKey(rowid)));
            rows.erase(rowid);
            continue;
        }
        Value value = random() % 10 ? Value(RandomText(random, RandomLength(random, 2500))) : Value();
        rows[rowid] = value;
        ASSERT_TRUE(rowCursor.Insert(RowKey(rowid), EncodeRecord({value})));
        ASSERT_TRUE(indexCursor.Insert(indexKey(value, rowid), ""));
    }
    Model expected;
    for (const auto& [rowid, value] : rows)
        expected[indexKey(value, rowid)] = "";
    ExpectTreeEquals(db.tree, index, expected);
    db.Commit();
    EXPECT_EQ(FileProblems(path), noProblems);
}

TEST_F(BtreeRandomRefill, EverythingDeletedThenInsertedAgainReusesThePages)
{
    std::mt19937 random(23);
    std::vector<std::pair<std::string, std::string>> rows;
    for (int i = 0; i < 2500; ++i)
        rows.emplace_back(RowKey(int32_t(random())), RowRecord(random, 30000));
    Cursor cursor(db.tree, root);
    for (const auto& [key, data] : rows)
        ASSERT_TRUE(cursor.Insert(key, data));
    db.Commit();
    const uint64_t full = FileSize(path);
    EXPECT_EQ(FileProblems(path), noProblems);

    db.Begin();
    std::vector<std::pair<std::string, std::string>> shuffled = rows;
    std::shuffle(shuffled.begin(), shuffled.end(), random);
    for (const auto& [key, data] : shuffled)
        ASSERT_TRUE(DeleteEntry(cursor, key));
    db.Commit();
    ExpectTreeEquals(db.tree, root, {});
    EXPECT_EQ(FileProblems(path), noProblems);
    EXPECT_EQ(FileSize(path), full) << "2.x files do not shrink";
    EXPECT_EQ(db.tree.Meta(56), full / 1024 - 3) << "all but page 1, the schema and the empty root are free";

    // The same rows again: exactly the free pages are used, the file stays as it is.
    db.Begin();
    for (const auto& [key, data] : rows)
        ASSERT_TRUE(cursor.Insert(key, data));
    db.Commit();
    EXPECT_EQ(FileSize(path), full);
    EXPECT_EQ(db.tree.Meta(56), 0u);
    EXPECT_EQ(FileProblems(path), noProblems);
}
