#pragma once

#include "RunProgram.h"

#include <string>
#include <vector>

// What the program writes to stderr before a command's own messages.
inline const std::string bannerLines = "Rowkeeper v0.10 (build 10)\n\n";

// Runs the program built with the tests, with the given arguments and the
// extra environment entries RunProgram takes.
RunResult Rowkeeper(std::vector<std::string> args, const std::vector<std::string>& extraEnv = {},
                    const std::string& stdinText = "");
// The program's own file.
std::string RowkeeperBinary();

// A 3.x file made by the program itself, with one statement text; throws
// when the program refuses it.
void MakeDatabase(const std::string& path, const std::string& sql);
