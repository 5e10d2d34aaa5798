// text_line.cpp - reading text through the reader.
#include "reader/text_line.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "reader/reader.h"

namespace {

// The bytes of a text in front of the first such byte.
std::size_t FISizeUpTo(std::string_view text, char byte) { return std::min(text.find(byte), text.size()); }

// Moves bytes of the reader's buffer to target, at most room of them, up to the first that ends a line or the text.
// Returns how many. What they leave is what taking them one by one leaves; a buffer that runs out is not refilled.
std::uint16_t FITakeRun(FIReader& reader, char* target, std::uint16_t room, FINulByte nul) {
    if (reader.bytesLeft <= 0) return 0;
    const std::size_t most = std::min<std::size_t>(static_cast<std::uint16_t>(reader.bytesLeft), room);
    std::string_view run(reinterpret_cast<const char*>(reader.cursor), most);
    run = run.substr(0, FISizeUpTo(run, '\n'));
    run = run.substr(0, FISizeUpTo(run, '\r'));
    if (nul == FINulByte::endsText) run = run.substr(0, FISizeUpTo(run, '\0'));
    std::memcpy(target, run.data(), run.size());
    reader.cursor += run.size();
    reader.bytesLeft = static_cast<std::int16_t>(static_cast<std::size_t>(reader.bytesLeft) - run.size());
    return static_cast<std::uint16_t>(run.size());
}

// Takes the second byte of a line end, or leaves the byte that starts the next line.
void FITakeLineEndPartner(FIReader& reader, std::uint16_t partner) {
    if (FIReaderGetByte(reader) != partner) FIReaderPutBack(reader);
}

}  // namespace

FITakenLine FITakeLine(char* buffer, std::uint16_t capacity, FIReader& reader, FINulByte nul) {
    FITakenLine line;
    while (line.size + 1 < capacity) {
        const auto room = static_cast<std::uint16_t>(capacity - 1 - line.size);
        line.size = static_cast<std::uint16_t>(line.size + FITakeRun(reader, buffer + line.size, room, nul));
        if (line.size + 1 == capacity) break;
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
