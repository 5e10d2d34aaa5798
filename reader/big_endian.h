// big_endian.h - numbers out of bytes that lie in memory, the highest byte first.
#pragma once

#include <cstdint>

constexpr std::uint16_t FILoadWordBE(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

constexpr std::uint32_t FILoadDWordBE(const std::uint8_t* bytes) {
    return static_cast<std::uint32_t>(FILoadWordBE(bytes)) << 16 | FILoadWordBE(bytes + 2);
}
