// byte_masks.h - the classes of 64 bytes at a time, a bit for each byte: what a text is made of, told without a step for
// each byte.
//
// The one place of the core with vector instructions (SSE2, which every x86-64 has). FIMakeByteMasksPortable is the same
// without them: other machines run it, and the tests set one against the other.
#pragma once

#include <cstdint>

inline constexpr std::uint32_t byteMaskSpan = 64;

// Bit i of a mask is set when byte i is of its class.
struct FIByteMasks {
    std::uint64_t low;   // 00 to 1F
    std::uint64_t soft;  // 08 to 0D: BS, HT, LF, VT, FF and CR, most of which texts hold
    std::uint64_t lf;    // 0A
    std::uint64_t cr;    // 0D
    std::uint64_t high;  // 80 to FF
};

// Of exactly 64 bytes.
FIByteMasks FIMakeByteMasks(const std::uint8_t* bytes);
FIByteMasks FIMakeByteMasksPortable(const std::uint8_t* bytes);
