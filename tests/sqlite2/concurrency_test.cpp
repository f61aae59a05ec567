// Two programs on one 2.x file: a change committed by one between the
// other's statements survives, and a lock that is busy fails at once with
// 2.8's message, leaving the file as it was.
#include "Sqlite2Dump.h"
#include "TempDir.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include <sys/wait.h>
#include <unistd.h>

namespace {

int Exec(sqlite* db, const std::string& sql, std::string* message = nullptr)
{
    char* error = nullptr;
    int rc = sqlite_exec(db, sql.c_str(), nullptr, nullptr, &error);
    if (message)
        *message = error ? error : "";
    sqlite_freemem(error);
    return rc;
}

// Runs work in a child that holds the file until the parent has finished
// its checks (the parent's checks run between the two pipe signals).
class OtherProgram {
public:
    explicit OtherProgram(const std::function<void(sqlite*)>& hold, const std::string& path)
    {
        if (pipe(ready) != 0 || pipe(done) != 0)
            return;
        child = fork();
        if (child == 0) {
            sqlite* db = sqlite_open(path.c_str(), 0, nullptr);
            hold(db);
            char signal = 1;
            (void)!write(ready[1], &signal, 1);
            (void)!read(done[0], &signal, 1);
            sqlite_close(db);
            _exit(0);
        }
        char signal = 0;
        (void)!read(ready[0], &signal, 1);
    }
    ~OtherProgram()
    {
        char signal = 1;
        (void)!write(done[1], &signal, 1);
        int status = 0;
        waitpid(child, &status, 0);
        for (int fd : {ready[0], ready[1], done[0], done[1]})
            close(fd);
    }

private:
    int ready[2] = {-1, -1};
    int done[2] = {-1, -1};
    pid_t child = -1;
};

// Our connection to a copy of the person fixture, which other programs join.
class Sqlite2Concurrency : public ::testing::Test {
protected:
    void SetUp() override
    {
        path = CopyOfFixture(dir, "person");
        before = ReadWholeFile(path);
        ours = sqlite_open(path.c_str(), 0, nullptr);
        ASSERT_NE(ours, nullptr);
    }
    void TearDown() override
    {
        if (ours)
            sqlite_close(ours);
    }

    TempDir dir;
    std::string path;
    std::string before; // the file's bytes before any change
    sqlite* ours = nullptr;
};

} // namespace

TEST_F(Sqlite2Concurrency, AChangeCommittedBetweenOurReadAndOurWriteSurvives)
{
    sqlite* theirs = sqlite_open(path.c_str(), 0, nullptr);
    ASSERT_NE(theirs, nullptr);
    EXPECT_EQ(Query(ours, "SELECT name FROM person WHERE id = 5")[0][0], "Sam4");
    ASSERT_EQ(Exec(theirs, "UPDATE person SET name = 'Theirs' WHERE id = 5"), SQLITE_OK);
    ASSERT_EQ(Exec(ours, "UPDATE person SET name = 'Ours' WHERE id = 3"), SQLITE_OK);
    EXPECT_EQ(Query(ours, "SELECT name FROM person WHERE id IN (3, 5) ORDER BY id"),
              (std::vector<std::vector<std::string>>{{"Ours"}, {"Theirs"}}));
    // Their trigger's log row is kept too.
    EXPECT_EQ(Query(ours, "SELECT count(*) FROM person_log")[0][0], "3");
    sqlite_close(theirs);
}

TEST_F(Sqlite2Concurrency, ASchemaChangedByAnotherProgramIsReadAgain)
{
    {
        OtherProgram other([](sqlite* db) { Exec(db, "CREATE TABLE extra(x); INSERT INTO extra VALUES(42)"); }, path);
    }
    EXPECT_EQ(Query(ours, "SELECT x FROM extra")[0][0], "42");
}

TEST_F(Sqlite2Concurrency, AWriterElsewhereMakesUsBusyAndTheFileStaysAsItWas)
{
    {
        OtherProgram writer([](sqlite* db) { Exec(db, "BEGIN; UPDATE person SET name = 'x' WHERE id = 1"); }, path);
        std::string message;
        EXPECT_EQ(Exec(ours, "SELECT count(*) FROM person", &message), SQLITE_BUSY);
        EXPECT_EQ(message, "database is locked");
        EXPECT_EQ(Exec(ours, "DELETE FROM person", &message), SQLITE_BUSY);
        EXPECT_EQ(message, "database is locked");
        EXPECT_EQ(ReadWholeFile(path), before);
    }
    EXPECT_EQ(Query(ours, "SELECT count(*) FROM person")[0][0], "40") << "the lock is gone with the writer";
    EXPECT_EQ(ReadWholeFile(path), before) << "its transaction was never committed";
}

TEST_F(Sqlite2Concurrency, AReaderElsewhereMakesOurWriteBusy)
{
    {
        OtherProgram reader([](sqlite* db) { Exec(db, "BEGIN; SELECT count(*) FROM person"); }, path);
        std::string message;
        EXPECT_EQ(Query(ours, "SELECT count(*) FROM person")[0][0], "40") << "readers share the file";
        EXPECT_EQ(Exec(ours, "UPDATE person SET name = 'y' WHERE id = 2", &message), SQLITE_BUSY);
        EXPECT_EQ(message, "database is locked");
        EXPECT_EQ(ReadWholeFile(path), before);
        EXPECT_FALSE(std::filesystem::exists(path + "-journal"));
    }
    EXPECT_EQ(Exec(ours, "UPDATE person SET name = 'y' WHERE id = 2"), SQLITE_OK);
}

TEST_F(Sqlite2Concurrency, AnAttachedFileIsLockedAsTheMainOneIs)
{
    const std::string otherPath = dir.File("other.db");
    {
        sqlite* other = sqlite_open(otherPath.c_str(), 0, nullptr);
        ASSERT_EQ(Exec(other, "CREATE TABLE w(x); INSERT INTO w VALUES(1)"), SQLITE_OK);
        sqlite_close(other);
    }
    ASSERT_EQ(Exec(ours, "ATTACH '" + otherPath + "' AS aux"), SQLITE_OK);
    const std::string otherBefore = ReadWholeFile(otherPath);
    {
        OtherProgram writer([](sqlite* db) { Exec(db, "BEGIN; UPDATE w SET x = 2"); }, otherPath);
        std::string message;
        EXPECT_EQ(Exec(ours, "SELECT count(*) FROM person", &message), SQLITE_BUSY) << "every file is locked";
        EXPECT_EQ(message, "database is locked");
        EXPECT_EQ(Exec(ours, "INSERT INTO w VALUES(3)", &message), SQLITE_BUSY);
        EXPECT_EQ(ReadWholeFile(otherPath), otherBefore);
        EXPECT_EQ(ReadWholeFile(path), before);
    }
    {
        OtherProgram writer([](sqlite* db) { Exec(db, "INSERT INTO w VALUES(4)"); }, otherPath);
    }
    EXPECT_EQ(Exec(ours, "INSERT INTO w VALUES(5)"), SQLITE_OK);
    EXPECT_EQ(Query(ours, "SELECT x FROM w ORDER BY x"), (std::vector<std::vector<std::string>>{{"1"}, {"4"}, {"5"}}))
        << "the other program's row, committed between our statements, survives";
}
