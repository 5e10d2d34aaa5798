// directory_reader.h - the entries of an open directory, as the file system has them.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

// Reads one directory after the other through one buffer.
class DirectoryReader {
 public:
    DirectoryReader();

    // Begins with a directory that was opened for this.
    void Start(int descriptor);

    // The next entry but "." and "..", and its kind as the DT_ constants have it, DT_UNKNOWN where the file system does
    // not tell it. Returns false at the end, when it can't be read, and when a signal ends the program. The name lives
    // until the next call.
    bool Next(std::string_view& name, unsigned char& type);

    // The errno of the failure, or 0.
    int Error() const { return error_; }

 private:
    bool Fill();

    std::unique_ptr<char[]> buffer_;
    std::size_t next_ = 0;
    std::size_t end_ = 0;
    int descriptor_ = -1;
    int error_ = 0;
};
