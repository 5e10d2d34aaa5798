// handle_block.cpp - reading blocks of the reader's handle itself.
#include "reader/handle_block.h"

#include "reader/head.h"
#include "reader/reader.h"

bool FICopyHead(const FIReader& reader, void* block, std::uint32_t size, std::uint32_t& count) {
    const FIHead* const head = FIReaderHead(reader);
    if (head == nullptr || (head->size < size && !FIHeadIsWhole(*head))) return false;
    count = std::min(size, head->size);
    std::copy_n(head->bytes, count, static_cast<std::uint8_t*>(block));
    return true;
}

std::int32_t FIRewindHandle(FIReader& reader) { return reader.file->operations.IOSeek(reader.file, IOOriginStart, 0); }

std::int32_t FIReadBlock(FIReader& reader, void* block, std::uint32_t size, std::uint32_t& count) {
    count = 0;
    return FIReadHandle(reader.file, block, size, count);
}
