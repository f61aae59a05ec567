#pragma once

#include "status.h"

#include <cstdint>
#include <memory>
#include <string>

namespace sqlite2 {

constexpr uint32_t kPageSize = 1024;

// One page of the file in memory. Handles are shared: a page stays in memory
// while anyone holds its handle, even when the cache lets go of it.
struct PageBuffer {
    uint8_t bytes[kPageSize];
};
using PageHandle = std::shared_ptr<PageBuffer>;

// The pages of one 2.x database file, with SQLite 2's locks and rollback
// journal (whole-file POSIX locks through one descriptor; a "-journal" file
// whose deletion commits).
//
// States: unlocked -> reading (read lock) -> writing (write lock). Pages can
// be read only while reading or writing; they can be changed only while
// writing. Changes stay in memory until Commit, which writes them the 2.x
// way: journal with the original content of exactly the changed pages (and of
// the pages cut off), sync, header with the record count, sync, pages into
// the file, sync, journal deleted (the commit point). A crash at any moment
// leaves the old or the new state, for us and for real SQLite 2.
//
// The cache is forgotten whenever a lock is taken after having been released,
// so that reads always see what other programs committed meanwhile.
class Pager {
public:
    Pager();
    Pager(const Pager&) = delete;
    Pager& operator=(const Pager&) = delete;
    ~Pager(); // rolls back an open write, releases the lock, closes the file

    // Opens the file, creating an empty one when the name does not exist (as
    // 2.8 does); a file that cannot be written is opened read-only. Takes no
    // lock and reads nothing. CantOpen on failure.
    Status Open(const std::string& path);
    // Whether path names the file this pager has open (the same inode).
    bool IsSameFile(const std::string& path) const;
    bool IsReadOnly() const;

    // Unlocked -> reading; a no-op while reading or writing. A journal left
    // by a dead writer (any existing journal is hot once we hold the read
    // lock) is rolled back first, the 2.8 way. Busy ("database is locked")
    // when another process holds the write lock or the rollback cannot get
    // the write lock; the file is left untouched then.
    Status BeginRead();
    // Reading -> unlocked. Ignored while writing (the write must end first).
    void EndRead();
    bool IsReading() const; // true while reading or writing
    bool IsWriting() const;

    // Reading -> writing: takes the write lock. Busy when another process
    // reads; ReadOnly for a read-only file. Nothing is written to disk yet.
    Status BeginWrite();
    // Writes the changes (see above) and returns to reading. Full or IoError
    // when the disk refuses; the file then keeps its old content, the changes
    // are dropped and the pager is back to reading.
    Status Commit();
    // Drops every change and returns to reading.
    void Rollback();

    // Nested savepoints inside a write (one per statement, say): RollbackTo
    // restores the pages and page count as they were when the savepoint was
    // opened and keeps it open; Release forgets it (its changes stay). Ids
    // are returned by OpenSavepoint; they nest like a stack.
    int OpenSavepoint();
    void RollbackTo(int savepoint);
    void Release(int savepoint);

    // Pages in the database now, changes of the open write included (file
    // size / 1024 rounded down when nothing is changed).
    uint32_t PageCount() const;

    // How a read relates to the reads before it.
    enum class Access {
        kAlone, // a look-up
        kScan,  // the next page of a walk through a tree in key order
    };
    // Page n (1-based) for reading. Pages past the end of the file read as
    // zeros (2.x treats a missing page 2 as an empty schema). Corrupt for
    // n == 0; IoError when the read fails. A scan whose pages follow each
    // other in the file has the next pages read along (into the cache).
    Status Read(uint32_t n, PageHandle& page, Access access = Access::kAlone);
    // Page n made changeable (writing only): its original content is kept
    // for the journal the first time in a write, and for the innermost
    // savepoint the first time after it. The handle's bytes may then be
    // changed in place. n may be PageCount()+1 to append a page of zeros.
    Status Write(uint32_t n, PageHandle& page);
    // Cuts the database to the given number of pages at commit (pages past
    // it that existed before are journalled).
    Status Truncate(uint32_t pages);

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace sqlite2
