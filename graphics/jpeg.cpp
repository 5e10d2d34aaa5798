// jpeg.cpp - JPEG (ITU-T T.81, annex B): segments of FF, a marker byte and a big-endian 16-bit length that counts
// itself. The walk goes from length to length up to the first scan or progressive frame.
//
//   Offset  Size  Field                           Accepted
//        3     1  first marker behind the SOI     C4, C8, CC, DB to FE
//        4     2  length of its segment           any
#include "graphics/jpeg.h"

#include <cstdint>

#include "reader/reader.h"
#include "reader/unchecked_numbers.h"

namespace {

constexpr FIID jpegFormat = 1535;
constexpr FIID progressiveJpegFormat = 1599;

constexpr std::uint16_t markerPrefix = 0xFF;
constexpr std::uint16_t markerProgressiveHuffman = 0xC2;
constexpr std::uint16_t markerHuffmanTables = 0xC4;
constexpr std::uint16_t markerExtensions = 0xC8;
constexpr std::uint16_t markerProgressiveArithmetic = 0xCA;
constexpr std::uint16_t markerArithmeticConditioning = 0xCC;
constexpr std::uint16_t markerStartOfScan = 0xDA;
constexpr std::uint16_t markerQuantization = 0xDB;  // the first of a stretch up to
constexpr std::uint16_t markerComment = 0xFE;
constexpr std::uint32_t segmentLengthSize = 2;

// Quirk: a frame or a start of scan directly behind the start of the image is refused, though a reader could take it.
bool FIIsFirstJpegMarker(std::uint16_t marker) {
    return (marker >= markerQuantization && marker <= markerComment) || marker == markerHuffmanTables ||
           marker == markerExtensions || marker == markerArithmeticConditioning;
}

}  // namespace

FIID FIProbeJpeg(FIReader& reader) {
    if (!FIIsFirstJpegMarker(FIReaderGetByte(reader))) return 0;
    std::uint16_t marker = 0;
    while (marker != endOfFile) {
        const std::uint32_t start = FIReaderTell(reader);
        const std::uint32_t length = FISumWordBE(reader);
        const std::uint32_t target = FIReaderTell(reader) + length - segmentLengthSize;
        if (target < start) return jpegFormat;  // behind 4 GiB, where nothing is told: the chain must not go round
        if (FIReaderSeek(reader, target) != 0) return jpegSeekFailed;
        if (FIReaderGetByte(reader) != markerPrefix) return jpegFormat;  // a broken chain is still a JPEG file
        marker = FIReaderGetByte(reader);
        if (marker == markerProgressiveHuffman || marker == markerProgressiveArithmetic) return progressiveJpegFormat;
        if (marker == markerStartOfScan) return jpegFormat;
    }
    return jpegFormat;
}
