// spool.h - a stream, such as a pipe, as a file that can be read at any offset.
#pragma once

#include <optional>
#include <string>

class SpooledInput {
 public:
    SpooledInput() = default;
    SpooledInput(const SpooledInput&) = delete;
    SpooledInput& operator=(const SpooledInput&) = delete;
    ~SpooledInput();

    // Copies what source holds, to its end, to an unnamed file in the directory for temporary files (TMPDIR, or /tmp).
    // Returns false with the reason in error; sourceName stands in it for the source. Called once.
    bool Open(int source, const std::string& sourceName, std::optional<std::string>& error);

    // Open for reading from Open until this object ends.
    int Descriptor() const { return descriptor_; }

 private:
    int descriptor_ = -1;
};
