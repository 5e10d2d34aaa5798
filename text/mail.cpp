// mail.cpp - mail and news articles, told by their header lines (RFC 5322, RFC 2045, RFC 5536; RFC 4155 for mailboxes).
//
// The header block is read line by line. Each line is normalised: bracketed text is dropped and letters are lowered. A
// line that starts with a keyword of the table below and fulfils its needs scores, once per class.
//
// Quirk: keywords are bare prefixes and the colon may stand anywhere behind, so that "total: 5" and "tomorrow: 1" score
// like a To header. The breadth is wanted: a single class of address headers makes no mail.
#include "text/mail.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "reader/ascii_case.h"
#include "reader/head_line.h"
#include "reader/header_line.h"
#include "reader/text_line.h"

namespace {

constexpr std::uint16_t mostLines = 300;
constexpr std::uint16_t enoughPoints = 2;

constexpr std::string_view envelopeKeyword = "from ";
constexpr std::string_view htmlType = "text/html";
constexpr std::string_view relatedType = "multipart/related";

enum class HeaderClass : std::uint8_t {
    MimeVersion,
    ContentType,
    ContentDescription,
    ContentTransferEncoding,
    Newsgroups,
    MessageIdentity,
    ContentDisposition,
    From,
    To,
};
constexpr std::size_t headerClassCount = 9;

struct HeaderRow {
    std::string_view keyword;  // at the start of the line
    HeaderClass headerClass;   // scores once
    std::string_view needed;   // behind the colon, or the line doesn't score
    std::uint8_t mimePoints;
    std::uint8_t addressPoints;
    std::string_view addressNeeds;  // behind the colon, or the address points are not given
};

// In the order in which a line is tried. The first keyword that fits ends the work on the line, scoring or not; a class
// that has scored is passed over.
constexpr HeaderRow headerRows[] = {
    // clang-format off
    {"mime-version",              HeaderClass::MimeVersion,             "1.0", 2, 0, ""},
    {"content-type",              HeaderClass::ContentType,             "",    1, 0, ""},
    {"content-description",       HeaderClass::ContentDescription,      "",    1, 0, ""},
    {"content-transfer-encoding", HeaderClass::ContentTransferEncoding, "",    1, 0, ""},
    {"newsgroups",                HeaderClass::Newsgroups,              "",    1, 0, ""},
    {"message-id",                HeaderClass::MessageIdentity,         "",    1, 1, ""},
    {"article-i.d.",              HeaderClass::MessageIdentity,         "",    1, 0, ""},
    // Quirk: the capitals keep this row from ever fitting, for the line has been lowered. An attachment never scores.
    {"Content-Disposition",       HeaderClass::ContentDisposition,      "",    0, 1, "attachment"},
    {"from",                      HeaderClass::From,                    "",    0, 1, ""},
    {"to",                        HeaderClass::To,                      "",    0, 1, ""},
    // clang-format on
};

struct HeaderScores {
    std::uint16_t mimeScore = 0;
    std::uint16_t addressScore = 0;
    std::array<bool, headerClassCount> seen = {};
    bool envelopeFrom = false;         // the first line starts with "from "
    bool htmlBody = false;             // a content type names text/html
    bool relatedContinuation = false;  // in the folded lines of a content type of multipart/related
};

bool FISeen(const HeaderScores& scores, HeaderClass headerClass) {
    return scores.seen[static_cast<std::size_t>(headerClass)];
}

bool FIContains(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

bool FIHoldsNul(std::string_view line) { return line.find('\0') != std::string_view::npos; }

// Drops bracketed text, brackets too, and lowers the letters. What is left of the line is stored at target, which has
// room for all of it and may be the line itself. An unclosed bracket drops the rest of the line.
std::string_view FINormaliseLine(std::string_view line, char* target) {
    std::size_t kept = 0;
    bool inBrackets = false;
    for (const char character : line) {
        if (inBrackets) {
            inBrackets = character != ')';
        } else if (character == '(') {
            inBrackets = true;
        } else {
            target[kept++] = FILowerAscii(character);
        }
    }
    return {target, kept};
}

// A line behind a content type of multipart/related: one that begins with white space belongs to it.
void FIContinueRelated(HeaderScores& scores, std::string_view line) {
    if (!line.starts_with(' ') && !line.starts_with('\t')) {
        scores.relatedContinuation = false;
    } else if (FIContains(line, htmlType)) {
        scores.htmlBody = true;
    }
}

void FINoteContentType(HeaderScores& scores, std::string_view behindColon) {
    if (FIContains(behindColon, htmlType)) {
        scores.htmlBody = true;
    } else if (FIContains(behindColon, relatedType)) {
        scores.relatedContinuation = true;
    }
}

void FIScoreRow(HeaderScores& scores, const HeaderRow& row, std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) return;
    const std::string_view behindColon = line.substr(colon + 1);
    if (!FIContains(behindColon, row.needed)) return;
    scores.seen[static_cast<std::size_t>(row.headerClass)] = true;
    scores.mimeScore = static_cast<std::uint16_t>(scores.mimeScore + row.mimePoints);
    if (FIContains(behindColon, row.addressNeeds)) {
        scores.addressScore = static_cast<std::uint16_t>(scores.addressScore + row.addressPoints);
    }
    if (row.headerClass == HeaderClass::ContentType) FINoteContentType(scores, behindColon);
}

void FIScoreLine(HeaderScores& scores, std::uint16_t lineIndex, std::string_view line) {
    if (lineIndex == 0) scores.envelopeFrom = line.starts_with(envelopeKeyword);
    if (scores.relatedContinuation) FIContinueRelated(scores, line);
    for (const HeaderRow& row : headerRows) {
        if (FISeen(scores, row.headerClass) || !line.starts_with(row.keyword)) continue;
        FIScoreRow(scores, row, line);
        return;
    }
}

// ---- Lines that can't score ----

constexpr std::uint32_t FILetterBit(char letter) { return std::uint32_t{1} << (letter - 'a'); }

constexpr std::uint32_t firstLetters = [] {
    std::uint32_t letters = 0;
    for (const HeaderRow& row : headerRows) {
        const char letter = row.keyword.front();
        if (letter >= 'a' && letter <= 'z') letters |= FILetterBit(letter);  // the others fit no line
    }
    return letters;
}();
static_assert(envelopeKeyword.starts_with("from"), "an envelope line starts like a line of the row of that keyword");

// Whether the normalised line may start with the keyword: up to its first bracket it is the line with its letters
// lowered.
bool FIMayStartWith(std::string_view line, std::string_view keyword) {
    for (std::size_t index = 0; index < keyword.size(); ++index) {
        if (index == line.size()) return false;
        if (line[index] == '(') return true;
        if (FILowerAscii(line[index]) != keyword[index]) return false;
    }
    return true;
}

// Whether a line, not normalised yet, may change the scores. Most lines of a text don't, which their first letter tells.
bool FILineMatters(const HeaderScores& scores, std::string_view line) {
    if (scores.relatedContinuation) return true;
    const char first = FILowerAscii(line.front());
    if (first == '(') return true;
    if (first < 'a' || first > 'z' || (firstLetters & FILetterBit(first)) == 0) return false;
    return std::ranges::any_of(headerRows, [line](const HeaderRow& row) { return FIMayStartWith(line, row.keyword); });
}

// ---- The header block ----

// Passes over the next line if the reader's buffer shows that it changes no score. False, with the line still to come, if
// it may, or if too little of it is in the buffer.
//
// What lies behind a short line's end is looked at with it, but no keyword goes beyond a line end.
bool FIPassIdleLine(const HeaderScores& scores, FIReader& reader, FIPassedLine& line) {
    constexpr std::uint16_t lineStart = 32;
    static_assert(std::ranges::all_of(headerRows, [](const HeaderRow& row) { return row.keyword.size() < lineStart; }));
    if (reader.bytesLeft < lineStart) return false;
    if (FILineMatters(scores, {reinterpret_cast<const char*>(reader.cursor), lineStart})) return false;
    line = FIPassLine(headerLineCapacity, reader);
    return true;
}

// Scores the lines up to the first empty one, the first that holds a NUL, the end of the file or the 300th.
HeaderScores FIScoreHeaderBlock(FIReader& reader, char* lineBuffer) {
    HeaderScores scores;
    for (std::uint16_t lineIndex = 0; lineIndex < mostLines; ++lineIndex) {
        FIPassedLine passed;
        if (FIPassIdleLine(scores, reader, passed)) {
            if (passed.size == 0 || passed.holdsNul) break;
            continue;
        }
        const std::string_view line(lineBuffer, FIReadHeaderLine(lineBuffer, headerLineCapacity, reader));
        if (line.empty() || FIHoldsNul(line)) break;
        if (FILineMatters(scores, line)) FIScoreLine(scores, lineIndex, FINormaliseLine(line, lineBuffer));
    }
    return scores;
}

bool FIScoreIsMail(const HeaderScores& scores) {
    return scores.mimeScore >= enoughPoints || scores.addressScore >= enoughPoints;
}

FIID FIDecideMail(const HeaderScores& scores, std::string_view extension) {
    if (!FIScoreIsMail(scores)) return 0;
    const bool addressed = scores.addressScore >= enoughPoints;
    if (scores.mimeScore < enoughPoints) {
        return scores.envelopeFrom ? 1817 : 1132;
    }
    if (FISeen(scores, HeaderClass::Newsgroups)) return extension.starts_with("NWS") ? 1194 : 1193;
    if (addressed) {
        if (extension.starts_with("EML")) return 1195;
        return scores.envelopeFrom ? 1817 : 1192;
    }
    if (extension.starts_with("MHT")) return 1198;
    if (scores.envelopeFrom) return 1817;
    return scores.htmlBody ? 1198 : 1187;
}

}  // namespace

FIID FIProbeMail(FIReader& reader, const char* extension) {
    return FIWithLineBuffer(
        reader, [&](char* lineBuffer) { return FIDecideMail(FIScoreHeaderBlock(reader, lineBuffer), extension); });
}

// The header block as it is scored by the probe, as far as it lies in the head.
bool FIMayBeMail(FIHead& head) {
    HeaderScores scores;
    char normalised[headerLineBufferSize];
    std::uint32_t position = 0;
    for (std::uint16_t lineIndex = 0; lineIndex < mostLines; ++lineIndex) {
        std::string_view line;
        const FIHeadLine state = FITakeHeadLine(head, position, line);
        if (state == FIHeadLine::beyondHead) return true;
        if (state == FIHeadLine::holdsNul || line.empty()) return false;
        if (!FILineMatters(scores, line)) continue;
        FIScoreLine(scores, lineIndex, FINormaliseLine(line, normalised));
        if (FIScoreIsMail(scores)) return true;
    }
    return false;
}
