// Differential test: every script of tests/data/sqlite2/corpus is replayed on
// our 2.x engine, one sqlite_exec per statement, and each answer is compared
// with the one real SQLite 2.8.17 gave; then the file left behind is compared
// (.dump, integrity check) and walked by the structural checker. Differences
// listed in known-differences.txt are tolerated while the engine catches up;
// a listed entry that agrees again fails too, so the list only shrinks.
#include "Corpus.h"
#include "Sqlite2Checker.h"
#include "Sqlite2Dump.h"
#include "TempDir.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <set>
#include <stdexcept>
#include <tuple>

namespace {

const std::string kCorpus = FixturePath("corpus");
const std::string kKnownFile = kCorpus + "/known-differences.txt";

std::vector<std::string> ScriptNames()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(kCorpus)) {
        if (entry.path().extension() == ".sql")
            names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string Indented(const std::string& text)
{
    if (text.empty())
        return "    (nothing)\n";
    std::string out = "    ";
    for (size_t i = 0; i < text.size(); ++i) {
        out += text[i];
        if (text[i] == '\n' && i + 1 < text.size())
            out += "    ";
    }
    return out.back() == '\n' ? out : out + "\n";
}

// The statement's first line, short enough to sit beside a list entry.
std::string Headline(const std::string& statement)
{
    std::string line = statement.substr(0, statement.find('\n'));
    return line.size() > 90 ? line.substr(0, 87) + "..." : line;
}

std::vector<std::string> SplitLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::string::size_type begin = 0;
    while (begin < text.size()) {
        std::string::size_type end = text.find('\n', begin);
        end = end == std::string::npos ? text.size() : end;
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

size_t FirstDifferingLine(const std::vector<std::string>& a, const std::vector<std::string>& b)
{
    size_t line = 0;
    while (line < a.size() && line < b.size() && a[line] == b[line])
        ++line;
    return line;
}

// Where two texts part, short enough for the note beside a list entry.
std::string FirstDifference(const std::string& expected, const std::string& got)
{
    const auto a = SplitLines(expected), b = SplitLines(got);
    const size_t line = FirstDifferingLine(a, b);
    auto at = [line](const std::vector<std::string>& lines) {
        return line < lines.size() ? "'" + Headline(lines[line]) + "'" : std::string("nothing");
    };
    return "line " + std::to_string(line + 1) + ": 2.8.17 " + at(a) + ", ours " + at(b);
}

// Both texts in full when they are short; long ones (a fixture's dump) from
// the first line where they part.
std::string Describe(const std::string& expected, const std::string& got)
{
    const auto a = SplitLines(expected), b = SplitLines(got);
    if (a.size() <= 40 && b.size() <= 40)
        return "  2.8.17:\n" + Indented(expected) + "  ours:\n" + Indented(got);
    const size_t line = FirstDifferingLine(a, b);
    auto excerpt = [line](const std::vector<std::string>& lines) {
        std::string text;
        for (size_t i = line; i < lines.size() && i < line + 8; ++i)
            text += lines[i] + "\n";
        return text;
    };
    return "  from line " + std::to_string(line + 1) + ", where they part:\n  2.8.17:\n" + Indented(excerpt(a)) +
           "  ours:\n" + Indented(excerpt(b));
}

const char* RecordPath()
{
    const char* path = std::getenv("ROWKEEPER_CORPUS_RECORD");
    return path && *path ? path : nullptr;
}

const KnownDifferences& Known()
{
    static const KnownDifferences known = ParseKnownDifferences(ReadWholeFile(kKnownFile));
    return known;
}

// Totals over the scripts run by this process, and what recording writes.
struct Tally {
    size_t scripts = 0;
    size_t statements = 0;
    size_t agreeing = 0;
    std::set<std::string> ran;
    KnownDifferences found;
};

Tally& Totals()
{
    static Tally tally;
    return tally;
}

struct Difference {
    std::string what;    // "N", "dump", "integrity" or "check"
    std::string subject; // the statement, or what was compared
    std::string expected;
    std::string got;
    std::string note;    // the comment beside its list entry
};

class Corpus : public ::testing::TestWithParam<std::string> {
public:
    static void TearDownTestSuite()
    {
        const Tally& tally = Totals();
        std::cout << "[ corpus   ] " << tally.scripts << " scripts, " << tally.statements << " statements, "
                  << tally.agreeing << " agree with SQLite 2.8.17\n";
        if (!RecordPath())
            return;
        // Scripts this run did not cover keep their entries.
        KnownDifferences merged = Known();
        for (const std::string& script : tally.ran)
            merged.erase(script);
        for (const auto& [script, whats] : tally.found)
            merged[script] = whats;
        WriteWholeFile(RecordPath(), FormatKnownDifferences(merged));
        std::cout << "[ corpus   ] known differences written to " << RecordPath() << "\n";
    }
};

} // namespace

TEST_P(Corpus, AnswersAsSqlite2Does)
{
    const std::string name = GetParam();
    const CorpusScript script = ParseCorpusScript(ReadWholeFile(kCorpus + "/" + name + ".sql"));
    const std::vector<std::string> expected =
        SplitTranscript(ReadWholeFile(kCorpus + "/" + name + ".expected"), script.statements.size());

    // The engine syncs every write to disk, which costs more than everything
    // else in the corpus put together; the corpus is about answers and
    // contents, so its files live in memory when the machine allows.
    TempDir dir(TempDir::Place::MemoryWhenPossible);
    ASSERT_TRUE(dir.Usable());
    const std::string path = dir.File(name + ".db");
    if (script.start != "new") {
        const std::string fixture = FixturePath(script.start);
        ASSERT_TRUE(std::filesystem::exists(fixture)) << fixture;
        CopyFile(fixture, path);
    }

    std::vector<Difference> differences;
    char* error = nullptr;
    sqlite* db = sqlite_open(path.c_str(), 0, &error);
    ASSERT_NE(db, nullptr) << (error ? error : "");
    size_t agreeing = 0;
    for (size_t i = 0; i < script.statements.size(); ++i) {
        const std::string& statement = script.statements[i];
        std::string got = RunAsShell(db, statement, script.headers);
        if (got == expected[i])
            ++agreeing;
        else
            differences.push_back({std::to_string(i + 1), statement, expected[i], got, Headline(statement)});
    }
    sqlite_close(db);

    // The file as the next program to open it finds it.
    std::string dump, integrity;
    sqlite* reopened = sqlite_open(path.c_str(), 0, nullptr);
    if (!reopened) {
        dump = integrity = "(the file does not open)\n";
    } else {
        auto attempt = [](const auto& read) {
            try {
                return read();
            } catch (const std::exception& failure) {
                return std::string("(reading failed: ") + failure.what() + ")\n";
            }
        };
        dump = attempt([reopened] { return Dump(reopened); });
        integrity = attempt([reopened] {
            std::string text;
            for (const auto& row : Query(reopened, "PRAGMA integrity_check;"))
                text += (row.empty() ? "" : row[0]) + "\n";
            return text;
        });
        sqlite_close(reopened);
    }
    for (const auto& [what, subject, suffix, got] :
         {std::tuple<std::string, std::string, std::string, std::string>{"dump", "the .dump after the script",
                                                                          ".dump", dump},
          {"integrity", "PRAGMA integrity_check; after the script", ".integrity", integrity}}) {
        const std::string golden = ReadWholeFile(kCorpus + "/" + name + suffix);
        if (got != golden)
            differences.push_back({what, subject, golden, got, FirstDifference(golden, got)});
    }
    // Kept on request, so that a developer can hand our files to real 2.8.
    if (const char* keep = std::getenv("ROWKEEPER_CORPUS_KEEP"); keep && *keep)
        CopyFile(path, std::string(keep) + "/" + name + ".db");
    std::string problems;
    for (const std::string& problem : CheckSqlite2File(path))
        problems += problem + "\n";
    if (!problems.empty())
        differences.push_back({"check", "the structural checker on the file after the script", "", problems,
                               Headline(problems)});

    // Report: unlisted differences fail, listed ones that agree again fail.
    static const std::map<std::string, std::string> none;
    const auto listedScript = Known().find(name);
    const auto& listed = listedScript == Known().end() ? none : listedScript->second;
    const bool recording = RecordPath() != nullptr;
    std::set<std::string> differing;
    size_t known = 0;
    for (const Difference& difference : differences) {
        differing.insert(difference.what);
        Totals().found[name][difference.what] = difference.note;
        if (listed.count(difference.what)) {
            ++known;
        } else if (!recording) {
            ADD_FAILURE() << name << " " << difference.what << " differs from SQLite 2.8.17\n  "
                          << difference.subject << "\n" << Describe(difference.expected, difference.got);
        }
    }
    for (const auto& [what, note] : listed) {
        if (!differing.count(what) && !recording)
            ADD_FAILURE() << name << " " << what << " now agrees with SQLite 2.8.17 (" << note
                          << "): remove the line '" << name << " " << what << "' from " << kKnownFile
                          << " (or rewrite the list with ROWKEEPER_CORPUS_RECORD, see README.md there)";
    }
    std::cout << "[ corpus   ] " << name << ": " << script.statements.size() << " statements, " << agreeing
              << " agree with SQLite 2.8.17, " << known << " known differences\n";
    Totals().scripts += 1;
    Totals().ran.insert(name);
    Totals().statements += script.statements.size();
    Totals().agreeing += agreeing;
}

INSTANTIATE_TEST_SUITE_P(Sqlite2, Corpus, ::testing::ValuesIn(ScriptNames()),
                         [](const ::testing::TestParamInfo<std::string>& info) {
                             std::string name = "Script" + info.param;
                             std::replace_if(name.begin(), name.end(),
                                             [](unsigned char c) { return !std::isalnum(c); }, '_');
                             return name;
                         });

// Every entry of the list names a script and a statement that exist, so a
// renumbered script cannot leave entries that silently mean something else.
TEST(CorpusKnownDifferences, NameScriptsAndStatementsThatExist)
{
    const std::vector<std::string> names = ScriptNames();
    for (const auto& [script, whats] : Known()) {
        ASSERT_TRUE(std::find(names.begin(), names.end(), script) != names.end())
            << "known-differences.txt names '" << script << "', which is no script";
        const size_t count = ParseCorpusScript(ReadWholeFile(kCorpus + "/" + script + ".sql")).statements.size();
        for (const auto& [what, note] : whats) {
            if (what == "dump" || what == "integrity" || what == "check")
                continue;
            const size_t number = std::all_of(what.begin(), what.end(), [](unsigned char c) { return std::isdigit(c); }) ? std::stoul(what) : 0;
            EXPECT_TRUE(number >= 1 && number <= count) << script << " has no statement '" << what << "'";
        }
    }
}

TEST(CorpusKnownDifferences, ListsEntriesInOrderAndKeepsTheirNotes)
{
    const KnownDifferences entries = ParseKnownDifferences("# comment\n"
                                                           "b dump  # the file\n"
                                                           "b 10\n"
                                                           "a check\n"
                                                           "b 9  # SELECT 1;\n"
                                                           "\n");
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries.at("b").at("9"), "SELECT 1;");
    const std::string text = FormatKnownDifferences(entries);
    EXPECT_NE(text.find("a check\nb 9  # SELECT 1;\nb 10\nb dump  # the file\n"), std::string::npos) << text;
    EXPECT_EQ(ParseKnownDifferences(text), entries);
    EXPECT_THROW(ParseKnownDifferences("a\n"), std::runtime_error);
    EXPECT_THROW(ParseKnownDifferences("a 1 2\n"), std::runtime_error);
}

