// store_file.h - the file of a store, before it is opened.
#pragma once

#include <string>

// "" for a regular file and for nothing, or in words what stands in its place. SQLite would wait at a FIFO, and has few
// words for a directory.
std::string RefuseNoFile(const std::string& file);
