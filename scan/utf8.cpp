// utf8.cpp - where a character of UTF-8 ends, and what is none.
#include "scan/utf8.h"

#include <cstdint>

namespace {

struct ByteRange {
    std::uint8_t first;
    std::uint8_t last;
};

// What may stand behind the lead byte of a character of more bytes: the limits keep out long forms, surrogates, and
// numbers above U+10FFFF.
constexpr ByteRange SecondBytes(std::uint8_t lead) {
    switch (lead) {
        case 0xE0:
            return {0xA0, 0xBF};
        case 0xED:
            return {0x80, 0x9F};
        case 0xF0:
            return {0x90, 0xBF};
        case 0xF4:
            return {0x80, 0x8F};
        default:
            return {0x80, 0xBF};
    }
}

}  // namespace

Utf8Start StartOfUtf8(std::string_view bytes) {
    const auto lead = static_cast<std::uint8_t>(bytes[0]);
    if (lead < 0x80) return {1, true};
    if (lead < 0xC2 || lead > 0xF4) return {1, false};
    const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    ByteRange range = SecondBytes(lead);
    for (std::size_t index = 1; index < size; ++index) {
        if (index == bytes.size()) return {index, false};
        const auto byte = static_cast<std::uint8_t>(bytes[index]);
        if (byte < range.first || byte > range.last) return {index, false};
        range = {0x80, 0xBF};
    }
    return {size, true};
}
