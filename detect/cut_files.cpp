// cut_files.cpp - how long a file should be, as its first bytes tell it.
//
//   Format                 Mark                   The file reaches to
//   RIFF, RIFX             "RIFF", "RIFX" at 0    8 and the 32 bits at 4, little- or big-endian; FFFFFFFF is a stream's
//   IFF                    "FORM" at 0            8 and the 32 bits at 4, big-endian
//   Windows bitmap         "BM" at 0, and the     the 32 bits at 2, and the pixels' end: the 32 bits at 10 and rows of
//                          size of a header at 14 the width at 18, the height at 22 and the bits at 28, or the 32 bits
//                                                 at 34 where 30 tells a compression; little-endian
//   7z                     37 7A BC AF 27 1C      32, the 64 bits at 12 and the 64 bits at 20, little-endian
//   SQLite                 its name at 0          pages of the 16 bits at 16 (1 is 65,536), as many as the 32 bits at 28,
//                                                 big-endian; these hold where the counters at 24 and 92 are equal
//   WOFF, WOFF2            "wOFF", "wOF2" at 0    the 32 bits at 8, big-endian
//   glTF, binary           "glTF" at 0            the 32 bits at 8, little-endian
//   ICC profile            "acsp" at 36           the 32 bits at 0, big-endian
//   Cabinet                "MSCF" at 0            the 32 bits at 8, little-endian
//   TIFF                   "II*" 00, "MM" 00 "*"  behind the 32 bits at 4, where the first directory stands
//   OpenType, TrueType     00 01 00 00, "OTTO"    the tables listed from 12 on: offset and length in 32 bits each, at 8 of
//                                                 every 16 bytes, big-endian
//   Compound storage       D0 CF 11 E0 A1 B1 1A   the sectors that hold the allocation table, as many as the 32 bits at 44
//                          E1                     tell, from 76 on, and the directory's first, at 48
//   ZIP                    "PK" 03 04             its directory, which the identification has looked for
//
// Sources: the formats' published descriptions (RIFF: Multimedia Programming Interface 1.0; EA IFF 85; 7zFormat.txt; the
// SQLite file format; W3C WOFF 1.0 and 2.0; Khronos glTF 2.0; ICC.1:2022; [MS-CAB]; TIFF 6.0; ISO/IEC 14496-22; [MS-CFB];
// APPNOTE.TXT).
#include "detect/cut_files.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <span>
#include <string_view>

#include "reader/big_endian.h"
#include "reader/little_endian.h"

