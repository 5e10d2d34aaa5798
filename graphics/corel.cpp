// corel.cpp - CorelDRAW: a RIFF form.
//
//   Offset  Size  Field                           Accepted
//        0     4  chunk                           "RIFF"
//        8     3  form type                       "CDR"
//       11     1  version                         see corelVersions
#include "graphics/corel.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "reader/reader.h"
#include "reader/rewind.h"
#include "reader/text_line.h"

namespace {

constexpr std::uint32_t riffFormType = 8;

struct FICorelVersion {
    std::uint16_t character;
    FIID format;
};

constexpr FICorelVersion corelVersions[] = {
    // clang-format off
    {' ', 1521},
    {'4', 1537},
    {'5', 1541},
    {'6', 1582},
    {'7', 1583},
    {'8', 1596},
    {'9', 1598},
    {'A', 1629},
    {'B', 1630},
    // clang-format on
};

}  // namespace

FIID FIProbeCorelRiff(FIReader& reader) {
    if (!FIReaderRewindTwice(reader) || !FITakeText(reader, "RIFF")) return 0;
    if (FIReaderSeek(reader, riffFormType) != 0 || !FITakeText(reader, "CDR")) return 0;
    const auto* const version = std::ranges::find(corelVersions, FIReaderGetByte(reader), &FICorelVersion::character);
    return version != std::end(corelVersions) ? version->format : FIID{0};
}
