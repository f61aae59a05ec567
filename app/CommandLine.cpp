#include "CommandLine.h"

#include <cstring>

namespace {

struct Spelling {
    const char* option;
    CommandMode mode;
};

// Compared in this order; every match sets the mode.
const Spelling spellings[] = {
    {"--create", modeCreate3},     {"--create3", modeCreate3},   {"-c3", modeCreate3},
    {"--create2", modeCreate2},    {"-c2", modeCreate2},
    {"--exec", modeExec},          {"-r", modeExec},
    {"--query-one", modeQueryOne}, {"-q", modeQueryOne},
    {"--query", modeQueryTable},   {"--query-table", modeQueryTable},
    {"--query-tab", modeQueryTab},
    {"--query-csv", modeQueryCsv},
    {"--edit-row", modeEditRow},   {"-er", modeEditRow},
    {"--edit-rows", modeEditRows}, {"-et", modeEditRows},
    {"--insert-row", modeInsertRow}, {"--add-row", modeInsertRow}, {"-ar", modeInsertRow},
};

} // namespace

CommandLine ParseCommandLine(int argc, char** argv)
{
    CommandLine line;
    int i = 1;
    for (; i < argc && argv[i][0] == '-'; ++i)
        for (const Spelling& spelling : spellings)
            if (strcmp(argv[i], spelling.option) == 0)
                line.mode = spelling.mode;

    int position = 0;
    bool firstSqlPiece = true;
    for (; i < argc; ++i, ++position) {
        if (position == 0) {
            line.file = argv[i];
        } else if (position == 1 && IsRowCommand(line.mode)) {
            line.table = argv[i];
        } else if (firstSqlPiece) {
            line.sql = argv[i];
            firstSqlPiece = false;
        } else {
            line.sql.Append(" ");
            line.sql.Append(argv[i]);
        }
    }
    line.sql.Trim();
    return line;
}
