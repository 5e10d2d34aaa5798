// text_byte.h - which bytes texts are made of.
#pragma once

#include <cstdint>

// BEL to CR, ESC, the visible characters and the blank of ASCII, and everything above it.
constexpr bool FIIsTextByte(std::uint8_t byte) {
    return (byte >= 0x07 && byte <= 0x0D) || byte == 0x1B || (byte >= 0x20 && byte != 0x7F);
}
