// text_bytes.h - going through the bytes of texts many at a time: those that texts do not hold, UTF-8, and the strings of
// JSON.
//
// As in byte_masks.h, each function has a form with vector instructions (SSE2) and one without, which other machines run
// and which the tests set against it.
#pragma once

#include <cstddef>
#include <cstdint>

// BEL to CR, ESC, the visible characters and the blank of ASCII, and everything above it.
constexpr bool FIIsTextByte(std::uint8_t byte) {
    return (byte >= 0x07 && byte <= 0x0D) || byte == 0x1B || (byte >= 0x20 && byte != 0x7F);
}

// Of bytes that were passed. All but text bytes and three others are stray ones.
struct FITextByteCounts {
    std::uint32_t stray;
    std::uint32_t shifts;    // 0E and 0F, which ISO 2022 texts switch their character sets with
    std::uint32_t endMarks;  // 1A, the end of DOS texts
    bool hasHigh;            // 80 to FF
};

// Adds up what the bytes hold. Returns false as soon as they can't be a text's: where there is a byte 00, or more than
// mostStray stray bytes together with those counted before. The counts are then of no use.
bool FICountTextBytes(const std::uint8_t* bytes, std::size_t size, std::uint32_t mostStray, FITextByteCounts& counts);
bool FICountTextBytesPortable(const std::uint8_t* bytes, std::size_t size, std::uint32_t mostStray,
                              FITextByteCounts& counts);

// Whether the bytes are UTF-8 as RFC 3629 has it: nothing longer than need be, no surrogates, nothing above 10FFFF. With
// mayBeCut the last character may be one that lacks bytes.
bool FIIsUtf8(const std::uint8_t* bytes, std::size_t size, bool mayBeCut);
bool FIIsUtf8Portable(const std::uint8_t* bytes, std::size_t size, bool mayBeCut);

// The first byte in front of end that does not stand for itself in a string of JSON: a quotation mark, a backslash or a
// control character (00 to 1F). end if there is none.
const std::uint8_t* FIPassStringBytes(const std::uint8_t* bytes, const std::uint8_t* end);
const std::uint8_t* FIPassStringBytesPortable(const std::uint8_t* bytes, const std::uint8_t* end);
