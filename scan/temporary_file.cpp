// temporary_file.cpp - files for what does not fit in memory.
#include "scan/temporary_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

std::string DirectoryForTemporaryFiles() {
    const char* const directory = std::getenv("TMPDIR");
    return directory != nullptr && directory[0] != '\0' ? directory : "/tmp";
}

int OpenUnnamedFile(const std::string& directory) {
    const int descriptor = open(directory.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (descriptor >= 0) return descriptor;
    // Not every file system has unnamed files.
    std::string name = directory + "/fiid-" + std::string(6, 'X');
    const int named = mkostemp(name.data(), O_CLOEXEC);
    if (named >= 0) unlink(name.c_str());
    return named;
}
