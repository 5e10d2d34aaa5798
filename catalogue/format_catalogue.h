// format_catalogue.h - the catalogue of formats: what each format identifier is called, and how the world knows it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "catalogue/family.h"

// Most bytes of a name, without its NUL: a buffer of one byte more holds every name whole.
inline constexpr std::size_t longestFormatName = 100;

// One format. All strings are NUL-terminated, live as long as the program, and are never null. Names are unique, but
// for two versions of QuarkXPress that have an identifier for each byte order: 1620 and 1622, 1621 and 1623.
struct FIFormatRecord {
    std::uint16_t fiid;
    FIFamily family;
    const char* name;        // display name: UTF-8, here all of it ASCII; 1 to longestFormatName bytes
    const char* mime;        // media type, registered or established; "" when none is right for all of these files
    const char* puids;       // PRONOM identifiers, one space between two ("fmt/3 fmt/4"); "" when none is right
    const char* extensions;  // usual extensions, lower case, no dot, one space between two; "" when there is none
};

// All formats that have an identifier, 1999 ("not known") among them, in the order of their identifiers.
std::span<const FIFormatRecord> FIFormatRecords();

// The record of an identifier; null when no format has it. Takes any number, 0 included.
const FIFormatRecord* FIFindFormatRecord(std::uint16_t fiid);
