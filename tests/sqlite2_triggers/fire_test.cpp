// TriggerRunner::Fire on one level: what a trigger program sees of the row,
// which triggers run and in what order, and how RAISE ends them. The
// expected outcomes are those real SQLite 2.8.17 gives for the same
// triggers and statements.
#include "TriggerBench.h"

#include <gtest/gtest.h>

using namespace sqlite2;
using Strings = std::vector<std::string>;

namespace {

class Fire : public ::testing::Test {
protected:
    void SetUp() override
    {
        // t(a INTEGER, b, name TEXT): a and b are of the numeric class.
        bench.AddTable("t", {"a", "b", "name"}, {true, true, false});
        bench.AddTable("log", {"x"}, {false});
    }
    Strings Log() { return bench.Column("SELECT x FROM log ORDER BY rowid"); }
    Strings Rows(const char* table) { return bench.Column(std::string("SELECT a FROM ") + table + " ORDER BY rowid"); }

    TriggerBench bench;
};

} // namespace

TEST_F(Fire, WhenComparesNumericColumnsAsNumbersAndTextColumnsAsTexts)
{
    bench.SetTriggers({
        "CREATE TRIGGER u1 AFTER UPDATE ON t WHEN new.a > old.a BEGIN INSERT INTO log VALUES('a'); END",
        "CREATE TRIGGER u2 AFTER UPDATE ON t WHEN new.b > old.b BEGIN INSERT INTO log VALUES('b'); END",
        "CREATE TRIGGER u3 AFTER UPDATE ON t WHEN new.name > old.name BEGIN INSERT INTO log VALUES('name'); END",
    });
    ASSERT_TRUE(bench.Insert("t", 1, {"9", "9", "9"}));
    ASSERT_TRUE(bench.Update("t", 1, {"10", "10", "10"}));
    EXPECT_EQ(Log(), (Strings{"b", "a"})); // "10" > "9" as numbers, not as texts
    ASSERT_TRUE(bench.Update("t", 1, {"2.5", "-3", "10"}));
    EXPECT_EQ(Log(), (Strings{"b", "a"}));
}

TEST_F(Fire, NumbersWrittenOddlyReachTheProgramAsWritten)
{
    bench.SetTriggers({"CREATE TRIGGER i1 AFTER INSERT ON t BEGIN INSERT INTO log VALUES(new.a); "
                       "INSERT INTO log VALUES(new.b); INSERT INTO log VALUES(007); END"});
    ASSERT_TRUE(bench.Insert("t", 1, {"007", "1.50", "x"}));
    ASSERT_TRUE(bench.Insert("t", 2, {"1e3", "-0", "x"}));
    EXPECT_EQ(Log(), (Strings{"007", "1.50", "007", "1e3", "-0", "007"}));
}

TEST_F(Fire, NullsAndTextsWithQuotesAreBoundAsTheyAre)
{
    bench.SetTriggers({"CREATE TRIGGER i AFTER INSERT ON t BEGIN INSERT INTO log VALUES(typeof(new.b)); "
                       "INSERT INTO log VALUES(new.name); INSERT INTO log VALUES(new.a || '|' || new.b); END"});
    ASSERT_TRUE(bench.Insert("t", 1, {"O'Brien", std::nullopt, "it's \"new.a\"; END"}));
    EXPECT_EQ(Log(), (Strings{"null", "it's \"new.a\"; END", "NULL"}));
}

TEST_F(Fire, RowidsUnderEveryNameAndPseudoRowsInAnySpelling)
{
    bench.SetTriggers({"CREATE TRIGGER u AFTER UPDATE ON t BEGIN INSERT INTO log VALUES(old.rowid || ' ' || "
                       "new.oid || ' ' || NEW._ROWID_ || ' ' || \"Old\".[A] || ' ' || [new].\"NAME\"); END"});
    ASSERT_TRUE(bench.Insert("t", 1, {"5", "6", "x"}));
    ASSERT_TRUE(bench.Update("t", 1, {"5", "6", "y"}, nullptr, 7));
    EXPECT_EQ(Log(), (Strings{"1 7 7 5 y"}));
}

TEST_F(Fire, UpdateOfRunsOnlyWhenTheSetListNamesAColumn)
{
    bench.SetTriggers({"CREATE TRIGGER u AFTER UPDATE OF b, Name ON t BEGIN INSERT INTO log VALUES(new.a); END"});
    ASSERT_TRUE(bench.Insert("t", 1, {"1", "2", std::nullopt}));
    ASSERT_TRUE(bench.UpdateSetting("t", 1, {"2", "2", std::nullopt}, {true, false, false}));
    ASSERT_TRUE(bench.UpdateSetting("t", 1, {"3", "2", std::nullopt}, {true, true, false})) << "b set to itself";
    ASSERT_TRUE(bench.UpdateSetting("t", 1, {"4", "2", "x"}, {true, false, true}));
    ASSERT_TRUE(bench.UpdateSetting("t", 1, {"5", "9", "y"}, {true, false, false})) << "changed, but not set";
    EXPECT_EQ(Log(), (Strings{"3", "4"}));
}

