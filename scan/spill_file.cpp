// spill_file.cpp - a temporary file for what does not fit in memory.
#include "scan/spill_file.h"

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "scan/temporary_file.h"

SpillFile::~SpillFile() {
    if (descriptor_ >= 0) close(descriptor_);
}

bool SpillFile::Add(std::string_view bytes) {
    if (failed_) return false;
    if (descriptor_ < 0) descriptor_ = OpenUnnamedFile(DirectoryForTemporaryFiles());  // else writing fails
    std::uint64_t place = end_;
    for (std::string_view rest = bytes; !rest.empty();) {
        const ssize_t written = pwrite(descriptor_, rest.data(), rest.size(), static_cast<off_t>(place));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) {
            failed_ = true;
            return false;
        }
        rest.remove_prefix(static_cast<std::size_t>(written));
        place += static_cast<std::uint64_t>(written);
    }
    kept_ += bytes.size();
    end_ = place;
    return true;
}

int SpillFile::Read(std::uint64_t place, std::span<char> bytes) const {
    while (!bytes.empty()) {
        const ssize_t came = pread(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(place));
        if (came < 0 && errno == EINTR) continue;
        if (came < 0) return errno;
        if (came == 0) return EIO;  // someone has cut the file
        bytes = bytes.subspan(static_cast<std::size_t>(came));
        place += static_cast<std::uint64_t>(came);
    }
    return 0;
}

void SpillFile::GiveBack(std::uint64_t begin, std::uint64_t end) {
    if (begin == end) return;
    kept_ -= end - begin;
    if (kept_ == 0) begin = 0;
    // Where the room stays taken, it is as long as the file is open: nothing depends on it.
    if (kept_ == 0 || end == end_) {
        end_ = begin;
        static_cast<void>(ftruncate(descriptor_, static_cast<off_t>(begin)) == 0);
    } else {
        static_cast<void>(fallocate(descriptor_, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, static_cast<off_t>(begin),
                                    static_cast<off_t>(end - begin)));
    }
}

SpilledPart::SpilledPart(std::shared_ptr<SpillFile> file, std::uint64_t begin, std::uint64_t end)
    : file_(std::move(file)), begin_(begin), end_(end) {}

SpilledPart& SpilledPart::operator=(SpilledPart&& other) noexcept {
    if (this != &other) {
        GiveBack();
        file_ = std::move(other.file_);
        begin_ = other.begin_;
        end_ = other.end_;
    }
    return *this;
}

SpilledPart::~SpilledPart() { GiveBack(); }

void SpilledPart::GiveBack() {
    if (file_ != nullptr) file_->GiveBack(begin_, end_);
}
