// Cursor movement, Seek and the survival of cursor positions across changes.
#include "BtreeSupport.h"
#include "TempDir.h"

#include <gtest/gtest.h>

using namespace sqlite2;

namespace {

std::string KeyOf(Cursor& cursor)
{
    std::string key;
    Status status = cursor.Key(key);
    EXPECT_TRUE(status) << status.Message();
    return key;
}

// A file with one raw tree holding `model`, written in one transaction and
// left open for writing.
struct RawTree {
    TempDir dir;
    std::string path = dir.File("raw.db");
    TestDb db{path};
    uint32_t root = 0;

    explicit RawTree(const Model& model)
    {
        db.Begin();
        root = db.AddTable("raw", "CREATE TABLE raw(x)");
        Cursor cursor(db.tree, root);
        for (const auto& [key, data] : model)
            EXPECT_TRUE(cursor.Insert(key, data));
    }
};

Model Numbered(int count, size_t dataLength)
{
    Model model;
    for (int i = 0; i < count; ++i) {
        char key[16];
        snprintf(key, sizeof key, "k%06d", i * 2);
        model[key] = std::string(dataLength, char('a' + i % 26));
    }
    return model;
}

// One forward scan of the whole tree that deletes the entries `chosen` picks
// by their place in the scan (and from the model): after each Delete, Next
// must reach the entry that followed.
void DeleteInForwardScan(Cursor& cursor, Model& model, const std::function<bool(int)>& chosen)
{
    ASSERT_TRUE(cursor.First());
    int i = 0;
    while (cursor.Valid()) {
        std::string key = KeyOf(cursor);
        if (!chosen(i++)) {
            ASSERT_TRUE(cursor.Next());
            continue;
        }
        ASSERT_TRUE(cursor.Delete());
        model.erase(key);
        ASSERT_TRUE(cursor.Next());
        auto expected = model.upper_bound(key);
        ASSERT_EQ(cursor.Valid(), expected != model.end());
        if (cursor.Valid()) {
            EXPECT_EQ(KeyOf(cursor), expected->first);
        }
    }
}

} // namespace

TEST(BtreeCursor, EmptyTreeHasNoEntries)
{
    RawTree raw({});
    Cursor cursor(raw.db.tree, raw.root);
    EXPECT_FALSE(cursor.Valid());
    EXPECT_TRUE(cursor.First());
    EXPECT_FALSE(cursor.Valid());
    EXPECT_TRUE(cursor.Last());
    EXPECT_FALSE(cursor.Valid());
    bool found = true;
    EXPECT_TRUE(cursor.Seek("x", found));
    EXPECT_FALSE(found);
    EXPECT_FALSE(cursor.Valid());
    std::string key;
    EXPECT_FALSE(cursor.Key(key));
    EXPECT_FALSE(cursor.Delete());
}

TEST(BtreeCursor, KeysCompareAsUnsignedBytesPrefixFirst)
{
    Model model{{"a", "1"}, {"ab", "2"}, {"abc", "3"}, {"b", "4"}, {std::string("\x7f"), "5"},
                {std::string("\x80"), "6"}, {std::string("\xff\xff"), "7"}, {std::string("a\0", 2), "8"}};
    RawTree raw(model);
    ExpectTreeEquals(raw.db.tree, raw.root, model);
    Cursor cursor(raw.db.tree, raw.root);
    ASSERT_TRUE(cursor.First());
    EXPECT_EQ(KeyOf(cursor), "a");
    ASSERT_TRUE(cursor.Next());
    EXPECT_EQ(KeyOf(cursor), std::string("a\0", 2));
    ASSERT_TRUE(cursor.Last());
    EXPECT_EQ(KeyOf(cursor), "\xff\xff");
}

TEST(BtreeCursor, SeekFindsTheKeyOrTheNextLarger)
{
    Model model = Numbered(3000, 30); // several levels
    RawTree raw(model);
    Cursor cursor(raw.db.tree, raw.root);
    bool found = false;
    ASSERT_TRUE(cursor.Seek("k000100", found));
    EXPECT_TRUE(found);
    EXPECT_EQ(KeyOf(cursor), "k000100");
    ASSERT_TRUE(cursor.Seek("k000101", found));
    EXPECT_FALSE(found);
    EXPECT_EQ(KeyOf(cursor), "k000102");
    ASSERT_TRUE(cursor.Seek("k0001", found)); // a prefix sorts before its extensions
    EXPECT_FALSE(found);
    EXPECT_EQ(KeyOf(cursor), "k000100");
    ASSERT_TRUE(cursor.Seek("", found));
    EXPECT_FALSE(found);
    EXPECT_EQ(KeyOf(cursor), "k000000");
    ASSERT_TRUE(cursor.Seek("z", found));
    EXPECT_FALSE(found);
    EXPECT_FALSE(cursor.Valid());
    std::mt19937 random(7);
    ExpectSeeksAgree(raw.db.tree, raw.root, model, random, 2000);
}

