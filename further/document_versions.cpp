// document_versions.cpp - versions of PDF, RTF, PostScript and InDesign.
#include "further/document_versions.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "further/version_reading.h"

namespace {

// The version of the header. A catalogue further inside may tell a later one, and metadata the kinds for archiving,
// printing and engineering; neither is read.
constexpr FIVersion pdfVersions[] = {
    {"1.0", "fmt/14"}, {"1.1", "fmt/15"}, {"1.2", "fmt/16"},  {"1.3", "fmt/17"},   {"1.4", "fmt/18"},
    {"1.5", "fmt/19"}, {"1.6", "fmt/20"}, {"1.7", "fmt/276"}, {"2.0", "fmt/1129"},
};

// RTF has stayed at 1: what tells the later revisions is that they name their code page.
constexpr FIVersion rtf0 = {"0", "fmt/969"};
constexpr FIVersion rtf1WithoutCodePage = {"1", "fmt/45"};
constexpr FIVersion rtf1WithCodePage = {"1", "fmt/50 fmt/52 fmt/53 fmt/355"};

// The numbers of the comments "%!PS-Adobe-3.0", which tell the structuring conventions that a document keeps to, and
// "%!PS-Adobe-3.0 EPSF-3.0" of an encapsulated one.
constexpr FIVersion postScriptVersions[] = {
    {"1.0", "x-fmt/91"}, {"2.0", "x-fmt/406"}, {"2.1", "x-fmt/407"}, {"3.0", "x-fmt/408"}, {"3.1", "fmt/501"},
};
constexpr FINamedVersion epsVersions[] = {
    {"1.2", {"EPSF-1.2", "fmt/122"}},
    {"2.0", {"EPSF-2.0", "fmt/123"}},
    {"2.1", {"EPSF-2.1", "fmt/1884"}},
    {"3.0", {"EPSF-3.0", "fmt/124"}},
};

// The comment begins and ends its mark in the first 4,096 bytes. Lines of such comments have up to 255 characters.
constexpr std::size_t commentSearchBytes = 4096;
constexpr std::size_t commentBytes = commentSearchBytes + 256;
constexpr std::size_t versionSize = 3;  // digit, full stop, digit

// What the comment tells: the version of the encapsulated document if it is one, else that of the conventions.
struct FIPostScriptComment {
    bool encapsulated;
    std::string_view number;
};

bool FIFindPostScriptComment(std::string_view text, FIPostScriptComment& comment) {
    constexpr std::string_view mark = "%!PS-Adobe-";
    constexpr std::string_view encapsulatedMark = "EPSF-";
    const std::size_t place = text.substr(0, commentSearchBytes).find(mark);
    if (place == std::string_view::npos) return false;
    text.remove_prefix(place + mark.size());
    comment = {false, text.substr(0, versionSize)};
    text.remove_prefix(comment.number.size());
    const std::size_t blanks = std::min(text.find_first_not_of(' '), text.size());
    text.remove_prefix(blanks);
    if (blanks == 0 || !text.starts_with(encapsulatedMark)) return true;
    comment = {true, text.substr(encapsulatedMark.size(), versionSize)};
    return true;
}

//   Offset  Size  Field
//       24     1  byte order: 01 the least significant byte first, 02 the most significant
//       29     4  major version
//       33     4  minor version
constexpr FINumberedVersion inDesignVersions[] = {
    {1, {"1.5", "fmt/1629"}},      {2, {"2.0", "fmt/1630"}},      {3, {"CS", "fmt/196"}},
    {4, {"CS2", "fmt/548"}},       {5, {"CS3", "fmt/549"}},       {6, {"CS4", "fmt/550"}},
    {7, {"CS5", "fmt/551"}},       {8, {"CS6", "fmt/552"}},       {9, {"CC", "fmt/1632"}},
    {10, {"CC 2014", "fmt/1633"}}, {11, {"CC 2015", "fmt/1634"}}, {12, {"CC 2017", "fmt/1635"}},
    {13, {"CC 2018", "fmt/1636"}}, {14, {"CC 2019", "fmt/1637"}}, {15, {"CC 2020", "fmt/1638"}},
    {16, {"CC 2021", "fmt/1639"}}, {17, {"CC 2022", "fmt/1640"}}, {18, {"CC 2023", "fmt/1941"}},
    {19, {"CC 2024", "fmt/1942"}},
};
constexpr FIVersion inDesign75 = {"CS5.5", "fmt/1631"};

constexpr FINamedVersion inDesignLibraryVersions[] = {
    {"LIBRARY2", {"2", "fmt/1642"}},
    {"LIBRARY4", {"4", "fmt/1192"}},
};

}  // namespace

