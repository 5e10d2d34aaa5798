// raw_fax.cpp - headerless Group 3 one-dimensional fax data.
//
// Such data has no magic number. A stream is rows of run-length codes (fax_codes.h), and in front of each row stands an
// end-of-line mark: eleven zero bits and a one, with any number of fill zeros ahead of it. A row is believed when its
// runs add up to a standard width, and the data is believed when two rows agree:
//
//   Pixels in a row         Page at 8 pixels a millimetre (T.4)      at twice that
//   1728, 2048, 2432        A4, B4, A3                               3456, 4096, 4864
//
// The bits are taken least significant first. Data stored in the other order is not told.
//
// Source: ITU-T T.4.  Reads up to 2,048 bytes at 0.
#include "graphics/raw_fax.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "reader/handle_block.h"
#include "reader/head.h"

namespace {

constexpr FIID rawFaxFormat = 1505;

constexpr std::uint32_t scanSize = 2048;
constexpr std::size_t roomSize = 4096;  // a bit cursor may come to stand a little behind the data

constexpr std::uint32_t bitsPerByte = 8;
constexpr std::uint32_t markZeros = 11;
constexpr std::uint16_t lookupMask = (1U << faxLongestCode) - 1;

constexpr std::uint32_t standardWidths[] = {1728, 2048, 2432, 3456, 4096, 4864};
constexpr std::uint32_t leastWidth = standardWidths[0];
constexpr std::uint32_t mostWidth = standardWidths[std::size(standardWidths) - 1];

// Turns the bits of each byte round: its halves, their pairs, and the bits of these change places, in eight bytes at once.
void FIReverseFaxBytes(std::uint8_t* bytes, std::size_t count) {
    const auto swap = [](std::uint64_t eight, std::uint64_t mask, std::uint32_t distance) {
        return (eight & mask) << distance | (eight >> distance & mask);
    };
    const auto reverse = [&swap](std::uint8_t* start, std::size_t size) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, start, size);
        eight = swap(eight, 0x0F0F0F0F0F0F0F0F, 4);
        eight = swap(eight, 0x3333333333333333, 2);
        eight = swap(eight, 0x5555555555555555, 1);
        std::memcpy(start, &eight, size);
    };
    const std::size_t inEights = count - count % sizeof(std::uint64_t);
    for (std::size_t start = 0; start < inEights; start += sizeof(std::uint64_t))
        reverse(bytes + start, sizeof(std::uint64_t));
    reverse(bytes + inEights, count - inEights);
}

// A place in the stream.
struct FIFaxPosition {
    const std::uint8_t* byte;
    std::uint8_t bit;  // 0 to 7, 0 being the most significant
};

// Numbers whose first byte in memory is the most significant one. The builtins are one instruction, which g++ does not
// make of a loop.
std::uint32_t FILoadFourHighFirst(const std::uint8_t* bytes) {
    std::uint32_t number;
    std::memcpy(&number, bytes, sizeof(number));
    return std::endian::native == std::endian::little ? __builtin_bswap32(number) : number;
}

std::uint64_t FILoadEightHighFirst(const std::uint8_t* bytes) {
    std::uint64_t number;
    std::memcpy(&number, bytes, sizeof(number));
    return std::endian::native == std::endian::little ? __builtin_bswap64(number) : number;
}

// The next 64 bits from a byte on, the first one on top; zeros behind the end.
std::uint64_t FILoadFaxBits(const std::uint8_t* byte, const std::uint8_t* end) {
    constexpr std::ptrdiff_t size = sizeof(std::uint64_t);
    if (end - byte >= size) return FILoadEightHighFirst(byte);
    std::array<std::uint8_t, size> bytes = {};
    std::copy(byte, end, bytes.begin());
    return FILoadEightHighFirst(bytes.data());
}

// The bits with eleven zeros from them on in the same 64.
std::uint64_t FIFindMarkZeros(std::uint64_t bits) {
    static_assert(markZeros == 1 + 1 + 2 + 4 + 3);
    std::uint64_t zeros = ~bits;
    zeros &= zeros << 1;  // of two
    zeros &= zeros << 2;  // of four
    zeros &= zeros << 4;  // of eight
    return zeros & zeros << 3;
}

