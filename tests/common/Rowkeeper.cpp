#include "Rowkeeper.h"

#include <stdexcept>

RunResult Rowkeeper(std::vector<std::string> args, const std::vector<std::string>& extraEnv,
                    const std::string& stdinText)
{
    args.insert(args.begin(), RowkeeperBinary());
    return RunProgram(args, extraEnv, stdinText);
}

std::string RowkeeperBinary()
{
    return ROWKEEPER_BINARY;
}

void MakeDatabase(const std::string& path, const std::string& sql)
{
    RunResult r = Rowkeeper({"--create", path, sql});
    if (r.status != 0)
        throw std::runtime_error("could not make " + path + ": " + r.err);
}
