// data_versions.cpp - versions of data sets, archives, compiled code, fonts and messages.
#include "further/data_versions.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "further/version_reading.h"

namespace {

// The magic numbers of the releases, in their order. Those from 3.7 on have no identifiers of their own.
constexpr FINumberedVersion pythonVersions[] = {
    {50823, {"2.0", "fmt/1106"}}, {60202, {"2.1", "fmt/1107"}}, {60717, {"2.2", "fmt/1108"}},
    {62011, {"2.3", "fmt/1109"}}, {62061, {"2.4", "fmt/1110"}}, {62131, {"2.5", "fmt/1111"}},
    {62161, {"2.6", "fmt/1112"}}, {62211, {"2.7", "fmt/939"}},  {3131, {"3.0", "fmt/1113"}},
    {3151, {"3.1", "fmt/1114"}},  {3180, {"3.2", "fmt/1115"}},  {3230, {"3.3", "fmt/1116"}},
    {3310, {"3.4", "fmt/940"}},   {3350, {"3.5", "fmt/1117"}},  {3379, {"3.6", "fmt/1118"}},
};

// SAS. A byte tells the system that wrote the file, '1' Unix and '2' Windows, and a text near 216 the release: 9.0401M3
// is release 9.4. Releases without identifiers have that of their system.
struct FISasVersions {
    std::span<const FINamedVersion> releases;
    FIVersion generic;
};

constexpr FINamedVersion sasDataUnix[] = {
    {"8.02", {"8.2", "fmt/1018"}},
    {"9.01", {"9.1", "fmt/608"}},
    {"9.02", {"9.2", "fmt/1020"}},
    {"9.03", {"9.3", "fmt/1022"}},
};
constexpr FINamedVersion sasDataWindows[] = {
    {"8.02", {"8.2", "fmt/1017"}},
    {"9.01", {"9.1", "fmt/607"}},
    {"9.02", {"9.2", "fmt/1019"}},
    {"9.03", {"9.3", "fmt/1021"}},
};
constexpr FINamedVersion sasCatalogueUnix[] = {
    {"9.01", {"9.1", "fmt/606"}},
    {"9.02", {"9.2", "fmt/1026"}},
    {"9.03", {"9.3", "fmt/1028"}},
};
constexpr FINamedVersion sasCatalogueWindows[] = {
    {"9.01", {"9.1", "fmt/605"}},
    {"9.02", {"9.2", "fmt/1025"}},
    {"9.03", {"9.3", "fmt/1027"}},
};

// The first release of the bytes from 200 to 231; empty when there is none.
std::string_view FISasRelease(const FILook& look) {
    constexpr std::size_t searchOffset = 200;
    constexpr std::size_t searchBytes = 32;
    constexpr std::size_t releaseSize = 4;
    const std::string_view bytes = FIStartText(look, searchOffset, searchBytes);
    for (std::size_t place = 0; place + releaseSize <= bytes.size(); ++place) {
        const std::string_view release = bytes.substr(place, releaseSize);
        const bool fits = (release[0] == '8' || release[0] == '9') && release.substr(1, 2) == ".0";
        if (fits && FIIsDigit(release[3])) return release;
    }
    return {};
}

bool FITakeSasVersion(const FILook& look, const FISasVersions& ofUnix, const FISasVersions& ofWindows,
                      FIVersion& version) {
    constexpr std::size_t systemField = 39;
    const std::string_view system = FIStartText(look, systemField, 1);
    if (system != "1" && system != "2") return false;
    const FISasVersions& versions = system == "1" ? ofUnix : ofWindows;
    if (!FITakeVersion(versions.releases, FISasRelease(look), version)) version = versions.generic;
    return true;
}

constexpr FIVersion stataVersions[] = {{"117", "fmt/1036"}, {"118", "fmt/1037"}};

constexpr FINamedVersion programDatabaseVersions[] = {
    {"Microsoft C/C++ program database 2.00", {"2.00", "fmt/1078"}},
    {"Microsoft C/C++ MSF 7.00", {"7.00", "fmt/1079"}},
};

// The version that is needed to unpack the first file: 20 and 29, as decimal numbers.
constexpr FINumberedVersion rarVersions[] = {{20, {"2.0", "x-fmt/264"}}, {29, {"2.9", "fmt/411"}}};

constexpr FINumberedVersion rpmVersions[] = {{1, {"1", "fmt/793"}}, {2, {"2", "fmt/794"}}};

// Messages and the list of their folders: no versions, but identifiers of their own.
constexpr FINumberedVersion outlookExpressKinds[] = {{0xC5, {"", "fmt/838"}}, {0xC6, {"", "fmt/839"}}};

constexpr FINumberedVersion embeddedFontVersions[] = {
    {0x00010000, {"1.0", "fmt/1382"}},
    {0x00020001, {"2.1", "fmt/1383"}},
    {0x00020002, {"2.2", "fmt/1384"}},
};

constexpr FINamedVersion arcVersions[] = {{"1 0 ", {"1.0", "x-fmt/219"}}, {"1 1 ", {"1.1", "fmt/410"}}};

// The beginning of the second line: the version with its blank, and what follows. Empty when there are fewer bytes.
std::string_view FIArcVersionField(std::string_view text) {
    constexpr std::size_t fieldSize = 5;
    const std::size_t lineEnd = text.find('\n');
    if (lineEnd == std::string_view::npos || text.size() - lineEnd - 1 < fieldSize) return {};
    return text.substr(lineEnd + 1, fieldSize);
}

}  // namespace

