// icons.cpp - Windows icons and cursors, all fields little-endian. The number of images is not looked at.
//
//   Offset  Size  Field                           Accepted
//        0     2  reserved                        0
//        2     2  type                            1 icon, 2 cursor
//       18     4  offset of the first image       its first four bytes are 40, the size of a bitmap's header
#include "graphics/icons.h"

#include <cstdint>

#include "reader/reader.h"
#include "reader/unchecked_numbers.h"

namespace {

constexpr FIID iconFormat = 1515;
constexpr FIID cursorFormat = 1516;

constexpr std::uint32_t iconFirstOffset = 18;
constexpr std::uint32_t bitmapHeaderSize = 40;
constexpr std::uint16_t iconType = 1;
constexpr std::uint16_t cursorType = 2;

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
