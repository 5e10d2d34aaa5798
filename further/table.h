// table.h - the second table: its rows, their bytecode and their filter.
#pragma once

#include <cstddef>
#include <cstdint>

#include "further/row.h"
#include "signatures/row_filter.h"

inline constexpr std::size_t furtherRowCount = 441;

using FIFurtherRowSet = FIRowBits<furtherRowCount>;

// Rows over an answer of the signature table; none for most answers.
const FIFurtherRowSet& FIFurtherRowsOver(FIID fiid);

// Of these, the rows that the first four bytes let pass; those of class identifiers only if the file has one.
FIFurtherRowSet FISelectFurtherRows(const FIFurtherRowSet& rows, const FIFilterBytes& head, bool hasClassId);

// The one more byte that each row looks at, row 1 first: FIFarByteFits tells whether it lets the row pass.
using FIFurtherFarNeeds = std::array<FIFarNeed, furtherRowCount>;
const FIFurtherFarNeeds& FIFurtherFarNeedsOfRows();

// The bytecode of a row by its number, 1 to furtherRowCount.
const std::uint8_t* FIFurtherEntry(std::uint16_t number);

// A row by its number; null for any other number.
const FIFurtherRow* FIFindFurtherRow(std::uint16_t number);
