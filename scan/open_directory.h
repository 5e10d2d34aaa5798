// open_directory.h - a directory that is held open, for what is opened relative to it.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

// How many directories of one walk are open at present, wherever they are held.
using OpenDirectoryCount = std::atomic<std::size_t>;

// Closes the directory when the last one who holds it lets go of it. Threads may share it.
class OpenDirectory {
 public:
    // Takes over the descriptor. count may be null.
    explicit OpenDirectory(int descriptor, std::shared_ptr<OpenDirectoryCount> count = nullptr);
    OpenDirectory(const OpenDirectory&) = delete;
    OpenDirectory& operator=(const OpenDirectory&) = delete;
    ~OpenDirectory();

    // For openat, fstatat and the like, which leave it as it is.
    int Descriptor() const { return descriptor_; }

 private:
    int descriptor_;
    std::shared_ptr<OpenDirectoryCount> count_;
};
