// unchecked_numbers.h - numbers read without a look at the end of the file, which enters them as the reader delivers it.
//
// Quirk: a number that the file's end cuts off has a value all the same, and routines go on with it. The two ways of
// putting a number together differ there: in a sum the end counts as -1 in a byte's place, and the sum wraps, where
// joined bytes keep their bits and the end's bits cover those of the next byte.
#pragma once

#include <cstdint>

#include "reader/reader.h"

// Two bytes, most significant first, as a sum: 12 and the end of the file are 11FF, the end alone is FEFF.
inline std::uint16_t FISumWordBE(FIReader& reader) {
    const std::uint32_t high = FIReaderGetByte(reader);
    const std::uint32_t low = FIReaderGetByte(reader);
    return static_cast<std::uint16_t>((high << 8) + low);
}

// Four bytes, least significant first, as a sum: 12 34 56 and the end of the file are FF563412, the end alone is
// FEFEFEFF.
inline std::uint32_t FISumDWordLE(FIReader& reader) {
    std::uint32_t sum = 0;
    for (std::uint32_t shift = 0; shift < 32; shift += 8) {
        const auto byte = static_cast<std::int16_t>(FIReaderGetByte(reader));  // the end of the file becomes -1
        sum += static_cast<std::uint32_t>(std::int32_t{byte}) << shift;
    }
    return sum;
}

// Two bytes, least significant first, joined: 12 and the end of the file are FF12, the end alone is FFFF.
inline std::uint16_t FIJoinWordLE(FIReader& reader) {
    const std::uint16_t low = FIReaderGetByte(reader);
    const std::uint16_t high = FIReaderGetByte(reader);
    return static_cast<std::uint16_t>(low | high << 8);
}
