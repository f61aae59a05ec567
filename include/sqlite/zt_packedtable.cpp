#include "sqlite/zt_packedtable.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sqlite3.h>

namespace {

constexpr uintptr_t nullEntry = UINTPTR_MAX;

// While the query runs, the entries hold offsets into the text block (the
// block moves as it grows); they become pointers once it is complete.
struct PackedBuilder {
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

    ~PackedBuilder()
    {
        free(entries);
        free(texts);
    }

    bool ReserveEntries(size_t extra)
    {
        if (entryCount + extra <= entryCapacity)
            return true;
        size_t capacity = entryCapacity ? entryCapacity : 64;
        while (capacity < entryCount + extra)
            capacity *= 2;
        auto* grown = static_cast<uintptr_t*>(realloc(entries, capacity * sizeof(uintptr_t)));
        if (!grown)
            return false;
        entries = grown;
        entryCapacity = capacity;
        return true;
    }

    bool Add(const char* text)
    {
        if (!text) {
            entries[entryCount++] = nullEntry;
            return true;
        }
        const size_t length = strlen(text) + 1;
        if (textSize + length > textCapacity) {
            size_t capacity = textCapacity ? textCapacity : 4096;
            while (capacity < textSize + length)
                capacity *= 2;
            char* grown = static_cast<char*>(realloc(texts, capacity));
            if (!grown)
                return false;
            texts = grown;
            textCapacity = capacity;
        }
        memcpy(texts + textSize, text, length);
        entries[entryCount++] = textSize;
        textSize += length;
        return true;
    }

    // Entries were reserved before the query ran, so there is always a slot 0.
    char** Finish()
    {
        auto** table = reinterpret_cast<char**>(entries);
        for (size_t i = 1; i < entryCount; ++i)
            table[i] = entries[i] == nullEntry ? nullptr : texts + entries[i];
        table[0] = texts;
        entries = nullptr;
        texts = nullptr;
        return table + 1;
    }
};

// The get_table callback, rule for rule: the names are taken while no row
// has come yet (so again for each statement that returned none).
int Collect(void* context, int count, char** values, char** names)
{
    auto* builder = static_cast<PackedBuilder*>(context);
    const bool takeNames = builder->rows == 0;
    if (!takeNames && builder->columns != count) {
        builder->incompatible = true;
        return 1;
    }
    if (!builder->ReserveEntries(size_t(count) * ((takeNames ? 1 : 0) + (values ? 1 : 0)))) {
        builder->failed = true;
        return 1;
    }
    if (takeNames) {
        builder->columns = count;
        for (int i = 0; i < count; ++i)
            if (!builder->Add(names[i] ? names[i] : "")) {
                builder->failed = true;
                return 1;
            }
    }
    if (values) {
        for (int i = 0; i < count; ++i)
            if (!builder->Add(values[i])) {
                builder->failed = true;
                return 1;
            }
        ++builder->rows;
    }
    return 0;
}

} // namespace

int GetPackedTable(sqlite3* db, const char* sql, char*** result, int* rows, int* columns, char** errorMessage)
{
    *result = nullptr;
    *rows = 0;
    *columns = 0;
    if (errorMessage)
        *errorMessage = nullptr;
    PackedBuilder builder;
    if (!builder.ReserveEntries(1))
        return SQLITE_NOMEM;
    int rc = sqlite3_exec(db, sql, Collect, &builder, errorMessage);
    if (builder.incompatible || builder.failed) {
        if (errorMessage) {
            sqlite3_free(*errorMessage);
            *errorMessage = sqlite3_mprintf("%s", builder.failed ? "out of memory"
                                                                 : "sqlite3_get_table() called with two or more "
                                                                   "incompatible queries");
        }
        return builder.failed ? SQLITE_NOMEM : SQLITE_ERROR;
    }
    if (rc != SQLITE_OK)
        return rc;
    *result = builder.Finish();
    *rows = builder.rows;
    *columns = builder.columns;
    return SQLITE_OK;
}

void FreePackedTable(char** result)
{
    if (!result)
        return;
    free(result[-1]);
    free(result - 1);
}
