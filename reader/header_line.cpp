// header_line.cpp - one line of text, whatever its line end is.
#include "reader/header_line.h"

namespace {

// Eats the other half of a line end of two bytes; any other byte, and the end of the file, comes again.
void FIEatByte(FIReader& reader, std::uint8_t byte) {
    if (FIReaderGetByte(reader) != byte) FIReaderPutBack(reader);
}

}  // namespace

std::uint16_t FIReadHeaderLine(char* buffer, std::uint16_t capacity, FIReader& reader) {
    std::uint16_t length = 0;
    while (length + 1 < capacity) {
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == endOfFile) break;
        if (byte == '\n') {
            FIEatByte(reader, '\r');
            break;
        }
        if (byte == '\r') {
            FIEatByte(reader, '\n');
            break;
        }
        buffer[length++] = static_cast<char>(byte);
    }
    buffer[length] = '\0';
    return length;
}
