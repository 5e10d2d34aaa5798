// temporary_file.h - files for what does not fit in memory.
#pragma once

#include <string>

// The directory for temporary files: TMPDIR, or /tmp if that is not set or empty.
std::string DirectoryForTemporaryFiles();

// An open file in a directory, for reading and writing, without a name: it is gone when it is closed. Returns the
// descriptor, or -1 with errno set.
int OpenUnnamedFile(const std::string& directory);
