// gone.cpp - looks at paths, longer ones than the system takes at once too.
#include "store/gone.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <string_view>

namespace {

// The status of what a path leads to, over links. 0 or an errno.
int StatusAt(int directory, std::string_view path, struct stat& status) {
    return fstatat(directory, std::string(path).c_str(), &status, 0) == 0 ? 0 : errno;
}

// Goes down a path in pieces that the system takes.
int StatusOf(std::string_view path, struct stat& status) {
    int directory = AT_FDCWD;
    int reason = 0;
    while (reason == 0 && path.size() >= PATH_MAX) {
        const std::size_t cut = path.rfind('/', PATH_MAX - 2);
        if (cut == std::string_view::npos || cut == 0) {
            reason = ENAMETOOLONG;
            break;
        }
        const int next = openat(directory, std::string(path.substr(0, cut)).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        if (next < 0) reason = errno;
        if (directory != AT_FDCWD) close(directory);
        directory = next;
        path.remove_prefix(cut + 1);
    }
    if (reason == 0) reason = StatusAt(directory, path, status);
    if (directory >= 0) close(directory);
    return reason;
}

}  // namespace

Presence PresenceOf(const std::string& path) {
    if (path.find('\0') != std::string::npos) return Presence::Nothing;
    struct stat status = {};
    const int reason = StatusOf(path, status);
    if (reason == ENOENT || reason == ENOTDIR || reason == ELOOP) return Presence::Nothing;
    if (reason != 0) return Presence::File;
    if (S_ISDIR(status.st_mode)) return Presence::Directory;
    return S_ISREG(status.st_mode) || S_ISBLK(status.st_mode) ? Presence::File : Presence::Nothing;
}
