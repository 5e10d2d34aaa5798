// code_statistics.cpp - word processors of the DOS era that are told by counting the control codes in their text.
//
// FIProbeCommandCounts, one vote for each of:
//
//   Format  Bytes
//     1022  0A 0B 52, 0E 0D 0A, 0D 0A 0F   line ends in three bytes
//     1034  2B and one of D1, D2, D4       codes behind plus signs; a file that starts with 2B has 30 votes at once
//     1033  AE and two letters             commands from a list of 49
//
// FIProbeHighBitWords looks at a text that sets the top bit of the last character of each word, line by line. A line
// speaks for the format when it has such characters, all of them at ends of words, and no blank behind a plain
// character.
//
// Both read from offset 0 in order: 4,096 bytes and two for each command, and 1,026 bytes.
#include "wordproc/code_statistics.h"

#include <algorithm>
#include <iterator>

#include "reader/find_byte.h"
#include "reader/head.h"
#include "reader/reader.h"

namespace {

// ---- FIProbeCommandCounts -------------------------------------------------------------------------------------------

constexpr FIID threeByteLineEnds = 1022;
constexpr FIID commandsBehindMark = 1033;
constexpr FIID codesBehindPlus = 1034;

constexpr std::int16_t commandBudget = 4096;
constexpr std::uint16_t votesOfLeadingPlus = 30;
constexpr std::uint16_t leastVotes1034 = 32;
constexpr std::uint16_t leastVotes1022 = 3;
constexpr std::uint16_t leastVotes1033 = 2;

constexpr std::uint16_t plusSign = 0x2B;
constexpr std::uint16_t commandMark = 0xAE;

// In alphabetical order.
constexpr char commands[][3] = {
    // clang-format off
    "AL", "BB", "BT", "CO", "CT", "DA", "DF", "EC", "EL", "FC", "FD", "FL", "FM", "FN", "FR", "FS", "IP",
    "JU", "LB", "LD", "LL", "LM", "LS", "MD", "NB", "NF", "NJ", "NS", "OF", "PA", "PG", "PL", "PN", "PS",
    "PT", "RF", "RH", "RM", "RT", "SF", "SN", "SP", "SS", "TM", "TP", "TR", "TS", "UL", "US",
    // clang-format on
};
static_assert(std::size(commands) == 49);

struct FICommandScan {
    FIReader& reader;
    std::int16_t budget = 0;  // steps left
    std::uint16_t votes1022 = 0;
    std::uint16_t votes1034 = 0;
    std::uint16_t votes1033 = 0;
    std::uint16_t previous = 0;  // the byte before the current one
    std::uint16_t beforePrevious = 0;
};

// For two bytes as FIReadWordBE delivers them.
bool FIIsCommand(std::int32_t word) {
    return std::ranges::any_of(commands, [word](const char(&command)[3]) {
        return word == (std::int32_t{command[0]} << 8 | std::int32_t{command[1]});
    });
}

// Behind a command mark: a command is consumed, and its letters take no part in the scan; anything else is read again.
// At the end of the file, or when the reader can't go back, this is the last step.
void FITakeCommand(FICommandScan& scan) {
    const std::int32_t word = FIReadWordBE(scan.reader);
    if (word != -1 && FIIsCommand(word)) {
        ++scan.votes1033;
        return;
    }
    if (word == -1 || FIReaderSeek(scan.reader, FIReaderTell(scan.reader) - 2) != 0) scan.budget = 1;
}

void FICountCode(FICommandScan& scan, std::uint16_t current) {
    const auto behind = [&scan](std::uint16_t beforePrevious, std::uint16_t previous) {
        return scan.previous == previous && scan.beforePrevious == beforePrevious;
    };
    switch (current) {
        case 0x52:
            if (behind('\n', 0x0B)) ++scan.votes1022;
            break;
        case '\n':
            if (behind(0x0E, '\r')) ++scan.votes1022;
            break;
        case 0x0F:
            if (behind('\r', '\n')) ++scan.votes1022;
            break;
        case 0xD1:
        case 0xD2:
        case 0xD4:  // Quirk: D3 is left out
            if (scan.previous == plusSign) ++scan.votes1034;
            break;
        case commandMark:
            FITakeCommand(scan);
            break;
        default:
            break;
    }
}

bool FIIsCapital(std::uint8_t byte) { return byte >= 'A' && byte <= 'Z'; }

// Bytes for the gate, which asks for those around a place: 0 in front of the first and behind the last, which no vote is
// made of.
struct FIVoteBytes {
    const std::uint8_t* bytes;
    std::uint32_t size;

