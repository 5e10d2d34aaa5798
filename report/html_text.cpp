// html_text.cpp - what a browser could take for markup, and what people read faster.
#include "report/html_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

#include "report/byte_set.h"
#include "report/escape_text.h"
#include "report/hex_digits.h"
#include "report/json_text.h"
#include "report/readable_numbers.h"
#include "report/value_text.h"

namespace {

// Bytes of UTF-8, escaped for HTML.
void AppendMarkupFree(std::string& out, std::string_view text) {
    constexpr ByteSet markup = ByteSet("&<>\"'");
    while (markup.AppendUpTo(out, text)) {
        out += "&#";
        out += std::to_string(static_cast<std::uint8_t>(text[0]));
        out += ';';
        text.remove_prefix(1);
    }
}

// The size of the character at the start of bytes, or 0 where there is no UTF-8.
std::size_t CharacterSize(std::string_view bytes) {
    for (std::size_t size = 1; size <= std::min<std::size_t>(4, bytes.size()); ++size) {
        if (IsUtf8(bytes.substr(0, size))) return size;
    }
    return 0;
}

// A character of the Basic Multilingual Plane as JSON may have each of them: \u and four digits.
void AppendUnicodeEscape(std::string& out, std::uint32_t character) {
    out += "\\u";
    AppendHexByte(out, static_cast<std::uint8_t>(character >> 8), lowerHexDigits);
    AppendHexByte(out, static_cast<std::uint8_t>(character), lowerHexDigits);
}

// The characters from U+0080 on that AppendEscapedText escapes have two or three bytes.
std::uint32_t CharacterOf(std::string_view bytes) {
    std::uint32_t character = static_cast<std::uint8_t>(bytes[0]) & (bytes.size() == 2 ? 0x1FU : 0x0FU);
    for (const char byte : bytes.substr(1)) character = character << 6 | (static_cast<std::uint8_t>(byte) & 0x3FU);
    return character;
}

}  // namespace

void AppendHtmlText(std::string& out, std::string_view bytes) {
    constexpr ByteSet notAscii = ByteSet("").With(0x80, 0xFF);
    while (!bytes.empty()) {
        std::string plain;
        const bool more = notAscii.AppendUpTo(plain, bytes);
        AppendMarkupFree(out, EscapeForText(plain));
        if (!more) return;
        const std::size_t size = CharacterSize(bytes);
        if (size == 0) {
            out += "\\x";
            AppendHexByte(out, static_cast<std::uint8_t>(bytes[0]), upperHexDigits);
        } else {
            AppendEscapedText(out, bytes.substr(0, size));
        }
        bytes.remove_prefix(std::max<std::size_t>(size, 1));
    }
}

void AppendScriptText(std::string& out, std::string_view bytes) {
    constexpr ByteSet notAsItIs = ByteSet("<>&\x7F").With(0x80, 0xFF);
    std::string json;
    AppendJsonText(json, bytes);
    std::string_view text = json;
    while (notAsItIs.AppendUpTo(out, text)) {
        const std::size_t size = CharacterSize(text);
        const std::string_view own = text.substr(0, size);
        if (size == 1) {
            AppendUnicodeEscape(out, static_cast<std::uint8_t>(own[0]));
        } else if (EscapeForText(own) != own) {
            AppendUnicodeEscape(out, CharacterOf(own));
        } else {
            out += own;
        }
        text.remove_prefix(size);
    }
}

std::string GroupDigits(std::uint64_t number) {
    std::string digits;
    AppendGroupedNumber(digits, number);
    return digits;
}

std::string TellSize(std::uint64_t bytes) {
    constexpr const char* units[] = {"kB", "MB", "GB", "TB", "PB", "EB"};
    if (bytes < 1000) return std::to_string(bytes) + " B";
    double size = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    for (; size >= 999.5; ++unit) size /= 1000;
    const int decimals = size < 9.995 ? 2 : size < 99.95 ? 1 : 0;
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%.*f %s", decimals, size, units[unit]);
    return text.data();
}

std::string TellShare(std::uint64_t part, std::uint64_t whole) {
    if (part == 0) return "0%";
    const double percent = static_cast<double>(part) * 100 / static_cast<double>(whole);
    if (percent < 0.1) return "<0.1%";
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%.1f%%", percent);
    return text.data();
}

std::string TellMinute(std::int64_t seconds) {
    std::string time;
    AppendTimeWithoutZone(time, seconds);
    constexpr std::size_t dateSize = 10;
    constexpr std::size_t minuteSize = 16;
    return time.substr(0, dateSize) + ' ' + time.substr(dateSize + 1, minuteSize - dateSize - 1) + " UTC";
}
