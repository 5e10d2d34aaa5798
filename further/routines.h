// routines.h - the routines that rows of the second table call by number, where a pattern can't say what is asked.
#pragma once

#include <cstdint>
#include <span>

#include "core/basis.h"
#include "fiid.h"
#include "further/look.h"

// A routine looks at what it likes and returns an identifier, or 0 for "go on". Its number is the identifier of the first
// line that calls it.
struct FIFurtherRoutine {
    std::uint16_t number;
    const char* name;
    FIBasis basis;
    FIID (*tell)(FILook& look);
    const char* looksAt;  // in plain words, as the object of "looked at"
};

// All routines, in ascending order of their numbers.
std::span<const FIFurtherRoutine> FIFurtherRoutines();

// The routine of a number, or null.
const FIFurtherRoutine* FIFindFurtherRoutine(std::uint16_t number);
