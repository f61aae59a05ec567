#include "Rowkeeper.h"
#include "TempDir.h"
#include "TestFiles.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

const std::string banner = "Rowkeeper v0.10 (build 10)\n";
// The usage text as users see it, kept as a file so that a change to it is
// a deliberate one.
const std::string usage = ReadWholeFile(USAGE_FILE);

// No display at all: the dialog toolkit cannot start.
const std::vector<std::string> noDisplay = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};

// The program, with no display unless the test gives one.
RunResult Launch(std::vector<std::string> args, const std::vector<std::string>& env = noDisplay)
{
    return Rowkeeper(std::move(args), env);
}

} // namespace

TEST(CommandLine, NoArgumentsPrintsBannerAndUsage)
{
    ASSERT_NE(usage.find("USAGE:\n"), std::string::npos) << "unreadable " << USAGE_FILE;
    RunResult r = Launch({});
    EXPECT_EQ(r.out, usage);
    EXPECT_EQ(r.err, banner + "\n");
    EXPECT_EQ(r.status, 0);
}

TEST(CommandLine, UnknownOptionsAreIgnoredSilently)
{
    for (auto args : std::vector<std::vector<std::string>>{{"-x"}, {"-"}, {"--Query"}, {"--exec2", "-v"}}) {
        RunResult r = Launch(args);
        EXPECT_EQ(r.out, usage) << args[0];
        EXPECT_EQ(r.err, banner + "\n") << args[0];
        EXPECT_EQ(r.status, 0) << args[0];
    }
}

TEST(CommandLine, QueryCommandsPrintNoBanner)
{
    TempDir dir;
    for (std::string option : {"--query-one", "-q", "--query-tab", "--query-csv"}) {
        RunResult r = Launch({option, dir.File("db"), "SELECT 1"});
        EXPECT_EQ(r.err, "") << option;
        EXPECT_EQ(r.out.find("Rowkeeper"), std::string::npos) << option;
    }
}

TEST(CommandLine, OtherCommandsPrintTheBannerOnStandardError)
{
    TempDir dir;
    for (std::string option : {"--create2", "-c2", "--create", "--create3", "-c3", "--exec", "-r", "--query",
                               "--query-table"}) {
        RunResult r = Launch({option, dir.File(option + ".db")});
        EXPECT_EQ(r.err.substr(0, banner.size() + 1), banner + "\n") << option;
        EXPECT_EQ(r.out.find("USAGE"), std::string::npos) << option;
    }
}

TEST(CommandLine, RowCommandsFailWithoutADisplay)
{
    TempDir dir;
    for (std::string option : {"--edit-row", "-er", "--edit-rows", "-et", "--insert-row", "--add-row", "-ar"}) {
        RunResult r = Launch({option, dir.File("db"), "person"});
        EXPECT_EQ(r.out, banner) << option;
        EXPECT_EQ(r.err, "Fatal Error: MFC initialization failed\n") << option;
        EXPECT_EQ(r.status, 1) << option;
    }
}

TEST(CommandLine, UnreachableDisplayIsNoDisplay)
{
    RunResult r = Launch({"--edit-row", "f.db", "t"}, {"DISPLAY=:97", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Fatal Error: MFC initialization failed\n");
}

TEST(CommandLine, MissingToolkitPlatformIsNoDisplay)
{
    for (std::vector<std::string> env : {std::vector<std::string>{"QT_QPA_PLATFORM=nosuchplatform"},
                                         {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY=wayland-97"}}) {
        RunResult r = Launch({"--insert-row", "f.db", "t"}, env);
        EXPECT_EQ(r.status, 1) << env[0];
        EXPECT_EQ(r.out, banner) << env[0];
        EXPECT_EQ(r.err, "Fatal Error: MFC initialization failed\n") << env[0];
    }
}

TEST(CommandLine, LastRecognisedOptionWins)
{
    TempDir dir;
    // A row command named first does not matter: the query wins and needs no display.
    RunResult r = Launch({"--edit-row", "--query", "--bogus", "--query-csv", dir.File("db"), "SELECT 1"});
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.status, 0);
    RunResult row = Launch({"--query-csv", "-x", "-et", dir.File("db"), "t"});
    EXPECT_EQ(row.status, 1) << "the row command came last";
}

TEST(CommandLine, NeitherExecutableLinksTheDialogToolkit)
{
    // The program hands row commands to the dialog host beside it, which
    // looks the dialog module up at run time.
    const std::string program = ReadWholeFile(RowkeeperBinary());
    const std::string host =
        ReadWholeFile(RowkeeperBinary().substr(0, RowkeeperBinary().rfind('/')) + "/rowkeeper-dialogs");
    ASSERT_FALSE(program.empty());
    ASSERT_FALSE(host.empty());
    EXPECT_EQ(program.find("libQt6"), std::string::npos);
    EXPECT_EQ(host.find("libQt6"), std::string::npos);
    EXPECT_NE(program.find("rowkeeper-dialogs"), std::string::npos);
    EXPECT_NE(host.find("RowkeeperInitDialogs"), std::string::npos);
}

TEST(CommandLine, RowCommandWithoutDialogHostFailsLikeWithoutToolkit)
{
    // A copy of the program alone in a folder finds no host to hand over to.
    TempDir dir;
    const std::string lone = dir.File("rowkeeper");
    {
        std::ifstream in(RowkeeperBinary(), std::ios::binary);
        std::ofstream out(lone, std::ios::binary);
        out << in.rdbuf();
    }
    ASSERT_EQ(chmod(lone.c_str(), 0755), 0);
    MakeDatabase(dir.File("f.db"), "CREATE TABLE t(a)");
    RunResult r = RunProgram({lone, "--insert-row", dir.File("f.db"), "t"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, banner);
    EXPECT_EQ(r.err, "Fatal Error: MFC initialization failed\n");
}
