// block_structures.cpp - word-processor documents told by the skeleton of the file.
//
// All numbers are little-endian unless said otherwise.
//
// The header of FIProbeBlockHeader, for three related formats:
//
//   Offset  Size  Field         1006           1007                1039
//      420     1  first tell    0              any                 any
//      440     1                0 to 9         0 to 9              0 to 9
//      441     1                0              0                   0
//      467     1  second tell   0              0, 'A' to 'Z'       0, 'A' to 'Z'
//                                              (not both tells 0)
//      468     4                0              0                   any
//      499     2                0              0                   0
//      508     1                1 to 254       1 to 254            any
//      511     1  layout        0              0                   4
//      512   1/2  block number  a byte from 2  a byte from 2       a word, 2 to 32,767
//        -     3  marker        FF 03 B3 at the block number x 512 + 2, computed in 16 bits: see FIMarkerOffset
//
// The table of FIProbeEntryTable:
//
//   Offset  Size  Field         Accepted
//        0     2  entry count   130 or 256
//        2     2                any
//        4    14  each entry    the first of type 99 decides; the entries in front of it are passed over
//
//   In entry
//        0     2  type
//        2     2  sub-type      456
//        4     4                any
//        8     3  data offset   from the end of the table, 1,824 or 3,588; the data starts with a byte B3
//       11     3                any
//
// The list of FIProbeBlockList:
//
//   Offset  Size  Field         Accepted
//        0     3                0
//      256     2  count         above 0, less 1 for each spare block that is not 0
//      258     2                0
//      260     2  spare block   any
//      262     2  spare block   any
//      264     2                0
//      266     2  each block    not 0; the block starts at its number x 1,024 with a byte 86. Three at most count
//
// The records of FIProbeMirroredLengths follow each other from offset 0: the length of the whole record stands in its
// first two and in its last two bytes, big-endian. A record of 2 bytes has one such word for both.
#include "wordproc/block_structures.h"

#include <cstdint>

#include "reader/reader.h"

