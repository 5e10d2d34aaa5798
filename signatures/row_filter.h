// row_filter.h - which rows of the table can pass at all, told by a few bytes of the file's head.
//
// For each of the first four offsets and each value of the byte there (or the end of the file) a bit set tells the rows
// that allow it; the AND of four sets leaves of 404 rows some dozens. Of those, most have one more byte further on that is
// looked at when their turn comes. What is left runs as ever: a row that is left out is one that would have failed.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "signatures/table.h"

// A bit for each row: row n is bit (n - 1) % 64 of word (n - 1) / 64.
inline constexpr std::size_t rowSetWords = (signatureRowCount + 63) / 64;
using FIRowSet = std::array<std::uint64_t, rowSetWords>;

// The file's first bytes: at least as many as the rows ask for, or all that it has.
struct FIFilterBytes {
    const std::uint8_t* bytes;
    std::uint32_t size;
};

// A file that is longer than its head has to show this many bytes.
inline constexpr std::uint32_t leastFilterBytes = 2048;

// Rows that the first four bytes let pass; those of class identifiers only if the file has one.
FIRowSet FISelectRows(const FIFilterBytes& head, bool hasClassId);

// Whether a row's one more byte lets it pass.
bool FIFarByteFits(std::uint16_t row, const FIFilterBytes& head);
