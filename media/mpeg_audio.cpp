// mpeg_audio.cpp - MPEG audio has no magic: a frame header leads to the next one, and two that agree are believed.
//
//   Byte  Bits  Field (ISO/IEC 11172-3, 2.4.1.3; ISO/IEC 13818-3)
//      0   all  sync, FF
//      1  7..4  sync, F; so bit 4 is 1 and the streams of the unofficial version 2.5 do not pass
//      1     3  version: 1 for MPEG-1, 0 for MPEG-2
//      1  2..1  layer: 1 for III, 2 for II, 3 for I; 0 is refused
//      2  7..4  bit rate: 0 is free format, 1 to 14 a row of the table, 15 is refused
//      2  3..2  sampling rate: 0 to 2 a row of the table, 3 is refused
//      2     1  padding: one slot more
//      3        not used
#include "media/mpeg_audio.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "reader/file_end.h"
#include "reader/low_byte.h"
#include "reader/reader.h"
#include "reader/rewind.h"

namespace {

constexpr FIID id3TrailerLayer3 = 1706;
constexpr FIID id3HeaderLayer3 = 1707;
constexpr FIID id3TrailerOther = 1708;
constexpr FIID id3HeaderOther = 1709;
constexpr FIID mpeg1Layer3 = 1710;

constexpr std::uint32_t layer3 = 1;
constexpr std::uint32_t layer1 = 3;

// By layer field, MPEG-2 and MPEG-1; the layer field 0 is refused.
constexpr FIID formats[4][2] = {{0, 0}, {1715, mpeg1Layer3}, {1714, 1712}, {1713, 1711}};

// Kilobits per second, by bit rate index. Index 0 is free format, 15 is forbidden.
struct FIBitRates {
    std::uint16_t mpeg1Layer1;
    std::uint16_t mpeg1Layer2;
    std::uint16_t mpeg1Layer3;
    std::uint16_t mpeg2Layer1;
    std::uint16_t mpeg2Layers2And3;
};

constexpr FIBitRates bitRates[] = {
    // clang-format off
    //  MPEG-1          MPEG-2
    //   I   II  III    I  II+III
    {    0,   0,   0,   0,   0},
    {   32,  32,  32,  32,   8},
    {   64,  48,  40,  48,  16},
    {   96,  56,  48,  56,  24},
    {  128,  64,  56,  64,  32},
    {  160,  80,  64,  80,  40},
    {  192,  96,  80,  96,  48},
    {  224, 112,  96, 112,  56},
    {  256, 128, 112, 128,  64},
    {  288, 160, 128, 144,  80},
    {  320, 192, 160, 160,  96},
    {  352, 224, 192, 176, 112},
    {  384, 256, 224, 192, 128},
    {  416, 320, 256, 224, 144},
    {  448, 384, 320, 256, 160},
    // clang-format on
};
constexpr std::uint32_t forbiddenBitRate = 15;
constexpr std::uint32_t bitsPerKilobit = 1000;

// Hertz, by sampling index, MPEG-2 and MPEG-1.
//
// Quirk: 8,000 stands where the standard has 16,000, and the frame length is computed with it.
constexpr std::uint32_t samplingRates[3][2] = {{22050, 44100}, {24000, 48000}, {8000, 32000}};
constexpr std::uint32_t forbiddenSampling = 3;

constexpr std::size_t frameHeaderSize = 4;
constexpr std::size_t secondHeaderSize = 3;
constexpr std::uint8_t syncByte = 0xFF;
constexpr std::uint8_t syncNibble = 0xF0;

constexpr std::uint32_t id3HeaderSize = 10;
constexpr std::uint32_t id3SizeOffset = 6;
constexpr std::int32_t id3TrailerFromEnd = -128;
constexpr std::string_view id3TrailerMark = "TAG";

struct FIFrameHeader {
    std::uint32_t version;   // 1 for MPEG-1, 0 for MPEG-2
    std::uint32_t layer;     // as in the file
    std::uint32_t bitRate;   // index
    std::uint32_t sampling;  // index
    std::uint32_t padding;
};

bool FIIsSync(std::uint8_t first, std::uint8_t second) {
    return first == syncByte && (second & syncNibble) == syncNibble;
}

FIFrameHeader FISplitHeader(std::uint8_t second, std::uint8_t third) {
    return {second >> 3 & 1U, second >> 1 & 3U, third >> 4 & 15U, third >> 2 & 3U, third >> 1 & 1U};
}

std::uint32_t FIBitsPerSecond(const FIFrameHeader& header) {
    const FIBitRates& rates = bitRates[header.bitRate];
    if (header.version == 0)
        return bitsPerKilobit * (header.layer == layer1 ? rates.mpeg2Layer1 : rates.mpeg2Layers2And3);
    if (header.layer == layer1) return bitsPerKilobit * rates.mpeg1Layer1;
    return bitsPerKilobit * (header.layer == layer3 ? rates.mpeg1Layer3 : rates.mpeg1Layer2);
}

// The frame's length in bytes. Slots have four bytes in Layer I and one in the others.
//
// Quirk: the factor 144 holds for MPEG-2 Layer III too, where the standard has 72: the second header looked at is that
// of the third frame there.
std::uint32_t FIFrameLength(const FIFrameHeader& header) {
    const std::uint32_t bits = FIBitsPerSecond(header);
    const std::uint32_t hertz = samplingRates[header.sampling][header.version];
    if (header.layer == layer1) return (12 * bits / hertz + header.padding) * 4;
    return 144 * bits / hertz + header.padding;
}

// Whether a frame of the same version and layer starts at an offset. Bit rate and sampling rate may change.
bool FIFrameFollows(FIReader& reader, std::uint32_t offset, const FIFrameHeader& first) {
    if (FIReaderSeek(reader, offset) != 0) return false;
    std::uint16_t bytes[secondHeaderSize];
    for (std::uint16_t& byte : bytes) {
        byte = FIReaderGetByte(reader);
        if (byte == endOfFile) return false;
    }
    const auto second = static_cast<std::uint8_t>(bytes[1]);
    if (!FIIsSync(static_cast<std::uint8_t>(bytes[0]), second)) return false;
    const FIFrameHeader header = FISplitHeader(second, 0);
    return header.layer == first.layer && header.version == first.version;
}

bool FIEndsInId3Trailer(FIReader& reader) {
    std::uint32_t position = 0;
    if (!FITellFromEnd(reader.file, id3TrailerFromEnd, position) || FIReaderSeek(reader, position) != 0) return false;
    bool equal = true;
    for (const char character : id3TrailerMark) equal = (FIReaderGetByte(reader) == character) && equal;
    return equal;
}

// FF FB: MPEG-1 Layer III without CRC, and no other form.
bool FITakePlainLayer3(FIReader& reader) {
    constexpr std::uint8_t plainLayer3 = 0xFB;
    const std::uint8_t first = FITakeLowByte(reader);
    return FITakeLowByte(reader) == plainLayer3 && first == syncByte;
}

}  // namespace

