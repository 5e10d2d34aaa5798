// zip_directory.cpp - finding and walking the central directory of a ZIP archive.
//
// All numbers are little-endian. Records, with the fields that count:
//
//   End record, 22 bytes           Zip64 locator, 20 bytes         Zip64 end record, 56 bytes
//    0  4  'P' 'K' 05 06            0  4  'P' 'K' 06 07             0  4  'P' 'K' 06 06
//   12  4  size of the directory    8  8  offset of the end record 40  8  size of the directory
//   16  4  offset of the directory                                 48  8  offset of the directory
//          a comment follows
//
//   Directory entry, 46 bytes      Local header, 30 bytes          Block of an extra field, 4 bytes and its data
//    0  4  'P' 'K' 01 02            0  4  'P' 'K' 03 04             0  2  kind
//    8  2  flags                   26  2  length of the name        2  2  length of its data
//   10  2  method                  28  2  length of the extra
//   20  4  packed size                    field
//   24  4  size                                                    Zip64 block, kind 1: those of the entry's sizes and
//   28  2  length of the name                                      offset, in 8 bytes each, whose field in the entry is
//   30  2  length of the extra field                               FFFFFFFF; in the order size, packed size, offset.
//   32  2  length of the comment
//   42  4  offset of the local header
//          name, extra field and comment follow
//
// A signature block ('P' 'K' 05 05) may close the directory.
//
// Source: APPNOTE.TXT, the description of the ZIP file format, sections 4.3 and 4.5.3.
#include "platform/zip/zip_directory.h"

#include <algorithm>
#include <cstring>

#include "reader/ascii_case.h"
#include "reader/little_endian.h"

namespace {

constexpr std::uint32_t endRecordSize = 22;
constexpr std::uint32_t longestComment = 65535;
constexpr std::uint32_t zip64LocatorSize = 20;
constexpr std::uint32_t zip64EndRecordSize = 56;
constexpr std::uint32_t entryHeaderSize = 46;
constexpr std::uint32_t localHeaderSize = 30;
constexpr std::uint32_t blockHeaderSize = 4;

constexpr std::uint32_t signatureSize = 4;
constexpr std::uint8_t endRecordSignature[] = {'P', 'K', 5, 6};
constexpr std::uint8_t zip64LocatorSignature[] = {'P', 'K', 6, 7};
constexpr std::uint8_t zip64EndRecordSignature[] = {'P', 'K', 6, 6};
constexpr std::uint8_t entrySignature[] = {'P', 'K', 1, 2};
constexpr std::uint8_t closingSignature[] = {'P', 'K', 5, 5};
constexpr std::uint8_t localHeaderSignature[] = {'P', 'K', 3, 4};

constexpr std::uint16_t zip64BlockKind = 1;
constexpr std::uint32_t zip64NumberSize = 8;
constexpr std::uint32_t zip64Mark = 0xFFFFFFFF;

bool ZAHasSignature(const std::uint8_t* bytes, const std::uint8_t (&signature)[signatureSize]) {
    return std::equal(signature, signature + signatureSize, bytes);
}

// ---- Reading -------------------------------------------------------------------------------------------------------

bool ZALocalHeaderStandsAt(UTHandle& file, std::uint64_t offset) {
    std::uint8_t bytes[signatureSize];
    return UTReadFully(file, offset, bytes, signatureSize) && ZAHasSignature(bytes, localHeaderSignature);
}

constexpr std::uint32_t scannerBytes = 16384;

// The bytes of a stretch of a file, in order, through a buffer.
struct ZAScanner {
    UTHandle* file;
    std::uint64_t next;  // offset of the byte behind the buffered ones
    std::uint64_t end;   // of the stretch
    std::uint32_t begin;
    std::uint32_t filled;  // buffered bytes, from begin on
    std::uint8_t buffer[scannerBytes];
};

void ZAStartScan(ZAScanner& scanner, UTHandle& file, std::uint64_t start, std::uint64_t end) {
    scanner.file = &file;
    scanner.next = start;
    scanner.end = end;
    scanner.begin = 0;
    scanner.filled = 0;
}

// What is left of the stretch.
std::uint64_t ZALeft(const ZAScanner& scanner) { return scanner.end - (scanner.next - scanner.filled); }

// The next size bytes, at most scannerBytes, without passing over them; null when they can't be had.
const std::uint8_t* ZALook(ZAScanner& scanner, std::uint32_t size) {
    if (size > ZALeft(scanner)) return nullptr;
    if (scanner.filled < size) {
        std::memmove(scanner.buffer, scanner.buffer + scanner.begin, scanner.filled);
        scanner.begin = 0;
        const auto room = static_cast<std::uint32_t>(
            std::min<std::uint64_t>(scannerBytes - scanner.filled, scanner.end - scanner.next));
        std::uint32_t came = 0;
        if (UTReadAt(*scanner.file, scanner.next, scanner.buffer + scanner.filled, room, came) != 0) return nullptr;
        scanner.next += came;
        scanner.filled += came;
        if (scanner.filled < size) return nullptr;
    }
    return scanner.buffer + scanner.begin;
}

// Passes over size bytes, which are there.
void ZAPass(ZAScanner& scanner, std::uint64_t size) {
    const auto buffered = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, scanner.filled));
    scanner.begin += buffered;
    scanner.filled -= buffered;
    scanner.next += size - buffered;
}

