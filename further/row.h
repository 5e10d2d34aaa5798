// row.h - a row of the second table: as one of the signature table, over some of that table's answers.
#pragma once

#include <cstdint>
#include <string_view>

#include "signatures/notation.h"

// The answers of the signature table that a row may stand behind.
enum class FIOver : std::uint8_t {
    TextOrUnknown,  // 1999 not known, 4005 and 4025 text of an 8-bit alphabet, 4022 text of 7-bit characters
    Text,           // 4005, 4022, 4025
    Packages,       // ZIP archives and the packages whose kinds differ: 1309, 1312, 1454, 1455, 1632, 1633, 1635, 1802
};

struct FIFurtherRow {
    FIOver over;
    std::string_view signature;  // in the notation of signatures/notation.h; a call is of further/routines.h
    FIRowResult result;
};
