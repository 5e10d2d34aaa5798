// quicktime.cpp - QuickTime movies by their first two atoms.
//
//   Offset  Size  Field
//        0     4  size of the first atom, big-endian
//        4     4  type of the first atom: free, skip, mdat, pnot or moov
//   size+4     4  type of the second atom, one of the same
//
// A type of "wide" is a placeholder of eight bytes: the type of the atom behind it counts.
#include "media/quicktime.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "reader/reader.h"

namespace {

constexpr FIID quickTimeFormat = 1705;

constexpr std::string_view wideAtom = "wide";
constexpr std::string_view knownAtoms[] = {"free", "skip", "mdat", "pnot", "moov"};
constexpr std::uint32_t atomSizeField = 4;

// Where the four characters of a type go.
using FIAtomTags = std::array<std::uint16_t*, 4>;

bool FITakeType(FIReader& reader, const FIAtomTags& tags) {
    for (std::uint16_t* const tag : tags) {
        *tag = FIReaderGetByte(reader);
        if (*tag == endOfFile) return false;
    }
    return true;
}

bool FIIsType(const FIAtomTags& tags, std::string_view type) {
    return std::ranges::equal(tags, type, {}, [](const std::uint16_t* tag) { return *tag; });
}

}  // namespace

bool FIIsQuickTimeAtom(FIReader& reader, std::uint16_t& tag1, std::uint16_t& tag2, std::uint16_t& tag3,
                       std::uint16_t& tag4) {
    const FIAtomTags tags = {&tag1, &tag2, &tag3, &tag4};
    if (!FITakeType(reader, tags)) return false;
    if (FIIsType(tags, wideAtom)) {
        if (FIReaderSeek(reader, FIReaderTell(reader) + atomSizeField) != 0 || !FITakeType(reader, tags)) return false;
    }
    for (const std::string_view atom : knownAtoms) {
        if (FIIsType(tags, atom)) return true;
    }
    return false;
}

FIID FIProbeQuickTime(FIReader& reader) {
    std::uint16_t tags[4] = {};
    std::uint32_t size = 0;
    if (FIReaderSeek(reader, 0) != 0 || FIReadDWordBE(reader, size) != 0) return 0;
    if (!FIIsQuickTimeAtom(reader, tags[0], tags[1], tags[2], tags[3])) return 0;
    // Quirk: the size at offset 0 counts, also when it is that of a "wide" atom which was passed over.
    if (FIReaderSeek(reader, size + atomSizeField) != 0) return 0;
    return FIIsQuickTimeAtom(reader, tags[0], tags[1], tags[2], tags[3]) ? quickTimeFormat : FIID{0};
}
