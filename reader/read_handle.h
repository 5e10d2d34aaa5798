// read_handle.h - reading from a handle at its own position.
#pragma once

#include <algorithm>
#include <cstdint>

#include "fiid.h"

// Reads up to size bytes and returns the read's status. A host's handle may claim more bytes than it was asked for:
// count is at most size, so that nothing behind the bytes is taken for some of them. A handle that sets no count leaves
// it as it was, so the caller gives it a value first.
inline std::int32_t FIReadHandle(HIOFILE file, void* destination, std::uint32_t size, std::uint32_t& count) {
    const std::int32_t status = file->operations.IORead(file, destination, size, &count);
    count = std::min(count, size);
    return status;
}
