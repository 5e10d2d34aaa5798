// routines.h - the special routines that signature rows call by number, where a format needs more than a pattern.
#pragma once

#include <cstdint>
#include <iterator>

#include "fiid.h"

// The numbers of all routines, in ascending order.
inline constexpr std::uint16_t routineNumbers[] = {
    1003, 1007, 1010, 1018, 1019, 1020, 1021, 1023, 1025, 1034, 1041, 1057, 1077, 1082, 1108, 1132,
    1141, 1146, 1168, 1187, 1190, 1201, 1206, 1210, 1212, 1213, 1416, 1445, 1446, 1447, 1450, 1453,
    1504, 1505, 1515, 1518, 1528, 1535, 1544, 1557, 1569, 1570, 1571, 1572, 1575, 1579, 1580, 1588,
    1597, 1598, 1601, 1631, 1705, 1708, 1709, 1710, 1802, 1803, 1807, 1814, 1999, 4050,
};
static_assert(std::size(routineNumbers) == 62);

// A special routine takes the reader, two of them the extension too, and returns an identifier, or 0 for no verdict. It
// reads, seeks and opens streams as it likes, and leaves the reader where it stopped.
struct FIRoutine {
    std::uint16_t number;
    FIID (*probe)(FIReader& reader);  // null when the other one is set
    FIID (*probeWithExtension)(FIReader& reader, const char* extension);
};

// The routine of a number, or null.
const FIRoutine* FIFindRoutine(std::uint16_t number);

// Runs a routine. extension is upper case, at most 4 characters and a NUL.
FIID FIRunRoutine(const FIRoutine& routine, FIReader& reader, const char* extension);
