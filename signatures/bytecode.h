// bytecode.h - the signature bytecode: what the notation is assembled to and the interpreter runs.
//
// A row is a run of items. A byte other than FF is a literal: it is compared with the next byte of the file. FF
// introduces an operation, FF FF a literal FF. Multi-byte operands are little-endian. Every row of the table ends in
// FIOpcode::Id or in a FIOpcode::Call of a known routine, followed by FIOpcode::RowEnd, which is a no-op.
#pragma once

#include <cstddef>
#include <cstdint>

#include "fiid.h"

// The byte behind FF. Any other value is a no-op of two bytes.
enum class FIOpcode : std::uint8_t {
    Seek = 0x01,      // u32 offset: seeks there; a failing seek fails the row
    Not = 0x03,       // byte: takes a byte, which must differ
    Range = 0x04,     // count, lo, hi: takes count bytes, each from lo to hi
    Outside = 0x05,   // count, u16 lo, u16 hi: takes count little-endian words, each outside lo to hi and not 0xFFFF
    Skip = 0x06,      // count: takes count bytes and drops them
    Id = 0x08,        // u16 identifier: ends the row with it
    Rewind = 0x0A,    // seeks to offset 0; a failing seek fails the row
    Call = 0x0C,      // u16 routine: ends the row with its result; an unknown number is passed over by one byte
    Either = 0x0D,    // a, b: takes a byte, which must be a or b
    Ext = 0x0E,       // count, text: the extension must start with the text
    SeekEnd = 0x0F,   // i32 offset: seeks to that distance from the end of the file
    ClassId = 0x10,   // 16 bytes: the storage's class identifier must equal them
    XmlNs = 0x11,     // NUL-terminated text: the XML namespace must equal it
    RowEnd = 0xE0,    // no-op: closes a row
    TableEnd = 0xE1,  // no-op: closes the table
    Literal = 0xFF,   // takes a byte, which must be FF
};

inline constexpr std::uint8_t opcodePrefix = 0xFF;
inline constexpr std::size_t classIdSize = IOClassIdBytes;

// XmlNs compares at most so many units: an operand, its NUL not counted, is shorter.
inline constexpr std::size_t namespaceOperandLimit = 255;
