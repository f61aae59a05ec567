#pragma once

#include <string>

namespace sqlite2 {

// The database file with the locks and the rollback journal of SQLite 2:
// whole-file POSIX locks through one descriptor, and a "-journal" file whose
// deletion commits a write.
class FileAccess {
public:
    FileAccess() = default;
    FileAccess(const FileAccess&) = delete;
    FileAccess& operator=(const FileAccess&) = delete;
    ~FileAccess();

    // Opens (creating an empty file when the name does not exist).
    bool Open(const std::string& path, std::string& error);
    // Read lock, hot journal rolled back first, whole content read.
    bool ReadUnderLock(std::string& content, std::string& error);
    // Replaces the content the journalled way; old is what was read before.
    bool Write(const std::string& old, const std::string& content, std::string& error);
    void Unlock();

    // Test hook: a write-back stops dead (the process exits) after this many
    // file writes, so tests can check the recovery of an interrupted write.
    static void SetCrashAfterWrites(long writes);

private:
    bool Lock(short type);
    bool RollBackHotJournal(std::string& error);
    std::string JournalPath() const { return path + "-journal"; }

    std::string path;
    int fd = -1;
};

} // namespace sqlite2
