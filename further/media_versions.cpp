// media_versions.cpp - versions of Flash movies, WAVE and RealAudio sounds and MXF files.
#include "further/media_versions.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "further/version_reading.h"

namespace {

constexpr FINumberedVersion flashVersions[] = {
    {1, {"1", "fmt/104"}},   {2, {"2", "fmt/105"}},   {3, {"3", "fmt/106"}},   {4, {"4", "fmt/107"}},
    {5, {"5", "fmt/108"}},   {6, {"6", "fmt/109"}},   {7, {"7", "fmt/110"}},   {8, {"8", "fmt/505"}},
    {9, {"9", "fmt/506"}},   {10, {"10", "fmt/507"}}, {11, {"11", "fmt/757"}}, {12, {"12", "fmt/758"}},
    {13, {"13", "fmt/759"}}, {14, {"14", "fmt/760"}}, {15, {"15", "fmt/761"}}, {16, {"16", "fmt/762"}},
    {17, {"17", "fmt/763"}}, {18, {"18", "fmt/764"}}, {19, {"19", "fmt/765"}}, {20, {"20", "fmt/766"}},
    {21, {"21", "fmt/767"}}, {22, {"22", "fmt/768"}}, {23, {"23", "fmt/769"}}, {24, {"24", "fmt/770"}},
    {25, {"25", "fmt/771"}}, {26, {"26", "fmt/772"}}, {27, {"27", "fmt/773"}}, {28, {"28", "fmt/774"}},
    {29, {"29", "fmt/775"}}, {30, {"30", "fmt/776"}},
};

constexpr FINumberedVersion realAudioVersions[] = {{3, {"3", "x-fmt/278"}}, {4, {"4", "fmt/404"}}};

// WAVE. The chunk "bext" makes it a broadcast WAVE and tells its version; the chunk "fmt " begins with the format tag:
// 0001 for plain samples, 0050 for MPEG, FFFE for a format that stands further behind. Plain samples need 16 bytes of it.
constexpr std::uint32_t tagOfPlainSamples = 0x0001;
constexpr std::uint32_t tagOfMpeg = 0x0050;
constexpr std::uint32_t tagOfExtensible = 0xFFFE;
constexpr std::uint32_t plainFormatSize = 16;

constexpr FINumberedVersion broadcastPlainVersions[] = {
    {0, {"0", "fmt/703"}}, {1, {"1", "fmt/704"}}, {2, {"2", "fmt/705"}}};
constexpr FINumberedVersion broadcastMpegVersions[] = {
    {0, {"0", "fmt/706"}}, {1, {"1", "fmt/707"}}, {2, {"2", "fmt/708"}}};
constexpr FINumberedVersion broadcastExtensibleVersions[] = {
    {0, {"0", "fmt/709"}}, {1, {"1", "fmt/710"}}, {2, {"2", "fmt/711"}}};
constexpr FINumberedVersion broadcastVersions[] = {{0, {"0", "fmt/1"}}, {1, {"1", "fmt/2"}}, {2, {"2", "fmt/527"}}};
constexpr FIVersion extensibleWave = {"", "fmt/143"};
constexpr FIVersion plainWave = {"", "fmt/141"};
constexpr FIVersion waveWithLongFormat = {"", "fmt/142"};
constexpr FIVersion waveWithShortFormat = {"", "fmt/6"};

// Each chunk is looked at in one small read, or none where it lies in the file's start. Sounds have a dozen chunks or two
// in front of their samples; a file of more than this many is made to cost time, and its version is left open.
constexpr std::uint32_t mostWaveChunks = 256;

struct FIWaveChunks {
    bool hasFormat;
    std::uint32_t formatTag;
    std::uint32_t formatSize;
    bool isBroadcast;
    std::uint32_t broadcastVersion;
};

bool FIReadWaveWord(FILook& look, std::uint64_t offset, std::uint32_t& word) {
    std::array<char, 2> buffer;
    const std::string_view bytes = FIPieceAt(look, offset, buffer);
    word = FINumberLE(bytes);
    return bytes.size() == buffer.size();
}

void FINoteWaveChunk(FILook& look, std::string_view name, std::uint64_t contents, std::uint32_t size,
                     FIWaveChunks& chunks) {
    constexpr std::uint32_t smallestFormat = 2;
    constexpr std::uint32_t broadcastVersionField = 346;
    if (name == "fmt " && !chunks.hasFormat && size >= smallestFormat) {
        chunks.hasFormat = FIReadWaveWord(look, contents, chunks.formatTag);
        chunks.formatSize = size;
    } else if (name == "bext" && !chunks.isBroadcast && size >= broadcastVersionField + 2) {
        chunks.isBroadcast = FIReadWaveWord(look, contents + broadcastVersionField, chunks.broadcastVersion);
    }
}

// Walks up to the samples, or to the end of a file that has none. Returns false when there are too many chunks.
bool FIWalkWaveChunks(FILook& look, FIWaveChunks& chunks) {
    constexpr std::uint64_t firstChunk = 12;
    constexpr std::size_t headerSize = 8;
    constexpr std::size_t nameSize = 4;
    std::uint64_t offset = firstChunk;
    for (std::uint32_t count = 0; count < mostWaveChunks; ++count) {
        std::array<char, headerSize> buffer;
        const std::string_view header = FIPieceAt(look, offset, buffer);
        if (header.size() < headerSize) return true;
        const std::string_view name = header.substr(0, nameSize);
        if (name == "data") return true;
        const std::uint32_t size = FINumberLE(header.substr(nameSize));
        FINoteWaveChunk(look, name, offset + headerSize, size, chunks);
        offset += headerSize + std::uint64_t{size} + size % 2;
    }
    return false;
}

bool FITakeBroadcastVersion(const FIWaveChunks& chunks, FIVersion& version) {
    switch (chunks.formatTag) {
        case tagOfPlainSamples:
            return FITakeVersion(broadcastPlainVersions, chunks.broadcastVersion, version);
        case tagOfMpeg:
            return FITakeVersion(broadcastMpegVersions, chunks.broadcastVersion, version);
        case tagOfExtensible:
            return FITakeVersion(broadcastExtensibleVersions, chunks.broadcastVersion, version);
        default:
            return FITakeVersion(broadcastVersions, chunks.broadcastVersion, version);
    }
}

FIVersion FIPlainWaveVersion(const FIWaveChunks& chunks) {
    if (chunks.formatTag == tagOfExtensible) return extensibleWave;
    if (chunks.formatSize != plainFormatSize) return waveWithLongFormat;
    return chunks.formatTag == tagOfPlainSamples ? plainWave : waveWithShortFormat;
}

// MXF. The file begins with the key of a header partition pack, and the length of the pack in four bytes; at 84 stands
// the label of the operational pattern, of which two bytes tell the complexity of items and packages:
//
//   Offset  Size  Field
//       84     4  06 0E 2B 34, as of every label
//       92     4  0D 01 02 01: an operational pattern
//       96     1  complexity of items: 1 to 3, or 10 for OP-Atom, whatever follows
//       97     1  complexity of packages: 1 to 3, for a to c
constexpr std::string_view labelStart = "\x06\x0E\x2B\x34";
constexpr std::string_view patternLabel = "\x0D\x01\x02\x01";
constexpr std::uint32_t itemsOfAtom = 0x10;
constexpr FIVersion opAtom = {"OP-Atom", "fmt/791"};
constexpr FINumberedVersion operationalPatterns[] = {
    {0x0101, {"OP1a", "fmt/200"}}, {0x0102, {"OP1b", "fmt/783"}}, {0x0103, {"OP1c", "fmt/784"}},
    {0x0201, {"OP2a", "fmt/785"}}, {0x0202, {"OP2b", "fmt/786"}}, {0x0203, {"OP2c", "fmt/787"}},
    {0x0301, {"OP3a", "fmt/788"}}, {0x0302, {"OP3b", "fmt/789"}}, {0x0303, {"OP3c", "fmt/790"}},
};

}  // namespace

