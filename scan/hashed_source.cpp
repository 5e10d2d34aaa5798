// hashed_source.cpp - one pass over a file, and what it keeps.
#include "scan/hashed_source.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "scan/interrupt.h"

namespace {

static_assert(keptTailBytes < hashBlockBytes);

// Two blocks, one behind the other.
std::byte* BlocksOfThisThread() {
    thread_local std::vector<std::byte> blocks(2 * hashBlockBytes);
    return blocks.data();
}

// How much to read in one block of what is left: so much that the last block has what is to be kept of the end, without a
// copy of the one in front of it.
std::size_t NextBlock(std::uint64_t left) {
    if (left <= hashBlockBytes) return static_cast<std::size_t>(left);
    if (left >= hashBlockBytes + keptTailBytes) return hashBlockBytes;
    return static_cast<std::size_t>(left - keptTailBytes);
}

// Copies what a block holds from an offset in it on. Returns how many bytes that are.
std::uint32_t CopyHeld(const std::byte* block, std::size_t filled, std::uint64_t offset, void* buffer,
                       std::uint32_t size) {
    if (offset >= filled) return 0;
    const auto start = static_cast<std::size_t>(offset);
    const auto count = static_cast<std::uint32_t>(std::min<std::size_t>(size, filled - start));
    std::memcpy(buffer, block + start, count);
    return count;
}

}  // namespace

// One read of the system, over interrupted ones. Returns the count of bytes, 0 at the end, or -1 with errno set.
std::int64_t HashedSource::ReadOnce(std::uint64_t offset, void* buffer, std::size_t size) {
    ssize_t came = -1;
    do {
        came = pread(descriptor_, buffer, size, static_cast<off_t>(offset));
    } while (came < 0 && errno == EINTR && !Interrupted());
    ++calls_;
    if (came > 0) bytesRead_ += static_cast<std::uint64_t>(came);
    return came;
}

// Reads a block, over short reads, and hashes it. It comes short where the file ends.
bool HashedSource::HashBlock(std::byte* block, std::size_t wanted, Hasher& hasher, std::size_t& filled) {
    filled = 0;
    if (Interrupted()) {
        errno = EINTR;
        return false;
    }
    while (filled < wanted) {
        const std::int64_t came = ReadOnce(size_ + filled, block + filled, wanted - filled);
        if (came < 0) return false;
        if (came == 0) break;
        filled += static_cast<std::size_t>(came);
    }
    hasher.Update({block, filled});
    size_ += filled;
    return true;
}

bool HashedSource::HashBytes(std::uint64_t size, Hasher& hasher) {
    std::byte* const head = BlocksOfThisThread();
    std::byte* const tail = head + hashBlockBytes;
    blocks_ = head;
    const auto first = static_cast<std::size_t>(std::min<std::uint64_t>(size, hashBlockBytes));
    if (!HashBlock(head, first, hasher, headFilled_)) return false;
    bool goesOn = headFilled_ == first;
    // Spares time where the system heeds it, and changes nothing else.
    if (goesOn && size_ < size) static_cast<void>(posix_fadvise(descriptor_, 0, 0, POSIX_FADV_SEQUENTIAL));
    while (goesOn && size_ < size) {
        const std::size_t wanted = NextBlock(size - size_);
        const std::uint64_t start = size_;
        std::size_t filled = 0;
        if (!HashBlock(tail, wanted, hasher, filled)) return false;
        tailStart_ = start;
        tailFilled_ = filled;
        goesOn = filled == wanted;
    }
    return true;
}

std::int32_t HashedSource::ReadAt(std::uint64_t offset, void* buffer, std::uint32_t size, std::uint32_t& count) {
    if (offset < headFilled_) {
        count = CopyHeld(blocks_, headFilled_, offset, buffer, size);
        return 0;
    }
    if (offset >= tailStart_) {
        count = CopyHeld(blocks_ + hashBlockBytes, tailFilled_, offset - tailStart_, buffer, size);
        return 0;
    }
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, std::min(tailStart_, size_) - offset));
    const std::int64_t came = ReadOnce(offset, buffer, wanted);
    if (came < 0) return errno;
    count = static_cast<std::uint32_t>(came);
    return 0;
}
