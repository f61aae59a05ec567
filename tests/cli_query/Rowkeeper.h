#pragma once

#include "RunProgram.h"
#include "TempDir.h"

#include <fstream>
#include <iterator>

inline const std::string bannerLines = "Rowkeeper v0.10 (build 10)\n\n";

inline RunResult Rowkeeper(std::vector<std::string> args)
{
    args.insert(args.begin(), ROWKEEPER_BINARY);
    return RunProgram(args);
}

inline std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

// A 3.x file made by the program itself, with one statement text.
inline void MakeDatabase(const std::string& path, const std::string& sql)
{
    RunResult r = Rowkeeper({"--create", path, sql});
    if (r.status != 0)
        throw std::runtime_error("could not make " + path + ": " + r.err);
}