bool FIReadFlashVersion(FILook& look, FIVersion& version) { return FITakeNumberLE(look, 3, 1, flashVersions, version); }

bool FIReadRealAudioVersion(FILook& look, FIVersion& version) {
    return FITakeNumberBE(look, 4, 2, realAudioVersions, version);
}

bool FIReadWaveVersion(FILook& look, FIVersion& version) {
    FIWaveChunks chunks = {};
    if (!FIWalkWaveChunks(look, chunks) || !chunks.hasFormat) return false;
    if (chunks.isBroadcast) return FITakeBroadcastVersion(chunks, version);
    version = FIPlainWaveVersion(chunks);
    return true;
}

bool FIReadMxfVersion(FILook& look, FIVersion& version) {
    constexpr std::string_view packKey = "\x06\x0E\x2B\x34\x02\x05\x01\x01\x0D\x01\x02\x01\x01\x02";
    constexpr std::size_t labelField = 84;
    constexpr std::size_t patternField = 92;
    constexpr std::uint32_t complexityField = 96;
    if (FIStartText(look, 0, packKey.size()) != packKey) return false;
    if (FIStartText(look, labelField, labelStart.size()) != labelStart) return false;
    if (FIStartText(look, patternField, patternLabel.size()) != patternLabel) return false;
    const std::string_view items = FIStartText(look, complexityField, 1);
    if (!items.empty() && FINumberBE(items) == itemsOfAtom) {
        version = opAtom;
        return true;
    }
    return FITakeNumberBE(look, complexityField, 2, operationalPatterns, version);
}
