// encoded_text.cpp - binaries carried in text, by the encoder's header or by a run of encoded lines.
//
//   Encoding     A line holds                              Header, letters in any case
//   uuencode     a length, then 4 characters per 3 bytes   "begin ", a mode of three digits 0 to 6, a blank, a name
//   xxencode     the same in another alphabet              the same
//   yEnc         bytes of any value                        "=ybegin ", part= (perhaps), line=, size= and name=
//   BinHex 4.0   64 characters                             "(This file must be converted with BinHex 4.0)", then ":"
//
// A run without a header is six lines of one encoding, the first longer than 44 characters. Fewer do when "end"
// follows, or in BinHex when a line ends in ":". Twelve lines in a row that fit nothing end the scan. Sources: IEEE Std
// 1003.1 for uuencode, RFC 1741 for BinHex 4.0.
#include "text/encoded_text.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "reader/ascii_case.h"
#include "reader/head_line.h"
#include "reader/header_line.h"
#include "reader/reader.h"
#include "reader/white_space.h"
#include "signatures/character_classes.h"

namespace {

constexpr FIID uuWithHeader = 4050;
constexpr FIID uuLines = 4051;
constexpr FIID xxWithHeader = 4052;
constexpr FIID xxLines = 4053;
constexpr FIID yEncSinglePart = 4054;
constexpr FIID yEncLaterPart = 4055;
constexpr FIID binHexWithNotice = 4056;
constexpr FIID binHexLines = 4057;

constexpr std::uint16_t mostLines = 300;
constexpr std::uint16_t mostIdleLines = 10;
constexpr std::uint16_t longestRun = 5;  // a run that exceeds it decides
constexpr std::uint16_t shortLine = 44;  // a line up to this length starts no run
constexpr std::uint16_t shortestHeader = 11;
constexpr std::uint16_t longestBinHexLine = 64;  // behind the notice
constexpr std::uint32_t lastDataPosition = 63;   // highest index of a uuencoded or xxencoded line's last character
constexpr std::uint8_t highestClassValue = 63;

constexpr std::string_view endKeyword = "end";
constexpr std::string_view mimeBoundary = "_=_";
constexpr std::string_view beginKeyword = "begin ";
constexpr std::string_view yBeginKeyword = "=ybegin ";
constexpr std::string_view yPartKeyword = "=ypart ";
constexpr std::string_view yEndKeyword = "=yend ";
constexpr std::string_view binHexNotice = "(this file must be converted with binhex 4.0)";
static_assert(binHexNotice.size() == 45);

// ---- Lines ----------------------------------------------------------------------------------------------------------

bool FIIsHighByte(char character) { return static_cast<std::uint8_t>(character) >= 0x80; }

// What the length character asks for: lastIndex, the index of the line's last character, must be the number of encoded
// characters for that many bytes. A character of no class has the value FF, a multiple of 3 that no line is long enough
// for.
bool FILengthFits(std::uint8_t byteCount, std::uint32_t lastIndex) {
    return byteCount % 3 == 0 && byteCount == lastIndex * 3 / 4;
}

// Whether all characters have a value in their class.
// Quirk: the look-ups read a character of 128 or above in front of their table, so that some pass for xxencode and
// BinHex; see signatures/character_classes.h.
bool FIAllInClass(std::string_view text, std::uint8_t (*lookUp)(char character)) {
    return std::ranges::all_of(text, [&](char character) { return lookUp(character) <= highestClassValue; });
}

// The last character holds the sum of the encoded characters in between, without the length character. All of them are
// in their class, so none is below a blank.
bool FIChecksumFits(std::string_view line) {
    constexpr std::uint32_t sixBits = 63;
    std::uint32_t sum = 0;
    for (const char character : line.substr(1, line.size() - 2)) {
        sum += (static_cast<std::uint32_t>(character) - ' ') & sixBits;
    }
    return (sum & sixBits) == static_cast<std::uint32_t>(line.back()) - ' ';
}

// ---- The scan -------------------------------------------------------------------------------------------------------

struct EncodedScan {
    FIReader& reader;
    char* line;                // headerLineBufferSize bytes, NUL-terminated at length
    std::uint16_t length = 0;  // bytes in line, which can hold NULs
    bool uuOpen = true;        // a run that breaks takes its encoding out of the scan
    bool xxOpen = true;
    std::uint16_t uuRun = 0;  // lines in a row
    std::uint16_t xxRun = 0;
    std::uint16_t binHexRun = 0;
    std::uint16_t idleLines = 0;  // since the last start of a run
    std::uint16_t lineCount = 0;
};

// A step's answer: a verdict, 0 among them, which ends the scan, or nothing when the scan goes on.
using StepAnswer = std::optional<FIID>;

// Reads the next line. False for an empty one and at the end of the file.
bool FIReadLine(EncodedScan& scan) {
    scan.length = FIReadHeaderLine(scan.line, headerLineCapacity, scan.reader);
    return scan.length != 0;
}

// The line up to its first NUL.
std::string_view FILineText(const EncodedScan& scan) { return scan.line; }

bool FILineStartsWith(const EncodedScan& scan, std::string_view keyword) {
    return FILineText(scan).starts_with(keyword);
}

char FILastByte(const EncodedScan& scan) { return scan.line[scan.length - 1]; }

// Adds a line to the run, or starts one with it if it is long enough. True when the run is long enough to decide.
bool FIExtendRun(EncodedScan& scan, std::uint16_t& run) {
    if (run > 0) return ++run > longestRun;
    if (scan.length > shortLine) {
        run = 1;
        scan.idleLines = 0;
    }
    return false;
}

// A line that is not encoded: decides if it closes a run, otherwise breaks it.
StepAnswer FIBreakRun(const EncodedScan& scan, std::uint16_t& run, bool& open, FIID answer) {
    if (run == 0) return std::nullopt;
    if (FILineStartsWith(scan, endKeyword)) return answer;
    open = false;
    run = 0;
    return std::nullopt;
}

// Quirk: sequence letters run from "z" down to "a" and begin again, but lines without a header in front of them may
// bear any letters in any order.
StepAnswer FIFollowUuRun(EncodedScan& scan) {
    constexpr std::uint16_t anyLetter = 0;
    if (!scan.uuOpen) return std::nullopt;
    if (!FIIsUuLine(scan.line, anyLetter)) return FIBreakRun(scan, scan.uuRun, scan.uuOpen, uuLines);
    return FIExtendRun(scan, scan.uuRun) ? StepAnswer(uuLines) : std::nullopt;
}

StepAnswer FIFollowXxRun(EncodedScan& scan) {
    if (!scan.xxOpen) return std::nullopt;
    if (!FIIsXxLine(scan.line)) return FIBreakRun(scan, scan.xxRun, scan.xxOpen, xxLines);
    return FIExtendRun(scan, scan.xxRun) ? StepAnswer(xxLines) : std::nullopt;
}

// Unlike the others, a run of BinHex that broke can start again, and a line ending in ":" closes it.
StepAnswer FIFollowBinHexRun(EncodedScan& scan) {
    if (!FIIsBinHexLine(scan.line)) {
        scan.binHexRun = 0;
        return std::nullopt;
    }
    const bool closing = FILastByte(scan) == ':';
    if (closing && scan.binHexRun == 0) return std::nullopt;
    const bool decides = FIExtendRun(scan, scan.binHexRun);
    return decides || closing ? StepAnswer(binHexLines) : std::nullopt;
}

StepAnswer FIFollowRuns(EncodedScan& scan) {
    if (const StepAnswer answer = FIFollowUuRun(scan)) return answer;
    if (const StepAnswer answer = FIFollowXxRun(scan)) return answer;
    return FIFollowBinHexRun(scan);
}

bool FIHoldsNul(const EncodedScan& scan) { return FILineText(scan).size() != scan.length; }

void FILowerLine(EncodedScan& scan) {
    for (char& character : std::span(scan.line, scan.length)) character = FILowerAscii(character);
}

// ---- uuencode and xxencode with a header ----------------------------------------------------------------------------

// Quirk: a digit 7 does not qualify, so that the usual mode 755 makes no header.
bool FIIsBeginHeader(const EncodedScan& scan) {
    constexpr std::size_t modeOffset = 6;
    constexpr std::size_t blankOffset = 9;
    const std::string_view mode(scan.line + modeOffset, blankOffset - modeOffset);
    return FILineStartsWith(scan, beginKeyword) &&
           std::ranges::all_of(mode, [](char digit) { return digit >= '0' && digit <= '6'; }) &&
           scan.line[blankOffset] == ' ';
}

// Judges the lines behind the header.
FIID FIFollowBeginHeader(EncodedScan& scan) {
    if (!FIReadLine(scan)) return 0;
    if (FIIsUuLine(scan.line, 'z')) {
        if (!FIReadLine(scan)) return 0;
        if (FIIsUuLine(scan.line, 'y') || FILineStartsWith(scan, endKeyword)) return uuWithHeader;
    }
    // The first line behind the header, or the second if the first could have been uuencoded.
    if (!FIIsXxLine(scan.line) || !FIReadLine(scan)) return 0;
    return FIIsXxLine(scan.line) || FILineStartsWith(scan, endKeyword) ? xxWithHeader : FIID{0};
}

// ---- yEnc -----------------------------------------------------------------------------------------------------------

// Reads a number and takes it off the text.
// Quirk: only the digits 1 to 8 count, so that 128 is 128, but 100 is 1 and 90 is 0. The value wraps in 16 bits.
std::uint16_t FITakeNarrowNumber(std::string_view& text) {
    std::uint16_t value = 0;
    while (!text.empty() && text.front() >= '1' && text.front() <= '8') {
        value = static_cast<std::uint16_t>(value * 10 + (text.front() - '0'));
        text.remove_prefix(1);
    }
    return value;
}

// Takes everything up to and including the first such keyword off the text. False, with the text as it was, without
// one.
bool FISkipPast(std::string_view& text, std::string_view keyword) {
    const std::size_t found = text.find(keyword);
    if (found == std::string_view::npos) return false;
    text.remove_prefix(found + keyword.size());
    return true;
}

struct YEncHeader {
    std::uint16_t part;        // 0 when the header names none
    std::uint16_t lineLength;  // of the encoded lines
};

// Reads a header whose fields stand in this order. A "line=" in front of "part=" is not found.
bool FIReadYEncHeader(const EncodedScan& scan, YEncHeader& header) {
    if (!FIIsAsciiRun(scan.line, scan.length)) return false;
    std::string_view text = FILineText(scan);
    header.part = FISkipPast(text, "part=") ? FITakeNarrowNumber(text) : std::uint16_t{0};
    if (!FISkipPast(text, "line=")) return false;
    header.lineLength = FITakeNarrowNumber(text);
    return FISkipPast(text, "size=") && FISkipPast(text, "name=");
}

// Whether the first encoded line has the length that the header names, or is the only one.
bool FIYEncDataFits(EncodedScan& scan, std::uint16_t lineLength) {
    const std::size_t length = FILineText(scan).size();
    if (length == lineLength || length == std::size_t{lineLength} + 1) return true;
    // Quirk: the closing line is tested over lineLength bytes, its terminating NUL among them if it is shorter: so a
    // short posting of a single line is lost.
    static_cast<void>(FIReadLine(scan));
    return FILineStartsWith(scan, yEndKeyword) && FIIsAsciiRun(scan.line, lineLength);
}

FIID FIFollowYEncHeader(EncodedScan& scan) {
    YEncHeader header = {};
    if (!FIReadYEncHeader(scan, header) || !FIReadLine(scan)) return 0;
    if (FILineText(scan).find(yPartKeyword) != std::string_view::npos) {
        if (!FIIsAsciiRun(scan.line, scan.length)) return 0;
        static_cast<void>(FIReadLine(scan));  // an empty line is measured like any other
    }
    if (!FIYEncDataFits(scan, header.lineLength)) return 0;
    return header.part > 1 ? yEncLaterPart : yEncSinglePart;
}

// ---- BinHex 4.0 with its notice -------------------------------------------------------------------------------------

bool FIIsBinHexNotice(const EncodedScan& scan) {
    return scan.length <= longestBinHexLine && FILineStartsWith(scan, binHexNotice);
}

// Whether ":" comes next, behind any line ends. The byte that comes instead is gone.
bool FITakeBinHexStart(FIReader& reader) {
    std::uint16_t byte = 0;
    do {
        byte = FIReaderGetByte(reader);
    } while (byte == '\r' || byte == '\n');
    return byte == ':';
}

bool FIReadBinHexLine(EncodedScan& scan) {
    return FIReadLine(scan) && scan.length <= longestBinHexLine && FIIsAsciiRun(scan.line, scan.length);
}

// Judges one line behind the ":", or two if the first doesn't close the data.
FIID FIFollowBinHexStart(EncodedScan& scan) {
    if (!FIReadBinHexLine(scan)) return 0;
    return FILastByte(scan) == ':' || FIReadBinHexLine(scan) ? binHexWithNotice : FIID{0};
}

// ---- The line loop --------------------------------------------------------------------------------------------------

// Whether a line, in letters of any case, starts as a line does that FITryHeaders looks at. No others need be lowered.
bool FIStartsLikeHeader(std::string_view line) {
    constexpr std::string_view starts = "bB=(";
    static_assert(beginKeyword.front() == 'b' && yBeginKeyword.front() == '=' && binHexNotice.front() == '(');
    return line.size() >= shortestHeader && starts.find(line.front()) != std::string_view::npos;
}

StepAnswer FITryHeaders(EncodedScan& scan) {
    if (!FIStartsLikeHeader(FILineText(scan))) return std::nullopt;
    FILowerLine(scan);
    if (FIIsBeginHeader(scan)) return FIFollowBeginHeader(scan);
    if (FILineStartsWith(scan, yBeginKeyword)) return FIFollowYEncHeader(scan);
    if (FIIsBinHexNotice(scan) && FITakeBinHexStart(scan.reader)) return FIFollowBinHexStart(scan);
    return std::nullopt;
}

// Examines one line. The runs see it as it is, the headers in lower case.
StepAnswer FIExamineLine(EncodedScan& scan) {
    FISkipWhiteSpace(scan.reader);
    if (!FIReadLine(scan)) return FIID{0};
    if (const StepAnswer answer = FIFollowRuns(scan)) return answer;
    if (FIHoldsNul(scan)) return FIID{0};
    if (!FILineStartsWith(scan, mimeBoundary)) {  // such a line is not idle
        if (const StepAnswer answer = FITryHeaders(scan)) return answer;
        if (scan.idleLines > mostIdleLines) return FIID{0};
        ++scan.idleLines;
    }
    return ++scan.lineCount == mostLines ? StepAnswer(FIID{0}) : std::nullopt;
}

// ---- The gate ----

// Whether a line without a NUL may be more than an idle one as long as no run has begun: a line that FITryHeaders looks
// at, a boundary line, which is not idle, or one that starts a run. A line that is too short to start one changes
// nothing, whatever it is.
bool FIIsNoIdleLine(std::string_view line) {
    constexpr std::size_t longestRunLine = 65;  // of the three encodings; the others end at 64
    if (FIStartsLikeHeader(line) || line.starts_with(mimeBoundary)) return true;
    if (line.size() <= shortLine || line.size() > longestRunLine) return false;
    char copy[longestRunLine + 1];  // FIIsUuLine may replace its blanks, which FIIsBinHexLine looks at then
    *std::copy(line.begin(), line.end(), copy) = '\0';
    return FIIsUuLine(copy, 0) || FIIsXxLine(copy) || FIIsBinHexLine(copy);
}

}  // namespace

