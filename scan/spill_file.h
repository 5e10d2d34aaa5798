// spill_file.h - a temporary file for what does not fit in memory.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

// Bytes are added at its end, read at their place, and given back when nobody needs them any more. The file has no name
// (temporary_file.h); it is made when the first bytes come. Several may share it, in one thread at a time.
class SpillFile {
 public:
    SpillFile() = default;
    SpillFile(const SpillFile&) = delete;
    SpillFile& operator=(const SpillFile&) = delete;
    ~SpillFile();

    // Where the next bytes will be.
    std::uint64_t End() const { return end_; }

    // Adds bytes. Returns false when there can't be a file, or when it can't be written, on a full disk say. From then
    // on nothing is added: whoever has more than fits in memory would try over and over.
    bool Add(std::string_view bytes);

    // Fills bytes with what was added at a place. Returns 0 or the errno of the failure.
    int Read(std::uint64_t place, std::span<char> bytes) const;

    // Gives back what was added from one place to another. Each byte is given back once.
    void GiveBack(std::uint64_t begin, std::uint64_t end);

 private:
    int descriptor_ = -1;
    bool failed_ = false;
    std::uint64_t end_ = 0;
    std::uint64_t kept_ = 0;  // bytes that were added and not given back
};

// A part of a spill file, which is given back when this object ends.
class SpilledPart {
 public:
    SpilledPart() = default;
    SpilledPart(std::shared_ptr<SpillFile> file, std::uint64_t begin, std::uint64_t end);
    SpilledPart(SpilledPart&& other) noexcept = default;
    SpilledPart& operator=(SpilledPart&& other) noexcept;
    ~SpilledPart();

    bool IsNothing() const { return file_ == nullptr; }
    const SpillFile& File() const { return *file_; }
    std::uint64_t Begin() const { return begin_; }
    std::uint64_t End() const { return end_; }

 private:
    void GiveBack();

    std::shared_ptr<SpillFile> file_;  // null for nothing
    std::uint64_t begin_ = 0;
    std::uint64_t end_ = 0;
};
