// xml_prolog.cpp - the walk over the prolog of an XML text, in three encodings with one set of comparisons.
//
// The text is looked at in spans in one normal form: two bytes a character, high byte first. The first four bytes of
// the file choose how a span is filled (the forms of W3C XML 1.0, appendix F; those of four bytes a character are
// refused).
//
//   State          Span        Sees                          Does                                      Next
//   Between        1 char.     "<"                                                                     AfterBracket
//                              white space                                                             Between
//                              anything else                                                           Finished
//   AfterBracket   8 char.     "?xml ver", allowed here      text is XML; closing token ">"            InMarkup
//                              "?xml ver", not allowed                                                 Finished
//                              "!DOCTYPE"                                                              InDoctype
//                              "!--"                         back behind it; closing token "-->"       InMarkup
//                              "?"                           back behind it; closing token "?>"        InMarkup
//                              anything else                                                           Finished
//   InMarkup       10 char.    the closing token             back behind it                            Between
//                              a part of it at the end       back, to see it whole                     InMarkup
//                              neither                                                                 InMarkup
//   InDoctype      1 byte      not white space, first        text is no XML                            Finished
//                              white space, "[", ">" later   judges the name                           Finished
//                              anything else                 adds it to the name                       InDoctype
//
// The end of the file is no event of its own: a byte that isn't there reads as FF. File offset 512 ends the walk.
#include "package/xml_prolog.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>

#include "reader/ascii_case.h"
#include "reader/low_byte.h"
#include "reader/reader.h"
#include "reader/white_space.h"

