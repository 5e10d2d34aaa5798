// utf16_text.h - texts in 16-bit units, and byte order marks.
#pragma once

#include <string>
#include <string_view>

inline const std::string mark8 = "\xEF\xBB\xBF";
inline const std::string markLow = "\xFF\xFE";
inline const std::string markHigh = "\xFE\xFF";

// Text in 16-bit units, the low byte of each first, without a mark.
inline std::string FILowFirst(std::string_view text) {
    std::string bytes;
    for (const char character : text) bytes += {character, '\0'};
    return bytes;
}

// The same, the high byte of each first.
inline std::string FIHighFirst(std::string_view text) {
    std::string bytes;
    for (const char character : text) bytes += {'\0', character};
    return bytes;
}
