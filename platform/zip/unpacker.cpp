// unpacker.cpp - libzip over an archive of one member.
//
// What libzip is shown, in this order:
//
//   Bytes    What
//      98    directory entry (67: header, name "m", zip64 block of 20) and local header (31: header, name "m")
//       -    the packed data, and one byte behind them that can't be read
//   65,600   zeros: libzip looks for the end record in the last 65,577 bytes, and finds the one below and no other
//      22    end record
//
// The byte that can't be read tells packed data that end too early from such that end properly: only they make libzip
// ask for it. Of zero packed bytes nothing is expected, so they have no such byte.
#include "platform/zip/unpacker.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

constexpr std::uint32_t endRecordBytes = 22;
constexpr std::uint32_t paddingBytes = 65600;
constexpr std::uint64_t notMet = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint32_t stepBytes = 4096;

// ---- What libzip is shown ------------------------------------------------------------------------------------------

void ZAPut(std::uint8_t*& place, std::uint64_t value, std::uint32_t size) {
    for (; size > 0; --size) {
        *place++ = static_cast<std::uint8_t>(value & 0xFF);
        value >>= 8;
    }
}

constexpr std::uint32_t entrySignature = 0x02014B50;
constexpr std::uint32_t localHeaderSignature = 0x04034B50;
constexpr std::uint16_t zip64Version = 45;
constexpr std::uint32_t zip64Mark = 0xFFFFFFFF;
constexpr std::uint16_t zip64BlockKind = 1;
constexpr std::uint16_t zip64BlockSize = 16;
constexpr std::uint16_t nameLength = 1;
constexpr std::uint32_t entryBytes = 46 + nameLength + 4 + zip64BlockSize;
// Bits 1 and 2 belong to the methods; the others tell of encryption, descriptors and names, which the copy has not.
constexpr std::uint16_t methodFlags = 6;

void ZAPutHead(ZAUnpacker& unpacker, const ZAEntry& entry) {
    const auto flags = static_cast<std::uint16_t>(entry.flags & methodFlags);
    std::uint8_t* place = unpacker.head;
    ZAPut(place, entrySignature, 4);
    ZAPut(place, zip64Version, 2);
    ZAPut(place, zip64Version, 2);
    ZAPut(place, flags, 2);
    ZAPut(place, entry.method, 2);
    ZAPut(place, 0, 4);  // time and date
    ZAPut(place, entry.checksum, 4);
    ZAPut(place, zip64Mark, 4);
    ZAPut(place, zip64Mark, 4);
    ZAPut(place, nameLength, 2);
    ZAPut(place, 4 + zip64BlockSize, 2);
    ZAPut(place, 0, 2 + 2 + 2 + 4);  // comment, disk, attributes
    ZAPut(place, entryBytes, 4);     // offset of the local header
    ZAPut(place, 'm', nameLength);
    ZAPut(place, zip64BlockKind, 2);
    ZAPut(place, zip64BlockSize, 2);
    ZAPut(place, entry.size, 8);
    ZAPut(place, unpacker.shownBytes, 8);
    ZAPut(place, localHeaderSignature, 4);
    ZAPut(place, zip64Version, 2);
    ZAPut(place, flags, 2);
    ZAPut(place, entry.method, 2);
    ZAPut(place, 0, 4 + 4);  // time, date, checksum
    ZAPut(place, 0, 4 + 4);  // sizes: those of the directory count
    ZAPut(place, nameLength, 2);
    ZAPut(place, 0, 2);
    ZAPut(place, 'm', nameLength);
}

// One member, and a directory at offset 0.
constexpr std::uint8_t endRecord[endRecordBytes] = {'P', 'K', 5, 6, 0, 0, 0, 0, 1, 0, 1, 0, entryBytes};

std::uint64_t ZAShownSize(const ZAUnpacker& unpacker) {
    return unpackerHeadBytes + unpacker.shownBytes + paddingBytes + endRecordBytes;
}

// Reads packed bytes, from an offset among the shown ones. Returns how many came, or -1.
std::int64_t ZAReadPacked(ZAUnpacker& unpacker, std::uint64_t offset, void* destination, std::uint64_t size) {
    std::uint32_t came = 0;
    if (offset < unpacker.available) {
        const auto wanted = static_cast<std::uint32_t>(
            std::min({size, unpacker.available - offset, std::uint64_t{std::numeric_limits<std::uint32_t>::max()}}));
        if (UTReadAt(*unpacker.file, unpacker.dataOffset + offset, destination, wanted, came) != 0) came = 0;
    }
    if (came > 0) return came;
    zip_error_set(&unpacker.error, ZIP_ER_EOF, 0);
    return -1;
}

