// white_space.h - white space: blank, tab, LF and CR, and nothing else.
#pragma once

#include <cstdint>

#include "reader/reader.h"

// For bytes and 16-bit characters; the end of the file is no white space.
constexpr bool FIIsWhiteSpace(std::uint16_t character) {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

// Passes over white space, if there is any. The byte behind it, or the end of the file, is put back.
inline void FISkipWhiteSpace(FIReader& reader) {
    while (FIIsWhiteSpace(FIReaderGetByte(reader))) {
    }
    FIReaderPutBack(reader);
}
