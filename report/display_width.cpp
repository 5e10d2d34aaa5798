// display_width.cpp - characters and their columns, by the C library.
#include "report/display_width.h"

#include <locale.h>
#include <wchar.h>

#include <algorithm>
#include <cstdint>

namespace {

// The calling thread works with the characters of UTF-8 as long as this lives, whatever the locale of the program. Where
// the system has no such locale the program's own is left.
class Utf8Locale {
 public:
    Utf8Locale() : before_(Shared() != nullptr ? uselocale(Shared()) : nullptr) {}
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;
    ~Utf8Locale() {
        if (before_ != nullptr) uselocale(before_);
    }

 private:
    // Made once and never given back.
    static locale_t Shared() {
        static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return utf8;
    }

    locale_t before_;
};

// The first character of a text, or a byte that is none.
struct Character {
    std::size_t size;     // bytes
    std::size_t columns;  // 0 to 2
};

constexpr Character singleByte = {1, 1};

bool IsAscii(char byte) { return static_cast<std::uint8_t>(byte) < 0x80; }

// With a Utf8Locale around it for Utf8. text is not empty.
Character FirstCharacter(std::string_view text, TerminalText kind) {
    if (kind == TerminalText::Bytes || IsAscii(text[0])) return singleByte;
    mbstate_t state = {};
    wchar_t character = 0;
    const std::size_t size = mbrtowc(&character, text.data(), text.size(), &state);
    if (size == 0 || size > text.size()) return singleByte;  // none, or not whole
    const int columns = wcwidth(character);
    return {size, columns < 0 ? 1 : static_cast<std::size_t>(columns)};
}

// The bytes of as many characters as fit.
std::size_t FittingBytes(std::string_view text, std::size_t columns, TerminalText kind) {
    std::size_t bytes = 0;
    while (bytes < text.size()) {
        const Character next = FirstCharacter(text.substr(bytes), kind);
        if (next.columns > columns) break;
        columns -= next.columns;
        bytes += next.size;
    }
    return bytes;
}

// The bytes to leave out in front so that the rest takes no more than so many columns; and marks that would be left
// without their character.
std::size_t LeftOutBytes(std::string_view text, std::size_t width, std::size_t columns, TerminalText kind) {
    std::size_t bytes = 0;
    while (bytes < text.size()) {
        const Character next = FirstCharacter(text.substr(bytes), kind);
        if (width <= columns && next.columns > 0) break;
        width -= next.columns;
        bytes += next.size;
    }
    return bytes;
}

std::size_t WidthOf(std::string_view text, TerminalText kind) {
    std::size_t columns = 0;
    while (!text.empty()) {
        const Character next = FirstCharacter(text, kind);
        columns += next.columns;
        text.remove_prefix(next.size);
    }
    return columns;
}

bool IsPlain(std::string_view text, TerminalText kind) {
    return kind == TerminalText::Bytes || std::all_of(text.begin(), text.end(), IsAscii);
}

}  // namespace

std::size_t DisplayWidth(std::string_view text, TerminalText kind) {
    if (IsPlain(text, kind)) return text.size();
    const Utf8Locale locale;
    return WidthOf(text, kind);
}

void AppendCutToWidth(std::string& out, std::string_view text, std::size_t columns, CutSide side, TerminalText kind) {
    if (text.size() <= columns && IsPlain(text, kind)) {
        out += text;
        return;
    }
    const Utf8Locale locale;
    const std::size_t width = WidthOf(text, kind);
    if (width <= columns) {
        out += text;
        return;
    }
    if (columns == 0) return;
    const std::string_view ellipsis = kind == TerminalText::Utf8
                                          ? "\xE2\x80\xA6"
                                          : std::string_view("...").substr(0, std::min<std::size_t>(columns, 3));
    const std::size_t left = columns - (kind == TerminalText::Utf8 ? 1 : ellipsis.size());
    if (side == CutSide::Front) {
        out += ellipsis;
        out += text.substr(LeftOutBytes(text, width, left, kind));
    } else {
        out += text.substr(0, FittingBytes(text, left, kind));
        out += ellipsis;
    }
}
