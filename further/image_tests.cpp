// image_tests.cpp - pictures that a pattern can't tell.
#include "further/image_tests.h"

#include <algorithm>

#include "further/look_numbers.h"
#include "further/searches.h"
#include "reader/text_bytes.h"

FIID FITellAvifBrand(FILook& look) {
    constexpr std::size_t firstBrand = 16;
    constexpr std::size_t brandSize = 4;
    constexpr std::uint32_t longestBox = 256;
    const FIBytes bytes = FILookAtStart(look);
    if (bytes.size() < 4) return 0;
    const std::uint32_t end = std::min(FIDWordBE(bytes, 0), longestBox);
    for (std::size_t offset = firstBrand; offset < end; offset += brandSize) {
        if (FIStandsAt(bytes, offset, "avif")) return 20011;
    }
    return 0;
}

FIID FITellJpegXlCodestream(FILook& look) {
    constexpr std::size_t leastSize = 12;
    constexpr std::size_t markSize = 2;
    constexpr std::size_t lookedAt = 34;
    const FIBytes bytes = FILookAtStart(look);
    if (bytes.size() < leastSize) return 0;
    const FIBytes behindMark = bytes.first(std::min(bytes.size(), lookedAt)).subspan(markSize);
    return std::ranges::all_of(behindMark, FIIsTextByte) ? FIID{0} : FIID{20017};
}

FIID FITellPortableArbitraryMap(FILook& look) {
    return FIHeadHolds(look, 0, 200, "\nWIDTH") && FIHeadHolds(look, 0, 400, "\nENDHDR\n") ? FIID{20041} : FIID{0};
}
