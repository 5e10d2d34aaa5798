// netpbm.cpp - the Netpbm family: 'P', a digit from 1 to 6, white space, comment lines, and a number.
#include "graphics/netpbm.h"

#include <cstdint>

#include "reader/low_byte.h"
#include "reader/reader.h"
#include "reader/white_space.h"

namespace {

constexpr std::uint32_t longestNetpbmComment = 249;  // behind the '#', with its line feed

// Takes bytes up to the line feed, false when they are too many.
bool FISkipNetpbmComment(FIReader& reader) {
    for (std::uint32_t count = 1; count <= longestNetpbmComment; ++count) {
        if (FITakeLowByte(reader) == '\n') return true;
    }
    return false;
}

FIID FIGetNetpbmFormat(std::uint16_t digit) {
    switch (digit) {
        case '1':
        case '4':
            return 1588;  // bitmap, as text and as bytes
        case '2':
        case '5':
            return 1589;  // graymap
        case '3':
        case '6':
            return 1590;  // pixmap
        default:
            return 0;
    }
}

}  // namespace

FIID FIProbeNetpbm(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    if (FIReaderGetByte(reader) != 'P') return 0;
    const FIID format = FIGetNetpbmFormat(FIReaderGetByte(reader));
    if (format == 0) return 0;

    std::uint8_t byte = FITakeLowByte(reader);
    if (!FIIsWhiteSpace(byte)) return 0;
    while (FIIsWhiteSpace(byte)) byte = FITakeLowByte(reader);
    while (byte == '#') {
        if (!FISkipNetpbmComment(reader)) return 0;
        byte = FITakeLowByte(reader);  // white space is no longer passed over here
    }
    return byte >= '0' && byte <= '9' ? format : FIID{0};
}
