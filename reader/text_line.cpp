// text_line.cpp - reading text through the reader.
#include "reader/text_line.h"

#include <algorithm>

#include "reader/reader.h"

namespace {

// Takes the second byte of a line end, or leaves the byte that starts the next line.
void FITakeLineEndPartner(FIReader& reader, std::uint16_t partner) {
    if (FIReaderGetByte(reader) != partner) FIReaderPutBack(reader);
}

}  // namespace

FITakenLine FITakeLine(char* buffer, std::uint16_t capacity, FIReader& reader, FINulByte nul) {
    FITakenLine line;
    while (line.size + 1 < capacity) {
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == '\n' || byte == '\r') {
            FITakeLineEndPartner(reader, byte == '\n' ? '\r' : '\n');
            break;
        }
        if (byte == endOfFile || (byte == 0 && nul == FINulByte::endsText)) {
            line.textEnded = true;
            break;
        }
        buffer[line.size++] = static_cast<char>(byte);  // control bytes too
    }
    buffer[line.size] = '\0';
    return line;
}

std::int16_t FIReadTextLine(char* buffer, std::uint16_t capacity, FIReader& reader) {
    return FITakeLine(buffer, capacity, reader, FINulByte::endsText).textEnded ? 0 : 1;
}

bool FITakeText(FIReader& reader, std::string_view text) {
    return std::ranges::all_of(
        text, [&reader](char expected) { return FIReaderGetByte(reader) == static_cast<std::uint8_t>(expected); });
}