TEST(CorpusScripts, ParagraphsAreStatementsAndCommentLinesAreDropped)
{
    const CorpusScript script = ParseCorpusScript("-- start: person.db\n"
                                                  "-- headers: on\n"
                                                  "-- what it covers: anything\n"
                                                  "\n"
                                                  "SELECT 1;\n"
                                                  "\n"
                                                  "-- why the next one\n"
                                                  "CREATE TRIGGER t AFTER INSERT ON x BEGIN\n"
                                                  "  SELECT 2;\n"
                                                  "END;\n"
                                                  "\n\n"
                                                  "-- a paragraph of comments only\n"
                                                  "\n"
                                                  "SELECT 'a\n"
                                                  "b';   \n");
    EXPECT_EQ(script.start, "person.db");
    EXPECT_TRUE(script.headers);
    ASSERT_EQ(script.statements.size(), 3u);
    EXPECT_EQ(script.statements[0], "SELECT 1;");
    EXPECT_EQ(script.statements[1], "CREATE TRIGGER t AFTER INSERT ON x BEGIN\n  SELECT 2;\nEND;");
    EXPECT_EQ(script.statements[2], "SELECT 'a\nb';   ");
    EXPECT_EQ(ParseCorpusScript("-- start: new\n").start, "new");
    EXPECT_FALSE(ParseCorpusScript("-- start: new\n").headers);
}