// ---- Walking the directory -----------------------------------------------------------------------------------------

struct ZAWanted {
    std::string_view name;
    bool anyCase;
};

enum class ZAWalk { Found, NotThere, Broken };

// Passes over a name of the wanted one's length and tells whether it is the wanted one.
bool ZAMatchName(ZAScanner& scanner, const ZAWanted& wanted) {
    std::string_view rest = wanted.name;
    bool equal = true;
    while (!rest.empty()) {
        const auto piece = static_cast<std::uint32_t>(std::min<std::size_t>(rest.size(), scannerBytes));
        const auto* const bytes = reinterpret_cast<const char*>(ZALook(scanner, piece));
        if (bytes == nullptr) return false;
        equal = equal && std::equal(bytes, bytes + piece, rest.begin(), [&](char one, char other) {
                    return wanted.anyCase ? FILowerAscii(one) == FILowerAscii(other) : one == other;
                });
        rest.remove_prefix(piece);
        ZAPass(scanner, piece);
    }
    return equal;
}

// Replaces a number that did not fit into the entry by the next one of the zip64 block.
void ZAWiden(std::uint64_t& number, const std::uint8_t*& block, std::uint32_t& blockLeft) {
    if (number != zip64Mark || blockLeft < zip64NumberSize) return;
    number = FILoadQWordLE(block);
    block += zip64NumberSize;
    blockLeft -= zip64NumberSize;
}

// Looks for the zip64 block in an extra field of that length. A field that is not well-formed ends the look.
void ZAReadExtraField(ZAScanner& scanner, std::uint32_t length, ZAEntry& entry) {
    while (length >= blockHeaderSize) {
        const std::uint8_t* const header = ZALook(scanner, blockHeaderSize);
        if (header == nullptr) return;
        const std::uint16_t kind = FILoadWordLE(header);
        const std::uint32_t size = FILoadWordLE(header + 2);
        length -= blockHeaderSize;
        ZAPass(scanner, blockHeaderSize);
        if (size > length) return;
        if (kind == zip64BlockKind) {
            std::uint32_t blockLeft = std::min(size, 3 * zip64NumberSize);
            const std::uint8_t* block = ZALook(scanner, blockLeft);
            if (block == nullptr) return;
            ZAWiden(entry.size, block, blockLeft);
            ZAWiden(entry.packedSize, block, blockLeft);
            ZAWiden(entry.headerOffset, block, blockLeft);
            return;
        }
        length -= size;
        ZAPass(scanner, size);
    }
}

