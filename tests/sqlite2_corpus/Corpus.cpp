#include "Corpus.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <stdexcept>

namespace {

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::string::size_type begin = 0;
    while (begin <= text.size()) {
        std::string::size_type end = text.find('\n', begin);
        if (end == std::string::npos)
            end = text.size();
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

bool Blank(const std::string& line)
{
    return std::all_of(line.begin(), line.end(), [](unsigned char c) { return std::isspace(c); });
}

std::string Trim(const std::string& text)
{
    auto begin = text.find_first_not_of(" \t\r");
    if (begin == std::string::npos)
        return "";
    return text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

bool IsComment(const std::string& line)
{
    auto first = line.find_first_not_of(" \t");
    return first != std::string::npos && line.compare(first, 2, "--") == 0;
}

struct Rendering {
    std::string text;
    bool headers = false;
    int calls = 0;
};

// The list mode of the 2.8 shell's callback: the header on the first call of
// a statement, then the row; an empty-result callback (no values) prints only
// the header.
int Render(void* arg, int columns, char** values, char** names)
{
    auto* rendering = static_cast<Rendering*>(arg);
    if (rendering->calls++ == 0 && rendering->headers) {
        for (int i = 0; i < columns; ++i) {
            rendering->text += names && names[i] ? names[i] : "";
            rendering->text += i == columns - 1 ? "\n" : "|";
        }
    }
    if (!values)
        return 0;
    for (int i = 0; i < columns; ++i) {
        rendering->text += values[i] ? values[i] : "NULL";
        rendering->text += i == columns - 1 ? "\n" : "|";
    }
    return 0;
}

int Rank(const std::string& what)
{
    if (!what.empty() && std::all_of(what.begin(), what.end(), [](unsigned char c) { return std::isdigit(c); }))
        return 0;
    if (what == "dump")
        return 1;
    if (what == "integrity")
        return 2;
    return 3;
}

} // namespace

CorpusScript ParseCorpusScript(const std::string& text)
{
    std::vector<std::vector<std::string>> paragraphs;
    std::vector<std::string> current;
    for (const std::string& line : Lines(text)) {
        if (Blank(line)) {
            if (!current.empty())
                paragraphs.push_back(current);
            current.clear();
        } else {
            current.push_back(line);
        }
    }
    if (!current.empty())
        paragraphs.push_back(current);

    if (paragraphs.empty() || !std::all_of(paragraphs[0].begin(), paragraphs[0].end(),
                                           [](const std::string& line) { return line.compare(0, 2, "--") == 0; }))
        throw std::runtime_error("a script opens with a header paragraph of '-- key: value' lines");
    CorpusScript script;
    for (const std::string& line : paragraphs[0]) {
        auto colon = line.find(':');
        if (colon == std::string::npos)
            continue;
        std::string key = Trim(line.substr(2, colon - 2));
        std::string value = Trim(line.substr(colon + 1));
        if (key == "start")
            script.start = value;
        else if (key == "headers")
            script.headers = value == "on";
    }
    for (size_t p = 1; p < paragraphs.size(); ++p) {
        std::string statement;
        for (const std::string& line : paragraphs[p]) {
            if (IsComment(line))
                continue;
            statement += (statement.empty() ? "" : "\n") + line;
        }
        if (statement.empty())
            continue;
        auto last = statement.find_last_not_of(" \t\r");
        if (statement[last] != ';' || statement[0] == '.')
            throw std::runtime_error("a statement ends with ';' and does not start with '.': " + statement);
        script.statements.push_back(statement);
    }
    return script;
}

std::vector<std::string> SplitTranscript(const std::string& text, size_t count)
{
    // A marker is a whole line, so it sits at the start of the text or right
    // after a line feed; values that merely contain "-- N" do not match.
    auto find = [&text](size_t number, std::string::size_type from) {
        const std::string marker = "-- " + std::to_string(number) + "\n";
        for (auto at = text.find(marker, from); at != std::string::npos; at = text.find(marker, at + 1)) {
            if (at == 0 || text[at - 1] == '\n')
                return at;
        }
        return std::string::npos;
    };
    std::vector<std::string> blocks;
    std::string::size_type at = find(1, 0);
    if (count > 0 && at != 0)
        throw std::runtime_error("the transcript does not start with '-- 1'");
    for (size_t number = 1; number <= count; ++number) {
        std::string::size_type begin = at + ("-- " + std::to_string(number) + "\n").size();
        std::string::size_type next = number < count ? find(number + 1, begin) : text.size();
        if (next == std::string::npos)
            throw std::runtime_error("the transcript has no '-- " + std::to_string(number + 1) + "'");
        blocks.push_back(text.substr(begin, next - begin));
        at = next;
    }
    return blocks;
}

std::string ResultCodeText(int rc)
{
    switch (rc) {
    case SQLITE_OK: return "not an error";
    case SQLITE_ERROR: return "SQL logic error or missing database";
    case SQLITE_INTERNAL: return "internal SQLite implementation flaw";
    case SQLITE_PERM: return "access permission denied";
    case SQLITE_ABORT: return "callback requested query abort";
    case SQLITE_BUSY: return "database is locked";
    case SQLITE_LOCKED: return "database table is locked";
    case SQLITE_NOMEM: return "out of memory";
    case SQLITE_READONLY: return "attempt to write a readonly database";
    case SQLITE_INTERRUPT: return "interrupted";
    case SQLITE_IOERR: return "disk I/O error";
    case SQLITE_CORRUPT: return "database disk image is malformed";
    case SQLITE_NOTFOUND: return "table or record not found";
    case SQLITE_FULL: return "database is full";
    case SQLITE_CANTOPEN: return "unable to open database file";
    case SQLITE_PROTOCOL: return "database locking protocol failure";
    case SQLITE_EMPTY: return "table contains no data";
    case SQLITE_SCHEMA: return "database schema has changed";
    case SQLITE_TOOBIG: return "too much data for one table row";
    case SQLITE_CONSTRAINT: return "constraint failed";
    case SQLITE_MISMATCH: return "datatype mismatch";
    case SQLITE_MISUSE: return "library routine called out of sequence";
    case SQLITE_NOLFS: return "kernel lacks large file support";
    case SQLITE_AUTH: return "authorization denied";
    case SQLITE_FORMAT: return "auxiliary database format error";
    case SQLITE_RANGE: return "bind index out of range";
    case SQLITE_NOTADB: return "file is encrypted or is not a database";
    default: return "unknown error";
    }
}

std::string RunAsShell(sqlite* db, const std::string& statement, bool headers)
{
    Rendering rendering;
    rendering.headers = headers;
    char* error = nullptr;
    int rc = sqlite_exec(db, statement.c_str(), Render, &rendering, &error);
    // The shell reports a failure when either the result code or a message
    // says so, and words a bare result code with sqlite_error_string.
    if (rc != SQLITE_OK || error)
        rendering.text += "error: " + (error ? std::string(error) : ResultCodeText(rc)) + "\n";
    sqlite_freemem(error);
    return rendering.text;
}

KnownDifferences ParseKnownDifferences(const std::string& text)
{
    KnownDifferences entries;
    for (const std::string& line : Lines(text)) {
        auto hash = line.find('#');
        std::istringstream fields(line.substr(0, hash));
        std::string script, what, extra;
        if (!(fields >> script))
            continue;
        if (!(fields >> what) || (fields >> extra))
            throw std::runtime_error("known differences: expected 'SCRIPT N' or 'SCRIPT dump', got: " + line);
        entries[script][what] = hash == std::string::npos ? "" : Trim(line.substr(hash + 1));
    }
    return entries;
}

std::string FormatKnownDifferences(const KnownDifferences& entries)
{
    std::string text = "# Where our 2.x engine answers differently from real SQLite 2.8.17 (see README.md).\n"
                       "# SCRIPT N: statement N; SCRIPT dump/integrity/check: the file after the script.\n";
    for (const auto& [script, whats] : entries) {
        std::vector<std::pair<std::string, std::string>> sorted(whats.begin(), whats.end());
        std::sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) {
            if (Rank(a.first) != Rank(b.first))
                return Rank(a.first) < Rank(b.first);
            if (Rank(a.first) == 0 && a.first.size() != b.first.size())
                return a.first.size() < b.first.size();
            return a.first < b.first;
        });
        for (const auto& [what, note] : sorted)
            text += script + " " + what + (note.empty() ? "" : "  # " + note) + "\n";
    }
    return text;
}
