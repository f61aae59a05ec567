#pragma once

#include "sqlite.h"

#include <map>
#include <string>
#include <vector>

// The pieces of the differential corpus (tests/data/sqlite2/corpus, whose
// README.md defines the formats): reading scripts and transcripts, and
// answering a statement the way the 2.8 shell prints it.

struct CorpusScript {
    std::string start = "new"; // "new" or the fixture file to start from
    bool headers = false;      // the shell's column-name line
    std::vector<std::string> statements;
};

// Throws std::runtime_error for a script the rules do not allow.
CorpusScript ParseCorpusScript(const std::string& text);

// The blocks of statements 1..count ("-- N" lines stripped); throws when a
// marker is missing or out of order.
std::vector<std::string> SplitTranscript(const std::string& text, size_t count);

// One sqlite_exec call for the statement, rendered as the 2.8 shell prints it
// in list mode with separator '|' and NULL shown as "NULL".
std::string RunAsShell(sqlite* db, const std::string& statement, bool headers);

// The text 2.8's sqlite_error_string gives for a result code.
std::string ResultCodeText(int rc);

// Entries of known-differences.txt: script -> what ("12", "dump", ...) ->
// the comment kept beside it.
using KnownDifferences = std::map<std::string, std::map<std::string, std::string>>;
KnownDifferences ParseKnownDifferences(const std::string& text);
// Statement numbers in numeric order, then dump, integrity, check.
std::string FormatKnownDifferences(const KnownDifferences& entries);
