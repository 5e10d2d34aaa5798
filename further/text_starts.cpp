// text_starts.cpp - the beginnings of texts, read from left to right.
//
// A step takes what it passes from the front of the text and tells whether it was there. No rule here needs to go back:
// what may follow a run of characters is never one of them, so that a run is always taken as long as it is. The
// interpreter lines are the exception: there every slash is tried.
#include "further/text_starts.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "further/searches.h"
#include "reader/ascii_case.h"
#include "reader/ascii_digit.h"

namespace {

std::string_view FIStartOf(const FILook& look) {
    return {reinterpret_cast<const char*>(look.start.bytes), look.start.size};
}

constexpr bool FIIsCapital(char character) { return character >= 'A' && character <= 'Z'; }
constexpr bool FIIsSmall(char character) { return character >= 'a' && character <= 'z'; }
constexpr bool FIIsSpace(char character) { return character == ' ' || (character >= '\t' && character <= '\r'); }
constexpr bool FIIsBlank(char character) { return character == ' ' || character == '\t'; }
constexpr bool FIIsWordCharacter(char character) {
    return FIIsSmall(character) || FIIsCapital(character) || FIIsDigit(character) || character == '_';
}

bool FITake(std::string_view& text, std::string_view literal) {
    if (!text.starts_with(literal)) return false;
    text.remove_prefix(literal.size());
    return true;
}

// The literal is in small letters.
bool FITakeAnyCase(std::string_view& text, std::string_view literal) {
    const auto toLower = [](char character) { return FILowerAscii(character); };
    if (!std::ranges::equal(text.substr(0, literal.size()), literal, {}, toLower)) return false;
    text.remove_prefix(literal.size());
    return true;
}

template <typename IsTaken>
bool FITakeOne(std::string_view& text, IsTaken isTaken) {
    if (text.empty() || !isTaken(text.front())) return false;
    text.remove_prefix(1);
    return true;
}

// Takes all characters of a kind and tells how many there were.
template <typename IsTaken>
std::size_t FITakeAll(std::string_view& text, IsTaken isTaken) {
    const auto* const end = std::find_if_not(text.begin(), text.end(), isTaken);
    const auto count = static_cast<std::size_t>(end - text.begin());
    text.remove_prefix(count);
    return count;
}

template <typename List>
bool FITakeOneOf(std::string_view& text, const List& literals) {
    return std::ranges::any_of(literals, [&text](std::string_view literal) { return FITake(text, literal); });
}

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// ---- Numbers and versions

// A number of up to nine digits.
bool FITakeImageSize(std::string_view& text) {
    const std::size_t digits = FITakeAll(text, FIIsDigit);
    return digits >= 1 && digits <= 9;
}

bool FIIsFloatMap(std::string_view text) {
    if (!FITake(text, "PF\n") && !FITake(text, "Pf\n")) return false;
    if (!FITakeImageSize(text) || !(FITake(text, " ") || FITake(text, "\n"))) return false;
    if (!FITakeImageSize(text) || !FITake(text, "\n")) return false;
    FITake(text, "-");
    return FITakeOne(text, [](char character) { return FIIsDigit(character) || character == '.'; });
}

// ---- PEM

constexpr std::string_view pemBegin = "-----BEGIN ";

bool FIIsPemMessage(std::string_view text) {
    constexpr std::string_view labels[] = {"PKCS7-----", "CMS-----", "PKCS #7 SIGNED DATA-----"};
    return FITake(text, pemBegin) && FITakeOneOf(text, labels);
}

// Any words may stand in front: "RSA PRIVATE KEY", "ENCRYPTED PRIVATE KEY".
bool FIIsPemPrivateKey(std::string_view text) {
    if (!FITake(text, pemBegin)) return false;
    const auto isLetterOfWord = [](char character) { return FIIsCapital(character) || FIIsDigit(character); };
    while (!text.starts_with("PRIVATE KEY-----")) {
        if (FITakeAll(text, isLetterOfWord) == 0 || !FITake(text, " ")) return false;
    }
    return true;
}

bool FIIsOtherPem(std::string_view text) {
    constexpr std::string_view labels[] = {
        "CERTIFICATE REQUEST-----", "X509 CRL-----",       "PUBLIC KEY-----",    "RSA PUBLIC KEY-----",
        "EC PARAMETERS-----",       "DSA PARAMETERS-----", "DH PARAMETERS-----", "ATTRIBUTE CERTIFICATE-----",
    };
    if (!FITake(text, pemBegin)) return false;
    FITake(text, "NEW ");
    return FITakeOneOf(text, labels);
}

// ---- Subtitles

bool FITakeDigits(std::string_view& text, std::size_t count) {
    const bool areDigits = text.size() >= count && std::all_of(text.begin(), text.begin() + count, FIIsDigit);
    if (areDigits) text.remove_prefix(count);
    return areDigits;
}

// "00:01:02,345", or with a full stop.
bool FITakeTime(std::string_view& text) {
    return FITakeDigits(text, 2) && FITake(text, ":") && FITakeDigits(text, 2) && FITake(text, ":") &&
           FITakeDigits(text, 2) && (FITake(text, ",") || FITake(text, ".")) && FITakeDigits(text, 3);
}

bool FIIsSubRip(std::string_view text) {
    FITake(text, byteOrderMark);
    FITakeAll(text, FIIsSpace);
    if (FITakeAll(text, FIIsDigit) == 0) return false;
    // The white space behind the number may hold line ends of its own; the last of it is one.
    const std::string_view behindNumber = text;
    const std::size_t spaces = FITakeAll(text, FIIsSpace);
    if (spaces == 0 || behindNumber[spaces - 1] != '\n') return false;
    return FITakeTime(text) && FITake(text, " --> ") && FITakeTime(text);
}

// ---- Interpreter lines

constexpr FIID otherInterpreter = 20289;

struct FIInterpreter {
    std::string_view name;
    bool hasVersion;  // digits and full stops may follow
    FIID fiid;
};

// The last part of the interpreter's path, or what "env" is to run.
constexpr FIInterpreter interpreters[] = {
    // clang-format off
    {"sh",     false, 20281},
    {"bash",   false, 20281},
    {"dash",   false, 20281},
    {"ksh",    false, 20281},
    {"zsh",    false, 20281},
    {"ash",    false, 20281},
    {"python", true,  20282},
    {"pypy",   true,  20282},
    {"perl",   true,  20283},
    {"ruby",   true,  20284},
    {"node",   false, 20285},
    {"nodejs", false, 20285},
    {"awk",    false, 20287},
    {"gawk",   false, 20287},
    {"mawk",   false, 20287},
    {"nawk",   false, 20287},
    // clang-format on
};

bool FIIsCalled(std::string_view text, const FIInterpreter& interpreter) {
    if (!FITake(text, interpreter.name)) return false;
    if (interpreter.hasVersion) {
        FITakeAll(text, [](char character) { return FIIsDigit(character) || character == '.'; });
    }
    return text.empty() || FIIsBlank(text.front()) || text.front() == '\n' || text.front() == '\r';
}

// The interpreter that a text behind a slash names, or otherInterpreter.
FIID FIInterpreterCalled(std::string_view text) {
    if (FITake(text, "env ")) FITake(text, "-S ");
    const auto* const found =
        std::ranges::find_if(interpreters, [text](const FIInterpreter& one) { return FIIsCalled(text, one); });
    return found != std::end(interpreters) ? found->fiid : otherInterpreter;
}

FIID FIFindInterpreter(std::string_view text) {
    if (!FITake(text, "#!")) return 0;
    FITake(text, " ");
    if (!FITake(text, "/")) return 0;
    // The slash in front of the name has another one before it, with 1 to 80 characters between. They may be slashes and
    // tabs, so a line can name two interpreters: the one that is first in the list of formats counts.
    constexpr std::size_t longestPath = 80;
    FIID answer = otherInterpreter;
    for (std::size_t place = 0; place <= longestPath && place < text.size(); ++place) {
        const char character = text[place];
        if (character == ' ' || character == '\n') break;
        if (place > 0 && character == '/') answer = std::min(answer, FIInterpreterCalled(text.substr(place + 1)));
    }
    const bool isPath = !text.empty() && (FIIsSmall(text.front()) || text.front() == '/');
    return answer != otherInterpreter || isPath ? answer : FIID{0};
}

// ---- Beginnings behind white space

constexpr std::size_t mostWhiteSpace = 512;

// Takes a byte order mark and white space as lines have it. Returns false when there is too much.
bool FITakeIndent(std::string_view& text) {
    FITake(text, byteOrderMark);
    const auto isIndent = [](char character) { return FIIsBlank(character) || character == '\n' || character == '\r'; };
    return FITakeAll(text, isIndent) <= mostWhiteSpace;
}

bool FIIsLatex(FILook& look) {
    std::string_view text = FIStartOf(look);
    if (!FITakeIndent(text)) return false;
    if (text.starts_with("\\documentclass") || text.starts_with("\\documentstyle")) return true;
    constexpr std::uint32_t lastPlace = 4096;
    return (text.starts_with('%') || text.starts_with('\\')) && (FIHeadHolds(look, 0, lastPlace, "\n\\documentclass") ||
                                                                 FIHeadHolds(look, 0, lastPlace, "\n\\documentstyle"));
}

bool FIIsSvg(FILook& look) {
    std::string_view text = FIStartOf(look);
    if (!FITakeIndent(text)) return false;
    constexpr std::uint32_t lastPlace = 2048;
    return text.starts_with("<svg") || (text.starts_with("<!--") && FIHeadHolds(look, 0, lastPlace, "<svg "));
}

bool FIIsDesktopEntry(std::string_view text) { return FITakeIndent(text) && text.starts_with("[Desktop Entry]"); }

// ---- Others

bool FIIsDiff(std::string_view text) {
    if (text.starts_with("diff --git ")) return true;
    const auto isInLine = [](char character) { return character != '\n'; };
    const auto isNoSpace = [](char character) { return !FIIsSpace(character); };
    const bool isIndex = FITake(text, "Index: ");
    if (!isIndex && !FITake(text, "--- ")) return false;
    if (!FITakeOne(text, isNoSpace)) return false;
    FITakeAll(text, isInLine);
    return text.starts_with(isIndex ? "\n====================" : "\n+++ ");
}

bool FIIsBatch(std::string_view text) {
    if (FITake(text, "@")) {
        FITakeAll(text, FIIsBlank);
        return FITakeAnyCase(text, "echo off") && (text.empty() || FIIsSpace(text.front()) || text.front() == '&');
    }
    if (!FITakeAnyCase(text, "echo off")) return false;
    FITakeAll(text, FIIsBlank);
    return text.empty() || text.starts_with('\n') || text.starts_with("\r\n");
}

// A name in quotation marks, or a word; both have up to 80 characters.
bool FITakeGraphName(std::string_view& text) {
    constexpr std::size_t longestName = 80;
    if (!FITake(text, "\"")) return FITakeAll(text, FIIsWordCharacter) <= longestName;
    return FITakeAll(text, [](char character) { return character != '"'; }) <= longestName && FITake(text, "\"");
}

bool FIIsGraphviz(std::string_view text) {
    FITakeAll(text, FIIsSpace);
    if (FITake(text, "strict") && FITakeAll(text, FIIsSpace) == 0) return false;
    FITake(text, "di");
    if (!FITake(text, "graph") || FITakeAll(text, FIIsSpace) == 0 || !FITakeGraphName(text)) return false;
    FITakeAll(text, FIIsSpace);
    return text.starts_with('{');
}

constexpr FIID FIAnswer(bool isSuch, FIID fiid) { return isSuch ? fiid : FIID{0}; }

}  // namespace

