#pragma once

// The memory of query results built in one piece (the get_table arrays):
// blocks that grow while the rows come in. A small block comes from the C
// library. A large one is mapped by itself, in huge pages where the system
// offers them: filling tens of megabytes page by page cost a query more
// system time than reading its file did.
#include <cstddef>

// Block data of at least `capacity` bytes holding the old block's bytes
// (block may be null for a new one). Null when memory ran out; the old
// block is then unchanged.
void* ZT_ResizeResultBlock(void* block, size_t capacity);

// Gives back a block from ZT_ResizeResultBlock; null is ignored.
void ZT_FreeResultBlock(void* block);