// Moves a position to the next one bit and behind it. False when the data ends first.
bool FIPassFaxZeros(FIFaxPosition& position, const std::uint8_t* end) {
    constexpr std::ptrdiff_t step = sizeof(std::uint64_t);
    std::uint32_t firstBit = position.bit;
    for (const std::uint8_t* byte = position.byte; byte < end; byte += std::min(step, end - byte)) {
        const std::uint64_t bits = FILoadFaxBits(byte, end) << firstBit;
        if (bits != 0) {
            const std::uint32_t next = firstBit + static_cast<std::uint32_t>(std::countl_zero(bits)) + 1;
            position = {byte + next / bitsPerByte, static_cast<std::uint8_t>(next % bitsPerByte)};
            return true;
        }
        firstBit = 0;
    }
    return false;
}

// Moves behind the next end-of-line mark that lies whole between the position and the end of the data: the first one bit
// with at least eleven zeros in front of it. Of 64 bits a run of zeros can start in the first 54, and the next look is
// at the bits from the 49th on, so that none is missed.
bool FIFindFaxMark(FIFaxPosition& position, const std::uint8_t* end) {
    constexpr std::ptrdiff_t step = 6;
    std::uint32_t firstBit = position.bit;
    for (const std::uint8_t* byte = position.byte; byte < end; byte += std::min(step, end - byte)) {
        const std::uint64_t bits = FILoadFaxBits(byte, end) | ~(~std::uint64_t{0} >> firstBit);
        firstBit = 0;
        const std::uint64_t zeros = FIFindMarkZeros(bits);
        if (zeros == 0) continue;
        const std::uint32_t behind = static_cast<std::uint32_t>(std::countl_zero(zeros)) + markZeros;
        position = {byte + behind / bitsPerByte, static_cast<std::uint8_t>(behind % bitsPerByte)};
        return FIPassFaxZeros(position, end);
    }
    return false;
}

// A row's bits, counted from the most significant one of the first byte on. Behind its bytes there are zeros.
struct FIFaxBits {
    const std::uint8_t* bytes;
    std::int64_t byteCount;

    std::uint32_t ByteAt(std::uint32_t index) const { return index < byteCount ? bytes[index] : 0; }

    // Four bytes from one of them on, the first one on top.
    std::uint32_t FourAt(std::uint32_t index) const {
        if (index + std::int64_t{4} <= byteCount) return FILoadFourHighFirst(bytes + index);
        return ByteAt(index) << 24 | ByteAt(index + 1) << 16 | ByteAt(index + 2) << 8 | ByteAt(index + 3);
    }

    // The 13 bits that end in front of a bit.
    std::uint16_t KeyBefore(std::uint32_t endBit) const {
        const std::uint32_t first = endBit - faxLongestCode;
        const std::uint32_t bitsBehind = 4 * bitsPerByte - faxLongestCode - first % bitsPerByte;
        return static_cast<std::uint16_t>(FourAt(first / bitsPerByte) >> bitsBehind & lookupMask);
    }
};

// Moves back by less than 16 bits.
void FIStepFaxBack(FIFaxPosition& position, std::uint32_t bits) {
    constexpr std::int32_t bytesBack = 2;
    const std::uint32_t bit = bytesBack * bitsPerByte + position.bit - bits;
    position.byte += static_cast<std::int32_t>(bit / bitsPerByte) - bytesBack;
    position.bit = static_cast<std::uint8_t>(bit % bitsPerByte);
}

// A code's run of pixels, by the code's index.
struct FIFaxCodeRun {
    std::uint16_t pixels;
    std::uint8_t length;         // of the code in bits
    std::uint8_t changesColour;  // 1 behind a terminating code
};

using FIFaxCodeRuns = std::array<FIFaxCodeRun, faxCodeCount>;

constexpr FIFaxCodeRuns FIMakeFaxCodeRuns(const FIFaxBytes& lengths) {
    FIFaxCodeRuns runs{};
    for (std::uint32_t index = 0; index < faxCodeCount; ++index) {
        const bool terminating = index < faxFirstMakeUp;
        runs[index] = {static_cast<std::uint16_t>(FIGetFaxRunPixels(index)), lengths[index], std::uint8_t{terminating}};
    }
    return runs;
}

// White and black.
constexpr FIFaxCodeRuns faxCodeRuns[] = {FIMakeFaxCodeRuns(faxWhiteLengths), FIMakeFaxCodeRuns(faxBlackLengths)};

