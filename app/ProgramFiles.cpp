#include "ProgramFiles.h"

#include <limits.h>
#include <unistd.h>

namespace {

std::string ExecutableDirectory()
{
    char path[PATH_MAX];
    ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    if (n <= 0)
        return ".";
    std::string executable(path, size_t(n));
    return executable.substr(0, executable.rfind('/'));
}

} // namespace

std::vector<std::string> CompanionPaths(const std::string& name)
{
    const std::string directory = ExecutableDirectory();
    return {directory + "/" + name, directory + "/../lib/rowkeeper/" + name};
}
