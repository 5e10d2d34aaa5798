// memory_block.cpp - handles over blocks of memory.
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "platform/byte_objects.h"

namespace {

struct UTMemoryBlock {
    UTHandle handle;
    const std::uint8_t* data;
    std::uint64_t size;
};

std::int32_t UTReadMemory(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                          std::uint32_t& count) {
    const UTMemoryBlock& block = UTRecordOf<UTMemoryBlock>(handle);
    count = 0;
    if (offset >= block.size || size == 0) return 0;
    count = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, block.size - offset));
    std::memcpy(destination, block.data + offset, count);
    return 0;
}

std::uint64_t UTMemorySize(UTHandle& handle) { return UTRecordOf<UTMemoryBlock>(handle).size; }

bool UTMemoryHead(UTHandle& handle, UTHead& head) {
    const UTMemoryBlock& block = UTRecordOf<UTMemoryBlock>(handle);
    head = {block.data, static_cast<std::uint32_t>(std::min<std::uint64_t>(block.size, UTHeadBytes)), block.size};
    return true;
}

constexpr UTHandleKind memoryKind = {UTReadMemory, UTMemorySize, nullptr, UTMemoryHead, true};

}  // namespace

UTHandle* UTOpenMemory(const IOMemorySpec& specification) {
    auto* const block = UTNewHandleRecord<UTMemoryBlock>(memoryKind, nullptr);
    if (block == nullptr) {
        errno = ENOMEM;
        return nullptr;
    }
    block->data = static_cast<const std::uint8_t*>(specification.data);
    block->size = specification.size;
    UTSetNarrowName(block->handle, specification.name);
    return &block->handle;
}
