// json_text.cpp - escapes and replacements in strings of JSON.
#include "report/json_text.h"

#include <cstddef>
#include <cstdint>

#include "report/byte_set.h"
#include "report/hex_digits.h"

namespace {

constexpr ByteSet notAscii = ByteSet("").With(0x80, 0xFF);
constexpr ByteSet notAsItIs = ByteSet("\"\\").With(0x00, 0x1F).With(0x80, 0xFF);

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

// The start of a text: one character of UTF-8, or the most of one that is there.
struct Start {
    std::size_t size;  // bytes, at least 1
    bool whole;
};

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

// bytes are not empty and begin with a byte from 80 on.
Start StartOf(std::string_view bytes) {
    const auto lead = static_cast<std::uint8_t>(bytes[0]);
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

void AppendEscape(std::string& out, char character) {
    switch (character) {
        case '"':
        case '\\':
            out += '\\';
            out += character;
            return;
        case '\b':
            out += "\\b";
            return;
        case '\t':
            out += "\\t";
            return;
        case '\n':
            out += "\\n";
            return;
        case '\f':
            out += "\\f";
            return;
        case '\r':
            out += "\\r";
            return;
        default:
            out += "\\u00";
            AppendHexByte(out, static_cast<std::uint8_t>(character), lowerHexDigits);
    }
}

}  // namespace

bool IsUtf8(std::string_view bytes) {
    for (std::size_t index = 0; index < bytes.size();) {
        if (!notAscii.Holds(bytes[index])) {
            ++index;
            continue;
        }
        const Start start = StartOf(bytes.substr(index));
        if (!start.whole) return false;
        index += start.size;
    }
    return true;
}

void AppendJsonText(std::string& out, std::string_view bytes) {
    out += '"';
    while (notAsItIs.AppendUpTo(out, bytes)) {
        if (!notAscii.Holds(bytes[0])) {
            AppendEscape(out, bytes[0]);
            bytes.remove_prefix(1);
            continue;
        }
        const Start start = StartOf(bytes);
        out += start.whole ? bytes.substr(0, start.size) : replacementCharacter;
        bytes.remove_prefix(start.size);
    }
    out += '"';
}
