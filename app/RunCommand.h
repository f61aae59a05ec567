#pragma once

#include "CommandMode.h"
#include "zttl/zt_string.h"

// Runs the selected command on the database file and returns the exit status.
int RunCommand(CommandMode mode, const ZT_String& file, const ZT_String& table, const ZT_String& sql);
