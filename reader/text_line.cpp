// text_line.cpp - reading text through the reader.
#include "reader/text_line.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "reader/reader.h"

namespace {

// ---- The search for what ends a run of bytes ----
//
// CR is the highest byte that is looked for. Most bytes of a text are above it, which is told for many at once.

constexpr std::size_t wordSize = sizeof(std::uint64_t);
constexpr std::size_t blockSize = 256;
constexpr std::size_t shortRun = 64;  // most lines are shorter, and a block of no use for them
constexpr std::uint64_t everyByte = 0x0101010101010101;

bool FIIsStop(char byte, FINulByte nul) {
    return byte == '\n' || byte == '\r' || (byte == '\0' && nul == FINulByte::endsText);
}

// Whether one of eight bytes is below a limit of at most 80. Only such a byte, or one behind it, makes a subtraction
// borrow and sets a high bit that the byte itself has not.
bool FIWordHoldsBelow(std::uint64_t word, std::uint8_t limit) {
    return ((word - everyByte * limit) & ~word & (everyByte * 0x80)) != 0;
}

bool FIWordHoldsStop(const char* bytes, FINulByte nul) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, wordSize);
    if (!FIWordHoldsBelow(word, '\r' + 1)) return false;
    return FIWordHoldsBelow(word ^ everyByte * '\n', 1) || FIWordHoldsBelow(word ^ everyByte * '\r', 1) ||
           (nul == FINulByte::endsText && FIWordHoldsBelow(word, 1));
}

// Whether a byte of a block is CR or below. Compilers turn the loop into vector instructions; four quarters at a time let
// them run through it in few steps.
bool FIBlockHoldsLowByte(const char* block) {
    constexpr std::size_t quarter = blockSize / 4;
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(block);
    std::uint8_t lowest = 0xFF;
    for (std::size_t index = 0; index < quarter; ++index) {
        const std::uint8_t first = std::min(bytes[index], bytes[index + quarter]);
        const std::uint8_t second = std::min(bytes[index + 2 * quarter], bytes[index + 3 * quarter]);
        lowest = std::min(lowest, std::min(first, second));
    }
    return lowest <= '\r';
}

// The place of the first stop among the first bytes, or how many they are.
std::size_t FIFindStopByWords(std::string_view text, FINulByte nul) {
    std::size_t position = 0;
    while (text.size() - position >= wordSize && !FIWordHoldsStop(text.data() + position, nul)) position += wordSize;
    while (position < text.size() && !FIIsStop(text[position], nul)) ++position;
    return position;
}

// How many bytes lie in blocks without a low byte. The last block overlaps the one in front of it.
std::size_t FISizeOfHighBlocks(std::string_view text) {
    std::size_t size = 0;
    while (size < text.size() && text.size() >= blockSize) {
        const std::size_t start = std::min(size, text.size() - blockSize);
        if (FIBlockHoldsLowByte(text.data() + start)) break;
        size = start + blockSize;
    }
    return size;
}

std::size_t FISizeUpTo(std::string_view text, char byte) { return std::min(text.find(byte), text.size()); }

// The bytes in front of the first stop: by words in a short run, by blocks and then for each stop in a long one.
std::size_t FISizeOfRun(std::string_view text, FINulByte nul) {
    const std::size_t found = FIFindStopByWords(text.substr(0, shortRun), nul);
    if (found < shortRun) return found;
    std::string_view rest = text.substr(shortRun);
    const std::size_t passed = shortRun + FISizeOfHighBlocks(rest);
    rest = text.substr(passed);
    rest = rest.substr(0, FISizeUpTo(rest, '\n'));
    rest = rest.substr(0, FISizeUpTo(rest, '\r'));
    if (nul == FINulByte::endsText) rest = rest.substr(0, FISizeUpTo(rest, '\0'));
    return passed + rest.size();
}

// ---- The reader's buffer ----

// The bytes of the buffer, at most that many, in front of the first that ends a line or, where it ends the text, is NUL.
// To take them at once leaves what taking them one by one leaves; a buffer that runs out is not refilled.
std::string_view FIRunInBuffer(const FIReader& reader, std::uint16_t most, FINulByte nul) {
    if (reader.bytesLeft <= 0) return {};
    const std::size_t size = std::min<std::size_t>(static_cast<std::uint16_t>(reader.bytesLeft), most);
    const std::string_view buffer(reinterpret_cast<const char*>(reader.cursor), size);
    return buffer.substr(0, FISizeOfRun(buffer, nul));
}

void FIPassRun(FIReader& reader, std::string_view run) {
    reader.cursor += run.size();
    reader.bytesLeft = static_cast<std::int16_t>(static_cast<std::size_t>(reader.bytesLeft) - run.size());
}

// Takes the second byte of a line end, or leaves the byte that starts the next line.
void FITakeLineEndPartner(FIReader& reader, std::uint16_t partner) {
    if (FIReaderGetByte(reader) != partner) FIReaderPutBack(reader);
}

// Walks through a line of at most capacity - 1 bytes and its line end. takeRun gets what is buffered of it in a run,
// takeByte any byte that comes by itself, the end of the file too: where it returns false the walk ends.
template <typename TakeRun, typename TakeByte>
void FIWalkLine(std::uint16_t capacity, FIReader& reader, FINulByte nul, TakeRun takeRun, TakeByte takeByte) {
    std::uint16_t size = 0;
    while (size + 1 < capacity) {
        const std::string_view run = FIRunInBuffer(reader, static_cast<std::uint16_t>(capacity - 1 - size), nul);
        takeRun(run);
        FIPassRun(reader, run);
        size = static_cast<std::uint16_t>(size + run.size());
        if (size + 1 == capacity) return;
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == '\n' || byte == '\r') return FITakeLineEndPartner(reader, byte == '\n' ? '\r' : '\n');
        if (!takeByte(byte)) return;
        ++size;
    }
}

}  // namespace

FITakenLine FITakeLine(char* buffer, std::uint16_t capacity, FIReader& reader, FINulByte nul) {
    FITakenLine line;
    const auto takeRun = [&](std::string_view run) {
        std::copy(run.begin(), run.end(), buffer + line.size);
        line.size = static_cast<std::uint16_t>(line.size + run.size());
    };
    FIWalkLine(capacity, reader, nul, takeRun, [&](std::uint16_t byte) {
        line.textEnded = byte == endOfFile || (byte == 0 && nul == FINulByte::endsText);
        if (!line.textEnded) buffer[line.size++] = static_cast<char>(byte);  // control bytes too
        return !line.textEnded;
    });
    buffer[line.size] = '\0';
    return line;
}

FIPassedLine FIPassLine(std::uint16_t capacity, FIReader& reader) {
    FIPassedLine line;
    const auto takeRun = [&](std::string_view run) { line.size = static_cast<std::uint16_t>(line.size + run.size()); };
    FIWalkLine(capacity, reader, FINulByte::endsText, takeRun, [&](std::uint16_t byte) {
        if (byte == endOfFile) return false;
        if (byte == 0) line.holdsNul = true;
        ++line.size;
        return true;
    });
    return line;
}

std::int16_t FIReadTextLine(char* buffer, std::uint16_t capacity, FIReader& reader) {
    return FITakeLine(buffer, capacity, reader, FINulByte::endsText).textEnded ? 0 : 1;
}

bool FITakeText(FIReader& reader, std::string_view text) {
    return std::ranges::all_of(
        text, [&reader](char expected) { return FIReaderGetByte(reader) == static_cast<std::uint8_t>(expected); });
}