void ZAReadEntry(const std::uint8_t* header, ZAEntry& entry) {
    entry.flags = FILoadWordLE(header + 8);
    entry.method = FILoadWordLE(header + 10);
    entry.packedSize = FILoadDWordLE(header + 20);
    entry.size = FILoadDWordLE(header + 24);
    entry.headerOffset = FILoadDWordLE(header + 42);
}

// Walks the entries until the wanted one, or all of them when wanted is null.
ZAWalk ZAWalkEntries(ZAScanner& scanner, const ZAWanted* wanted, ZAEntry& entry) {
    while (ZALeft(scanner) > 0) {
        const std::uint8_t* const sign = ZALook(scanner, signatureSize);
        if (sign != nullptr && ZAHasSignature(sign, closingSignature)) break;
        const std::uint8_t* const header = ZALook(scanner, entryHeaderSize);
        if (header == nullptr || !ZAHasSignature(header, entrySignature)) return ZAWalk::Broken;
        ZAReadEntry(header, entry);
        const std::uint32_t nameLength = FILoadWordLE(header + 28);
        const std::uint32_t extraLength = FILoadWordLE(header + 30);
        const std::uint32_t commentLength = FILoadWordLE(header + 32);
        ZAPass(scanner, entryHeaderSize);
        if (nameLength + extraLength + commentLength > ZALeft(scanner)) return ZAWalk::Broken;
        if (wanted != nullptr && wanted->name.size() == nameLength) {
            if (ZAMatchName(scanner, *wanted)) {
                ZAReadExtraField(scanner, extraLength, entry);
                return ZAWalk::Found;
            }
        } else {
            ZAPass(scanner, nameLength);
        }
        ZAPass(scanner, extraLength + commentLength);
    }
    return ZAWalk::NotThere;
}

// ---- Finding the directory -----------------------------------------------------------------------------------------

// What one end record tells.
struct ZAEndRecord {
    std::uint64_t position;
    std::uint64_t directorySize;
    std::uint64_t directoryOffset;
};

// Whether all entries of a directory at that place can be read. budget is what may still be read for that, in bytes.
bool ZATryPlace(UTHandle& file, const ZADirectory& place, std::uint64_t& budget) {
    if (place.size > budget) return false;
    ZAScanner scanner;
    ZAStartScan(scanner, file, place.start, place.start + place.size);
    ZAEntry entry;
    const bool readable = ZAWalkEntries(scanner, nullptr, entry) == ZAWalk::NotThere;
    budget -= std::min(scanner.next - place.start, budget);
    return readable;
}

// Whether an archive that begins at that offset, not 0, is one inside another that the file begins with. An archive
// that was cut has lost its directory, and a whole one among its members does not answer for it.
bool ZALiesInAnother(UTHandle& file, std::uint64_t archiveStart) {
    return ZALocalHeaderStandsAt(file, 0) && ZALocalHeaderStandsAt(file, archiveStart);
}

// Tries the place that an end record tells, counted from the file's start, then the one directly in front of the
// record: the archive may have gained or lost bytes since its offsets were written.
bool ZATryEndRecord(UTHandle& file, const ZAEndRecord& record, std::uint64_t& budget, ZADirectory& directory) {
    if (record.directorySize > record.position) return false;
    const std::uint64_t lastStart = record.position - record.directorySize;
    if (record.directoryOffset <= lastStart) {
        directory = {record.directoryOffset, record.directorySize, 0};
        if (ZATryPlace(file, directory, budget)) return true;
    }
    directory = {lastStart, record.directorySize, lastStart - record.directoryOffset};
    if (directory.shift == 0 || ZALiesInAnother(file, directory.shift)) return false;
    return ZATryPlace(file, directory, budget);
}

