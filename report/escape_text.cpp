// escape_text.cpp - which characters a line of text does not show as they are.
#include "report/escape_text.h"

#include <algorithm>
#include <cstdint>

#include "report/byte_set.h"
#include "report/hex_digits.h"

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

// All but the ASCII that stays as it is: of the rest, the whole character tells.
constexpr ByteSet notAsItIs = ByteSet("\\").With(0x00, 0x1F).With(0x7F, 0xFF);

bool IsEscaped(std::uint32_t character) {
    return std::any_of(std::begin(escapedRanges), std::end(escapedRanges), [character](const CharacterRange& range) {
        return character >= range.first && character <= range.last;
    });
}

void AppendEscapedByte(std::string& out, std::uint8_t byte) {
    out += "\\x";
    AppendHexByte(out, byte, upperHexDigits);
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

void AppendEscapedText(std::string& out, std::string_view bytes) {
    while (notAsItIs.AppendUpTo(out, bytes)) {
        const Unit unit = FirstUnit(bytes);
        const std::string_view own = bytes.substr(0, unit.size);
        if (own == "\\") {
            out += "\\\\";
        } else if (IsEscaped(unit.character)) {
            for (const char byte : own) AppendEscapedByte(out, static_cast<std::uint8_t>(byte));
        } else {
            out += own;
        }
        bytes.remove_prefix(unit.size);
    }
}

std::string EscapeForText(std::string_view bytes) {
    std::string text;
    AppendEscapedText(text, bytes);
    return text;
}
