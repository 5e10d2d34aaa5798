// wide_path.h - paths in 16-bit units for a file system that knows bytes.
#pragma once

#include <cstdint>

// A path in UTF-16, ended by a 0 unit, as NUL-terminated UTF-8 in a block of the process heap, which the caller frees;
// null when memory is exhausted. A surrogate without its partner becomes the three bytes of its own number, so that
// different paths stay different.
char* UTNarrowPath(const std::uint16_t* path) noexcept;
