// store_file.cpp - looks at what has the name of a store.
#include "store/store_file.h"

#include <sys/stat.h>

std::string RefuseNoFile(const std::string& file) {
    struct stat status = {};
    if (file.empty()) return "a store needs a name";
    if (stat(file.c_str(), &status) != 0 || S_ISREG(status.st_mode)) return {};
    return file + (S_ISDIR(status.st_mode) ? " is a directory" : " is not a regular file");
}