TEST(CorpusScripts, MalformedScriptsAreRefused)
{
    EXPECT_THROW(ParseCorpusScript("SELECT 1;\n"), std::runtime_error) << "no header";
    EXPECT_THROW(ParseCorpusScript("-- start: new\n\nSELECT 1\n"), std::runtime_error) << "no semicolon";
    EXPECT_THROW(ParseCorpusScript("-- start: new\n\n.dump;\n"), std::runtime_error) << "a shell command";
}

TEST(CorpusTranscripts, SplitAtMarkerLinesOnly)
{
    const std::string text = "-- 1\n-- 2\nx|-- 3\n-- 3\nline\n-- 2\nerror: no\n-- 4\n";
    const std::vector<std::string> blocks = SplitTranscript(text, 4);
    ASSERT_EQ(blocks.size(), 4u);
    EXPECT_EQ(blocks[0], "");
    EXPECT_EQ(blocks[1], "x|-- 3\n");
    EXPECT_EQ(blocks[2], "line\n-- 2\nerror: no\n");
    EXPECT_EQ(blocks[3], "");
    EXPECT_THROW(SplitTranscript("-- 1\n-- 3\n", 3), std::runtime_error);
    EXPECT_THROW(SplitTranscript("x\n-- 1\n", 1), std::runtime_error);
    EXPECT_TRUE(SplitTranscript("", 0).empty());
}

TEST(CorpusTranscripts, RowsAndErrorsAreRenderedAsTheShellPrintsThem)
{
    TempDir dir;
    sqlite* db = sqlite_open(dir.File("render.db").c_str(), 0, nullptr);
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(RunAsShell(db, "SELECT 1, NULL, 'a|b';", false), "1|NULL|a|b\n");
    EXPECT_EQ(RunAsShell(db, "SELECT 1 AS one, 2;", true), "one|2\n1|2\n");
    EXPECT_EQ(RunAsShell(db, "SELEC 1;", false), "error: near \"SELEC\": syntax error\n");
    EXPECT_EQ(RunAsShell(db, ";", true), "");
    sqlite_close(db);
    EXPECT_EQ(ResultCodeText(SQLITE_MISMATCH), "datatype mismatch");
    EXPECT_EQ(ResultCodeText(SQLITE_CONSTRAINT), "constraint failed");
}
