// file_state.h - what the file system tells of a file, which shows whether it has changed.
#pragma once

#include "scan/record.h"

struct stat;

FileState StateOf(const struct stat& status);

// That of the regular file that a path leads to, over symbolic links, from an open directory or AT_FDCWD; not known for
// anything else.
FileState StateOfEntry(int directory, const char* path);
