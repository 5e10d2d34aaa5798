// trailers.cpp - word-processor documents told by a trailer, an escape sequence, scattered codes or a checksum.
//
// The trailer that FIProbeLayoutTrailer looks for in a file whose size is a multiple of 128, or one more:
//
//   Size  Field         Accepted
//     14  marker        1A 1A "LAYOUT 000" 0D 0A
//      -  fill          1A up to the next multiple of 128; 128 bytes of it when the marker ends at one
//      2                any
//      1  variant       0 to 2: 1020; 3 and above: 1024
//
// Of the last 5,121 bytes at most it reads one byte in 128 until one is 1A. From 255 bytes in front of that one on it
// reads each byte until the trailer is found.
//
// The header of FIProbeWordChecksum, behind a signature of 4 bytes; all little-endian:
//
//   Offset  Size  Field         Accepted
//        4     2  range end     excluded, less 32; the end lies at 2,048 or in front of it
//        6     2  range start   included, less 32
//        8     2  check value   65,536 less the 16-bit sum of the range's words
#include "wordproc/trailers.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "reader/file_end.h"
#include "reader/head.h"
#include "reader/reader.h"

namespace {

// ---- FIProbeLayoutTrailer -------------------------------------------------------------------------------------------

constexpr std::uint32_t strideSize = 128;
constexpr std::uint32_t largestRemainder = 1;
constexpr std::uint32_t searchedTail = 5120;
constexpr std::uint32_t markerSearchBack = 256;
constexpr std::uint16_t fillByte = 0x1A;
constexpr std::uint16_t bytesBeforeVariant = 2;
constexpr std::uint16_t lastVariant1020 = 2;

constexpr std::array<std::uint8_t, 14> layoutMarker = {0x1A, 0x1A, 'L', 'A', 'Y', 'O',  'U',
                                                       'T',  ' ',  '0', '0', '0', 0x0D, 0x0A};

// Quirk: of a large file whose size is a multiple of 128, the part looked through is one byte longer, so that the
// strides meet other bytes than in a small file or in one whose size is one more.
std::uint32_t FIFirstStride(std::uint32_t size) {
    if (size <= searchedTail) return 0;
    return size % strideSize == 1 ? size - searchedTail : size - searchedTail - 1;
}

// Takes the last byte of each stride until one is a fill byte; the reader then stands behind it.
bool FIFindFill(FIReader& reader) {
    while (true) {
        const std::uint32_t position = FIReaderTell(reader);
        const std::uint32_t lastOfStride = position + strideSize - 1;
        // Close to 4 GiB the next stride would start over at the front of the file, and again and again.
        if (lastOfStride < position || FIReaderSeek(reader, lastOfStride) != 0) return false;
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == endOfFile) return false;
        if (byte == fillByte) return true;
    }
}

// Quirk: in the first 255 bytes the target wraps below 0. A handle refuses that, and the search starts at 0.
bool FIGoBackForMarker(FIReader& reader) {
    return FIReaderSeek(reader, FIReaderTell(reader) - markerSearchBack) == 0 || FIReaderSeek(reader, 0) == 0;
}

// Quirk: a byte that breaks a match is not tried as the first byte of another one, so that of a run of 1A in front of
// the text only one of 2, 5, 8 and so on bytes is found.
bool FIFindMarker(FIReader& reader) {
    std::size_t matched = 0;
    while (matched < layoutMarker.size()) {
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == endOfFile) return false;
        matched = byte == layoutMarker[matched] ? matched + 1 : 0;
    }
    return true;
}

enum class FIFill { complete, broken, endOfFile };

// Takes fill bytes up to a multiple of 128; at least one, so that behind a marker that ends at a multiple 128 are
// needed.
FIFill FITakeFill(FIReader& reader) {
    std::uint32_t position = FIReaderTell(reader);
    do {
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == endOfFile) return FIFill::endOfFile;
        if (byte != fillByte) return FIFill::broken;
        ++position;
    } while (position % strideSize != 0);
    return FIFill::complete;
}

// Finds a marker with its whole fill; behind any other marker the search goes on.
bool FIFindFilledMarker(FIReader& reader) {
    FIFill fill = FIFill::broken;
    while (fill == FIFill::broken) {
        if (!FIFindMarker(reader)) return false;
        fill = FITakeFill(reader);
    }
    return fill == FIFill::complete;
}

// ---- FIProbeEscapeHeader --------------------------------------------------------------------------------------------

constexpr std::uint16_t escape = 0x1B;

// ---- FIProbePipeCodes -----------------------------------------------------------------------------------------------

constexpr std::uint16_t pipeBytes = 100;
constexpr std::uint32_t pipeOffset1021 = 120;
constexpr std::uint32_t pipeOffset1077 = 118;

enum class FIPipeState : std::uint8_t { outside, pipe, pipeN, at, secondPipe, complete };

