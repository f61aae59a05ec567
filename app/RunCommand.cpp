#include "RunCommand.h"

// Placeholder until the database layer lands: every command succeeds without doing anything.
int RunCommand(CommandMode, const ZT_String&, const ZT_String&, const ZT_String&)
{
    return 0;
}
