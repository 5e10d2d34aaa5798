// json_kinds.cpp - how much of a JSON text is read, and what it is.
//
// A text is one value or lines of objects, and a value that is wrong stays so with all that follows. So the first bytes
// are tried on their own: texts that only begin like JSON are not read.
#include "further/json_kinds.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "further/json_scan.h"
#include "platform/base_utility.h"
#include "reader/find_byte.h"

namespace {

using FIBytes = std::span<const std::uint8_t>;

constexpr std::uint32_t longestText = 4 << 20;
constexpr std::size_t triedBytes = 1024;
constexpr std::uint32_t triedLines = 50;
constexpr std::uint32_t fewestLines = 2;

// How the bytes that are there end.
enum class FIReach : std::uint8_t {
    Whole,    // with the file
    Part,     // somewhere in it: more can be read
    Longest,  // somewhere in it, and more is not looked at
};

// What stands behind the byte order mark, if there is one.
FIBytes FIBehindMark(FIBytes bytes) {
    constexpr std::uint8_t mark[] = {0xEF, 0xBB, 0xBF};
    const bool hasMark = bytes.size() >= std::size(mark) && std::equal(std::begin(mark), std::end(mark), bytes.begin());
    return hasMark ? bytes.subspan(std::size(mark)) : bytes;
}

// The first character that is no white space, or a blank if there is none.
std::uint8_t FIFirstCharacter(FIBytes bytes) {
    const std::uint8_t* const end = bytes.data() + bytes.size();
    const std::uint8_t* const place = FIPassJsonSpace(bytes.data(), end);
    return place != end ? *place : std::uint8_t{' '};
}

FIJsonKind FIKindOf(const FIJsonFacts& facts) {
    if (facts.hasGeometryType && facts.hasGeometry) return FIJsonKind::GeoJson;
    if (facts.hasNotebookForm && facts.hasCells) return FIJsonKind::Notebook;
    return FIJsonKind::Json;
}

bool FIIsJson(FIBytes line) {
    FIJsonFacts facts;
    return FIScanJson(line, facts) == FIJsonEnd::Complete;
}

// Whether the bytes are JSON lines: the first 50 that are not blank are objects, and there are at least two. Cut when the
// bytes are a part in which all is right.
FIJsonEnd FIScanLines(FIBytes bytes, FIReach reach) {
    bytes = FIBehindMark(bytes);
    const auto size = static_cast<std::uint32_t>(bytes.size());
    std::uint32_t lines = 0;
    for (std::uint32_t start = 0; start < size && lines < triedLines;) {
        const std::uint32_t end = FIFindByte(bytes.data(), start, size, '\n');
        if (end == size && reach != FIReach::Whole) break;
        const FIBytes line = bytes.subspan(start, end - start);
        start = end + 1;
        const std::uint8_t first = FIFirstCharacter(line);
        if (first == ' ') continue;
        // A text that is but one line, or an array, may be long: it is not read once more to be told so.
        const bool isOnly = lines == 0 && end == size;
        if (first != '{' || isOnly || !FIIsJson(line)) return FIJsonEnd::Wrong;
        ++lines;
    }
    if (reach == FIReach::Part && lines < triedLines) return FIJsonEnd::Cut;
    return lines >= fewestLines ? FIJsonEnd::Complete : FIJsonEnd::Wrong;
}

FIJsonKind FIKindOfLines(FIJsonEnd end) { return end == FIJsonEnd::Complete ? FIJsonKind::Lines : FIJsonKind::None; }

// What all of the bytes are that are looked at.
FIJsonKind FIKindOfAll(FIBytes bytes, FIReach reach) {
    FIJsonFacts facts;
    if (reach == FIReach::Whole && FIScanJson(FIBehindMark(bytes), facts) == FIJsonEnd::Complete)
        return FIKindOf(facts);
    return FIKindOfLines(FIScanLines(bytes, reach));
}

// Reads up to the longest text and a byte, which shows whether a file of no known size is longer. Returns false when not
// all that the file has is there.
bool FIReadText(FILook& look, std::uint8_t* block, std::uint32_t& size) {
    const FIBytes known = look.wide != nullptr ? FILookAtHead(look) : FILookAtStart(look);
    std::memcpy(block, known.data(), known.size());
    const auto read = static_cast<std::uint32_t>(known.size());
    const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(look.size, longestText + 1));
    std::uint32_t count = 0;
    if (wanted > read && UTReadAt(*look.file, read, block + read, wanted - read, count) != 0) return false;
    size = read + count;
    return size == wanted || look.size == unknownSize;
}

FIJsonKind FIReadAllKind(FILook& look) {
    auto* const block = static_cast<std::uint8_t*>(
        HeapAlloc(GetProcessHeap(), 0, static_cast<std::size_t>(std::min<std::uint64_t>(look.size, longestText + 1))));
    if (block == nullptr) {
        look.outOfMemory = true;
        return FIJsonKind::None;
    }
    FIJsonKind kind = FIJsonKind::None;
    std::uint32_t size = 0;
    if (FIReadText(look, block, size)) {
        kind = size <= longestText ? FIKindOfAll({block, size}, FIReach::Whole)
                                   : FIKindOfAll({block, longestText}, FIReach::Longest);
    }
    HeapFree(GetProcessHeap(), 0, block);
    return kind;
}

// Whether the file may be one value, as far as its size and first bytes tell.
bool FIMayBeValue(const FILook& look) {
    if (look.size > longestText && look.size != unknownSize) return false;
    const FIBytes start = FIBehindMark(FILookAtStart(look));
    FIJsonFacts facts;
    return FIScanJson(start.first(std::min(start.size(), triedBytes)), facts) != FIJsonEnd::Wrong;
}

FIJsonKind FIReadJsonKind(FILook& look) {
    FIBytes bytes = FILookAtStart(look);
    std::uint8_t first = FIFirstCharacter(FIBehindMark(bytes));
    if (first == ' ') {
        bytes = FILookAtHead(look);
        first = FIFirstCharacter(FIBehindMark(bytes));
    }
    const bool isWhole = bytes.size() >= look.size;
    if (first != '{' && first != '[' && (first != ' ' || isWhole)) return FIJsonKind::None;
    if (isWhole) return FIKindOfAll(bytes, FIReach::Whole);
    if (first == '[' && !FIMayBeValue(look)) return FIJsonKind::None;
    if (look.size <= lookHeadBytes) {
        bytes = FILookAtHead(look);
        return bytes.size() == look.size ? FIKindOfAll(bytes, FIReach::Whole) : FIJsonKind::None;
    }
    if (first == '{' && !FIMayBeValue(look)) {
        const FIJsonEnd end = FIScanLines(FILookAtHead(look), FIReach::Part);
        if (end != FIJsonEnd::Cut) return FIKindOfLines(end);
    }
    return FIReadAllKind(look);
}

}  // namespace

FIID FITellJsonKind(FILook& look) {
    if (look.json == FIJsonKind::NotRead) look.json = FIReadJsonKind(look);
    switch (look.json) {
        case FIJsonKind::GeoJson:
            return 20294;
        case FIJsonKind::Notebook:
            return 20295;
        case FIJsonKind::Lines:
            return 20297;
        case FIJsonKind::Json:
            return 20298;
        default:
            return 0;
    }
}
