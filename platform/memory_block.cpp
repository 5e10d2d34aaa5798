// memory_block.cpp - handles over blocks of memory.
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "platform/byte_objects.h"

namespace {

struct UTMemoryBlock {
    UTHandle handle;  // first
    const std::uint8_t* data;
    std::uint64_t size;
};

UTMemoryBlock& UTMemoryBlockOf(UTHandle& handle) {
    return reinterpret_cast<UTMemoryBlock&>(handle);  // handle is the first member
}

std::int32_t UTReadMemory(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                          std::uint32_t& count) {
    const UTMemoryBlock& block = UTMemoryBlockOf(handle);
    count = 0;
    if (offset >= block.size || size == 0) return 0;
    count = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, block.size - offset));
    std::memcpy(destination, block.data + offset, count);
    return 0;
}

std::uint64_t UTMemorySize(UTHandle& handle) { return UTMemoryBlockOf(handle).size; }

void UTReleaseMemory(UTHandle&) {}

constexpr UTHandleKind memoryKind = {UTReadMemory, UTMemorySize, UTReleaseMemory};

}  // namespace

UTHandle* UTOpenMemory(const IOMemorySpec& specification) {
    UTHandle* const handle = UTNewHandle(memoryKind, sizeof(UTMemoryBlock), nullptr);
    if (handle == nullptr) {
        errno = ENOMEM;
        return nullptr;
    }
    UTMemoryBlockOf(*handle).data = static_cast<const std::uint8_t*>(specification.data);
    UTMemoryBlockOf(*handle).size = specification.size;
    UTSetNarrowName(*handle, specification.name);
    return handle;
}
