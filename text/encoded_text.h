// encoded_text.h - binaries carried in text: uuencode, xxencode, yEnc and BinHex 4.0.
#pragma once

#include <cstdint>

#include "fiid.h"

struct FIHead;

// Routine 4050, also the one test of FIIdSpecial. Examines up to 300 lines. Returns
//   4050  uuencode with a "begin" header      4054  yEnc, one part
//   4051  uuencoded lines without a header    4055  yEnc, part 2 or later of several
//   4052  xxencode with a "begin" header      4056  BinHex 4.0 with its notice line
//   4053  xxencoded lines without a header    4057  BinHex 4.0 lines without the notice line
// or 0 for none of them, when a seek fails, and when memory is exhausted. The reader is rewound first and left wherever
// the probe stopped.
FIID FIProbeEncodedText(FIReader& reader);

// Its gate: whether the lines that the head holds begin anything before the scan ends.
bool FIMayBeEncodedText(FIHead& head);

// Whether the first count bytes are all from 1 to 127. True for a count of 0. Stops at the first byte that is not, so
// that a count beyond the end of a NUL-terminated text is harmless.
bool FIIsAsciiRun(const char* text, std::uint16_t count);

// The line tests take a line without its line end, measured to its first NUL.

// A line of BinHex 4.0: 46 to 65 characters, or a shorter one of at least 3 that ends in ":". The last is not looked at
// otherwise.
bool FIIsBinHexLine(const char* line);

// A uuencoded line: a length character, and as many characters as the length asks for, the length being a multiple
// of 3. One more character may follow: a sequence letter if the line begins with "M" and expectedLetter is 0 or that
// letter, otherwise a checksum, which must be right. With a sequence letter every blank in the line is replaced by "`",
// also when the answer is no.
bool FIIsUuLine(char* line, std::uint16_t expectedLetter);

// An xxencoded line: likewise, with its own alphabet, and with neither a sequence letter nor a checksum.
bool FIIsXxLine(const char* line);
