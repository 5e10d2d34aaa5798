// path_parts.cpp - names, extensions and absolute forms of paths.
#include "report/path_parts.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>

#include "report/byte_set.h"
#include "report/hex_digits.h"

namespace {

void RemoveLastComponent(std::string& absolute) {
    const std::size_t slash = absolute.rfind('/');
    absolute.resize(slash == std::string::npos ? 0 : slash);
}

ByteSet EscapedInUris() {
    constexpr std::string_view asTheyAre =
        "/ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!$&'()*+,;=:@";
    std::string escaped;
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        const char character = static_cast<char>(static_cast<std::uint8_t>(byte));
        if (asTheyAre.find(character) == std::string_view::npos) escaped += character;
    }
    return ByteSet(escaped);
}

}  // namespace

std::string_view NameOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view ExtensionOf(std::string_view path) {
    const std::string_view name = NameOf(path);
    const std::size_t stop = name.rfind('.');
    return stop == std::string_view::npos ? std::string_view() : name.substr(stop + 1);
}

std::string AbsolutePath(std::string_view workingDirectory, std::string_view path) {
    std::string absolute;
    absolute.reserve(workingDirectory.size() + path.size() + 1);
    if (!path.starts_with('/')) absolute = workingDirectory;
    while (!path.empty()) {
        const std::size_t size = std::min(path.find('/'), path.size());
        const std::string_view component = path.substr(0, size);
        path.remove_prefix(std::min(size + 1, path.size()));
        if (component.empty() || component == ".") continue;
        if (component == "..") {
            RemoveLastComponent(absolute);
        } else {
            absolute += '/';
            absolute += component;
        }
    }
    return absolute;
}

std::string WorkingDirectory() {
    std::error_code failure;
    const std::filesystem::path directory = std::filesystem::current_path(failure);
    return failure ? "" : AbsolutePath("", directory.native());
}

void AppendFileUri(std::string& out, std::string_view absolutePath) {
    static const ByteSet escaped = EscapedInUris();
    out += "file:";
    while (escaped.AppendUpTo(out, absolutePath)) {
        out += '%';
        AppendHexByte(out, static_cast<std::uint8_t>(absolutePath[0]), upperHexDigits);
        absolutePath.remove_prefix(1);
    }
}
