// identify.h - one path, one record.
#pragma once

#include <cstdint>
#include <string>

#include "cli/record.h"

// Identifies the file at a path; flags are those of FIIdHandle.
Record IdentifyPath(const std::string& path, std::uint32_t flags);

// Identifies what standard input holds. It is read to its end: into a temporary file unless it is a regular file
// itself.
Record IdentifyStandardInput(std::uint32_t flags);
