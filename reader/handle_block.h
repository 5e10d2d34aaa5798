// handle_block.h - reading blocks of a handle itself, a reader's own among them. The reader's position and buffer are
// left alone.
#pragma once

#include <algorithm>
#include <cstdint>

#include "fiid.h"

// Reads up to size bytes at the handle's position and returns the read's status. A host's handle may claim more bytes
// than it was asked for, or leave anything in the count of a read that fails: count is at most size, so that nothing
// behind the block is taken for some of it. A handle that sets no count leaves the caller's.
inline std::int32_t FIReadHandle(HIOFILE file, void* block, std::uint32_t size, std::uint32_t& count) {
    const std::int32_t status = file->operations.IORead(file, block, size, &count);
    count = std::min(count, size);
    return status;
}

// Copies the file's first bytes, up to size of them, from the reader's head. False when it has none that holds so many.
// Stands in front of FIRewindHandle and FIReadBlock, which would deliver the same.
bool FICopyHead(const FIReader& reader, void* block, std::uint32_t size, std::uint32_t& count);

// Moves the reader's handle to offset 0. Returns the seek's status.
std::int32_t FIRewindHandle(FIReader& reader);

// FIReadHandle for a reader's handle; count is 0 when the handle sets none.
std::int32_t FIReadBlock(FIReader& reader, void* block, std::uint32_t size, std::uint32_t& count);
