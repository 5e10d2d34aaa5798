// utf8.h - where a character of UTF-8 ends, and what is none.
#pragma once

#include <cstddef>
#include <string_view>

// What stands in place of bytes that are no UTF-8: U+FFFD.
inline constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

// The start of a text: one character of UTF-8, or the most of one that is there.
struct Utf8Start {
    std::size_t size;  // bytes, at least 1
    bool whole;
};

// Of bytes that are not empty. Long forms, surrogates and numbers above U+10FFFF are no characters.
Utf8Start StartOfUtf8(std::string_view bytes);
