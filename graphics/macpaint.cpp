// macpaint.cpp - MacPaint bitmaps without a wrapper.
//
//   Offset  Size  Field                 Accepted
//        0     1  first byte            0
//        0    32  start of the header   not 16 characters of 16-bit text, one zero and one other byte each
//      512     -  scan lines            11 lines, each of exactly 72 bytes when unpacked
//
// A line is packed in groups of a control byte and its data, a scheme known as PackBits:
//
//   Control    Data              Unpacked
//   00         1 byte            that byte
//   01 to 48   control + 1       those bytes
//   49 to 7F   refused
//   80 to FF   1 byte            that byte 257 - control times
//
// Other data that happens to unpack so is kept out by two counts that go on from line to line: at most 30 runs of two
// bytes, and fewer than 16 in a row of control bytes 00 and data bytes 00 behind them.
#include "graphics/macpaint.h"

#include <cstdint>

#include "reader/reader.h"

namespace {

constexpr FIID macPaintFormat = 1518;

constexpr std::uint32_t pairsLookedAt = 16;
constexpr std::uint32_t linesOffset = 512;
constexpr std::uint32_t linesLookedAt = 11;
constexpr std::uint16_t lineSize = 72;

constexpr std::uint16_t firstRun = 0x80;        // control bytes from here on are runs
constexpr std::uint16_t longestLiteral = 0x48;  // the control byte of a group that fills a line and one byte more
constexpr std::uint16_t twoByteRun = 0xFF;      // the control byte of a run of two
constexpr std::uint16_t runBase = 257;
constexpr std::uint16_t mostTwoByteRuns = 30;
constexpr std::uint16_t zeroRunTooLong = 16;

enum class FIZeroByte : std::uint8_t { first, second };

// Reads pairs of bytes from offset 0, as long as one byte of the pair, the one told, is 0 and the other is not. True
// when there is a pair that is not so among the first 16; false at the end of the file.
bool FIEndsWideText(FIReader& reader, FIZeroByte zeroByte) {
    static_cast<void>(FIReaderSeek(reader, 0));  // a failure shows in the reads
    for (std::uint32_t pair = 0; pair < pairsLookedAt; ++pair) {
        const std::uint16_t first = FIReaderGetByte(reader);
        const std::uint16_t second = FIReaderGetByte(reader);
        if (first == endOfFile || second == endOfFile) return false;
        const std::uint16_t zero = zeroByte == FIZeroByte::first ? first : second;
        const std::uint16_t character = zeroByte == FIZeroByte::first ? second : first;
        if (zero != 0 || character == 0) return true;
    }
    return false;
}

struct FIPaintLines {
    std::uint16_t lineBytes = 0;    // unpacked bytes of the current line
    std::uint16_t twoByteRuns = 0;  // of all lines
    std::uint16_t zeroRun = 0;      // control bytes 0 in a row, and their data bytes 0; goes on from line to line
};

void FIAdd(std::uint16_t& counter, std::uint32_t count) { counter = static_cast<std::uint16_t>(counter + count); }

// Takes the control byte 0's one data byte.
bool FITakeSingleByte(FIReader& reader, FIPaintLines& lines) {
    FIAdd(lines.zeroRun, 1);
    const std::uint16_t byte = FIReaderGetByte(reader);
    if (byte == endOfFile) return false;
    FIAdd(lines.lineBytes, 1);
    if (byte != 0) return true;  // Quirk: the run is not tested here, so that it may grow on to any length
    FIAdd(lines.zeroRun, 1);
    return lines.zeroRun < zeroRunTooLong;
}

// Takes one group. False when it can't be part of a line.
bool FITakeGroup(FIReader& reader, FIPaintLines& lines) {
    const std::uint16_t control = FIReaderGetByte(reader);
    if (control == endOfFile) return false;
    if (control == 0) return FITakeSingleByte(reader, lines);
    if (control >= firstRun) {
        lines.zeroRun = 0;
        if (FIReaderGetByte(reader) == endOfFile) return false;
        if (control == twoByteRun) FIAdd(lines.twoByteRuns, 1);
        FIAdd(lines.lineBytes, static_cast<std::uint32_t>(runBase - control));
        return true;
    }
    if (control > longestLiteral) return false;
    lines.zeroRun = 0;
    const auto literal = static_cast<std::uint16_t>(control + 1);
    if (FIReaderSkip(literal, reader) != 0) return false;
    FIAdd(lines.lineBytes, literal);
    return true;
}

bool FITakeScanLine(FIReader& reader, FIPaintLines& lines) {
    lines.lineBytes = 0;
    while (lines.lineBytes < lineSize) {
        if (!FITakeGroup(reader, lines)) return false;
    }
    return lines.twoByteRuns <= mostTwoByteRuns && lines.lineBytes == lineSize;
}

}  // namespace

FIID FIProbeMacPaint(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0 || FIReaderGetByte(reader) != 0) return 0;
    // Quirk: the first byte being 0, text with the low byte first ends at once; what remains of the test is that a file
    // of one byte is refused.
    if (!FIEndsWideText(reader, FIZeroByte::second) || !FIEndsWideText(reader, FIZeroByte::first)) return 0;
    if (FIReaderSeek(reader, linesOffset) != 0) return 0;
    FIPaintLines lines;
    for (std::uint32_t line = 0; line < linesLookedAt; ++line) {
        if (!FITakeScanLine(reader, lines)) return 0;
    }
    return macPaintFormat;
}
