// spool.cpp - a stream into a temporary file.
#include "scan/spool.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "scan/descriptors.h"

namespace {

std::string TemporaryDirectory() {
    const char* const directory = std::getenv("TMPDIR");
    return directory != nullptr && directory[0] != '\0' ? directory : "/tmp";
}

// An open file without a name, or -1 with errno set.
int OpenUnnamedFile(const std::string& directory) {
    const int descriptor = open(directory.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (descriptor >= 0) return descriptor;
    // Not every file system has unnamed files.
    std::string name = directory + "/fiid-" + std::string(6, 'X');
    const int named = mkostemp(name.data(), O_CLOEXEC);
    if (named >= 0) unlink(name.c_str());
    return named;
}

}  // namespace

SpooledInput::~SpooledInput() {
    if (descriptor_ >= 0) close(descriptor_);
}

bool SpooledInput::Open(int source, const std::string& sourceName, std::optional<std::string>& error) {
    const std::string directory = TemporaryDirectory();
    descriptor_ = OpenUnnamedFile(directory);
    if (descriptor_ < 0) {
        error = directory + ": no temporary file: " + std::strerror(errno);
        return false;
    }
    std::array<char, readBlockBytes> block;
    while (true) {
        const ssize_t came = ReadAvailable(source, block);
        if (came == 0) return true;
        if (came < 0) {
            error = sourceName + ": " + std::strerror(errno);
            return false;
        }
        if (!WriteFully(descriptor_, {block.data(), static_cast<std::size_t>(came)})) {
            error = directory + ": " + std::strerror(errno);
            return false;
        }
    }
}
