#pragma once

// The result array of a get_table call, built by the rules both SQLite
// generations' get_table follow: the column names once, while no row has
// come yet (so again for each statement without rows), then the values of
// every row of every statement, all statements alike in width. All texts are
// packed into one block instead of one allocation per value. The 3.x back end
// and the 2.x engine both build their results here.
#include <cstddef>
#include <cstdint>

class ZT_PackedTableBuilder {
public:
    explicit ZT_PackedTableBuilder(const char* incompatibleMessage) : incompatibleMessage(incompatibleMessage) {}
    ZT_PackedTableBuilder(const ZT_PackedTableBuilder&) = delete;
    ZT_PackedTableBuilder& operator=(const ZT_PackedTableBuilder&) = delete;
    ~ZT_PackedTableBuilder();

    // The exec callback; the builder is its context.
    static int Collect(void* context, int count, char** values, char** names);
    // Null when the rows did not fit in memory or the statements differed in
    // width; Failure then tells why.
    char** Finish();
    const char* Failure() const;
    bool OutOfMemory() const { return failed; }
    int Rows() const { return rows; }
    int Columns() const { return columns; }

private:
    bool ReserveEntries(size_t extra);
    bool Add(const char* text);

    const char* incompatibleMessage;
    // While the query runs, the entries hold offsets into the text block (the
    // block moves as it grows); they become pointers in Finish.
    uintptr_t* entries = nullptr; // entries[0] is kept for the text block
    size_t entryCount = 1;
    size_t entryCapacity = 0;
    char* texts = nullptr;
    size_t textSize = 0;
    size_t textCapacity = 0;
    int rows = 0;
    int columns = 0;
    bool incompatible = false;
    bool failed = false;
};

// Frees an array made by ZT_PackedTableBuilder.
void ZT_FreePackedTable(char** result);

