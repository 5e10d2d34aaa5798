// postscript.cpp - PostScript text and the binary wrapper of encapsulated PostScript.
//
// A marker stands at the start of one of the first ten lines, behind at most 4 blanks or tabs. Lines in front of it
// must be comments, or start like the wrapper.
//
//   Marker                    Bytes
//   comment line with '!'     "%!"
//   comment line with PS      "%PS", in either case
//   binary wrapper            C5 D0 D3 C6
//
// A first byte of 0 means that a MacBinary header of 128 bytes stands in front.
#include "graphics/postscript.h"

#include <cstdint>

#include "reader/low_byte.h"
#include "reader/reader.h"

namespace {

constexpr FIID postScriptFormat = 1580;

constexpr std::uint32_t macBinaryHeaderSize = 128;
constexpr std::uint32_t linesLookedAt = 10;
constexpr std::uint16_t mostBlanks = 4;
constexpr std::uint16_t columnLimit = 256;
constexpr std::uint16_t columnTooFar = 255;

constexpr std::uint8_t wrapperStart = 0xC5;
constexpr std::uint8_t wrapperRest[] = {0xD0, 0xD3, 0xC6};

// A line being looked at.
struct FIScriptLine {
    FIReader& reader;
    std::uint8_t byte;         // the current byte; FF at the end of the file, where it runs the column up to its limit
    std::uint16_t column = 0;  // bytes taken behind the line's first one
};

void FIAdvance(FIScriptLine& line) {
    line.byte = FITakeLowByte(line.reader);
    ++line.column;
}

enum class FILineStart : std::uint8_t {
    marker,   // a marker: the file is PostScript
    comment,  // a comment, or a wrapper that breaks off: the next line is looked at
    other,    // anything else: it is not
};

FILineStart FITakeComment(FIScriptLine& line) {
    FIAdvance(line);
    if (line.byte == '!') return FILineStart::marker;
    if (line.byte != 'p' && line.byte != 'P') return FILineStart::comment;
    FIAdvance(line);
    return line.byte == 's' || line.byte == 'S' ? FILineStart::marker : FILineStart::comment;
}

// Quirk: the wrapper's bytes do not become the current byte, so that a line end among them does not end the line.
FILineStart FITakeWrapper(FIScriptLine& line) {
    for (const std::uint8_t expected : wrapperRest) {
        ++line.column;
        if (FITakeLowByte(line.reader) != expected) return FILineStart::comment;
    }
    return FILineStart::marker;
}

FILineStart FITakeLineStart(FIScriptLine& line) {
    line.column = 0;
    while (line.column < mostBlanks && (line.byte == ' ' || line.byte == '\t')) FIAdvance(line);
    if (line.byte == '%') return FITakeComment(line);
    if (line.byte == wrapperStart) return FITakeWrapper(line);
    return FILineStart::other;
}

// Runs to the line feed or carriage return that ends the line. False when the line is too long.
bool FITakeRestOfLine(FIScriptLine& line) {
    while (line.byte != '\n' && line.byte != '\r' && line.column < columnLimit) FIAdvance(line);
    return line.column < columnTooFar;
}

// Takes the first byte of the next line. Passes over the second byte of a line end, or over one empty line.
void FITakeNextLine(FIScriptLine& line) {
    line.byte = FITakeLowByte(line.reader);
    if (line.byte == '\n' || line.byte == '\r') line.byte = FITakeLowByte(line.reader);
}

}  // namespace

FIID FIProbePostScript(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    FIScriptLine line = {reader, FITakeLowByte(reader)};
    if (line.byte == 0) {
        if (FIReaderSeek(reader, macBinaryHeaderSize) != 0) return 0;
        line.byte = FITakeLowByte(reader);
    }
    for (std::uint32_t count = 0; count < linesLookedAt; ++count) {
        const FILineStart start = FITakeLineStart(line);
        if (start == FILineStart::marker) return postScriptFormat;
        if (start == FILineStart::other || !FITakeRestOfLine(line)) return 0;
        FITakeNextLine(line);
    }
    return 0;
}
