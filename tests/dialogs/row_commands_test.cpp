// The three row commands through the front end, with a scripted user
// filling the dialogs, on files of both generations.
#include "Rowkeeper.h"
#include "TempDir.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

class RowCommands : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        file = dir.File("rows.db");
        const char* create = GetParam() == 2 ? "--create2" : "--create3";
        RunResult made = Rowkeeper({create, file,
                                    "CREATE TABLE person(id INTEGER PRIMARY KEY, name TEXT, born DATE, "
                                    "weight REAL, note);"
                                    "INSERT INTO person VALUES(1, 'Ann', '1970-01-02', 60.5, 'a');"
                                    "INSERT INTO person VALUES(2, 'Bob', '1980-03-04', 80.5, 'b');"
                                    "CREATE VIEW heavy AS SELECT * FROM person WHERE weight > 70;"
                                    "CREATE TRIGGER no_insert BEFORE INSERT ON person WHEN new.name = 'Nobody' "
                                    "BEGIN SELECT RAISE(ABORT, 'nobody may come'); END;"
                                    "CREATE TRIGGER no_update BEFORE UPDATE ON person WHEN new.name = 'Nobody' "
                                    "BEGIN SELECT RAISE(ABORT, 'nobody may stay'); END"});
        ASSERT_EQ(made.status, 0) << made.err;
    }
    // Runs a row command while the scripted user plays the given actions.
    RunResult Run(std::vector<std::string> args, const std::string& script)
    {
        return Rowkeeper(std::move(args),
                         {"QT_QPA_PLATFORM=offscreen", "LD_PRELOAD=" SCRIPTED_USER,
                          "ASAN_OPTIONS=verify_asan_link_order=0",
                          "LSAN_OPTIONS=print_suppressions=0:suppressions=" LEAK_SUPPRESSIONS,
                          "ROWKEEPER_SCRIPTED_USER=" + script, "ROWKEEPER_SCRIPTED_LOG=" + dir.File("user.log")});
    }
    std::string Rows(const std::string& sql)
    {
        RunResult r = Rowkeeper({"--query-tab", file, sql});
        EXPECT_EQ(r.err, "") << sql;
        return r.out;
    }
    std::string UserLog() { return ReadWholeFile(dir.File("user.log")); }
    void ExpectQuietSuccess(const RunResult& r)
    {
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(r.err, bannerLines);
        EXPECT_EQ(r.status, 0);
    }

    TempDir dir;
    std::string file;
};

TEST_P(RowCommands, InsertRowWritesWhatTheUserFilledIn)
{
    for (const char* option : {"--insert-row", "--add-row", "-ar"}) {
        RunResult r = Run({option, file, "person", "extra", "words"},
                          "log;set name=Cy;set born=2001-02-03;set weight=70.5;press OK");
        ExpectQuietSuccess(r);
    }
    EXPECT_EQ(Rows("SELECT id, name, born, weight FROM person WHERE id > 2"),
              "3\tCy\t2001-02-03\t70.5\n4\tCy\t2001-02-03\t70.5\n5\tCy\t2001-02-03\t70.5\n");
    const std::string log = UserLog();
    EXPECT_NE(log.find("person +OK +Cancel | id=   | name= | born="), std::string::npos) << log;
}

TEST_P(RowCommands, CancelAndCloseWriteNothing)
{
    const std::string before = ReadWholeFile(file);
    for (const char* script : {"set name=Cy;press Cancel", "set name=Cy;close", "set name=Cy;key Escape"}) {
        ExpectQuietSuccess(Run({"--insert-row", file, "person"}, script));
        ExpectQuietSuccess(Run({"--edit-row", file, "person", "id=2"}, script));
    }
    EXPECT_EQ(ReadWholeFile(file), before);
}

TEST_P(RowCommands, EditRowLoadsTheMatchingRowAndUpdatesIt)
{
    RunResult r = Run({"--edit-row", file, "person", "name", "=", "'Bob'"}, "log;set note=50%% off;press OK");
    ExpectQuietSuccess(r);
    EXPECT_EQ(UserLog(), "person +OK +Cancel | id= 2  | name=Bob | born=1980-03-04 | weight=80.5 | note=b\n");
    EXPECT_EQ(Rows("SELECT id, name, note FROM person"), "1\tAnn\ta\n2\tBob\t50% off\n");

    ExpectQuietSuccess(Run({"-er", file, "person"}, "set name=Al;key Return"));
    EXPECT_EQ(Rows("SELECT id, name FROM person"), "1\tAl\n2\tBob\n") << "no WHERE part: the first row";
}

TEST_P(RowCommands, FailedWritesPrintTwoLinesAndStillSucceed)
{
    RunResult insert = Run({"--insert-row", file, "person"}, "set name=Nobody;press OK");
    EXPECT_EQ(insert.out, "");
    EXPECT_EQ(insert.err, bannerLines + "Error: INSERT failed.\nSQLITE: nobody may come\n");
    EXPECT_EQ(insert.status, 0);

    RunResult update = Run({"--edit-row", file, "person", "id=1"}, "set name=Nobody;press OK");
    EXPECT_EQ(update.err, bannerLines + "Error: UPDATE failed.\nSQLITE: nobody may stay\n");
    EXPECT_EQ(update.status, 0);
    EXPECT_EQ(Rows("SELECT id, name FROM person"), "1\tAnn\n2\tBob\n");
}

