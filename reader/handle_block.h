// handle_block.h - reading blocks of the reader's handle itself. The reader's own position and buffer are left alone.
#pragma once

#include <cstdint>

#include "fiid.h"

// Moves the handle to offset 0. Returns the seek's status.
std::int32_t FIRewindHandle(FIReader& reader);

// Reads up to size bytes at the handle's position. Returns the read's status; count is at most size, whatever a failing
// handle left in it.
std::int32_t FIReadBlock(FIReader& reader, void* block, std::uint32_t size, std::uint32_t& count);
