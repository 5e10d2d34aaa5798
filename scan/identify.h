// identify.h - one path, one record.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "scan/record.h"

// Identifies the file at a path; flags are those of fiid_options. A FIFO has a reader for a moment: this is for paths that
// lead to none.
Record IdentifyPath(const std::string& path, std::uint32_t flags);

// Identifies whatever a path leads to: a FIFO too, which is read to its end, into a temporary file. Returns nothing for a
// directory.
std::optional<Record> IdentifyNamedPath(const std::string& path, std::uint32_t flags);

// Identifies what standard input holds: a regular file or a block device in its place, as a whole, wherever its
// position is; anything else as a FIFO is.
Record IdentifyStandardInput(std::uint32_t flags);
