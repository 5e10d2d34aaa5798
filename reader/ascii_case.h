// ascii_case.h - small letters for capitals, and capitals for small letters. ASCII letters alone: every other value stays
// what it is, also letters of other alphabets, whatever the locale.
#pragma once

#include <cstdint>

constexpr char FILowerAscii(char character) {
    const bool upper = character >= 'A' && character <= 'Z';
    return static_cast<char>(upper ? character - 'A' + 'a' : character);
}

// For 16-bit characters, and for bytes as the reader delivers them: endOfFile stays endOfFile.
constexpr std::uint16_t FILowerAscii(std::uint16_t character) {
    const bool upper = character >= 'A' && character <= 'Z';
    return static_cast<std::uint16_t>(upper ? character - 'A' + 'a' : character);
}

constexpr char FIUpperAscii(char character) {
    const bool lower = character >= 'a' && character <= 'z';
    return static_cast<char>(lower ? character - 'a' + 'A' : character);
}
