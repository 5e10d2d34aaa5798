// low_byte.h - a byte without a look at the end of the file.
#pragma once

#include <cstdint>

#include "reader/reader.h"

// The low eight bits of what FIReaderGetByte delivers.
//
// Quirk: the end of the file, and a read that fails, is the byte FF. The routines that take their bytes so go on behind
// the end until an FF does not fit, or until they have counted enough of them.
inline std::uint8_t FITakeLowByte(FIReader& reader) { return static_cast<std::uint8_t>(FIReaderGetByte(reader)); }
