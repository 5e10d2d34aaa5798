// tables_hash.h - a hash over what the tables hold, by the compiler or at any time: FNV-1a, 32 bits.
#pragma once

#include <cstdint>
#include <span>

#include "catalogue/format_catalogue.h"
#include "further/row.h"

inline constexpr std::uint32_t emptyTablesHash = 0x811C9DC5;

constexpr std::uint32_t FIHashByte(std::uint32_t hash, std::uint8_t byte) {
    constexpr std::uint32_t prime = 0x01000193;
    return (hash ^ byte) * prime;
}

constexpr std::uint32_t FIHashBytes(std::uint32_t hash, std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) hash = FIHashByte(hash, byte);
    return hash;
}

// With the NUL at its end, so that what stands in one text is not taken for what stands in two.
constexpr std::uint32_t FIHashText(std::uint32_t hash, const char* text) {
    for (; *text != '\0'; ++text) hash = FIHashByte(hash, static_cast<std::uint8_t>(*text));
    return FIHashByte(hash, 0);
}

constexpr std::uint32_t FIHashRecords(std::uint32_t hash, std::span<const FIFormatRecord> records) {
    for (const FIFormatRecord& record : records) {
        hash = FIHashByte(hash, static_cast<std::uint8_t>(record.fiid));
        hash = FIHashByte(hash, static_cast<std::uint8_t>(record.fiid >> 8));
        hash = FIHashByte(hash, static_cast<std::uint8_t>(record.family));
        for (const char* text : {record.name, record.mime, record.puids, record.extensions}) {
            hash = FIHashText(hash, text);
        }
    }
    return hash;
}

// What rows of the further table stand over; what they look for and answer is in their bytecode.
constexpr std::uint32_t FIHashPlaces(std::uint32_t hash, std::span<const FIFurtherRow> rows) {
    for (const FIFurtherRow& row : rows) hash = FIHashByte(hash, static_cast<std::uint8_t>(row.over));
    return hash;
}
