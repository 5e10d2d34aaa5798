// text_images.cpp - graphics formats without a magic number, told by their first records or words.
//
// IGES, a file of card images: records of 80 bytes, each followed by no line end or by one or two bytes of line end.
//
//   Offset  Size  Field              Accepted
//       72     1  section letter     'S' start, 'G' global
//       73     7  sequence number    decimal; S 1, S 2, S 3 and so on, then G 1. The start section may be missing
//
// A chain of marked records. It may open with one record of class 0, then come a group of class 1, a group of class 4,
// of which each may be missing, and then the bytes 02 02 02 7E:
//
//   Offset  Size  Field              Accepted
//        0     1  lead byte          2
//        1     1  length             L; the next record stands at L + 2
//        2     1  class              0, 1 or 4
//        3     1  code               7E opens a group, 7F closes it
//
// An X bitmap is C source: "#define" of width and height, perhaps of a hot spot's x and y, then a "static" array. An X
// pixmap starts with the comment "/* XPM */". Netpbm: 'P', a digit from 1 to 6, white space, comment lines, and a
// number.
#include "graphics/text_images.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/base_utility.h"
#include "reader/handle_block.h"
#include "reader/reader.h"

namespace {

constexpr FIID igesFormat = 1569;
constexpr FIID markedRecordsFormat = 1570;
constexpr FIID xbmFormat = 1571;
constexpr FIID xpmFormat = 1572;

constexpr std::int32_t success = 0;

constexpr std::uint16_t originCurrent = 1;

// ---- IGES -----------------------------------------------------------------------------------------------------------

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

// ---- Marked records -------------------------------------------------------------------------------------------------

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

// ---- X bitmaps and pixmaps ------------------------------------------------------------------------------------------

constexpr std::uint32_t textBlockSize = 4096;
constexpr std::size_t longestToken = 48;  // the rest of a longer word is the next token
constexpr std::string_view tokenEnds = " \t\n\r";

// Takes the next token off the front of a text, but not the white space behind it.
std::string_view FITakeToken(std::string_view& text) {
    const std::string_view longest = text.substr(0, longestToken);
    const std::string_view token = longest.substr(0, longest.find_first_of(tokenEnds));
    text.remove_prefix(token.size());
    return token;
}

void FISkipTokenEnds(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(tokenEnds), text.size()));
}

std::string_view FIAsText(const std::array<char, textBlockSize>& block, std::uint32_t count) {
    return {block.data(), count};
}

// Passes over a comment in front of an X bitmap: moves text to the first '#' behind the second '/'. False if there is
// none.
bool FISkipXbmComment(std::string_view& text) {
    if (text.front() != '/') return true;
    const std::size_t slash = text.find('/', 1);
    if (slash == std::string_view::npos) return false;
    const std::size_t define = text.find('#', slash);
    if (define == std::string_view::npos) return false;
    text.remove_prefix(define);
    return true;
}

constexpr std::size_t xbmTokens = 14;

// Takes all the tokens. False when the text ends before or with the last one.
bool FITakeXbmTokens(std::string_view text, std::array<std::string_view, xbmTokens>& tokens) {
    for (std::string_view& token : tokens) {
        token = FITakeToken(text);
        if (text.empty()) return false;
        FISkipTokenEnds(text);
    }
    return true;
}

// ---- Netpbm ---------------------------------------------------------------------------------------------------------

constexpr std::uint32_t longestNetpbmComment = 249;  // behind the '#', with its line feed

bool FIIsWhiteSpace(std::uint8_t byte) { return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r'; }

// Quirk: only the low eight bits are looked at, so that the end of the file is the byte FF.
std::uint8_t FITakeLowByte(FIReader& reader) { return static_cast<std::uint8_t>(FIReaderGetByte(reader)); }

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

bool FIReadCardRecord(FIReader& reader, std::uint8_t* record, std::int32_t& sequence) {
    if (record == nullptr) return false;
    std::uint32_t count = 0;  // not looked at: old bytes stay behind a record that is cut short
    if (FIReadBlock(reader, record, cardRecordSize, count) != success) return false;
    std::array<std::uint8_t, 2> lineEnd = {0, 0};  // so it stays at the end of the file
    if (FIReadBlock(reader, lineEnd.data(), lineEnd.size(), count) != success) return false;
    const std::int32_t bytesBehind = FICountBytesBehindLineEnd(lineEnd[0], lineEnd[1]);
    // Quirk: goes back by two bytes at the end of the file too, where none came.
    if (bytesBehind > 0) static_cast<void>(reader.file->operations.IOSeek(reader.file, originCurrent, -bytesBehind));
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

FIID FIProbeMarkedRecords(FIReader& reader) {
    FIMarkedBlock block = {};
    if (FIRewindHandle(reader) != success) return 0;
    if (FIReadBlock(reader, block.bytes.data(), markedBlockSize, block.size) != success) return 0;
    if (block.size < markedSmallest) return 0;
    return FIMatchMarkedRecords(block);
}

FIID FIProbeXbm(FIReader& reader) {
    constexpr std::uint32_t smallest = 42;
    std::array<char, textBlockSize> block = {};  // a failing read may tell more bytes than it stored
    std::uint32_t count = 0;
    if (FIRewindHandle(reader) != success) return 0;
    static_cast<void>(FIReadBlock(reader, block.data(), textBlockSize, count));  // the count alone decides
    if (count < smallest) return 0;

    std::string_view text = FIAsText(block, count);
    std::array<std::string_view, xbmTokens> tokens;
    if (!FISkipXbmComment(text) || !FITakeXbmTokens(text, tokens)) return 0;
    // Quirk: six characters are compared, so that a longer word such as "#defined" is taken too.
    const auto isDefine = [&tokens](std::size_t index) { return tokens[index].starts_with("#defin"); };
    const auto isStatic = [&tokens](std::size_t index) { return tokens[index].starts_with("static"); };
    if (!isDefine(0) || !isDefine(3)) return 0;
    if (isStatic(6)) return xbmFormat;
    return isDefine(6) && isDefine(9) && isStatic(12) ? xbmFormat : FIID{0};
}

FIID FIProbeXpm(FIReader& reader) {
    std::array<char, textBlockSize> block;
    std::uint32_t count = 0;
    if (FIRewindHandle(reader) != success) return 0;
    if (FIReadBlock(reader, block.data(), textBlockSize, count) != success || count == 0) return 0;

    std::string_view text = FIAsText(block, count);
    // Quirk: a token may go on behind what is compared: "/**", "XPM2" and "*/x" are taken too.
    for (const std::string_view start : {std::string_view("/*"), std::string_view("XPM"), std::string_view("*/")}) {
        if (!FITakeToken(text).starts_with(start)) return 0;
        FISkipTokenEnds(text);
    }
    return xpmFormat;
}

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