namespace {

// ---- FIProbeBlockHeader ---------------------------------------------------------------------------------------------

constexpr std::uint32_t firstTellOffset = 420;
constexpr std::uint32_t smallNumberOffset = 440;
constexpr std::uint32_t secondTellOffset = 467;
constexpr std::uint32_t zeroWordOffset = 499;
constexpr std::uint32_t rangeOffset = 508;
constexpr std::uint32_t layoutOffset = 511;
constexpr std::uint32_t blockNumberOffset = 512;

constexpr std::uint16_t largestSmallNumber = 9;
constexpr std::uint16_t zerosBehindSecondTell = 4;
constexpr std::uint16_t layout1039 = 4;
constexpr std::uint16_t leastBlock = 2;
constexpr std::uint16_t blockShift = 9;  // blocks of 512 bytes
constexpr std::uint16_t markerInBlock = 2;

struct FIExcluded {
    bool format1006 = false;
    bool format1007 = false;
    bool format1039 = false;
};

void FIExclude1006And1007(FIExcluded& excluded) { excluded.format1006 = excluded.format1007 = true; }

// Both tells are 0 in 1006 and not in 1007, so that one of these two is excluded behind them.
bool FIReadTells(FIReader& reader, FIExcluded& excluded) {
    if (FIReaderSeek(reader, firstTellOffset) != 0) return false;
    if (FIReaderGetByte(reader) != 0) excluded.format1006 = true;

    if (FIReaderSeek(reader, smallNumberOffset) != 0) return false;
    if (FIReaderGetByte(reader) > largestSmallNumber || FIReaderGetByte(reader) != 0) return false;

    if (FIReaderSeek(reader, secondTellOffset) != 0) return false;
    const std::uint16_t secondTell = FIReaderGetByte(reader);
    if (secondTell >= 'A' && secondTell <= 'Z') {
        excluded.format1006 = true;
        return true;
    }
    if (!excluded.format1006) excluded.format1007 = true;
    return secondTell == 0;
}

bool FIReadBlockHeader(FIReader& reader, FIExcluded& excluded) {
    if (!FIReadTells(reader, excluded)) return false;
    for (std::uint16_t index = 0; index < zerosBehindSecondTell; ++index) {
        if (FIReaderGetByte(reader) != 0) FIExclude1006And1007(excluded);
    }
    if (FIReaderSeek(reader, zeroWordOffset) != 0) return false;
    if (FIReaderGetByte(reader) != 0 || FIReaderGetByte(reader) != 0) return false;

    if (FIReaderSeek(reader, rangeOffset) != 0) return false;
    const std::uint16_t range = FIReaderGetByte(reader);
    if (range == 0 || range == 255) FIExclude1006And1007(excluded);

    if (FIReaderSeek(reader, layoutOffset) != 0) return false;
    const std::uint16_t layout = FIReaderGetByte(reader);
    if (layout != 0) FIExclude1006And1007(excluded);
    if (layout != layout1039) excluded.format1039 = true;
    return true;
}

// Quirk: the offset is a signed 16-bit number. Blocks 64 to 127 lie near 4 GiB, where no handle goes, and from 128 on
// the numbers wrap: 130 is block 2, and 128 and 129 lead to offsets 2 and 514, in front of all blocks.
std::uint32_t FIMarkerOffset(std::uint16_t block) {
    const auto offset = static_cast<std::int16_t>(static_cast<std::uint16_t>((block << blockShift) + markerInBlock));
    return static_cast<std::uint32_t>(std::int32_t{offset});
}

bool FITakeMarker(FIReader& reader) {
    return FIReaderGetByte(reader) == 0xFF && FIReaderGetByte(reader) == 0x03 && FIReaderGetByte(reader) == 0xB3;
}

// ---- FIProbeEntryTable ----------------------------------------------------------------------------------------------

constexpr std::uint32_t entriesOffset = 4;
constexpr std::uint32_t entrySize = 14;
constexpr std::uint16_t smallTable = 130;
constexpr std::uint16_t largeTable = 256;
constexpr std::int32_t decidingType = 99;
constexpr std::int32_t decidingSubType = 456;
constexpr std::uint16_t bytesBehindType = 12;
constexpr std::uint16_t bytesBehindSubType = 4;
constexpr std::uint16_t entryDataMark = 0xB3;

// In the deciding entry, behind its type: whether its data starts with the mark.
bool FIEntryLeadsToMark(FIReader& reader, std::uint32_t tableBase) {
    if (FIReadWordLE(reader) != decidingSubType || FIReaderSkip(bytesBehindSubType, reader) != 0) return false;
    const std::int32_t low = FIReadWordLE(reader);
    const std::uint16_t high = FIReaderGetByte(reader);
    if (low == -1 || high == endOfFile) return false;
    const std::uint32_t offset = static_cast<std::uint32_t>(low) | static_cast<std::uint32_t>(high) << 16;
    return FIReaderSeek(reader, tableBase + offset) == 0 && FIReaderGetByte(reader) == entryDataMark;
}

// ---- FIProbeBlockList -----------------------------------------------------------------------------------------------

constexpr std::uint32_t listHeaderOffset = 256;
constexpr std::uint32_t blockNumbersOffset = 266;
constexpr std::uint16_t zerosAtStart = 3;
constexpr std::int16_t mostBlocks = 3;
constexpr std::uint32_t listedBlockSize = 1024;
constexpr std::uint16_t blockMark = 0x86;

// The number of blocks to look at, 1 to 3, or 0 when the header does not fit.
std::int16_t FIReadBlockCount(FIReader& reader) {
    const std::int32_t count = FIReadWordLE(reader);
    const std::int32_t firstZero = FIReadWordLE(reader);
    const std::int32_t firstSpare = FIReadWordLE(reader);
    const std::int32_t secondSpare = FIReadWordLE(reader);
    const std::int32_t secondZero = FIReadWordLE(reader);
    if (count == -1 || firstSpare == -1 || secondSpare == -1) return 0;
    if (count == 0 || firstZero != 0 || secondZero != 0) return 0;
    // Quirk: the count is a signed 16-bit number and wraps; 8000 less 1 is 7FFF and passes.
    const auto blocks = static_cast<std::int16_t>(count - (firstSpare != 0 ? 1 : 0) - (secondSpare != 0 ? 1 : 0));
    if (blocks <= 0) return 0;
    return blocks < mostBlocks ? blocks : mostBlocks;
}

// ---- FIProbeMirroredLengths -----------------------------------------------------------------------------------------

constexpr std::uint16_t recordsToFollow = 4;
constexpr std::uint16_t lastOffset = 2048;
constexpr std::uint16_t lengthSize = 2;

}  // namespace