FIID FITellFloatMap(FILook& look) { return FIAnswer(FIIsFloatMap(FIStartOf(look)), 20042); }
FIID FITellPemMessage(FILook& look) { return FIAnswer(FIIsPemMessage(FIStartOf(look)), 20270); }
FIID FITellPemPrivateKey(FILook& look) { return FIAnswer(FIIsPemPrivateKey(FIStartOf(look)), 20276); }
FIID FITellOtherPem(FILook& look) { return FIAnswer(FIIsOtherPem(FIStartOf(look)), 20277); }
FIID FITellSubRip(FILook& look) { return FIAnswer(FIIsSubRip(FIStartOf(look)), 20279); }
FIID FITellInterpreter(FILook& look) { return FIFindInterpreter(FIStartOf(look)); }
FIID FITellLatex(FILook& look) { return FIAnswer(FIIsLatex(look), 20291); }
FIID FITellDiff(FILook& look) { return FIAnswer(FIIsDiff(FIStartOf(look)), 20293); }
FIID FITellSvg(FILook& look) { return FIAnswer(FIIsSvg(look), 20300); }
FIID FITellBatch(FILook& look) { return FIAnswer(FIIsBatch(FIStartOf(look)), 20302); }
FIID FITellDesktopEntry(FILook& look) { return FIAnswer(FIIsDesktopEntry(FIStartOf(look)), 20303); }
FIID FITellGraphviz(FILook& look) { return FIAnswer(FIIsGraphviz(FIStartOf(look)), 20306); }
