// look_numbers.h - numbers and places in the bytes that routines of the second table look at. None checks its offset.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "further/look.h"

using FIBytes = std::span<const std::uint8_t>;

inline std::uint16_t FIWordLE(FIBytes bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
}

inline std::uint16_t FIWordBE(FIBytes bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(bytes[offset] << 8 | bytes[offset + 1]);
}

inline std::uint32_t FIDWordLE(FIBytes bytes, std::size_t offset) {
    return FIWordLE(bytes, offset) | static_cast<std::uint32_t>(FIWordLE(bytes, offset + 2)) << 16;
}

inline std::uint64_t FIQWordLE(FIBytes bytes, std::size_t offset) {
    return FIDWordLE(bytes, offset) | static_cast<std::uint64_t>(FIDWordLE(bytes, offset + 4)) << 32;
}

inline std::uint32_t FIDWordBE(FIBytes bytes, std::size_t offset) {
    return static_cast<std::uint32_t>(FIWordBE(bytes, offset)) << 16 | FIWordBE(bytes, offset + 2);
}

// Whether a text stands at an offset; false when it would end behind the bytes.
inline bool FIStandsAt(FIBytes bytes, std::size_t offset, std::string_view text) {
    if (offset > bytes.size() || bytes.size() - offset < text.size()) return false;
    const std::string_view there(reinterpret_cast<const char*>(bytes.data()) + offset, text.size());
    return there == text;
}

// The file's first bytes as far as size bytes of them are wanted: from the start alone if that has them.
inline FIBytes FIBytesUpTo(FILook& look, std::size_t size) {
    return size <= look.start.size ? FILookAtStart(look) : FILookAtHead(look);
}

// Whether a text stands distance bytes before the end of the file.
bool FIEndsWith(FILook& look, std::uint64_t distance, std::string_view text);
