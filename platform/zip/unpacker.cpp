// unpacker.cpp - zlib over the packed bytes of a member.
//
// Source: RFC 1951, the deflate format; a member's data are raw deflate data, without a header or a checksum.
#include "platform/zip/unpacker.h"

#include <algorithm>
#include <limits>

#include "platform/base_utility.h"

namespace {

constexpr int rawDeflate = -MAX_WBITS;  // negative: no header, no checksum
constexpr std::uint64_t notMet = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint32_t droppedBytes = 4096;

void* ZAAllocate(void*, unsigned int count, unsigned int size) {
    return HeapAlloc(GetProcessHeap(), 0, static_cast<std::size_t>(count) * size);
}

void ZAFree(void*, void* block) { static_cast<void>(HeapFree(GetProcessHeap(), 0, block)); }

// Puts the next packed bytes into the buffer; none when there are no more or the file fails.
void ZAFetch(ZAUnpacker& unpacker) {
    const auto wanted = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(unpackerBufferBytes, unpacker.packedSize - unpacker.fetched));
    std::uint32_t came = 0;
    if (wanted > 0 &&
        UTReadAt(*unpacker.file, unpacker.dataOffset + unpacker.fetched, unpacker.buffer, wanted, came) != 0) {
        came = 0;
    }
    unpacker.fetched += came;
    unpacker.stream.next_in = unpacker.buffer;
    unpacker.stream.avail_in = came;
}

// Unpacks the next bytes. Returns how many came; when they are fewer than size, the end is known. inflate goes on
// without packed bytes as long as it holds something back, and then tells that it can't.
std::uint32_t ZAUnpack(ZAUnpacker& unpacker, void* destination, std::uint32_t size) {
    z_stream& stream = unpacker.stream;
    stream.next_out = static_cast<Bytef*>(destination);
    stream.avail_out = size;
    int status = Z_OK;
    while (status == Z_OK && stream.avail_out > 0) {
        if (stream.avail_in == 0) ZAFetch(unpacker);
        status = inflate(&stream, Z_NO_FLUSH);
    }
    const std::uint32_t came = size - stream.avail_out;
    unpacker.position += came;
    if (status != Z_OK) {
        unpacker.end = unpacker.position;
        unpacker.damaged = status != Z_STREAM_END;
    }
    return came;
}

// An end that was met stays where it is.
void ZAStartOver(ZAUnpacker& unpacker) {
    static_cast<void>(inflateReset(&unpacker.stream));
    unpacker.stream.avail_in = 0;
    unpacker.fetched = 0;
    unpacker.position = 0;
}

// Makes the stream stand at an offset, or at the end when that comes first.
void ZAStandAt(ZAUnpacker& unpacker, std::uint64_t offset) {
    if (offset < unpacker.position) ZAStartOver(unpacker);
    std::uint8_t dropped[droppedBytes];
    while (unpacker.position < offset && unpacker.position < unpacker.end) {
        const std::uint64_t step = std::min<std::uint64_t>(droppedBytes, offset - unpacker.position);
        static_cast<void>(ZAUnpack(unpacker, dropped, static_cast<std::uint32_t>(step)));
    }
}

}  // namespace

std::int32_t ZAStartUnpacker(ZAUnpacker& unpacker, UTHandle& file, const ZAEntry& entry, std::uint64_t dataOffset) {
    unpacker.file = &file;
    unpacker.dataOffset = dataOffset;
    unpacker.packedSize = entry.packedSize;
    unpacker.fetched = 0;
    unpacker.position = 0;
    unpacker.end = entry.packedSize > 0 ? notMet : 0;
    unpacker.damaged = false;
    unpacker.stream = {};
    unpacker.stream.zalloc = ZAAllocate;
    unpacker.stream.zfree = ZAFree;
    if (inflateInit2(&unpacker.stream, rawDeflate) != Z_OK) return -1;
    // inflate would take the memory for its window with the first bytes; a dictionary of none makes it do so now.
    return inflateSetDictionary(&unpacker.stream, unpacker.buffer, 0) == Z_OK ? 0 : -1;
}

std::int32_t ZAReadUnpacked(ZAUnpacker& unpacker, std::uint64_t offset, void* destination, std::uint32_t size,
                            std::uint32_t& count) {
    count = 0;
    if (size == 0) return 0;
    if (offset < unpacker.end) ZAStandAt(unpacker, offset);
    if (offset < unpacker.end) {
        const std::uint64_t wanted = std::min<std::uint64_t>(size, unpacker.end - offset);
        count = ZAUnpack(unpacker, destination, static_cast<std::uint32_t>(wanted));
    }
    return count == 0 && unpacker.damaged ? -1 : 0;
}

void ZAStopUnpacker(ZAUnpacker& unpacker) { static_cast<void>(inflateEnd(&unpacker.stream)); }
