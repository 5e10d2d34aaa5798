// fax_gate.cpp - whether a file's head may be raw fax: the scan of raw_fax.cpp without its last word.
//
// Binary files are full of zeros that look like end-of-line marks, so that a row is tried behind each of them. This scan
// tries them as the routine does, but stops a row as soon as it can have no standard width, takes the bits as they lie in
// the file, and looks at 64 of them at a time. It opens for two rows of one standard width, and for rows near the end of
// the data that may have one. The routine then finds them by itself.
#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "graphics/fax_codes.h"
#include "graphics/raw_fax.h"
#include "reader/head.h"
#include "reader/little_endian.h"

namespace {

constexpr std::uint32_t bitsPerByte = 8;
constexpr std::uint32_t windowBits = 64;
constexpr std::uint32_t markZeros = 11;

// ---- Bits ----------------------------------------------------------------------------------------------------------

// The data as a stream of bits, the least significant bit of each byte first.
struct FIFaxStream {
    const std::uint8_t* bytes;
    std::uint32_t size;  // bytes

    std::uint32_t BitCount() const { return size * bitsPerByte; }

    // The 64 bits from a byte on, the first one lowest; zeros behind the end.
    std::uint64_t WindowAt(std::uint32_t byte) const {
        if (byte + sizeof(std::uint64_t) <= size) return FILoadQWordLE(bytes + byte);
        std::array<std::uint8_t, sizeof(std::uint64_t)> rest = {};
        std::copy(bytes + byte, bytes + size, rest.begin());
        return FILoadQWordLE(rest.data());
    }
};

// The bits with eleven zeros from them on in the same 64.
std::uint64_t FIFindMarkZeros(std::uint64_t window) {
    static_assert(markZeros == 1 + 1 + 2 + 4 + 3);
    std::uint64_t zeros = ~window;
    zeros &= zeros >> 1;  // of two
    zeros &= zeros >> 2;  // of four
    zeros &= zeros >> 4;  // of eight
    return zeros & zeros >> 3;
}

// The bit behind the next one bit from a bit on; 0 when the data ends first.
std::uint32_t FIBehindNextOne(const FIFaxStream& stream, std::uint32_t bit) {
    std::uint32_t firstBit = bit % bitsPerByte;
    for (std::uint32_t byte = bit / bitsPerByte; byte < stream.size; byte += sizeof(std::uint64_t)) {
        const std::uint64_t window = stream.WindowAt(byte) >> firstBit << firstBit;
        if (window != 0) return byte * bitsPerByte + static_cast<std::uint32_t>(std::countr_zero(window)) + 1;
        firstBit = 0;
    }
    return 0;
}

// The bit behind the next end-of-line mark, which is the first one bit with at least eleven zeros in front of it; 0 when
// the data ends first. Of 64 bits a run of zeros can start in the first 54, and the next look is at the bits from the
// 49th on, so that none is missed.
std::uint32_t FIBehindNextMark(const FIFaxStream& stream, std::uint32_t bit) {
    constexpr std::uint32_t step = 6;
    std::uint64_t bitsInFront = (std::uint64_t{1} << bit % bitsPerByte) - 1;  // count as ones
    for (std::uint32_t byte = bit / bitsPerByte; byte < stream.size; byte += step) {
        const std::uint64_t zeros = FIFindMarkZeros(stream.WindowAt(byte) | bitsInFront);
        bitsInFront = 0;
        if (zeros == 0) continue;
        const std::uint32_t first = byte * bitsPerByte + static_cast<std::uint32_t>(std::countr_zero(zeros));
        return FIBehindNextOne(stream, first + markZeros);
    }
    return 0;
}

// ---- Codes ---------------------------------------------------------------------------------------------------------

// What a code, or a few codes in a row, does to a row of pixels. In 32 bits, so that a look brings all of it:
//
//   Bits       Field
//    0 to  7   length of the codes in bits; 0 for no code
//          8   1 when the colour is another one behind them
//   12 to 15   length of the last of them
//   16 to 31   pixels of their runs
struct FIFaxStep {
    std::uint32_t packed;

