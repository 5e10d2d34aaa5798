// card_images.cpp - IGES, a file of card images: records of 80 bytes, each followed by no line end or by one or two
// bytes of line end.
//
//   Offset  Size  Field              Accepted
//       72     1  section letter     'S' start, 'G' global
//       73     7  sequence number    decimal; S 1, S 2, S 3 and so on, then G 1. The start section may be missing
#include "graphics/card_images.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/base_utility.h"
#include "reader/handle_block.h"

namespace {

constexpr FIID igesFormat = 1569;

constexpr std::int32_t success = 0;

constexpr std::uint32_t cardSection = 72;
constexpr std::uint32_t cardSequence = 73;
constexpr std::uint32_t cardSequenceSize = 7;

// How many of the two bytes behind a record belong to the next one.
std::int32_t FICountBytesBehindLineEnd(std::uint8_t first, std::uint8_t second) {
    if (first == '\r') return second == '\n' ? 0 : 1;
    if (first == '\n') return second == '\r' ? 0 : 1;
    return 2;
}

// Quirk: a blank is a digit 0 wherever it stands, so that six blanks and a 1 are 1, and a 1 and six blanks are
// 1,000,000. Any other byte counts by its distance from '0'.
std::int32_t FIParseCardSequence(const std::uint8_t* digits) {
    std::int32_t value = 0;  // below 230 millions
    for (std::uint32_t index = 0; index < cardSequenceSize && digits[index] != 0; ++index) {
        value *= 10;
        if (digits[index] != ' ') value += digits[index] - '0';
    }
    return value;
}

FIID FIWalkCardSections(FIReader& reader, std::uint8_t* record) {
    std::int32_t sequence = 0;
    if (FIRewindHandle(reader) != success || !FIReadCardRecord(reader, record, sequence)) return 0;
    std::int32_t previous = 0;
    while (record[cardSection] == 'S') {
        const std::int32_t expected = previous + 1;
        previous = sequence;
        if (sequence != expected) break;
        // Quirk: a read that fails behind a good start record is the answer yes. At the end of the file a read does not
        // fail but delivers nothing: then the old record is looked at again, and its number is no longer the expected
        // one.
        if (!FIReadCardRecord(reader, record, sequence)) return igesFormat;
    }
    return record[cardSection] == 'G' && sequence == 1 ? igesFormat : FIID{0};
}

}  // namespace

bool FIReadCardRecord(FIReader& reader, std::uint8_t* record, std::int32_t& sequence) {
    if (record == nullptr) return false;
    std::uint32_t count = 0;  // not looked at: old bytes stay behind a record that is cut short
    if (FIReadBlock(reader, record, cardRecordSize, count) != success) return false;
    std::array<std::uint8_t, 2> lineEnd = {0, 0};  // so it stays at the end of the file
    if (FIReadBlock(reader, lineEnd.data(), lineEnd.size(), count) != success) return false;
    const std::int32_t bytesBehind = FICountBytesBehindLineEnd(lineEnd[0], lineEnd[1]);
    // Quirk: goes back by two bytes at the end of the file too, where none came.
    if (bytesBehind > 0) static_cast<void>(reader.file->operations.IOSeek(reader.file, IOOriginCurrent, -bytesBehind));
    sequence = FIParseCardSequence(record + cardSequence);
    return true;
}

FIID FIProbeIges(FIReader& reader) {
    auto* const record = static_cast<std::uint8_t*>(HeapAlloc(GetProcessHeap(), 0, cardRecordSize));
    if (record == nullptr) return 0;
    std::fill_n(record, cardRecordSize, std::uint8_t{0});
    const FIID answer = FIWalkCardSections(reader, record);
    HeapFree(GetProcessHeap(), 0, record);
    return answer;
}
