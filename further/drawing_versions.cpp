// drawing_versions.cpp - versions of AutoCAD drawings, DXF, SketchUp models and Blender files.
#include "further/drawing_versions.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "further/version_reading.h"

namespace {

constexpr FIVersion drawingVersions[] = {{"AC1012", "fmt/33"}, {"AC1013", "fmt/33"}, {"AC1014", "fmt/34"}};

// None of them begins another.
constexpr FIVersion earlyDrawingVersions[] = {
    {"MC0.0", "fmt/21"},  {"AC1.2", "fmt/22"},  {"AC1.3", "fmt/23"},  {"AC1.40", "fmt/24"},
    {"AC1.50", "fmt/25"}, {"AC2.10", "fmt/26"}, {"AC2.21", "fmt/27"}, {"AC2.22", "fmt/27"},
};

constexpr FIVersion dxfWithoutVersion = {"", "fmt/63"};
constexpr FIVersion dxfVersions[] = {
    {"MC0.0", "fmt/64"},   {"AC1.2", "fmt/65"},    {"AC1.3", "fmt/66"},  {"AC1.40", "fmt/67"},  {"AC1.50", "fmt/68"},
    {"AC2.10", "fmt/69"},  {"AC1001", "fmt/70"},   {"AC2.21", "fmt/70"}, {"AC2.22", "fmt/70"},  {"AC1002", "fmt/71"},
    {"AC1003", "fmt/72"},  {"AC1004", "fmt/73"},   {"AC1006", "fmt/74"}, {"AC1009", "fmt/75"},  {"AC1012", "fmt/76"},
    {"AC1014", "fmt/77"},  {"AC1015", "fmt/78"},   {"AC1018", "fmt/79"}, {"AC1021", "fmt/433"}, {"AC1024", "fmt/435"},
    {"AC1027", "fmt/532"}, {"AC1032", "fmt/1389"},
};

constexpr FIVersion binaryDxfWithoutVersion = {"", "fmt/1394"};
constexpr FIVersion binaryDxfVersions[] = {
    {"AC1006", "fmt/80"},   {"AC1009", "fmt/81"},   {"AC1012", "fmt/82"},   {"AC1014", "fmt/83"},
    {"AC1015", "fmt/84"},   {"AC1018", "fmt/85"},   {"AC1021", "fmt/1390"}, {"AC1024", "fmt/1391"},
    {"AC1027", "fmt/1392"}, {"AC1032", "fmt/1393"},
};

constexpr std::string_view versionVariable = "$ACADVER";

// The variables stand at the file's beginning, in its first MiB even behind a long comment. They are walked through piece
// by piece, each byte once: the first one of what is looked for stands nowhere else in it, so that a try that fails has
// passed over nothing but what can't begin another.
constexpr std::uint64_t dxfSearchBytes = std::uint64_t{1} << 20;
constexpr std::size_t dxfPieceBytes = 16384;
constexpr std::uint16_t walkEnd = 0xFFFF;

struct FIByteWalk {
    FILook& look;
    std::string_view piece;  // what is left of it
    std::uint64_t next;      // where the next piece begins
    std::span<char> buffer;
};

// The first piece is the file's start.
FIByteWalk FIStartWalk(FILook& look, std::span<char> buffer) {
    const std::string_view start = FIStartText(look, 0, largestHead);
    return {look, start, start.size(), buffer};
}

// Returns false at the end of the file or of what is looked at.
bool FIFillWalk(FIByteWalk& walk) {
    if (!walk.piece.empty()) return true;
    if (walk.next >= dxfSearchBytes || FIStartIsWhole(walk.look)) return false;
    const std::uint64_t size = std::min<std::uint64_t>(walk.buffer.size(), dxfSearchBytes - walk.next);
    walk.piece = FIPieceAt(walk.look, walk.next, walk.buffer.first(static_cast<std::size_t>(size)));
    walk.next += walk.piece.size();
    return !walk.piece.empty();
}

// The byte where the walk stands, or walkEnd.
std::uint16_t FIWalkByte(FIByteWalk& walk) {
    return FIFillWalk(walk) ? static_cast<std::uint8_t>(walk.piece.front()) : walkEnd;
}

// Goes on to the next byte of a value and passes over it.
bool FIWalkBehind(FIByteWalk& walk, char byte) {
    while (FIFillWalk(walk)) {
        const std::size_t place = walk.piece.find(byte);
        walk.piece.remove_prefix(std::min(place, walk.piece.size() - 1) + 1);
        if (place != std::string_view::npos) return true;
    }
    return false;
}

bool FIPassByte(FIByteWalk& walk, char byte) {
    if (FIWalkByte(walk) != static_cast<std::uint8_t>(byte)) return false;
    walk.piece.remove_prefix(1);
    return true;
}

// Passes over a text, or over as much of it as stands there.
bool FIPassText(FIByteWalk& walk, std::string_view text) {
    return std::ranges::all_of(text, [&walk](char byte) { return FIPassByte(walk, byte); });
}

void FIPassBlanks(FIByteWalk& walk) {
    while (FIPassByte(walk, ' ') || FIPassByte(walk, '\t')) {
    }
}

// The end of a line, with the blanks in front of it and those at the beginning of the next line.
bool FIPassLineEnd(FIByteWalk& walk) {
    FIPassBlanks(walk);
    const bool carriageReturn = FIPassByte(walk, '\r');
    if (!FIPassByte(walk, '\n') && !carriageReturn) return false;
    FIPassBlanks(walk);
    return true;
}

// "AC1015", "MC0.0": two letters and three to six digits or full stops.
struct FIDxfVersionText {
    std::array<char, 8> bytes;
    std::size_t size;
};

bool FITakeDxfVersionText(FIByteWalk& walk, bool letterM, FIDxfVersionText& text) {
    constexpr std::size_t letters = 2;
    constexpr std::size_t fewestDigits = 3;
    text = {{'A', 'C'}, letters};
    if (!FIPassByte(walk, 'A')) {
        if (!letterM || !FIPassByte(walk, 'M')) return false;
        text.bytes[0] = 'M';
    }
    if (!FIPassByte(walk, 'C')) return false;
    while (text.size < text.bytes.size()) {
        const std::uint16_t byte = FIWalkByte(walk);
        if (byte != '.' && (byte < '0' || byte > '9')) break;
        text.bytes[text.size++] = static_cast<char>(byte);
        walk.piece.remove_prefix(1);
    }
    return text.size >= letters + fewestDigits;
}

// Behind a "$": the rest of the variable's name, the group code 1 for a text, and the text, each on a line of its own.
bool FITakeDxfVariable(FIByteWalk& walk, FIDxfVersionText& text) {
    return FIPassText(walk, versionVariable.substr(1)) && FIPassLineEnd(walk) && FIPassByte(walk, '1') &&
           FIPassLineEnd(walk) && FITakeDxfVersionText(walk, true, text);
}

// Behind the group code 9 for a variable's name: the name and a zero byte, the group code 1, the text and a zero byte.
// Group codes have one byte, and two from release 13 on.
bool FITakeBinaryDxfVariable(FIByteWalk& walk, FIDxfVersionText& text) {
    FIPassByte(walk, '\0');
    if (!FIPassText(walk, versionVariable) || !FIPassByte(walk, '\0') || !FIPassByte(walk, '\x01')) return false;
    FIPassByte(walk, '\0');
    return FITakeDxfVersionText(walk, false, text) && FIPassByte(walk, '\0');
}

// SketchUp: behind a head of 32 bytes a text in UTF-16 with its mark and its length, the version in braces: "{8.0.1}".
constexpr FINumberedVersion sketchUpVersions[] = {
    {1, {"1", "fmt/1259"}},   {2, {"2", "fmt/1260"}},   {3, {"3", "fmt/1261"}},   {4, {"4", "fmt/1262"}},
    {5, {"5", "fmt/1263"}},   {6, {"6", "fmt/1264"}},   {7, {"7", "fmt/1265"}},   {8, {"8", "fmt/1266"}},
    {13, {"13", "fmt/1267"}}, {14, {"14", "fmt/1268"}}, {15, {"15", "fmt/1269"}}, {16, {"16", "fmt/1270"}},
    {17, {"17", "fmt/1271"}}, {18, {"18", "fmt/1272"}}, {19, {"19", "fmt/1273"}},
};

// What tells the versions that are registered is the size of the pointers: four bytes and eight.
constexpr FINumberedVersion blenderVersions[] = {{'_', {"", "fmt/902"}}, {'-', {"", "fmt/903"}}};

}  // namespace