bool FIIsAsciiRun(const char* text, std::uint16_t count) {
    for (std::uint16_t index = 0; index < count; ++index) {
        if (text[index] == '\0' || FIIsHighByte(text[index])) return false;
    }
    return true;
}

bool FIIsBinHexLine(const char* line) {
    constexpr std::size_t shortestFullLine = 46;
    constexpr std::size_t longestFullLine = 65;
    constexpr std::size_t shortestClosingLine = 3;
    const std::string_view text = line;
    if (text.empty() || text.size() > longestFullLine) return false;
    if (!FIAllInClass(text.substr(0, text.size() - 1), FIBinHexClass)) return false;
    return text.size() >= shortestFullLine || (text.size() >= shortestClosingLine && text.back() == ':');
}

bool FIIsUuLine(char* line, std::uint16_t expectedLetter) {
    const std::string_view text = line;
    if (text.empty() || FIIsHighByte(text.front()) || text.size() - 1 > lastDataPosition) return false;
    auto lastIndex = static_cast<std::uint32_t>(text.size() - 1);
    if (lastIndex % 4 > 1) return false;
    bool checksum = false;
    if (lastIndex % 4 == 1) {
        const auto lastByte = static_cast<std::uint8_t>(text.back());
        if (text.front() == 'M' && (expectedLetter == 0 || expectedLetter == lastByte)) {
            std::replace(line, line + text.size(), ' ', '`');
            --lastIndex;
        } else {
            checksum = true;
        }
    }
    if (!FILengthFits(FIUuClass(line[0]), lastIndex)) return false;
    const std::string_view data(line, lastIndex + 1);
    return FIAllInClass(data, FIUuClass) && (!checksum || FIChecksumFits(data));
}

