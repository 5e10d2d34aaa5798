// driver.h - one identification from end to end, for callers inside the project that want to know what decided.
#pragma once

#include <cstdint>

#include "fiid.h"

// The result of an identification and the row of the signature table that gave it, 0 when no row did: then the
// characters of the text decided, or the format is not known.
struct FIVerdict {
    FIID fiid;
    std::uint16_t row;
};

// How the table is walked. With the head of the file, if the handle has one, what it rules out is left out; the plain walk
// runs every row in full, as over handles without a head. Both give the same verdict: the plain walk is what the other one
// is tested against.
enum class FIWalk : std::uint8_t { byHead, plain };

// FIIdHandle with the deciding row.
std::int16_t FIIdHandleWithRow(HIOFILE handle, std::uint32_t flags, FIVerdict& verdict, FIWalk walk = FIWalk::byHead);
