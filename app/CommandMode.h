#pragma once

// The one command an invocation performs, chosen by the leading options.
enum CommandMode {
    modeNone = 0,
    modeCreate2 = 1,
    modeCreate3 = 2,
    modeExec = 3,
    modeQueryOne = 4,
    modeQueryTab = 5,
    modeQueryCsv = 6,
    modeQueryTable = 7,
    modeEditRow = 8,
    modeEditRows = 9,
    modeInsertRow = 10,
};

inline bool IsRowCommand(CommandMode mode)
{
    return mode == modeEditRow || mode == modeEditRows || mode == modeInsertRow;
}
