// file_walk.h - what a path stands for: a file, or everything below a directory.
#pragma once

#include <functional>
#include <string>

// Calls visitFile for each path to be identified: the path itself, or, for a directory, all that lies below it, in the
// order of the bytes of their names. A symbolic link to a directory is followed for the path itself and passed over
// below it, so that a walk always ends. visitFailure is called with a reason for a directory that can't be read.
void WalkPath(const std::string& path, const std::function<void(const std::string&)>& visitFile,
              const std::function<void(const std::string&, const std::string&)>& visitFailure);
