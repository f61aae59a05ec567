// ParseCreateTrigger on trigger texts as 2.8 writes and accepts them; the
// error texts are those real SQLite 2.8.17 gives for the same statements.
#include "TestFiles.h"
#include "triggers.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

using namespace sqlite2;
using Timing = TriggerDefinition::Timing;
using Event = TriggerDefinition::Event;

namespace {

TriggerDefinition Parsed(const std::string& sql)
{
    TriggerDefinition trigger;
    const Status status = ParseCreateTrigger(sql, trigger);
    EXPECT_TRUE(status.ok()) << sql << ": " << status.Message();
    return trigger;
}

std::string ErrorOf(const std::string& sql)
{
    TriggerDefinition trigger;
    const Status status = ParseCreateTrigger(sql, trigger);
    EXPECT_FALSE(status.ok()) << sql;
    return status.Message();
}

std::string TriggerLineOf(const std::string& path)
{
    std::ifstream file(path);
    std::string line;
    while (std::getline(file, line))
        if (line.rfind("CREATE TRIGGER", 0) == 0)
            return line;
    return {};
}

} // namespace

TEST(ParseCreateTrigger, ThePersonFixturesTrigger)
{
    const std::string sql = TriggerLineOf(FixturePath("person.sql"));
    ASSERT_FALSE(sql.empty());
    TriggerDefinition trigger = Parsed(sql);
    EXPECT_EQ(trigger.name, "person_upd");
    EXPECT_EQ(trigger.table, "person");
    EXPECT_EQ(trigger.timing, Timing::After);
    EXPECT_EQ(trigger.event, Event::Update);
    EXPECT_TRUE(trigger.updateColumns.empty());
    EXPECT_TRUE(trigger.when.empty());
    EXPECT_TRUE(trigger.forEachRow);
    EXPECT_EQ(trigger.statements, std::vector<std::string>{"INSERT INTO person_log VALUES(old.id, new.name)"});
}

TEST(ParseCreateTrigger, TheTextAsStoredInTheSchemaHasNoClosingSemicolon)
{
    TriggerDefinition trigger = Parsed("CREATE TRIGGER s BEFORE DELETE ON t BEGIN DELETE FROM u; END");
    EXPECT_EQ(trigger.event, Event::Delete);
    EXPECT_EQ(trigger.statements, std::vector<std::string>{"DELETE FROM u"});
}

TEST(ParseCreateTrigger, WithoutTimingATriggerRunsBefore)
{
    EXPECT_EQ(Parsed("CREATE TRIGGER s9 INSERT ON t BEGIN SELECT 1; END;").timing, Timing::Before);
}

TEST(ParseCreateTrigger, AKeywordRightAfterTriggerIsTheName)
{
    // 2.8 stores this one as a BEFORE trigger named AFTER.
    TriggerDefinition trigger = Parsed("CREATE TRIGGER AFTER INSERT ON t BEGIN SELECT 1; END;");
    EXPECT_EQ(trigger.name, "AFTER");
    EXPECT_EQ(trigger.timing, Timing::Before);
    EXPECT_EQ(trigger.event, Event::Insert);
}