bool FIIsXxLine(const char* line) {
    const std::string_view text = line;
    if (text.empty() || FIIsHighByte(text.front()) || text.size() - 1 > lastDataPosition) return false;
    const auto lastIndex = static_cast<std::uint32_t>(text.size() - 1);
    return lastIndex % 4 == 0 && FILengthFits(FIXxClass(text.front()), lastIndex) && FIAllInClass(text, FIXxClass);
}

FIID FIProbeEncodedText(FIReader& reader) {
    return FIWithLineBuffer(reader, [&](char* lineBuffer) {
        EncodedScan scan = {.reader = reader, .line = lineBuffer};
        StepAnswer answer;
        while (!answer) answer = FIExamineLine(scan);
        return *answer;
    });
}

// Idle lines alone end the scan soon.
bool FIMayBeEncodedText(FIHead& head) {
    std::uint32_t position = 0;
    for (std::uint16_t idleLines = 0; idleLines <= mostIdleLines + 1; ++idleLines) {
        while (position < head.size && FIIsWhiteSpace(head.bytes[position])) ++position;
        std::string_view line;
        const FIHeadLine state = FITakeHeadLine(head, position, line);
        if (state == FIHeadLine::beyondHead) return true;
        if (state == FIHeadLine::holdsNul || line.empty()) return false;
        if (FIIsNoIdleLine(line)) return true;
    }
    return false;
}
