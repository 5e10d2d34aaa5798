// archives.cpp - tar by the fields and the checksum of its first header, ZIP and LHA behind an executable stub.
//
// The tar header (IEEE Std 1003.1, "ustar Interchange Format", and its predecessors), octal text:
//
//   Offset  Size  Field
//        0     8  the start of the name, read as octal when the checksum is wrong
//      100     8  mode
//      108     8  owner
//      116     8  group
//      124    12  size
//      136    12  modification time
//      148     8  checksum: the sum of all 512 bytes with blanks in this field, of signed or of unsigned bytes
//
// The LHA header: '-' 'l' 'z' or 'h', the method's digit, '-' from its third byte on, and a level of 0 to 2 at 20.
#include "media/archives.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "reader/file_end.h"
#include "reader/find_byte.h"
#include "reader/handle_block.h"
#include "reader/head.h"
#include "reader/little_endian.h"
#include "reader/reader.h"

namespace {

constexpr FIID zipStubFormat = 1803;
constexpr FIID tarFormat = 1807;
constexpr FIID lhaStubFormat = 1814;

// ---- ZIP -----------------------------------------------------------------------------------------------------------

// 'P' 'K' 03 04 as a number. platform/zip/zip_directory.cpp names the same bytes for itself: it belongs to the platform
// library, which a host may replace.
constexpr std::uint32_t localHeaderSignature = 0x04034B50;
constexpr std::uint32_t shortStub = 12784;
constexpr std::uint32_t mediumStub = 15512;
constexpr std::uint32_t longStub = 38426;
constexpr std::uint32_t stubSizeWord = 100;
constexpr std::int32_t directoryOffsetFromEnd = -6;  // of an end record without a comment
constexpr std::uint32_t localHeaderOffset = 42;      // of an entry of the central directory

enum class FIZipTest : std::uint8_t { Match, NoMatch, EndOfFile, Failure };

// Reads a double word at an offset.
bool FIReadDWordAt(FIReader& reader, std::uint32_t offset, std::uint32_t& value) {
    return FIReaderSeek(reader, offset) == 0 && FIReadDWordLE(reader, value) == 0;
}

FIZipTest FITestSignature(FIReader& reader, std::uint32_t offset) {
    std::uint32_t signature = 0;
    if (FIReaderSeek(reader, offset) != 0) return FIZipTest::Failure;
    if (FIReadDWordLE(reader, signature) != 0) return FIZipTest::EndOfFile;
    return signature == localHeaderSignature ? FIZipTest::Match : FIZipTest::NoMatch;
}

// Follows the directory from the end of the file to the first local header.
bool FIDirectoryLeadsToHeader(FIReader& reader) {
    std::uint32_t position = 0;
    std::uint32_t directory = 0;
    std::uint32_t header = 0;
    return FITellFromEnd(reader.file, directoryOffsetFromEnd, position) && FIReadDWordAt(reader, position, directory) &&
           FIReadDWordAt(reader, directory + localHeaderOffset, header) &&
           FITestSignature(reader, header) == FIZipTest::Match;
}

// ---- tar -----------------------------------------------------------------------------------------------------------

constexpr std::size_t tarBlockSize = 512;
constexpr std::size_t tarNameStart = 0;
constexpr std::size_t tarNumberSize = 8;
constexpr std::size_t tarChecksumStart = 148;

struct FITarField {
    std::size_t offset;
    std::size_t size;
};

// In the order in which they are tested; together they lie in one stretch.
constexpr FITarField tarFields[] = {{100, 8}, {108, 8}, {116, 8}, {124, 12}, {136, 12}};

bool FIIsOctal(std::uint8_t byte) { return byte >= '0' && byte <= '7'; }
bool FIIsFiller(std::uint8_t byte) { return byte == 0 || byte == ' '; }

// Of a block of which no more than size bytes came, 0 stands for the others.
bool FIFieldsAreOctal(const std::uint8_t* block, std::size_t size = tarBlockSize) {
    return std::all_of(std::begin(tarFields), std::end(tarFields), [block, size](const FITarField& field) {
        return std::all_of(block + std::min(field.offset, size), block + std::min(field.offset + field.size, size),
                           [](std::uint8_t byte) { return FIIsOctal(byte) || FIIsFiller(byte); });
    });
}

// Parses eight bytes of octal text, fillers passed over. False when another byte stopped it; value holds what came
// before.
bool FIParseOctal(const std::uint8_t* text, std::uint32_t& value) {
    value = 0;
    for (std::size_t index = 0; index < tarNumberSize; ++index) {
        if (FIIsFiller(text[index])) continue;
        if (!FIIsOctal(text[index])) return false;
        value = value << 3 | (text[index] - std::uint32_t{'0'});
    }
    return true;
}

// Sums over bytes as unsigned numbers, those at even and at odd offsets for themselves, and how many of them are 80 or
// above: a signed number is 256 less there.
struct FIByteSums {
    std::uint32_t even;
    std::uint32_t odd;
    std::uint32_t highEven;
    std::uint32_t highOdd;

