// code_statistics.h - word processors of the DOS era that are told by counting the control codes in their text.
//
// Neither routine looks at an offset or a header: a minimum count guards every answer, because a wrong one would take
// an ordinary text file away from text identification.
#pragma once

#include <cstdint>

#include "fiid.h"

struct FIHead;

// Routine 1034: counts the codes of three formats in the first 4,096 bytes. Returns 1034, 1022 or 1033, or 0.
FIID FIProbeCommandCounts(FIReader& reader);

// Its gate: whether one of the three could have its votes.
bool FIMayHaveCommandCounts(FIHead& head);

// Routine 1003: judges lines of words whose last character has its top bit set, in the first 1,026 bytes. Returns 1003
// or 0.
FIID FIProbeHighBitWords(FIReader& reader);

// Its gate: whether there are marks and line ends enough.
bool FIMayBeHighBitWords(FIHead& head);

// The next byte, a blank, CR or LF without its top bit if it has one; endOfFile like FIReaderGetByte.
std::uint16_t FIReadFoldedByte(FIReader& reader);
