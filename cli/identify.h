// identify.h - one path, one record.
#pragma once

#include <cstdint>
#include <string>

#include "cli/record.h"

// Identifies the file at a path; flags are those of FIIdHandle.
Record IdentifyPath(const std::string& path, std::uint32_t flags);

// Identifies what comes out of a FIFO. It is read to its end, into a temporary file.
Record IdentifyFifo(const std::string& path, std::uint32_t flags);

// Identifies what standard input holds: a regular file or a block device in its place, as a whole, wherever its
// position is; anything else as a FIFO is.
Record IdentifyStandardInput(std::uint32_t flags);