TEST(BtreeCursor, SeekThenStepBothWays)
{
    Model model = Numbered(2000, 60);
    RawTree raw(model);
    Cursor cursor(raw.db.tree, raw.root);
    for (int start : {0, 1, 777, 1999, 3999}) {
        char probe[16];
        snprintf(probe, sizeof probe, "k%06d", start);
        bool found = false;
        ASSERT_TRUE(cursor.Seek(probe, found));
        auto expected = model.lower_bound(probe);
        for (int step = 0; step < 40 && expected != model.end(); ++step, ++expected) {
            ASSERT_TRUE(cursor.Valid());
            EXPECT_EQ(KeyOf(cursor), expected->first);
            ASSERT_TRUE(cursor.Next());
        }
        ASSERT_TRUE(cursor.Seek(probe, found));
        auto back = model.lower_bound(probe);
        for (int step = 0; step < 40 && back != model.begin(); ++step) {
            --back;
            ASSERT_TRUE(cursor.Previous());
            ASSERT_TRUE(cursor.Valid());
            EXPECT_EQ(KeyOf(cursor), back->first);
        }
    }
}

TEST(BtreeCursor, InsertReplacesTheDataOfAnExistingKey)
{
    Model model = Numbered(500, 100);
    RawTree raw(model);
    Cursor cursor(raw.db.tree, raw.root);
    for (auto& [key, data] : model) {
        data = std::string(key.size() % 3 ? 5000 : 3, 'r');
        ASSERT_TRUE(cursor.Insert(key, data));
        EXPECT_EQ(KeyOf(cursor), key) << "the cursor stays on the entry";
    }
    ExpectTreeEquals(raw.db.tree, raw.root, model);
}

TEST(BtreeCursor, DeleteLeavesNextOnTheFollowingEntry)
{
    Model model = Numbered(1500, 40);
    RawTree raw(model);
    Cursor cursor(raw.db.tree, raw.root);
    // Every third entry.
    ASSERT_NO_FATAL_FAILURE(DeleteInForwardScan(cursor, model, [](int i) { return i % 3 == 0; }));
    EXPECT_EQ(model.size(), 1000u);
    ExpectTreeEquals(raw.db.tree, raw.root, model);
}

TEST(BtreeCursor, DeleteThenPreviousGoesToTheEntryBefore)
{
    Model model = Numbered(800, 90);
    RawTree raw(model);
    Cursor cursor(raw.db.tree, raw.root);
    ASSERT_TRUE(cursor.Last());
    while (cursor.Valid()) {
        std::string key = KeyOf(cursor);
        ASSERT_TRUE(cursor.Delete());
        model.erase(key);
        ASSERT_TRUE(cursor.Previous());
        auto expected = model.lower_bound(key);
        ASSERT_EQ(cursor.Valid(), expected != model.begin());
        if (cursor.Valid()) {
            EXPECT_EQ(KeyOf(cursor), std::prev(expected)->first);
        }
    }
    EXPECT_TRUE(model.empty());
    ExpectTreeEquals(raw.db.tree, raw.root, model);
}

TEST(BtreeCursor, DeletingFromTheFrontEmptiesTheTree)
{
    Model model = Numbered(3000, 20);
    RawTree raw(model);
    Cursor cursor(raw.db.tree, raw.root);
    ASSERT_NO_FATAL_FAILURE(DeleteInForwardScan(cursor, model, [](int) { return true; }));
    EXPECT_TRUE(model.empty());
    ExpectTreeEquals(raw.db.tree, raw.root, {});
    raw.db.Commit();
    EXPECT_EQ(FileProblems(raw.path, {"raw"}), std::vector<std::string>{});
}

