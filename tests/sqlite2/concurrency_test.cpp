// Two programs on one 2.x file: a change committed by one between the
// other's statements survives, and a lock that is busy fails at once with
// 2.8's message, leaving the file as it was.
#include "Sqlite2Dump.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>

#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string PersonCopy(const TempDir& dir)
{
    const std::string path = dir.File("person.db");
    CopyFile(std::string(FIXTURES_DIR) + "/person.db", path);
    return path;
}

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

} // namespace

TEST(Sqlite2Concurrency, AChangeCommittedBetweenOurReadAndOurWriteSurvives)
{
    TempDir dir;
    const std::string path = PersonCopy(dir);
    sqlite* ours = sqlite_open(path.c_str(), 0, nullptr);
    sqlite* theirs = sqlite_open(path.c_str(), 0, nullptr);
    ASSERT_TRUE(ours && theirs);
    EXPECT_EQ(Query(ours, "SELECT name FROM person WHERE id = 5")[0][0], "Sam4");
    ASSERT_EQ(Exec(theirs, "UPDATE person SET name = 'Theirs' WHERE id = 5"), SQLITE_OK);
    ASSERT_EQ(Exec(ours, "UPDATE person SET name = 'Ours' WHERE id = 3"), SQLITE_OK);
    EXPECT_EQ(Query(ours, "SELECT name FROM person WHERE id IN (3, 5) ORDER BY id"),
              (std::vector<std::vector<std::string>>{{"Ours"}, {"Theirs"}}));
    // Their trigger's log row is kept too.
    EXPECT_EQ(Query(ours, "SELECT count(*) FROM person_log")[0][0], "3");
    sqlite_close(theirs);
    sqlite_close(ours);
}

TEST(Sqlite2Concurrency, ASchemaChangedByAnotherProgramIsReadAgain)
{
    TempDir dir;
    const std::string path = PersonCopy(dir);
    sqlite* ours = sqlite_open(path.c_str(), 0, nullptr);
    ASSERT_NE(ours, nullptr);
    {
        OtherProgram other([](sqlite* db) { Exec(db, "CREATE TABLE extra(x); INSERT INTO extra VALUES(42)"); }, path);
    }
    EXPECT_EQ(Query(ours, "SELECT x FROM extra")[0][0], "42");
    sqlite_close(ours);
}

TEST(Sqlite2Concurrency, AWriterElsewhereMakesUsBusyAndTheFileStaysAsItWas)
{
    TempDir dir;
    const std::string path = PersonCopy(dir);
    const std::string before = ReadWholeFile(path);
    sqlite* ours = sqlite_open(path.c_str(), 0, nullptr);
    ASSERT_NE(ours, nullptr);
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
    sqlite_close(ours);
}

TEST(Sqlite2Concurrency, AReaderElsewhereMakesOurWriteBusy)
{
    TempDir dir;
    const std::string path = PersonCopy(dir);
    const std::string before = ReadWholeFile(path);
    sqlite* ours = sqlite_open(path.c_str(), 0, nullptr);
    ASSERT_NE(ours, nullptr);
    {
        OtherProgram reader([](sqlite* db) { Exec(db, "BEGIN; SELECT count(*) FROM person"); }, path);
        std::string message;
        EXPECT_EQ(Query(ours, "SELECT count(*) FROM person")[0][0], "40") << "readers share the file";
        EXPECT_EQ(Exec(ours, "UPDATE person SET name = 'y' WHERE id = 2", &message), SQLITE_BUSY);
        EXPECT_EQ(message, "database is locked");
        EXPECT_EQ(ReadWholeFile(path), before);
        EXPECT_FALSE(std::ifstream(path + "-journal").good());
    }
    EXPECT_EQ(Exec(ours, "UPDATE person SET name = 'y' WHERE id = 2"), SQLITE_OK);
    sqlite_close(ours);
}
