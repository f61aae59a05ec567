#include "TestFiles.h"
#include "TempDir.h"

#include <fstream>
#include <iterator>

std::string ReadWholeFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void WriteWholeFile(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

void CopyFile(const std::string& from, const std::string& to)
{
    WriteWholeFile(to, ReadWholeFile(from));
}

std::string FixturePath(const std::string& name)
{
    return std::string(FIXTURES_DIR) + "/" + name;
}

std::string CopyOfFixture(const TempDir& dir, const std::string& name)
{
    const std::string path = dir.File(name + ".db");
    CopyFile(FixturePath(name + ".db"), path);
    return path;
}