TEST(BtreeCursor, PositionSurvivesChangesThroughAnotherCursor)
{
    Model model = Numbered(400, 50);
    RawTree raw(model);
    Cursor reader(raw.db.tree, raw.root);
    Cursor writer(raw.db.tree, raw.root);
    bool found = false;
    ASSERT_TRUE(reader.Seek("k000400", found));
    ASSERT_TRUE(found);
    // Thousands of entries around it: pages split, the tree grows a level.
    std::mt19937 random(3);
    for (int i = 0; i < 3000; ++i) {
        std::string key = "k" + std::to_string(random() % 1000000);
        std::string data(RandomLength(random, 3000), 'w');
        ASSERT_TRUE(writer.Insert(key, data));
        model[key] = data;
    }
    EXPECT_EQ(KeyOf(reader), "k000400");
    std::string data;
    ASSERT_TRUE(reader.Data(data));
    EXPECT_EQ(data, model["k000400"]);
    ASSERT_TRUE(reader.Next());
    EXPECT_EQ(KeyOf(reader), model.upper_bound("k000400")->first);

    // Its entry removed by the other cursor: Next goes to the entry after it.
    std::string current = KeyOf(reader);
    ASSERT_TRUE(writer.Seek(current, found));
    ASSERT_TRUE(writer.Delete());
    model.erase(current);
    ASSERT_TRUE(reader.Next());
    EXPECT_EQ(KeyOf(reader), model.upper_bound(current)->first);
    current = KeyOf(reader);
    ASSERT_TRUE(writer.Seek(current, found));
    ASSERT_TRUE(writer.Delete());
    model.erase(current);
    ASSERT_TRUE(reader.Previous());
    EXPECT_EQ(KeyOf(reader), std::prev(model.lower_bound(current))->first);

    // Everything removed under it.
    ASSERT_TRUE(writer.First());
    while (writer.Valid())
        ASSERT_TRUE(writer.Delete());
    EXPECT_FALSE(reader.Valid());
    ASSERT_TRUE(reader.Next());
    EXPECT_FALSE(reader.Valid());
}

TEST(BtreeCursor, PositionSurvivesChangesToAnotherTree)
{
    TempDir dir;
    TestDb db(dir.File("two.db"));
    db.Begin();
    uint32_t first = db.AddTable("one", "CREATE TABLE one(x)");
    uint32_t second = db.AddTable("two", "CREATE TABLE two(x)");
    Cursor a(db.tree, first), b(db.tree, second);
    for (int i = 0; i < 2000; ++i) {
        ASSERT_TRUE(a.Insert(RowKey(i), "a" + std::to_string(i)));
        ASSERT_TRUE(b.Insert(RowKey(i), std::string(300, 'b')));
    }
    bool found = false;
    ASSERT_TRUE(a.Seek(RowKey(1000), found));
    for (int i = 0; i < 2000; i += 2) {
        ASSERT_TRUE(b.Seek(RowKey(i), found));
        ASSERT_TRUE(b.Delete());
    }
    EXPECT_EQ(KeyOf(a), RowKey(1000));
    ASSERT_TRUE(a.Next());
    EXPECT_EQ(KeyOf(a), RowKey(1001));
    db.Commit();
    EXPECT_EQ(FileProblems(dir.File("two.db"), {"one", "two"}), std::vector<std::string>{});
}

TEST(BtreeCursor, PayloadOfEntriesOnOnePageAndOnChains)
{
    Model model;
    for (size_t length : {1u, 3u, 232u, 233u, 236u, 237u, 1256u, 1257u, 5000u, 100000u})
        model["key" + std::to_string(length)] = std::string(length, 'p');
    model[std::string(600, 'k')] = "long key"; // a key that continues on a chain
    model[std::string(600, 'k') + "x"] = std::string(3000, 'q');
    RawTree raw(model);
    ExpectTreeEquals(raw.db.tree, raw.root, model);
    Cursor cursor(raw.db.tree, raw.root);
    bool found = false;
    ASSERT_TRUE(cursor.Seek(std::string(600, 'k'), found));
    EXPECT_TRUE(found);
    ASSERT_TRUE(cursor.Seek(std::string(599, 'k'), found));
    EXPECT_FALSE(found);
    EXPECT_EQ(KeyOf(cursor), std::string(600, 'k'));
    raw.db.Commit();
    EXPECT_EQ(FileProblems(raw.path, {"raw"}), std::vector<std::string>{});
}

TEST(BtreeCursor, EmptyEntryIsRefused)
{
    RawTree raw({});
    Cursor cursor(raw.db.tree, raw.root);
    EXPECT_FALSE(cursor.Insert("", ""));
    EXPECT_TRUE(cursor.Insert("", "data"));
    EXPECT_TRUE(cursor.Insert("k", ""));
    ExpectTreeEquals(raw.db.tree, raw.root, {{"", "data"}, {"k", ""}});
}
