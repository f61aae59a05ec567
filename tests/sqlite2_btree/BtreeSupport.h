#pragma once

// Helpers of the B-tree tests: a 2.x file opened through the pager, trees
// registered in sqlite_master so that the checker sees them, and comparisons
// of a tree with a std::map model.
#include "TempDir.h"
#include "btree.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

using Model = std::map<std::string, std::string>;

// A file opened for reading; Begin/Commit wrap one write.
class TestDb {
public:
    explicit TestDb(const std::string& path);

    sqlite2::Pager pager;
    sqlite2::BTree tree{pager};

    void Begin();
    void Commit();
    void Rollback();

    // Creates a tree and its sqlite_master row (the schema cookie changes).
    uint32_t AddTree(const std::string& type, const std::string& name, const std::string& table,
                     const std::optional<std::string>& sql);
    uint32_t AddTable(const std::string& name, const std::string& sql) { return AddTree("table", name, name, sql); }
    // Root page of a table or index by its name, 0 when there is none.
    uint32_t RootOf(const std::string& name);
};

// A test's own new file, open for writing.
class BtreeWriteTest : public ::testing::Test {
protected:
    void SetUp() override { db.Begin(); }

    TempDir dir;
    const std::string path = dir.File("t.db");
    TestDb db{path};
};

// The same with the table "t" (CREATE TABLE t(x)) added in that write.
class BtreeNewTableTest : public BtreeWriteTest {
protected:
    void SetUp() override;

    uint32_t root = 0;
};

// Makes the file with the table "t" (CREATE TABLE t(x)), fills it through a
// cursor in the same write and closes the file again; the table's root page.
uint32_t WriteTableT(const std::string& path, const std::function<void(sqlite2::Cursor&)>& fill);

// Everything the checker finds wrong with the file. Trees named in `raw` hold
// keys and data no table could: the checker still walks every page of them,
// only its complaint that their rows are no records is left out.
std::vector<std::string> FileProblems(const std::string& path, const std::vector<std::string>& raw = {});
// What FileProblems gives for a sound file.
inline const std::vector<std::string> noProblems;

// A record of one text column.
std::string TextRecord(const std::string& text);
// Inserts rows 0 to count - 1 through the cursor, row i holding TextRecord(text(i)).
::testing::AssertionResult InsertTextRows(sqlite2::Cursor& cursor, int count,
                                          const std::function<std::string(int)>& text);
// Deletes the entry with this key, which must be in the tree.
::testing::AssertionResult DeleteEntry(sqlite2::Cursor& cursor, const std::string& key);

// Every entry of the tree in order, read forwards with Payload and
// backwards with Key and Data.
Model ReadForward(sqlite2::BTree& tree, uint32_t root);
Model ReadBackward(sqlite2::BTree& tree, uint32_t root);
void ExpectTreeEquals(sqlite2::BTree& tree, uint32_t root, const Model& model);
// Seeks of present keys, of keys between them and beyond both ends.
void ExpectSeeksAgree(sqlite2::BTree& tree, uint32_t root, const Model& model, std::mt19937& random, int count);

// A text of this many bytes, from a small alphabet so that texts share prefixes.
std::string RandomText(std::mt19937& random, size_t length);
// Lengths from 0 to `largest`, most small, some across every overflow length.
size_t RandomLength(std::mt19937& random, size_t largest);
std::string RowKey(int32_t rowid);
uint64_t FileSize(const std::string& path);