// Reads shown bytes at the position; may deliver fewer than asked for.
std::int64_t ZAReadShown(ZAUnpacker& unpacker, void* destination, std::uint64_t size) {
    const std::uint64_t dataEnd = unpackerHeadBytes + unpacker.shownBytes;
    const std::uint64_t paddingEnd = dataEnd + paddingBytes;
    const std::uint64_t position = unpacker.shownPosition;
    std::int64_t came = 0;
    if (position < unpackerHeadBytes) {
        came = static_cast<std::int64_t>(std::min<std::uint64_t>(size, unpackerHeadBytes - position));
        std::memcpy(destination, unpacker.head + position, static_cast<std::size_t>(came));
    } else if (position < dataEnd) {
        came = ZAReadPacked(unpacker, position - unpackerHeadBytes, destination, std::min(size, dataEnd - position));
    } else if (position < paddingEnd) {
        came = static_cast<std::int64_t>(std::min(size, paddingEnd - position));
        std::memset(destination, 0, static_cast<std::size_t>(came));
    } else if (position < paddingEnd + endRecordBytes) {
        came = static_cast<std::int64_t>(std::min(size, paddingEnd + endRecordBytes - position));
        std::memcpy(destination, endRecord + (position - paddingEnd), static_cast<std::size_t>(came));
    }
    if (came > 0) unpacker.shownPosition += static_cast<std::uint64_t>(came);
    return came;
}

std::int64_t ZASeekShown(ZAUnpacker& unpacker, void* arguments, std::uint64_t size) {
    const std::int64_t target =
        zip_source_seek_compute_offset(unpacker.shownPosition, ZAShownSize(unpacker), arguments, size, &unpacker.error);
    if (target < 0) return -1;
    unpacker.shownPosition = static_cast<std::uint64_t>(target);
    return 0;
}

std::int64_t ZATellStatus(const ZAUnpacker& unpacker, void* destination, std::uint64_t size) {
    if (size < sizeof(zip_stat_t)) return -1;
    auto& status = *static_cast<zip_stat_t*>(destination);
    zip_stat_init(&status);
    status.size = ZAShownSize(unpacker);
    status.valid = ZIP_STAT_SIZE;
    return sizeof(zip_stat_t);
}

zip_int64_t ZAServe(void* context, void* data, zip_uint64_t size, zip_source_cmd_t command) {
    ZAUnpacker& unpacker = *static_cast<ZAUnpacker*>(context);
    switch (command) {
        case ZIP_SOURCE_OPEN:
            unpacker.shownPosition = 0;
            return 0;
        case ZIP_SOURCE_READ:
            return ZAReadShown(unpacker, data, size);
        case ZIP_SOURCE_SEEK:
            return ZASeekShown(unpacker, data, size);
        case ZIP_SOURCE_TELL:
            return static_cast<zip_int64_t>(unpacker.shownPosition);
        case ZIP_SOURCE_STAT:
            return ZATellStatus(unpacker, data, size);
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(&unpacker.error, data, size);
        case ZIP_SOURCE_CLOSE:
        case ZIP_SOURCE_FREE:
            return 0;
        case ZIP_SOURCE_SUPPORTS:
            return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                                  ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL,
                                                  ZIP_SOURCE_SUPPORTS, -1);
        default:
            zip_error_set(&unpacker.error, ZIP_ER_OPNOTSUPP, 0);
            return -1;
    }
}

// ---- The stream of unpacked bytes ----------------------------------------------------------------------------------

void ZACloseStream(ZAUnpacker& unpacker) {
    if (unpacker.stream != nullptr) zip_fclose(unpacker.stream);
    if (unpacker.archive != nullptr) zip_discard(unpacker.archive);
    unpacker.stream = nullptr;
    unpacker.archive = nullptr;
}

// Opens the stream at its start, anew if it is open.
bool ZAOpenStream(ZAUnpacker& unpacker) {
    ZACloseStream(unpacker);
    unpacker.position = 0;
    zip_source_t* const source = zip_source_function_create(ZAServe, &unpacker, nullptr);
    if (source == nullptr) return false;
    unpacker.archive = zip_open_from_source(source, ZIP_RDONLY, nullptr);
    if (unpacker.archive == nullptr) {
        zip_source_free(source);
        return false;
    }
    unpacker.stream = zip_fopen_index(unpacker.archive, 0, 0);
    if (unpacker.stream == nullptr) ZACloseStream(unpacker);
    return unpacker.stream != nullptr;
}

// libzip's own read: size bytes, or fewer at the end and in front of an error, or -1.
std::int64_t ZAReadStream(ZAUnpacker& unpacker, void* destination, std::uint32_t size) {
    return zip_fread(unpacker.stream, destination, size);
}

// Whether the stream's error says no more than that the checksum or the size is not the one told.
bool ZAEndedWell(const ZAUnpacker& unpacker) {
    const int code = zip_error_code_zip(zip_file_get_error(unpacker.stream));
    return code == ZIP_ER_CRC || code == ZIP_ER_INCONS;
}

void ZAMeetEnd(ZAUnpacker& unpacker, bool damaged) {
    unpacker.end = unpacker.position;
    unpacker.damaged = damaged;
    ZACloseStream(unpacker);
}

// Opens the stream anew and unpacks again what was already delivered.
bool ZAReopenAt(ZAUnpacker& unpacker, std::uint64_t position) {
    if (!ZAOpenStream(unpacker)) return false;
    std::uint8_t dropped[stepBytes];
    while (unpacker.position < position) {
        const auto step = static_cast<std::uint32_t>(std::min<std::uint64_t>(stepBytes, position - unpacker.position));
        if (ZAReadStream(unpacker, dropped, step) != step) return false;
        unpacker.position += step;
    }
    return true;
}

