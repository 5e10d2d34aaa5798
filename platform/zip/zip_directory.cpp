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
#include <bit>
#include <cstring>
#include <iterator>

#include "platform/base_utility.h"
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
constexpr std::size_t longestName = 65535;

constexpr std::uint32_t signatureSize = 4;
constexpr std::uint8_t endRecordSignature[] = {'P', 'K', 5, 6};
constexpr std::uint8_t zip64LocatorSignature[] = {'P', 'K', 6, 7};
constexpr std::uint8_t zip64EndRecordSignature[] = {'P', 'K', 6, 6};
constexpr std::uint8_t entrySignature[] = {'P', 'K', 1, 2};
constexpr std::uint8_t closingSignature[] = {'P', 'K', 5, 5};
constexpr std::uint8_t localHeaderSignature[] = {'P', 'K', 3, 4};

struct ZAWanted {
    std::string_view name;
    bool anyCase;
};

// The names that are noted, each of another length: those by which packages are told. Some writers put the slash in front
// with which relationships name a part.
constexpr ZAWanted notedNames[] = {
    {"mimetype", false},            //
    {"_rels/.rels", true},          //
    {"/_rels/.rels", true},         //
    {"[Content_Types].xml", true},  //
    {"/[Content_Types].xml", true},
};
static_assert(std::size(notedNames) == notedMembers);

constexpr std::uint32_t notedLengthsEnd = 32;

// The lengths of the names as bits.
constexpr std::uint32_t ZANotedLengths() {
    std::uint32_t lengths = 0;
    for (const ZAWanted& noted : notedNames) lengths |= std::uint32_t{1} << noted.name.size();
    return lengths;
}

constexpr std::uint32_t notedLengths = ZANotedLengths();
static_assert(std::popcount(notedLengths) == notedMembers);

constexpr std::uint16_t zip64BlockKind = 1;
constexpr std::uint32_t zip64NumberSize = 8;
constexpr std::uint32_t zip64Mark = 0xFFFFFFFF;