    std::uint32_t Unsigned() const { return even + odd; }
    std::int32_t Signed() const { return static_cast<std::int32_t>(even + odd - 256 * (highEven + highOdd)); }
};

// The four 16-bit numbers in 64 bits together; together they are below 65,536.
std::uint32_t FIAddLanes(std::uint64_t lanes) { return static_cast<std::uint32_t>(lanes * 0x0001000100010001 >> 48); }

// Of a block or a part of it, whose size is a multiple of 8. Eight bytes a step: a lane of 16 bits gets at most 64 bytes.
FIByteSums FISumBytes(const std::uint8_t* bytes, std::size_t size) {
    constexpr std::uint64_t lowBytes = 0x00FF00FF00FF00FF;
    constexpr std::uint64_t lowBits = 0x0001000100010001;
    std::uint64_t even = 0;
    std::uint64_t odd = 0;
    std::uint64_t highEven = 0;
    std::uint64_t highOdd = 0;
    for (std::size_t start = 0; start < size; start += 8) {
        const std::uint64_t eight = FILoadQWordLE(bytes + start);
        even += eight & lowBytes;
        odd += eight >> 8 & lowBytes;
        highEven += eight >> 7 & lowBits;
        highOdd += eight >> 15 & lowBits;
    }
    return {FIAddLanes(even), FIAddLanes(odd), FIAddLanes(highEven), FIAddLanes(highOdd)};
}

// Whether the sum of the block, with blanks for the checksum field, is the checksum, by signed or by unsigned bytes.
bool FIChecksumFits(const std::uint8_t* block, const FIByteSums& sums, std::uint32_t checksum) {
    const FIByteSums field = FISumBytes(block + tarChecksumStart, tarNumberSize);
    constexpr std::int32_t blanks = tarNumberSize * ' ';
    const auto wanted = static_cast<std::int32_t>(checksum);  // eight octal digits: at most 24 bits
    return sums.Signed() - field.Signed() + blanks == wanted ||
           static_cast<std::int32_t>(sums.Unsigned() - field.Unsigned()) + blanks == wanted;
}

// Quirk: a header with a wrong checksum passes all the same when its 256 big-endian words, of signed bytes, add up to 0
// in 16 bits, unless both the checksum and the octal value of the name's start are 0, as in a block of zeros. (Of the
// high bytes, which lie at even offsets, the sign does not show in 16 bits.)
bool FIWordSumIsZero(const std::uint8_t* block, const FIByteSums& sums, std::uint32_t checksum) {
    if (static_cast<std::uint16_t>(sums.even * 256 + sums.odd - sums.highOdd * 256) != 0) return false;
    std::uint32_t name = 0;
    static_cast<void>(FIParseOctal(block + tarNameStart, name));
    return name != 0 || checksum != 0;
}

// ---- LHA -----------------------------------------------------------------------------------------------------------

constexpr std::uint32_t lhaBlockSize = 4096;
constexpr std::uint32_t lhaLevelOffset = 20;
constexpr std::uint8_t lhaHighestLevel = 2;

bool FIIsLhaHeader(const std::uint8_t* header) {
    return header[2] == '-' && header[3] == 'l' && (header[4] == 'z' || header[4] == 'h') && header[6] == '-' &&
           header[lhaLevelOffset] <= lhaHighestLevel;
}

// Whether a header lies whole in these bytes. Tries the places of a minus sign alone, for a header has one.
bool FIHoldsLhaHeader(const std::uint8_t* bytes, std::uint32_t size) {
    constexpr std::uint32_t minusOffset = 2;
    if (size <= lhaLevelOffset) return false;
    const std::uint32_t placesEnd = size - lhaLevelOffset + minusOffset;
    return FICountPlaces(bytes, placesEnd, '-', [bytes](std::uint32_t place) {
               return place >= minusOffset && FIIsLhaHeader(bytes + place - minusOffset);
           }) != 0;
}

}  // namespace

