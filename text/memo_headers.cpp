// memo_headers.cpp - memos, told by the lines of their head.
//
//   Routine  Opening, from offset 0
//      1132  up to 15 lines of text, CR LF behind each, none of them empty; two start with "From:" or "To:" in any case
#include "text/memo_headers.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>

#include "reader/ascii_case.h"
#include "reader/head_line.h"
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

// Takes eight bytes at a time out of the reader's buffer as long as none is below a blank, at most room. Returns how many.
// Behind a line's first byte such bytes are columns and nothing else.
std::uint16_t FIPassColumns(FIReader& reader, std::uint32_t room) {
    constexpr std::uint32_t step = sizeof(std::uint64_t);
    constexpr std::uint64_t blanks = 0x2020202020202020;
    constexpr std::uint64_t highBits = 0x8080808080808080;
    std::uint16_t passed = 0;
    while (reader.bytesLeft >= static_cast<std::int32_t>(step) && passed + step <= room) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, reader.cursor, step);
        if (((bytes - blanks) & ~bytes & highBits) != 0) break;  // a borrow is a low byte's, or behind one
        reader.cursor += step;
        reader.bytesLeft = static_cast<std::int16_t>(reader.bytesLeft - static_cast<std::int32_t>(step));
        passed = static_cast<std::uint16_t>(passed + step);
    }
    return passed;
}

// Takes one line and counts its hit. False when the file can't be a memo: an empty line, a control byte, a line end
// that is not CR LF, the end of the file.
// Quirk: a line ends behind 1,000 characters even without a line end, and the next character starts a new one.
bool FITakeMemoLine(FIReader& reader, std::uint16_t& hits) {
    std::uint16_t column = 0;
    while (column < memoLineLimit) {
        if (column != 0) {
            column = static_cast<std::uint16_t>(column + FIPassColumns(reader, std::uint32_t{memoLineLimit} - column));
            if (column == memoLineLimit) break;
        }
        const std::uint16_t character = FIReaderGetByte(reader);
        if (character == '\r') return column != 0 && FIReaderGetByte(reader) == '\n';
        if (character == endOfFile || (character < ' ' && character != '\t')) return false;
        const std::string_view head = column == 0 ? FIMemoHeadOf(character) : std::string_view();
        column = head.empty() ? static_cast<std::uint16_t>(column + 1) : FITakeMemoHead(reader, head, hits);
    }
    return true;
}

// ---- The gate ----

enum class FIHeadMemoLine : std::uint8_t { taken, refused, beyondHead };

// FITakeMemoHead in the head, at the start of a line. Returns the column behind what it takes, which may be one that lies
// behind the head.
std::uint32_t FIPassMemoHead(const FIHead& head, std::uint32_t start, std::uint16_t& hits) {
    if (start >= head.size) return 0;
    const std::string_view wanted = FIMemoHeadOf(head.bytes[start]);
    if (wanted.empty()) return 0;
    for (std::uint32_t column = 1; column < wanted.size(); ++column) {
        if (start + column >= head.size) return column;
        const std::uint16_t character = FILowerAscii(std::uint16_t{head.bytes[start + column]});
        if (character != wanted[column]) return column + 1;
    }
    ++hits;
    return static_cast<std::uint32_t>(wanted.size());
}

// FITakeMemoLine in the head, from one low byte to the next: the others are bytes of the line.
FIHeadMemoLine FIPassMemoLine(FIHead& head, std::uint32_t& position, std::uint16_t& hits) {
    constexpr auto lowBytes = [](const FIByteMasks& masks) { return masks.low; };
    const std::uint32_t start = position;
    const std::uint32_t limit = std::min(start + memoLineLimit, head.size);
    std::uint32_t end = FINextInHead(head, start + FIPassMemoHead(head, start, hits), limit, lowBytes);
    while (end < limit && head.bytes[end] == '\t') end = FINextInHead(head, end + 1, limit, lowBytes);
    position = end;
    if (end == start + memoLineLimit) return FIHeadMemoLine::taken;
    const bool atLineEnd = end < limit && head.bytes[end] == '\r' && end != start;
    if (end < limit && !atLineEnd) return FIHeadMemoLine::refused;
    position = end + 2;
    if (position > head.size) return FIHeadIsWhole(head) ? FIHeadMemoLine::refused : FIHeadMemoLine::beyondHead;
    return head.bytes[end + 1] == '\n' ? FIHeadMemoLine::taken : FIHeadMemoLine::refused;
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

// The lines as the probe takes them, as far as they lie in the head.
bool FIMayBeMemo(FIHead& head) {
    std::uint32_t position = 0;
    std::uint16_t hits = 0;
    for (std::uint16_t lines = 0; lines < memoLines && hits < memoHits; ++lines) {
        const FIHeadMemoLine state = FIPassMemoLine(head, position, hits);
        if (state != FIHeadMemoLine::taken) return state == FIHeadMemoLine::beyondHead;
    }
    return hits == memoHits;
}
