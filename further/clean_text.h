// clean_text.h - whether a file is a text at all, and which of the encodings of Unicode it is in.
#pragma once

#include <cstdint>

#include "fiid.h"
#include "further/look.h"

// Whether the head is clean: no byte 00, and of 1,000 bytes at most 3 that are no text bytes. Told once for a look. A file
// of up to 8,192 bytes costs no read, another one the rest of its head, unless its start is not clean already.
bool FIIsCleanText(FILook& look);

// How many bytes 1A, the end mark of DOS texts, end the file behind a line end. Of a file that is longer than its head none
// are known.
std::uint32_t FICountEndMarks(FILook& look);

// 20337: UTF-16 with a byte order mark, mostly in alphabets and Chinese characters. First bytes: FF FE or FE FF.
FIID FITellUtf16Text(FILook& look);

// 20338: clean, with bytes from 80 up, and UTF-8.
FIID FITellUtf8Text(FILook& look);

// 20339: not clean.
FIID FITellBinary(FILook& look);
