// look_numbers.h - numbers and places in the bytes that routines of the second table look at. None checks its offset.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "further/look.h"
#include "reader/big_endian.h"
#include "reader/little_endian.h"

using FIBytes = std::span<const std::uint8_t>;

inline std::uint16_t FIWordLE(FIBytes bytes, std::size_t offset) { return FILoadWordLE(bytes.data() + offset); }
inline std::uint32_t FIDWordLE(FIBytes bytes, std::size_t offset) { return FILoadDWordLE(bytes.data() + offset); }
inline std::uint64_t FIQWordLE(FIBytes bytes, std::size_t offset) { return FILoadQWordLE(bytes.data() + offset); }
inline std::uint16_t FIWordBE(FIBytes bytes, std::size_t offset) { return FILoadWordBE(bytes.data() + offset); }
inline std::uint32_t FIDWordBE(FIBytes bytes, std::size_t offset) { return FILoadDWordBE(bytes.data() + offset); }

// The same bytes as characters.
inline std::string_view FITextOf(FIBytes bytes) { return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; }

// Whether a text stands at an offset; false when it would end behind the bytes.
inline bool FIStandsAt(FIBytes bytes, std::size_t offset, std::string_view text) {
    if (offset > bytes.size() || bytes.size() - offset < text.size()) return false;
    return FITextOf(bytes.subspan(offset, text.size())) == text;
}

// The file's first bytes as far as size bytes of them are wanted: from the start alone if that has them.
inline FIBytes FIBytesUpTo(FILook& look, std::size_t size) {
    return size <= look.start.size ? FILookAtStart(look) : FILookAtHead(look);
}

// Whether a text stands distance bytes before the end of the file.
bool FIEndsWith(FILook& look, std::uint64_t distance, std::string_view text);