namespace {

constexpr std::uint32_t positionLimit = 512;

// ---- Encodings ------------------------------------------------------------------------------------------------------

constexpr std::uint16_t eightBit = 0x001;
constexpr std::uint16_t sixteenBitHighFirst = 0x00A;
constexpr std::uint16_t sixteenBitLowFirst = 0x012;
constexpr std::uint16_t noDeclarationHere = 0x100;  // the file doesn't start with one
constexpr std::uint16_t refusedBits = 0x084;

constexpr std::size_t markSize = 4;

struct EncodingRow {
    std::uint8_t compared;  // leading bytes that must be equal
    std::uint8_t bytes[markSize];
    std::uint16_t encoding;
    std::uint32_t skip;  // offset of the text
};

// The first row that fits decides; the last one always does.
constexpr EncodingRow encodingRows[] = {
    // clang-format off
    {4, {0x00, 0x00, 0x00, 0x3C}, 0x0C,                         0},  // four bytes a character, in four orders
    {4, {0x00, 0x00, 0x3C, 0x00}, 0x24,                         0},
    {2, {0x00, 0x00},             0x80,                         0},
    {4, {0x00, 0x3C, 0x00, 0x00}, 0x44,                         0},
    {4, {0x00, 0x3C, 0x00, 0x3F}, sixteenBitHighFirst,          0},  // "<?"
    {1, {0x00},                   0x80,                         0},
    {4, {0x3C, 0x00, 0x00, 0x00}, 0x14,                         0},
    {4, {0x3C, 0x00, 0x3F, 0x00}, sixteenBitLowFirst,           0},  // "<?"
    {2, {0x3C, 0x00},             0x80,                         0},
    {4, {0x3C, 0x3F, 0x78, 0x6D}, eightBit,                     0},  // "<?xm"
    {2, {0xFE, 0xFF},             sixteenBitHighFirst,          2},  // byte order marks
    {2, {0xFF, 0xFE},             sixteenBitLowFirst,           2},
    {3, {0xEF, 0xBB, 0xBF},       eightBit,                     3},
    {0, {},                       eightBit | noDeclarationHere, 0},
    // clang-format on
};

// ---- Texts in normal form -------------------------------------------------------------------------------------------

constexpr std::uint32_t bytesPerCharacter = 2;

template <std::size_t size>
consteval auto FINormalForm(const char (&text)[size]) {
    constexpr std::size_t length = size - 1;
    std::array<std::uint8_t, length* bytesPerCharacter> normal = {};
    for (std::size_t index = 0; index < length; ++index) {
        normal[index * bytesPerCharacter + 1] = static_cast<std::uint8_t>(text[index]);
    }
    return normal;
}

constexpr auto declaration = FINormalForm("?xml ver");
constexpr auto doctype = FINormalForm("!DOCTYPE");
constexpr auto commentStart = FINormalForm("!--");
constexpr auto instructionStart = FINormalForm("?");
constexpr auto endOfTag = FINormalForm(">");
constexpr auto endOfInstruction = FINormalForm("?>");
constexpr auto endOfComment = FINormalForm("-->");

// ---- The walk -------------------------------------------------------------------------------------------------------

enum class PrologState : std::uint8_t { Between, AfterBracket, InMarkup, InDoctype, Finished };

// Span sizes, in bytes of the normal form.
constexpr std::uint32_t spanBetween = 2;
constexpr std::uint32_t spanAfterBracket = 16;
constexpr std::uint32_t spanInMarkup = 20;
// Quirk: half a character. 8-bit text and 16-bit text with the low byte first still read a whole one, but with the high
// byte first a single byte goes into the high half, and the low half stays what it was: the "!" of "!DOCTYPE", which is
// no white space. In that encoding every DOCTYPE ends the walk with the answer 0.
constexpr std::uint32_t spanInDoctype = 1;

struct PrologWalk {
    FIReader& reader;
    std::uint16_t encoding;
    std::uint32_t position;  // file offset of the next byte
    PrologState state = PrologState::Between;
    std::uint32_t spanSize = spanBetween;
    std::array<std::uint8_t, spanInMarkup> characters = {};  // the span
    std::span<const std::uint8_t> closingToken = {};
    bool xml = false;
    bool html = false;
    bool wml = false;
    std::uint32_t nameLength = 0;  // characters stored, the white space behind "!DOCTYPE" included
    std::array<std::uint16_t, positionLimit> name = {};  // as many as the position lets through
};

bool FIIsEightBit(const PrologWalk& walk) { return (walk.encoding & eightBit) != 0; }

std::uint8_t FITakeByte(PrologWalk& walk) {
    ++walk.position;
    return FITakeLowByte(walk.reader);
}

void FIFillSpan(PrologWalk& walk) {
    if (walk.encoding == sixteenBitHighFirst) {
        for (std::uint32_t index = 0; index < walk.spanSize; ++index) walk.characters[index] = FITakeByte(walk);
        return;
    }
    for (std::uint32_t index = 0; index < walk.spanSize; index += bytesPerCharacter) {
        walk.characters[index + 1] = FITakeByte(walk);
        walk.characters[index] = FIIsEightBit(walk) ? std::uint8_t{0} : FITakeByte(walk);
    }
}

// The first character of the span.
std::uint16_t FIFirstCharacter(const PrologWalk& walk) {
    return static_cast<std::uint16_t>(walk.characters[0] << 8 | walk.characters[1]);
}

// Whether the text, in normal form, stands at an index of the span. There must be room for it.
bool FISpanHolds(const PrologWalk& walk, std::uint32_t index, std::span<const std::uint8_t> text) {
    return std::equal(text.begin(), text.end(), walk.characters.begin() + index);
}

void FIEnter(PrologWalk& walk, PrologState state, std::uint32_t spanSize) {
    walk.state = state;
    walk.spanSize = spanSize;
}

void FILookForToken(PrologWalk& walk, std::span<const std::uint8_t> token) {
    walk.closingToken = token;
    FIEnter(walk, PrologState::InMarkup, spanInMarkup);
}

// Goes back by a number of bytes of the file. False when the seek fails.
bool FIStepBack(PrologWalk& walk, std::uint32_t bytes) {
    walk.position -= bytes;
    return FIReaderSeek(walk.reader, walk.position) == 0;
}

// Size in the file of a stretch of the normal form.
std::uint32_t FIFileBytes(const PrologWalk& walk, std::size_t normalBytes) {
    return static_cast<std::uint32_t>(FIIsEightBit(walk) ? normalBytes / bytesPerCharacter : normalBytes);
}

void FIActBetween(PrologWalk& walk) {
    const std::uint16_t character = FIFirstCharacter(walk);
    if (character == '<') {
        FIEnter(walk, PrologState::AfterBracket, spanAfterBracket);
    } else if (!FIIsWhiteSpace(character)) {
        walk.state = PrologState::Finished;
    }
}

bool FIActAfterBracket(PrologWalk& walk) {
    if (FISpanHolds(walk, 0, declaration)) {
        // A declaration that isn't at the start of the file doesn't make the text XML.
        if ((walk.encoding & noDeclarationHere) != 0) {
            walk.state = PrologState::Finished;
        } else {
            walk.xml = true;
            FILookForToken(walk, endOfTag);
        }
    } else if (FISpanHolds(walk, 0, doctype)) {
        FIEnter(walk, PrologState::InDoctype, spanInDoctype);
    } else if (FISpanHolds(walk, 0, commentStart)) {
        FILookForToken(walk, endOfComment);
        return FIStepBack(walk, FIFileBytes(walk, spanAfterBracket - commentStart.size()));
    } else if (FISpanHolds(walk, 0, instructionStart)) {
        FILookForToken(walk, endOfInstruction);
        return FIStepBack(walk, FIFileBytes(walk, spanAfterBracket - instructionStart.size()));
    } else {
        walk.state = PrologState::Finished;  // the first element
    }
    return true;
}

bool FIActInMarkup(PrologWalk& walk) {
    const auto tokenSize = static_cast<std::uint32_t>(walk.closingToken.size());
    const std::uint32_t lastFit = spanInMarkup - tokenSize;
    for (std::uint32_t index = 0; index < spanInMarkup; index += bytesPerCharacter) {
        if (!FISpanHolds(walk, index, walk.closingToken.first(bytesPerCharacter))) continue;
        if (index > lastFit) {
            // Quirk: goes back by bytes of the normal form in every encoding, twice as far as 8-bit text needs, and
            // once for each such place. It costs a re-reading and no token.
            if (!FIStepBack(walk, spanInMarkup - index)) return false;
        } else if (FISpanHolds(walk, index, walk.closingToken)) {
            FIEnter(walk, PrologState::Between, spanBetween);
            return FIStepBack(walk, FIFileBytes(walk, lastFit - index));
        }
    }
    return true;
}

// Whether the name starts with a text. It begins behind the one white-space character that was stored first.
bool FINameStartsWith(const PrologWalk& walk, std::string_view text) {
    return walk.nameLength > text.size() && std::equal(text.begin(), text.end(), walk.name.begin() + 1);
}

void FIActInDoctype(PrologWalk& walk) {
    const std::uint16_t character = FIFirstCharacter(walk);
    const bool whiteSpace = FIIsWhiteSpace(character);
    if (walk.nameLength == 0 && !whiteSpace) {
        walk.xml = false;
        walk.state = PrologState::Finished;
    } else if (walk.nameLength > 0 && (whiteSpace || character == '[' || character == '>')) {
        walk.wml = FINameStartsWith(walk, "wml");
        walk.html = FINameStartsWith(walk, "html");
        walk.state = PrologState::Finished;
    }
    walk.name[walk.nameLength++] = FILowerAscii(character);
}

// One step of the walk. False when a seek fails.
bool FIAct(PrologWalk& walk) {
    switch (walk.state) {
        case PrologState::Between:
            FIActBetween(walk);
            return true;
        case PrologState::AfterBracket:
            return FIActAfterBracket(walk);
        case PrologState::InMarkup:
            return FIActInMarkup(walk);
        case PrologState::InDoctype:
            FIActInDoctype(walk);
            return true;
        case PrologState::Finished:
            return true;
    }
    return true;
}

const EncodingRow& FIReadEncoding(FIReader& reader) {
    std::uint8_t bytes[markSize];
    for (std::uint8_t& byte : bytes) byte = FITakeLowByte(reader);
    return *std::ranges::find_if(
        encodingRows, [&](const EncodingRow& row) { return std::equal(row.bytes, row.bytes + row.compared, bytes); });
}

}  // namespace

FIID FIScanXmlProlog(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    const EncodingRow& row = FIReadEncoding(reader);
    if ((row.encoding & refusedBits) != 0) return 0;
    if (FIReaderSeek(reader, 0) != 0 || FIReaderSeek(reader, row.skip) != 0) return 0;
    PrologWalk walk = {.reader = reader, .encoding = row.encoding, .position = row.skip};
    while (walk.state != PrologState::Finished && walk.position < positionLimit) {
        FIFillSpan(walk);
        if (!FIAct(walk)) return 0;
    }
    if (walk.wml) return wmlDoctype;
    if (walk.html) return htmlDoctype;
    return walk.xml ? xmlText : FIID{0};
}
