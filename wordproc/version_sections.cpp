// version_sections.cpp - a text that opens with a section of its version and one of its styles.
//
//   Routine  Opening, from offset 0
//      1057  "[ver]" CR LF, a version line, CR LF, "[sty]" CR LF, in this case only; the version's last digit decides
#include "wordproc/version_sections.h"

#include <cstdint>
#include <string_view>

#include "reader/reader.h"
#include "reader/text_line.h"

namespace {

constexpr std::string_view versionHead = "[ver]\r\n";
constexpr std::string_view styleHead = "[sty]\r\n";
constexpr std::uint16_t decidingDigit = '4';

// The last digit of the line, or 0 for none; endOfFile when the line is not ended.
std::uint16_t FITakeVersionLine(FIReader& reader) {
    std::uint16_t digit = 0;
    while (true) {
        const std::uint16_t character = FIReaderGetByte(reader);
        if (character == endOfFile) return endOfFile;
        if (character == '\r') return digit;
        if (character >= '0' && character <= '9') digit = character;
    }
}

}  // namespace

FIID FIProbeVersionSections(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0 || !FITakeText(reader, versionHead)) return 0;
    const std::uint16_t digit = FITakeVersionLine(reader);
    if (digit == endOfFile || FIReaderGetByte(reader) != '\n' || !FITakeText(reader, styleHead)) return 0;
    return digit == decidingDigit ? 1057 : 1056;
}
