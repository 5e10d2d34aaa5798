// function_codes.h - word-processor text told by its function codes alone: the format of WordPerfect 4 and the dialect
// of WordPerfect for Macintosh.
#pragma once

#include <cstdint>

#include "fiid.h"

struct FIHead;

// Routine 1023: parses the file from offset 0 as text and function codes, up to a budget of 3,072, and scores every
// well-formed group. Returns 1023 or 1035 (the Macintosh dialect), or 0: a malformed group, too few groups, signs of
// both dialects, or a failing seek to 0. The reader stays wherever the walk stopped.
FIID FIProbeFunctionCodes(FIReader& reader);

// Its gate: whether a function code can stand where the budget reaches.
bool FIMayHaveFunctionCodes(FIHead& head);

// Tests for a block with its length, 1 to 3,071 bytes without the two lengths, in front of it and behind it. Returns
// true with the reader behind the second length, or false with the reader back where it stood.
bool FICheckLengthPair(FIReader& reader);

// Four bytes, the most significant first, as a signed number; below 0 when the file ends in front of the fourth.
std::int32_t FIReadLength32(FIReader& reader);
