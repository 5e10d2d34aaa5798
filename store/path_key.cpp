// path_key.cpp - normalises paths and makes text of any bytes.
#include "store/path_key.h"

#include <cstddef>
#include <cstdint>

#include "scan/utf8.h"

namespace {

bool IsNormalised(std::string_view path) {
    if (path.size() > 1 && path.ends_with('/')) return false;
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        const std::string_view part = path.substr(start, end - start);
        if (part == "." || (part.empty() && start != 0)) return path.size() <= 1;
        start = end + 1;
    }
    return true;
}

// Whether bytes are UTF-8 without NUL bytes, which end a text for many who read it.
bool IsText(std::string_view bytes) {
    while (!bytes.empty()) {
        const Utf8Start start = StartOfUtf8(bytes);
        if (!start.whole || bytes[0] == '\0') return false;
        bytes.remove_prefix(start.size);
    }
    return true;
}

std::string TextOf(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        const Utf8Start start = StartOfUtf8(bytes);
        text += start.whole && bytes[0] != '\0' ? bytes.substr(0, start.size) : replacementCharacter;
        bytes.remove_prefix(start.size);
    }
    return text;
}

// 16 for what is no digit.
std::uint8_t ValueOfDigit(char digit) {
    if (digit >= '0' && digit <= '9') return static_cast<std::uint8_t>(digit - '0');
    if (digit >= 'a' && digit <= 'f') return static_cast<std::uint8_t>(digit - 'a' + 10);
    if (digit >= 'A' && digit <= 'F') return static_cast<std::uint8_t>(digit - 'A' + 10);
    return 16;
}

}  // namespace

std::string NormalisedPath(std::string_view path) {
    if (IsNormalised(path)) return std::string(path);
    std::string normalised;
    if (path.starts_with('/')) normalised = "/";
    for (std::size_t start = 0; start < path.size();) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        const std::string_view part = path.substr(start, end - start);
        start = end + 1;
        if (part.empty() || part == ".") continue;
        if (!normalised.empty() && normalised != "/") normalised += '/';
        normalised += part;
    }
    return normalised.empty() ? "." : normalised;
}

PathKey KeyOfPath(std::string path) {
    if (IsText(path)) return {std::move(path), {}};
    return {TextOf(path), HexOf(path)};
}

std::string PathOfKey(std::string_view text, std::string_view hex) {
    return hex.empty() ? std::string(text) : BytesOfHex(hex);
}

std::string HexOf(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string hex;
    hex.reserve(2 * bytes.size());
    for (const char character : bytes) {
        const auto byte = static_cast<std::uint8_t>(character);
        hex += digits[byte >> 4];
        hex += digits[byte & 0x0F];
    }
    return hex;
}

std::string BytesOfHex(std::string_view hex) {
    std::string bytes;
    if (hex.size() % 2 != 0) return bytes;
    bytes.reserve(hex.size() / 2);
    for (std::size_t index = 0; index < hex.size(); index += 2) {
        const std::uint8_t high = ValueOfDigit(hex[index]);
        const std::uint8_t low = ValueOfDigit(hex[index + 1]);
        if (high > 15 || low > 15) return {};
        bytes += static_cast<char>(high << 4 | low);
    }
    return bytes;
}
