#pragma once

// Owner of one get_table result array, given back to the library that made
// it when the last owner lets go. The counter lets several owners share one.
class ZT_SQLiteResult {
public:
    // Takes ownership of table as its first owner.
    explicit ZT_SQLiteResult(char** table);
    ZT_SQLiteResult(const ZT_SQLiteResult&) = delete;
    ZT_SQLiteResult& operator=(const ZT_SQLiteResult&) = delete;
    // Gives the array back to its library; the base kind owns none, so calling
    // it here is a failed check.
    virtual void FreeTable();
    // Drops this owner's share; the last one frees the array. Safe to repeat.
    virtual void Release();
    // Releases; each kind releases in its own destructor too, so that its
    // FreeTable still runs.
    virtual ~ZT_SQLiteResult();

    // Unchecked: callers stay within the counts of the holder.
    const char* GetEntry(int index) const { return table[index]; }

protected:
    char** table;
    int* counter;
};

// An array from the 2.x engine's get_table.
class ZT_SQLite2Result : public ZT_SQLiteResult {
public:
    using ZT_SQLiteResult::ZT_SQLiteResult;
    void FreeTable() override;
    ~ZT_SQLite2Result() override;
};

// A packed array made for a 3.x query.
class ZT_SQLite3Result : public ZT_SQLiteResult {
public:
    using ZT_SQLiteResult::ZT_SQLiteResult;
    void FreeTable() override;
    ~ZT_SQLite3Result() override;
};
