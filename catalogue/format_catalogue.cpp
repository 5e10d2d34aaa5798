// format_catalogue.cpp - the records of formats, checked by the compiler and found by their identifiers.
#include "catalogue/format_catalogue.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "catalogue/format_records.h"

namespace {

constexpr std::size_t formatCount = std::size(formatRecords);

// The checks return the identifier of the first record that breaks the rule, 0 when none does, so that the compiler's
// message names the record.

constexpr std::uint16_t FIFirstRecordOutOfOrder() {
    for (std::size_t i = 1; i < formatCount; ++i) {
        if (formatRecords[i - 1].fiid >= formatRecords[i].fiid) return formatRecords[i].fiid;
    }
    return 0;
}

constexpr bool FIIsPlainName(std::string_view name) {
    if (name.empty() || name.size() > longestFormatName || name.front() == ' ' || name.back() == ' ') return false;
    for (const char character : name) {
        if (character < ' ' || character > '~') return false;
    }
    return true;
}

constexpr std::uint16_t FIFirstRecordWithoutPlainName() {
    for (const FIFormatRecord& record : formatRecords) {
        if (!FIIsPlainName(record.name)) return record.fiid;
    }
    return 0;
}

// FNV-1a, 64 bits: comparing sums costs the compiler far less than comparing names.
constexpr std::uint64_t FIHashName(std::string_view name) {
    constexpr std::uint64_t offsetBasis = 0xCBF29CE484222325U;
    constexpr std::uint64_t prime = 0x100000001B3U;
    std::uint64_t hash = offsetBasis;
    for (const char character : name) {
        hash = (hash ^ static_cast<std::uint8_t>(character)) * prime;
    }
    return hash;
}

constexpr std::array<std::uint64_t, formatCount> FIHashNames() {
    std::array<std::uint64_t, formatCount> hashes{};
    for (std::size_t i = 0; i < formatCount; ++i) hashes[i] = FIHashName(formatRecords[i].name);
    return hashes;
}

constexpr std::array<std::uint64_t, formatCount> nameHashes = FIHashNames();

// Two byte orders of one version of QuarkXPress: the registry knows them as one format.
constexpr bool FIShareName(std::uint16_t bigEndian, std::uint16_t littleEndian) {
    return (bigEndian == 1620 && littleEndian == 1622) || (bigEndian == 1621 && littleEndian == 1623);
}

constexpr std::uint16_t FIFirstRecordWithUsedName() {
    const std::uint64_t* const hashes = nameHashes.data();
    for (std::size_t i = 1; i < formatCount; ++i) {
        for (std::size_t earlier = 0; earlier < i; ++earlier) {
            if (hashes[earlier] != hashes[i]) continue;
            if (!FIShareName(formatRecords[earlier].fiid, formatRecords[i].fiid)) return formatRecords[i].fiid;
        }
    }
    return 0;
}

static_assert(FIFirstRecordOutOfOrder() == 0, "the records stand in the order of their identifiers");
static_assert(FIFirstRecordWithoutPlainName() == 0, "a name is 1 to longestFormatName printable ASCII characters");
static_assert(FIFirstRecordWithUsedName() == 0, "no two formats have one name, but for byte orders");

}  // namespace

std::span<const FIFormatRecord> FIFormatRecords() { return formatRecords; }

const FIFormatRecord* FIFindFormatRecord(std::uint16_t fiid) {
    const auto* const found = std::ranges::lower_bound(formatRecords, fiid, {}, &FIFormatRecord::fiid);
    return found != std::end(formatRecords) && found->fiid == fiid ? found : nullptr;
}
