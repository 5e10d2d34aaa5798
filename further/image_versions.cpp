// image_versions.cpp - versions of GIF, PCX, JPEG, Photoshop images and metafiles.
#include "further/image_versions.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

#include "further/version_reading.h"

namespace {

constexpr FIVersion gifVersions[] = {{"87a", "fmt/3"}, {"89a", "fmt/4"}};

constexpr FINumberedVersion pcxVersions[] = {
    {0, {"0", "fmt/86"}}, {2, {"2", "fmt/87"}}, {3, {"3", "fmt/88"}}, {4, {"4", "fmt/89"}}, {5, {"5", "fmt/90"}},
};

constexpr FINumberedVersion photoshopVersions[] = {{1, {"1", "x-fmt/92"}}, {2, {"2", "fmt/996"}}};

// JPEG. What a stream is tells its first segment, behind the two bytes of the start of image:
//
//   Offset  Size  Field
//        2     2  marker: FF E0 (JFIF), FF E1 (Exif), FF E8 (SPIFF)
//        4     2  the segment's length
//        6     -  its name, with a zero byte
//       11     2  JFIF: version and revision
//       12     -  Exif: a TIFF structure
constexpr std::size_t markerField = 2;
constexpr std::size_t nameField = 6;
constexpr std::size_t jfifVersionField = 11;
constexpr std::size_t tiffField = 12;
constexpr std::string_view jfifName("JFIF\0", 5);
constexpr std::string_view spiffName("SPIFF\0", 6);
constexpr std::string_view exifName("Exif\0\0", 6);

constexpr FIVersion spiff = {"SPIFF", "fmt/112"};
constexpr FIVersion rawJpeg = {"", "fmt/41"};
constexpr FINumberedVersion jfifVersions[] = {
    {0x0100, {"JFIF 1.00", "fmt/42"}},
    {0x0101, {"JFIF 1.01", "fmt/43"}},
    {0x0102, {"JFIF 1.02", "fmt/44"}},
};
constexpr FINamedVersion exifVersions[] = {
    {"0200", {"Exif 2.0", "x-fmt/398"}}, {"0210", {"Exif 2.1", "x-fmt/390"}}, {"0220", {"Exif 2.2", "x-fmt/391"}},
    {"0221", {"Exif 2.21", "fmt/645"}},  {"0230", {"Exif 2.3", "fmt/1507"}},  {"0231", {"Exif 2.3", "fmt/1507"}},
    {"0232", {"Exif 2.3", "fmt/1507"}},  {"0233", {"Exif 2.3", "fmt/1507"}},  {"0234", {"Exif 2.3", "fmt/1507"}},
    {"0235", {"Exif 2.3", "fmt/1507"}},  {"0236", {"Exif 2.3", "fmt/1507"}},  {"0237", {"Exif 2.3", "fmt/1507"}},
    {"0238", {"Exif 2.3", "fmt/1507"}},  {"0239", {"Exif 2.3", "fmt/1507"}},
};

// The one row that answers for a stream behind a MacBinary header.
constexpr std::uint16_t rowBehindMacBinary = 167;
constexpr std::size_t macBinaryBytes = 128;

// The TIFF structure is followed inside the stream's first 65,536 bytes.
constexpr std::size_t exifBytes = 65536;

struct FIExif {
    FILook& look;
    std::size_t stream;  // where the stream begins in the file
    bool bigEndian;
};

// Reads bytes at an offset in the TIFF structure. What lies in the file's head is taken from there: a directory is up to
// 5,460 entries of 12 bytes.
bool FIReadExif(const FIExif& exif, std::uint32_t offset, std::span<char> bytes) {
    if (offset > exifBytes || tiffField + offset + bytes.size() > exifBytes) return false;
    const std::size_t place = exif.stream + tiffField + offset;
    const std::size_t end = place + bytes.size();
    std::span<const std::uint8_t> known = FILookAtStart(exif.look);
    if (end > known.size()) known = FILookAtHead(exif.look);
    if (end <= known.size()) {
        std::memcpy(bytes.data(), known.data() + place, bytes.size());
        return true;
    }
    return known.size() == lookHeadBytes &&
           FILookAt(exif.look, place, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

std::uint32_t FIExifNumber(const FIExif& exif, std::string_view bytes) {
    return exif.bigEndian ? FINumberBE(bytes) : FINumberLE(bytes);
}

constexpr std::size_t exifValueSize = 4;
using FIExifValue = std::array<char, exifValueSize>;

// The value field of a directory's first entry with a tag. A directory is the number of its entries in two bytes and the
// entries: tag in two, type in two, count in four and the value, or where it is, in four.
bool FIFindExifTag(const FIExif& exif, std::uint32_t directory, std::uint32_t tag, FIExifValue& value) {
    constexpr std::uint32_t countSize = 2;
    constexpr std::uint32_t entrySize = 12;
    constexpr std::size_t valueField = 8;
    std::array<char, countSize> countBytes;
    if (!FIReadExif(exif, directory, countBytes)) return false;
    const std::uint32_t count = FIExifNumber(exif, {countBytes.data(), countSize});
    for (std::uint32_t index = 0; index < count; ++index) {
        std::array<char, entrySize> entry;
        if (!FIReadExif(exif, directory + countSize + index * entrySize, entry)) return false;
        if (FIExifNumber(exif, {entry.data(), 2}) != tag) continue;
        std::memcpy(value.data(), entry.data() + valueField, exifValueSize);
        return true;
    }
    return false;
}

bool FIReadExifVersion(FILook& look, std::size_t stream, FIVersion& version) {
    constexpr std::uint32_t firstDirectoryField = 4;
    constexpr std::uint32_t exifDirectoryTag = 0x8769;
    constexpr std::uint32_t exifVersionTag = 0x9000;
    const std::string_view order = FIStartText(look, stream + tiffField, 2);
    if (order != "II" && order != "MM") return false;
    const FIExif exif = {look, stream, order == "MM"};
    FIExifValue value;
    const auto number = [&exif, &value] { return FIExifNumber(exif, {value.data(), value.size()}); };
    return FIReadExif(exif, firstDirectoryField, value) && FIFindExifTag(exif, number(), exifDirectoryTag, value) &&
           FIFindExifTag(exif, number(), exifVersionTag, value) &&
           FITakeVersion(exifVersions, std::string_view(value.data(), value.size()), version);
}

// Enhanced metafiles. The header has grown twice; what tells the version is how much of it there is, before the
// description or the pixel format that may follow it in the same record:
//
//   Offset  Size  Field
//        4     4  the record's size
//       60     4  length of the description in characters of two bytes
//       64     4  where it is; 0 when there is none
//       88     4  size of the pixel format, in headers of 100 bytes and more
//       92     4  where it is; 0 when there is none
constexpr FIVersion emf1 = {"1.0", "x-fmt/153"};
constexpr FIVersion emf2 = {"2.0", "fmt/344"};
constexpr FIVersion emf3 = {"3.0", "fmt/345"};

// A number of the header; what the file hasn't got is 0.
std::uint64_t FIEmfNumber(const FILook& look, std::size_t offset) {
    const std::string_view bytes = FIStartText(look, offset, sizeof(std::uint32_t));
    return bytes.size() == sizeof(std::uint32_t) ? FINumberLE(bytes) : 0;
}

// Binary computer graphics metafiles: elements of a header of two bytes, which holds the length in its low five bits or,
// where these are 31, of four bytes with the length in the low 15 bits of the second two; then the parameters, to an even
// length. The first element is BEGIN METAFILE, the second METAFILE VERSION, of class 1, number 1 and length 2.
constexpr FINumberedVersion cgmVersions[] = {
    {1, {"1", "fmt/303"}}, {2, {"2", "fmt/304"}}, {3, {"3", "fmt/305"}}, {4, {"4", "fmt/306"}}};
constexpr std::string_view cgmVersionHeader = "\x10\x22";

// Where the second element begins; nowhere, at 0, when the header isn't there.
std::size_t FISecondCgmElement(const FILook& look) {
    constexpr std::uint32_t lengthMask = 0x1F;
    constexpr std::uint32_t longForm = 31;
    constexpr std::uint32_t longLengthMask = 0x7FFF;
    constexpr std::size_t headerSize = 2;
    const std::string_view header = FIStartText(look, 0, headerSize);
    const std::string_view more = FIStartText(look, headerSize, headerSize);
    if (header.size() < headerSize) return 0;
    const std::uint32_t length = FINumberBE(header) & lengthMask;
    if (length != longForm) return headerSize + length + length % 2;
    if (more.size() < headerSize) return 0;
    const std::uint32_t longLength = FINumberBE(more) & longLengthMask;
    return 2 * headerSize + longLength + longLength % 2;
}

}  // namespace

bool FIReadGifVersion(FILook& look, FIVersion& version) { return FITakeText(look, 3, 3, gifVersions, version); }

bool FIReadPcxVersion(FILook& look, FIVersion& version) { return FITakeNumberLE(look, 1, 1, pcxVersions, version); }

bool FIReadPhotoshopVersion(FILook& look, FIVersion& version) {
    return FITakeNumberBE(look, 4, 2, photoshopVersions, version);
}

bool FIReadJpegVersion(FILook& look, FIVersion& version) {
    const std::size_t stream = look.row == rowBehindMacBinary ? macBinaryBytes : 0;
    const std::string_view marker = FIStartText(look, stream + markerField, 2);
    const std::string_view name = FIStartText(look, stream + nameField, spiffName.size());
    if (marker == "\xFF\xE0" && name.starts_with(jfifName)) {
        return FITakeNumberBE(look, static_cast<std::uint32_t>(stream + jfifVersionField), 2, jfifVersions, version);
    }
    if (marker == "\xFF\xE1" && name == exifName) return FIReadExifVersion(look, stream, version);
    version = marker == "\xFF\xE8" && name == spiffName ? spiff : rawJpeg;
    return true;
}

bool FIReadEnhancedMetafileVersion(FILook& look, FIVersion& version) {
    constexpr std::uint64_t smallestHeader = 88;
    constexpr std::uint64_t headerWithPixelFormat = 100;
    constexpr std::uint64_t headerWithMicrometers = 108;
    const std::uint64_t recordSize = FIEmfNumber(look, 4);
    const std::uint64_t description = FIEmfNumber(look, 64);
    const std::uint64_t pixelFormat = FIEmfNumber(look, 92);
    std::uint64_t size = recordSize;
    if (description >= smallestHeader && description + 2 * FIEmfNumber(look, 60) <= recordSize) size = description;
    if (size >= headerWithPixelFormat && pixelFormat >= headerWithPixelFormat &&
        pixelFormat + FIEmfNumber(look, 88) <= recordSize && pixelFormat < size) {
        size = pixelFormat;
    }
    version = size >= headerWithMicrometers ? emf3 : size >= headerWithPixelFormat ? emf2 : emf1;
    return true;
}

bool FIReadCgmVersion(FILook& look, FIVersion& version) {
    constexpr std::size_t elementSize = 4;
    constexpr std::size_t searchBytes = 1024;
    std::array<char, elementSize> buffer;
    std::string_view element = FIPieceAt(look, FISecondCgmElement(look), buffer);
    if (!element.starts_with(cgmVersionHeader)) {
        // Something stands in between: the first place that looks like the element, with a version below 256.
        constexpr std::string_view likeness("\x10\x22\x00", 3);
        const std::size_t place = FIStartText(look, 0, searchBytes).find(likeness);
        if (place == std::string_view::npos) return false;
        element = FIStartText(look, place, elementSize);
    }
    return element.size() == elementSize && FITakeVersion(cgmVersions, FINumberBE(element.substr(2)), version);
}
