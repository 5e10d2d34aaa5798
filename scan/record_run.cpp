// record_run.cpp - records in their order, in memory or in a spill file, read one by one.
#include "scan/record_run.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace {

constexpr std::size_t writtenAtOnce = 65536;

}  // namespace

RecordRun::RecordRun(RecordBlock block) : block_(std::move(block)) {}

RecordRun::RecordRun(SpilledPart part, std::size_t longest)
    : part_(std::move(part)), longest_(longest), next_(part_.Begin()) {}

std::optional<RecordRun> RecordRun::Write(const std::function<bool(std::string_view&)>& next,
                                          const std::shared_ptr<SpillFile>& file) {
    const std::uint64_t begin = file->End();
    std::vector<char> bytes;
    std::size_t longest = 0;
    bool written = true;
    for (std::string_view record; written && next(record);) {
        longest = std::max(longest, RecordBytes(record.size()));
        AppendRecord(bytes, record);
        if (bytes.size() < writtenAtOnce) continue;
        written = file->Add({bytes.data(), bytes.size()});
        bytes.clear();
    }
    written = written && file->Add({bytes.data(), bytes.size()});
    SpilledPart part(file, begin, file->End());
    if (!written) return std::nullopt;
    return RecordRun(std::move(part), longest);
}

bool RecordRun::Next(std::size_t bufferBytes) {
    if (IsAtEnd()) return false;
    if (IsInMemory()) {
        present_ = block_->Here();
        return block_->Next(record_);
    }
    if (!TakeRecord(Buffered(), record_)) {
        Fill(bufferBytes);
        if (error_ != 0) return false;
        if (!TakeRecord(Buffered(), record_)) {
            error_ = EIO;  // other bytes than were written
            return false;
        }
    }
    next_ += RecordBytes(record_.size());
    return true;
}

void RecordRun::PutBack() {
    if (IsInMemory()) {
        block_->GoTo(present_);
    } else {
        next_ -= RecordBytes(record_.size());
    }
}

void RecordRun::DropBuffer() { buffer_ = std::vector<char>(); }

void RecordRun::Rewind() {
    if (IsInMemory()) {
        block_->GoTo(0);
    } else {
        next_ = part_.Begin();
        DropBuffer();
    }
}

void RecordRun::Spill(const std::shared_ptr<SpillFile>& file) {
    if (!IsInMemory() || IsAtEnd()) return;
    const RecordBlock::Place rest = block_->Here();
    std::optional<RecordRun> run = Write([this](std::string_view& record) { return block_->Next(record); }, file);
    if (run.has_value()) {
        *this = *std::move(run);
    } else {
        block_->GoTo(rest);
    }
}

std::string_view RecordRun::Buffered() const {
    if (buffer_.empty()) return {};
    const auto offset = static_cast<std::size_t>(next_ - bufferBegin_);
    return {buffer_.data() + offset, buffer_.size() - offset};
}

void RecordRun::Fill(std::size_t bufferBytes) {
    const std::uint64_t size = std::min<std::uint64_t>(std::max(bufferBytes, longest_), part_.End() - next_);
    buffer_.resize(static_cast<std::size_t>(size));
    bufferBegin_ = next_;
    error_ = part_.File().Read(next_, buffer_);
}
