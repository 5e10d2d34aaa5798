// writer_lock.cpp - takes a lock that nobody's death leaves behind.
#include "store/writer_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace {

// Whether the name still leads to the file that is open: its last owner takes it away.
bool IsAt(int descriptor, const std::string& file) {
    struct stat open = {};
    struct stat named = {};
    return fstat(descriptor, &open) == 0 && stat(file.c_str(), &named) == 0 && open.st_ino == named.st_ino &&
           open.st_dev == named.st_dev;
}

// The digits at the start of the file; empty where its owner has not written them yet.
std::string OwnerOf(int descriptor) {
    std::array<char, 20> bytes;
    const ssize_t count = pread(descriptor, bytes.data(), bytes.size(), 0);
    const std::string_view read(bytes.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    return std::string(read.substr(0, read.find_first_not_of("0123456789")));
}

}  // namespace

WriterLock::~WriterLock() {
    if (descriptor_ < 0) return;
    // Where somebody has taken the store away, another process may hold a new one.
    if (IsAt(descriptor_, file_)) unlink(file_.c_str());
    close(descriptor_);
}

std::string WriterLock::Take(const std::string& store, const std::string& told) {
    const std::string file = store + "-lock";
    while (true) {
        const int descriptor = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644);
        if (descriptor < 0) return told + " can't be written: " + (file + ": ") + std::strerror(errno);
        if (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
            const int reason = errno;
            const std::string owner = OwnerOf(descriptor);
            close(descriptor);
            if (reason != EWOULDBLOCK) return told + " can't be locked: " + std::strerror(reason);
            return told + " is being written by another fiid" + (owner.empty() ? "" : " (process " + owner + ")");
        }
        if (IsAt(descriptor, file)) {
            file_ = file;
            descriptor_ = descriptor;
            break;
        }
        close(descriptor);
    }
    const std::string number = std::to_string(getpid()) + "\n";
    // Without it the words lack the number, which is no reason to give up.
    const bool written = ftruncate(descriptor_, 0) == 0 && pwrite(descriptor_, number.data(), number.size(), 0) > 0;
    static_cast<void>(written);
    return {};
}
