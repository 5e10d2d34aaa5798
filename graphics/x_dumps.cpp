// x_dumps.cpp - X Window Dump: the low bytes of big-endian 32-bit fields.
//
//   Offset  Size  Field                           Accepted
//        7     1  file version                    7
//       11     1  pixmap format                   0 to 2
//       15     1  pixmap depth                    8, 24
//       35     1  bitmap unit                     8, 16, 32
//       55     1  visual class                    0, 3, 4
#include "graphics/x_dumps.h"

#include <cstdint>

#include "reader/reader.h"

namespace {

constexpr FIID xwdFormat = 1575;

// Quirk: the comparison is signed, so that the end of the file, -1, passes.
bool FIIsXwdPixmapFormat(std::uint16_t byte) { return static_cast<std::int16_t>(byte) <= 2; }

struct FIXwdField {
    std::uint32_t offset;
    bool (*accepts)(std::uint16_t byte);
};

constexpr FIXwdField xwdFields[] = {
    // clang-format off
    { 7, [](std::uint16_t byte) { return byte == 7; }},
    {11, FIIsXwdPixmapFormat},
    {15, [](std::uint16_t byte) { return byte == 8 || byte == 24; }},
    {35, [](std::uint16_t byte) { return byte == 8 || byte == 16 || byte == 32; }},
    {55, [](std::uint16_t byte) { return byte == 0 || byte == 3 || byte == 4; }},
    // clang-format on
};

}  // namespace

FIID FIProbeXwd(FIReader& reader) {
    for (const FIXwdField& field : xwdFields) {
        if (FIReaderSeek(reader, field.offset) != 0 || !field.accepts(FIReaderGetByte(reader))) return 0;
    }
    return xwdFormat;
}
