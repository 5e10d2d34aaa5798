// json_text.cpp - escapes and replacements in strings of JSON.
#include "report/json_text.h"

#include <cstddef>
#include <cstdint>

#include "report/byte_set.h"
#include "report/hex_digits.h"
#include "scan/utf8.h"

namespace {

constexpr ByteSet notAscii = ByteSet("").With(0x80, 0xFF);
constexpr ByteSet notAsItIs = ByteSet("\"\\").With(0x00, 0x1F).With(0x80, 0xFF);

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
        const Utf8Start start = StartOfUtf8(bytes.substr(index));
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
        const Utf8Start start = StartOfUtf8(bytes);
        out += start.whole ? bytes.substr(0, start.size) : replacementCharacter;
        bytes.remove_prefix(start.size);
    }
    out += '"';
}
