#pragma once

#include <string>

class TempDir;

// Whole files as strings; "" for a file that cannot be read.
std::string ReadWholeFile(const std::string& path);
// Replaces the file's bytes (creating it) with the given ones.
void WriteWholeFile(const std::string& path, const std::string& bytes);
void CopyFile(const std::string& from, const std::string& to);

// A file of the 2.x fixtures (tests/data/sqlite2), by its name there.
std::string FixturePath(const std::string& name);
// A copy of the fixture "<name>.db" in the folder, under the same name; its path.
std::string CopyOfFixture(const TempDir& dir, const std::string& name);
