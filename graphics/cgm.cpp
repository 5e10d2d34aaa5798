// cgm.cpp - Computer Graphics Metafiles in the binary encoding.
//
// A metafile is a sequence of elements, each a 16-bit header, most significant byte first, and its parameters:
//
//   Bits      Field
//   15 to 12  class
//   11 to 5   element ID
//    4 to 0   length of the parameters in bytes; 31: a 16-bit length follows. A padding byte makes an odd length even
//
// The first element is Begin Metafile, whose parameter is a string: a byte of length, then that many characters.
// Elements of the classes below may follow, then Metafile Version with a version from 1 to 4, which decides:
//
//   Class   Elements                 Accepted IDs
//     0     delimiters               0 to 20; Begin Metafile is 1
//     1     metafile descriptors     0 to 23; Metafile Version is 1
//     6     escapes                  0 to 1
//     7     externals                0 to 2
//
// Source: ISO/IEC 8632-3. Partitioned parameters (the top bit of a long length) are not known here.
#include "graphics/cgm.h"

#include <algorithm>
#include <cstdint>

#include "reader/low_byte.h"
#include "reader/reader.h"

namespace {

constexpr FIID cgmFormat = 1528;

constexpr std::uint32_t headerSize = 2;
constexpr std::uint32_t longLengthSize = 2;
constexpr std::uint8_t lengthMask = 0x1F;
constexpr std::uint16_t longLength = 31;
constexpr std::int32_t searchSize = 2576;  // Metafile Version has to start in front of this offset

struct FICgmElement {
    std::uint32_t elementClass;
    std::uint32_t id;
    std::uint16_t shortLength;  // as the header tells it
};

constexpr std::uint32_t descriptorClass = 1;
constexpr std::uint32_t beginMetafileId = 1;  // of class 0
constexpr std::uint32_t metafileVersionId = 1;

struct FICgmClass {
    std::uint32_t elementClass;
    std::uint32_t lastId;
};

constexpr FICgmClass acceptedClasses[] = {{0, 20}, {1, 23}, {6, 1}, {7, 2}};

// Quirk: bytes consumed, a signed 16-bit number that wraps. A length of 32,768 or more is a negative one to it, so that
// it goes down, while the same number of bytes is skipped.
void FIConsume(std::int16_t& consumed, std::uint32_t bytes) {
    consumed = static_cast<std::int16_t>(static_cast<std::uint32_t>(consumed) + bytes);
}

// At the end of the file the header is of class 15, which no table accepts.
FICgmElement FITakeHeader(FIReader& reader, std::int16_t& consumed) {
    const std::uint32_t high = FITakeLowByte(reader);
    const std::uint32_t low = FITakeLowByte(reader);
    FIConsume(consumed, headerSize);
    return {high >> 4, (high & 0x0F) << 3 | low >> 5, static_cast<std::uint16_t>(low & lengthMask)};
}

// The length of an element's parameters with their padding, the long form taken from the file.
std::uint16_t FITakeLength(FIReader& reader, const FICgmElement& element, std::int16_t& consumed) {
    std::uint32_t length = element.shortLength;
    if (length == longLength) {
        length = std::uint32_t{FITakeLowByte(reader)} << 8;
        length |= FITakeLowByte(reader);
        FIConsume(consumed, longLengthSize);
    }
    return static_cast<std::uint16_t>(length + (length & 1));  // 65,535 wraps to 0
}

// Passes over parameters. False when the place of the next element lies too far behind.
bool FISkipParameters(FIReader& reader, std::uint16_t length, std::int16_t& consumed) {
    static_cast<void>(FIReaderSkip(length, reader));  // the end of the file shows in the next header
    FIConsume(consumed, length);
    return consumed < searchSize;
}

// Quirk: where the string's own length is the larger one, it wins over the element's length, and its padding is
// forgotten.
std::uint16_t FITakeNameLength(FIReader& reader, std::uint16_t length, std::int16_t& consumed) {
    const std::uint16_t nameLength = FITakeLowByte(reader);
    FIConsume(consumed, sizeof(std::uint8_t));
    return static_cast<std::uint16_t>(std::max(nameLength, length) - 1);  // length is at least 2
}

bool FIIsAcceptedElement(const FICgmElement& element) {
    return std::ranges::any_of(acceptedClasses, [&element](const FICgmClass& accepted) {
        return accepted.elementClass == element.elementClass && element.id <= accepted.lastId;
    });
}

// Takes the parameter of Metafile Version.
FIID FIJudgeVersion(FIReader& reader) {
    const std::uint16_t high = FIReaderGetByte(reader);
    const std::uint16_t low = FIReaderGetByte(reader);
    return high == 0 && low >= 1 && low <= 4 ? cgmFormat : FIID{0};
}

}  // namespace

FIID FIProbeCgm(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    std::int16_t consumed = 0;
    FICgmElement element = FITakeHeader(reader, consumed);
    if (element.elementClass != 0 || element.id != beginMetafileId) return 0;
    std::uint16_t length = FITakeLength(reader, element, consumed);
    if (length != 0 && element.shortLength != longLength) length = FITakeNameLength(reader, length, consumed);

    while (FISkipParameters(reader, length, consumed)) {
        element = FITakeHeader(reader, consumed);
        if (element.elementClass == descriptorClass && element.id == metafileVersionId) return FIJudgeVersion(reader);
        if (!FIIsAcceptedElement(element)) return 0;
        length = FITakeLength(reader, element, consumed);
    }
    return 0;
}
