// drawings.cpp - drawings and pages that start with readable text.
//
// DXF: pairs of lines, a decimal group code and its value. Blanks and tabs in front of either, white space ahead of the
// first and letter case do not count. The first pair that is no comment must be 0 and SECTION, with nothing but blanks
// and tabs behind it.
//
//   Group code     Value
//        999       comment, any number of such pairs
//          0       SECTION
//
// MIF: "<MIFFile", then the version, "Jp" in front of it for Japanese, and ">". The first digit from 3 to 6 decides.
//
// PDF: "%PDF-1." at any offset from 0 to 1,023, since other bytes may stand in front of the header. Reads on behind
// that range only to finish a header that starts in it.
#include "graphics/drawings.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "reader/ascii_case.h"
#include "reader/ascii_digit.h"
#include "reader/find_byte.h"
#include "reader/head.h"
#include "reader/reader.h"
#include "reader/rewind.h"
#include "reader/text_line.h"
#include "reader/white_space.h"

namespace {

constexpr FIID dxfFormat = 1544;
constexpr FIID pdfFormat = 1557;
constexpr FIID mifFormat = 1168;

// ---- DXF ------------------------------------------------------------------------------------------------------------

constexpr std::uint16_t dxfLineCapacity = 128;

constexpr std::uint32_t startCode = 0;
constexpr std::uint32_t commentCode = 999;
constexpr std::uint32_t largestCode = 1000;  // stands for every code above 999

bool FIIsBlank(char byte) { return byte == ' ' || byte == '\t'; }

std::string_view FISkipBlanks(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text;
}

// Reads the group code on a line. False when something else stands there. What follows behind a blank is not looked at.
bool FIParseGroupCode(std::string_view line, std::uint32_t& code) {
    code = 0;  // Quirk: an empty line is group code 0
    for (const char byte : FISkipBlanks(line)) {
        if (FIIsBlank(byte)) return true;
        if (!FIIsDigit(byte)) return false;
        code = std::min(code * 10 + static_cast<std::uint32_t>(byte - '0'), largestCode);
    }
    return true;
}

// Whether a line is a word, without regard to case and to blanks on either side.
bool FIIsWordLine(std::string_view line, std::string_view word) {
    line = FISkipBlanks(line);
    const std::string_view text = line.substr(0, line.find_first_of(" \t"));
    if (!FISkipBlanks(line.substr(text.size())).empty()) return false;
    return std::ranges::equal(text, word, [](char byte, char capital) { return FIUpperAscii(byte) == capital; });
}

// ---- MIF ------------------------------------------------------------------------------------------------------------

struct FIMifVersion {
    std::uint16_t digit;
    FIID format;
    FIID japaneseFormat;
};

constexpr FIMifVersion mifVersions[] = {
    // clang-format off
    {'3', 1129, 1135},
    {'4', 1130, 1136},
    {'5', 1131, 1137},
    {'6', 1166, 1167},
    // clang-format on
};

bool FIEndsMifHeader(std::uint16_t byte) { return byte == '\r' || byte == '\n' || byte == '#' || byte == '>'; }

// ---- PDF ------------------------------------------------------------------------------------------------------------

constexpr std::uint32_t pdfSearchSize = 1024;
constexpr std::string_view pdfVersion = "PDF-1.";  // behind the '%'

}  // namespace

FIID FIProbeDxf(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    FISkipWhiteSpace(reader);
    char line[dxfLineCapacity];
    if (FIReadTextLine(line, dxfLineCapacity, reader) == 0) return 0;
    for (;;) {
        std::uint32_t code = 0;
        if (!FIParseGroupCode(line, code)) return 0;
        if (code == startCode) break;
        if (code != commentCode) return 0;
        if (FIReadTextLine(line, dxfLineCapacity, reader) == 0) return 0;  // the comment's text
        if (FIReadTextLine(line, dxfLineCapacity, reader) == 0) return 0;  // the next group code
    }
    static_cast<void>(FIReadTextLine(line, dxfLineCapacity, reader));  // the file may end with this line
    return FIIsWordLine(line, "SECTION") ? dxfFormat : FIID{0};
}

// Quirk: the end of the file is no end here. The loop goes on until the handle delivers a byte that stops it, see the
// note for hosts in fiid.h.
FIID FIProbeMif(FIReader& reader) {
    bool japanese = false;
    for (std::uint16_t byte = FIReaderGetByte(reader); !FIEndsMifHeader(byte);) {
        if (byte == 'J' || byte == 'j') {
            byte = FIReaderGetByte(reader);  // is looked at again, whatever it is
            if (byte == 'p' || byte == 'P') japanese = true;
            continue;
        }
        const auto* const version = std::ranges::find(mifVersions, byte, &FIMifVersion::digit);
        byte = FIReaderGetByte(reader);
        if (version != std::end(mifVersions)) return japanese ? version->japaneseFormat : version->format;
    }
    return mifFormat;
}

bool FIMayBePdf(FIHead& head) {
    const std::uint32_t starts = std::min(head.size, pdfSearchSize);
    return FICountPlaces(head.bytes, starts, '%', [&head](std::uint32_t place) {
               const std::uint32_t text = place + 1;
               return text + pdfVersion.size() <= head.size &&
                      std::equal(pdfVersion.begin(), pdfVersion.end(), head.bytes + text);
           }) != 0;
}

FIID FIProbePdf(FIReader& reader) {
    if (!FIReaderRewindTwice(reader)) return 0;
    for (std::uint32_t count = 1; count <= pdfSearchSize; ++count) {
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == endOfFile) return 0;
        if (byte != '%') continue;
        if (FITakeText(reader, pdfVersion)) return pdfFormat;
        static_cast<void>(FIReaderSeek(reader, count));  // back to the byte behind the '%'
    }
    return 0;
}
