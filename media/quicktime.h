// quicktime.h - QuickTime movies by their first two atoms.
#pragma once

#include <cstdint>

#include "fiid.h"

// Reads the atom type at the reader's place, of the atom behind a "wide" one if that stands there, and tells whether it
// is free, skip, mdat, pnot or moov. The four characters read last come out through the tags; endOfFile stays in the
// first one that the file did not hold, and the ones behind it are not written.
bool FIIsQuickTimeAtom(FIReader& reader, std::uint16_t& tag1, std::uint16_t& tag2, std::uint16_t& tag3,
                       std::uint16_t& tag4);

// Routine 1705: 1705 when the file starts with two known atoms, otherwise 0.
FIID FIProbeQuickTime(FIReader& reader);
