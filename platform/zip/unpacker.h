// unpacker.h - the bytes of one deflated member of a ZIP archive, unpacked as they are read.
//
// What a member costs is what was asked for: packed bytes pass through a small buffer, and unpacked ones go to the
// caller. Nothing depends on what the directory tells of the unpacked size or the checksum.
#pragma once

#include <zlib.h>

#include <cstdint>

#include "platform/handle.h"
#include "platform/zip/zip_directory.h"

inline constexpr std::uint32_t unpackerBufferBytes = 8192;

struct ZAUnpacker {
    UTHandle* file;
    std::uint64_t dataOffset;  // of the packed bytes in the file
    std::uint64_t packedSize;  // as the directory tells it; the file may have fewer
    std::uint64_t fetched;     // packed bytes that were read from it
    std::uint64_t position;    // unpacked bytes that the stream has delivered
    std::uint64_t end;         // unpacked bytes there are, once the end was met; the largest number before
    bool damaged;              // whether it was not the proper end
    z_stream stream;           // raw deflate data
    std::uint8_t buffer[unpackerBufferBytes];
};

// Starts on a member whose packed bytes begin at dataOffset. All memory that the unpacker will need is taken here, from
// the process heap. The record stays where it is until ZAStopUnpacker. Returns 0, or -1 when memory is exhausted;
// either way ZAStopUnpacker is to be called.
std::int32_t ZAStartUnpacker(ZAUnpacker& unpacker, UTHandle& file, const ZAEntry& entry, std::uint64_t dataOffset);

// Reads unpacked bytes at an offset, as UTHandleKind::readAt does. What lies in front of the offset is unpacked and
// dropped; an offset in front of the last one read starts over. The bytes in front of damaged data are delivered, to
// the last one; the read that meets the damage fails. Data that end too early, or that the file does not deliver, are
// damaged. What lies behind their proper end is ignored, and of no packed bytes at all nothing is expected.
std::int32_t ZAReadUnpacked(ZAUnpacker& unpacker, std::uint64_t offset, void* destination, std::uint32_t size,
                            std::uint32_t& count);

void ZAStopUnpacker(ZAUnpacker& unpacker);
