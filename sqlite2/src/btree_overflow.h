#pragma once

// Overflow chains: the bytes of a payload beyond the 236 bytes a cell keeps,
// 1020 bytes per page, each page linking to the next.
#include "btree.h"
#include "btree_page.h"

#include <vector>

namespace sqlite2::btree {

// Appends to out (after clearing it) `length` bytes of the cell's payload
// starting at `from`; from + length must not exceed the payload. Only the
// chain pages up to the last byte wanted are read.
Status ReadPayload(Pager& pager, const ByteOrder& order, const CellInfo& cell, uint64_t from, size_t length,
                   std::string& out);

// The pages of the chain starting at first that holds a payload of the given
// size: exactly ChainLength(payload) pages, each within the file.
Status ChainPages(Pager& pager, const ByteOrder& order, uint32_t first, uint64_t payload,
                  std::vector<uint32_t>& pages);

// Stores `rest` (the payload beyond the local bytes) on a chain and returns
// its first page (0 for nothing to store). The pages in `reuse` (an old
// chain being replaced) are used first and the ones not needed are freed;
// pages whose content stays the same are not written.
Status WriteChain(BTree& tree, std::string_view rest, const std::vector<uint32_t>& reuse, uint32_t& first);

// Writes a whole page unless it already holds exactly this content, so that
// unchanged pages are not journalled.
Status WritePageIfChanged(Pager& pager, uint32_t number, const uint8_t* content);

// Gives every page of the chain back to the free list.
Status FreeChain(BTree& tree, uint32_t first, uint64_t payload);

} // namespace sqlite2::btree
