// descriptors.cpp - reading and writing through file descriptors.
#include "scan/descriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "scan/interrupt.h"

OwnedDescriptor::~OwnedDescriptor() {
    if (number_ >= 0) close(number_);
}

void FillStandardDescriptors() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) >= 0 || errno != EBADF) continue;
        // Opened the wrong way round, for EBADF. The lowest free number is taken: this one.
        const int mode = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        if (open("/dev/null", mode) != descriptor) std::_Exit(EXIT_FAILURE);
    }
}

bool IsOpenForReading(int descriptor) {
    const int flags = fcntl(descriptor, F_GETFL);
    return flags >= 0 && (flags & O_ACCMODE) != O_WRONLY;
}

int OpenForReading(const std::string& path) { return OpenForReading(AT_FDCWD, path.c_str()); }

int OpenForReading(int directory, const char* path) {
    return openat(directory, path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
}

ssize_t ReadAvailable(int descriptor, std::span<char> block) {
    while (WaitForInput(descriptor)) {
        const ssize_t came = read(descriptor, block.data(), block.size());
        if (came >= 0 || (errno != EINTR && errno != EAGAIN)) return came;
    }
    errno = EINTR;
    return -1;
}

bool WriteFully(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}
