#include "pager.h"

#include "file_change_steps.h"
#include "format.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <list>
#include <map>
#include <random>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>
#include <unordered_map>
#include <vector>

namespace sqlite2 {

namespace {

// Journal format 3 (what 2.8 writes); formats 1 and 2 differ in the last
// magic byte and are only ever read.
const uint8_t journalMagic[8] = {0xD9, 0xD5, 0x05, 0xF9, 0x20, 0xA1, 0x63, 0xD6};
constexpr uint8_t format1Magic = 0xD4;
constexpr uint8_t format2Magic = 0xD5;
constexpr size_t journalHeader = 20;
constexpr size_t journalRecord = 4 + kPageSize + 4;
constexpr size_t oldJournalHeader = 12;
constexpr size_t oldJournalRecord = 4 + kPageSize;

// Unchanged pages kept for later reads: enough for the upper levels of every
// tree a statement touches, small enough that a scan of a big file stays
// cheap. Changed pages are never dropped, whatever their number.
constexpr size_t cleanPageBudget = 2048;
// How many pages a scan through the file in order reads at once.
constexpr uint32_t kReadAheadPages = 16;
// Journal records are gathered into writes of this many.
constexpr size_t recordsPerWrite = 32;

Status Misuse()
{
    return {kError, "library routine called out of sequence"};
}

Status FromErrno(int error)
{
    return error == ENOSPC ? Status::Full() : Status::IoError();
}

// 0 or the errno of the failure.
int WriteAll(int fd, const void* data, size_t size, off_t offset)
{
    BeforeFileChange();
    const char* p = static_cast<const char*>(data);
    while (size > 0) {
        ssize_t n = pwrite(fd, p, size, offset);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return errno;
        if (n == 0)
            return EIO;
        p += n;
        size -= size_t(n);
        offset += n;
    }
    return 0;
}

int TruncateFile(int fd, off_t size)
{
    BeforeFileChange();
    return ftruncate(fd, size) == 0 ? 0 : errno;
}

int Sync(int fd)
{
    return fsync(fd) == 0 ? 0 : errno;
}

// Reads up to size bytes; fewer only at the end of the file. -1 on failure.
ssize_t ReadAll(int fd, void* data, size_t size, off_t offset)
{
    char* p = static_cast<char*>(data);
    size_t done = 0;
    while (done < size) {
        ssize_t n = pread(fd, p + done, size - done, offset + off_t(done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return -1;
        if (n == 0)
            break;
        done += size_t(n);
    }
    return ssize_t(done);
}

// Page n as the file holds it; zeros past its end.
bool ReadPageFromFile(int fd, uint32_t n, uint8_t* bytes)
{
    ssize_t got = ReadAll(fd, bytes, kPageSize, off_t(n - 1) * kPageSize);
    if (got < 0)
        return false;
    memset(bytes + got, 0, kPageSize - size_t(got));
    return true;
}

std::string DirectoryOf(const std::string& path)
{
    size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// Makes the creation or removal of the journal's name durable. Some file
// systems cannot sync a directory; the name is then as durable as it gets.
void SyncDirectory(const std::string& path)
{
    int fd = open(DirectoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        fsync(fd);
        close(fd);
    }
}

uint32_t GetNative32(const uint8_t* p)
{
    uint32_t v;
    memcpy(&v, p, 4);
    return v;
}

// Puts back the original pages a journal holds, the way 2.8 does: the file
// cut to its original size, then every record up to the first incomplete
// one. The journal itself is left in place. The caller holds the write lock.
Status PlayBack(int db, const std::string& journalPath)
{
    int journal = open(journalPath.c_str(), O_RDONLY | O_CLOEXEC);
    if (journal < 0)
        return errno == ENOENT ? Status::Ok() : Status::IoError();
    struct Closer {
        int fd;
        ~Closer() { close(fd); }
    } closer{journal};

    struct stat info;
    if (fstat(journal, &info) != 0)
        return Status::IoError();
    const uint64_t size = uint64_t(info.st_size);
    if (size < oldJournalHeader)
        return Status::Ok(); // died before its header was written: nothing changed

    uint8_t header[journalHeader];
    if (ReadAll(journal, header, sizeof header, 0) < ssize_t(oldJournalHeader))
        return Status::IoError();
    const uint8_t format = header[7];
    if (memcmp(header, journalMagic, 7) != 0 || format < format1Magic || format > journalMagic[7])
        return {kCorrupt, "the rollback journal " + journalPath + " is not valid; the database was left untouched"};

    const bool checksums = format == journalMagic[7];
    uint64_t records;
    uint32_t seed = 0;
    uint32_t originalPages;
    size_t headerSize, recordSize;
    if (checksums) {
        if (size < journalHeader)
            return Status::Ok();
        headerSize = journalHeader;
        recordSize = journalRecord;
        records = GetBE32(header + 8);
        seed = GetBE32(header + 12);
        originalPages = GetBE32(header + 16);
        if (records == 0xFFFFFFFFu)
            records = (size - headerSize) / recordSize;
    } else {
        headerSize = oldJournalHeader;
        recordSize = oldJournalRecord;
        records = (size - headerSize) / recordSize;
        originalPages = format == format2Magic ? GetBE32(header + 8) : GetNative32(header + 8);
    }
    auto pageNumber = [&](const uint8_t* p) { return format == format1Magic ? GetNative32(p) : GetBE32(p); };

    if (int error = TruncateFile(db, off_t(originalPages) * kPageSize))
        return FromErrno(error);
    std::vector<uint8_t> record(recordSize);
    for (uint64_t i = 0; i < records; ++i) {
        const off_t at = off_t(headerSize + i * recordSize);
        ssize_t got = ReadAll(journal, record.data(), recordSize, at);
        if (got < 0)
            return Status::IoError();
        if (size_t(got) < recordSize)
            break; // the writer died while appending this record
        const uint32_t page = pageNumber(record.data());
        if (page == 0)
            break;
        if (checksums && GetBE32(record.data() + 4 + kPageSize) != seed + page)
            break; // never completely written, and nothing after it was either
        if (page > originalPages)
            continue;
        if (int error = WriteAll(db, record.data() + 4, kPageSize, off_t(page - 1) * kPageSize))
            return FromErrno(error);
    }
    if (fsync(db) != 0)
        return Status::IoError();
    return Status::Ok();
}

// Any value will do; a random one keeps records of an older journal that
// happen to lie past the end of a new one from passing the checksum.
uint32_t RandomSeed()
{
    try {
        return std::random_device{}();
    } catch (...) {
        return uint32_t(std::chrono::steady_clock::now().time_since_epoch().count()) ^ uint32_t(getpid());
    }
}

// A journal being written by a commit: created on the first need, records
// gathered into larger writes.
class JournalWriter {
public:
    explicit JournalWriter(const std::string& path) : path(path) {}
    ~JournalWriter()
    {
        if (fd >= 0)
            close(fd);
    }

    bool Created() const { return fd >= 0; }

    Status Create(uint32_t originalPages)
    {
        BeforeFileChange();
        fd = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        if (fd < 0)
            return errno == ENOSPC ? Status::Full() : Status{kCantOpen, message::cantOpen};
        mine = true;
        seed = RandomSeed();
        uint8_t header[journalHeader] = {};
        memcpy(header, journalMagic, 8);
        PutBE32(header + 8, 0); // filled in once the records are synced
        PutBE32(header + 12, seed);
        PutBE32(header + 16, originalPages);
        if (int error = WriteAll(fd, header, sizeof header, 0))
            return FromErrno(error);
        end = journalHeader;
        return Status::Ok();
    }

    Status Add(uint32_t page, const uint8_t* original)
    {
        uint8_t number[4];
        PutBE32(number, page);
        pending.insert(pending.end(), number, number + 4);
        pending.insert(pending.end(), original, original + kPageSize);
        PutBE32(number, seed + page);
        pending.insert(pending.end(), number, number + 4);
        ++records;
        return pending.size() >= recordsPerWrite * journalRecord ? Flush() : Status::Ok();
    }

    // Records and their count made durable with one sync, as 2.8 does by
    // default: a record that did not reach the disk fails its checksum, and
    // the rollback stops there (the database is written only after this).
    Status Finish()
    {
        if (Status status = Flush(); !status)
            return status;
        uint8_t count[4];
        PutBE32(count, records);
        if (int error = WriteAll(fd, count, 4, 8))
            return FromErrno(error);
        if (int error = Sync(fd))
            return FromErrno(error);
        close(fd);
        fd = -1;
        SyncDirectory(path);
        return Status::Ok();
    }

    // Removes our journal when the database file was never touched.
    void Discard()
    {
        if (fd >= 0) {
            close(fd);
            fd = -1;
        }
        if (mine)
            unlink(path.c_str());
    }

private:
    Status Flush()
    {
        if (pending.empty())
            return Status::Ok();
        if (int error = WriteAll(fd, pending.data(), pending.size(), end))
            return FromErrno(error);
        end += off_t(pending.size());
        pending.clear();
        return Status::Ok();
    }

    std::string path;
    int fd = -1;
    bool mine = false; // created by us, not found
    uint32_t seed = 0;
    uint32_t records = 0;
    off_t end = 0;
    std::vector<uint8_t> pending;
};

// A page's original content into the journal, created on the first need.
Status JournalOriginal(JournalWriter& journal, uint32_t originalPages, uint32_t n, const PageBuffer& original)
{
    if (!journal.Created())
        if (Status status = journal.Create(originalPages); !status)
            return status;
    return journal.Add(n, original.bytes);
}

} // namespace

struct Pager::State {
    enum class LockState { none, read, write };

    struct Entry {
        PageHandle page;
        bool dirty = false;
        std::list<uint32_t>::iterator recent; // place among the clean pages
    };

    // What a savepoint needs to put back: each page's content when it was
    // first changed after the savepoint opened (null: the page was unchanged
    // then, the file holds it), and the page count. Pages between "lowest"
    // (the smallest count reached since) and the count were cut off while
    // unchanged unless listed, so the file holds them too.
    struct Savepoint {
        uint32_t pageCount = 0;
        uint32_t lowest = 0;
        std::map<uint32_t, std::unique_ptr<PageBuffer>> before;
    };

    std::string path;
    std::string journalPath;
    int fd = -1;
    bool readOnly = false;
    LockState lock = LockState::none;
    uint32_t filePages = 0; // in the file, as of taking the lock or the last commit
    uint32_t pageCount = 0; // with the changes of the open write
    uint32_t lastScanMiss = 0; // the last page a scan found missing from the cache
    PageBuffer readAheadScratch;
    std::unordered_map<uint32_t, Entry> cache;
    std::list<uint32_t> clean; // most recently used first
    std::vector<Savepoint> savepoints;

    ~State()
    {
        if (fd >= 0)
            close(fd); // also releases the lock
    }

    bool SetLock(short type)
    {
        struct flock lock {};
        lock.l_type = type;
        lock.l_whence = SEEK_SET;
        lock.l_start = 0;
        lock.l_len = 0;
        return fcntl(fd, F_SETLK, &lock) == 0;
    }

    void Unlock()
    {
        SetLock(F_UNLCK);
        lock = LockState::none;
        Forget();
    }

    void Forget()
    {
        cache.clear();
        clean.clear();
        savepoints.clear();
    }

    void MakeClean(uint32_t n, Entry& entry)
    {
        if (entry.dirty) {
            entry.dirty = false;
            clean.push_front(n);
            entry.recent = clean.begin();
        }
    }

    void MakeDirty(Entry& entry)
    {
        if (!entry.dirty) {
            clean.erase(entry.recent);
            entry.dirty = true;
        }
    }

    void Drop(std::unordered_map<uint32_t, Entry>::iterator it)
    {
        if (!it->second.dirty)
            clean.erase(it->second.recent);
        cache.erase(it);
    }

    void DropAbove(uint32_t pages)
    {
        for (auto it = cache.begin(); it != cache.end();) {
            auto next = std::next(it);
            if (it->first > pages)
                Drop(it);
            it = next;
        }
    }

    // Lets go of the least recently used clean pages nobody else holds until
    // at most `keep` remain (held pages stay: two buffers for one page would
    // let a change through one go unseen through the other).
    void Trim(size_t keep)
    {
        for (size_t tries = clean.size(); clean.size() > keep && tries > 0; --tries) {
            uint32_t n = clean.back();
            auto it = cache.find(n);
            if (it->second.page.use_count() == 1) {
                clean.pop_back();
                cache.erase(it);
            } else {
                clean.splice(clean.begin(), clean, std::prev(clean.end()));
            }
        }
    }

    // Page n (at most pageCount) in the cache.
    Status Fetch(uint32_t n, Entry*& entry, bool scanning = false)
    {
        auto it = cache.find(n);
        if (it != cache.end()) {
            if (!it->second.dirty)
                clean.splice(clean.begin(), clean, it->second.recent);
            entry = &it->second;
            return Status::Ok();
        }
        // A scan that missed a page shortly after its last miss goes through
        // the file in order: the pages after this one come with it in one
        // read. (Look-ups jump about; pages read along would only push
        // useful ones out of the cache.)
        if (scanning) {
            const bool inOrder = lastScanMiss && n > lastScanMiss && n - lastScanMiss <= kReadAheadPages;
            lastScanMiss = n;
            if (inOrder && n < filePages && n < pageCount)
                return FetchWithFollowers(n, entry);
        }
        return FetchAlone(n, entry);
    }

    // Page n read by itself; past the end of the file, a page of zeros.
    Status FetchAlone(uint32_t n, Entry*& entry)
    {
        auto page = std::make_shared<PageBuffer>();
        if (n <= filePages && !ReadPageFromFile(fd, n, page->bytes))
            return Status::IoError();
        entry = &Insert(n, std::move(page));
        return Status::Ok();
    }

    // Page n and the pages of the file after it that are not in the cache,
    // read together, each straight into its own buffer.
    Status FetchWithFollowers(uint32_t n, Entry*& entry)
    {
        const uint32_t count = std::min({n + kReadAheadPages - 1, filePages, pageCount}) - n + 1;
        std::shared_ptr<PageBuffer> pages[kReadAheadPages];
        iovec parts[kReadAheadPages];
        for (uint32_t k = 0; k < count; ++k) {
            // A page the cache has (perhaps changed) is read into a scratch buffer and dropped.
            if (k == 0 || !cache.count(n + k))
                pages[k] = std::make_shared_for_overwrite<PageBuffer>(); // the read fills it
            parts[k] = {pages[k] ? pages[k]->bytes : readAheadScratch.bytes, kPageSize};
        }
        ssize_t got;
        do
            got = preadv(fd, parts, int(count), off_t(n - 1) * kPageSize);
        while (got < 0 && errno == EINTR);
        if (got < ssize_t(kPageSize))
            return got < 0 ? Status::IoError() : FetchAlone(n, entry); // the file ended before the page did
        for (uint32_t k = count; k-- > 0;) {
            if (!pages[k] || size_t(k + 1) * kPageSize > size_t(got))
                continue;
            Entry& inserted = Insert(n + k, std::move(pages[k]));
            if (k == 0)
                entry = &inserted;
        }
        return Status::Ok();
    }

    Entry& Insert(uint32_t n, std::shared_ptr<PageBuffer> page)
    {
        Trim(cleanPageBudget - 1);
        clean.push_front(n);
        return cache.emplace(n, Entry{std::move(page), false, clean.begin()}).first->second;
    }

    // Page n back to what the file holds (it was unchanged at the point
    // returned to), in place for those who hold it.
    void RestoreFromFile(uint32_t n)
    {
        auto it = cache.find(n);
        if (it == cache.end())
            return;
        if (n <= filePages && ReadPageFromFile(fd, n, it->second.page->bytes))
            MakeClean(n, it->second);
        else
            Drop(it);
    }

    void RestoreContent(uint32_t n, const PageBuffer& content)
    {
        auto it = cache.find(n);
        if (it == cache.end()) {
            auto page = std::make_shared<PageBuffer>(content);
            it = cache.emplace(n, Entry{std::move(page), true, {}}).first;
        } else {
            memcpy(it->second.page->bytes, content.bytes, kPageSize);
            MakeDirty(it->second);
        }
    }

    // Records page n's content for the innermost savepoint before its first
    // change there.
    void NoteChange(uint32_t n, const Entry& entry)
    {
        if (savepoints.empty())
            return;
        Savepoint& savepoint = savepoints.back();
        if (n > savepoint.lowest || savepoint.before.count(n))
            return;
        savepoint.before.emplace(n, entry.dirty ? std::make_unique<PageBuffer>(*entry.page) : nullptr);
    }

    void RestoreSavepoint(Savepoint& savepoint)
    {
        pageCount = savepoint.pageCount;
        DropAbove(pageCount);
        for (auto& [n, content] : savepoint.before) {
            if (content)
                RestoreContent(n, *content);
            else
                RestoreFromFile(n);
        }
        std::vector<uint32_t> cutOff;
        for (auto& [n, entry] : cache)
            if (n > savepoint.lowest && !savepoint.before.count(n))
                cutOff.push_back(n);
        for (uint32_t n : cutOff)
            RestoreFromFile(n);
        savepoint.before.clear();
        savepoint.lowest = savepoint.pageCount;
    }

    // Every change of the write forgotten; the file holds the pages again.
    void DropChanges()
    {
        std::vector<uint32_t> changed;
        for (auto& [n, entry] : cache)
            if (entry.dirty)
                changed.push_back(n);
        for (uint32_t n : changed)
            RestoreFromFile(n);
        savepoints.clear();
        pageCount = filePages;
        Trim(cleanPageBudget);
    }

    Status RollBackHotJournal();
    Status WriteBack();
    std::vector<uint32_t> ChangedPages() const;
    Status JournalChangedPages(JournalWriter& journal, uint32_t originalPages, std::vector<uint32_t>& toWrite);
    Status JournalCutOffPages(JournalWriter& journal, uint32_t originalPages);
    int WriteToFile(const std::vector<uint32_t>& toWrite, uint32_t originalPages);
    Status RestoreAfterFailedWrite(Status status);
};

// Called holding the read lock with a journal present: its writer is dead
// (a live one would hold the write lock), so its pages go back.
Status Pager::State::RollBackHotJournal()
{
    if (readOnly || access(DirectoryOf(journalPath).c_str(), W_OK | X_OK) != 0)
        return Status::ReadOnly(); // the rollback could not be done, nor the journal removed
    if (!SetLock(F_WRLCK))
        return Status::Busy();
    Status status = PlayBack(fd, journalPath);
    if (status) {
        BeforeFileChange();
        if (unlink(journalPath.c_str()) != 0 && errno != ENOENT)
            status = Status::IoError();
        SyncDirectory(journalPath);
    }
    SetLock(F_RDLCK);
    return status;
}

// Commit's work: journal, then the file. On failure the file holds its old
// content again (or, when even that fails, the journal is left for the next
// reader to roll back).
Status Pager::State::WriteBack()
{
    const uint32_t originalPages = filePages;
    JournalWriter journal(journalPath);
    std::vector<uint32_t> toWrite;
    Status status = JournalChangedPages(journal, originalPages, toWrite);
    if (status)
        status = JournalCutOffPages(journal, originalPages);
    if (status && toWrite.empty() && pageCount == originalPages)
        return Status::Ok(); // nothing changed: no journal, no write
    if (status && !journal.Created())
        status = journal.Create(originalPages); // only a growth: its rollback is the truncation
    if (status)
        status = journal.Finish();
    if (!status) {
        journal.Discard(); // the file was not touched
        return status;
    }
    if (int error = WriteToFile(toWrite, originalPages))
        return RestoreAfterFailedWrite(FromErrno(error));
    return Status::Ok(); // like 2.8, the deletion is not synced: a lost one only rolls back
}

// The changed pages in page order.
std::vector<uint32_t> Pager::State::ChangedPages() const
{
    std::vector<uint32_t> changed;
    for (const auto& [n, entry] : cache)
        if (entry.dirty)
            changed.push_back(n);
    std::sort(changed.begin(), changed.end());
    return changed;
}

// Journals the original of each changed page the file holds and lists the
// pages to write; a page changed back to its original is clean again.
Status Pager::State::JournalChangedPages(JournalWriter& journal, uint32_t originalPages,
                                         std::vector<uint32_t>& toWrite)
{
    PageBuffer original;
    for (uint32_t n : ChangedPages()) {
        if (n <= originalPages) {
            // The file still holds the original: the write lock kept everyone out.
            if (!ReadPageFromFile(fd, n, original.bytes))
                return Status::IoError();
            Entry& entry = cache.at(n);
            if (memcmp(original.bytes, entry.page->bytes, kPageSize) == 0) {
                MakeClean(n, entry);
                continue;
            }
            if (Status status = JournalOriginal(journal, originalPages, n, original); !status)
                return status;
        }
        toWrite.push_back(n);
    }
    return Status::Ok();
}

// Journals the pages the write cuts off.
Status Pager::State::JournalCutOffPages(JournalWriter& journal, uint32_t originalPages)
{
    PageBuffer original;
    for (uint32_t n = pageCount + 1; n <= originalPages; ++n) {
        if (!ReadPageFromFile(fd, n, original.bytes))
            return Status::IoError();
        if (Status status = JournalOriginal(journal, originalPages, n, original); !status)
            return status;
    }
    return Status::Ok();
}

// With the journal durable: the pages into the file, the cut, a sync, then
// the journal's deletion, which commits. 0 or the errno of the failure.
int Pager::State::WriteToFile(const std::vector<uint32_t>& toWrite, uint32_t originalPages)
{
    for (uint32_t n : toWrite)
        if (int error = WriteAll(fd, cache.at(n).page->bytes, kPageSize, off_t(n - 1) * kPageSize))
            return error;
    if (pageCount < originalPages)
        if (int error = TruncateFile(fd, off_t(pageCount) * kPageSize))
            return error;
    if (int error = Sync(fd))
        return error;
    BeforeFileChange();
    if (unlink(journalPath.c_str()) != 0) // the commit point
        return errno;
    return 0;
}

// After WriteToFile failed: the old content back from the journal; returns
// the failure.
Status Pager::State::RestoreAfterFailedWrite(Status status)
{
    if (PlayBack(fd, journalPath) && unlink(journalPath.c_str()) == 0) {
        SyncDirectory(journalPath);
        return status;
    }
    // The journal stays hot: give up the lock so that the next reader, we
    // included, rolls it back.
    Unlock();
    return status;
}

Pager::Pager() = default;

Pager::~Pager()
{
    // Closing the descriptor drops the changes of an open write with the lock.
}

bool Pager::IsSameFile(const std::string& path) const
{
    struct stat mine, other;
    return state && state->fd >= 0 && fstat(state->fd, &mine) == 0 && stat(path.c_str(), &other) == 0 &&
           mine.st_dev == other.st_dev && mine.st_ino == other.st_ino;
}

Status Pager::Open(const std::string& path)
{
    state = std::make_unique<State>();
    State& s = *state;
    s.path = path;
    if (!path.empty() && path[0] != '/') {
        // The journal must stay beside the file even if the working directory changes.
        char* cwd = getcwd(nullptr, 0);
        if (cwd) {
            s.path = std::string(cwd) + "/" + path;
            free(cwd);
        }
    }
    s.journalPath = s.path + "-journal";
    s.fd = open(s.path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (s.fd < 0) {
        s.fd = open(s.path.c_str(), O_RDONLY | O_CLOEXEC);
        s.readOnly = true;
    }
    struct stat info;
    if (s.fd < 0 || fstat(s.fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        state.reset();
        return {kCantOpen, message::cantOpen};
    }
    return Status::Ok();
}

bool Pager::IsReadOnly() const
{
    return state && state->readOnly;
}

Status Pager::BeginRead()
{
    if (!state)
        return {kCantOpen, message::cantOpen};
    State& s = *state;
    if (s.lock != State::LockState::none)
        return Status::Ok();
    if (!s.SetLock(F_RDLCK))
        return Status::Busy();
    s.lock = State::LockState::read;
    s.Forget(); // others may have written while we held no lock
    if (access(s.journalPath.c_str(), F_OK) == 0) {
        if (Status status = s.RollBackHotJournal(); !status) {
            s.Unlock();
            return status;
        }
    }
    struct stat info;
    if (fstat(s.fd, &info) != 0) {
        s.Unlock();
        return Status::IoError();
    }
    s.filePages = uint32_t(uint64_t(info.st_size) / kPageSize);
    s.pageCount = s.filePages;
    return Status::Ok();
}

void Pager::EndRead()
{
    if (state && state->lock == State::LockState::read)
        state->Unlock();
}

bool Pager::IsReading() const
{
    return state && state->lock != State::LockState::none;
}

bool Pager::IsWriting() const
{
    return state && state->lock == State::LockState::write;
}

Status Pager::BeginWrite()
{
    if (!state)
        return {kCantOpen, message::cantOpen};
    State& s = *state;
    if (s.lock == State::LockState::write)
        return Status::Ok();
    if (s.readOnly)
        return Status::ReadOnly();
    const bool wasReading = s.lock == State::LockState::read;
    if (!wasReading)
        if (Status status = BeginRead(); !status)
            return status;
    if (!s.SetLock(F_WRLCK)) {
        if (!wasReading)
            s.Unlock();
        return Status::Busy();
    }
    s.lock = State::LockState::write;
    s.savepoints.clear();
    s.pageCount = s.filePages;
    return Status::Ok();
}

Status Pager::Commit()
{
    if (!IsWriting())
        return IsReading() ? Status::Ok() : Misuse();
    State& s = *state;
    s.savepoints.clear();
    Status status = s.WriteBack();
    if (s.lock == State::LockState::none)
        return status; // the journal was left behind, the cache is gone
    if (status) {
        for (auto& [n, entry] : s.cache)
            s.MakeClean(n, entry);
        s.filePages = s.pageCount;
        s.Trim(cleanPageBudget);
    } else {
        s.DropChanges();
    }
    s.SetLock(F_RDLCK);
    s.lock = State::LockState::read;
    return status;
}

void Pager::Rollback()
{
    if (!IsWriting())
        return;
    State& s = *state;
    s.DropChanges();
    s.SetLock(F_RDLCK);
    s.lock = State::LockState::read;
}

int Pager::OpenSavepoint()
{
    if (!IsWriting())
        return -1;
    State& s = *state;
    s.savepoints.push_back({s.pageCount, s.pageCount, {}});
    return int(s.savepoints.size()) - 1;
}

void Pager::RollbackTo(int savepoint)
{
    if (!IsWriting() || savepoint < 0 || size_t(savepoint) >= state->savepoints.size())
        return;
    State& s = *state;
    // Innermost first, so that the content from the outermost one wins.
    for (size_t i = s.savepoints.size(); i-- > size_t(savepoint);)
        s.RestoreSavepoint(s.savepoints[i]);
    s.savepoints.resize(size_t(savepoint) + 1);
}

void Pager::Release(int savepoint)
{
    if (!IsWriting() || savepoint < 0 || size_t(savepoint) >= state->savepoints.size())
        return;
    State& s = *state;
    // The enclosing savepoint takes over what the released ones recorded for
    // the pages it had not recorded itself.
    while (s.savepoints.size() > size_t(savepoint)) {
        State::Savepoint inner = std::move(s.savepoints.back());
        s.savepoints.pop_back();
        if (s.savepoints.empty())
            break;
        State::Savepoint& outer = s.savepoints.back();
        for (auto& [n, content] : inner.before)
            if (n <= outer.lowest)
                outer.before.try_emplace(n, std::move(content));
        outer.lowest = std::min(outer.lowest, inner.lowest);
    }
}

uint32_t Pager::PageCount() const
{
    if (!state)
        return 0;
    if (state->lock != State::LockState::none)
        return state->pageCount;
    struct stat info;
    return fstat(state->fd, &info) == 0 ? uint32_t(uint64_t(info.st_size) / kPageSize) : 0;
}

Status Pager::Read(uint32_t n, PageHandle& page, Access access)
{
    if (!IsReading())
        return Misuse();
    if (n == 0)
        return Status::Corrupt();
    State& s = *state;
    if (n > s.pageCount) {
        page = std::make_shared<PageBuffer>();
        return Status::Ok();
    }
    State::Entry* entry = nullptr;
    if (Status status = s.Fetch(n, entry, access == Access::kScan); !status)
        return status;
    page = entry->page;
    return Status::Ok();
}

Status Pager::Write(uint32_t n, PageHandle& page)
{
    if (!IsWriting())
        return Misuse();
    State& s = *state;
    if (n == 0 || n > s.pageCount + 1)
        return Status::Corrupt();
    if (n == s.pageCount + 1) {
        // A new page: zeros, whatever the file or an earlier cut-off page held.
        if (auto it = s.cache.find(n); it != s.cache.end())
            s.Drop(it);
        page = std::make_shared<PageBuffer>();
        s.cache.emplace(n, State::Entry{page, true, {}});
        ++s.pageCount;
        return Status::Ok();
    }
    State::Entry* entry = nullptr;
    if (Status status = s.Fetch(n, entry); !status)
        return status;
    s.NoteChange(n, *entry);
    s.MakeDirty(*entry);
    page = entry->page;
    return Status::Ok();
}

Status Pager::Truncate(uint32_t pages)
{
    if (!IsWriting())
        return Misuse();
    State& s = *state;
    if (pages >= s.pageCount)
        return Status::Ok();
    if (!s.savepoints.empty()) {
        // Changed pages cut off keep their content for the savepoint; the
        // unchanged ones are in the file.
        State::Savepoint& savepoint = s.savepoints.back();
        for (auto& [n, entry] : s.cache)
            if (entry.dirty && n > pages && n <= savepoint.lowest && !savepoint.before.count(n))
                savepoint.before.emplace(n, std::make_unique<PageBuffer>(*entry.page));
        savepoint.lowest = std::min(savepoint.lowest, pages);
    }
    s.DropAbove(pages);
    s.pageCount = pages;
    return Status::Ok();
}

} // namespace sqlite2
