#include "file_access.h"

#include "format.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace sqlite2 {

namespace {

const uint8_t journalMagic[8] = {0xD9, 0xD5, 0x05, 0xF9, 0x20, 0xA1, 0x63, 0xD6};
const size_t journalHeader = 20;
const size_t journalRecord = 4 + pageSize + 4;
long writesBeforeCrash = -1;

bool WriteAll(int fd, const void* data, size_t size, off_t offset)
{
    if (writesBeforeCrash == 0)
        _exit(99);
    if (writesBeforeCrash > 0)
        --writesBeforeCrash;
    const char* p = static_cast<const char*>(data);
    while (size > 0) {
        ssize_t n = pwrite(fd, p, size, offset);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        p += n;
        size -= size_t(n);
        offset += n;
    }
    return true;
}

bool ReadAll(int fd, std::string& content)
{
    struct stat info;
    if (fstat(fd, &info) != 0)
        return false;
    content.assign(size_t(info.st_size), '\0');
    size_t done = 0;
    while (done < content.size()) {
        ssize_t n = pread(fd, content.data() + done, content.size() - done, off_t(done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        done += size_t(n);
    }
    content.resize(done);
    return true;
}

void SyncDirectory(const std::string& path)
{
    std::string directory = path.substr(0, path.rfind('/') == std::string::npos ? 0 : path.rfind('/'));
    int fd = open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd >= 0) {
        fsync(fd);
        close(fd);
    }
}

} // namespace

void FileAccess::SetCrashAfterWrites(long writes)
{
    writesBeforeCrash = writes;
}

FileAccess::~FileAccess()
{
    if (fd >= 0)
        close(fd);
}

bool FileAccess::Open(const std::string& filePath, std::string& error)
{
    path = filePath;
    fd = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        error = "unable to open database file";
        return false;
    }
    struct stat info;
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        error = "unable to open database file";
        return false;
    }
    return true;
}

bool FileAccess::Lock(short type)
{
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    return fcntl(fd, F_SETLK, &lock) == 0;
}

void FileAccess::Unlock()
{
    if (fd >= 0)
        Lock(F_UNLCK);
}

bool FileAccess::ReadUnderLock(std::string& content, std::string& error)
{
    if (!Lock(F_RDLCK)) {
        error = "database is locked";
        return false;
    }
    if (access(JournalPath().c_str(), F_OK) == 0 && !RollBackHotJournal(error)) {
        Unlock();
        return false;
    }
    if (!ReadAll(fd, content)) {
        error = "disk I/O error";
        Unlock();
        return false;
    }
    return true;
}

bool FileAccess::RollBackHotJournal(std::string& error)
{
    // Only a writer may restore pages; its lock also proves the old writer is gone.
    if (!Lock(F_WRLCK)) {
        error = "database is locked";
        return false;
    }
    int journal = open(JournalPath().c_str(), O_RDONLY | O_CLOEXEC);
    if (journal < 0) {
        error = "unable to open the rollback journal";
        return false;
    }
    std::string bytes;
    ReadAll(journal, bytes);
    close(journal);
    const auto* p = reinterpret_cast<const uint8_t*>(bytes.data());
    if (bytes.size() >= 12) {
        if (memcmp(p, journalMagic, 7) != 0 || p[7] < 0xD4 || p[7] > 0xD6) {
            error = "the rollback journal is not valid; the database was left untouched";
            return false;
        }
        bool format3 = p[7] == 0xD6;
        size_t header = format3 ? journalHeader : 12;
        size_t record = format3 ? journalRecord : 4 + pageSize;
        if (bytes.size() >= header) {
            uint32_t records, seed = 0, originalPages;
            if (format3) {
                records = GetBE32(p + 8);
                seed = GetBE32(p + 12);
                originalPages = GetBE32(p + 16);
                if (records == 0xFFFFFFFFu)
                    records = uint32_t((bytes.size() - header) / record);
            } else {
                records = uint32_t((bytes.size() - header) / record);
                originalPages = p[7] == 0xD5 ? GetBE32(p + 8) : ByteOrder{}.Get32(p + 8);
            }
            if (ftruncate(fd, off_t(originalPages) * pageSize) != 0) {
                error = "disk I/O error";
                return false;
            }
            for (uint32_t i = 0; i < records; ++i) {
                size_t at = header + size_t(i) * record;
                if (at + record > bytes.size())
                    break;
                uint32_t page = p[7] == 0xD4 ? ByteOrder{}.Get32(p + at) : GetBE32(p + at);
                if (page == 0)
                    break;
                if (format3 && GetBE32(p + at + 4 + pageSize) != seed + page)
                    break;
                if (page > originalPages)
                    continue;
                if (!WriteAll(fd, p + at + 4, pageSize, off_t(page - 1) * pageSize)) {
                    error = "disk I/O error";
                    return false;
                }
            }
            fsync(fd);
        }
    }
    unlink(JournalPath().c_str());
    SyncDirectory(path);
    return Lock(F_RDLCK);
}

bool FileAccess::Write(const std::string& old, const std::string& content, std::string& error)
{
    if (!Lock(F_WRLCK)) {
        error = "database is locked";
        return false;
    }
    const uint32_t oldPages = uint32_t(old.size() / pageSize);
    const uint32_t newPages = uint32_t(content.size() / pageSize);
    std::vector<uint32_t> changed;
    for (uint32_t page = 1; page <= oldPages; ++page) {
        size_t at = size_t(page - 1) * pageSize;
        if (page > newPages || memcmp(old.data() + at, content.data() + at, pageSize) != 0)
            changed.push_back(page);
    }

    int journal = open(JournalPath().c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (journal < 0) {
        error = "unable to open the rollback journal";
        Lock(F_RDLCK);
        return false;
    }
    uint8_t header[journalHeader] = {};
    memcpy(header, journalMagic, 8);
    uint32_t seed = std::random_device{}();
    PutBE32(header + 12, seed);
    PutBE32(header + 16, oldPages);
    std::string records;
    records.reserve(changed.size() * journalRecord);
    for (uint32_t page : changed) {
        uint8_t number[4];
        PutBE32(number, page);
        records.append(reinterpret_cast<const char*>(number), 4);
        records.append(old, size_t(page - 1) * pageSize, pageSize);
        PutBE32(number, seed + page);
        records.append(reinterpret_cast<const char*>(number), 4);
    }
    bool ok = WriteAll(journal, header, journalHeader, 0) &&
              WriteAll(journal, records.data(), records.size(), off_t(journalHeader)) && fsync(journal) == 0;
    if (ok) {
        uint8_t count[4];
        PutBE32(count, uint32_t(changed.size()));
        ok = WriteAll(journal, count, 4, 8) && fsync(journal) == 0;
    }
    close(journal);
    if (ok) {
        SyncDirectory(path);
        for (uint32_t page = 1; ok && page <= newPages; ++page) {
            size_t at = size_t(page - 1) * pageSize;
            if (page <= oldPages && memcmp(old.data() + at, content.data() + at, pageSize) == 0)
                continue;
            ok = WriteAll(fd, content.data() + at, pageSize, off_t(at));
        }
        ok = ok && ftruncate(fd, off_t(content.size())) == 0 && fsync(fd) == 0;
    }
    if (!ok) {
        // Put the old pages back from the journal before giving up.
        std::string ignored;
        RollBackHotJournal(ignored);
        error = "disk I/O error";
        return false;
    }
    unlink(JournalPath().c_str());
    SyncDirectory(path);
    return Lock(F_RDLCK);
}

} // namespace sqlite2
