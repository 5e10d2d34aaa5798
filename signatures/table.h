// table.h - the signature table: its bytecode, and its rows for those who speak about them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "signatures/notation.h"

// Entries of the table: 404 rows and the closing entry, which holds the table end alone.
inline constexpr std::size_t signatureRowCount = 404;
inline constexpr std::size_t signatureEntryCount = signatureRowCount + 1;

// Zero bytes behind the table end. The interpreter runs over them when the walk tries the closing entry: they compare
// as literals at the reader's position, so that the entry fails at the file's first byte there that is not 0.
inline constexpr std::size_t zeroBytesBehindTable = 9;

// The first byte of the first row. The last row is followed by FF E1 and the zero bytes.
const std::uint8_t* FISignatureTable();

// Size of the table in bytes, with FF E1 and without the zero bytes.
std::size_t FISignatureTableSize();

// The first byte of an entry by its number, 1 to signatureEntryCount: a row, or the closing entry.
const std::uint8_t* FISignatureEntry(std::uint16_t number);

// A row by its number, 1 to signatureRowCount; null for any other number.
const FISignatureRow* FIFindSignatureRow(std::uint16_t number);
