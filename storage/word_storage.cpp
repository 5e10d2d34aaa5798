// word_storage.cpp - the versions of Word documents in compound storages, by the application that wrote them.
//
// The summary stream, 05 "SummaryInformation", is a property set ([MS-OLEPS]); all numbers are little-endian:
//
//   Offset  Size  Field
//        0     4  byte order and format version: FE FF 00 00
//       44     4  S, the offset of the first section
//      S+0     4  N, the size of the section in bytes
//      S+8   8 *  pairs of a property and its value's offset from S, 4 bytes each; 18 is the application's name
//
// A value opens with 8 bytes of type and length. Character 15 of the application's name, counted from 0, starts the
// version in every name known: "Microsoft Word 6.0", "Microsoft Word 10.0", "Microsoft Word for Windows 95".
//
// "WordDocument" decides where the summary doesn't:
//
//   Offset  Size  Field                Used
//        2     2  file-format number   without a summary stream: 101 to 105 is 1102
//        4     2  build                when the summary tells no version
#include "storage/word_storage.h"

#include <cstdint>

#include "reader/low_byte.h"
#include "reader/reader.h"
#include "reader/unchecked_numbers.h"
#include "storage/storage_streams.h"

namespace {

constexpr char summaryName[] = "\005SummaryInformation";
constexpr char documentName[] = "WordDocument";

constexpr FIID undecided = 1146;
constexpr FIID summaryBroken = 1126;

constexpr std::uint32_t byteOrderMark = 0x0000FFFE;
constexpr std::uint32_t sectionOffsetField = 44;
constexpr std::uint32_t skippedInSection = 4;  // between N and the pairs
constexpr std::uint32_t applicationName = 18;
constexpr std::uint32_t versionInValue = 23;     // 8 bytes of type and length, then character 15
constexpr std::uint32_t bytesFromForToYear = 9;  // "for" is character 15 to 17, the year's last digits are 27 and 28
constexpr std::uint32_t buildField = 4;

// A reader's offsets wrap at 4 GiB, and in a longer stream it meets no end. No shorter stream holds as many pairs.
constexpr std::uint32_t pairsInReach = 0x20000000;

void FISeekForward(FIReader& stream, std::uint32_t bytes) {
    static_cast<void>(FIReaderSeek(stream, FIReaderTell(stream) + bytes));
}

bool FIIsText(const std::uint8_t (&characters)[3], const char* text) {
    return characters[0] == static_cast<std::uint8_t>(text[0]) && characters[1] == static_cast<std::uint8_t>(text[1]) &&
           characters[2] == static_cast<std::uint8_t>(text[2]);
}

// ---- "WordDocument" ------------------------------------------------------------------------------------------------

FIID FITellByFormatNumber(FIReader& document) {
    const std::int32_t firstWord = FIReadWordLE(document);
    const std::int32_t formatNumber = FIReadWordLE(document);
    // Behind a first word that ends with the stream there is no number, unless a handle fails once and then reads on:
    // from another offset.
    if (firstWord < 0 || formatNumber < 0) return undecided;
    return formatNumber >= 101 && formatNumber <= 105 ? 1102 : undecided;
}

FIID FITellByBuild(FIReader& document) {
    static_cast<void>(FIReaderSeek(document, buildField));
    const std::uint16_t build = FIJoinWordLE(document);  // of a stream of up to 5 bytes the newest build
    if (build >= 0x6000) return 1186;
    if (build >= 0x4000) return 1185;
    if (build >= 0x2000) return 1146;
    return 1126;
}

// ---- The summary stream --------------------------------------------------------------------------------------------

// Finds the offset of the application's name from the section's start. Returns true, or false with the answer.
bool FIFindApplicationName(FIReader& summary, std::uint32_t bound, std::uint32_t& valueOffset, FIID& answer) {
    // Quirk: the bound is the section's size in bytes, taken as a count of pairs, and the counter has 16 bits: the walk
    // may run on into the values, and above 65535 the bound is never reached.
    std::uint16_t counter = 0;
    for (std::uint32_t pair = 0; pair < pairsInReach; ++pair) {
        std::uint32_t property = 0;
        if (FIReadDWordLE(summary, property) != 0 || FIReadDWordLE(summary, valueOffset) != 0) break;
        if (property == applicationName) return true;
        ++counter;
        if (counter == bound) {
            answer = undecided;
            return false;
        }
    }
    answer = summaryBroken;
    return false;
}

// Reads the version in the application's name. The reader stands at it.
FIID FITellByVersion(FIReader& summary, HIOFILE storage) {
    std::uint8_t version[3];
    for (std::uint8_t& character : version) character = FITakeLowByte(summary);  // FF behind the end fits no version
    if (FIIsText(version, "6.0")) return 1082;
    if (FIIsText(version, "8.0")) return 1126;
    if (FIIsText(version, "9.0")) return 1146;
    if (FIIsText(version, "10.")) return 1185;
    if (FIIsText(version, "11.")) return 1186;
    if (FIIsText(version, "for")) {
        FISeekForward(summary, bytesFromForToYear);
        const std::uint16_t first = FIReaderGetByte(summary);
        const std::uint16_t second = FIReaderGetByte(summary);
        return first == '9' && second == '5' ? 1082 : undecided;
    }
    return FIRunOverStream(storage, documentName, undecided, FITellByBuild);
}

FIID FITellBySummary(FIReader& summary, HIOFILE storage) {
    // Quirk: a summary that ends early answers 1126, one that says nothing 1146.
    std::uint32_t mark = 0;
    if (FIReadDWordLE(summary, mark) != 0) return summaryBroken;
    if (mark != byteOrderMark) return undecided;
    std::uint32_t section = 0;
    static_cast<void>(FIReaderSeek(summary, sectionOffsetField));
    if (FIReadDWordLE(summary, section) != 0) return summaryBroken;
    std::uint32_t bound = 0;
    static_cast<void>(FIReaderSeek(summary, section));
    if (FIReadDWordLE(summary, bound) != 0) return summaryBroken;
    FISeekForward(summary, skippedInSection);
    if (bound == 0) return undecided;
    std::uint32_t valueOffset = 0;
    FIID answer = undecided;
    if (!FIFindApplicationName(summary, bound, valueOffset, answer)) return answer;
    static_cast<void>(FIReaderSeek(summary, section + valueOffset));
    FISeekForward(summary, versionInValue);
    return FITellByVersion(summary, storage);
}

}  // namespace

FIID FIProbeWordStorage(FIReader& reader) {
    const HIOFILE storage = reader.file;
    if (!FIIsStorage(storage)) return undecided;
    IOSubSpec specification;
    specification.parent = storage;
    const HIOFILE summary = FIOpenStorageObject(specification, IOSUB_STREAM, summaryName);
    if (summary == nullptr) return FIRunOverStream(storage, documentName, undecided, FITellByFormatNumber);
    const FIID answer =
        FIReadStream(summary, undecided, [storage](FIReader& stream) { return FITellBySummary(stream, storage); });
    FICloseStorageObject(summary);
    return answer;
}
