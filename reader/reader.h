// reader.h - FIReader, the buffered byte reader that every test looks at a file through.
//
// The record itself stands in fiid.h. The get-byte step costs a decrement, a sign test, a load and an increment; a seek
// that stays inside the 2,048 buffered bytes does not touch the file, so that the hundreds of signature rows which all
// start at offset 0 cost one read between them. End of file is no error: it is the value 0xFFFF in place of a byte,
// which callers test for in 16 bits before they look at the low byte. A read failure looks the same.
//
// File offsets are unsigned 32-bit numbers throughout: the reader has no notion of a file of 4 GiB or more. What lies
// behind the last offset it can tell is not there for it, so that no routine goes round and round in a larger file.
#pragma once

#include <cstdint>

#include "fiid.h"

struct FIHead;

// What FIReaderGetByte delivers at the end of the file.
inline constexpr std::uint16_t endOfFile = 0xFFFF;

// A new reader over a handle, from the process heap, or null when memory is exhausted. Does not touch the file: the
// reader starts at offset 0 wherever the handle stands. Release it with FIReaderFree.
//
// With the handle's head (reader/head.h), which stays the caller's and must outlive the reader, what lies in it is taken
// from there: the head is the reader's buffer as long as the reader stands in it. It delivers what the handle would.
FIReader* FIReaderNew(HIOFILE file, const FIHead* head = nullptr);

// Makes a reader in place, in a record of the caller's, over a handle.
void FIReaderStart(FIReader& reader, HIOFILE file);

// The head that a reader takes its bytes from, or null.
const FIHead* FIReaderHead(const FIReader& reader);

// Frees a reader of FIReaderNew and returns its handle, which stays open, standing wherever the reader left it.
HIOFILE FIReaderFree(FIReader& reader);

// The slow path of FIReaderGetByte: refills the buffer. Not to be called otherwise.
std::uint16_t FIReaderFill(FIReader& reader);

// The slow path of FIReaderSeek: goes back to the head if the target lies there, or drops the buffer and moves the handle.
std::int32_t FIReaderFlush(FIReader& reader, std::uint32_t target);

// The next byte, 0 to 255, or endOfFile.
inline std::uint16_t FIReaderGetByte(FIReader& reader) {
    reader.bytesLeft = static_cast<std::int16_t>(reader.bytesLeft - 1);
    if (reader.bytesLeft >= 0) return *reader.cursor++;
    return FIReaderFill(reader);
}

// Puts the byte that FIReaderGetByte delivered last back, so that it comes again; the end of the file too.
inline void FIReaderPutBack(FIReader& reader) {
    reader.bytesLeft = static_cast<std::int16_t>(reader.bytesLeft + 1);
    --reader.cursor;
}

// Moves to an offset. Returns the status of the handle's seek, 0 when the target lies in the buffer. A failed seek
// leaves an empty buffer and the target as the offset at which the next refill tries again.
inline std::int32_t FIReaderSeek(FIReader& reader, std::uint32_t target) {
    const std::uint32_t bufferEnd = reader.bufferPos + reader.bytesFilled;
    if (target < reader.bufferPos || target >= bufferEnd) return FIReaderFlush(reader, target);
    const auto bytesLeft = static_cast<std::int16_t>(bufferEnd - target);  // 1 to 2,048, in a head to 8,192
    reader.cursor += reader.bytesLeft - bytesLeft;
    reader.bytesLeft = bytesLeft;
    return 0;
}

// The offset of the next byte. At end of file it is one more than the file's size, and routines see that value.
inline std::uint32_t FIReaderTell(const FIReader& reader) {
    return reader.bufferPos + reader.bytesFilled - static_cast<std::uint32_t>(std::int32_t{reader.bytesLeft});
}

// Passes over count bytes. Returns 0, or -1 when the end of the file came first.
std::int16_t FIReaderSkip(std::uint16_t count, FIReader& reader);

// Two bytes as a number from 0 to 65,535, first byte high (BE) or low (LE); -1 at end of file. Both bytes are always
// taken, even when the first was the end of the file.
std::int32_t FIReadWordBE(FIReader& reader);
std::int32_t FIReadWordLE(FIReader& reader);

// Four bytes, most (BE) or least (LE) significant first. Returns 0, or -1 at the first end of file, without reading on
// and without writing the value.
std::int32_t FIReadDWordBE(FIReader& reader, std::uint32_t& value);
std::int32_t FIReadDWordLE(FIReader& reader, std::uint32_t& value);
