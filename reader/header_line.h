// header_line.h - lines of text, as the mail and encoded-text probes read them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/base_utility.h"
#include "reader/reader.h"
#include "reader/text_line.h"

// The line buffer of the two probes, and the capacity with which they read into it.
inline constexpr std::size_t headerLineBufferSize = 1024;
inline constexpr std::uint16_t headerLineCapacity = 1023;

// Reads one line by FITakeLine, a NUL byte being part of it. Returns the number of bytes stored, at most capacity minus
// 1: 0 for an empty line, at the end of the file, and, without reading, for a capacity below 2.
inline std::uint16_t FIReadHeaderLine(char* buffer, std::uint16_t capacity, FIReader& reader) {
    return FITakeLine(buffer, capacity, reader, FINulByte::isText).size;
}

// Rewinds the reader, gives step a line buffer from the process heap, and frees it. Returns what step returns, or 0
// when the seek or the allocation fails.
template <typename Step>
FIID FIWithLineBuffer(FIReader& reader, Step step) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    auto* const lineBuffer = static_cast<char*>(HeapAlloc(GetProcessHeap(), 0, headerLineBufferSize));
    if (lineBuffer == nullptr) return 0;
    const FIID answer = step(lineBuffer);
    HeapFree(GetProcessHeap(), 0, lineBuffer);
    return answer;
}