TEST_P(RowCommands, OnlyTablesCanBeEdited)
{
    const std::string before = ReadWholeFile(file);
    struct Case {
        std::vector<std::string> args;
        std::string err;
    } cases[] = {
        {{"--insert-row", file, "heavy"}, "Error: heavy must be a table.\n"},
        {{"--edit-rows", file, "nope"}, "Error: Failed to read table definiton for nope.\n"},
        {{"--edit-row", file}, "Error: Failed to read table definiton for .\n"},
        {{"--edit-row", file, "per\"son"}, "Error: Failed to read table definiton for per\"son.\n"},
        {{"-et", file, "person%d"}, "Error: Failed to read table definiton for person%d.\n"},
    };
    for (const Case& c : cases) {
        RunResult r = Run(c.args, "press OK");
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(r.err, bannerLines + c.err);
        EXPECT_EQ(r.status, 4);
    }
    EXPECT_EQ(ReadWholeFile(file), before);
}

TEST_P(RowCommands, EditRowsPagesSavesAndAppends)
{
    RunResult r = Run({"--edit-rows", file, "person"},
                      "log;set name=Anna;press >>;log;press >>;log;set name=Di;press OK");
    ExpectQuietSuccess(r);
    const std::string pages = "person [1/2] -<< +>> +OK | id= 1  | name=Ann | born=1970-01-02 | weight=60.5 | note=a\n"
                              "person [2/2] +<< +>> +OK | id= 2  | name=Bob | born=1980-03-04 | weight=80.5 | note=b\n"
                              "person [3/3] +<< +>> +OK | id= 3  | name= | born=";
    EXPECT_EQ(UserLog().substr(0, pages.size()), pages) << "a new row of defaults after the last";
    EXPECT_EQ(Rows("SELECT id, name FROM person"), "1\tAnna\n2\tBob\n3\tDi\n");
    if (GetParam() == 2) {
        EXPECT_EQ(RunProgram({SQLITE2_CHECK, file}).out, "ok\n") << "the rewritten file is a sound 2.x file";
    }
}

TEST_P(RowCommands, EditRowsWarnsAboutSeveralKeysAndOpensAnyway)
{
    ASSERT_EQ(Rowkeeper({"--exec", file, "CREATE TABLE tag(id INTEGER PRIMARY KEY, code UNIQUE)"})
                  .status,
              0);
    RunResult r = Run({"--edit-rows", file, "tag"}, "log;close");
    EXPECT_EQ(r.err, bannerLines + "Error: More than one UNIQUE, not yet implemented. Sorry, had to go to bed..\n");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(UserLog().substr(0, 4), "tag ") << "the editor opened";
}

TEST_P(RowCommands, WherePartsOnNumericColumnsFindTheRowByItsNumber)
{
    // A number stored with another spelling is still that number to the WHERE part.
    ASSERT_EQ(Rowkeeper({"--exec", file,
                          "INSERT INTO person VALUES(3, 'Cy', '1990-01-01', '070.0', 'c')"})
                  .status,
              0);
    ExpectQuietSuccess(Run({"--edit-row", file, "person", "weight = 70"}, "log;set note=found;press OK"));
    EXPECT_EQ(UserLog().substr(0, 28), "person +OK +Cancel | id= 3  ");
    EXPECT_EQ(Rows("SELECT id, note FROM person ORDER BY id"), "1\ta\n2\tb\n3\tfound\n");
    ExpectQuietSuccess(Run({"--edit-row", file, "person", "weight", ">", "75"}, "log;close"));
    EXPECT_NE(UserLog().find("person +OK +Cancel | id= 2  | name=Bob"), std::string::npos)
        << "only Bob weighs more: " << UserLog();
}

TEST_P(RowCommands, ChangesOfAnotherProgramWhileTheDialogIsOpenSurvive)
{
    // The dialog waits while another program changes row 2; saving row 1
    // afterwards must not put back the row 2 that was read before.
    std::thread other([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        RunResult r = Rowkeeper({"--exec", file, "UPDATE person SET name = 'Bobby' WHERE id = 2"});
        EXPECT_EQ(r.status, 0) << r.err;
    });
    RunResult r = Run({"--edit-row", file, "person", "id=1"}, "wait 1500;set name=Annie;press OK");
    other.join();
    ExpectQuietSuccess(r);
    EXPECT_EQ(Rows("SELECT id, name FROM person ORDER BY id"), "1\tAnnie\n2\tBobby\n");
}

INSTANTIATE_TEST_SUITE_P(Generations, RowCommands, ::testing::Values(2, 3),
                         [](const auto& info) { return "SQLite" + std::to_string(info.param); });

} // namespace