TEST_F(Fire, NewestTriggerFirstAndOnlyThoseOfTheTiming)
{
    bench.SetTriggers({
        "CREATE TRIGGER t1 AFTER INSERT ON t BEGIN INSERT INTO log VALUES('t1 '||new.a); END",
        "CREATE TRIGGER t2 AFTER INSERT ON t BEGIN INSERT INTO log VALUES('t2 '||new.a); END",
        "CREATE TRIGGER t0 BEFORE INSERT ON t BEGIN INSERT INTO log VALUES('t0 '||new.a); END",
        "CREATE TRIGGER t3 BEFORE INSERT ON t BEGIN INSERT INTO log VALUES('t3 '||new.a); END",
        "CREATE TRIGGER d1 BEFORE DELETE ON t BEGIN INSERT INTO log VALUES('d1 '||old.a); END",
        "CREATE TRIGGER other BEFORE INSERT ON log BEGIN INSERT INTO log VALUES('other'); END",
    });
    ASSERT_TRUE(bench.Insert("t", 1, {"1", "2", "x"}));
    ASSERT_TRUE(bench.Delete("t", 1));
    EXPECT_EQ(Log(), (Strings{"t3 1", "t0 1", "t2 1", "t1 1", "d1 1"}));
}

TEST_F(Fire, ForEachStatementTriggersNeverRun)
{
    bench.SetTriggers({
        "CREATE TRIGGER s1 AFTER INSERT ON t FOR EACH STATEMENT BEGIN INSERT INTO log VALUES('s1'); END",
        "CREATE TRIGGER s3 AFTER INSERT ON t FOR EACH ROW BEGIN INSERT INTO log VALUES('s3'); END",
    });
    ASSERT_TRUE(bench.Insert("t", 1, {"1", "2", "x"}));
    EXPECT_EQ(Log(), (Strings{"s3"}));
}

TEST_F(Fire, RaiseEndsTheProgramWithItsKindAndMessage)
{
    const std::pair<const char*, RaiseKind> kinds[] = {
        {"ABORT", RaiseKind::Abort}, {"FAIL", RaiseKind::Fail}, {"ROLLBACK", RaiseKind::Rollback}};
    for (const auto& [word, kind] : kinds) {
        bench.Exec("DELETE FROM log");
        bench.SetTriggers({std::string("CREATE TRIGGER r BEFORE INSERT ON t WHEN new.a > 10 BEGIN ") +
                           "INSERT INTO log VALUES('before'); SELECT RAISE(" + word + ", 'too big: ''no'''); " +
                           "INSERT INTO log VALUES('after'); END"});
        bool ignored = true;
        EXPECT_TRUE(bench.Insert("t", 1, {"5", "0", "x"}, &ignored));
        Status status = bench.Insert("t", 2, {"11", "0", "x"}, &ignored);
        EXPECT_EQ(status.Code(), kConstraint) << word;
        EXPECT_EQ(status.Message(), "too big: 'no'") << word;
        EXPECT_EQ(bench.Runner().LastRaise(), kind) << word;
        EXPECT_FALSE(ignored) << word;
        EXPECT_EQ(Log(), (Strings{"before"})) << word;
    }
}

TEST_F(Fire, RaiseMessageMayBeAName)
{
    bench.SetTriggers({"CREATE TRIGGER r BEFORE DELETE ON t BEGIN SELECT RAISE(FAIL, \"kept rows\"); END"});
    ASSERT_TRUE(bench.Insert("t", 1, {"1", "2", "x"}));
    EXPECT_EQ(bench.Delete("t", 1).Message(), "kept rows");
}

TEST_F(Fire, IgnoreSkipsTheRowAndItsRemainingTriggers)
{
    bench.SetTriggers({
        "CREATE TRIGGER b1 BEFORE INSERT ON t BEGIN INSERT INTO log VALUES('b1 '||new.a); END",
        "CREATE TRIGGER b2 BEFORE INSERT ON t BEGIN INSERT INTO log VALUES('b2 '||new.a); SELECT RAISE(IGNORE) "
        "WHERE new.a=2; INSERT INTO log VALUES('b2 after '||new.a); END",
        "CREATE TRIGGER b3 BEFORE INSERT ON t BEGIN INSERT INTO log VALUES('b3 '||new.a); END",
        "CREATE TRIGGER a1 AFTER INSERT ON t BEGIN INSERT INTO log VALUES('a1 '||new.a); END",
        "CREATE TRIGGER a2 AFTER INSERT ON t BEGIN INSERT INTO log VALUES('a2 '||new.a); SELECT RAISE(IGNORE) "
        "WHERE new.a=3; INSERT INTO log VALUES('a2 after '||new.a); END",
        "CREATE TRIGGER a3 AFTER INSERT ON t BEGIN INSERT INTO log VALUES('a3 '||new.a); END",
    });
    bool ignored = false;
    ASSERT_TRUE(bench.Insert("t", 1, {"1", "0", "x"}, &ignored));
    EXPECT_FALSE(ignored);
    ASSERT_TRUE(bench.Insert("t", 2, {"2", "0", "x"}, &ignored));
    EXPECT_TRUE(ignored);
    EXPECT_EQ(bench.Runner().LastRaise(), RaiseKind::Ignore);
    ASSERT_TRUE(bench.Insert("t", 3, {"3", "0", "x"}));
    EXPECT_EQ(Log(), (Strings{"b3 1", "b2 1", "b2 after 1", "b1 1", "a3 1", "a2 1", "a2 after 1", "a1 1", "b3 2",
                              "b2 2", "b3 3", "b2 3", "b2 after 3", "b1 3", "a3 3", "a2 3"}));
    EXPECT_EQ(Rows("t"), (Strings{"1", "3"}));
}