bool FIMayBeZipStub(FIHead& head) { return head.fileSize >= shortStub + sizeof(localHeaderSignature); }

bool FIMayBeTar(FIHead& head) { return FIFieldsAreOctal(head.bytes, std::min<std::size_t>(head.size, tarBlockSize)); }

bool FIMayBeLhaStub(FIHead& head) { return FIHoldsLhaHeader(head.bytes, std::min(head.size, lhaBlockSize)); }

FIID FIProbeZipStub(FIReader& reader) {
    for (const std::uint32_t offset : {shortStub, mediumStub}) {
        const FIZipTest test = FITestSignature(reader, offset);
        if (test == FIZipTest::Match) return zipStubFormat;
        if (test != FIZipTest::NoMatch) return 0;
    }
    // Quirk: the same place is tested twice. Here the end of the file is no verdict.
    for (const std::uint32_t offset : {longStub, longStub}) {
        const FIZipTest test = FITestSignature(reader, offset);
        if (test == FIZipTest::Match) return zipStubFormat;
        if (test == FIZipTest::Failure) return 0;
    }
    if (FIReaderSeek(reader, stubSizeWord) != 0) return 0;
    const std::int32_t stubSize = FIReadWordLE(reader);
    if (stubSize < 0) return 0;
    const FIZipTest test = FITestSignature(reader, static_cast<std::uint32_t>(stubSize));
    if (test == FIZipTest::Match) return zipStubFormat;
    if (test != FIZipTest::NoMatch) return 0;
    return FIDirectoryLeadsToHeader(reader) ? zipStubFormat : FIID{0};
}

std::int32_t FICheckTarHeader(const std::uint8_t* block) {
    if (!FIFieldsAreOctal(block)) return 1;
    std::uint32_t checksum = 0;
    const FIByteSums sums = FISumBytes(block, tarBlockSize);
    if (FIParseOctal(block + tarChecksumStart, checksum) && FIChecksumFits(block, sums, checksum)) return 0;
    return FIWordSumIsZero(block, sums, checksum) ? 0 : 1;
}

FIID FIProbeTar(FIReader& reader) {
    std::uint8_t block[tarBlockSize] = {};
    std::uint32_t count = 0;
    if (!FICopyHead(reader, block, tarBlockSize, count) &&
        (FIRewindHandle(reader) != 0 || FIReadBlock(reader, block, tarBlockSize, count) != 0)) {
        return 0;
    }
    return FICheckTarHeader(block) == 0 ? tarFormat : FIID{0};
}

FIID FIProbeLhaStub(FIReader& reader) {
    std::uint8_t block[lhaBlockSize] = {};  // for a handle that tells a count and delivers nothing
    std::uint32_t count = 0;
    if (!FICopyHead(reader, block, lhaBlockSize, count)) {
        static_cast<void>(FIRewindHandle(reader));
        static_cast<void>(FIReadBlock(reader, block, lhaBlockSize, count));
    }
    return FIHoldsLhaHeader(block, count) ? lhaStubFormat : FIID{0};
}
