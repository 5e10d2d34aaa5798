// extended_text.cpp - text told by its characters alone, the last resort when no signature row fits.
//
// What counts are line ends, blanks, at-signs, high bytes and control characters.
//
//   Answer   Meaning
//     4022   text without bytes of 80 and above
//     4005   text with bytes of 80 and above
//     1184   rich in at-signs and high bytes, with few other text bytes
//     1999   not text
//
// The sample is the first 4,096 bytes, or a smaller file whole. A control character ends it; only a sample that holds
// one can be no text. Bytes 08, 09 and 0C, CR and LF are no control characters here, and 7F is a plain text byte.
#include "text/extended_text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include "catalogue/format_not_known.h"
#include "fiid.h"
#include "reader/file_end.h"
#include "reader/find_byte.h"
#include "reader/head.h"
#include "reader/reader.h"

namespace {

constexpr FIID plainText = 4022;
constexpr FIID highText = 4005;
constexpr FIID atSignText = 1184;

constexpr std::uint32_t largestSample = 4096;
constexpr std::uint32_t fewAtSigns = 10;  // no more of them make no text of at-signs

constexpr std::uint16_t firstPrintable = 0x20;
constexpr std::uint16_t firstHighByte = 0x80;

constexpr std::uint16_t emptySlot = 0xFFFF;  // the same as the end of the file, which is simply read once more

struct TextCounts {
    std::uint16_t crLf = 0;
    std::uint16_t crCrLf = 0;
    std::uint16_t loneLf = 0;
    std::uint16_t loneCr = 0;
    std::uint16_t blanks = 0;
    std::uint16_t atSigns = 0;
    std::uint16_t highBytes = 0;
    std::uint16_t textBytes = 0;  // all but high bytes; a line end of any kind counts once
    bool control = false;         // a control character ended the sample
};

struct TextScan {
    FIReader& reader;
    std::uint16_t lookAhead[2] = {emptySlot, emptySlot};  // bytes read behind a CR and not consumed
    TextCounts counts = {};
};

// The size of the file, or the reader's offset when the handle can't tell; 4,096 at most.
std::uint32_t FIMeasureSample(FIReader& reader) { return std::min(FIGoToEnd(reader), largestSample); }

std::uint16_t FITakeCharacter(TextScan& scan) {
    for (std::uint16_t& slot : scan.lookAhead) {
        if (slot == emptySlot) continue;
        const std::uint16_t character = slot;
        slot = emptySlot;
        return character;
    }
    return FIReaderGetByte(scan.reader);
}

// A sample is too short for the guard to matter; it is the counter's defined wrap all the same.
void FICountLineEnd(std::uint16_t& counter, TextCounts& counts) {
    if (counter == 0xFFFF) counter = 0;
    ++counter;
    ++counts.textBytes;
}

// Counts the line end that a CR begins and returns its size in bytes.
//
// Quirk: the two bytes behind the CR are always read from the file, into both slots. When the CR itself came from the
// first slot, the byte still waiting in the second is lost.
std::uint32_t FICountCarriageReturn(TextScan& scan) {
    auto& [first, second] = scan.lookAhead;
    first = FIReaderGetByte(scan.reader);
    second = FIReaderGetByte(scan.reader);
    if (first == '\r' && second == '\n') {
        FICountLineEnd(scan.counts.crCrLf, scan.counts);
        first = emptySlot;
        second = emptySlot;
        return 3;
    }
    if (first == '\n') {
        FICountLineEnd(scan.counts.crLf, scan.counts);
        first = emptySlot;
        return 2;
    }
    FICountLineEnd(scan.counts.loneCr, scan.counts);
    return 1;
}

// Counts any other character, the end-of-file value as a high byte. A control character is not counted but noted.
void FICountCharacter(std::uint16_t character, TextCounts& counts) {
    if (character == '\n') {
        FICountLineEnd(counts.loneLf, counts);
    } else if (character < firstPrintable && character != '\b' && character != '\t' && character != '\f') {
        counts.control = true;
    } else if (character >= firstHighByte) {
        ++counts.highBytes;
    } else {
        if (character == ' ') ++counts.blanks;
        if (character == '@') ++counts.atSigns;
        ++counts.textBytes;
    }
}

// Quirk: looks at one position less than the sample has, so that the last byte counts only if a CR has read ahead.
TextCounts FICountSample(FIReader& reader, std::uint32_t sampleSize) {
    TextScan scan = {.reader = reader};
    std::uint32_t index = 0;
    while (index + 1 < sampleSize && !scan.counts.control) {
        const std::uint16_t character = FITakeCharacter(scan);
        if (character == '\r') {
            index += FICountCarriageReturn(scan);
        } else {
            FICountCharacter(character, scan.counts);
            ++index;
        }
    }
    return scan.counts;
}

// Whether one kind of line end dominates: as many as lines of 302 bytes would have, 10 being enough, and at most a
// quarter as many of the others. CR LF and CR CR LF count as one kind, by the larger of the two.
bool FIOneLineEndDominates(const TextCounts& counts, std::uint32_t sampleSize) {
    constexpr std::uint32_t longestLine = 302;
    constexpr std::uint32_t enoughLines = 10;
    const std::uint32_t expected = std::min(sampleSize / longestLine, enoughLines);
    const std::uint32_t tolerated = expected / 4;
    const std::uint16_t pairs = std::max(counts.crLf, counts.crCrLf);
    return (pairs >= expected && counts.loneLf <= tolerated && counts.loneCr <= tolerated) ||
           (pairs <= tolerated && counts.loneLf >= expected && counts.loneCr <= tolerated) ||
           (pairs <= tolerated && counts.loneLf <= tolerated && counts.loneCr >= expected);
}

// At least two high bytes for each text byte that is no at-sign.
bool FIHighBytesPrevail(const TextCounts& counts) {
    return counts.highBytes >= 2 * (counts.textBytes - counts.atSigns);
}

// The ratio of text bytes to high bytes that lines of text must reach. At-signs make it steeper, and a sample of
// at-signs and high bytes is left to the later test.
//
// Neither factor shows in an answer. With high bytes the answer is 4005 whatever comes out here, or that of the later
// test, which wants so many of them that no factor above 1 is reached; without high bytes every factor is.
bool FIRatioIsText(const TextCounts& counts) {
    constexpr std::uint16_t twoAtSigns = 2;
    const bool manyAtSigns = counts.atSigns > counts.blanks;
    if (manyAtSigns && counts.atSigns > twoAtSigns && FIHighBytesPrevail(counts)) return false;
    return counts.textBytes >= (manyAtSigns ? 6 : 4) * counts.highBytes;
}

bool FIIsAtSignText(const TextCounts& counts, std::uint32_t sampleSize) {
    return counts.atSigns >= sampleSize / 10 && counts.atSigns > fewAtSigns && FIHighBytesPrevail(counts);
}

FIID FIDecideText(const TextCounts& counts, std::uint32_t sampleSize) {
    const bool linesOfText = FIOneLineEndDominates(counts, sampleSize) && FIRatioIsText(counts);
    if (!linesOfText && FIIsAtSignText(counts, sampleSize)) return atSignText;
    if (counts.highBytes != 0) return highText;
    if (!linesOfText && counts.control) return formatNotKnown;
    // Quirk: a control character withdraws the answer only in a sample of less than four bytes.
    return sampleSize / 4 < (counts.control ? 1U : 0U) ? formatNotKnown : plainText;
}

// ---- Texts that need no count ----
//
// Without a control character in the sample only high bytes and at-signs decide: 1184 asks for more than ten at-signs,
// and without 1184 the answer is 4005 with a high byte and 4022 without one. Where no byte is lost, the bytes that are
// counted are those in front of the sample's last, except for what belongs to a line end.

// Whether a control character stands in the first bytes, or two CR in a row, behind which a byte may be lost.
bool FINeedsCount(FIHead& head, std::uint32_t bytes) {
    constexpr int verticalTab = 0x0B;  // the only soft one that is a control character here
    std::uint64_t crCarry = 0;
    const auto pick = [&crCarry](const FIByteMasks& masks) {
        const std::uint64_t pairs = masks.cr & (masks.cr << 1 | crCarry);
        crCarry = masks.cr >> (byteMaskSpan - 1);
        return FIHardControls(masks) | pairs;
    };
    return FIAnyInHead(head, bytes, pick) || std::memchr(head.bytes, verticalTab, bytes) != nullptr;
}

// Whether 1184 may come out. The bytes that are no high bytes are text bytes, but that a CR may lie in front of its LF and
// count with it: so there are at least that many text bytes.
bool FIMayBeAtSignText(FIHead& head, std::uint32_t bytes) {
    const std::uint32_t atSigns = FICountPlaces(head.bytes, bytes, '@', [](std::uint32_t) { return true; });
    if (atSigns <= fewAtSigns) return false;
    const std::uint32_t highBytes = FICountInHead(head, bytes, FIHighBytes);
    const std::uint32_t returns = FICountInHead(head, bytes, [](const FIByteMasks& masks) { return masks.cr; });
    return highBytes + 2 * (highBytes + returns + atSigns) >= 2 * bytes;
}

// The answer of FICountSample and FIDecideText where the masks tell it, otherwise 0.
FIID FITellByHead(FIHead& head) {
    if (head.fileSize == UINT64_MAX) return 0;
    const auto sampleSize = static_cast<std::uint32_t>(std::min<std::uint64_t>(head.fileSize, largestSample));
    if (sampleSize > head.size) return 0;
    if (sampleSize < 2) return plainText;  // nothing is looked at
    const std::uint32_t bytes = sampleSize - 1;
    if (FINeedsCount(head, bytes) || FIMayBeAtSignText(head, bytes)) return 0;
    return FIAnyInHead(head, bytes, FIHighBytes) ? highText : plainText;
}

}  // namespace

FIID FITellText(FIReader& reader, FIHead* head) {
    const FIID told = head != nullptr ? FITellByHead(*head) : FIID{0};
    if (told != 0) return told;
    const std::uint32_t sampleSize = FIMeasureSample(reader);
    static_cast<void>(FIReaderSeek(reader, 0));  // a failure shows in the bytes that come
    return FIDecideText(FICountSample(reader, sampleSize), sampleSize);
}

extern "C" std::int16_t FIExtTextID(FIReader* reader, FIID* fiid) {
    // A host's reader need not have a value there, and the reader's functions look at it.
    void* const self = std::exchange(reader->self, nullptr);
    *fiid = FITellText(*reader);
    reader->self = self;
    return 0;
}
