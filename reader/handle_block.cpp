// handle_block.cpp - reading blocks of the reader's handle itself.
#include "reader/handle_block.h"

std::int32_t FIRewindHandle(FIReader& reader) { return reader.file->operations.IOSeek(reader.file, IOOriginStart, 0); }

std::int32_t FIReadBlock(FIReader& reader, void* block, std::uint32_t size, std::uint32_t& count) {
    count = 0;
    return FIReadHandle(reader.file, block, size, count);
}
