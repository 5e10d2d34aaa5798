// range.h - a stretch of another handle, seen as a handle of its own.
#pragma once

#include <cstdint>

#include "platform/handle.h"

// Opens the bytes of the parent from start (included) to end (excluded); what lies behind the parent's end is not
// there. An end in front of the start is an empty stretch. Returns null when memory is exhausted.
UTHandle* UTOpenRange(UTHandle& parent, std::uint32_t start, std::uint32_t end);