TEST(ParseCreateTrigger, QuotedAndQualifiedNames)
{
    TriggerDefinition trigger = Parsed("CREATE TEMPORARY TRIGGER [b y] AFTER UPDATE OF \"a\", [b],c ON main.[T x] "
                                       "FOR EACH ROW BEGIN SELECT 1; END;");
    EXPECT_EQ(trigger.name, "b y");
    EXPECT_EQ(trigger.table, "T x");
    EXPECT_EQ(trigger.updateColumns, (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(Parsed("CREATE TEMP TRIGGER 'q x' INSTEAD OF DELETE ON 'v' BEGIN SELECT 1; END").name, "q x");
    EXPECT_EQ(Parsed("CREATE TEMP TRIGGER 'q x' INSTEAD OF DELETE ON 'v' BEGIN SELECT 1; END").timing,
              Timing::InsteadOf);
}

TEST(ParseCreateTrigger, WhenRunsToTheBeginOutsideParentheses)
{
    TriggerDefinition trigger = Parsed("CREATE TRIGGER s AFTER INSERT ON t WHEN (SELECT count(*) FROM log) < 5 "
                                       "AND CASE WHEN new.a THEN 1 ELSE 0 END BEGIN SELECT 1; END;");
    EXPECT_EQ(trigger.when, "(SELECT count(*) FROM log) < 5 AND CASE WHEN new.a THEN 1 ELSE 0 END");
}

TEST(ParseCreateTrigger, BodyStatementsSplitOnlyAtTheirOwnSemicolons)
{
    TriggerDefinition trigger = Parsed("create trigger s after insert on t begin\n"
                                       "  SELECT 'a;b', \"x;y\" ;\n"
                                       "  INSERT INTO log SELECT CASE WHEN new.a THEN ';' END FROM (SELECT 1) -- c;\n"
                                       "  ;\n"
                                       "  update log set x = x || 'END';\n"
                                       "end");
    EXPECT_EQ(trigger.statements,
              (std::vector<std::string>{"SELECT 'a;b', \"x;y\"",
                                        "INSERT INTO log SELECT CASE WHEN new.a THEN ';' END FROM (SELECT 1)",
                                        "update log set x = x || 'END'"}));
}

TEST(ParseCreateTrigger, ReplaceAndConflictClausesAreBodyStatements)
{
    TriggerDefinition trigger = Parsed("CREATE TRIGGER s20 BEFORE INSERT ON t BEGIN REPLACE INTO log VALUES(1); "
                                       "INSERT OR IGNORE INTO log VALUES(2); UPDATE OR REPLACE log SET x=1; END;");
    EXPECT_EQ(trigger.statements.size(), 3u);
}

TEST(ParseCreateTrigger, AnEmptyBodyIsAccepted)
{
    EXPECT_TRUE(Parsed("CREATE TRIGGER s4 AFTER INSERT ON t BEGIN END;").statements.empty());
}

TEST(ParseCreateTrigger, ForEachStatementIsMarked)
{
    EXPECT_FALSE(Parsed("CREATE TRIGGER s AFTER INSERT ON t FOR EACH STATEMENT BEGIN SELECT 1; END;").forEachRow);
}

TEST(ParseCreateTrigger, SyntaxErrorsIn28sWords)
{
    const std::pair<const char*, const char*> cases[] = {
        {"CREATE TRIGGER s5 AFTER INSERT ON t BEGIN SELECT 1", "near \"1\": syntax error"},
        {"CREATE TRIGGER s5 AFTER INSERT ON t BEGIN SELECT 1;", "near \";\": syntax error"},
        {"CREATE TRIGGER s6 AFTER INSERT ON t BEGIN CREATE TABLE q(a); END;", "near \"CREATE\": syntax error"},
        {"CREATE TRIGGER s7 AFTER DELETE OF a ON t BEGIN SELECT 1; END;", "near \"OF\": syntax error"},
        {"CREATE TRIGGER s8 AFTER INSERT ON t BEGIN SELECT 1 END;", "near \";\": syntax error"},
        {"CREATE TRIGGER s10 ON t BEGIN SELECT 1; END;", "near \"ON\": syntax error"},
        {"CREATE TRIGGER s11 AFTER UPDATE OF ON t BEGIN SELECT 1; END;", "near \"ON\": syntax error"},
        {"CREATE TRIGGER s12 AFTER INSERT ON t WHEN BEGIN SELECT 1; END;", "near \"SELECT\": syntax error"},
        {"CREATE TRIGGER s14 AFTER INSERT ON t BEGIN SELECT 1;; END;", "near \";\": syntax error"},
        {"CREATE TRIGGER s17 AFTER INSERT ON t BEGIN SELECT 1; END garbage;", "near \"garbage\": syntax error"},
        {"CREATE TRIGGER s21 BEFORE INSERT ON t BEGIN BEGIN; END;", "near \"BEGIN\": syntax error"},
        {"CREATE TRIGGER s22 BEFORE INSERT ON t FOR EACH ROW FOR EACH ROW BEGIN SELECT 1; END;",
         "near \"FOR\": syntax error"},
        {"CREATE TRIGGER main.x AFTER INSERT ON t BEGIN SELECT 1; END;", "near \".\": syntax error"},
        {"CREATE TRIGGER s2 AFTER INSERT ON t FOR EACH BEGIN SELECT 1; END;", "near \"BEGIN\": syntax error"},
        {"CREATE TRIGGER s7 AFTER INSERT ON t BEGIN SELECT 1; END; garbage", "near \"garbage\": syntax error"},
        {"CREATE TRIGGER s8 AFTER", "near \"AFTER\": syntax error"},
        {"CREATE TRIGGER", "near \"TRIGGER\": syntax error"},
        {"CREATE TRIGGER s9 AFTER INSERT t BEGIN SELECT 1; END;", "near \"t\": syntax error"},
        {"CREATE TRIGGER s10 AFTER INSERT ON t BEGIN SELECT 1; SELECT 2", "near \"2\": syntax error"},
        {"CREATE TRIGGER s13 AFTER INSERT ON t BEGIN SELECT 1; END END;", "near \"END\": syntax error"},
    };
    for (const auto& [sql, error] : cases)
        EXPECT_EQ(ErrorOf(sql), error) << sql;
}
