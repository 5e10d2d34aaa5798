// memo_headers.cpp - memos, told by the lines of their head.
//
//   Routine  Opening, from offset 0
//      1132  up to 15 lines of text, CR LF behind each, none of them empty; two start with "From:" or "To:" in any case
#include "text/memo_headers.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "reader/ascii_case.h"
#include "reader/reader.h"

namespace {

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
        if (character == '\r') return column != 0 && FIReaderGetByte(reader) == '\n';
        if (character == endOfFile || (character < ' ' && character != '\t')) return false;
        const std::string_view head = column == 0 ? FIMemoHeadOf(character) : std::string_view();
        column = head.empty() ? static_cast<std::uint16_t>(column + 1) : FITakeMemoHead(reader, head, hits);
    }
    return true;
}

}  // namespace

FIID FIProbeMemoHeader(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    std::uint16_t hits = 0;
    for (std::uint16_t lines = 0; lines < memoLines && hits < memoHits; ++lines) {
        if (!FITakeMemoLine(reader, hits)) return 0;
    }
    return hits == memoHits ? 1132 : 0;
}
