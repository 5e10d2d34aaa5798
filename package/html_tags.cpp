// html_tags.cpp - HTML text, told by the tags at its head.
//
//   Offset    What                      Accepted
//        0    marks, any number         EF BB BF or EF BF BE
//   0 - 255   between tags              blank, CR, LF, tab; byte order marks FF FE and FE FF, which choose 16-bit text
//   0 - 255   a tag that decides        head, body, pre, htmlplus, html, !doctype html with a blank behind it
//   0 - 255   any other tag             passed over: comments, instructions, a title without text
//
// Tags are compared in lower case. Text between tags, or offset 256 without a decision, makes it no HTML.
#include "package/html_tags.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "reader/ascii_case.h"
#include "reader/low_byte.h"
#include "reader/reader.h"

namespace {

constexpr FIID html8Bit = 1101;
constexpr FIID html16Bit = 1181;

constexpr std::uint32_t scanLimit = 256;    // bytes of the file
constexpr std::size_t longestTag = 256;     // characters
constexpr std::size_t longestBareTag = 40;  // an html tag up to this length has no room for a namespace

struct NamespaceRow {
    std::string_view attribute;
    FIID fiid;
};

// The first one that the tag holds decides, wherever it stands.
constexpr NamespaceRow namespaceRows[] = {
    // clang-format off
    {R"(xmlns:w="urn:schemas-microsoft-com:office:word")",       1147},
    {R"(xmlns:x="urn:schemas-microsoft-com:office:excel")",      1148},
    {R"(xmlns:p="urn:schemas-microsoft-com:office:powerpoint")", 1149},
    // clang-format on
};

constexpr std::string_view wholeTags[] = {"head", "body", "pre", "htmlplus", "html"};
constexpr std::string_view htmlName = "html";
constexpr std::string_view htmlWithBlank = "html ";
// Quirk: the blank is a part of it, so that a bare "!doctype html" is passed over like any other tag.
constexpr std::string_view doctypeWithBlank = "!doctype html ";

enum class TextMode : std::uint8_t {
    EightBit = 101,
    LowByteFirst = 102,   // the character's byte, then one that is dropped
    HighByteFirst = 103,  // a byte that is dropped, then the character's
};

struct TagScan {
    FIReader& reader;
    std::uint32_t count;  // bytes taken; can end one or two above the limit
    TextMode mode = TextMode::EightBit;
    FIID base = html8Bit;
    std::array<char, longestTag + 1> tag = {};  // lower case, NUL-terminated
    std::size_t tagLength = 0;                  // characters in front of the ">"
};

std::uint8_t FITakeByte(TagScan& scan) {
    ++scan.count;
    return FITakeLowByte(scan.reader);
}

std::uint8_t FITakeCharacter(TagScan& scan) {
    const std::uint8_t first = FITakeByte(scan);
    if (scan.mode == TextMode::EightBit) return first;
    const std::uint8_t second = FITakeByte(scan);
    return scan.mode == TextMode::HighByteFirst ? second : first;
}

// Whether EF BB BF or EF BF BE comes next.
bool FITakeLeadingMark(FIReader& reader) {
    if (FIReaderGetByte(reader) != 0xEF) return false;
    const std::uint16_t second = FIReaderGetByte(reader);
    const std::uint16_t third = FIReaderGetByte(reader);
    return (second == 0xBB && third == 0xBF) || (second == 0xBF && third == 0xBE);
}

// The size of the leading marks. Marks up to the limit leave no room for a tag, however many follow.
std::uint32_t FIMeasureLeadingMarks(FIReader& reader) {
    constexpr std::uint32_t markSize = 3;
    std::uint32_t size = 0;
    while (size < scanLimit && FITakeLeadingMark(reader)) size += markSize;
    return size;
}

// Takes the second byte of a byte order mark and, if it is the one expected, goes over to 16-bit text.
bool FITakeByteOrderMark(TagScan& scan, std::uint8_t expected, TextMode mode) {
    if (FITakeByte(scan) != expected) return false;
    scan.mode = mode;
    scan.base = html16Bit;
    return true;
}

// Leaves the scan behind the next "<". False when something else than white space and marks comes first, or the limit.
bool FIFindTag(TagScan& scan) {
    while (scan.count < scanLimit) {
        switch (FITakeCharacter(scan)) {
            case '<':
                return true;
            case 0xFF:  // the end of the file too: what follows it is no FE
                if (!FITakeByteOrderMark(scan, 0xFE, TextMode::LowByteFirst)) return false;
                break;
            case 0xFE:
                if (!FITakeByteOrderMark(scan, 0xFF, TextMode::HighByteFirst)) return false;
                break;
            case ' ':
            case '\r':
            case '\n':
            case '\t':
                break;
            default:
                return false;
        }
    }
    return false;
}

// Takes the characters in front of the next ">" out of the reader's buffer, as many as the limits let through. Each is
// what FIReadTag would take next.
void FITakeBufferedCharacters(TagScan& scan) {
    FIReader& reader = scan.reader;
    if (scan.mode != TextMode::EightBit || reader.bytesLeft <= 0) return;
    const std::size_t most = std::min(
        {static_cast<std::size_t>(reader.bytesLeft), std::size_t{scanLimit - scan.count}, longestTag - scan.tagLength});
    const std::uint8_t* const start = reader.cursor;
    const std::uint8_t* const end = std::find(start, start + most, std::uint8_t{'>'});
    std::transform(start, end, scan.tag.begin() + static_cast<std::ptrdiff_t>(scan.tagLength),
                   [](std::uint8_t byte) { return FILowerAscii(static_cast<char>(byte)); });
    const auto taken = static_cast<std::uint32_t>(end - start);
    scan.tagLength += taken;
    scan.count += taken;
    reader.cursor += taken;
    reader.bytesLeft = static_cast<std::int16_t>(reader.bytesLeft - static_cast<std::int16_t>(taken));
}

// Reads the tag up to its ">". False when the limit comes first.
bool FIReadTag(TagScan& scan) {
    scan.tag.fill('\0');
    scan.tagLength = 0;
    if (scan.count < scanLimit) FITakeBufferedCharacters(scan);
    while (scan.count < scanLimit && scan.tagLength < longestTag) {
        const std::uint8_t character = FITakeCharacter(scan);
        if (character == '>') return true;
        scan.tag[scan.tagLength++] = FILowerAscii(static_cast<char>(character));
    }
    return false;
}

FIID FIJudgeHtmlAttributes(const TagScan& scan) {
    if (scan.tagLength <= longestBareTag) return scan.base;
    const std::string_view attributes(scan.tag.data() + htmlName.size(), scan.tagLength - htmlName.size());
    for (const NamespaceRow& row : namespaceRows) {
        if (attributes.find(row.attribute) != std::string_view::npos) return row.fiid;
    }
    return scan.base;
}

// The answer of a closed tag, or nothing when it doesn't decide. A NUL inside the tag ends it for the comparisons.
std::optional<FIID> FIJudgeTag(const TagScan& scan) {
    const std::string_view tag(scan.tag.data());
    if (std::ranges::find(wholeTags, tag) != std::end(wholeTags)) return scan.base;
    constexpr std::string_view whiteSpace = " \r\t\n";
    if (tag.starts_with(htmlName) && tag.substr(htmlName.size()).find_first_of(whiteSpace) == 0) {
        return FIJudgeHtmlAttributes(scan);
    }
    if (tag.starts_with(doctypeWithBlank)) return scan.base;
    return std::nullopt;
}

}  // namespace

FIID FIScanHtmlTags(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    TagScan scan = {.reader = reader, .count = FIMeasureLeadingMarks(reader)};
    if (FIReaderSeek(reader, scan.count) != 0) return 0;
    while (FIFindTag(scan)) {
        if (!FIReadTag(scan)) return std::string_view(scan.tag.data()).starts_with(htmlWithBlank) ? scan.base : FIID{0};
        if (const std::optional<FIID> answer = FIJudgeTag(scan)) return *answer;
    }
    return 0;
}
