// word_pro.cpp - WordPro files, told apart by their version field.
//
//   Offset  Size  Field
//        0     7  "WordPro"
//        7     2  0D FB: the body, from offset 16 on, is stored in a transformed form
//        9     7  zeros
//       48     2  version, little-endian: up to 10 is 1108, above is 1145
//
// Of a plain body the version's low byte counts alone. Of a transformed body the field is read whole, from offset 32 of
// a stream that the handle derives from the stretch behind the header.
#include "wordproc/word_pro.h"

#include <cstdint>

#include "catalogue/format_not_known.h"
#include "reader/file_end.h"
#include "reader/handle_block.h"
#include "reader/little_endian.h"
#include "reader/reader.h"

namespace {

constexpr FIID oldGeneration = 1108;
constexpr FIID newGeneration = 1145;
constexpr std::uint16_t lastOldVersion = 10;

constexpr std::uint32_t bodyMark = 7;
constexpr std::uint32_t headerSize = 16;
constexpr std::uint32_t versionInFile = 48;
constexpr std::int32_t versionInBody = 32;

constexpr std::uint32_t bodyMethod = 10;  // the transformation, by its number

void FICloseIfOpen(HIOFILE handle) {
    if (handle != nullptr) static_cast<void>(handle->operations.IOClose(handle));
}

HIOFILE FIOpenBody(HIOFILE file, std::uint32_t end) {
    IOSubRangeSpec range = {};
    range.parent = file;
    range.start = headerSize;
    range.end = end;
    HIOFILE body = nullptr;
    static_cast<void>(file->operations.IOOpenSub(&body, IOSUB_RANGE, &range, IOSubOpenRead));  // a failure leaves null
    return body;
}

HIOFILE FIOpenPlainBody(HIOFILE body) {
    if (body == nullptr) return nullptr;
    IOSubDerivedSpec derivation = {};
    derivation.parent = body;
    derivation.method = bodyMethod;
    HIOFILE plain = nullptr;
    return body->operations.IOOpenSub(&plain, IOSUB_DERIVED, &derivation, IOSubOpenRead) == 0 ? plain : nullptr;
}

// Neither status is looked at: a version that can't be read is 0.
std::uint16_t FIReadBodyVersion(HIOFILE plain) {
    std::uint8_t bytes[2] = {0, 0};
    std::uint32_t count = 0;
    static_cast<void>(plain->operations.IOSeek(plain, IOOriginStart, versionInBody));
    static_cast<void>(FIReadHandle(plain, bytes, sizeof(bytes), count));
    return FILoadWordLE(bytes);
}

FIID FITellByVersion(std::uint16_t version) { return version > lastOldVersion ? newGeneration : oldGeneration; }

FIID FIProbeTransformedBody(FIReader& reader) {
    const std::uint32_t end = FIGoToEnd(reader);  // wherever the reader stands when the handle can't tell
    if (FIReaderSeek(reader, headerSize) != 0) return 0;
    const HIOFILE body = FIOpenBody(reader.file, end);
    const HIOFILE plain = FIOpenPlainBody(body);
    if (plain == nullptr) {
        FICloseIfOpen(body);
        // Quirk: an answer, not 0: it ends the walk of the signature table, and no text identification follows.
        return formatNotKnown;
    }
    const std::uint16_t version = FIReadBodyVersion(plain);
    FICloseIfOpen(plain);
    FICloseIfOpen(body);
    return FITellByVersion(version);
}

FIID FIProbePlainBody(FIReader& reader) {
    if (FIReaderSeek(reader, versionInFile) != 0) return 0;
    // Quirk: one byte of the field counts, and the end of the file is a version above all others.
    const std::uint16_t version = FIReaderGetByte(reader);
    static_cast<void>(FIReaderGetByte(reader));
    return FITellByVersion(version);
}

}  // namespace

FIID FIProbeWordPro(FIReader& reader) {
    if (FIReaderSeek(reader, bodyMark) != 0) return 0;
    const std::uint16_t first = FIReaderGetByte(reader);
    const std::uint16_t second = FIReaderGetByte(reader);
    return first == 0x0D && second == 0xFB ? FIProbeTransformedBody(reader) : FIProbePlainBody(reader);
}
