// trailers.h - word-processor documents told by one mark that a row of bytes can't tell: a trailer behind a fill, an
// escape sequence with a repeat in it, codes scattered over a hundred bytes, a checksum over a range that the header
// names.
#pragma once

#include "fiid.h"

struct FIHead;

// Routine 1020: looks through the last 5,121 bytes for a fill of 1A and the marker "LAYOUT 000" near it. Returns 1020
// or 1024, two variants of one layout, or 0.
FIID FIProbeLayoutTrailer(FIReader& reader);

// Its gate: whether the file's size, if the head tells it, is one that the routine looks into.
bool FIMayBeLayoutTrailer(FIHead& head);

// Routine 1019: the escape sequence ESC "[", any number of zeros, "1$K" at offset 0. Returns 1019 or 0.
FIID FIProbeEscapeHeader(FIReader& reader);

// Routines 1021 and 1077, told by number: the codes 7C "N", 40, 7C "O" in that order within the 100 bytes from offset
// 120 (1021) or 118 (1077), all of which must exist. Returns the number or 0.
FIID FIProbePipeCodes(FIReader& reader, FIID number);

// Routine 1010: a range of words within the first 2,048 bytes, and a check value that makes their sum 0. Returns 1010
// or 0. The four bytes of the signature in front of the header are not looked at.
FIID FIProbeWordChecksum(FIReader& reader);
