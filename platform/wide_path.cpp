// wide_path.cpp - UTF-16 to UTF-8 (RFC 2781, RFC 3629).
#include "platform/wide_path.h"

namespace {

bool UTIsHighSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool UTIsLowSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void UTAppendUtf8(std::string& text, std::uint32_t character) {
    const auto append = [&text](std::uint32_t byte) { text.push_back(static_cast<char>(byte)); };
    const auto continuation = [](std::uint32_t bits) { return 0x80 | (bits & 0x3F); };
    if (character < 0x80) return append(character);
    if (character < 0x800) {
        append(0xC0 | character >> 6);
        return append(continuation(character));
    }
    if (character < 0x10000) {
        append(0xE0 | character >> 12);
        append(continuation(character >> 6));
        return append(continuation(character));
    }
    append(0xF0 | character >> 18);
    append(continuation(character >> 12));
    append(continuation(character >> 6));
    append(continuation(character));
}

}  // namespace

std::string UTNarrowPath(const std::uint16_t* path) {
    std::string text;
    for (; *path != 0; ++path) {
        std::uint32_t character = *path;
        if (UTIsHighSurrogate(character) && UTIsLowSurrogate(path[1])) {
            ++path;
            character = 0x10000 + ((character - 0xD800) << 10) + (*path - 0xDC00U);
        }
        UTAppendUtf8(text, character);
    }
    return text;
}