FIID FIProbeBlockHeader(FIReader& reader) {
    FIExcluded excluded;
    if (!FIReadBlockHeader(reader, excluded)) return 0;
    if (!excluded.format1006 || !excluded.format1007) {
        const std::uint16_t block = FIReaderGetByte(reader);  // the byte at blockNumberOffset
        if (block < leastBlock) FIExclude1006And1007(excluded);
        if (FIReaderSeek(reader, FIMarkerOffset(block)) != 0) return 0;
        const bool marked = FITakeMarker(reader);
        if (marked && !excluded.format1007) return 1007;
        if (marked && !excluded.format1006) return 1006;
    }
    if (excluded.format1039 || FIReaderSeek(reader, blockNumberOffset) != 0) return 0;
    // Quirk: the number is signed, so that words of 8000 and above are too small, and the end of the file, -1, is too.
    const auto block = static_cast<std::int16_t>(FIReadWordLE(reader));
    if (block < leastBlock) return 0;
    if (FIReaderSeek(reader, FIMarkerOffset(static_cast<std::uint16_t>(block))) != 0) return 0;
    return FITakeMarker(reader) ? 1039 : 0;
}

FIID FIProbeEntryTable(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    const std::int32_t count = FIReadWordLE(reader);
    if (count != smallTable && count != largeTable) return 0;
    const std::uint32_t tableBase = entriesOffset + entrySize * static_cast<std::uint32_t>(count);
    static_cast<void>(FIReadWordLE(reader));  // any value
    for (std::int32_t entry = 0; entry < count; ++entry) {
        const std::int32_t type = FIReadWordLE(reader);
        if (type == -1) return 0;
        if (type == decidingType) return FIEntryLeadsToMark(reader, tableBase) ? 1041 : 0;
        static_cast<void>(FIReaderSkip(bytesBehindType, reader));  // the end of the file shows in the next entry
    }
    return 0;
}

FIID FIProbeBlockList(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    for (std::uint16_t index = 0; index < zerosAtStart; ++index) {
        if (FIReaderGetByte(reader) != 0) return 0;
    }
    if (FIReaderSeek(reader, listHeaderOffset) != 0) return 0;
    const std::int16_t blocks = FIReadBlockCount(reader);
    if (blocks == 0 || FIReaderSeek(reader, blockNumbersOffset) != 0) return 0;

    std::uint32_t numbers[mostBlocks];
    for (std::int16_t index = 0; index < blocks; ++index) {
        const std::int32_t number = FIReadWordLE(reader);
        if (number <= 0) return 0;  // 0, or the end of the file
        numbers[index] = static_cast<std::uint32_t>(number);
    }
    for (std::int16_t index = 0; index < blocks; ++index) {
        if (FIReaderSeek(reader, numbers[index] * listedBlockSize) != 0) return 0;
        if (FIReaderGetByte(reader) != blockMark) return 0;
    }
    return 1025;
}

FIID FIProbeMirroredLengths(FIReader& reader) {
    // Quirk: the offsets are 16-bit numbers and wrap: a length near 65,536 leads back into the first 2,048 bytes.
    std::uint16_t position = 0;
    std::int32_t length = 0;
    for (std::uint16_t record = 0; record < recordsToFollow; ++record) {
        position = static_cast<std::uint16_t>(position + length);
        if (position > lastOffset || FIReaderSeek(reader, position) != 0) return 0;
        length = FIReadWordBE(reader);
        if (length == -1) return 0;
        const auto mirror = static_cast<std::uint16_t>(position + length - lengthSize);
        if (mirror > lastOffset || FIReaderSeek(reader, mirror) != 0) return 0;
        if (FIReadWordBE(reader) != length) return 0;
    }
    return 1018;
}
