// raw_fax.h - headerless Group 3 one-dimensional fax data (1505), told by decoding rows.
#pragma once

#include <cstdint>

#include "fiid.h"
#include "graphics/fax_codes.h"

struct FIHead;

// Bytes at the start of a file that are looked at.
inline constexpr std::uint32_t faxScanSize = 2048;

// Pixels in a row: those of the pages A4, B4 and A3 at 8 pixels a millimetre, and at twice that.
inline constexpr std::uint32_t faxStandardWidths[] = {1728, 2048, 2432, 3456, 4096, 4864};

// Returns 1505 or 0. Reads up to 2,048 bytes from offset 0 of the reader's handle, past the reader: the handle is left
// behind them, and the reader keeps its own position.
FIID FIProbeRawFax(FIReader& reader);

// Its gate: whether a row with a standard width may stand in the head.
bool FIMayBeRawFax(FIHead& head);

// Returns 1 when two rows of fax data, stored least significant bit first, agree in width, otherwise 0. Turns the bits
// of the count bytes round in place. What lies behind them counts as zeros and is not read.
std::uint16_t FIScanFaxBuffer(std::uint8_t* buffer, std::uint16_t count);

// Decodes one row, which starts with a white run, from the bit cursor: bit bitPosition of the byte at bitCursor, 0
// being the most significant one. Stops in front of the first 13 bits that start with no code, or behind the code whose
// fetch used up the last byte. Returns the row's width in pixels when it is one of the six standard widths, otherwise
// 0. Moves the cursor to where the next search for an end-of-line mark has to start, at most 3 bytes behind the data.
//
// rowBytesLeft counts the bytes from bitCursor to the end of the data, the one at bitCursor included; what lies behind
// them counts as zeros and is not read.
std::uint16_t FIDecodeFaxRow(const std::uint8_t*& bitCursor, const FIFaxLookup& whiteLookup,
                             const FIFaxLookup& blackLookup, std::uint8_t& bitPosition, std::int32_t rowBytesLeft);