    constexpr std::uint32_t Length() const { return packed & 0xFF; }
    constexpr std::uint32_t ChangesColour() const { return packed >> 8 & 1; }
    constexpr std::uint32_t LastLength() const { return packed >> 12 & 0x0F; }
    constexpr std::uint32_t Pixels() const { return packed >> 16; }
};

constexpr FIFaxStep noStep = {1U << 16};  // no code starts so
constexpr FIFaxStep longerStep = {0};     // a code of more bits may

constexpr FIFaxStep FIMakeFaxStep(std::uint8_t index, const FIFaxBytes& lengths) {
    if (index == faxNoCode) return noStep;
    const bool terminating = index < faxFirstMakeUp;
    const std::uint32_t length = lengths[index];
    return {FIGetFaxRunPixels(index) << 16 | length << 12 | std::uint32_t{terminating} << 8 | length};
}

// One behind the other.
constexpr FIFaxStep FIJoinFaxSteps(FIFaxStep first, FIFaxStep second) {
    const std::uint32_t changes = first.ChangesColour() ^ second.ChangesColour();
    return {(first.Pixels() + second.Pixels()) << 16 | second.Length() << 12 | changes << 8 |
            (first.Length() + second.Length())};
}

constexpr std::array<std::uint8_t, 256> FIMakeReversedBytes() {
    std::array<std::uint8_t, 256> reversed{};
    for (std::uint32_t byte = 0; byte < reversed.size(); ++byte) {
        for (std::uint32_t bit = 0; bit < bitsPerByte; ++bit) {
            if ((byte >> bit & 1) != 0) reversed[byte] = static_cast<std::uint8_t>(reversed[byte] | 0x80U >> bit);
        }
    }
    return reversed;
}

constexpr std::array<std::uint8_t, 256> reversedBytes = FIMakeReversedBytes();

// The next 13 bits, the first one lowest, as the key of a look-up, which has the first one on top.
constexpr std::uint32_t FIMakeFaxKey(std::uint64_t window) {
    const std::uint32_t sixteen =
        std::uint32_t{reversedBytes[window & 0xFF]} << bitsPerByte | reversedBytes[window >> bitsPerByte & 0xFF];
    return sixteen >> (2 * bitsPerByte - faxLongestCode);
}

// The step of the one code that the next bits start with.
constexpr FIFaxStep FIFindFaxStep(std::uint32_t colour, std::uint64_t window) {
    const std::uint32_t key = FIMakeFaxKey(window);
    return colour == 0 ? FIMakeFaxStep(faxWhiteLookup[key], faxWhiteLengths)
                       : FIMakeFaxStep(faxBlackLookup[key], faxBlackLengths);
}

constexpr std::uint32_t groupKeyBits = 10;
constexpr std::uint32_t groupKeyMask = (1U << groupKeyBits) - 1;
using FIFaxGroups = std::array<FIFaxStep, std::size_t{1} << groupKeyBits>;

// Whether no code starts with these bits, whatever comes behind them.
constexpr bool FIStartsNoCode(std::uint32_t colour, std::uint32_t key) {
    for (std::uint32_t behind = 0; behind < 1U << (faxLongestCode - groupKeyBits); ++behind) {
        if (FIFindFaxStep(colour, key | behind << groupKeyBits).Length() != 0) return false;
    }
    return true;
}

// The codes that lie whole in the ten bits of a key: one or two, seldom more. Zeros stand for the bits behind them, which
// change nothing for a code that ends in front of those.
constexpr FIFaxStep FIMakeFaxGroup(std::uint32_t colour, std::uint32_t key) {
    FIFaxStep group = FIFindFaxStep(colour, key);
    if (group.Length() == 0 || group.Length() > groupKeyBits) return FIStartsNoCode(colour, key) ? noStep : longerStep;
    while (true) {
        const FIFaxStep next = FIFindFaxStep(colour ^ group.ChangesColour(), key >> group.Length());
        if (next.Length() == 0 || group.Length() + next.Length() > groupKeyBits) return group;
        group = FIJoinFaxSteps(group, next);
    }
}

constexpr FIFaxGroups FIMakeFaxGroups(std::uint32_t colour) {
    FIFaxGroups groups{};
    for (std::uint32_t key = 0; key < groups.size(); ++key) groups[key] = FIMakeFaxGroup(colour, key);
    return groups;
}

// By the colour of the first code, white and black. Small enough to stay near the processor while a file's rows are tried.
constexpr FIFaxGroups faxGroups[] = {FIMakeFaxGroups(0), FIMakeFaxGroups(1)};

// The step of the code, or of some codes, that the next bits start with.
FIFaxStep FIFindFaxGroup(std::uint32_t colour, std::uint64_t window) {
    const FIFaxStep group = faxGroups[colour][window & groupKeyMask];
    return group.packed != longerStep.packed ? group : FIFindFaxStep(colour, window);
}

// ---- Rows ----------------------------------------------------------------------------------------------------------

struct FIMeasuredRow {
    std::uint32_t next;        // the bit where the next code starts
    std::uint32_t colour = 0;  // 0 for white
    std::uint32_t pixels = 0;
    std::uint32_t lastLength = faxLongestCode;  // of the last code, in bits
};

// 54 ones are nine times 1111 and 11, the white run of 7 and the black run of 2. Unused parts of binary files are full of
// them.
constexpr std::uint32_t onesTaken = 54;
static_assert(faxRuns[7].white == "1111" && faxRuns[2].black == "11");

// Takes that many ones at once, if they come next and the next code is a white one.
bool FITakeOnes(FIMeasuredRow& row, std::uint64_t window) {
    constexpr std::uint64_t ones = (std::uint64_t{1} << onesTaken) - 1;
    constexpr std::uint32_t pairs = onesTaken / (4 + 2);
    if (row.colour != 0 || (window & ones) != ones) return false;
    row.next += onesTaken;
    row.pixels += pairs * (7 + 2);
    row.lastLength = 2;
    return true;
}

// Takes the codes that lie in so many bits. False when it stopped at a bad code. The loop works in variables of its own: the
// compiler would have to think that a look reads the row.
bool FITakeCodes(FIMeasuredRow& row, std::uint64_t window, std::uint32_t bits) {
    std::uint32_t colour = row.colour;
    std::uint32_t pixels = row.pixels;
    std::uint32_t lastLength = row.lastLength;
    std::uint32_t left = bits;
    bool good = true;
    while (left >= faxLongestCode) {
        const FIFaxStep step = FIFindFaxGroup(colour, window);
        good = step.Length() != 0;
        if (!good) break;
        window >>= step.Length();
        left -= step.Length();
        lastLength = step.LastLength();
        pixels += step.Pixels();
        colour ^= step.ChangesColour();
    }
    row = {row.next + bits - left, colour, pixels, lastLength};
    return good;
}

constexpr std::uint32_t widestRow = faxStandardWidths[std::size(faxStandardWidths) - 1];

bool FIIsStandardWidth(std::uint32_t pixels) {
    return pixels >= faxStandardWidths[0] &&
           std::ranges::find(faxStandardWidths, pixels) != std::end(faxStandardWidths);
}

// How a row that is measured ends.
enum class FIRowEnd : std::uint8_t {
    badCode,  // at a code that is none, far from the end of the data
    tooWide,  // not looked for: it is wider than all standard widths
    nearEnd,  // not looked for: the end of the data may stop it behind any code
};

// Measures the row that starts at row.next.
FIRowEnd FIMeasureRow(const FIFaxStream& stream, FIMeasuredRow& row) {
    constexpr std::uint32_t farBytes = 16;
    while (row.next / bitsPerByte + farBytes <= stream.size) {
        const std::uint32_t firstBit = row.next % bitsPerByte;
        const std::uint64_t window = stream.WindowAt(row.next / bitsPerByte) >> firstBit;
        if (!FITakeOnes(row, window) && !FITakeCodes(row, window, windowBits - firstBit)) return FIRowEnd::badCode;
        if (row.pixels > widestRow) return FIRowEnd::tooWide;
    }
    return FIRowEnd::nearEnd;
}

// Goes on with a row near the end of the data, behind which there are zeros. Whether it has a standard width where it ends:
// at a bad code, or when the 13 bits of its last code use up the last byte and no more.
bool FIEndsWithWidth(const FIFaxStream& stream, FIMeasuredRow row) {
    while ((row.next - row.lastLength + faxLongestCode) / bitsPerByte != stream.size) {
        const std::uint32_t byte = std::min(row.next / bitsPerByte, stream.size);
        const std::uint64_t window = byte < stream.size ? stream.WindowAt(byte) >> row.next % bitsPerByte : 0;
        const FIFaxStep step = FIFindFaxStep(row.colour, window);
        if (step.Length() == 0) break;
        row = {row.next + step.Length(), row.colour ^ step.ChangesColour(), row.pixels + step.Pixels(), step.Length()};
    }
    return FIIsStandardWidth(row.pixels);
}

// Whether behind the first row, which a bad code ended, a second row may have its width: see FIDecodeFaxRow for where the
// search for the mark in front of it starts.
bool FIMayRepeatWidth(const FIFaxStream& stream, const FIMeasuredRow& first) {
    const std::uint32_t start = FIBehindNextMark(stream, first.next + first.lastLength);
    if (start == 0) return false;
    FIMeasuredRow second = {start};
    const FIRowEnd end = FIMeasureRow(stream, second);
    return end == FIRowEnd::nearEnd || (end == FIRowEnd::badCode && second.pixels == first.pixels);
}

// ---- Gate ----------------------------------------------------------------------------------------------------------

// Whether the zeros of a mark can stand in the head, by its masks: no text has them.
//
// Eleven zeros in a row that no NUL is part of lie in two bytes: at most 7 in the high bits of the first and at most 7 in
// the low bits of the second. The first is then 0F or less. Of the soft control characters, 08 to 0D, which have 4 zeros
// on top, the second has to be 80 with its 7; any other control character is taken for the zeros.
bool FIMayHoldMark(FIHead& head) {
    if (FIAnyInHead(head, faxScanSize, FIHardControls)) return true;
    std::uint64_t carry = 0;  // whether the byte in front of these 64 is soft
    const auto behindSoft = [&carry](const FIByteMasks& masks) {
        const std::uint64_t behind = masks.soft << 1 | carry;
        carry = masks.soft >> (byteMaskSpan - 1);
        return behind & masks.high;
    };
    return FIVisitHead(head, faxScanSize, behindSoft, [&head](std::uint64_t bits, std::uint32_t start) {
        for (; bits != 0; bits &= bits - 1) {
            if (head.bytes[start + static_cast<std::uint32_t>(std::countr_zero(bits))] == 0x80) return true;
        }
        return false;
    });
}

}  // namespace

bool FIMayBeRawFax(FIHead& head) {
    if (!FIMayHoldMark(head)) return false;
    const FIFaxStream stream = {head.bytes, std::min(head.size, faxScanSize)};
    std::uint32_t bit = 0;
    while ((bit = FIBehindNextMark(stream, bit)) != 0) {
        FIMeasuredRow row = {bit};
        const FIRowEnd end = FIMeasureRow(stream, row);
        if (end == FIRowEnd::nearEnd && FIEndsWithWidth(stream, row)) return true;
        if (end == FIRowEnd::badCode && FIIsStandardWidth(row.pixels)) return FIMayRepeatWidth(stream, row);
    }
    return false;
}
