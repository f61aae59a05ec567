#include "zttl/zt_arrayimp.h"

#include "zttl/zt_arraygrow.h"
#include "zttl/zt_report.h"

#include <cstdio>
#include <cstdlib>

ZT_ArrayPtrBase::~ZT_ArrayPtrBase()
{
    free(data);
}

bool ZT_ArrayPtrBase::SetSize(int n)
{
    if (ZT_ResizeBlock(data, count, capacity, n, growBy, ZT_ClearFrom::Count))
        return true;
    ZT_DebugDump("ZT_ArrayPtr realloc failed");
    return false;
}

void* ZT_ArrayPtrBase::GetSlot(int i) const
{
    if (!data) {
        ZT_DebugDump("ZT_ArrayPtr::GetAt() illegal Access, pData = NULL ! \n");
        ZT_Assert(false, "zt_arrayimp", 162);
        return nullptr;
    }
    if (!IsValidIndex(i)) {
        char text[96];
        snprintf(text, sizeof text, "ZT_ArrayPtr::GetAt() illegal Index Access %d ...\n", i);
        ZT_DebugDump(text);
        ZT_Assert(false, "zt_arrayimp", 171);
        return nullptr;
    }
    return data[i];
}

void ZT_ArrayPtrBase::SetSlotGrow(int i, void* p)
{
    if (i < 0)
        return;
    if (i + 1 >= count && !SetSize(i + 1))
        return;
    data[i] = p;
}

int ZT_ArrayPtrBase::FindSlot(const void* p) const
{
    for (int i = 0; i < count; ++i)
        if (data[i] == p)
            return i;
    return -1;
}

void* ZT_ArrayPtrBase::TakeAt(int i)
{
    if (!IsValidIndex(i))
        return nullptr;
    void* taken = data[i];
    for (int j = i; j + 1 < count; ++j)
        data[j] = data[j + 1];
    --count;
    data[count] = nullptr;
    return taken;
}
