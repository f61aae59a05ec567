#pragma once

#include <string>
#include <vector>

struct RunResult {
    std::string out;
    std::string err;
    int status = -1; // exit status, or 128 + signal number
};

// Runs a program directly (no shell) with extra "NAME=value" environment
// entries ("NAME" alone removes a variable), feeding stdinText to it.
RunResult RunProgram(const std::vector<std::string>& args, const std::vector<std::string>& extraEnv = {},
                     const std::string& stdinText = "");
