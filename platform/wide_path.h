// wide_path.h - paths in 16-bit units for a file system that knows bytes.
#pragma once

#include <cstdint>
#include <string>

// A path in UTF-16, ended by a 0 unit, as UTF-8. A surrogate without its partner becomes the three bytes of its own
// number, so that different paths stay different.
std::string UTNarrowPath(const std::uint16_t* path);
