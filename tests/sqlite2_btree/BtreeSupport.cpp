#include "BtreeSupport.h"

#include "Sqlite2Checker.h"

#include <filesystem>

using namespace sqlite2;

TestDb::TestDb(const std::string& path)
{
    EXPECT_TRUE(pager.Open(path));
    EXPECT_TRUE(pager.BeginRead());
    Status status = tree.ReadHeader();
    EXPECT_TRUE(status) << status.Message();
}

void TestDb::Begin()
{
    ASSERT_TRUE(pager.BeginWrite());
    if (tree.IsEmpty()) {
        ASSERT_TRUE(tree.Initialize());
    }
}

void TestDb::Commit()
{
    Status status = pager.Commit();
    ASSERT_TRUE(status) << status.Message();
}

void TestDb::Rollback()
{
    pager.Rollback();
    tree.NoteChange();
}

void BtreeNewTableTest::SetUp()
{
    BtreeWriteTest::SetUp();
    root = db.AddTable("t", "CREATE TABLE t(x)");
}

uint32_t WriteTableT(const std::string& path, const std::function<void(sqlite2::Cursor&)>& fill)
{
    TestDb db(path);
    db.Begin();
    const uint32_t root = db.AddTable("t", "CREATE TABLE t(x)");
    sqlite2::Cursor cursor(db.tree, root);
    fill(cursor);
    if (!::testing::Test::HasFatalFailure())
        db.Commit();
    return root;
}

uint32_t TestDb::AddTree(const std::string& type, const std::string& name, const std::string& table,
                         const std::optional<std::string>& sql)
{
    uint32_t root = 0;
    EXPECT_TRUE(tree.CreateTree(root));
    Cursor schema(tree, 2);
    EXPECT_TRUE(schema.Last());
    int32_t rowid = 1;
    if (schema.Valid()) {
        std::string key;
        EXPECT_TRUE(schema.Key(key));
        rowid = DecodeRowidKey(key) + 1;
    }
    Row row{type, name, table, std::to_string(root), sql ? Value(*sql) : Value()};
    EXPECT_TRUE(schema.Insert(EncodeRowidKey(rowid), EncodeRecord(row)));
    EXPECT_TRUE(tree.SetMeta(60, tree.Meta(60) + 1));
    EXPECT_TRUE(tree.SetMeta(64, 4));
    return root;
}

uint32_t TestDb::RootOf(const std::string& name)
{
    Cursor schema(tree, 2);
    EXPECT_TRUE(schema.First());
    while (schema.Valid()) {
        std::string data;
        EXPECT_TRUE(schema.Data(data));
        Row row;
        if (DecodeRecord(data, row) && row.size() == 5 && row[1] == name && row[3])
            return uint32_t(std::stoul(*row[3]));
        EXPECT_TRUE(schema.Next());
    }
    return 0;
}

std::vector<std::string> FileProblems(const std::string& path, const std::vector<std::string>& raw)
{
    std::vector<std::string> problems;
    for (const std::string& problem : CheckSqlite2File(path)) {
        bool expected = false;
        for (const std::string& name : raw)
            expected = expected || problem == name + ": malformed row";
        if (!expected)
            problems.push_back(problem);
    }
    return problems;
}

Model ReadForward(BTree& tree, uint32_t root)
{
    Model entries;
    Cursor cursor(tree, root);
    EXPECT_TRUE(cursor.First());
    std::string previous;
    for (bool first = true; cursor.Valid(); first = false) {
        std::string_view key, data;
        Status status = cursor.Payload(key, data);
        EXPECT_TRUE(status) << status.Message();
        if (!status)
            break;
        EXPECT_TRUE(first || previous < key) << "keys out of order";
        previous = key;
        entries.emplace(key, data);
        EXPECT_TRUE(cursor.Next());
    }
    return entries;
}

Model ReadBackward(BTree& tree, uint32_t root)
{
    Model entries;
    Cursor cursor(tree, root);
    EXPECT_TRUE(cursor.Last());
    while (cursor.Valid()) {
        std::string key, data;
        EXPECT_TRUE(cursor.Key(key));
        EXPECT_TRUE(cursor.Data(data));
        EXPECT_TRUE(entries.empty() || key < entries.begin()->first) << "keys out of order";
        entries.emplace(key, data);
        EXPECT_TRUE(cursor.Previous());
    }
    return entries;
}

void ExpectTreeEquals(BTree& tree, uint32_t root, const Model& model)
{
    Model forward = ReadForward(tree, root);
    EXPECT_EQ(forward.size(), model.size());
    EXPECT_TRUE(forward == model) << "forward scan differs from the model";
    EXPECT_TRUE(ReadBackward(tree, root) == model) << "backward scan differs from the model";
}

void ExpectSeeksAgree(BTree& tree, uint32_t root, const Model& model, std::mt19937& random, int count)
{
    Cursor cursor(tree, root);
    std::vector<std::string> keys;
    for (const auto& [key, data] : model)
        keys.push_back(key);
    for (int i = 0; i < count; ++i) {
        std::string probe;
        if (!keys.empty() && i % 2 == 0) {
            probe = keys[random() % keys.size()];
            if (i % 4 == 2)
                probe += char(random() % 3); // just after a key, before its other extensions
        } else {
            probe = RandomText(random, random() % 12);
        }
        bool found = false;
        ASSERT_TRUE(cursor.Seek(probe, found));
        auto expected = model.lower_bound(probe);
        EXPECT_EQ(found, expected != model.end() && expected->first == probe);
        ASSERT_EQ(cursor.Valid(), expected != model.end());
        if (cursor.Valid()) {
            std::string key;
            ASSERT_TRUE(cursor.Key(key));
            EXPECT_EQ(key, expected->first);
        }
    }
}

std::string RandomText(std::mt19937& random, size_t length)
{
    std::string text(length, 'a');
    for (char& c : text)
        c = "abc\x01\xff"[random() % 5];
    return text;
}

size_t RandomLength(std::mt19937& random, size_t largest)
{
    switch (random() % 8) {
    case 0:
        return random() % (largest + 1);
    case 1:
        return random() % 3000;
    case 2:
        return 200 + random() % 80; // around the 236-byte overflow threshold
    default:
        return random() % 60;
    }
}

std::string RowKey(int32_t rowid)
{
    return EncodeRowidKey(rowid);
}

std::string TextRecord(const std::string& text)
{
    return EncodeRecord({Value(text)});
}

::testing::AssertionResult InsertTextRows(Cursor& cursor, int count, const std::function<std::string(int)>& text)
{
    for (int i = 0; i < count; ++i) {
        Status status = cursor.Insert(RowKey(i), TextRecord(text(i)));
        if (!status)
            return ::testing::AssertionFailure() << "row " << i << ": " << status.Message();
    }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult DeleteEntry(Cursor& cursor, const std::string& key)
{
    bool found = false;
    Status status = cursor.Seek(key, found);
    if (status && !found)
        return ::testing::AssertionFailure() << "no entry with the key";
    if (status)
        status = cursor.Delete();
    if (!status)
        return ::testing::AssertionFailure() << status.Message();
    return ::testing::AssertionSuccess();
}

uint64_t FileSize(const std::string& path)
{
    return std::filesystem::file_size(path);
}
