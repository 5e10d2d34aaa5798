// block_structures.h - word-processor documents told by the skeleton of the file: a header or a table names a place,
// and the right bytes stand there.
#pragma once

#include "fiid.h"

// Routine 1007: a header of 512 bytes with a block number, which leads to the marker FF 03 B3. Returns 1006, 1007 or
// 1039, or 0.
FIID FIProbeBlockHeader(FIReader& reader);

// Routine 1041: a table of 130 or 256 entries; the first one of type 99 leads to the byte B3. Returns 1041 or 0.
FIID FIProbeEntryTable(FIReader& reader);

// Routine 1025: a list of blocks of 1,024 bytes at offset 256; the first three start with 86. Returns 1025 or 0.
FIID FIProbeBlockList(FIReader& reader);

// Routine 1018: a chain of records with their length at both ends, of which the first four lie in the first 2,050
// bytes. Returns 1018 or 0.
FIID FIProbeMirroredLengths(FIReader& reader);
