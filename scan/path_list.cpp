// path_list.cpp - lists of paths in files.
#include "scan/path_list.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "scan/descriptors.h"
#include "scan/file_walk.h"
#include "scan/interrupt.h"

namespace {

constexpr const char* standardInputName = "-";

// One byte more than the longest path tells that an entry is longer; it takes no further ones.
void AppendToEntry(std::string& entry, std::string_view bytes) {
    entry += bytes.substr(0, longestPath + 1 - entry.size());
}

std::optional<std::string> ReadEntries(int descriptor, char separator,
                                       const std::function<void(const std::string&)>& visit) {
    std::array<char, readBlockBytes> block;
    std::string entry;
    while (true) {
        const ssize_t came = ReadAvailable(descriptor, block);
        if (came < 0 && !Interrupted()) return std::strerror(errno);
        if (came <= 0) break;
        for (std::string_view rest(block.data(), static_cast<std::size_t>(came)); !rest.empty();) {
            const std::size_t end = std::min(rest.find(separator), rest.size());
            AppendToEntry(entry, rest.substr(0, end));
            if (end == rest.size()) break;
            rest.remove_prefix(end + 1);
            if (!entry.empty()) visit(entry);
            entry.clear();
            if (Interrupted()) return std::nullopt;
        }
    }
    if (!entry.empty() && !Interrupted()) visit(entry);
    return std::nullopt;
}

}  // namespace

std::optional<std::string> ReadPathList(const std::string& file, bool nulSeparated,
                                        const std::function<void(const std::string&)>& visit) {
    const char separator = nulSeparated ? '\0' : '\n';
    if (file == standardInputName) {
        if (!IsOpenForReading(STDIN_FILENO)) return "standard input is closed";
        return ReadEntries(STDIN_FILENO, separator, visit);
    }
    const OwnedDescriptor list(OpenForReading(file));
    if (list.Number() < 0) return std::strerror(errno);
    return ReadEntries(list.Number(), separator, visit);
}

bool PathsComeOneByOne(const std::string& file) {
    struct stat status = {};
    const bool known = file == standardInputName ? fstat(STDIN_FILENO, &status) == 0 : stat(file.c_str(), &status) == 0;
    return known && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode) || S_ISCHR(status.st_mode));
}
