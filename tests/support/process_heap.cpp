#include "support/process_heap.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

#include "platform/base_utility.h"

namespace {

std::atomic<std::size_t> blocks = 0;
std::atomic<std::int64_t> allocationsLeft = INT64_MAX;

}  // namespace

std::size_t FIHeapBlocks() { return blocks; }
void FIFailAllocationsFrom(std::uint32_t number) { allocationsLeft = number; }
void FIHeapNeverFails() { allocationsLeft = INT64_MAX; }

extern "C" {

void* GetProcessHeap(void) { return &blocks; }

void* HeapAlloc(void*, std::uint32_t, std::size_t size) {
    if (allocationsLeft-- <= 0) return nullptr;
    void* const block = std::malloc(size);
    if (block == nullptr) return nullptr;
    std::memset(block, 0xA5, size);  // who takes a fresh block for zeros is found out
    ++blocks;
    return block;
}

std::int32_t HeapFree(void*, std::uint32_t, void* block) {
    if (block != nullptr) --blocks;
    std::free(block);
    return 1;
}

}  // extern "C"
