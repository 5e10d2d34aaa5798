// archive_tests.cpp - archives, packed files and disk images that a pattern can't tell.
#include "further/archive_tests.h"

#include <algorithm>
#include <array>
#include <bit>

#include "further/look_numbers.h"
#include "further/searches.h"

namespace {

bool FIAreOctal(FIBytes bytes) {
    return std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte >= '0' && byte <= '7'; });
}

bool FIAreHexadecimal(FIBytes bytes) {
    return std::ranges::all_of(bytes, [](std::uint8_t byte) {
        return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'F') || (byte >= 'a' && byte <= 'f');
    });
}

// Whether the header's fields, from behind the six digits of the mark to headerBytes, are digits.
bool FIHeaderHasDigits(FILook& look, std::size_t headerBytes, bool (*areDigits)(FIBytes)) {
    constexpr std::size_t markBytes = 6;
    const FIBytes bytes = FILookAtStart(look);
    return bytes.size() >= headerBytes && areDigits(bytes.first(headerBytes).subspan(markBytes));
}

// A name that ends where the header says: with its one zero byte.
bool FIIsTerminatedName(FIBytes name) { return std::ranges::find(name, std::uint8_t{0}) == name.end() - 1; }

// CRC-32 as ARJ and ZIP have it: polynomial 04C11DB7, reflected.
std::uint32_t FICrc32(FIBytes bytes) {
    constexpr std::uint32_t polynomial = 0xEDB88320;
    std::uint32_t crc = ~std::uint32_t{0};
    for (const std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1U) != 0 ? polynomial : 0);
    }
    return ~crc;
}

// Whether a disk image has a text at an offset. Files that end before it are not read for that. Of others the whole head
// is read, for which the tests of text have to ask soon; but not of a storage, which is told without them.
bool FIDiskHas(FILook& look, std::uint32_t offset, std::string_view text) {
    if (look.size < offset + text.size()) return false;
    if (!FIHasStorageMark(look)) return FIStandsAt(FILookAtHead(look), offset, text);
    std::array<char, 8> bytes;
    const auto size = static_cast<std::uint32_t>(text.size());
    return FILookAt(look, offset, bytes.data(), size) && std::string_view(bytes.data(), size) == text;
}

}  // namespace

FIID FITellLzma(FILook& look) {
    constexpr std::size_t leastSize = 14;
    constexpr std::uint64_t unknownUnpackedSize = UINT64_MAX;
    constexpr std::uint64_t plausibleUnpackedSize = std::uint64_t{1} << 38;
    const FIBytes bytes = FILookAtStart(look);
    if (bytes.size() < leastSize || bytes[13] != 0) return 0;
    const std::uint32_t dictionary = FIDWordLE(bytes, 1);
    const bool plausible = std::has_single_bit(dictionary) ||
                           (dictionary % 3 == 0 && dictionary != 0 && std::has_single_bit(dictionary / 3));
    const std::uint64_t unpacked = FIQWordLE(bytes, 5);
    return plausible && (unpacked == unknownUnpackedSize || unpacked < plausibleUnpackedSize) ? FIID{20136} : FIID{0};
}

FIID FITellNewCpio(FILook& look) { return FIHeaderHasDigits(look, 110, FIAreHexadecimal) ? FIID{20139} : FIID{0}; }

FIID FITellOldCpio(FILook& look) { return FIHeaderHasDigits(look, 76, FIAreOctal) ? FIID{20140} : FIID{0}; }

FIID FITellBinaryCpio(FILook& look) {
    constexpr std::size_t leastSize = 28;
    constexpr std::size_t nameOffset = 26;
    const FIBytes bytes = FILookAtStart(look);
    if (bytes.size() < leastSize) return 0;
    const std::uint16_t nameSize = bytes[0] == 0xC7 ? FIWordLE(bytes, 20) : FIWordBE(bytes, 20);
    if (nameSize < 2 || nameSize > 1024 || bytes.size() < nameOffset + nameSize) return 0;
    return FIIsTerminatedName(bytes.subspan(nameOffset, nameSize)) ? FIID{20141} : FIID{0};
}

FIID FITellIso9660(FILook& look) { return FIDiskHas(look, 32769, "CD001") ? FIID{20146} : FIID{0}; }

FIID FITellUdf(FILook& look) {
    return FIDiskHas(look, 34817, "NSR") && FIDiskHas(look, 32769, "BEA01") ? FIID{20147} : FIID{0};
}

FIID FITellArj(FILook& look) {
    constexpr std::size_t leastSize = 40;
    constexpr std::size_t headerOffset = 4;
    const FIBytes bytes = FILookAtStart(look);
    if (bytes.size() < leastSize) return 0;
    const std::uint16_t headerSize = FIWordLE(bytes, 2);
    if (headerSize < 30 || headerSize > 2600 || bytes.size() < headerOffset + headerSize + 4U) return 0;
    const std::uint32_t checksum = FIDWordLE(bytes, headerOffset + headerSize);
    return FICrc32(bytes.subspan(headerOffset, headerSize)) == checksum ? FIID{20148} : FIID{0};
}

FIID FITellAppleDiskImage(FILook& look) {
    constexpr std::string_view trailer("koly\0\0\0\x04", 8);
    return FIEndsWith(look, 512, trailer) ? FIID{20152} : FIID{0};
}

FIID FITellVirtualPcDisk(FILook& look) { return FIEndsWith(look, 512, "conectix") ? FIID{20157} : FIID{0}; }

FIID FITellWarc(FILook& look) { return FIHeadHolds(look, 5, 4096, "WARC-Type") ? FIID{20166} : FIID{0}; }

FIID FITellTorrent(FILook& look) { return FIHeadHolds(look, 1, 65535, "4:infod") ? FIID{20168} : FIID{0}; }
