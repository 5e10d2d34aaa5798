// process_heap.h - the process heap of the tests: counts its blocks, fills them, and can be told to run out.
#pragma once

#include <cstddef>
#include <cstdint>

// Blocks that are allocated and not freed.
std::size_t FIHeapBlocks();

// Allocations fail from the one with this number on, counted from 0 and from this call. FIHeapNeverFails undoes it.
void FIFailAllocationsFrom(std::uint32_t number);
void FIHeapNeverFails();
