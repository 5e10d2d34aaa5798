// wide_path.cpp - UTF-16 to UTF-8 (RFC 2781, RFC 3629).
#include "platform/wide_path.h"

#include <cstddef>

#include "platform/base_utility.h"

namespace {

// A unit becomes at most three bytes, and the two of a pair four.
constexpr std::size_t mostBytesOfUnit = 3;

bool UTIsHighSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool UTIsLowSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// Writes a character and returns the place behind it.
char* UTPutUtf8(char* end, std::uint32_t character) {
    const auto put = [&end](std::uint32_t byte) { *end++ = static_cast<char>(byte); };
    const auto putFurther = [&put](std::uint32_t bits) { put(0x80 | (bits & 0x3F)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | character >> 6);
        putFurther(character);
    } else if (character < 0x10000) {
        put(0xE0 | character >> 12);
        putFurther(character >> 6);
        putFurther(character);
    } else {
        put(0xF0 | character >> 18);
        putFurther(character >> 12);
        putFurther(character >> 6);
        putFurther(character);
    }
    return end;
}

std::size_t UTCountUnits(const std::uint16_t* path) {
    std::size_t count = 0;
    while (path[count] != 0) ++count;
    return count;
}

}  // namespace

char* UTNarrowPath(const std::uint16_t* path) noexcept {
    auto* const text = static_cast<char*>(HeapAlloc(GetProcessHeap(), 0, UTCountUnits(path) * mostBytesOfUnit + 1));
    if (text == nullptr) return nullptr;
    char* end = text;
    for (; *path != 0; ++path) {
        std::uint32_t character = *path;
        if (UTIsHighSurrogate(character) && UTIsLowSurrogate(path[1])) {
            ++path;
            character = 0x10000 + ((character - 0xD800) << 10) + (*path - 0xDC00U);
        }
        end = UTPutUtf8(end, character);
    }
    *end = '\0';
    return text;
}
