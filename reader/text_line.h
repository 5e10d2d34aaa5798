// text_line.h - reading text through the reader: lines, and words that must stand there.
#pragma once

#include <cstdint>
#include <string_view>

#include "fiid.h"

// What a NUL byte is: the end of the text, or a byte of the line like any other.
enum class FINulByte : std::uint8_t { endsText, isText };

struct FITakenLine {
    std::uint16_t size = 0;  // bytes stored, without the NUL behind them
    bool textEnded = false;  // by the end of the file or, where that ends the text, by a NUL byte
};

// Reads a line of at most capacity - 1 bytes into buffer, without its line end, and NUL-terminates it. LF, CR, LF CR
// and CR LF end a line. A full buffer ends the read at once: the rest of the line, be it only its line end, comes back
// as the next line. With a capacity below 2 nothing is read, and the buffer, which must have room for the NUL even so,
// holds an empty line.
FITakenLine FITakeLine(char* buffer, std::uint16_t capacity, FIReader& reader, FINulByte nul);

struct FIPassedLine {
    std::uint16_t size = 0;  // bytes passed over, without the line end
    bool holdsNul = false;
};

// Passes over a line that FITakeLine would read with this capacity and NUL bytes as text.
FIPassedLine FIPassLine(std::uint16_t capacity, FIReader& reader);

// A line of a text that a NUL byte ends. Returns 0 when the end of the file or a NUL byte ended it, otherwise 1.
std::int16_t FIReadTextLine(char* buffer, std::uint16_t capacity, FIReader& reader);

// Takes bytes as long as they are those of text. Returns true when all of it was there; otherwise the reader stands
// behind the first byte that differs, or at the end of the file.
bool FITakeText(FIReader& reader, std::string_view text);
