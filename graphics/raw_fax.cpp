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
#include <iterator>

#include "reader/handle_block.h"

namespace {

constexpr FIID rawFaxFormat = 1505;

constexpr std::size_t roomSize = 4096;  // a bit cursor may come to stand a little behind the data

constexpr std::uint32_t bitsPerByte = 8;
constexpr std::uint32_t markZeros = 11;
constexpr std::uint16_t lookupMask = (1U << faxLongestCode) - 1;

// Entry b is b with its eight bits in the opposite order.
constexpr std::array<std::uint8_t, 256> FIMakeReversedBytes() {
    std::array<std::uint8_t, 256> reversed{};
    for (std::uint32_t byte = 0; byte < reversed.size(); ++byte) {
        for (std::uint32_t bit = 0; bit < bitsPerByte; ++bit) {
            if ((byte >> bit & 1) != 0) reversed[byte] = static_cast<std::uint8_t>(reversed[byte] | 0x80 >> bit);
        }
    }
    return reversed;
}

constexpr std::array<std::uint8_t, 256> reversedBytes = FIMakeReversedBytes();

// A place in the stream.
struct FIFaxPosition {
    const std::uint8_t* byte;
    std::uint8_t bit;  // 0 to 7, 0 being the most significant
};

// Moves behind the next end-of-line mark that lies whole between the position and the end of the data. The mark is the
// first one bit with at least eleven zeros in front of it, so whole bytes can be passed over by their runs of zeros.
bool FIFindFaxMark(FIFaxPosition& position, const std::uint8_t* end) {
    std::uint32_t zeros = 0;  // in a row, up to the byte looked at
    std::uint32_t firstBit = position.bit;
    for (const std::uint8_t* byte = position.byte; byte < end; ++byte) {
        const auto bits = static_cast<std::uint8_t>(*byte << firstBit);  // from firstBit on, zeros behind
        if (bits == 0) {
            zeros += bitsPerByte - firstBit;
        } else {
            const auto leading = static_cast<std::uint32_t>(std::countl_zero(bits));
            if (zeros + leading >= markZeros) {
                const std::uint32_t next = firstBit + leading + 1;
                position.byte = byte + next / bitsPerByte;
                position.bit = static_cast<std::uint8_t>(next % bitsPerByte);
                return true;
            }
            zeros = static_cast<std::uint32_t>(std::countr_zero(*byte));
        }
        firstBit = 0;
    }
    return false;
}

// Decodes the row at a position, which moves as FIDecodeFaxRow moves its cursor.
std::uint16_t FIDecodeFaxRowAt(FIFaxPosition& position, const std::uint8_t* end) {
    return FIDecodeFaxRow(position.byte, faxWhiteLookup, faxBlackLookup, position.bit,
                          static_cast<std::int32_t>(end - position.byte));
}

// Shifts the next bits of the stream into the low end of a register. Lowers rowBytesLeft with every byte that is used
// up, on beyond 0 if the fetch goes on there; the stream holds zeros behind the data.
std::uint16_t FIFetchFaxBits(FIFaxPosition& position, std::uint32_t bits, std::int32_t& rowBytesLeft,
                             std::uint16_t lastBits) {
    std::uint32_t fetched = lastBits;
    while (bits > 0) {
        const std::uint32_t bitsLeft = bitsPerByte - position.bit;
        const std::uint32_t taken = std::min(bits, bitsLeft);
        const std::uint32_t byte = rowBytesLeft > 0 ? *position.byte : 0;
        fetched = fetched << taken | (byte >> (bitsLeft - taken) & faxBitMask[taken]);
        bits -= taken;
        if (taken < bitsLeft) {
            position.bit = static_cast<std::uint8_t>(position.bit + taken);
        } else {
            ++position.byte;
            position.bit = 0;
            --rowBytesLeft;
        }
    }
    return static_cast<std::uint16_t>(fetched & lookupMask);
}

// Moves back by less than 16 bits.
void FIStepFaxBack(FIFaxPosition& position, std::uint32_t bits) {
    constexpr std::int32_t bytesBack = 2;
    const std::uint32_t bit = bytesBack * bitsPerByte + position.bit - bits;
    position.byte += static_cast<std::int32_t>(bit / bitsPerByte) - bytesBack;
    position.bit = static_cast<std::uint8_t>(bit % bitsPerByte);
}

}  // namespace

std::uint16_t FIDecodeFaxRow(const std::uint8_t*& bitCursor, const FIFaxLookup& whiteLookup,
                             const FIFaxLookup& blackLookup, std::uint8_t& bitPosition, std::int32_t rowBytesLeft) {
    FIFaxPosition position = {bitCursor, bitPosition};
    bool isWhite = true;
    std::uint32_t total = 0;
    std::uint16_t nextBits = 0;
    std::uint32_t codeLength = faxLongestCode;  // of the last code; the register slides by it
    // Quirk: the end of the data stops a row when a fetch uses up the last byte and no more. A fetch that steps over
    // the end lets the row run on into the zeros there, where the next key that is no code stops it.
    while (rowBytesLeft != 0) {
        nextBits = FIFetchFaxBits(position, codeLength, rowBytesLeft, nextBits);
        const std::uint8_t index = (isWhite ? whiteLookup : blackLookup)[nextBits];
        if (index == faxNoCode) break;
        codeLength = isWhite ? faxWhiteLengths[index] : faxBlackLengths[index];
        total += FIGetFaxRunPixels(index);
        if (index < faxFirstMakeUp) isWhite = !isWhite;
    }
    // Quirk: the cursor goes back by 13 minus the length of the last code that was good. That is right for a row that
    // the end of the data stopped. When a bad code stopped it, all its 13 bits were fetched, and the cursor comes to
    // stand inside of it: mostly inside the mark that ends the row. The search then passes over that mark unless enough
    // fill zeros stand in front of it, and the row compared with this one is the next but one.
    FIStepFaxBack(position, faxLongestCode - codeLength);
    bitCursor = position.byte;
    bitPosition = position.bit;
    const bool isStandard = std::ranges::find(faxStandardWidths, total) != std::end(faxStandardWidths);
    return isStandard ? static_cast<std::uint16_t>(total) : std::uint16_t{0};
}

std::uint16_t FIScanFaxBuffer(std::uint8_t* buffer, std::uint16_t count) {
    const std::uint8_t* const end = buffer + count;
    std::transform(buffer, buffer + count, buffer, [](std::uint8_t byte) { return reversedBytes[byte]; });

    FIFaxPosition scan = {buffer, 0};
    FIFaxPosition rowEnd = scan;
    std::uint16_t firstWidth = 0;
    while (firstWidth == 0) {
        if (!FIFindFaxMark(scan, end)) return 0;
        rowEnd = scan;  // the scan itself stays behind the mark and does not move over a row without a width
        firstWidth = FIDecodeFaxRowAt(rowEnd, end);
    }
    // The first row with a width decides, together with the one behind the next mark: a mismatch does not start again.
    if (!FIFindFaxMark(rowEnd, end)) return 0;
    return FIDecodeFaxRowAt(rowEnd, end) == firstWidth ? 1 : 0;
}

FIID FIProbeRawFax(FIReader& reader) {
    std::uint8_t buffer[roomSize];
    std::uint32_t count = 0;
    if (!FICopyHead(reader, buffer, faxScanSize, count) &&
        (FIRewindHandle(reader) != 0 || FIReadBlock(reader, buffer, faxScanSize, count) != 0)) {
        return 0;
    }
    return FIScanFaxBuffer(buffer, static_cast<std::uint16_t>(count)) != 0 ? rawFaxFormat : FIID{0};
}
