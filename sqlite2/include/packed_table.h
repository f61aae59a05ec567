#pragma once

// The result array of a get_table call, built by the rules both SQLite
// generations' get_table follow: the column names once, while no row has
// come yet (so again for each statement without rows), then the values of
// every row of every statement, all statements alike in width. All texts are
// packed into one block instead of one allocation per value.
#include <cstddef>
#include <cstdint>

namespace sqlite2 {

class PackedTableBuilder {
public:
    explicit PackedTableBuilder(const char* incompatibleMessage) : incompatibleMessage(incompatibleMessage) {}
    PackedTableBuilder(const PackedTableBuilder&) = delete;
    PackedTableBuilder& operator=(const PackedTableBuilder&) = delete;
    ~PackedTableBuilder();

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

// Frees an array made by PackedTableBuilder.
void FreePackedTable(char** result);

} // namespace sqlite2
