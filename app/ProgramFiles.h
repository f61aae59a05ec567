#pragma once

#include <string>
#include <vector>

// Where the program's companion files may be, best first: beside the
// executable in a build tree, under lib/rowkeeper when installed.
std::vector<std::string> CompanionPaths(const std::string& name);
