#include "Rowkeeper.h"
#include "TempDir.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

TEST(Sqlite2Files, QueriesOnAFixtureFile)
{
    TempDir dir;
    const std::string file = CopyOfFixture(dir, "person");
    RunResult tab = Rowkeeper({"--query-tab", file, "SELECT id, name, active, note FROM person WHERE id <= 3"});
    EXPECT_EQ(tab.out, "1\tKai0\t\t\n2\tQuin1\t0\t\n3\tQuin2!\t1\t\n");
    EXPECT_EQ(tab.status, 0);
    RunResult one = Rowkeeper({"-q", file, "SELECT weight FROM person WHERE id = 40"});
    EXPECT_EQ(one.out, "56.0\n") << "2.x values keep their stored spelling";
    RunResult missing = Rowkeeper({"--query-csv", file, "SELECT * FROM nope"});
    EXPECT_EQ(missing.status, 12);
    EXPECT_EQ(missing.err, "no such table: nope\n");
    RunResult table = Rowkeeper({"--query", file, "SELECT id, name FROM person WHERE id = 1"});
    EXPECT_EQ(table.out, "id             |name           \n---------------+---------------\n"
                         "1               Kai0            \n\n");
}

TEST(Sqlite2Files, CreateTwoMakesA2xFileThatExecAndQueryUse)
{
    TempDir dir;
    std::string file = dir.File("new2.db");
    RunResult create = Rowkeeper({"--create2", file, "CREATE TABLE t(a INTEGER PRIMARY KEY, b TEXT);"
                                                     "INSERT INTO t(b) VALUES('50%%')"});
    EXPECT_EQ(create.status, 0) << create.err;
    EXPECT_EQ(ReadWholeFile(file).substr(0, 48), std::string("** This file contains an SQLite 2.1 database **\0", 48));
    RunResult exec = Rowkeeper({"--exec", file, "INSERT INTO t(b) VALUES('two')"});
    EXPECT_EQ(exec.status, 0) << exec.err;
    EXPECT_EQ(Rowkeeper({"--query-csv", file, "SELECT a, b FROM t"}).out, "1,50%\n2,two\n");
    RunResult failing = Rowkeeper({"--exec", file, "INSERT INTO t(a, b) VALUES(1, 'dup')"});
    EXPECT_EQ(failing.status, 10);
    EXPECT_EQ(failing.err, bannerLines + "Error: Execution of INSERT INTO t(a, b) VALUES(1, 'dup') failed.\n"
                                         "SQLITE: PRIMARY KEY must be unique\n");
    RunResult emptyCreate = Rowkeeper({"--create2", dir.File("empty2.db")});
    EXPECT_EQ(emptyCreate.status, 0);
}

TEST(Sqlite2Files, NeitherGenerationIsRefused)
{
    TempDir dir;
    std::string file = dir.File("half.db");
    // A 2.x header on a file whose schema page is garbage.
    std::string bytes = ReadWholeFile(FixturePath("person.db"));
    for (size_t i = 1024; i < 2048; ++i)
        bytes[i] = char(0xEE);
    WriteWholeFile(file, bytes);
    RunResult r = Rowkeeper({"--query-one", file, "SELECT 1"});
    EXPECT_EQ(r.status, 3);
    EXPECT_EQ(r.err, "Error: Failed to open database " + file + ".\n");
    EXPECT_EQ(ReadWholeFile(file), bytes);
}
