// eps_preview.cpp - Encapsulated PostScript with a DOS header. Reads 4 bytes at 0 and 4 at 20.
//
//   Offset  Size  Field                           Accepted
//        0     4  mark                            C5 D0 D3 C6
//       20     4  offset of the TIFF preview      not 0
#include "graphics/eps_preview.h"

#include <cstdint>
#include <string_view>

#include "reader/low_byte.h"
#include "reader/reader.h"
#include "reader/text_line.h"

namespace {

constexpr FIID epsPreviewFormat = 1504;

constexpr std::string_view epsMark = "\xC5\xD0\xD3\xC6";
constexpr std::uint16_t epsPreviewField = 20;

}  // namespace

FIID FIProbeEpsPreview(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0 || !FITakeText(reader, epsMark)) return 0;
    static_cast<void>(FIReaderSkip(epsPreviewField - static_cast<std::uint16_t>(epsMark.size()), reader));
    std::uint32_t bits = 0;
    for (std::uint32_t index = 0; index < 4; ++index) bits |= FITakeLowByte(reader);
    // Quirk: the low byte of the end of the file is FF: a file that ends here has a preview.
    return bits != 0 ? epsPreviewFormat : FIID{0};
}