namespace {

using FIStart = std::span<const std::uint8_t>;

// Where the file should end, or 0 when its start does not tell. The start has as many bytes as the rule needs.

std::uint64_t FIEndOfRiff(FIStart start) {
    const std::uint32_t size = start[3] == 'X' ? FILoadDWordBE(&start[4]) : FILoadDWordLE(&start[4]);
    return size != 0xFFFFFFFF ? 8 + std::uint64_t{size} : 0;
}

std::uint64_t FIEndOfForm(FIStart start) { return 8 + std::uint64_t{FILoadDWordBE(&start[4])}; }

// Some writers tell a size of the file that is too large, so the pixels are to end behind the file's end too.
std::uint64_t FIEndOfBitmap(FIStart start) {
    constexpr std::uint32_t headerSizes[] = {40, 52, 56, 64, 108, 124};
    constexpr std::uint32_t uncompressed = 0;
    if (std::ranges::find(headerSizes, FILoadDWordLE(&start[14])) == std::end(headerSizes)) return 0;
    const std::uint64_t width = FILoadDWordLE(&start[18]);
    const auto height = static_cast<std::int32_t>(FILoadDWordLE(&start[22]));  // negative: the first row is the top one
    const std::uint64_t rows = static_cast<std::uint64_t>(height < 0 ? -std::int64_t{height} : height);
    const std::uint64_t rowBytes = (width * FILoadWordLE(&start[28]) + 31) / 32 * 4;
    constexpr std::uint64_t mostPixelBytes = UINT32_MAX;
    if (rows > 0 && rowBytes > mostPixelBytes / rows) return 0;
    const bool plain = FILoadDWordLE(&start[30]) == uncompressed;
    const std::uint64_t pixelEnd = FILoadDWordLE(&start[10]) + (plain ? rowBytes * rows : FILoadDWordLE(&start[34]));
    return std::min<std::uint64_t>(FILoadDWordLE(&start[2]), pixelEnd);
}

std::uint64_t FIEndOf7z(FIStart start) {
    const std::uint64_t offset = FILoadQWordLE(&start[12]);
    const std::uint64_t size = FILoadQWordLE(&start[20]);
    const std::uint64_t end = 32 + offset + size;
    return end >= offset && end >= size ? end : UINT64_MAX;
}

std::uint64_t FIEndOfDatabase(FIStart start) {
    if (FILoadDWordBE(&start[24]) != FILoadDWordBE(&start[92])) return 0;
    const std::uint32_t pageSize = FILoadWordBE(&start[16]);
    return std::uint64_t{pageSize == 1 ? 65536 : pageSize} * FILoadDWordBE(&start[28]);
}

std::uint64_t FIBigEndAt8(FIStart start) { return FILoadDWordBE(&start[8]); }
std::uint64_t FILittleEndAt8(FIStart start) { return FILoadDWordLE(&start[8]); }
std::uint64_t FIBigEndAt0(FIStart start) { return FILoadDWordBE(&start[0]); }

std::uint64_t FIEndOfTiff(FIStart start) {
    return std::uint64_t{start[0] == 'M' ? FILoadDWordBE(&start[4]) : FILoadDWordLE(&start[4])} + 1;
}

std::uint64_t FIEndOfFont(FIStart start) {
    constexpr std::size_t headerSize = 12;
    constexpr std::size_t tableSize = 16;
    constexpr std::size_t mostTables = 64;  // other formats begin with these bytes too
    const std::size_t tables = FILoadWordBE(&start[4]);
    if (tables > mostTables) return 0;
    std::uint64_t end = 0;
    for (std::size_t index = 0; index < tables; ++index) {
        const std::size_t place = headerSize + index * tableSize;
        if (place + tableSize > start.size()) break;
        end = std::max(end, std::uint64_t{FILoadDWordBE(&start[place + 8])} + FILoadDWordBE(&start[place + 12]));
    }
    return end;
}

std::uint64_t FIEndOfStorage(FIStart start) {
    constexpr std::uint32_t longestSectorShift = 12;
    constexpr std::uint32_t shortestSectorShift = 9;
    constexpr std::uint32_t sectorsListed = 109;
    constexpr std::uint32_t largestSector = 0xFFFFFFFA;
    const std::uint32_t shift = FILoadWordLE(&start[30]);
    if (shift < shortestSectorShift || shift > longestSectorShift) return 0;
    std::uint32_t last = FILoadDWordLE(&start[48]);
    if (last > largestSector) last = 0;
    const std::uint32_t tables = std::min(FILoadDWordLE(&start[44]), sectorsListed);
    for (std::uint32_t index = 0; index < tables; ++index) {
        const std::uint32_t sector = FILoadDWordLE(&start[76 + std::size_t{index} * 4]);
        if (sector <= largestSector) last = std::max(last, sector);
    }
    // A last sector that is not full does no harm to readers.
    return ((std::uint64_t{last} + 1) << shift) + 1;
}

struct FICutRule {
    std::size_t place;  // of the mark
    std::string_view mark;
    std::size_t needs;  // bytes of the start
    std::uint64_t (*end)(FIStart start);
};

constexpr FICutRule rules[] = {
    // clang-format off
    { 0, {"RIFF", 4},                             8, FIEndOfRiff},
    { 0, {"RIFX", 4},                             8, FIEndOfRiff},
    { 0, {"FORM", 4},                             8, FIEndOfForm},
    { 0, {"BM", 2},                              38, FIEndOfBitmap},
    { 0, {"7z\xBC\xAF\x27\x1C", 6},              28, FIEndOf7z},
    { 0, {"SQLite format 3\0", 16},              96, FIEndOfDatabase},
    { 0, {"wOFF", 4},                            12, FIBigEndAt8},
    { 0, {"wOF2", 4},                            12, FIBigEndAt8},
    { 0, {"glTF", 4},                            12, FILittleEndAt8},
    {36, {"acsp", 4},                            40, FIBigEndAt0},
    { 0, {"MSCF", 4},                            12, FILittleEndAt8},
    { 0, {"II*\0", 4},                            8, FIEndOfTiff},
    { 0, {"MM\0*", 4},                            8, FIEndOfTiff},
    { 0, {"\0\1\0\0", 4},                        12, FIEndOfFont},
    { 0, {"OTTO", 4},                            12, FIEndOfFont},
    { 0, {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8}, 512, FIEndOfStorage},
    // clang-format on
};

bool FIMarkFits(const FICutRule& rule, FIStart start) {
    return start.size() >= rule.place + rule.mark.size() &&
           std::memcmp(start.data() + rule.place, rule.mark.data(), rule.mark.size()) == 0;
}

// The first bytes of the marks that begin a file. Most files begin with none of them.
constexpr auto firstBytes = [] {
    std::array<bool, 256> first = {};
    for (const FICutRule& rule : rules) {
        if (rule.place == 0) first[static_cast<std::uint8_t>(rule.mark[0])] = true;
    }
    first['P'] = true;  // of an archive
    return first;
}();

constexpr FICutRule profileRule = *std::ranges::find(rules, std::size_t{36}, &FICutRule::place);

// Whether there is anything to look at.
bool FIMayBeJudged(FIStart start) { return !start.empty() && (firstBytes[start[0]] || FIMarkFits(profileRule, start)); }

bool FICouldBeText(std::string_view mark) {
    return std::ranges::all_of(mark, [](char byte) { return byte >= ' ' && byte <= '~'; });
}

bool FIStartsWith(FIStart start, std::string_view mark) {
    return start.size() >= mark.size() && std::memcmp(start.data(), mark.data(), mark.size()) == 0;
}

// What the identification has found out about the handle.
bool FIHasLostItsDirectory(const UTHandle& file, FIStart start) {
    if (FIStartsWith(start, {"PK\3\4", 4})) {
        return file.archiveSearch == ZASearch::NoEndRecord || file.archiveSearch == ZASearch::NotThere;
    }
    return FIStartsWith(start, {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8}) && file.storageLooked &&
           file.storage == nullptr;
}

}  // namespace

bool FIIsCut(const UTHandle& file, const FIHead& head, std::uint64_t size, FIBasis basis) {
    const FIStart start(head.bytes, head.size);
    if (!FIMayBeJudged(start)) return false;
    if (FIHasLostItsDirectory(file, start)) return true;
    for (const FICutRule& rule : rules) {
        if (!FIMarkFits(rule, start) || (basis == FIBasis::Text && FICouldBeText(rule.mark))) continue;
        // A file that ends in what tells its length is cut too.
        return start.size() < rule.needs ? size == start.size() : rule.end(start) > size;
    }
    return false;
}
