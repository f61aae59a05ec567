#pragma once

// Owner of one get_table result array, given back to the library that made
// it when the last owner lets go. The counter lets several owners share one.
class ZT_SQLiteResult {
public:
    explicit ZT_SQLiteResult(char** table);
    ZT_SQLiteResult(const ZT_SQLiteResult&) = delete;
    ZT_SQLiteResult& operator=(const ZT_SQLiteResult&) = delete;
    virtual void FreeTable();
    virtual void Release();
    virtual ~ZT_SQLiteResult();

    // Unchecked: callers stay within the counts of the holder.
    const char* GetEntry(int index) const { return table[index]; }

protected:
    char** table;
    int* counter;
};

class ZT_SQLite2Result : public ZT_SQLiteResult {
public:
    using ZT_SQLiteResult::ZT_SQLiteResult;
    void FreeTable() override;
    ~ZT_SQLite2Result() override;
};

class ZT_SQLite3Result : public ZT_SQLiteResult {
public:
    using ZT_SQLiteResult::ZT_SQLiteResult;
    void FreeTable() override;
    ~ZT_SQLite3Result() override;
};
