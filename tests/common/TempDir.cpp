#include "TempDir.h"

#include <cstdlib>
#include <filesystem>

TempDir::TempDir()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "rowkeeper-test-XXXXXX").string();
    if (mkdtemp(pattern.data()))
        path = pattern;
}

TempDir::~TempDir()
{
    std::error_code ignored;
    if (!path.empty())
        std::filesystem::remove_all(path, ignored);
}
