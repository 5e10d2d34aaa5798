// binary_headers.cpp - graphics formats that a few fields of a binary header tell, or a walk over a few records.
//
// Encapsulated PostScript with a DOS header. Reads 4 bytes at 0 and 4 at 20.
//
//   Offset  Size  Field                           Accepted
//        0     4  mark                            C5 D0 D3 C6
//       20     4  offset of the TIFF preview      not 0
//
// Windows icons and cursors, all fields little-endian. The number of images is not looked at.
//
//   Offset  Size  Field                           Accepted
//        0     2  reserved                        0
//        2     2  type                            1 icon, 2 cursor
//       18     4  offset of the first image       its first four bytes are 40, the size of a bitmap's header
//
// JPEG (ITU-T T.81, annex B): segments of FF, a marker byte and a big-endian 16-bit length that counts itself. The walk
// goes from length to length up to the first scan or progressive frame.
//
//   Offset  Size  Field                           Accepted
//        3     1  first marker behind the SOI     C4, C8, CC, DB to FE
//        4     2  length of its segment           any
//
// X Window Dump: the low bytes of big-endian 32-bit fields.
//
//   Offset  Size  Field                           Accepted
//        7     1  file version                    7
//       11     1  pixmap format                   0 to 2
//       15     1  pixmap depth                    8, 24
//       35     1  bitmap unit                     8, 16, 32
//       55     1  visual class                    0, 3, 4
//
// CorelDRAW: a RIFF form.
//
//   Offset  Size  Field                           Accepted
//        0     4  chunk                           "RIFF"
//        8     3  form type                       "CDR"
//       11     1  version                         see corelVersions
//
// Class records: three of them from offset 0 on, all fields little-endian. Each class must come once.
//
//   Offset  Size  Field                           Accepted
//        0     2  type                            high byte without its top bit: 8, 9, 10
//        2     2  length of what follows          any, in 16-bit units
#include "graphics/binary_headers.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "reader/reader.h"
#include "reader/rewind.h"
#include "reader/text_line.h"

namespace {

constexpr FIID epsPreviewFormat = 1504;
constexpr FIID iconFormat = 1515;
constexpr FIID cursorFormat = 1516;
constexpr FIID jpegFormat = 1535;
constexpr FIID xwdFormat = 1575;
constexpr FIID progressiveJpegFormat = 1599;
constexpr FIID classRecordsFormat = 1601;

// ---- EPS ------------------------------------------------------------------------------------------------------------

constexpr std::string_view epsMark = "\xC5\xD0\xD3\xC6";
constexpr std::uint16_t epsPreviewField = 20;

// ---- Icons ----------------------------------------------------------------------------------------------------------

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

// ---- JPEG -----------------------------------------------------------------------------------------------------------

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

// Quirk: the end of the file counts as -1 for each byte, and the sum wraps in 16 bits.
std::uint16_t FITakeSegmentLength(FIReader& reader) {
    const std::uint32_t high = FIReaderGetByte(reader);
    const std::uint32_t low = FIReaderGetByte(reader);
    return static_cast<std::uint16_t>((high << 8) + low);  // the end of the file is -1 in 16 bits
}

// ---- X Window Dump --------------------------------------------------------------------------------------------------

// Quirk: the comparison is signed, so that the end of the file, -1, passes.
bool FIIsXwdPixmapFormat(std::uint16_t byte) { return static_cast<std::int16_t>(byte) <= 2; }

struct FIXwdField {
    std::uint32_t offset;
    bool (*accepts)(std::uint16_t byte);
};

constexpr FIXwdField xwdFields[] = {
    // clang-format off
    { 7, [](std::uint16_t byte) { return byte == 7; }},
    {11, FIIsXwdPixmapFormat},
    {15, [](std::uint16_t byte) { return byte == 8 || byte == 24; }},
    {35, [](std::uint16_t byte) { return byte == 8 || byte == 16 || byte == 32; }},
    {55, [](std::uint16_t byte) { return byte == 0 || byte == 3 || byte == 4; }},
    // clang-format on
};

// ---- CorelDRAW ------------------------------------------------------------------------------------------------------

constexpr std::uint32_t riffFormType = 8;

struct FICorelVersion {
    std::uint16_t character;
    FIID format;
};

constexpr FICorelVersion corelVersions[] = {
    // clang-format off
    {' ', 1521},
    {'4', 1537},
    {'5', 1541},
    {'6', 1582},
    {'7', 1583},
    {'8', 1596},
    {'9', 1598},
    {'A', 1629},
    {'B', 1630},
    // clang-format on
};

// ---- Class records --------------------------------------------------------------------------------------------------

constexpr std::uint32_t classRecordCount = 3;
constexpr std::uint32_t firstClass = 8;
constexpr std::uint32_t lastClass = 10;
constexpr std::uint32_t allClasses = 7;  // a bit for each of the three
constexpr std::uint32_t classMask = 0x7F;
constexpr std::uint32_t classUnitSize = 2;

}  // namespace

FIID FIProbeEpsPreview(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0 || !FITakeText(reader, epsMark)) return 0;
    static_cast<void>(FIReaderSkip(epsPreviewField - static_cast<std::uint16_t>(epsMark.size()), reader));
    std::uint16_t bits = 0;
    for (std::uint32_t index = 0; index < 4; ++index) bits = static_cast<std::uint16_t>(bits | FIReaderGetByte(reader));
    // Quirk: low bytes alone are looked at, and that of the end of the file is FF: a file that ends here has a preview.
    return static_cast<std::uint8_t>(bits) != 0 ? epsPreviewFormat : FIID{0};
}

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

FIID FIProbeJpeg(FIReader& reader) {
    if (!FIIsFirstJpegMarker(FIReaderGetByte(reader))) return 0;
    std::uint16_t marker = 0;
    while (marker != endOfFile) {
        const std::uint32_t start = FIReaderTell(reader);
        const std::uint32_t length = FITakeSegmentLength(reader);
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

FIID FIProbeXwd(FIReader& reader) {
    for (const FIXwdField& field : xwdFields) {
        if (FIReaderSeek(reader, field.offset) != 0 || !field.accepts(FIReaderGetByte(reader))) return 0;
    }
    return xwdFormat;
}

FIID FIProbeCorelRiff(FIReader& reader) {
    if (!FIReaderRewindTwice(reader) || !FITakeText(reader, "RIFF")) return 0;
    if (FIReaderSeek(reader, riffFormType) != 0 || !FITakeText(reader, "CDR")) return 0;
    const auto* const version = std::ranges::find(corelVersions, FIReaderGetByte(reader), &FICorelVersion::character);
    return version != std::end(corelVersions) ? version->format : FIID{0};
}

FIID FIProbeClassRecords(FIReader& reader) {
    if (!FIReaderRewindTwice(reader)) return 0;
    std::uint32_t classes = 0;
    for (std::uint32_t record = 0; record < classRecordCount; ++record) {
        const std::int32_t type = FIReadWordLE(reader);
        const std::int32_t length = FIReadWordLE(reader);
        if (type < 0 || length < 0) return 0;
        const std::uint32_t recordClass = static_cast<std::uint32_t>(type) >> 8 & classMask;
        if (recordClass < firstClass || recordClass > lastClass) return 0;
        classes |= 1U << (recordClass - firstClass);
        const std::uint32_t bytes = static_cast<std::uint32_t>(length) * classUnitSize;
        static_cast<void>(FIReaderSeek(reader, FIReaderTell(reader) + bytes));  // a failure shows in the next record
    }
    return classes == allClasses ? classRecordsFormat : FIID{0};
}
