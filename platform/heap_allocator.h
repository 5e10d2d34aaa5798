// heap_allocator.h - containers and records of the platform layer that live on the process heap.
//
// The containers throw std::bad_alloc when the heap is exhausted. Whoever uses them catches it in front of the first
// function that a handle's operation calls: no exception leaves the platform layer.
#pragma once

#include <cstddef>
#include <limits>
#include <new>
#include <vector>

#include "platform/base_utility.h"

template <typename T>
struct UTHeapAllocator {
    using value_type = T;

    UTHeapAllocator() = default;
    template <typename U>
    UTHeapAllocator(const UTHeapAllocator<U>&) noexcept {}

    T* allocate(std::size_t count) {
        if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) throw std::bad_alloc();
        void* const block = HeapAlloc(GetProcessHeap(), 0, count * sizeof(T));
        if (block == nullptr) throw std::bad_alloc();
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t) noexcept { HeapFree(GetProcessHeap(), 0, block); }

    template <typename U>
    bool operator==(const UTHeapAllocator<U>&) const noexcept {
        return true;
    }
};

template <typename T>
using UTVector = std::vector<T, UTHeapAllocator<T>>;

// A new record with default values, or null when memory is exhausted. T's constructor must not throw.
template <typename T>
T* UTNewRecord() {
    void* const block = HeapAlloc(GetProcessHeap(), 0, sizeof(T));
    return block != nullptr ? new (block) T : nullptr;
}

// Ends a record of UTNewRecord.
template <typename T>
void UTDeleteRecord(T& record) {
    record.~T();
    HeapFree(GetProcessHeap(), 0, &record);
}
