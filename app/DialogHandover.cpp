// The dialog toolkit of the program itself. The program is linked statically
// where it can be, so that queries start fast, and a static program cannot
// load the dialog module: a row command hands the whole invocation over to
// the dialog host, the same front end linked to load the module. Nothing has
// been printed or opened at that point, so the host starts the command from
// the beginning.
#include "DialogToolkit.h"
#include "ProgramFiles.h"

#include <unistd.h>

bool InitDialogToolkit(int, char** argv)
{
    for (const std::string& host : CompanionPaths("rowkeeper-dialogs"))
        execv(host.c_str(), argv); // returns only when the host could not be started
    return false;
}

// Never reached: a row command continues in the host.
int RunParamsDialog(ZT_ParameterGroup&)
{
    return 0;
}

void RunRowEditor(ZT_SQLiteDatabase&, SQLiteParameterSet&) {}
