#pragma once

#include "CommandMode.h"
#include "zttl/zt_string.h"

// What the command line asks for: the command and its positional values.
struct CommandLine {
    CommandMode mode = modeNone;
    ZT_String file;
    ZT_String table;
    ZT_String sql; // for the row commands, the WHERE part
};

// Leading options select the mode (the last recognised one wins, unknown
// ones are ignored); everything after them is positional, "-5" included.
CommandLine ParseCommandLine(int argc, char** argv);
