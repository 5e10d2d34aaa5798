// escape_text.cpp - which characters a line of text does not show as they are.
#include "cli/escape_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace {

struct CharacterRange {
    std::uint32_t first;
    std::uint32_t last;
};

constexpr CharacterRange escapedRanges[] = {
    // clang-format off
    {0x0000, 0x001F},  // C0 controls
    {0x007F, 0x009F},  // delete and C1 controls
    {0x061C, 0x061C},  // Arabic letter mark
    {0x200E, 0x200F},  // left-to-right and right-to-left mark
    {0x2028, 0x2029},  // line and paragraph separator
    {0x202A, 0x202E},  // bidirectional embeddings and overrides, and their end
    {0x2066, 0x2069},  // bidirectional isolates, and their end
    // clang-format on
};

bool IsEscaped(std::uint32_t character) {
    return std::any_of(std::begin(escapedRanges), std::end(escapedRanges), [character](const CharacterRange& range) {
        return character >= range.first && character <= range.last;
    });
}

std::string EscapeByte(std::uint8_t byte) {
    std::array<char, 5> text = {};
    std::snprintf(text.data(), text.size(), "\\x%02X", static_cast<unsigned>(byte));
    return text.data();
}

// One character of UTF-8, or one byte that belongs to none.
struct Unit {
    std::uint32_t character;  // of a byte outside of UTF-8: its value
    std::size_t size;         // bytes
};

std::uint8_t ByteAt(std::string_view bytes, std::size_t index) { return static_cast<std::uint8_t>(bytes[index]); }

// The unit at the start of bytes, which are not empty. Forms that are longer than needed, halves of surrogate pairs and
// numbers above U+10FFFF are no UTF-8.
Unit FirstUnit(std::string_view bytes) {
    const std::uint8_t lead = ByteAt(bytes, 0);
    const Unit single = {lead, 1};
    const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC0 || lead > 0xF7 || bytes.size() < size) return single;
    std::uint32_t character = lead & (0x7FU >> size);
    for (std::size_t index = 1; index < size; ++index) {
        if ((ByteAt(bytes, index) & 0xC0) != 0x80) return single;
        character = (character << 6) | (ByteAt(bytes, index) & 0x3FU);
    }
    constexpr std::uint32_t leastOfSize[] = {0, 0, 0x80, 0x800, 0x10000};
    if (character < leastOfSize[size] || character > 0x10FFFF) return single;
    if (character >= 0xD800 && character <= 0xDFFF) return single;
    return {character, size};
}

}  // namespace

std::string EscapeForText(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        const Unit unit = FirstUnit(bytes);
        const std::string_view own = bytes.substr(0, unit.size);
        if (own == "\\") {
            text += "\\\\";
        } else if (IsEscaped(unit.character)) {
            for (const char byte : own) text += EscapeByte(static_cast<std::uint8_t>(byte));
        } else {
            text += own;
        }
        bytes.remove_prefix(unit.size);
    }
    return text;
}
