// text_images.h - graphics formats without a magic number, told by their first records or words: IGES (1569), a chain
// of marked records (1570), X bitmaps (1571) and pixmaps (1572), and the Netpbm family (1588 to 1590).
//
// All but FIProbeNetpbm read the reader's handle itself in blocks or records and leave the reader's own position alone;
// the handle is left behind what they read. A failing seek or read is the answer 0 unless told otherwise.
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

// Returns 1570 or 0. Reads one block of 2,000 bytes.
FIID FIProbeMarkedRecords(FIReader& reader);

// X bitmap: returns 1571 or 0. Reads one block of 4,096 bytes; the status of that read does not count.
FIID FIProbeXbm(FIReader& reader);

// X pixmap: returns 1572 or 0. Reads one block of 4,096 bytes.
FIID FIProbeXpm(FIReader& reader);

// Netpbm: returns 1588 for bitmaps, 1589 for graymaps, 1590 for pixmaps, or 0. Goes through the reader.
FIID FIProbeNetpbm(FIReader& reader);
