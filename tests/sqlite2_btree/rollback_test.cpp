// Changes undone by the pager: cursors find their place again once told.
#include "BtreeSupport.h"

#include <gtest/gtest.h>

using namespace sqlite2;

using BtreeRollback = BtreeNewTableTest;

TEST_F(BtreeRollback, SavepointUndoesSplitsAndCursorsFollow)
{
    Model model;
    Cursor cursor(db.tree, root);
    for (int i = 0; i < 300; ++i) {
        std::string data = TextRecord(std::string(i % 50, 'v'));
        ASSERT_TRUE(cursor.Insert(RowKey(i * 10), data));
        model[RowKey(i * 10)] = data;
    }
    Cursor reader(db.tree, root);
    bool found = false;
    ASSERT_TRUE(reader.Seek(RowKey(1500), found));

    const int savepoint = db.pager.OpenSavepoint();
    for (int i = 0; i < 3000; ++i)
        ASSERT_TRUE(cursor.Insert(RowKey(i * 10 + 5), TextRecord(std::string(i % 900, 'n'))));
    for (int i = 0; i < 300; i += 2)
        ASSERT_TRUE(DeleteEntry(cursor, RowKey(i * 10)));
    db.pager.RollbackTo(savepoint);
    db.tree.NoteChange(); // the pages changed behind the cursors' backs
    db.pager.Release(savepoint);

    std::string key;
    ASSERT_TRUE(reader.Key(key));
    EXPECT_EQ(key, RowKey(1500));
    ASSERT_TRUE(reader.Next());
    ASSERT_TRUE(reader.Key(key));
    EXPECT_EQ(key, RowKey(1510));
    ExpectTreeEquals(db.tree, root, model);
    db.Commit();
    EXPECT_EQ(FileProblems(path), noProblems);
    EXPECT_EQ(db.tree.Meta(56), 0u) << "the pages taken in the savepoint went back with it";
}

TEST_F(BtreeRollback, WholeWriteUndone)
{
    Cursor cursor(db.tree, root);
    ASSERT_TRUE(InsertTextRows(cursor, 500, [](int i) { return std::string(i, 'r'); }));
    db.Commit();
    const Model before = ReadForward(db.tree, root);

    db.Begin();
    ASSERT_TRUE(cursor.First());
    while (cursor.Valid())
        ASSERT_TRUE(cursor.Delete());
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(cursor.Insert(RowKey(-i), "x"));
    db.Rollback();
    ExpectTreeEquals(db.tree, root, before);
    EXPECT_EQ(FileProblems(path), noProblems);
}