// A row being decoded.
struct FIFaxRow {
    FIFaxBits bits;
    const std::uint8_t* lookups[2];  // white and black
    std::uint32_t next;              // the bit where the next code starts
    std::uint32_t codeLength;        // of the last code
    std::uint32_t colour = 0;
    std::uint32_t total = 0;  // pixels

    // Takes the code that a key starts with. False when there is none.
    bool Take(std::uint64_t key) {
        const std::uint8_t index = lookups[colour][key];
        if (index == faxNoCode) return false;
        const FIFaxCodeRun& run = faxCodeRuns[colour][index];
        next += run.length;
        codeLength = run.length;
        total += run.pixels;
        colour ^= run.changesColour;
        return true;
    }
};

// 54 ones are nine times 1111 and 11, the white run of 7 and the black run of 2. Unused parts of binary files are
// full of them.
constexpr std::uint32_t onesTaken = 54;
static_assert(faxRuns[7].white == "1111" && faxRuns[2].black == "11");

// Takes that many ones at once, if they stand on top of the 64 bits, the next code is a white one and the codes are the
// usual ones.
bool FITakeOnes(FIFaxRow& row, std::uint64_t window) {
    constexpr std::uint64_t ones = (std::uint64_t{1} << onesTaken) - 1;
    constexpr std::uint32_t pairs = onesTaken / (4 + 2);
    if (row.colour != 0 || window >> (64 - onesTaken) != ones) return false;
    if (row.lookups[0][lookupMask] != 7 || row.lookups[1][lookupMask] != 2) return false;
    row.next += onesTaken;
    row.total += pairs * (7 + 2);
    row.codeLength = 2;
    return true;
}

// Takes codes out of 64 bits at a time, as long as the end of the data is far: no code here uses up the last byte. False
// when it stopped at a bad code.
bool FITakeFarCodes(FIFaxRow& row, std::uint32_t mostPixels) {
    constexpr std::uint32_t windowBits = 64;
    constexpr std::int64_t farBytes = 16;
    while (row.next / bitsPerByte + farBytes <= row.bits.byteCount && row.total <= mostPixels) {
        const std::uint32_t firstBit = row.next % bitsPerByte;
        std::uint64_t window = FILoadEightHighFirst(row.bits.bytes + row.next / bitsPerByte) << firstBit;
        const std::uint32_t lastStart = row.next + windowBits - firstBit - faxLongestCode;
        if (FITakeOnes(row, window)) continue;
        while (row.next <= lastStart) {
            if (!row.Take(window >> (windowBits - faxLongestCode))) return false;
            window <<= row.codeLength;
        }
    }
    return true;
}

bool FIIsStandardWidth(std::uint32_t pixels) {
    return pixels >= leastWidth && std::ranges::find(standardWidths, pixels) != std::end(standardWidths);
}

// Whether the row at a position may have a standard width. Most rows that are none end after a few codes, far from the end
// of the data, and nobody asks where.
bool FIMayHaveWidth(const FIFaxPosition& position, const std::uint8_t* end) {
    FIFaxRow row = {{position.byte, end - position.byte},
                    {faxWhiteLookup.data(), faxBlackLookup.data()},
                    position.bit,
                    faxLongestCode};
    return FITakeFarCodes(row, mostWidth) ? row.total <= mostWidth : FIIsStandardWidth(row.total);
}

// Takes codes one by one up to the end of the data. Returns the bit behind the last 13 that were looked at.
//
// Quirk: the end of the data stops a row when its last code uses up the last byte and no more. A code that steps over
// the end lets the row run on into the zeros there, where the next key that is no code stops it.
std::uint32_t FITakeNearCodes(FIFaxRow& row) {
    std::uint32_t taken = row.next + faxLongestCode - row.codeLength;
    while (std::int64_t{taken / bitsPerByte} != row.bits.byteCount) {
        taken = row.next + faxLongestCode;
        if (!row.Take(row.bits.KeyBefore(taken))) break;
    }
    return taken;
}

