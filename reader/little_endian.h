// little_endian.h - numbers out of bytes that lie in memory, the lowest byte first.
#pragma once

#include <cstdint>

constexpr std::uint16_t FILoadWordLE(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

constexpr std::uint32_t FILoadDWordLE(const std::uint8_t* bytes) {
    return FILoadWordLE(bytes) | static_cast<std::uint32_t>(FILoadWordLE(bytes + 2)) << 16;
}

constexpr std::uint64_t FILoadQWordLE(const std::uint8_t* bytes) {
    return FILoadDWordLE(bytes) | static_cast<std::uint64_t>(FILoadDWordLE(bytes + 4)) << 32;
}
