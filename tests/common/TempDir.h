#pragma once

#include <string>

// A fresh directory that is removed with everything in it at scope end.
class TempDir {
public:
    // Where the directory is made: the system's temporary folder, or a memory
    // file system (/dev/shm) when the machine has one, for tests whose files
    // are synced often and whose speed matters.
    enum class Place { Temporary, MemoryWhenPossible };

    explicit TempDir(Place place = Place::Temporary);
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    // False when no directory could be made.
    bool Usable() const { return !path.empty(); }
    const std::string& Path() const { return path; }
    std::string File(const std::string& name) const { return path + "/" + name; }

private:
    std::string path;
};
