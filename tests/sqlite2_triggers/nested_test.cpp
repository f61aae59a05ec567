// Trigger programs that change tables which have triggers of their own: the
// runner is entered again from inside a body statement, as a 2.x table's
// xUpdate does. Expected outcomes are those of real SQLite 2.8.17.
#include "TriggerBench.h"

#include <gtest/gtest.h>

using namespace sqlite2;
using Strings = std::vector<std::string>;

namespace {

class Nested : public ::testing::Test {
protected:
    void SetUp() override
    {
        bench.AddTable("t", {"a", "b"}, {true, true});
        bench.AddTable("u", {"a"}, {true});
        bench.AddTable("log", {"x"}, {false});
    }
    Strings Column(const std::string& sql) { return bench.Column(sql); }

    TriggerBench bench;
};

} // namespace

TEST_F(Nested, ARunningTriggerDoesNotFireAgainButItsNeighboursDo)
{
    bench.SetTriggers({
        "CREATE TRIGGER tr AFTER INSERT ON t BEGIN INSERT INTO log VALUES('tr '||new.a); "
        "SELECT write_row('t', new.a+1, 0); END",
        "CREATE TRIGGER tr2 BEFORE INSERT ON t BEGIN INSERT INTO log VALUES('tr2 '||new.a); END",
    });
    ASSERT_TRUE(bench.Insert("t", 1, {"1", "2"}));
    EXPECT_EQ(Column("SELECT x FROM log ORDER BY rowid"), (Strings{"tr2 1", "tr 1", "tr2 2"}));
    EXPECT_EQ(Column("SELECT a || '|' || b FROM t ORDER BY rowid"), (Strings{"1|2", "2|0"}));
}

TEST_F(Nested, ACycleThroughAnotherTableStopsAtTheFirstTriggerAgain)
{
    bench.SetTriggers({
        "CREATE TRIGGER tr AFTER INSERT ON t BEGIN INSERT INTO log VALUES('tr '||new.a); "
        "SELECT write_row('u', new.a+1); END",
        "CREATE TRIGGER ur AFTER INSERT ON u BEGIN INSERT INTO log VALUES('ur '||new.a); "
        "SELECT write_row('t', new.a+1, 0); END",
    });
    ASSERT_TRUE(bench.Insert("t", 1, {"1", "2"}));
    EXPECT_EQ(Column("SELECT x FROM log ORDER BY rowid"), (Strings{"tr 1", "ur 2"}));
    EXPECT_EQ(Column("SELECT a || '|' || b FROM t ORDER BY rowid"), (Strings{"1|2", "3|0"}));
    EXPECT_EQ(Column("SELECT a FROM u"), (Strings{"2"}));
}

TEST_F(Nested, ARaiseBelowEndsTheOuterProgramWithItsKindAndMessage)
{
    bench.SetTriggers({
        "CREATE TRIGGER ur BEFORE INSERT ON u WHEN new.a > 1 BEGIN SELECT RAISE(ROLLBACK, 'inner says no'); END",
        "CREATE TRIGGER tr AFTER INSERT ON t BEGIN SELECT write_row('u', new.a); "
        "INSERT INTO log VALUES('went on'); END",
    });
    ASSERT_TRUE(bench.Insert("t", 1, {"1", "0"}));
    Status status = bench.Insert("t", 2, {"2", "0"});
    EXPECT_EQ(status.Code(), kConstraint);
    EXPECT_EQ(status.Message(), "inner says no");
    EXPECT_EQ(bench.Runner().LastRaise(), RaiseKind::Rollback);
    EXPECT_EQ(Column("SELECT x FROM log"), (Strings{"went on"}));
}

TEST_F(Nested, AnIgnoreBelowSkipsOnlyTheInnerRow)
{
    bench.SetTriggers({
        "CREATE TRIGGER ur BEFORE INSERT ON u BEGIN SELECT RAISE(IGNORE); END",
        "CREATE TRIGGER tr AFTER INSERT ON t BEGIN SELECT write_row('u', new.a); "
        "INSERT INTO log VALUES('went on'); END",
    });
    bool ignored = true;
    ASSERT_TRUE(bench.Insert("t", 1, {"1", "0"}, &ignored));
    EXPECT_FALSE(ignored);
    EXPECT_EQ(bench.Runner().LastRaise(), RaiseKind::None);
    EXPECT_EQ(Column("SELECT x FROM log"), (Strings{"went on"}));
    EXPECT_TRUE(Column("SELECT a FROM u").empty());
    EXPECT_EQ(Column("SELECT a FROM t"), (Strings{"1"}));
}

TEST_F(Nested, RaiseOutsideATriggerIsRefused)
{
    char* error = nullptr;
    EXPECT_NE(sqlite3_exec(bench.Connection(), "SELECT sqlite2_raise('ABORT', 'x')", nullptr, nullptr, &error),
              SQLITE_OK);
    EXPECT_STREQ(error, "RAISE() may only be used within a trigger-program");
    sqlite3_free(error);
}

TEST_F(Nested, AnIgnoreBelowDoesNotTurnALaterFailureIntoAnIgnore)
{
    bench.AddTable("once", {"k"}, {false});
    bench.Exec("CREATE UNIQUE INDEX once_k ON once(k)");
    bench.SetTriggers({
        "CREATE TRIGGER ur BEFORE INSERT ON u BEGIN SELECT RAISE(IGNORE); END",
        "CREATE TRIGGER tr AFTER INSERT ON t BEGIN INSERT INTO once SELECT write_row('u', new.a) "
        "UNION ALL SELECT 'dup' UNION ALL SELECT 'dup'; END",
    });
    bool ignored = true;
    Status status = bench.Insert("t", 1, {"1", "0"}, &ignored);
    EXPECT_EQ(status.Code(), kConstraint);
    EXPECT_EQ(status.Message(), "UNIQUE constraint failed: once.k");
    EXPECT_FALSE(ignored);
    EXPECT_EQ(bench.Runner().LastRaise(), RaiseKind::None);
}
