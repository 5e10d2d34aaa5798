// sorted_runs.cpp - byte strings, sorted or in a queue, at a bounded cost of memory whatever their number.
#include "scan/sorted_runs.h"

#include <algorithm>
#include <utility>

namespace {

// Buffers for reading: smaller ones cost too many system calls, larger ones save none that count.
constexpr std::size_t smallestBuffer = 4096;
constexpr std::size_t largestBuffer = 65536;

std::size_t BufferBytes(std::size_t memory, std::size_t runs) {
    return std::clamp(memory / runs, smallestBuffer, largestBuffer);
}

// What a heap of the standard library, which has the greatest in front, takes for less.
bool ComesLater(const RecordRun* left, const RecordRun* right) { return left->Record() > right->Record(); }

}  // namespace

SortedRuns::Merge::Merge(std::vector<RecordRun>& runs, std::size_t count, std::size_t bufferBytes)
    : bufferBytes_(bufferBytes) {
    for (std::size_t index = 0; index < count; ++index) {
        if (runs[index].Next(bufferBytes_)) heap_.push_back(&runs[index]);
    }
    std::ranges::make_heap(heap_, ComesLater);
}

bool SortedRuns::Merge::Next(std::string_view& record) {
    if (taken_) StepOn();
    taken_ = !heap_.empty();
    if (taken_) record = heap_.front()->Record();
    return taken_;
}

void SortedRuns::Merge::StepOn() {
    std::ranges::pop_heap(heap_, ComesLater);
    if (heap_.back()->Next(bufferBytes_)) {
        std::ranges::push_heap(heap_, ComesLater);
    } else {
        heap_.back()->DropBuffer();
        heap_.pop_back();
    }
}

bool SortedRuns::Merge::IsAtEnd() const {
    return heap_.empty() || (taken_ && heap_.size() == 1 && heap_.front()->IsAtEnd());
}

void SortedRuns::Merge::PutBack() {
    for (RecordRun* const run : heap_) {
        if (!taken_ || run != heap_.front()) run->PutBack();
    }
}

SortedRuns::SortedRuns(std::size_t memory, RecordOrder order, std::shared_ptr<SpillFile> file)
    : memory_(std::min(memory, RecordBlock::largestMemory)), order_(order), file_(std::move(file)) {}

// The last part of the file is given back first, so that the file gets shorter.
SortedRuns::~SortedRuns() {
    while (!runs_.empty()) runs_.pop_back();
}

void SortedRuns::Add(std::string_view record) {
    if (block_.Memory() > 0 && block_.MemoryWith(record.size()) > memory_) SealBlock();
    block_.Add(record);
}

void SortedRuns::Finish() {
    if (runs_.empty()) return block_.Finish(order_);
    SealBlock();
    if (order_ == RecordOrder::Sorted) MergeInPasses();
}

void SortedRuns::SealBlock() {
    block_.Finish(order_);
    MoveBlockToRuns();
}

void SortedRuns::MoveBlockToRuns() {
    runs_.emplace_back(std::move(block_));
    block_ = RecordBlock();
    if (file_ == nullptr) file_ = std::make_shared<SpillFile>();
    runs_.back().Spill(file_);
}

std::size_t SortedRuns::MostRunsAtOnce() const {
    std::size_t buffer = smallestBuffer;
    for (const RecordRun& run : runs_) buffer = std::max(buffer, run.LongestRecord());
    return std::max<std::size_t>(memory_ / buffer, 2);
}

// Until the buffers of all runs fit in the memory. Runs in memory mean that nothing more can be written.
void SortedRuns::MergeInPasses() {
    const std::size_t most = MostRunsAtOnce();
    while (runs_.size() > most && std::ranges::none_of(runs_, &RecordRun::IsInMemory)) {
        if (!MergeFirst(std::min(most, runs_.size() - most + 1))) return;
    }
}

bool SortedRuns::MergeFirst(std::size_t count) {
    const auto first = runs_.begin();
    const auto behind = first + static_cast<std::ptrdiff_t>(count);
    Merge merge(runs_, count, BufferBytes(memory_, count));
    std::optional<RecordRun> merged =
        RecordRun::Write([&](std::string_view& record) { return merge.Next(record); }, file_);
    if (!merged.has_value()) {
        std::for_each(first, behind, [](RecordRun& run) { run.Rewind(); });
        return false;
    }
    std::for_each(first, behind, [this](const RecordRun& run) { error_ = std::max(error_, run.Error()); });
    runs_.erase(first, behind);
    runs_.push_back(*std::move(merged));
    return true;
}

bool SortedRuns::Next(std::string_view& record) {
    if (runs_.empty()) return block_.Next(record);
    if (order_ == RecordOrder::AsAdded) return NextInTurn(record);
    if (merge_ == nullptr) merge_ = std::make_unique<Merge>(runs_, runs_.size(), BufferBytes(memory_, runs_.size()));
    return merge_->Next(record);
}

bool SortedRuns::NextInTurn(std::string_view& record) {
    for (; turn_ < runs_.size(); ++turn_) {
        RecordRun& run = runs_[turn_];
        if (run.Next(BufferBytes(memory_, 1))) {
            record = run.Record();
            return true;
        }
        run.DropBuffer();
    }
    return false;
}

bool SortedRuns::IsAtEnd() const {
    if (runs_.empty()) return block_.IsAtEnd();
    return merge_ != nullptr ? merge_->IsAtEnd() : std::ranges::all_of(runs_, &RecordRun::IsAtEnd);
}

void SortedRuns::SpillRest() {
    if (merge_ != nullptr) merge_->PutBack();
    merge_ = nullptr;
    if (runs_.empty() && !block_.IsAtEnd()) return MoveBlockToRuns();
    block_ = RecordBlock();
    for (RecordRun& run : runs_) {
        run.DropBuffer();
        run.Spill(file_);  // a failed file lets it be
    }
}

std::size_t SortedRuns::Memory() const {
    std::size_t memory = block_.Memory();
    for (const RecordRun& run : runs_) memory += run.Memory();
    return memory;
}

int SortedRuns::Error() const {
    int error = error_;
    for (const RecordRun& run : runs_) error = std::max(error, run.Error());
    return error;
}
