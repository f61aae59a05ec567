// Rowkeeper: one command per invocation on a SQLite 2.x or 3.x database file.
#include "CommandLine.h"
#include "DialogToolkit.h"
#include "RunCommand.h"
#include "Usage.h"

#include <cstdio>

int main(int argc, char** argv)
{
    CommandLine line = ParseCommandLine(argc, argv);

    // Only the row commands start the dialog toolkit, and before their banner.
    if (IsRowCommand(line.mode) && !InitDialogToolkit(argc, argv)) {
        PrintBanner(stdout, false);
        fflush(stdout);
        fputs("Fatal Error: MFC initialization failed\n", stderr);
        return 1;
    }

    bool quiet = line.mode == modeQueryOne || line.mode == modeQueryTab || line.mode == modeQueryCsv;
    if (!quiet)
        PrintBanner(stderr, true);

    if (line.mode == modeNone) {
        PrintUsage();
        return 0;
    }
    return RunCommand(line.mode, line.file, line.table, line.sql);
}