// Reads the zip64 end record that a locator in front of the end record leads to. It stands where the locator says, or,
// when something was put in front of the archive, directly in front of the locator.
bool ZAReadZip64EndRecord(UTHandle& file, std::uint64_t endPosition, ZAEndRecord& record) {
    std::uint8_t bytes[zip64EndRecordSize];
    if (endPosition < zip64LocatorSize) return false;
    const std::uint64_t locator = endPosition - zip64LocatorSize;
    if (!UTReadFully(file, locator, bytes, zip64LocatorSize) || !ZAHasSignature(bytes, zip64LocatorSignature))
        return false;
    const std::uint64_t places[] = {FILoadQWordLE(bytes + 8), locator - zip64EndRecordSize};
    for (const std::uint64_t place : places) {
        if (place > locator || !UTReadFully(file, place, bytes, zip64EndRecordSize)) continue;
        if (!ZAHasSignature(bytes, zip64EndRecordSignature)) continue;
        record = {place, FILoadQWordLE(bytes + 40), FILoadQWordLE(bytes + 48)};
        return true;
    }
    return false;
}

// The length of the comment that follows the record is not looked at: a comment that was cut is of no harm.
bool ZATryEndPosition(UTHandle& file, std::uint64_t position, std::uint64_t& budget, ZADirectory& directory) {
    std::uint8_t bytes[endRecordSize];
    if (!UTReadFully(file, position, bytes, endRecordSize)) return false;
    ZAEndRecord record;
    if (ZAReadZip64EndRecord(file, position, record) && ZATryEndRecord(file, record, budget, directory)) return true;
    record = {position, FILoadDWordLE(bytes + 12), FILoadDWordLE(bytes + 16)};
    return ZATryEndRecord(file, record, budget, directory);
}

}  // namespace

bool ZAFindDirectory(UTHandle& file, ZADirectory& directory) {
    const std::uint64_t fileSize = UTGetSize(file);
    if (fileSize < endRecordSize) return false;
    const std::uint64_t last = fileSize - endRecordSize;
    const std::uint64_t first = last > longestComment ? last - longestComment : 0;
    // All walks together stay within the limit of one, so that a file full of end records costs no more than another.
    std::uint64_t budget = largestZipDirectory;
    constexpr std::uint32_t windowBytes = 4096;
    std::uint8_t window[windowBytes + signatureSize - 1];  // a signature may begin at each of the first windowBytes
    for (std::uint64_t behind = last + 1; behind > first;) {
        const std::uint64_t start = behind - std::min<std::uint64_t>(behind - first, windowBytes);
        const auto starts = static_cast<std::uint32_t>(behind - start);
        if (!UTReadFully(file, start, window, starts + signatureSize - 1)) return false;
        for (std::uint32_t index = starts; index-- > 0;) {
            if (!ZAHasSignature(window + index, endRecordSignature)) continue;
            if (ZATryEndPosition(file, start + index, budget, directory)) return true;
        }
        behind = start;
    }
    return false;
}

bool ZAFindEntry(UTHandle& file, const ZADirectory& directory, std::string_view name, bool anyCase, ZAEntry& entry) {
    ZAScanner scanner;
    ZAStartScan(scanner, file, directory.start, directory.start + directory.size);
    const ZAWanted wanted = {name, anyCase};
    return ZAWalkEntries(scanner, &wanted, entry) == ZAWalk::Found;
}

bool ZAFindData(UTHandle& file, const ZADirectory& directory, const ZAEntry& entry, std::uint64_t& offset) {
    const std::uint64_t position = entry.headerOffset + directory.shift;
    std::uint8_t header[localHeaderSize];
    if (!UTReadFully(file, position, header, localHeaderSize) || !ZAHasSignature(header, localHeaderSignature))
        return false;
    offset = position + localHeaderSize + FILoadWordLE(header + 26) + FILoadWordLE(header + 28);
    return true;
}
