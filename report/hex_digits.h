// hex_digits.h - bytes in hexadecimal.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

inline constexpr std::string_view lowerHexDigits = "0123456789abcdef";
inline constexpr std::string_view upperHexDigits = "0123456789ABCDEF";

inline void AppendHexByte(std::string& out, std::uint8_t byte, std::string_view digits) {
    out += digits[byte >> 4];
    out += digits[byte & 0x0F];
}