bool FIReadPythonVersion(FILook& look, FIVersion& version) {
    return FITakeNumberLE(look, 0, 2, pythonVersions, version);
}

bool FIReadSasDataVersion(FILook& look, FIVersion& version) {
    return FITakeSasVersion(look, {sasDataUnix, {"", "fmt/1016"}}, {sasDataWindows, {"", "fmt/1015"}}, version);
}

bool FIReadSasCatalogueVersion(FILook& look, FIVersion& version) {
    return FITakeSasVersion(look, {sasCatalogueUnix, {"", "fmt/1024"}}, {sasCatalogueWindows, {"", "fmt/1023"}},
                            version);
}

bool FIReadStataVersion(FILook& look, FIVersion& version) { return FITakeText(look, 28, 3, stataVersions, version); }

bool FIReadProgramDatabaseVersion(FILook& look, FIVersion& version) {
    for (const FINamedVersion& known : programDatabaseVersions) {
        if (FIStartText(look, 0, known.name.size()) != known.name) continue;
        version = known.version;
        return true;
    }
    return false;
}

bool FIReadRarVersion(FILook& look, FIVersion& version) {
    constexpr std::size_t blockTypeField = 9;  // of the block behind the seven bytes of the mark
    constexpr std::string_view mainHeader = "\x73";
    constexpr std::uint32_t versionField = 44;  // the main header has 13 bytes, then comes the first file's
    return FIStartText(look, blockTypeField, 1) == mainHeader &&
           FITakeNumberLE(look, versionField, 1, rarVersions, version);
}

bool FIReadRpmVersion(FILook& look, FIVersion& version) { return FITakeNumberLE(look, 4, 1, rpmVersions, version); }

bool FIReadArcVersion(FILook& look, FIVersion& version) {
    std::string_view field = FIArcVersionField(FITextOf(FILookAtStart(look)));
    if (field.empty() && !FIStartIsWhole(look)) field = FIArcVersionField(FITextOf(FILookAtHead(look)));
    const bool more = !field.empty() && field.back() != '\n' && field.back() != '\r';
    return more && FITakeVersion(arcVersions, field.substr(0, field.size() - 1), version);
}

bool FIReadOutlookExpressVersion(FILook& look, FIVersion& version) {
    return FITakeNumberLE(look, 4, 1, outlookExpressKinds, version);
}

bool FIReadEmbeddedFontVersion(FILook& look, FIVersion& version) {
    return FITakeNumberLE(look, 8, 4, embeddedFontVersions, version);
}
