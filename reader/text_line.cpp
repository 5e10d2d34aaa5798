// text_line.cpp - reading text through the reader.
#include "reader/text_line.h"

#include <algorithm>

#include "reader/reader.h"

namespace {

constexpr std::int16_t lineComplete = 1;
constexpr std::int16_t textEnded = 0;

// Takes the second byte of a line end, or leaves the byte that starts the next line.
void FITakeLineEndPartner(FIReader& reader, std::uint16_t partner) {
    if (FIReaderGetByte(reader) != partner) FIReaderPutBack(reader);
}

}  // namespace

std::int16_t FIReadTextLine(char* buffer, std::uint16_t capacity, FIReader& reader) {
    std::int16_t result = lineComplete;
    std::uint16_t size = 0;
    while (size + 1 < capacity) {
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == '\n' || byte == '\r') {
            FITakeLineEndPartner(reader, byte == '\n' ? '\r' : '\n');
            break;
        }
        if (byte == endOfFile || byte == 0) {
            result = textEnded;
            break;
        }
        buffer[size++] = static_cast<char>(byte);  // control bytes too
    }
    buffer[size] = '\0';
    return result;
}

bool FITakeText(FIReader& reader, std::string_view text) {
    return std::ranges::all_of(
        text, [&reader](char expected) { return FIReaderGetByte(reader) == static_cast<std::uint8_t>(expected); });
}
