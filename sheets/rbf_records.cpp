// rbf_records.cpp - databases with the extension RBF: records chained by stored offsets, or a marker in slots.
//
// A record of the chained form; all numbers are little-endian, and a link is a file offset plus 1, or 0 for none:
//
//   Offset  Size  Field
//        0     4  forward link: the next record
//        4     4  back link: the record that led here
//        8     2  length of the name, signed; its absolute value counts
//       10     -  name
//    10+length 4  continuation link, used when the forward link is 0
//
// The form with slots: a file of a multiple of 512 bytes, 42 slots of 12 bytes from offset 0, one of which starts with
// FF FF FF 7F.
#include "sheets/rbf_records.h"

#include <cstdint>
#include <cstdlib>

#include "reader/file_end.h"
#include "reader/reader.h"
#include "reader/unchecked_numbers.h"

namespace {

constexpr FIID linkedRecordsFormat = 1210;
constexpr FIID slotMarkerFormat = 1213;

constexpr std::uint32_t linkBias = 1;    // a link holds an offset plus this
constexpr std::uint32_t backLink = 4;    // of a record
constexpr std::uint32_t nameLength = 8;  // of a record
constexpr std::uint32_t nameStart = 10;  // of a record

constexpr std::uint32_t blockSize = 512;
constexpr std::uint32_t slotSize = 12;
constexpr std::uint32_t slotsEnd = 504;
constexpr std::uint16_t slotMarker[] = {0xFF, 0xFF, 0xFF, 0x7F};

// The name's length behind the field at the reader's place, from 0 to 32,768. The end of the file is -1 and counts
// as 1.
std::uint32_t FIReadNameLength(FIReader& reader) {
    const std::int32_t length = static_cast<std::int16_t>(FIReadWordLE(reader));
    return static_cast<std::uint32_t>(std::abs(length));
}

// Moves to the continuation link of the record at an offset. False when a seek fails.
bool FISeekContinuation(FIReader& reader, std::uint32_t record, std::uint32_t& continuation) {
    if (FIReaderSeek(reader, record + nameLength) != 0) return false;
    continuation = record + nameStart + FIReadNameLength(reader);
    return FIReaderSeek(reader, continuation) == 0;
}

// The size condition of the form with slots; a size that can't be had is taken as good.
bool FISizeFitsBlocks(FIReader& reader) {
    std::uint32_t size = 0;
    if (!FITellFromEnd(reader.file, 0, size)) return true;
    return FIReaderSeek(reader, size) != 0 || size % blockSize == 0;
}

bool FITakeSlotMarker(FIReader& reader) {
    bool equal = true;
    for (const std::uint16_t byte : slotMarker) equal = (FIReaderGetByte(reader) == byte) && equal;
    return equal;
}

}  // namespace

FIID FIProbeLinkedRecords(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    std::uint32_t link = FISumDWordLE(reader);
    std::uint32_t continuation = 0;
    if (link == 0) {
        if (!FISeekContinuation(reader, 0, continuation)) return 0;
        link = FISumDWordLE(reader);
    }
    std::uint32_t origin = link - linkBias;  // where the second link stands: a record, or its continuation field
    if (FIReaderSeek(reader, origin) != 0) return 0;
    link = FISumDWordLE(reader);
    if (link == 0) {
        if (!FISeekContinuation(reader, origin, continuation)) return 0;
        origin = continuation;
        link = FISumDWordLE(reader);
    }
    if (FIReaderSeek(reader, link - linkBias + backLink) != 0) return 0;
    const std::uint32_t back = FISumDWordLE(reader) - linkBias;
    return back == origin && static_cast<std::int32_t>(back) > 0 ? linkedRecordsFormat : FIID{0};
}

FIID FIProbeSlotMarker(FIReader& reader) {
    if (!FISizeFitsBlocks(reader)) return 0;
    for (std::uint32_t slot = 0; slot < slotsEnd; slot += slotSize) {
        if (FIReaderSeek(reader, slot) != 0) return 0;
        if (FITakeSlotMarker(reader)) return slotMarkerFormat;
    }
    return 0;
}
