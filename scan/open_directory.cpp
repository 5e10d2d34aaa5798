// open_directory.cpp - a directory that is held open, for what is opened relative to it.
#include "scan/open_directory.h"

#include <unistd.h>

#include <utility>

OpenDirectory::OpenDirectory(int descriptor, std::shared_ptr<OpenDirectoryCount> count)
    : descriptor_(descriptor), count_(std::move(count)) {
    if (count_ != nullptr) ++*count_;
}

OpenDirectory::~OpenDirectory() {
    close(descriptor_);
    if (count_ != nullptr) --*count_;
}
