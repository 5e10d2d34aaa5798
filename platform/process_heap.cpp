// process_heap.cpp - the heap of the process. These three functions stand in a file of their own, so that a program
// linked with the static library can bring its own.
#include <cstdint>
#include <cstdlib>

#include "platform/base_utility.h"

extern "C" {

void* GetProcessHeap(void) {
    static const char heap = 0;  // there is one heap; its address stands for it
    return const_cast<char*>(&heap);
}

void* HeapAlloc(void*, std::uint32_t, std::size_t size) { return std::malloc(size); }

std::int32_t HeapFree(void*, std::uint32_t, void* block) {
    std::free(block);
    return 1;
}

}  // extern "C"
