// data_tests.cpp - programs, data, books and models that a pattern can't tell.
#include "further/data_tests.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "further/look_numbers.h"
#include "further/searches.h"
#include "reader/ascii_digit.h"

namespace {

// Magic numbers before 3.0: of 2.7, 2.6 (two), 2.5, 2.4 (two), 2.3, 2.2, 2.1, 2.0, 1.6 and 1.5.
constexpr std::uint16_t earlyPythons[] = {62211, 62171, 62161, 62131, 62061, 62041,
                                          62011, 60717, 60202, 50823, 50428, 20121};

// 3.0 and later count up from 3000. 3338 is the number whose bytes are a line end, which no release has.
bool FIIsLaterPython(FIBytes bytes, std::uint16_t magic) {
    return magic >= 3000 && magic <= 3700 && magic != 3338 && bytes[0] != '\n' && FIDWordLE(bytes, 4) != 0xFFFFFFFF;
}

bool FIAreDigits(FIBytes bytes) {
    return std::ranges::all_of(bytes, [](std::uint8_t byte) { return FIIsDigit(static_cast<char>(byte)); });
}

// A number of five digits.
std::uint32_t FIFiveDigits(FIBytes bytes, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t index = 0; index < 5; ++index) value = value * 10 + (bytes[offset + index] - std::uint32_t{'0'});
    return value;
}

bool FIIsOneOf(std::uint8_t byte, std::string_view values) {
    return values.find(static_cast<char>(byte)) != std::string_view::npos;
}

// Positions 0 to 23 of a record: status, type of record, bibliographic level, control, coding, indicator and subfield
// counts, the base address, and the map of directory entries.
bool FIIsMarcLeader(FIBytes bytes) {
    return FIAreDigits(bytes.first(5)) && FIIsOneOf(bytes[5], "acdnposx") &&
           FIIsOneOf(bytes[6], "acdefgijkmnoprtuvwxyz") && FIIsOneOf(bytes[7], "abcdims ") &&
           FIIsOneOf(bytes[8], " a") && FIIsOneOf(bytes[9], " a0123456789") && FIStandsAt(bytes, 10, "22") &&
           FIAreDigits(bytes.subspan(12, 5)) && FIStandsAt(bytes, 20, "4500");
}

}  // namespace

FIID FITellPythonBytecode(FILook& look) {
    constexpr std::size_t leastSize = 17;
    const FIBytes bytes = FILookAtStart(look);
    if (bytes.size() < leastSize) return 0;
    const std::uint16_t magic = FIWordLE(bytes, 0);
    const bool early = std::ranges::find(earlyPythons, magic) != std::end(earlyPythons);
    return early || FIIsLaterPython(bytes, magic) ? FIID{20184} : FIID{0};
}

FIID FITellParquet(FILook& look) { return FIEndsWith(look, 4, "PAR1") ? FIID{20191} : FIID{0}; }

FIID FITellOrc(FILook& look) {
    constexpr std::uint64_t leastSize = 17;
    return look.size >= leastSize && FIEndsWith(look, 4, "ORC") ? FIID{20192} : FIID{0};
}

FIID FITellFeather(FILook& look) { return FIEndsWith(look, 4, "FEA1") ? FIID{20195} : FIID{0}; }

FIID FITellMarc(FILook& look) {
    constexpr std::size_t leastSize = 40;
    constexpr std::uint8_t fieldTerminator = 0x1E;
    constexpr std::uint8_t recordTerminator = 0x1D;
    const FIBytes start = FILookAtStart(look);
    if (start.size() < leastSize || !FIIsMarcLeader(start)) return 0;
    const std::uint32_t recordLength = FIFiveDigits(start, 0);
    const std::uint32_t baseAddress = FIFiveDigits(start, 12);
    if (recordLength > look.size || baseAddress == 0) return 0;
    const FIBytes bytes = FIBytesUpTo(look, std::max(recordLength, baseAddress));
    if (baseAddress > bytes.size() || bytes[baseAddress - 1] != fieldTerminator) return 0;
    const bool endInHead = recordLength > 0 && recordLength <= bytes.size();
    return !endInHead || bytes[recordLength - 1] == recordTerminator ? FIID{20218} : FIID{0};
}

FIID FITellInternetShortcut(FILook& look) {
    return FIHeadHolds(look, 0, 35, "[InternetShortcut]") ? FIID{20224} : FIID{0};
}

FIID FITellMediaViewerBook(FILook& look) {
    constexpr std::string_view mark("\x6C\x03\x1B\x00\x01\x00", 6);
    return FIHeadHolds(look, 4, 65535, mark) ? FIID{20382} : FIID{0};
}

FIID FITellStlText(FILook& look) { return FIHeadHolds(look, 5, 400, "facet normal") ? FIID{20245} : FIID{0}; }

FIID FITellStlBinary(FILook& look) {
    constexpr std::size_t countOffset = 80;
    constexpr std::uint64_t headerBytes = 84;
    constexpr std::uint64_t facetBytes = 50;
    const FIBytes bytes = FILookAtStart(look);
    if (bytes.size() < headerBytes + facetBytes) return 0;
    const std::uint64_t facets = FIDWordLE(bytes, countOffset);
    return facets > 0 && headerBytes + facetBytes * facets == look.size ? FIID{20246} : FIID{0};
}
