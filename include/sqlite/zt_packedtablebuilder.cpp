#include "sqlite/zt_packedtablebuilder.h"
#include "sqlite/zt_resultmemory.h"

#include <cstdlib>
#include <cstring>

namespace {
constexpr uintptr_t nullEntry = UINTPTR_MAX;
}

ZT_PackedTableBuilder::~ZT_PackedTableBuilder()
{
    ZT_FreeResultBlock(entries);
    ZT_FreeResultBlock(texts);
}

bool ZT_PackedTableBuilder::ReserveEntries(size_t extra)
{
    if (entryCount + extra <= entryCapacity)
        return true;
    size_t capacity = entryCapacity ? entryCapacity : 64;
    while (capacity < entryCount + extra)
        capacity *= 2;
    auto* grown = static_cast<uintptr_t*>(ZT_ResizeResultBlock(entries, capacity * sizeof(uintptr_t)));
    if (!grown)
        return false;
    entries = grown;
    entryCapacity = capacity;
    return true;
}

bool ZT_PackedTableBuilder::Add(const char* text)
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
        char* grown = static_cast<char*>(ZT_ResizeResultBlock(texts, capacity));
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

int ZT_PackedTableBuilder::Collect(void* context, int count, char** values, char** names)
{
    auto* builder = static_cast<ZT_PackedTableBuilder*>(context);
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

const char* ZT_PackedTableBuilder::Failure() const
{
    if (failed)
        return "out of memory";
    return incompatible ? incompatibleMessage : nullptr;
}

char** ZT_PackedTableBuilder::Finish()
{
    if (failed || incompatible)
        return nullptr;
    // A result without entries still needs slot 0.
    if (!ReserveEntries(0)) {
        failed = true;
        return nullptr;
    }
    auto** table = reinterpret_cast<char**>(entries);
    for (size_t i = 1; i < entryCount; ++i)
        table[i] = entries[i] == nullEntry ? nullptr : texts + entries[i];
    table[0] = texts;
    entries = nullptr;
    texts = nullptr;
    return table + 1;
}

void ZT_FreePackedTable(char** result)
{
    if (!result)
        return;
    ZT_FreeResultBlock(result[-1]);
    ZT_FreeResultBlock(result - 1);
}

