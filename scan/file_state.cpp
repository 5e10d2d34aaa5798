// file_state.cpp - what the file system tells of a file, which shows whether it has changed.
#include "scan/file_state.h"

#include <sys/stat.h>

FileState StateOf(const struct stat& status) {
    return {true,
            static_cast<std::uint64_t>(status.st_size),
            status.st_mtim.tv_sec,
            static_cast<std::uint32_t>(status.st_mtim.tv_nsec),
            status.st_ino,
            status.st_dev};
}

FileState StateOfEntry(int directory, const char* path) {
    struct stat status = {};
    const bool isFile = fstatat(directory, path, &status, 0) == 0 && S_ISREG(status.st_mode);
    return isFile ? StateOf(status) : FileState();
}