bool ZAHasSignature(const std::uint8_t* bytes, const std::uint8_t (&signature)[signatureSize]) {
    return std::memcmp(bytes, signature, signatureSize) == 0;
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

enum class ZAWalk { Found, NotThere, Broken };

bool ZAIsName(const std::uint8_t* bytes, const ZAWanted& wanted) {
    return std::ranges::equal(
        wanted.name, std::string_view(reinterpret_cast<const char*>(bytes), wanted.name.size()),
        [&](char one, char other) { return wanted.anyCase ? FILowerAscii(one) == FILowerAscii(other) : one == other; });
}

// Passes over a name of the wanted one's length and tells whether it is the wanted one.
bool ZAMatchName(ZAScanner& scanner, const ZAWanted& wanted) {
    std::string_view rest = wanted.name;
    bool equal = true;
    while (!rest.empty()) {
        const auto piece = static_cast<std::uint32_t>(std::min<std::size_t>(rest.size(), scannerBytes));
        const std::uint8_t* const bytes = ZALook(scanner, piece);
        if (bytes == nullptr) return false;
        equal = equal && ZAIsName(bytes, {rest.substr(0, piece), wanted.anyCase});
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

// Notes the entry whose name comes next if it is the first of a name that is asked for in most archives. entry is a copy
// of it. A name that can't be read ends the notes and not the walk, which passes over it.
void ZANoteEntry(ZAScanner& scanner, std::uint32_t nameLength, std::uint32_t extraLength, ZAEntry entry,
                 ZADirectory& directory) {
    if (nameLength >= notedLengthsEnd || (notedLengths >> nameLength & 1) == 0) return;
    const auto* const noted =
        std::ranges::find(notedNames, nameLength, [](const ZAWanted& wanted) { return wanted.name.size(); });
    ZANote& note = directory.notes[noted - notedNames];
    const std::uint8_t* const name = ZALook(scanner, nameLength);
    if (name == nullptr) directory.noted = false;
    if (name == nullptr || note.there || !ZAIsName(name, *noted)) return;
    // The rest of the walk goes on in front of the name: the extra field is read by another.
    ZAScanner extra;
    const std::uint64_t position = scanner.end - ZALeft(scanner);
    ZAStartScan(extra, *scanner.file, position + nameLength, scanner.end);
    ZAReadExtraField(extra, extraLength, entry);
    note = {true, entry};
}

// The lengths of what follows an entry's header.
struct ZALengths {
    std::uint32_t name;
    std::uint32_t extra;
    std::uint32_t comment;
};

enum class ZAStep { Entry, End, Broken };

// Takes the header of the next entry, of which all is there as far as the directory's size tells.
ZAStep ZATakeHeader(ZAScanner& scanner, ZAEntry& entry, ZALengths& lengths) {
    if (ZALeft(scanner) == 0) return ZAStep::End;
    const std::uint8_t* const sign = ZALook(scanner, signatureSize);
    if (sign != nullptr && ZAHasSignature(sign, closingSignature)) return ZAStep::End;
    const std::uint8_t* const header = ZALook(scanner, entryHeaderSize);
    if (header == nullptr || !ZAHasSignature(header, entrySignature)) return ZAStep::Broken;
    ZAReadEntry(header, entry);
    lengths = {FILoadWordLE(header + 28), FILoadWordLE(header + 30), FILoadWordLE(header + 32)};
    ZAPass(scanner, entryHeaderSize);
    return lengths.name + lengths.extra + lengths.comment <= ZALeft(scanner) ? ZAStep::Entry : ZAStep::Broken;
}

// Walks the entries until the wanted one, or all of them when wanted is null. Notes what notes asks for, if not null.
ZAWalk ZAWalkEntries(ZAScanner& scanner, const ZAWanted* wanted, ZAEntry& entry, ZADirectory* notes) {
    ZALengths lengths;
    ZAStep step;
    while ((step = ZATakeHeader(scanner, entry, lengths)) == ZAStep::Entry) {
        if (notes != nullptr) ZANoteEntry(scanner, lengths.name, lengths.extra, entry, *notes);
        if (wanted != nullptr && wanted->name.size() == lengths.name) {
            if (ZAMatchName(scanner, *wanted)) {
                ZAReadExtraField(scanner, lengths.extra, entry);
                return ZAWalk::Found;
            }
        } else {
            ZAPass(scanner, lengths.name);
        }
        ZAPass(scanner, lengths.extra + lengths.comment);
    }
    return step == ZAStep::End ? ZAWalk::NotThere : ZAWalk::Broken;
}

// Takes a name that is longer than the buffer into memory of its own.
bool ZATakeLongName(ZAScanner& scanner, char* name, std::uint32_t length) {
    while (length > 0) {
        const std::uint32_t piece = std::min(length, scannerBytes);
        const std::uint8_t* const bytes = ZALook(scanner, piece);
        if (bytes == nullptr) return false;
        std::memcpy(name, bytes, piece);
        ZAPass(scanner, piece);
        name += piece;
        length -= piece;
    }
    return true;
}

// Memory for names that are longer than the buffer, once there is one.
struct ZALongName {
    char* bytes;
};

// Takes a name, which lasts until the scanner goes on. Returns false when it can't be had.
bool ZATakeName(ZAScanner& scanner, std::uint32_t length, ZALongName& longName, std::string_view& name) {
    if (length <= scannerBytes) {
        const std::uint8_t* const bytes = ZALook(scanner, length);
        if (bytes == nullptr) return false;
        name = {reinterpret_cast<const char*>(bytes), length};
        ZAPass(scanner, length);
        return true;
    }
    if (longName.bytes == nullptr) {
        longName.bytes = static_cast<char*>(HeapAlloc(GetProcessHeap(), 0, longestName));
        if (longName.bytes == nullptr) return false;
    }
    name = {longName.bytes, length};
    return ZATakeLongName(scanner, longName.bytes, length);
}

bool ZAVisitScanned(ZAScanner& scanner, ZALongName& longName, ZANameVisitor visit, void* context) {
    ZAEntry entry;
    ZALengths lengths;
    ZAStep step;
    while ((step = ZATakeHeader(scanner, entry, lengths)) == ZAStep::Entry) {
        std::string_view name;
        if (!ZATakeName(scanner, lengths.name, longName, name)) return false;
        if (!visit(context, name)) return true;
        ZAPass(scanner, lengths.extra + lengths.comment);
    }
    return step == ZAStep::End;
}

// The note on a wanted name, or null when it is not one of those that are noted.
const ZANote* ZAFindNote(const ZADirectory& directory, const ZAWanted& wanted) {
    if (!directory.noted) return nullptr;
    const auto* const noted = std::ranges::find_if(notedNames, [&wanted](const ZAWanted& name) {
        return name.anyCase == wanted.anyCase && name.name == wanted.name;
    });
    return noted != std::end(notedNames) ? &directory.notes[noted - notedNames] : nullptr;
}

// ---- Finding the directory -----------------------------------------------------------------------------------------

// What one end record tells.
struct ZAEndRecord {
    std::uint64_t position;
    std::uint64_t directorySize;
    std::uint64_t directoryOffset;
};

// Whether all entries of a directory at that place can be read. budget is what may still be read for that, in bytes.
bool ZATryPlace(UTHandle& file, ZADirectory& place, std::uint64_t& budget) {
    if (place.size > budget) return false;
    ZAScanner scanner;
    ZAStartScan(scanner, file, place.start, place.start + place.size);
    ZAEntry entry;
    place.noted = UTIsUnseen(file);
    for (ZANote& note : place.notes) note.there = false;
    const bool readable = ZAWalkEntries(scanner, nullptr, entry, place.noted ? &place : nullptr) == ZAWalk::NotThere;
    budget -= std::min(scanner.next - place.start, budget);
    return readable;
}

// Whether an archive that begins at that offset, not 0, is one inside another that the file begins with. An archive
// that was cut has lost its directory, and a whole one among its members does not answer for it.
bool ZALiesInAnother(UTHandle& file, std::uint64_t archiveStart) {
    return ZALocalHeaderStandsAt(file, 0) && ZALocalHeaderStandsAt(file, archiveStart);
}

void ZASetPlace(ZADirectory& directory, std::uint64_t start, std::uint64_t size, std::uint64_t shift) {
    directory.start = start;
    directory.size = size;
    directory.shift = shift;
}

// Tries the place that an end record tells, counted from the file's start, then the one directly in front of the
// record: the archive may have gained or lost bytes since its offsets were written.
bool ZATryEndRecord(UTHandle& file, const ZAEndRecord& record, std::uint64_t& budget, ZADirectory& directory) {
    if (record.directorySize > record.position) return false;
    const std::uint64_t lastStart = record.position - record.directorySize;
    if (record.directoryOffset <= lastStart) {
        ZASetPlace(directory, record.directoryOffset, record.directorySize, 0);
        if (ZATryPlace(file, directory, budget)) return true;
    }
    ZASetPlace(directory, lastStart, record.directorySize, lastStart - record.directoryOffset);
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

// ---- Searching the end records -------------------------------------------------------------------------------------

// Where an end record may begin in a file, and what is left of the search.
struct ZAEndSearch {
    UTHandle* file;
    std::uint64_t first;   // the first place
    std::uint64_t behind;  // behind the last one that was not looked at
    std::uint64_t budget;  // of the walks together, so that a file full of end records costs no more than another
    ZASearch result;       // so far
};

constexpr std::uint32_t noIndex = 0xFFFFFFFF;

// The last place in front of end, an index, at which the signature stands. Its first byte is looked for by the C library,
// which takes many bytes at a time, unless it comes so often that a look at each place is cheaper.
std::uint32_t ZAFindLastSignature(const std::uint8_t* bytes, std::uint32_t end) {
    constexpr std::uint32_t mostMisses = 1024;
    for (std::uint32_t misses = 0; misses < mostMisses; ++misses) {
        const void* const place = memrchr(bytes, endRecordSignature[0], end);
        if (place == nullptr) return noIndex;
        end = static_cast<std::uint32_t>(static_cast<const std::uint8_t*>(place) - bytes);
        if (ZAHasSignature(bytes + end, endRecordSignature)) return end;
    }
    while (end > 0) {
        --end;
        if (ZAHasSignature(bytes + end, endRecordSignature)) return end;
    }
    return noIndex;
}

// Looks at the last places that were not looked at, as many as the buffer takes: of a signature begun at the last of
// them the rest is read too. Returns whether the search goes on.
bool ZASearchPiece(ZAEndSearch& search, std::uint8_t* buffer, std::uint32_t places, ZADirectory& directory) {
    const std::uint64_t start = search.behind - std::min<std::uint64_t>(search.behind - search.first, places);
    auto index = static_cast<std::uint32_t>(search.behind - start);
    if (!UTReadFully(*search.file, start, buffer, index + signatureSize - 1)) return false;
    while ((index = ZAFindLastSignature(buffer, index)) != noIndex) {
        search.result = ZASearch::NotThere;
        if (ZATryEndPosition(*search.file, start + index, search.budget, directory)) {
            search.result = ZASearch::Found;
            return false;
        }
    }
    search.behind = start;
    return search.behind > search.first;
}

// Looks at all places that are left in one piece. Where memory or the read fails, nothing has happened.
bool ZASearchRest(ZAEndSearch& search, ZADirectory& directory) {
    const auto places = static_cast<std::uint32_t>(search.behind - search.first);  // at most longestComment + 1
    auto* const buffer =
        static_cast<std::uint8_t*>(HeapAlloc(GetProcessHeap(), 0, std::size_t{places} + signatureSize - 1));
    if (buffer == nullptr) return true;
    const bool goesOn = ZASearchPiece(search, buffer, places, directory);
    HeapFree(GetProcessHeap(), 0, buffer);
    return goesOn || (search.result != ZASearch::Found && search.behind > search.first);
}

}  // namespace

ZASearch ZASearchDirectory(UTHandle& file, ZADirectory& directory) {
    const std::uint64_t fileSize = UTGetSize(file);
    if (fileSize < endRecordSize) return ZASearch::NoEndRecord;
    const std::uint64_t last = fileSize - endRecordSize;
    ZAEndSearch search = {&file, last > longestComment ? last - longestComment : 0, last + 1, largestZipDirectory,
                          ZASearch::NoEndRecord};
    constexpr std::uint32_t places = 4096;
    // Where nobody sees it the first look reaches 4,096 bytes back from the end, which is what a window of the tail holds.
    constexpr std::uint32_t placesOfTail = places - endRecordSize + 1;
    std::uint8_t buffer[places + signatureSize - 1];
    bool goesOn = ZASearchPiece(search, buffer, UTIsUnseen(file) ? placesOfTail : places, directory);
    // Hardly any archive has a comment. Where the last bytes hold no end record, the others are read in one call if
    // nobody sees it.
    if (goesOn && UTIsUnseen(file)) goesOn = ZASearchRest(search, directory);
    while (goesOn) goesOn = ZASearchPiece(search, buffer, places, directory);
    if (search.result == ZASearch::NoEndRecord && search.behind > search.first) return ZASearch::NotThere;
    return search.result;
}

bool ZAFindDirectory(UTHandle& file, ZADirectory& directory) {
    return ZASearchDirectory(file, directory) == ZASearch::Found;
}

bool ZAFindEntry(UTHandle& file, const ZADirectory& directory, std::string_view name, bool anyCase, ZAEntry& entry) {
    const ZANote* const note = ZAFindNote(directory, {name, anyCase});
    if (note != nullptr) {
        entry = note->entry;
        return note->there;
    }
    ZAScanner scanner;
    ZAStartScan(scanner, file, directory.start, directory.start + directory.size);
    const ZAWanted wanted = {name, anyCase};
    return ZAWalkEntries(scanner, &wanted, entry, nullptr) == ZAWalk::Found;
}

bool ZAVisitNames(UTHandle& file, const ZADirectory& directory, ZANameVisitor visit, void* context) {
    ZAScanner scanner;
    ZAStartScan(scanner, file, directory.start, directory.start + directory.size);
    ZALongName longName = {nullptr};
    const bool whole = ZAVisitScanned(scanner, longName, visit, context);
    HeapFree(GetProcessHeap(), 0, longName.bytes);
    return whole;
}

bool ZAFindData(UTHandle& file, const ZADirectory& directory, const ZAEntry& entry, std::uint64_t& offset) {
    const std::uint64_t position = entry.headerOffset + directory.shift;
    std::uint8_t header[localHeaderSize];
    if (!UTReadFully(file, position, header, localHeaderSize) || !ZAHasSignature(header, localHeaderSignature))
        return false;
    offset = position + localHeaderSize + FILoadWordLE(header + 26) + FILoadWordLE(header + 28);
    return true;
}