TEST_F(Fire, ABrokenProgramFailsTheRowBeforeAnyTriggerRuns)
{
    // 2.8 compiles every trigger with the statement: the error comes even
    // though the broken trigger's WHEN never holds and its timing is AFTER.
    bench.SetTriggers({
        "CREATE TRIGGER fine BEFORE INSERT ON t BEGIN INSERT INTO log VALUES('fine'); END",
        "CREATE TRIGGER bad AFTER INSERT ON t WHEN 0 BEGIN SELECT NEW.Zz; END",
    });
    Status status = bench.Insert("t", 1, {"1", "2", "x"});
    EXPECT_EQ(status.Code(), kError);
    EXPECT_EQ(status.Message(), "no such column: NEW.Zz");
    EXPECT_EQ(bench.Runner().LastRaise(), RaiseKind::None);
    EXPECT_TRUE(Log().empty());
    EXPECT_TRUE(Rows("t").empty());
}

TEST_F(Fire, ARowTheEventDoesNotHaveIsNoColumn)
{
    bench.SetTriggers({"CREATE TRIGGER bad AFTER INSERT ON t BEGIN SELECT Old.A; END",
                       "CREATE TRIGGER bad2 AFTER DELETE ON t WHEN new.a BEGIN SELECT 1; END"});
    EXPECT_EQ(bench.Insert("t", 1, {"1", "2", "x"}).Message(), "no such column: Old.A");
    bench.Exec("INSERT INTO t(rowid, a) VALUES(1, 1)");
    EXPECT_EQ(bench.Delete("t", 1).Message(), "no such column: new.a");
}

TEST_F(Fire, AFailingBodyStatementIsNoRaise)
{
    bench.AddTable("once", {"k"}, {false});
    bench.Exec("CREATE UNIQUE INDEX once_k ON once(k)");
    bench.SetTriggers({
        "CREATE TRIGGER r BEFORE INSERT ON t WHEN new.a = 0 BEGIN SELECT RAISE(ABORT, 'zero'); END",
        "CREATE TRIGGER dup AFTER INSERT ON t BEGIN INSERT INTO once VALUES(new.b); END",
    });
    EXPECT_EQ(bench.Runner().LastRaise(), RaiseKind::None);
    EXPECT_EQ(bench.Insert("t", 1, {"0", "1", "x"}).Message(), "zero");
    ASSERT_TRUE(bench.Insert("t", 2, {"1", "1", "x"}));
    Status status = bench.Insert("t", 3, {"1", "1", "x"});
    EXPECT_EQ(status.Code(), kConstraint);
    EXPECT_EQ(status.Message(), "UNIQUE constraint failed: once.k");
    EXPECT_EQ(bench.Runner().LastRaise(), RaiseKind::None);
}

TEST_F(Fire, NewTriggersReplaceThePreparedPrograms)
{
    bench.SetTriggers({"CREATE TRIGGER x AFTER INSERT ON t BEGIN INSERT INTO log VALUES('one'); END"});
    ASSERT_TRUE(bench.Insert("t", 1, {"1", "2", "x"}));
    bench.SetTriggers({"CREATE TRIGGER x AFTER INSERT ON t BEGIN INSERT INTO log VALUES('two'); END"});
    ASSERT_TRUE(bench.Insert("t", 2, {"1", "2", "x"}));
    bench.SetTriggers({});
    ASSERT_TRUE(bench.Insert("t", 3, {"1", "2", "x"}));
    EXPECT_FALSE(bench.Runner().HasTriggers("t"));
    EXPECT_EQ(Log(), (Strings{"one", "two"}));
}

TEST_F(Fire, TheUsersLastInsertRowidSurvivesTheBody)
{
    bench.SetTriggers({"CREATE TRIGGER x BEFORE INSERT ON T BEGIN INSERT INTO log VALUES('one'); END"});
    EXPECT_TRUE(bench.Runner().HasTriggers("t"));
    bench.Exec("INSERT INTO log(rowid, x) VALUES(42, 'seed')");
    const Row row{"1", "2", "x"};
    const TriggerRow inserted{1, &row};
    bool ignored = false;
    ASSERT_TRUE(bench.Runner().Fire(bench.Table("t"), TriggerDefinition::Timing::Before,
                                    TriggerDefinition::Event::Insert, nullptr, &inserted, ignored));
    EXPECT_EQ(sqlite3_last_insert_rowid(bench.Connection()), 42);
    EXPECT_EQ(Log(), (Strings{"seed", "one"}));
}