// State       Byte      Next state
// outside     7C        pipe
// pipe        'N'       pipeN        any other: outside, also a second 7C
// pipeN       40        at
// at          7C        secondPipe
// secondPipe  'O'       complete     any other: at, also a third 7C
// complete    -
FIPipeState FINextPipeState(FIPipeState state, std::uint16_t byte) {
    switch (state) {
        case FIPipeState::outside:
            return byte == 0x7C ? FIPipeState::pipe : FIPipeState::outside;
        case FIPipeState::pipe:
            return byte == 'N' ? FIPipeState::pipeN : FIPipeState::outside;
        case FIPipeState::pipeN:
            return byte == 0x40 ? FIPipeState::at : FIPipeState::pipeN;
        case FIPipeState::at:
            return byte == 0x7C ? FIPipeState::secondPipe : FIPipeState::at;
        case FIPipeState::secondPipe:
            return byte == 'O' ? FIPipeState::complete : FIPipeState::at;
        case FIPipeState::complete:
            break;
    }
    return FIPipeState::complete;
}

// ---- FIProbeWordChecksum --------------------------------------------------------------------------------------------

constexpr std::uint32_t rangeEndOffset = 4;
constexpr std::uint32_t rangeStartOffset = 6;
constexpr std::uint32_t checkValueOffset = 8;
constexpr std::uint32_t rangeBias = 32;
constexpr std::uint32_t lastRangeEnd = 2048;

bool FIReadWordAt(FIReader& reader, std::uint32_t offset, std::uint32_t& word) {
    if (FIReaderSeek(reader, offset) != 0) return false;
    const std::int32_t value = FIReadWordLE(reader);
    word = static_cast<std::uint32_t>(value);
    return value != -1;
}

// Adds up the words from the reader's position, of which start holds the low 16 bits, until the position is end.
// Quirk: position and sum are 16-bit numbers and wrap: a start behind the end is followed through 65,536 bytes.
bool FISumWords(FIReader& reader, std::uint16_t start, std::uint32_t end, std::uint16_t& sum) {
    if ((start ^ end) % 2 != 0) return false;  // the position would never meet the end: only the end of the file would
    sum = 0;
    for (std::uint16_t position = start; position != end; position = static_cast<std::uint16_t>(position + 2)) {
        const std::int32_t word = FIReadWordLE(reader);
        if (word == -1) return false;
        sum = static_cast<std::uint16_t>(sum + word);
    }
    return true;
}

}  // namespace

// A handle tells a position of 4 GiB or more as the last below it, whose remainder is 127.
bool FIMayBeLayoutTrailer(FIHead& head) {
    constexpr std::uint64_t largestTold = 0xFFFFFFFF;
    return head.fileSize == UINT64_MAX || std::min(head.fileSize, largestTold) % strideSize <= largestRemainder;
}

FIID FIProbeLayoutTrailer(FIReader& reader) {
    std::uint32_t size = 0;
    if (!FITellFromEnd(reader.file, 0, size) || FIReaderSeek(reader, size) != 0) return 0;
    if (size % strideSize > largestRemainder) return 0;
    if (FIReaderSeek(reader, FIFirstStride(size)) != 0) return 0;
    if (!FIFindFill(reader) || !FIGoBackForMarker(reader) || !FIFindFilledMarker(reader)) return 0;
    if (FIReaderSkip(bytesBeforeVariant, reader) != 0) return 0;
    const std::uint16_t variant = FIReaderGetByte(reader);
    if (variant == endOfFile) return 0;
    return variant <= lastVariant1020 ? 1020 : 1024;
}

FIID FIProbeEscapeHeader(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    if (FIReaderGetByte(reader) != escape || FIReaderGetByte(reader) != '[') return 0;
    std::uint16_t byte;
    do {
        byte = FIReaderGetByte(reader);
    } while (byte == '0');
    return byte == '1' && FIReaderGetByte(reader) == '$' && FIReaderGetByte(reader) == 'K' ? 1019 : 0;
}

FIID FIProbePipeCodes(FIReader& reader, FIID number) {
    if (FIReaderSeek(reader, number == 1021 ? pipeOffset1021 : pipeOffset1077) != 0) return 0;
    FIPipeState state = FIPipeState::outside;
    for (std::uint16_t taken = 0; taken < pipeBytes; ++taken) {
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == endOfFile) return 0;
        state = FINextPipeState(state, byte);
    }
    return state == FIPipeState::complete ? number : 0;
}

FIID FIProbeWordChecksum(FIReader& reader) {
    std::uint32_t rangeEnd = 0;
    std::uint32_t rangeStart = 0;
    std::uint32_t checkValue = 0;
    if (!FIReadWordAt(reader, rangeEndOffset, rangeEnd) || !FIReadWordAt(reader, rangeStartOffset, rangeStart) ||
        !FIReadWordAt(reader, checkValueOffset, checkValue)) {
        return 0;
    }
    const std::uint32_t end = rangeEnd + rangeBias;
    if (end > lastRangeEnd) return 0;
    const auto start = static_cast<std::uint16_t>(rangeStart + rangeBias);
    std::uint16_t sum = 0;
    if (FIReaderSeek(reader, start) != 0 || !FISumWords(reader, start, end, sum)) return 0;
    // Quirk: negated in 32 bits. A sum of 0, also that of an empty range, has the negation 65,536, which no field
    // holds.
    const std::uint32_t negated = static_cast<std::uint32_t>(static_cast<std::uint16_t>(~sum)) + 1;
    return negated == checkValue ? 1010 : 0;
}
