// reader.cpp - the parts of FIReader that are not worth inlining.
#include "reader/reader.h"

#include <algorithm>
#include <type_traits>

#include "platform/base_utility.h"
#include "reader/handle_block.h"
#include "reader/head.h"

namespace {

constexpr std::uint32_t endOfReach = 0xFFFFFFFF;

std::int32_t FISeekHandle(HIOFILE file, std::uint32_t target) {
    // The operation's offset is a signed number that origin 0 reads as unsigned.
    return file->operations.IOSeek(file, IOOriginStart, static_cast<std::int32_t>(target));
}

// What FIReaderNew allocates.
struct FIOwnReader {
    FIReader reader;
    const FIHead* head;
};
static_assert(std::is_standard_layout_v<FIOwnReader>);

// Makes the head the reader's buffer.
//
// This is the seek and the read that a reader without a head makes: neither can fail in the head's range, the same bytes
// come, and a buffer that reaches further is one that the handle has filled. Only the handle stays where it is, which the
// next refill looks at.
void FIReaderStandInHead(FIReader& reader, const FIHead& head, std::uint32_t target) {
    reader.bufferPos = 0;
    reader.bytesFilled = head.size;
    reader.bytesLeft = static_cast<std::int16_t>(head.size - target);
    reader.cursor = const_cast<std::uint8_t*>(head.bytes) + target;  // nobody writes through it
}

// Reads the next 2,048 bytes at the handle's position. Returns the first of them.
std::uint16_t FIReadBuffer(FIReader& reader) {
    reader.cursor = reader.buffer + 1;
    reader.bytesFilled = 0;
    if (FIReadHandle(reader.file, reader.buffer, FIReaderBufferSize, reader.bytesFilled) != 0) {
        reader.bytesFilled = 0;
    }
    if (reader.bytesFilled == 0) {
        reader.bytesLeft = -1;
        return endOfFile;
    }
    reader.bytesLeft = static_cast<std::int16_t>(reader.bytesFilled - 1);
    return reader.buffer[0];
}

// The file goes on behind what 32 bits can tell. The handle is moved to its end, whose position it tells as endOfReach:
// the refills that follow find it where they want it, and read nothing there as often as they are asked.
std::uint16_t FIReaderReachEnd(FIReader& reader) {
    reader.bufferPos = endOfReach;
    static_cast<void>(reader.file->operations.IOSeek(reader.file, IOOriginEnd, 0));
    return FIReadBuffer(reader);
}

}  // namespace

FIReader* FIReaderNew(HIOFILE file, const FIHead* head) {
    auto* const own = static_cast<FIOwnReader*>(HeapAlloc(GetProcessHeap(), 0, sizeof(FIOwnReader)));
    if (own == nullptr) return nullptr;
    FIReaderStart(own->reader, file);
    own->reader.self = own;
    own->head = head;
    if (head != nullptr) FIReaderStandInHead(own->reader, *head, 0);
    return &own->reader;
}

const FIHead* FIReaderHead(const FIReader& reader) {
    return reader.self != nullptr ? static_cast<const FIOwnReader*>(reader.self)->head : nullptr;
}

void FIReaderStart(FIReader& reader, HIOFILE file) {
    reader.bytesLeft = 0;
    reader.bytesFilled = 0;
    reader.bufferPos = 0;
    reader.file = file;
    reader.self = nullptr;
}

HIOFILE FIReaderFree(FIReader& reader) {
    const HIOFILE file = reader.file;
    HeapFree(GetProcessHeap(), 0, reader.self);
    return file;
}

std::uint16_t FIReaderFill(FIReader& reader) {
    if (reader.bytesFilled > endOfReach - reader.bufferPos) return FIReaderReachEnd(reader);
    reader.bufferPos += reader.bytesFilled;
    // A routine, or a second reader over the same handle, may have moved the handle: the reader goes on from its own
    // idea of the position. Neither status counts, for the read that follows shows what can be had.
    std::uint32_t position = 0;
    static_cast<void>(reader.file->operations.IOTell(reader.file, &position));
    if (position != reader.bufferPos) static_cast<void>(FISeekHandle(reader.file, reader.bufferPos));
    return FIReadBuffer(reader);
}

std::int32_t FIReaderFlush(FIReader& reader, std::uint32_t target) {
    if (const FIHead* const head = FIReaderHead(reader); head != nullptr && target < head->size) {
        FIReaderStandInHead(reader, *head, target);
        return 0;
    }
    reader.bytesFilled = 0;
    reader.bytesLeft = 0;
    const std::int32_t status = FISeekHandle(reader.file, target);
    reader.bufferPos = target;
    return status;
}

std::int16_t FIReaderSkip(std::uint16_t count, FIReader& reader) {
    while (count > 0) {
        if (reader.bytesLeft > 0) {  // what is buffered at once
            const std::int16_t taken = static_cast<std::int16_t>(std::min<std::int32_t>(count, reader.bytesLeft));
            reader.cursor += taken;
            reader.bytesLeft = static_cast<std::int16_t>(reader.bytesLeft - taken);
            count = static_cast<std::uint16_t>(count - taken);
        } else {
            if (FIReaderGetByte(reader) == endOfFile) return -1;
            --count;
        }
    }
    return 0;
}

std::int32_t FIReadWordBE(FIReader& reader) {
    const std::uint16_t high = FIReaderGetByte(reader);
    const std::uint16_t low = FIReaderGetByte(reader);
    if (high == endOfFile || low == endOfFile) return -1;
    return high << 8 | low;
}

std::int32_t FIReadWordLE(FIReader& reader) {
    const std::uint16_t low = FIReaderGetByte(reader);
    const std::uint16_t high = FIReaderGetByte(reader);
    if (high == endOfFile || low == endOfFile) return -1;
    return high << 8 | low;
}

std::int32_t FIReadDWordBE(FIReader& reader, std::uint32_t& value) {
    std::uint32_t result = 0;
    for (std::uint32_t index = 0; index < 4; ++index) {
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == endOfFile) return -1;
        result = result << 8 | byte;
    }
    value = result;
    return 0;
}

std::int32_t FIReadDWordLE(FIReader& reader, std::uint32_t& value) {
    std::uint32_t result = 0;
    for (std::uint32_t shift = 0; shift < 32; shift += 8) {
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == endOfFile) return -1;
        result |= static_cast<std::uint32_t>(byte) << shift;
    }
    value = result;
    return 0;
}
