// handle_block.cpp - reading blocks of the reader's handle itself.
#include "reader/handle_block.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr std::uint16_t originStart = 0;

}  // namespace

std::int32_t FIRewindHandle(FIReader& reader) { return reader.file->operations.IOSeek(reader.file, originStart, 0); }

std::int32_t FIReadBlock(FIReader& reader, void* block, std::uint32_t size, std::uint32_t& count) {
    count = 0;
    const std::int32_t status = reader.file->operations.IORead(reader.file, block, size, &count);
    count = std::min(count, size);
    return status;
}
