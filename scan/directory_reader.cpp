// directory_reader.cpp - the entries of an open directory, as the file system has them.
//
// The system is asked without opendir and readdir, whose buffer of 32 KiB would be made anew for each directory, and
// takes twice the calls.
#include "scan/directory_reader.h"

#include <dirent.h>
#include <sys/types.h>

#include <cerrno>
#include <cstring>

#include "scan/interrupt.h"

namespace {

constexpr std::size_t bufferBytes = 65536;

}  // namespace

DirectoryReader::DirectoryReader() : buffer_(std::make_unique_for_overwrite<char[]>(bufferBytes)) {}

void DirectoryReader::Start(int descriptor) {
    descriptor_ = descriptor;
    next_ = end_ = 0;
    error_ = 0;
}

bool DirectoryReader::Next(std::string_view& name, unsigned char& type) {
    do {
        if (next_ == end_ && !Fill()) return false;
        const char* const entry = &buffer_[next_];
        unsigned short length = 0;  // the type that the system fixes
        std::memcpy(&length, entry + offsetof(dirent64, d_reclen), sizeof(length));
        next_ += length;
        type = static_cast<unsigned char>(entry[offsetof(dirent64, d_type)]);
        name = entry + offsetof(dirent64, d_name);
    } while (name == "." || name == "..");
    return true;
}

bool DirectoryReader::Fill() {
    ssize_t came = -1;
    do {
        if (Interrupted()) return false;
        came = getdents64(descriptor_, buffer_.get(), bufferBytes);
    } while (came < 0 && errno == EINTR);
    next_ = 0;
    end_ = came > 0 ? static_cast<std::size_t>(came) : 0;
    // A directory that was removed behind its opening is at its end.
    if (came < 0 && errno != ENOENT) error_ = errno;
    return end_ > 0;
}
