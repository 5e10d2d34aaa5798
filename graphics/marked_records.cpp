// marked_records.cpp - a chain of marked records. It may open with one record of class 0, then come a group of class 1,
// a group of class 4, of which each may be missing, and then the bytes 02 02 02 7E:
//
//   Offset  Size  Field              Accepted
//        0     1  lead byte          2
//        1     1  length             L; the next record stands at L + 2
//        2     1  class              0, 1 or 4
//        3     1  code               7E opens a group, 7F closes it
#include "graphics/marked_records.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "reader/handle_block.h"

namespace {

constexpr FIID markedRecordsFormat = 1570;

constexpr std::int32_t success = 0;

constexpr std::uint32_t markedBlockSize = 2000;
constexpr std::uint32_t markedSmallest = 3;
constexpr std::uint32_t markedHeaderSize = 4;  // lead byte, length, class and code

constexpr std::uint8_t markedLead = 2;
constexpr std::uint8_t markedOpen = 0x7E;
constexpr std::uint8_t markedClose = 0x7F;

// The file's first bytes, with zeros behind them for a header that reaches over their end.
struct FIMarkedBlock {
    std::array<std::uint8_t, markedBlockSize + markedHeaderSize> bytes;
    std::uint32_t size;  // bytes delivered
};

bool FIIsMarkedRecord(const FIMarkedBlock& block, std::uint32_t offset, std::uint8_t recordClass) {
    return block.bytes[offset] == markedLead && block.bytes[offset + 2] == recordClass;
}

bool FIIsMarkedRecord(const FIMarkedBlock& block, std::uint32_t offset, std::uint8_t recordClass, std::uint8_t code) {
    return FIIsMarkedRecord(block, offset, recordClass) && block.bytes[offset + 3] == code;
}

std::uint32_t FIGetNextMarkedRecord(const FIMarkedBlock& block, std::uint32_t offset) {
    return offset + 2 + block.bytes[offset + 1];
}

enum class FIGroupEnd : std::uint8_t {
    closed,  // by its closing record, by the end of the block, or no such group stands here
    broken,  // a record that does not belong to it
    beyond,  // a length leads out of the block, which counts as a positive answer
};

// Walks the group of class 1 that may stand at offset, and moves offset behind it.
FIGroupEnd FIWalkFirstGroup(const FIMarkedBlock& block, std::uint32_t& offset) {
    constexpr std::uint8_t groupClass = 1;
    if (!FIIsMarkedRecord(block, offset, groupClass, markedOpen)) return FIGroupEnd::closed;
    offset += markedHeaderSize;  // whatever length the opening record tells
    while (offset < block.size) {
        if (!FIIsMarkedRecord(block, offset, groupClass)) return FIGroupEnd::broken;
        const bool closes = FIIsMarkedRecord(block, offset, groupClass, markedClose);
        offset = FIGetNextMarkedRecord(block, offset);
        if (closes) break;
    }
    return offset > block.size ? FIGroupEnd::beyond : FIGroupEnd::closed;
}

// The same for the group of class 4, which holds one record.
FIGroupEnd FIWalkSecondGroup(const FIMarkedBlock& block, std::uint32_t& offset) {
    constexpr std::uint8_t groupClass = 4;
    if (!FIIsMarkedRecord(block, offset, groupClass, markedOpen)) return FIGroupEnd::closed;
    offset += markedHeaderSize;
    if (!FIIsMarkedRecord(block, offset, groupClass)) return FIGroupEnd::broken;
    offset = FIGetNextMarkedRecord(block, offset);
    if (offset > block.size) return FIGroupEnd::beyond;
    if (!FIIsMarkedRecord(block, offset, groupClass, markedClose)) return FIGroupEnd::broken;
    offset += markedHeaderSize;
    return FIGroupEnd::closed;
}

FIID FIMatchMarkedRecords(const FIMarkedBlock& block) {
    std::uint32_t offset = FIIsMarkedRecord(block, 0, 0) ? FIGetNextMarkedRecord(block, 0) : 0;
    if (offset >= block.size) return 0;
    for (const auto walk : {FIWalkFirstGroup, FIWalkSecondGroup}) {
        const FIGroupEnd end = walk(block, offset);
        if (end == FIGroupEnd::beyond) return markedRecordsFormat;
        if (end == FIGroupEnd::broken) return 0;
    }
    constexpr std::array<std::uint8_t, markedHeaderSize> closing = {2, 2, 2, markedOpen};
    return std::equal(closing.begin(), closing.end(), block.bytes.begin() + offset) ? markedRecordsFormat : FIID{0};
}

}  // namespace

FIID FIProbeMarkedRecords(FIReader& reader) {
    FIMarkedBlock block = {};
    if (!FICopyHead(reader, block.bytes.data(), markedBlockSize, block.size)) {
        if (FIRewindHandle(reader) != success) return 0;
        if (FIReadBlock(reader, block.bytes.data(), markedBlockSize, block.size) != success) return 0;
    }
    if (block.size < markedSmallest) return 0;
    return FIMatchMarkedRecords(block);
}
