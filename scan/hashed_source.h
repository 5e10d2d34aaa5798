// hashed_source.h - a file that is read once for its hash, and identified by what that leaves.
//
// The bytes are hashed in blocks. A file of one block is kept whole, of a larger one the first block and the last bytes:
// an identification looks there first, and mostly nowhere else. What it wants of the places between is read again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "scan/hash.h"

// What one read asks for, in bytes. A file of up to so many is kept whole.
inline constexpr std::size_t hashBlockBytes = 262144;

// How much is kept of the end of a larger file, in bytes, or more.
inline constexpr std::size_t keptTailBytes = 65536;

// Two blocks of each thread hold what is kept: use one object at a time in a thread, and in that thread alone.
class HashedSource {
 public:
    // The descriptor stays the caller's, and its position is neither used nor moved.
    explicit HashedSource(int descriptor) : descriptor_(descriptor) {}

    // Hashes the file from its start, of size bytes or until it ends in front of that. Returns false with errno set when
    // bytes can't be read: EINTR when a signal ends the program. Called once.
    bool HashBytes(std::uint64_t size, Hasher& hasher);

    // How many bytes were hashed.
    std::uint64_t Size() const { return size_; }

    // Delivers up to size bytes at an offset below Size(), in the manner of fiid_source::read_at. Returns 0, or errno.
    std::int32_t ReadAt(std::uint64_t offset, void* buffer, std::uint32_t size, std::uint32_t& count);

    // What all of it cost so far, in bytes and reads of the system.
    std::uint64_t BytesRead() const { return bytesRead_; }
    std::uint64_t Calls() const { return calls_; }

 private:
    bool HashBlock(std::byte* block, std::size_t wanted, Hasher& hasher, std::size_t& filled);
    std::int64_t ReadOnce(std::uint64_t offset, void* buffer, std::size_t size);

    int descriptor_;
    std::uint64_t size_ = 0;
    std::size_t headFilled_ = 0;            // of the first block
    std::uint64_t tailStart_ = UINT64_MAX;  // where the second block lies in the file; UINT64_MAX: nowhere
    std::size_t tailFilled_ = 0;            // of the second block
    const std::byte* blocks_ = nullptr;     // of the thread
    std::uint64_t bytesRead_ = 0;
    std::uint64_t calls_ = 0;
};
