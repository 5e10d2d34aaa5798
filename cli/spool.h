// spool.h - standard input as a file that can be read at any offset.
#pragma once

#include <optional>
#include <string>

class SpooledInput {
 public:
    SpooledInput() = default;
    SpooledInput(const SpooledInput&) = delete;
    SpooledInput& operator=(const SpooledInput&) = delete;
    ~SpooledInput();

    // Copies standard input to an unnamed file in the directory for temporary files (TMPDIR, or /tmp). Returns false
    // with the reason in error.
    bool Open(std::optional<std::string>& error);

    // Open for reading from Open until this object ends.
    int Descriptor() const { return descriptor_; }

 private:
    int descriptor_ = -1;
};