FIID FIProbeMpegAudio(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    std::uint8_t bytes[frameHeaderSize];
    for (std::uint8_t& byte : bytes) byte = FITakeLowByte(reader);
    if (!FIIsSync(bytes[0], bytes[1])) return 0;
    const FIFrameHeader header = FISplitHeader(bytes[1], bytes[2]);
    const FIID format = formats[header.layer][header.version];
    if (format == 0 || header.bitRate == forbiddenBitRate || header.sampling == forbiddenSampling) return 0;
    const bool freeFormat = header.bitRate == 0;
    if (!freeFormat && !FIFrameFollows(reader, FIFrameLength(header), header)) return 0;
    return format == mpeg1Layer3 && FIEndsInId3Trailer(reader) ? id3TrailerLayer3 : format;
}

FIID FIProbeId3Header(FIReader& reader) {
    if (!FIReaderRewindTwice(reader)) return 0;
    std::uint32_t size = 0;
    for (std::uint32_t offset = 0; offset < id3HeaderSize; ++offset) {
        const std::uint8_t byte = FITakeLowByte(reader);
        if (offset >= id3SizeOffset) size = size << 7 | (byte & 0x7FU);
    }
    if (FIReaderSeek(reader, size + id3HeaderSize) != 0) return 0;
    return FITakePlainLayer3(reader) ? id3HeaderLayer3 : id3HeaderOther;
}

FIID FIProbeId3Trailer(FIReader& reader) {
    if (!FIReaderRewindTwice(reader)) return 0;
    return FITakePlainLayer3(reader) ? id3TrailerLayer3 : id3TrailerOther;
}
