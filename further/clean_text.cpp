// clean_text.cpp - counting the bytes of a head that no text holds, and reading it as UTF-8 and UTF-16.
//
// A text may hold some stray control bytes, as sources, logs and DOS texts do: of 1,000 of its bytes 3. Those that its form
// brings along are not counted: the end marks of DOS texts behind the last line, and the shifts of ISO 2022, where a
// designation of a character set (1B 24 29) shows that it is such a text.
#include "further/clean_text.h"

#include <algorithm>
#include <string_view>

#include "further/look_numbers.h"
#include "reader/little_endian.h"
#include "reader/text_bytes.h"

namespace {

constexpr std::uint64_t strayShare = 3;  // of 1,000 bytes
constexpr std::uint64_t strayWhole = 1000;

// The most stray bytes in a text of so many bytes.
std::uint32_t FIMostStray(std::uint64_t size) { return static_cast<std::uint32_t>(size * strayShare / strayWhole); }

bool FIIsIso2022(std::span<const std::uint8_t> head) {
    constexpr std::string_view designation = "\x1B$)";
    return FITextOf(head).find(designation) != std::string_view::npos;
}

FITextBytes FIReadTextBytes(FILook& look) {
    // The start may show already that there are too many, whatever follows.
    const std::uint32_t atMost = FIMostStray(std::min<std::uint64_t>(look.size, lookHeadBytes));
    const std::span<const std::uint8_t> start = FILookAtStart(look);
    FITextByteCounts counts = {};
    if (!FICountTextBytes(start.data(), start.size(), atMost, counts)) return FITextBytes::NoText;
    const std::span<const std::uint8_t> head = FILookAtHead(look);
    const std::span<const std::uint8_t> rest = head.subspan(start.size());
    if (!FICountTextBytes(rest.data(), rest.size(), atMost, counts)) return FITextBytes::NoText;

    std::uint32_t stray = counts.stray;
    if (counts.endMarks > 0) stray += counts.endMarks - FICountEndMarks(look);
    const std::uint32_t most = FIMostStray(head.size());
    if (stray + counts.shifts > most && !FIIsIso2022(head)) stray += counts.shifts;
    if (stray > most) return FITextBytes::NoText;
    return counts.hasHigh ? FITextBytes::WithHigh : FITextBytes::Ascii;
}

FITextBytes FIAskTextBytes(FILook& look) {
    if (look.text == FITextBytes::NotRead) look.text = FIReadTextBytes(look);
    return look.text;
}

constexpr std::uint16_t byteOrderMark = 0xFEFF;
constexpr std::uint32_t unitSize = 2;

// The UTF-16 units of a head behind its byte order mark.
struct FIUnits {
    std::span<const std::uint8_t> bytes;
    bool isBigEndian;
};

std::size_t FICountUnits(const FIUnits& units) { return units.bytes.size() / unitSize; }

std::uint16_t FIUnitAt(const FIUnits& units, std::size_t index) {
    const std::uint32_t first = units.bytes[index * unitSize];
    const std::uint32_t second = units.bytes[index * unitSize + 1];
    return static_cast<std::uint16_t>(units.isBigEndian ? first << 8 | second : second << 8 | first);
}

constexpr bool FIIsBetween(std::uint16_t unit, std::uint16_t first, std::uint16_t last) {
    return unit >= first && unit <= last;
}

constexpr bool FIIsUsualUnit(std::uint16_t unit) {
    return unit <= 0x024F || FIIsBetween(unit, 0x0400, 0x06FF) || FIIsBetween(unit, 0x3000, 0x9FFF);
}

constexpr bool FIIsForbiddenUnit(std::uint16_t unit) {
    return unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\f' && unit != '\r';
}

// Whether the units are valid and more than 70 of 100 characters usual ones. A pair is one character, and no usual one; one
// that is cut by the end is none.
bool FIIsUtf16(const FIUnits& units, bool mayBeCut) {
    constexpr std::uint64_t usualShare = 70;
    constexpr std::uint64_t usualWhole = 100;
    const std::size_t count = FICountUnits(units);
    std::uint64_t usual = 0;
    std::uint64_t characters = 0;
    for (std::size_t index = 0; index < count; ++index) {
        const std::uint16_t unit = FIUnitAt(units, index);
        if (FIIsForbiddenUnit(unit) || FIIsBetween(unit, 0xDC00, 0xDFFF)) return false;
        if (FIIsBetween(unit, 0xD800, 0xDBFF)) {
            ++index;
            if (index == count) return mayBeCut && usual * usualWhole > characters * usualShare;
            if (!FIIsBetween(FIUnitAt(units, index), 0xDC00, 0xDFFF)) return false;
        }
        ++characters;
        usual += FIIsUsualUnit(unit) ? 1U : 0U;
    }
    return usual * usualWhole > characters * usualShare;
}

}  // namespace

bool FIIsCleanText(FILook& look) { return FIAskTextBytes(look) != FITextBytes::NoText; }

std::uint32_t FICountEndMarks(FILook& look) {
    const std::span<const std::uint8_t> head = FILookAtHead(look);
    if (head.size() < look.size) return 0;
    constexpr char endMark = '\x1A';
    const std::size_t last = FITextOf(head).find_last_not_of(endMark);
    if (last == std::string_view::npos || (head[last] != '\n' && head[last] != '\r')) return 0;
    return static_cast<std::uint32_t>(head.size() - last - 1);
}

FIID FITellUtf16Text(FILook& look) {
    constexpr std::uint64_t smallest = 4;
    if (look.size == unknownSize || look.size < smallest || look.size % unitSize != 0) return 0;
    const std::span<const std::uint8_t> start = FILookAtStart(look);
    if (start.size() < unitSize) return 0;
    FIUnits units = {start.first(unitSize), false};
    units.isBigEndian = FIUnitAt(units, 0) != byteOrderMark;
    if (FIUnitAt(units, 0) != byteOrderMark) return 0;
    const std::span<const std::uint8_t> head = FILookAtHead(look);
    units.bytes = head.subspan(unitSize);
    return FIIsUtf16(units, head.size() < look.size) ? 20337 : 0;
}

FIID FITellUtf8Text(FILook& look) {
    if (FIAskTextBytes(look) != FITextBytes::WithHigh) return 0;
    const std::span<const std::uint8_t> head = FILookAtHead(look);
    return FIIsUtf8(head.data(), head.size(), head.size() < look.size) ? 20338 : 0;
}

FIID FITellBinary(FILook& look) { return FIIsCleanText(look) ? 0 : 20339; }
