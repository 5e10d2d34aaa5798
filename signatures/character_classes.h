// character_classes.h - the alphabets of BinHex 4.0, uuencode and xxencode as look-up tables, made by the compiler.
//
//   Table        Entries  Alphabet, its characters having the values 0 to 63 in order
//   binHexClass      256  BinHex 4.0 (RFC 1741): !"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr
//   uuClass          128  uuencode (IEEE Std 1003.1, uuencode): the bytes 32 to 95; the byte 96 stands for 0 as well
//   xxClass          128  xxencode: plus, minus, the digits, the upper-case letters, the lower-case letters
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

inline constexpr std::uint8_t noMember = 0xFF;

inline constexpr std::string_view binHexAlphabet = "!\"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr";
inline constexpr std::string_view uuAlphabet = " !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_";
inline constexpr std::string_view xxAlphabet = "+-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
static_assert(binHexAlphabet.size() == 64 && uuAlphabet.size() == 64 && xxAlphabet.size() == 64);

template <std::size_t entries>
consteval std::array<std::uint8_t, entries> FIMakeCharacterClass(std::string_view alphabet) {
    std::array<std::uint8_t, entries> table = {};
    table.fill(noMember);
    std::uint8_t value = 0;
    for (const char character : alphabet) table[static_cast<std::uint8_t>(character)] = value++;
    return table;
}

inline constexpr std::array<std::uint8_t, 256> binHexClass = FIMakeCharacterClass<256>(binHexAlphabet);
inline constexpr std::array<std::uint8_t, 128> xxClass = FIMakeCharacterClass<128>(xxAlphabet);
inline constexpr std::array<std::uint8_t, 128> uuClass = [] {
    std::array<std::uint8_t, 128> table = FIMakeCharacterClass<128>(uuAlphabet);
    table['`'] = 0;
    return table;
}();

// Values of a character from 0 to 63, or noMember for one that is none of the alphabet.
//
// Quirk: a character is looked up by its signed value, so one of 128 or above reads in front of its table: for uuClass
// in the upper half of binHexClass, for xxClass in uuClass, for binHexClass in binHexHighClass.
std::uint8_t FIBinHexClass(char character);
std::uint8_t FIUuClass(char character);
std::uint8_t FIXxClass(char character);