    std::uint8_t At(std::uint32_t place) const { return place < size ? bytes[place] : std::uint8_t{0}; }
    std::uint8_t Before(std::uint32_t place, std::uint32_t distance) const {
        return place >= distance ? bytes[place - distance] : std::uint8_t{0};
    }
};

std::uint32_t FICountCommandsAtMost(const FIVoteBytes& text) {
    return FICountPlaces(text.bytes, text.size, commandMark, [&text](std::uint32_t place) {
        return FIIsCapital(text.At(place + 1)) && FIIsCapital(text.At(place + 2));
    });
}

std::uint32_t FICountPlusCodes(const FIVoteBytes& text) {
    return FICountPlaces(text.bytes, text.size, plusSign, [&text](std::uint32_t place) {
        const std::uint8_t code = text.At(place + 1);
        return code == 0xD1 || code == 0xD2 || code == 0xD4;
    });
}

// Each by the rare one of its bytes.
std::uint32_t FICountThreeByteLineEnds(const FIVoteBytes& text) {
    return FICountPlaces(
               text.bytes, text.size, 0x0B,
               [&text](std::uint32_t place) { return text.Before(place, 1) == '\n' && text.At(place + 1) == 0x52; }) +
           FICountPlaces(
               text.bytes, text.size, 0x0E,
               [&text](std::uint32_t place) { return text.At(place + 1) == '\r' && text.At(place + 2) == '\n'; }) +
           FICountPlaces(text.bytes, text.size, 0x0F, [&text](std::uint32_t place) {
               return text.Before(place, 2) == '\r' && text.Before(place, 1) == '\n';
           });
}

// A tie goes to the answer that is tested first.
FIID FIJudgeVotes(const FICommandScan& scan, bool firstNonZero) {
    const std::uint16_t most = std::max({scan.votes1034, scan.votes1022, scan.votes1033});
    if (scan.votes1034 >= leastVotes1034 && scan.votes1034 == most) return codesBehindPlus;
    if (scan.votes1022 >= leastVotes1022 && scan.votes1022 == most) return threeByteLineEnds;
    if (firstNonZero && scan.votes1033 >= leastVotes1033 && scan.votes1033 == most) return commandsBehindMark;
    return 0;
}

// ---- FIProbeHighBitWords --------------------------------------------------------------------------------------------

constexpr FIID highBitWords = 1003;

constexpr std::uint16_t middleBytes = 1021;  // the bytes 2 to 1,022 of the file pass through the middle of the view
constexpr std::int16_t leastMarkedLines = 4;
constexpr std::int16_t lastPlain = 0x7F;
constexpr std::int16_t topBit = 0x80;
constexpr std::int16_t firstPrintable = 0x21;

// Bytes that end a word in front of them and behind them.
constexpr std::int16_t softHyphen = 0x1E;
constexpr std::int16_t bindingBlank = 0x0F;

// A character with its top bit set between these two is an extended character, and no sign against the format.
constexpr std::int16_t extendedStart = 0x1B;
constexpr std::int16_t extendedEnd = 0x1C;

// Five folded bytes in a row, 0 to 255 or -1 for the end of the file.
struct FIFiveBytes {
    std::int16_t beforePrevious;
    std::int16_t previous;
    std::int16_t middle;
    std::int16_t next;
    std::int16_t afterNext;
};

struct FIMarkedLine {
    std::int16_t goodMarks = 0;  // characters with the top bit set where a word ends
    std::int16_t badMarks = 0;   // and anywhere else
    bool plainGap = false;       // a blank behind a plain character
};

std::int16_t FITakeFoldedByte(FIReader& reader) {
    return static_cast<std::int16_t>(FIReadFoldedByte(reader));  // the end of the file becomes -1
}

FIFiveBytes FIFillView(FIReader& reader) {
    FIFiveBytes view;
    view.beforePrevious = FITakeFoldedByte(reader);
    view.previous = FITakeFoldedByte(reader);
    view.middle = FITakeFoldedByte(reader);
    view.next = FITakeFoldedByte(reader);
    view.afterNext = FITakeFoldedByte(reader);
    return view;
}

void FIShiftView(FIFiveBytes& view, FIReader& reader) {
    view = {view.previous, view.middle, view.next, view.afterNext, FITakeFoldedByte(reader)};
}

bool FIIsWordBreak(std::int16_t byte) { return byte == ' ' || byte == bindingBlank || byte == softHyphen; }

// Counts the middle byte, whose top bit is set. The first rule that fits applies.
void FICountMark(FIFiveBytes& view, FIMarkedLine& line) {
    const bool lineEnds = view.next == '\r' && view.afterNext == '\n';
    if (FIIsWordBreak(view.next) || lineEnds) {
        const bool endsWord =
            FIIsWordBreak(view.previous) || (view.previous <= lastPlain && view.beforePrevious <= lastPlain);
        if (endsWord && !lineEnds) ++line.goodMarks;  // at the end of a line the mark says nothing
    } else if (view.previous == extendedStart && view.next == extendedEnd) {
        ++line.goodMarks;
    } else if (view.afterNext == ' ') {
        // Quirk: not counted, and from here on it is seen as a plain character by the bytes behind it.
        view.middle = static_cast<std::int16_t>(view.middle - topBit);
    } else {
        ++line.badMarks;
    }
}

// Line ends as the routine sees them, with their top bits or without.
std::uint32_t FICountFoldedLineEnds(const std::uint8_t* bytes, std::uint32_t size) {
    const auto lineFeedFollows = [bytes, size](std::uint32_t place) {
        return place + 1 < size && (bytes[place + 1] & ~topBit) == '\n';
    };
    return FICountPlaces(bytes, size, '\r', lineFeedFollows) +
           FICountPlaces(bytes, size, '\r' | topBit, lineFeedFollows);
}

bool FISpeaksForFormat(const FIMarkedLine& line) { return line.goodMarks != 0 && line.badMarks == 0 && !line.plainGap; }

}  // namespace

