// spool.cpp - a stream into a temporary file.
#include "scan/spool.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "scan/descriptors.h"
#include "scan/temporary_file.h"

SpooledInput::~SpooledInput() {
    if (descriptor_ >= 0) close(descriptor_);
}

bool SpooledInput::Open(int source, const std::string& sourceName, std::optional<std::string>& error) {
    const std::string directory = DirectoryForTemporaryFiles();
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