// Unpacks again from a position, byte by byte, until the damage, each byte set to fill before. Returns how many bytes
// libzip counted.
std::uint32_t ZACreepToDamage(ZAUnpacker& unpacker, std::uint64_t position, std::uint8_t fill, std::uint8_t* bytes,
                              std::uint32_t size) {
    bytes[0] = fill;
    if (!ZAReopenAt(unpacker, position)) return 0;
    for (std::uint32_t index = 0; index < size; ++index) {
        bytes[index] = fill;
        if (ZAReadStream(unpacker, bytes + index, 1) != 1) return index;
    }
    return size;
}

// Delivers what stands between the position and the damage that a read of size bytes met, at most stepBytes of them.
// libzip drops all bytes of the step in which an unpacker meets damage, though the unpacker has written them. Byte by
// byte, that is the last one alone; and that one was written if it comes out the same whatever stood there before.
std::uint32_t ZASalvage(ZAUnpacker& unpacker, std::uint8_t* destination, std::uint32_t size) {
    const std::uint64_t position = unpacker.position;
    std::uint8_t again[stepBytes];
    const std::uint32_t counted = ZACreepToDamage(unpacker, position, 0x00, destination, size);
    const std::uint32_t countedAgain = ZACreepToDamage(unpacker, position, 0xFF, again, size);
    const bool oneMore = counted < size && counted == countedAgain && destination[counted] == again[counted];
    const std::uint32_t saved = counted + (oneMore ? 1 : 0);
    unpacker.position = position + saved;
    return saved;
}

// Reads the next bytes, at most stepBytes. Returns how many came; with 0 the end is known.
std::uint32_t ZAStep(ZAUnpacker& unpacker, std::uint8_t* destination, std::uint32_t size) {
    const std::int64_t came = ZAReadStream(unpacker, destination, size);
    if (came > 0) {
        unpacker.position += static_cast<std::uint64_t>(came);
        return static_cast<std::uint32_t>(came);
    }
    if (came == 0 || ZAEndedWell(unpacker)) {
        ZAMeetEnd(unpacker, false);
        return 0;
    }
    const std::uint32_t saved = ZASalvage(unpacker, destination, size);
    ZAMeetEnd(unpacker, true);
    return saved;
}

// Makes the stream stand at an offset. Returns whether it does; otherwise the end is known.
bool ZAStandAt(ZAUnpacker& unpacker, std::uint64_t offset) {
    if (unpacker.stream == nullptr || offset < unpacker.position) {
        if (!ZAOpenStream(unpacker)) {  // memory is exhausted: as good as damage
            ZAMeetEnd(unpacker, true);
            return false;
        }
    }
    std::uint8_t dropped[stepBytes];
    while (unpacker.position < offset && unpacker.stream != nullptr) {
        const std::uint64_t distance = offset - unpacker.position;
        static_cast<void>(
            ZAStep(unpacker, dropped, static_cast<std::uint32_t>(std::min<std::uint64_t>(stepBytes, distance))));
    }
    return unpacker.stream != nullptr;
}

}  // namespace

std::int32_t ZAStartUnpacker(ZAUnpacker& unpacker, UTHandle& file, const ZAEntry& entry, std::uint64_t dataOffset) {
    const std::uint64_t fileSize = UTGetSize(file);
    unpacker.file = &file;
    unpacker.dataOffset = dataOffset;
    unpacker.available = dataOffset < fileSize ? std::min(entry.packedSize, fileSize - dataOffset) : 0;
    unpacker.shownBytes = entry.packedSize > 0 ? unpacker.available + 1 : 0;
    unpacker.shownPosition = 0;
    unpacker.archive = nullptr;
    unpacker.stream = nullptr;
    unpacker.position = 0;
    unpacker.end = notMet;
    unpacker.damaged = false;
    zip_error_init(&unpacker.error);
    ZAPutHead(unpacker, entry);
    if (ZAOpenStream(unpacker)) return 0;
    zip_error_fini(&unpacker.error);
    return -1;
}

std::int32_t ZAReadUnpacked(ZAUnpacker& unpacker, std::uint64_t offset, void* destination, std::uint32_t size,
                            std::uint32_t& count) {
    auto* const bytes = static_cast<std::uint8_t*>(destination);
    count = 0;
    if (size == 0) return 0;
    if (offset < unpacker.end && ZAStandAt(unpacker, offset)) {
        while (count < size && unpacker.position < unpacker.end) {
            const std::uint64_t left = std::min<std::uint64_t>(size - count, unpacker.end - unpacker.position);
            const auto step = static_cast<std::uint32_t>(std::min<std::uint64_t>(left, stepBytes));
            count += ZAStep(unpacker, bytes + count, step);
        }
    }
    return count == 0 && unpacker.damaged ? -1 : 0;
}

void ZAStopUnpacker(ZAUnpacker& unpacker) {
    ZACloseStream(unpacker);
    zip_error_fini(&unpacker.error);
}
