// x_images.cpp - X bitmaps and pixmaps, told by their first words.
//
// An X bitmap is C source: "#define" of width and height, perhaps of a hot spot's x and y, then a "static" array. An X
// pixmap starts with the comment "/* XPM */".
#include "graphics/x_images.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "reader/handle_block.h"

namespace {

constexpr FIID xbmFormat = 1571;
constexpr FIID xpmFormat = 1572;

constexpr std::int32_t success = 0;

constexpr std::uint32_t textBlockSize = 4096;
constexpr std::size_t longestToken = 48;  // the rest of a longer word is the next token
constexpr std::string_view tokenEnds = " \t\n\r";

// Takes the next token off the front of a text, but not the white space behind it.
std::string_view FITakeToken(std::string_view& text) {
    const std::string_view longest = text.substr(0, longestToken);
    const std::string_view token = longest.substr(0, longest.find_first_of(tokenEnds));
    text.remove_prefix(token.size());
    return token;
}

void FISkipTokenEnds(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(tokenEnds), text.size()));
}

std::string_view FIAsText(const std::array<char, textBlockSize>& block, std::uint32_t count) {
    return {block.data(), count};
}

// Passes over a comment in front of an X bitmap: moves text to the first '#' behind the second '/'. False if there is
// none.
bool FISkipXbmComment(std::string_view& text) {
    if (text.front() != '/') return true;
    const std::size_t slash = text.find('/', 1);
    if (slash == std::string_view::npos) return false;
    const std::size_t define = text.find('#', slash);
    if (define == std::string_view::npos) return false;
    text.remove_prefix(define);
    return true;
}

constexpr std::size_t xbmTokens = 14;

// Takes all the tokens. False when the text ends before or with the last one.
bool FITakeXbmTokens(std::string_view text, std::array<std::string_view, xbmTokens>& tokens) {
    for (std::string_view& token : tokens) {
        token = FITakeToken(text);
        if (text.empty()) return false;
        FISkipTokenEnds(text);
    }
    return true;
}

}  // namespace

FIID FIProbeXbm(FIReader& reader) {
    constexpr std::uint32_t smallest = 42;
    std::array<char, textBlockSize> block = {};  // a failing read may tell more bytes than it stored
    std::uint32_t count = 0;
    if (!FICopyHead(reader, block.data(), textBlockSize, count)) {
        if (FIRewindHandle(reader) != success) return 0;
        static_cast<void>(FIReadBlock(reader, block.data(), textBlockSize, count));  // the count alone decides
    }
    if (count < smallest) return 0;

    std::string_view text = FIAsText(block, count);
    std::array<std::string_view, xbmTokens> tokens;
    if (!FISkipXbmComment(text) || !FITakeXbmTokens(text, tokens)) return 0;
    // Quirk: six characters are compared, so that a longer word such as "#defined" is taken too.
    const auto isDefine = [&tokens](std::size_t index) { return tokens[index].starts_with("#defin"); };
    const auto isStatic = [&tokens](std::size_t index) { return tokens[index].starts_with("static"); };
    if (!isDefine(0) || !isDefine(3)) return 0;
    if (isStatic(6)) return xbmFormat;
    return isDefine(6) && isDefine(9) && isStatic(12) ? xbmFormat : FIID{0};
}

FIID FIProbeXpm(FIReader& reader) {
    std::array<char, textBlockSize> block;
    std::uint32_t count = 0;
    if (!FICopyHead(reader, block.data(), textBlockSize, count)) {
        if (FIRewindHandle(reader) != success) return 0;
        if (FIReadBlock(reader, block.data(), textBlockSize, count) != success) return 0;
    }
    if (count == 0) return 0;

    std::string_view text = FIAsText(block, count);
    // Quirk: a token may go on behind what is compared: "/**", "XPM2" and "*/x" are taken too.
    for (const std::string_view start : {std::string_view("/*"), std::string_view("XPM"), std::string_view("*/")}) {
        if (!FITakeToken(text).starts_with(start)) return 0;
        FISkipTokenEnds(text);
    }
    return xpmFormat;
}
