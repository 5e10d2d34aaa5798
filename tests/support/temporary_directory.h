// temporary_directory.h - a directory of a test's own, which goes with it.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

class TemporaryDirectory {
 public:
    explicit TemporaryDirectory(const std::string& parent = testing::TempDir()) {
        path_ = parent + "fiid-cli-" + std::string(6, 'X');
        if (mkdtemp(path_.data()) == nullptr) ADD_FAILURE() << "no directory " << path_;
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() { std::filesystem::remove_all(path_); }

    std::string At(const std::string& name) const { return path_ + "/" + name; }
    void Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(At(name), std::ios::binary) << bytes;
    }

 private:
    std::string path_;
};

// Where thousands of files are made and removed at once: in memory, if there is a file system there.
inline std::string QuickDirectory() {
    const char* const shared = "/dev/shm/";
    return access(shared, W_OK | X_OK) == 0 ? shared : testing::TempDir();
}

inline std::ptrdiff_t CountOpenDescriptors() {
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return std::distance(begin(descriptors), end(descriptors));
}
