// mail.cpp - mail and news articles, told by their header lines (RFC 5322, RFC 2045, RFC 5536; RFC 4155 for mailboxes).
//
// The header block is read line by line. Each line is normalised: bracketed text is dropped and letters are lowered. A
// line that starts with a keyword of the table below and fulfils its needs scores, once per class.
//
// Quirk: keywords are bare prefixes and the colon may stand anywhere behind, so that "total: 5" and "tomorrow: 1" score
// like a To header. The breadth is wanted: a single class of address headers makes no mail.
#include "text/mail.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "reader/ascii_case.h"
#include "reader/header_line.h"

namespace {

constexpr std::uint16_t mostLines = 300;

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

// Drops bracketed text, brackets too, lowers the letters, and stores the length that is left. False when the line holds
// a NUL. An unclosed bracket drops the rest of the line.
bool FINormaliseLine(char* line, std::uint16_t& length) {
    std::uint16_t kept = 0;
    bool inBrackets = false;
    for (std::uint16_t index = 0; index < length; ++index) {
        const char character = line[index];
        if (character == '\0') return false;
        if (inBrackets) {
            inBrackets = character != ')';
        } else if (character == '(') {
            inBrackets = true;
        } else {
            line[kept++] = FILowerAscii(character);
        }
    }
    line[kept] = '\0';
    length = kept;
    return true;
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

// Scores the lines up to the first empty one, the first that holds a NUL, the end of the file or the 300th.
HeaderScores FIScoreHeaderBlock(FIReader& reader, char* lineBuffer) {
    HeaderScores scores;
    for (std::uint16_t lineIndex = 0; lineIndex < mostLines; ++lineIndex) {
        std::uint16_t length = FIReadHeaderLine(lineBuffer, headerLineCapacity, reader);
        if (length == 0 || !FINormaliseLine(lineBuffer, length)) break;
        FIScoreLine(scores, lineIndex, std::string_view(lineBuffer, length));
    }
    return scores;
}

FIID FIDecideMail(const HeaderScores& scores, std::string_view extension) {
    constexpr std::uint16_t enough = 2;
    const bool addressed = scores.addressScore >= enough;
    if (scores.mimeScore < enough) {
        if (!addressed) return 0;
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
