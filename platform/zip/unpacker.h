// unpacker.h - the bytes of one packed member of a ZIP archive, unpacked as they are read.
//
// libzip does the unpacking. It is shown an archive of the one member, whose directory is made here and whose data are
// the member's in the file. Shown the file itself it would load the whole directory and hash every name, at several
// times the directory's size in memory and, for names made to collide, in quadratic time.
#pragma once

#include <zip.h>

#include <cstdint>

#include "platform/handle.h"
#include "platform/zip/zip_directory.h"

// Bytes in front of the member's data in the archive that libzip is shown: a directory entry with its one-letter name
// and the zip64 block, then a local header with the name.
inline constexpr std::uint32_t unpackerHeadBytes = 98;

struct ZAUnpacker {
    UTHandle* file;
    std::uint64_t dataOffset;  // of the packed bytes in the file
    std::uint64_t available;   // packed bytes that the file has
    std::uint64_t shownBytes;  // packed bytes that libzip is shown
    zip_error_t error;         // of the source that shows them
    std::uint64_t shownPosition;
    zip_t* archive;  // null while nothing is open
    zip_file_t* stream;
    std::uint64_t position;  // unpacked bytes that the stream has delivered
    std::uint64_t end;       // unpacked bytes there are, once the end was met; the largest number before
    bool damaged;            // whether it was not the proper end
    std::uint8_t head[unpackerHeadBytes];
};

// Starts on a member whose packed bytes begin at dataOffset. The record stays where it is until ZAStopUnpacker. Returns
// 0, or -1 with nothing to stop when the method is not known or memory is exhausted.
std::int32_t ZAStartUnpacker(ZAUnpacker& unpacker, UTHandle& file, const ZAEntry& entry, std::uint64_t dataOffset);

// Reads unpacked bytes at an offset, as UTHandleKind::readAt does. What lies in front of the offset is unpacked and
// dropped; an offset in front of the last one read starts over. The bytes in front of damaged data are delivered, to
// the last one; the read that meets the damage fails. A checksum or a size that is not the member's counts for nothing.
std::int32_t ZAReadUnpacked(ZAUnpacker& unpacker, std::uint64_t offset, void* destination, std::uint32_t size,
                            std::uint32_t& count);

void ZAStopUnpacker(ZAUnpacker& unpacker);