bool FIReadPdfVersion(FILook& look, FIVersion& version) {
    constexpr std::string_view mark = "%PDF-";
    constexpr std::size_t searchBytes = 1024;
    const std::size_t place = FIStartText(look, 0, searchBytes).find(mark);
    if (place == std::string_view::npos) return false;
    return FITakeVersion(pdfVersions, FIStartText(look, place + mark.size(), versionSize), version);
}

bool FIReadRtfVersion(FILook& look, FIVersion& version) {
    constexpr std::string_view mark = "{\\rtf";
    constexpr std::size_t codePageBytes = 64;
    std::string_view text = FIStartText(look, 0, largestHead);
    if (!text.starts_with(mark)) return false;
    text.remove_prefix(mark.size());
    const std::size_t digits = static_cast<std::size_t>(std::ranges::find_if_not(text, FIIsDigit) - text.begin());
    std::string_view number = digits > 0 ? text.substr(0, digits) : "1";
    while (number.starts_with('0')) number.remove_prefix(1);
    if (number.empty()) {
        version = rtf0;
        return true;
    }
    if (number != "1") return false;
    const bool namesCodePage = FIStartText(look, 0, codePageBytes).find("\\ansicpg") != std::string_view::npos;
    version = namesCodePage ? rtf1WithCodePage : rtf1WithoutCodePage;
    return true;
}

bool FIReadPostScriptVersion(FILook& look, FIVersion& version) {
    FIPostScriptComment comment;
    if (!FIFindPostScriptComment(FIStartText(look, 0, commentBytes), comment)) return false;
    return comment.encapsulated ? FITakeVersion(epsVersions, comment.number, version)
                                : FITakeVersion(postScriptVersions, comment.number, version);
}

bool FIReadEpsWithPreviewVersion(FILook& look, FIVersion& version) {
    constexpr std::uint32_t offsetField = 4;
    const std::string_view offset = FIStartText(look, offsetField, sizeof(std::uint32_t));
    if (offset.size() < sizeof(std::uint32_t)) return false;
    std::array<char, commentBytes> buffer;
    FIPostScriptComment comment;
    return FIFindPostScriptComment(FIPieceAt(look, FINumberLE(offset), buffer), comment) && comment.encapsulated &&
           FITakeVersion(epsVersions, comment.number, version);
}

bool FIReadInDesignVersion(FILook& look, FIVersion& version) {
    constexpr std::size_t orderField = 24;
    constexpr std::size_t majorField = 29;
    constexpr std::size_t minorField = 33;
    constexpr std::uint32_t majorOfCS5 = 7;
    const std::string_view order = FIStartText(look, orderField, 1);
    const std::string_view major = FIStartText(look, majorField, sizeof(std::uint32_t));
    if (major.size() < sizeof(std::uint32_t) || (order != "\x01" && order != "\x02")) return false;
    const std::uint32_t number = order == "\x01" ? FINumberLE(major) : FINumberBE(major);
    if (number == majorOfCS5 && FIStartText(look, minorField, 1) == "\x05") {
        version = inDesign75;
        return true;
    }
    return FITakeVersion(inDesignVersions, number, version);
}

bool FIReadInDesignLibraryVersion(FILook& look, FIVersion& version) {
    constexpr std::size_t kindField = 16;
    constexpr std::size_t kindSize = 8;
    return FITakeVersion(inDesignLibraryVersions, FIStartText(look, kindField, kindSize), version);
}
