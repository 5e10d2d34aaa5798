// icons.cpp - Windows icons and cursors, all fields little-endian. The number of images is not looked at.
//
//   Offset  Size  Field                           Accepted
//        0     2  reserved                        0
//        2     2  type                            1 icon, 2 cursor
//       18     4  offset of the first image       its first four bytes are 40, the size of a bitmap's header
#include "graphics/icons.h"

#include <cstdint>

#include "reader/reader.h"

namespace {

constexpr FIID iconFormat = 1515;
constexpr FIID cursorFormat = 1516;

constexpr std::uint32_t iconFirstOffset = 18;
constexpr std::uint32_t bitmapHeaderSize = 40;
constexpr std::uint16_t iconType = 1;
constexpr std::uint16_t cursorType = 2;

// Quirk: the end of the file adds -1 in a byte's place, and the sum wraps.
std::uint32_t FISumDWordLE(FIReader& reader) {
    std::uint32_t sum = 0;
    for (std::uint32_t shift = 0; shift < 32; shift += 8) {
        const std::uint32_t byte = FIReaderGetByte(reader);
        sum += (byte == endOfFile ? ~std::uint32_t{0} : byte) << shift;
    }
    return sum;
}

}  // namespace

FIID FIProbeIconFile(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    std::uint16_t bytes[4];
    for (std::uint16_t& byte : bytes) byte = FIReaderGetByte(reader);
    if (bytes[0] != 0 || bytes[1] != 0 || bytes[3] != 0) return 0;
    if (bytes[2] != iconType && bytes[2] != cursorType) return 0;
    if (FIReaderSeek(reader, iconFirstOffset) != 0) return 0;
    if (FIReaderSeek(reader, FISumDWordLE(reader)) != 0) return 0;
    if (FISumDWordLE(reader) != bitmapHeaderSize) return 0;
    return bytes[2] == iconType ? iconFormat : cursorFormat;
}