// FIDecodeFaxRow over the bytes from a position to the end, up to so many pixels: a row of more is none of a standard
// width, and the position then lies anywhere in it.
std::uint16_t FIDecodeRow(FIFaxPosition& position, std::int32_t rowBytesLeft, const FIFaxLookup& whiteLookup,
                          const FIFaxLookup& blackLookup, std::uint32_t mostPixels) {
    FIFaxRow row = {
        {position.byte, rowBytesLeft}, {whiteLookup.data(), blackLookup.data()}, position.bit, faxLongestCode};
    const bool goesOn = FITakeFarCodes(row, mostPixels);
    if (row.total > mostPixels) return 0;
    const std::uint32_t taken = goesOn ? FITakeNearCodes(row) : row.next + faxLongestCode;
    position = {position.byte + taken / bitsPerByte, static_cast<std::uint8_t>(taken % bitsPerByte)};
    // Quirk: the cursor goes back by 13 minus the length of the last code that was good. That is right for a row that
    // the end of the data stopped. When a bad code stopped it, all its 13 bits were fetched, and the cursor comes to
    // stand inside of it: mostly inside the mark that ends the row. The search then passes over that mark unless enough
    // fill zeros stand in front of it, and the row compared with this one is the next but one.
    FIStepFaxBack(position, faxLongestCode - row.codeLength);
    return FIIsStandardWidth(row.total) ? static_cast<std::uint16_t>(row.total) : std::uint16_t{0};
}

// Decodes the row at a position, which moves as FIDecodeFaxRow moves its cursor if the row has a width.
std::uint16_t FIDecodeFaxRowAt(FIFaxPosition& position, const std::uint8_t* end) {
    return FIDecodeRow(position, static_cast<std::int32_t>(end - position.byte), faxWhiteLookup, faxBlackLookup,
                       mostWidth);
}

}  // namespace

std::uint16_t FIDecodeFaxRow(const std::uint8_t*& bitCursor, const FIFaxLookup& whiteLookup,
                             const FIFaxLookup& blackLookup, std::uint8_t& bitPosition, std::int32_t rowBytesLeft) {
    FIFaxPosition position = {bitCursor, bitPosition};
    const std::uint16_t width = FIDecodeRow(position, rowBytesLeft, whiteLookup, blackLookup, UINT32_MAX);
    bitCursor = position.byte;
    bitPosition = position.bit;
    return width;
}

std::uint16_t FIScanFaxBuffer(std::uint8_t* buffer, std::uint16_t count) {
    const std::uint8_t* const end = buffer + count;
    FIReverseFaxBytes(buffer, count);

    FIFaxPosition scan = {buffer, 0};
    FIFaxPosition rowEnd = scan;
    std::uint16_t firstWidth = 0;
    while (firstWidth == 0) {
        if (!FIFindFaxMark(scan, end)) return 0;
        if (!FIMayHaveWidth(scan, end)) continue;
        rowEnd = scan;  // the scan itself stays behind the mark and does not move over a row without a width
        firstWidth = FIDecodeFaxRowAt(rowEnd, end);
    }
    // The first row with a width decides, together with the one behind the next mark: a mismatch does not start again.
    if (!FIFindFaxMark(rowEnd, end)) return 0;
    return FIDecodeFaxRowAt(rowEnd, end) == firstWidth ? 1 : 0;
}

// Eleven zeros in a row that no NUL is part of lie in two bytes: at most 7 in the high bits of the first and at most 7 in
// the low bits of the second. The first is then 0F or less. Of the soft control characters, 08 to 0D, which have 4 zeros
// on top, the second has to be 80 with its 7; any other control character just opens the gate.
bool FIMayBeRawFax(FIHead& head) {
    if (FIAnyInHead(head, scanSize, FIHardControls)) return true;
    std::uint64_t carry = 0;  // whether the byte in front of these 64 is soft
    const auto behindSoft = [&carry](const FIByteMasks& masks) {
        const std::uint64_t behind = masks.soft << 1 | carry;
        carry = masks.soft >> (byteMaskSpan - 1);
        return behind & masks.high;
    };
    return FIVisitHead(head, scanSize, behindSoft, [&head](std::uint64_t bits, std::uint32_t start) {
        for (; bits != 0; bits &= bits - 1) {
            if (head.bytes[start + static_cast<std::uint32_t>(std::countr_zero(bits))] == 0x80) return true;
        }
        return false;
    });
}

FIID FIProbeRawFax(FIReader& reader) {
    std::uint8_t buffer[roomSize];
    std::uint32_t count = 0;
    if (!FICopyHead(reader, buffer, scanSize, count) &&
        (FIRewindHandle(reader) != 0 || FIReadBlock(reader, buffer, scanSize, count) != 0)) {
        return 0;
    }
    return FIScanFaxBuffer(buffer, static_cast<std::uint16_t>(count)) != 0 ? rawFaxFormat : FIID{0};
}
