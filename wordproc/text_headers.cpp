// text_headers.cpp - text formats with a fixed opening that allows free text, blanks or either case between its parts.
//
//   Routine  Opening, from offset 0
//      1057  "[ver]" CR LF, a version line, CR LF, "[sty]" CR LF, in this case only; the version's last digit decides
//      1132  up to 15 lines of text, CR LF behind each, none of them empty; two start with "From:" or "To:" in any case
//      1141  "begin", blanks, ":", blanks, "vcard" or "vcalendar", in any case; what follows is not looked at
//
// Source of the last: RFC 6350, section 6.1.1, and RFC 5545, section 3.4; neither has the blanks.
#include "wordproc/text_headers.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "reader/ascii_case.h"
#include "reader/reader.h"

namespace {

constexpr std::uint16_t tab = 0x09;
constexpr std::uint16_t lineFeed = 0x0A;
constexpr std::uint16_t carriageReturn = 0x0D;
constexpr std::uint16_t blank = 0x20;

// ---- FIProbeVersionSections ----

constexpr std::string_view versionHead = "[ver]\r\n";
constexpr std::string_view styleHead = "[sty]\r\n";
constexpr std::uint16_t decidingDigit = '4';

bool FITakeExactly(FIReader& reader, std::string_view text) {
    for (const char wanted : text) {
        if (FIReaderGetByte(reader) != wanted) return false;
    }
    return true;
}

// The last digit of the line, or 0 for none; endOfFile when the line is not ended.
std::uint16_t FITakeVersionLine(FIReader& reader) {
    std::uint16_t digit = 0;
    while (true) {
        const std::uint16_t character = FIReaderGetByte(reader);
        if (character == endOfFile) return endOfFile;
        if (character == carriageReturn) return digit;
        if (character >= '0' && character <= '9') digit = character;
    }
}

// ---- FIProbeMemoHeader ----

constexpr std::uint16_t memoHits = 2;
constexpr std::uint16_t memoLines = 15;
constexpr std::uint16_t memoLineLimit = 1000;
constexpr std::string_view memoHeads[] = {"from:", "to:"};  // no two with the same first letter

// The head that a line with this first character may hold; empty for none.
std::string_view FIMemoHeadOf(std::uint16_t character) {
    const std::uint16_t letter = FILowerAscii(character);
    const auto* const found = std::ranges::find_if(memoHeads, [letter](auto head) { return letter == head.front(); });
    return found != std::end(memoHeads) ? *found : std::string_view();
}

// Takes the head's bytes behind its first letter, up to and with the first that differs, and counts a hit if none does.
// Returns the column behind them.
// Quirk: the byte that differs is not looked at any further. It may be a control byte, or the CR that ends the line.
std::uint16_t FITakeMemoHead(FIReader& reader, std::string_view head, std::uint16_t& hits) {
    std::uint16_t column = 1;
    while (column < head.size()) {
        const std::uint16_t character = FILowerAscii(FIReaderGetByte(reader));
        const bool differs = character != head[column];
        ++column;
        if (differs) return column;
    }
    ++hits;
    return column;
}

// Takes one line and counts its hit. False when the file can't be a memo: an empty line, a control byte, a line end
// that is not CR LF, the end of the file.
// Quirk: a line ends behind 1,000 characters even without a line end, and the next character starts a new one.
bool FITakeMemoLine(FIReader& reader, std::uint16_t& hits) {
    std::uint16_t column = 0;
    while (column < memoLineLimit) {
        const std::uint16_t character = FIReaderGetByte(reader);
        if (character == carriageReturn) return column != 0 && FIReaderGetByte(reader) == lineFeed;
        if (character == endOfFile || (character < blank && character != tab)) return false;
        const std::string_view head = column == 0 ? FIMemoHeadOf(character) : std::string_view();
        column = head.empty() ? static_cast<std::uint16_t>(column + 1) : FITakeMemoHead(reader, head, hits);
    }
    return true;
}

// ---- FIProbeVCard ----

constexpr std::string_view beginWord = "begin";
constexpr std::string_view calendarWord = "calendar";
constexpr std::string_view cardWord = "card";
constexpr std::size_t objectNameSize = calendarWord.size();

bool FITakeInAnyCase(FIReader& reader, std::string_view word) {
    for (const char wanted : word) {
        if (FILowerAscii(FIReaderGetByte(reader)) != wanted) return false;
    }
    return true;
}

// The first byte that is neither a blank nor a tab.
std::uint16_t FITakeBehindBlanks(FIReader& reader) {
    std::uint16_t character;
    do {
        character = FIReaderGetByte(reader);
    } while (character == tab || character == blank);
    return character;
}

}  // namespace

FIID FIProbeVersionSections(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0 || !FITakeExactly(reader, versionHead)) return 0;
    const std::uint16_t digit = FITakeVersionLine(reader);
    if (digit == endOfFile || FIReaderGetByte(reader) != lineFeed || !FITakeExactly(reader, styleHead)) return 0;
    return digit == decidingDigit ? 1057 : 1056;
}

FIID FIProbeMemoHeader(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    std::uint16_t hits = 0;
    for (std::uint16_t lines = 0; lines < memoLines && hits < memoHits; ++lines) {
        if (!FITakeMemoLine(reader, hits)) return 0;
    }
    return hits == memoHits ? 1132 : 0;
}

FIID FIProbeVCard(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0 || !FITakeInAnyCase(reader, beginWord)) return 0;
    if (FITakeBehindBlanks(reader) != ':') return 0;
    if (FILowerAscii(FITakeBehindBlanks(reader)) != 'v') return 0;
    char object[objectNameSize];
    for (char& letter : object) letter = static_cast<char>(FILowerAscii(FIReaderGetByte(reader)));  // FF behind the end
    const std::string_view name(object, objectNameSize);
    if (name == calendarWord) return 1196;
    return name.starts_with(cardWord) ? 1141 : 0;
}
