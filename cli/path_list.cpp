// path_list.cpp - lists of paths in files.
#include "cli/path_list.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

std::optional<std::string> ReadPathList(const std::string& file, bool nulSeparated,
                                        const std::function<void(const std::string&)>& visit) {
    const auto closeFile = [](std::FILE* stream) {
        if (stream != stdin) std::fclose(stream);
    };
    const std::unique_ptr<std::FILE, decltype(closeFile)> stream(file == "-" ? stdin : std::fopen(file.c_str(), "re"),
                                                                 closeFile);
    if (stream == nullptr) return std::strerror(errno);
    const char separator = nulSeparated ? '\0' : '\n';
    char* buffer = nullptr;
    std::size_t capacity = 0;
    const auto freeBuffer = [](char** block) { std::free(*block); };
    const std::unique_ptr<char*, decltype(freeBuffer)> owner(&buffer, freeBuffer);
    while (true) {
        errno = 0;
        const ssize_t length = getdelim(&buffer, &capacity, separator, stream.get());
        if (length < 0) break;
        std::string path(buffer, static_cast<std::size_t>(length));
        if (!path.empty() && path.back() == separator) path.pop_back();
        if (!path.empty()) visit(path);
    }
    if (std::ferror(stream.get()) != 0) return std::strerror(errno);
    return std::nullopt;
}
