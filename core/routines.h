// routines.h - the special routines that signature rows call by number, where a format needs more than a pattern.
#pragma once

#include <cstdint>
#include <span>

#include "fiid.h"

struct FIHead;

// A special routine takes the reader, two of them the extension too, and returns an identifier, or 0 for no verdict. It
// reads, seeks and opens streams as it likes, and leaves the reader where it stopped.
//
// A routine that costs much has a gate, which stands beside it and looks at the file's head alone. Where the gate is
// closed the routine would return 0; where it is open nothing is said.
struct FIRoutine {
    std::uint16_t number;
    FIID (*probe)(FIReader& reader);  // null when the other one is set
    FIID (*probeWithExtension)(FIReader& reader, const char* extension) = nullptr;
    bool (*gate)(FIHead& head) = nullptr;
};

// All routines, in ascending order of their numbers.
std::span<const FIRoutine> FIAllRoutines();

// The routine of a number, or null.
const FIRoutine* FIFindRoutine(std::uint16_t number);

// Runs a routine. extension is upper case, at most 4 characters and a NUL.
FIID FIRunRoutine(const FIRoutine& routine, FIReader& reader, const char* extension);
