// card_images.h - IGES (1569), told by its card images.
//
// Reads the reader's handle itself in records and leaves the reader's own position alone; the handle is left behind
// what was read. A failing seek or read is the answer 0 unless told otherwise.
#pragma once

#include <cstdint>

#include "fiid.h"

// Bytes of a card-image record.
inline constexpr std::uint32_t cardRecordSize = 80;

// Reads a record of 80 bytes and the line end behind it, if there is one, from the handle's position. Stores the number
// in columns 74 to 80 and returns true. Returns false, with sequence as it was, for a null record or a failing read. A
// record that the end of the file cuts short keeps its old bytes behind the new ones.
bool FIReadCardRecord(FIReader& reader, std::uint8_t* record, std::int32_t& sequence);

// IGES: returns 1569 or 0. Reads the records of the start section and the first one behind it.
FIID FIProbeIges(FIReader& reader);