// The routine takes 4,096 steps, of a byte each, and passes over two bytes more behind each command. With one command at
// most, the steps end in front of the 4,099th byte; the votes that can be had up to there are counted without regard to
// the steps, and with two bytes more for a command's letters. Two commands open the gate by themselves.
bool FIMayHaveCommandCounts(FIHead& head) {
    constexpr std::uint32_t bytesLookedAt = static_cast<std::uint32_t>(commandBudget) + 4;
    const FIVoteBytes text = {head.bytes, std::min(head.size, bytesLookedAt)};
    const std::uint32_t codesNeeded = text.At(0) == plusSign ? leastVotes1034 - votesOfLeadingPlus : leastVotes1034;
    return FICountCommandsAtMost(text) >= leastVotes1033 || FICountPlusCodes(text) >= codesNeeded ||
           FICountThreeByteLineEnds(text) >= leastVotes1022;
}

FIID FIProbeCommandCounts(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    FICommandScan scan{reader};
    std::uint16_t current = FIReaderGetByte(reader);
    const bool firstNonZero = current != 0;
    if (current != endOfFile) scan.budget = commandBudget;
    if (current == plusSign) scan.votes1034 = votesOfLeadingPlus;
    while (scan.budget > 0) {
        FICountCode(scan, current);
        scan.beforePrevious = scan.previous;
        scan.previous = current;
        current = FIReaderGetByte(reader);
        if (current == endOfFile) scan.budget = 1;
        --scan.budget;
    }
    return FIJudgeVotes(scan, firstNonZero);
}

// A line that speaks for the format has a byte with its top bit set, and all but the last are ended by CR LF.
bool FIMayBeHighBitWords(FIHead& head) {
    constexpr std::uint32_t bytesTaken = middleBytes + 5;
    constexpr std::uint32_t leastMarks = leastMarkedLines;
    return FICountInHead(head, bytesTaken, FIHighBytes) >= leastMarks &&
           FICountFoldedLineEnds(head.bytes, std::min(head.size, bytesTaken)) >= leastMarks - 1;
}

FIID FIProbeHighBitWords(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    FIFiveBytes view = FIFillView(reader);
    FIMarkedLine line;
    std::int16_t markedLines = 0;
    for (std::uint16_t visited = 0; visited < middleBytes && view.middle != -1; ++visited) {
        if (view.middle > lastPlain) {
            FICountMark(view, line);
        } else if (view.middle == ' ') {
            if (view.previous >= firstPrintable && view.previous <= lastPlain) line.plainGap = true;
        } else if (view.middle == '\r' && view.next == '\n') {
            if (line.badMarks > line.goodMarks) return 0;  // one such line, however many clean ones came before
            if (FISpeaksForFormat(line)) ++markedLines;
            line = {};
        }
        FIShiftView(view, reader);
    }
    if (FISpeaksForFormat(line)) ++markedLines;  // the last line, which need not be closed
    return markedLines >= leastMarkedLines ? highBitWords : 0;
}

std::uint16_t FIReadFoldedByte(FIReader& reader) {
    constexpr std::uint16_t foldedTopBit = 0x80;
    const std::uint16_t byte = FIReaderGetByte(reader);
    switch (byte) {
        case foldedTopBit | ' ':
        case foldedTopBit | '\r':
        case foldedTopBit | '\n':
            return static_cast<std::uint16_t>(byte - foldedTopBit);
        default:
            return byte;
    }
}
