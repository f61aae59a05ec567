#pragma once

#include <string>

// A fresh directory that is removed with everything in it at scope end.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::string& Path() const { return path; }
    std::string File(const std::string& name) const { return path + "/" + name; }

private:
    std::string path;
};
