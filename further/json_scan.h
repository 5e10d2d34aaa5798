// json_scan.h - reading JSON strictly (RFC 8259), without recursion and without memory.
#pragma once

#include <cstdint>
#include <span>

#include "reader/white_space.h"

enum class FIJsonEnd : std::uint8_t {
    Complete,
    Wrong,
    Cut,  // right up to the end of the bytes, or nearly: what stands there may go on
};

// What the members of the outermost object tell. Of several members with one name the last one counts.
struct FIJsonFacts {
    bool isObject;
    bool hasGeometryType;  // "type" is one of the strings that GeoJSON knows
    bool hasGeometry;      // "features", "geometry", "coordinates" or "geometries"
    bool hasNotebookForm;  // "nbformat"
    bool hasCells;         // "cells" or "worksheets"
};

// Reads one object or array with white space at both ends, and nothing else. NaN, Infinity and -Infinity are values too; at
// most 1,000 objects and arrays are open at a time. UTF-8 is looked at only in what is complete.
FIJsonEnd FIScanJson(std::span<const std::uint8_t> bytes, FIJsonFacts& facts);

// White space of JSON: blank, tab and the two line ends.
inline const std::uint8_t* FIPassJsonSpace(const std::uint8_t* bytes, const std::uint8_t* end) {
    while (bytes != end && *bytes <= ' ' && FIIsWhiteSpace(*bytes)) ++bytes;  // most bytes are above all of them
    return bytes;
}
