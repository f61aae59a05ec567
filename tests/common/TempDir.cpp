#include "TempDir.h"

#include <cstdlib>
#include <filesystem>
#include <vector>

TempDir::TempDir(Place place)
{
    std::error_code error;
    std::vector<std::filesystem::path> bases;
    if (place == Place::MemoryWhenPossible)
        bases.push_back("/dev/shm");
    bases.push_back(std::filesystem::temp_directory_path(error));
    for (const std::filesystem::path& base : bases) {
        std::string pattern = (base / "rowkeeper-test-XXXXXX").string();
        if (!base.empty() && mkdtemp(pattern.data())) {
            path = pattern;
            return;
        }
    }
}

TempDir::~TempDir()
{
    std::error_code ignored;
    if (!path.empty())
        std::filesystem::remove_all(path, ignored);
}
