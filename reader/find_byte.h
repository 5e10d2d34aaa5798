// find_byte.h - places in bytes that lie in memory.
#pragma once

#include <cstdint>
#include <cstring>

// The offset of the next byte of a value, from start on, or size when there is none in front of it.
inline std::uint32_t FIFindByte(const std::uint8_t* bytes, std::uint32_t start, std::uint32_t size,
                                std::uint8_t value) {
    if (start >= size) return size;
    const void* const found = std::memchr(bytes + start, value, size - start);
    return found != nullptr ? static_cast<std::uint32_t>(static_cast<const std::uint8_t*>(found) - bytes) : size;
}

// How many bytes of a value are followed or preceded by what fits says of their offsets.
template <typename Fits>
std::uint32_t FICountPlaces(const std::uint8_t* bytes, std::uint32_t size, std::uint8_t value, Fits fits) {
    std::uint32_t count = 0;
    for (std::uint32_t place = FIFindByte(bytes, 0, size, value); place < size;
         place = FIFindByte(bytes, place + 1, size, value)) {
        if (fits(place)) ++count;
    }
    return count;
}
