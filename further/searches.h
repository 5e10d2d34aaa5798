// searches.h - values that begin somewhere in a range of offsets.
#pragma once

#include <cstdint>
#include <string_view>

#include "further/look.h"

// Whether a value lies in the head and begins at an offset from first to last, both included. Reads behind the first 8,192
// bytes only when they don't tell.
bool FIHeadHolds(FILook& look, std::uint32_t first, std::uint32_t last, std::string_view value);
