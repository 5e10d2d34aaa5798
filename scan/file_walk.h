// file_walk.h - what a path stands for: a file, or everything below a directory.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

// In bytes, and far more than file systems take: of what is longer, only the beginning is told.
inline constexpr std::size_t longestPath = 65536;

// What is to be done with what a path stands for.
struct WalkVisitor {
    // The path itself. Returns false, with nothing done, for a directory.
    std::function<bool(const std::string& path)> named;
    // What lies below a directory.
    std::function<void(const std::string& path)> file;
    std::function<void(const std::string& path, const std::string& reason)> failure;
};

// Visits the path itself, or, for a directory, all that lies below it, in the order of the bytes of their names. What the
// path leads to is left to the visitor, who opens it anyway: looking first would cost a system call for every path. What
// lies below a directory is told apart by its entries, without a call for each.
//
// A symbolic link to a directory is followed for the path itself and passed over below it, so that a walk always ends. So
// it is with a FIFO: whoever names one wants it to be read, but below a directory it is a failure, because nobody may
// ever write to it; it is not even opened, which would take a waiting writer's reader away again. A directory that
// can't be read is a failure, and so is a path that holds a NUL byte or is longer than longestPath. A signal that ends
// the program ends the walk.
void WalkPath(const std::string& path, const WalkVisitor& visitor);
