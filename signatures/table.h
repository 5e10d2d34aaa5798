// table.h - the signature table: its bytecode, and its rows for those who speak about them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "signatures/notation.h"

// Entries of the table: 404 rows and the closing entry, which holds the table end alone.
inline constexpr std::size_t signatureRowCount = 404;
inline constexpr std::size_t signatureEntryCount = signatureRowCount + 1;

// Zero bytes behind the table end. The interpreter runs over them when the driver tries the closing entry: they compare
// as literals at the reader's position, so that the entry fails at the file's first byte there that is not 0.
inline constexpr std::size_t zeroBytesBehindTable = 9;

// The first byte of the first row. The last row is followed by FF E1 and the zero bytes.
const std::uint8_t* FISignatureTable();

// Size of the table in bytes, with FF E1 and without the zero bytes.
std::size_t FISignatureTableSize();

// A row by its number, 1 to signatureRowCount; null for any other number.
const FISignatureRow* FIFindSignatureRow(std::uint16_t number);

// Values of the three character class tables of text/encoded_text.h, which lie right behind the signature table, in
// this order. An entry is a character's value from 0 to 63, or 0xFF for a character that is no member.
//
// Quirk: a character is looked up by its signed value, so one of 128 or above reads in front of its table: for
// uuClass in the upper half of binHexClass, for xxClass in uuClass, for binHexClass in the last 128 bytes of the
// signature table and its zero bytes. The three look-ups keep that without leaving the block that holds them all.
std::uint8_t FIBinHexClass(char character);
std::uint8_t FIUuClass(char character);
std::uint8_t FIXxClass(char character);
