#include "Rowkeeper.h"
#include "TempDir.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

class QueryCommands : public ::testing::Test {
protected:
    void SetUp() override
    {
        file = dir.File("people.db");
        MakeDatabase(file, "CREATE TABLE p(id INTEGER PRIMARY KEY, name TEXT, note TEXT);"
                           "INSERT INTO p(name, note) VALUES('Ann', NULL);"
                           "INSERT INTO p(name, note) VALUES('Bob, Jr.', 'tab\there');"
                           "INSERT INTO p(name, note) VALUES('', '100%%');");
    }
    TempDir dir;
    std::string file;
};

TEST_F(QueryCommands, CreateMakesASQLite3File)
{
    EXPECT_EQ(ReadWholeFile(file).substr(0, 16), std::string("SQLite format 3\0", 16));
    RunResult r = Rowkeeper({"--create", file, "CREATE TABLE p(x)"});
    EXPECT_EQ(r.status, 10) << "create opens an existing file and runs the SQL in it";
    EXPECT_EQ(r.err, bannerLines + "Error: Execution of CREATE TABLE p(x) failed.\nSQLITE: table p already exists\n");
}

TEST_F(QueryCommands, ExecWithDoubledPercent)
{
    RunResult r = Rowkeeper({"--exec", file, "UPDATE p SET note = 'a %% b' WHERE id = 1"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, bannerLines);
    EXPECT_EQ(Rowkeeper({"-q", file, "SELECT note FROM p WHERE id = 1"}).out, "a % b\n");
}

TEST_F(QueryCommands, ExecJoinsPiecesAndTrimsTheText)
{
    // "-1" after the file name is SQL text, not an option.
    RunResult r = Rowkeeper({"-r", file, "  DELETE FROM p", "WHERE", "id", "=", "-1", "OR", "id=1  "});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(Rowkeeper({"-q", file, "SELECT count(*) FROM p"}).out, "2\n");
    RunResult failing = Rowkeeper({"--exec", file, " SELEC", "-2 "});
    EXPECT_EQ(failing.status, 10);
    EXPECT_EQ(failing.err, bannerLines + "Error: Execution of SELEC -2 failed.\nSQLITE: near \"SELEC\": syntax error\n");
}

TEST_F(QueryCommands, FailedExecKeepsEarlierStatements)
{
    RunResult r = Rowkeeper({"--exec", file, "INSERT INTO p(name) VALUES('Cy'); INSERT INTO nope VALUES(1)"});
    EXPECT_EQ(r.status, 10);
    EXPECT_EQ(r.err, bannerLines + "Error: Execution of INSERT INTO p(name) VALUES('Cy'); INSERT INTO nope "
                                   "VALUES(1) failed.\nSQLITE: no such table: nope\n");
    EXPECT_EQ(Rowkeeper({"-q", file, "SELECT count(*) FROM p"}).out, "4\n");
}

TEST_F(QueryCommands, QueryOne)
{
    EXPECT_EQ(Rowkeeper({"--query-one", file, "SELECT name FROM p WHERE id = 2"}).out, "Bob, Jr.\n");
    RunResult null = Rowkeeper({"-q", file, "SELECT note FROM p WHERE id = 1"});
    EXPECT_EQ(null.out, "\n");
    EXPECT_EQ(null.status, 0);
    for (auto sql : {"SELECT name FROM p WHERE id = 99", "SELECT nothing FROM p", ""}) {
        RunResult r = Rowkeeper({"-q", file, sql});
        EXPECT_EQ(r.status, 12) << sql;
        EXPECT_EQ(r.out + r.err, "") << sql;
    }
}

TEST_F(QueryCommands, StrayConversionsInSqlDoNotCrash)
{
    RunResult r = Rowkeeper({"-q", file, "SELECT '%d|%s|%x|%V|%Sq|%n|%5.2f'"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "0||0||||    0.00\n");
}

TEST_F(QueryCommands, TabAndCsvLayouts)
{
    RunResult tab = Rowkeeper({"--query-tab", file, "SELECT id, name, note FROM p"});
    EXPECT_EQ(tab.out, "1\tAnn\t\n2\tBob, Jr.\ttab\there\n3\t\t100%\n");
    EXPECT_EQ(tab.err, "");
    EXPECT_EQ(tab.status, 0);
    RunResult csv = Rowkeeper({"--query-csv", file, "SELECT name, id FROM p"});
    EXPECT_EQ(csv.out, "Ann,1\nBob, Jr.,2\n,3\n") << "no quoting: the comma stays a comma";
    EXPECT_EQ(csv.err, "");
}

TEST_F(QueryCommands, SingleColumnAndEmptyResultsPrintNothingSeparated)
{
    for (std::string mode : {"--query-tab", "--query-csv"}) {
        for (auto sql : {"SELECT 1", "SELECT name FROM p", "SELECT id, name FROM p WHERE 0"}) {
            RunResult r = Rowkeeper({mode, file, sql});
            EXPECT_EQ(r.out, "") << mode << " " << sql;
            EXPECT_EQ(r.status, 0);
        }
    }
}

TEST_F(QueryCommands, FailedTableQueryPrintsTheBareMessage)
{
    RunResult csv = Rowkeeper({"--query-csv", file, "SELECT * FROM nope"});
    EXPECT_EQ(csv.status, 12);
    EXPECT_EQ(csv.out, "");
    EXPECT_EQ(csv.err, "no such table: nope\n");
    RunResult table = Rowkeeper({"--query", file, "SELEKT"});
    EXPECT_EQ(table.status, 12);
    EXPECT_EQ(table.err, bannerLines + "near \"SELEKT\": syntax error\n");
}

TEST_F(QueryCommands, SeveralStatementsFeedOneTable)
{
    RunResult r = Rowkeeper({"--query-csv", file, "SELECT id, name FROM p WHERE id = 1; SELECT id, note FROM p WHERE id = 3"});
    EXPECT_EQ(r.out, "1,Ann\n3,100%\n");
}

TEST(OpeningFiles, MissingFileBecomesANewSQLite3File)
{
    TempDir dir;
    std::string file = dir.File("new.db");
    RunResult r = Rowkeeper({"--exec", file});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, bannerLines);
    RunResult count = Rowkeeper({"-q", file, "SELECT count(*) FROM sqlite_master"});
    EXPECT_EQ(count.out, "0\n");
}

TEST(OpeningFiles, FileThatIsNoDatabase)
{
    TempDir dir;
    std::string file = dir.File("notes.txt");
    WriteWholeFile(file, "These are my notes, not a database at all. Really not.\n");
    const std::string before = ReadWholeFile(file);
    RunResult r = Rowkeeper({"--query", file, "SELECT 1"});
    EXPECT_EQ(r.status, 3);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, bannerLines + "Error: Failed to open database " + file + ".\n");
    EXPECT_EQ(ReadWholeFile(file), before) << "a file we cannot read is left alone";
    RunResult one = Rowkeeper({"-q", file, "SELECT 1"});
    EXPECT_EQ(one.err, "Error: Failed to open database " + file + ".\n");
    EXPECT_EQ(one.status, 3);
}

TEST(OpeningFiles, UnusableNames)
{
    TempDir dir;
    RunResult directory = Rowkeeper({"--query-one", dir.Path(), "SELECT 1"});
    EXPECT_EQ(directory.status, 3);
    EXPECT_EQ(directory.err, "Error: Failed to open database " + dir.Path() + ".\n");
    std::string longName = dir.File(std::string(300, 'x'));
    RunResult tooLong = Rowkeeper({"--query-one", longName, "SELECT 1"});
    EXPECT_EQ(tooLong.status, 3);
    RunResult create = Rowkeeper({"--create", dir.File("no/such/folder.db"), "CREATE TABLE t(a)"});
    EXPECT_EQ(create.status, 10) << "create returns its object and fails at the first statement";
    EXPECT_EQ(create.err.substr(0, bannerLines.size() + 20), bannerLines + "Error: Execution of ");
}