bool FIReadDrawingVersion(FILook& look, FIVersion& version) { return FITakeText(look, 0, 6, drawingVersions, version); }

bool FIReadEarlyDrawingVersion(FILook& look, FIVersion& version) {
    constexpr std::uint32_t shortText = 5;
    constexpr std::uint32_t longText = 6;
    return FITakeText(look, 0, longText, earlyDrawingVersions, version) ||
           FITakeText(look, 0, shortText, earlyDrawingVersions, version);
}

bool FIReadDxfVersion(FILook& look, FIVersion& version) {
    std::array<char, dxfPieceBytes> buffer;
    FIByteWalk walk = FIStartWalk(look, buffer);
    while (FIWalkBehind(walk, versionVariable.front())) {
        FIDxfVersionText text;
        if (!FITakeDxfVariable(walk, text)) continue;
        return FITakeVersion(dxfVersions, std::string_view(text.bytes.data(), text.size), version);
    }
    version = dxfWithoutVersion;
    return true;
}

bool FIReadBinaryDxfVersion(FILook& look, FIVersion& version) {
    constexpr char variableCode = '\x09';
    std::array<char, dxfPieceBytes> buffer;
    FIByteWalk walk = FIStartWalk(look, buffer);
    while (FIWalkBehind(walk, variableCode)) {
        FIDxfVersionText text;
        if (!FITakeBinaryDxfVariable(walk, text)) continue;
        return FITakeVersion(binaryDxfVersions, std::string_view(text.bytes.data(), text.size), version);
    }
    version = binaryDxfWithoutVersion;
    return true;
}

bool FIReadSketchUpVersion(FILook& look, FIVersion& version) {
    constexpr std::size_t markField = 32;
    constexpr std::size_t braceField = 36;
    constexpr std::size_t numberField = 38;
    constexpr std::uint32_t farBehindAll = 1000;
    if (FIStartText(look, markField, 3) != "\xFF\xFE\xFF") return false;
    if (FIStartText(look, braceField, 2) != std::string_view("{\0", 2)) return false;
    std::uint32_t number = 0;
    for (std::size_t place = numberField; number < farBehindAll; place += 2) {
        const std::string_view unit = FIStartText(look, place, 2);
        if (unit.size() < 2 || !FIIsDigit(unit[0]) || unit[1] != '\0') break;
        number = number * 10 + static_cast<std::uint32_t>(unit[0] - '0');
    }
    return FITakeVersion(sketchUpVersions, number, version);
}

bool FIReadBlenderVersion(FILook& look, FIVersion& version) {
    return FITakeNumberLE(look, 7, 1, blenderVersions, version);
}
