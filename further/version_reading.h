// version_reading.h - what the rules that read versions have in common: lists of versions, and looks at bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "further/look.h"
#include "further/look_numbers.h"
#include "further/versions.h"
#include "reader/ascii_digit.h"

// A version that stands in the file as a number.
struct FINumberedVersion {
    std::uint32_t number;
    FIVersion version;
};

// A version that stands in the file as a text other than its own.
struct FINamedVersion {
    std::string_view name;
    FIVersion version;
};

// Takes the version of a list that was read. Returns false when the list hasn't got it.
bool FITakeVersion(std::span<const FIVersion> list, std::string_view text, FIVersion& version);
bool FITakeVersion(std::span<const FINamedVersion> list, std::string_view name, FIVersion& version);
bool FITakeVersion(std::span<const FINumberedVersion> list, std::uint32_t number, FIVersion& version);

// The same for up to 4 bytes of the file's start that are a number, and for bytes that are a text. Returns false when
// they are not all there, too.
bool FITakeNumberLE(const FILook& look, std::uint32_t offset, std::uint32_t size,
                    std::span<const FINumberedVersion> list, FIVersion& version);
bool FITakeNumberBE(const FILook& look, std::uint32_t offset, std::uint32_t size,
                    std::span<const FINumberedVersion> list, FIVersion& version);
bool FITakeText(const FILook& look, std::uint32_t offset, std::uint32_t size, std::span<const FIVersion> list,
                FIVersion& version);

// Up to 4 bytes as a number, the least or the most significant one first.
constexpr std::uint32_t FINumberLE(std::string_view bytes) {
    std::uint32_t number = 0;
    for (std::size_t index = bytes.size(); index > 0; --index) {
        number = number << 8 | static_cast<std::uint8_t>(bytes[index - 1]);
    }
    return number;
}

constexpr std::uint32_t FINumberBE(std::string_view bytes) {
    std::uint32_t number = 0;
    for (const char byte : bytes) number = number << 8 | static_cast<std::uint8_t>(byte);
    return number;
}

// The bytes of the file's start from an offset on, as many of size as there are.
std::string_view FIStartText(const FILook& look, std::size_t offset, std::size_t size);

// Whether the file is no longer than its start.
inline bool FIStartIsWhole(const FILook& look) { return look.size <= look.start.size; }

// The bytes from any offset on, as many as fill the buffer or there are; in the buffer only if they have to be read.
std::string_view FIPieceAt(FILook& look, std::uint64_t offset, std::span<char> buffer);
