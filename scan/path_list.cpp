// path_list.cpp - lists of paths in files.
#include "scan/path_list.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "scan/interrupt.h"
#include "scan/walk.h"

namespace {

constexpr const char* standardInputName = "-";

// How much a regular file has behind the place where it is read.
std::optional<std::uint64_t> BytesBehind(int descriptor) {
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    const off_t place = lseek(descriptor, 0, SEEK_CUR);
    return static_cast<std::uint64_t>(std::max<off_t>(status.st_size - std::max<off_t>(place, 0), 0));
}

}  // namespace

PathList::PathList(const std::string& file, bool nulSeparated)
    : opened_(file == standardInputName ? -1 : OpenForReading(file)),
      isStandardInput_(file == standardInputName),
      separator_(nulSeparated ? '\0' : '\n') {
    if (isStandardInput_ && !IsOpenForReading(STDIN_FILENO)) {
        failure_ = "standard input is closed";
    } else if (!isStandardInput_ && opened_.Number() < 0) {
        failure_ = std::strerror(errno);
    } else {
        totalBytes_ = BytesBehind(Descriptor());
    }
}

int PathList::Descriptor() const { return isStandardInput_ ? STDIN_FILENO : opened_.Number(); }

std::optional<std::string> PathList::Next() {
    std::string entry;
    while (!Interrupted()) {
        if (rest_.empty() && !Fill()) break;
        if (TakeToSeparator(entry) && !entry.empty()) return entry;
    }
    if (entry.empty() || failure_.has_value() || Interrupted()) return std::nullopt;
    return entry;  // the last one, without an end
}

// Reads what there is. Returns false at the end and at a failure.
bool PathList::Fill() {
    if (isAtEnd_ || failure_.has_value()) return false;
    const ssize_t came = ReadAvailable(Descriptor(), block_);
    if (came < 0 && !Interrupted()) failure_ = std::strerror(errno);
    if (came <= 0) isAtEnd_ = true;
    rest_ = {block_.data(), came > 0 ? static_cast<std::size_t>(came) : 0};
    return !rest_.empty();
}

// Moves what comes next to the entry. Returns whether the entry ends there. One byte more than the longest path tells
// that an entry is longer; it takes no further ones.
bool PathList::TakeToSeparator(std::string& entry) {
    const std::size_t end = std::min(rest_.find(separator_), rest_.size());
    entry += rest_.substr(0, std::min(end, longestPath + 1 - entry.size()));
    const bool isComplete = end < rest_.size();
    const std::size_t taken = isComplete ? end + 1 : end;
    rest_.remove_prefix(taken);
    bytesRead_ += taken;
    return isComplete;
}

bool PathsComeOneByOne(const std::string& file) {
    struct stat status = {};
    const bool known = file == standardInputName ? fstat(STDIN_FILENO, &status) == 0 : stat(file.c_str(), &status) == 0;
    return known && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode) || S_ISCHR(status.st_mode));
}
