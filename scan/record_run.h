// record_run.h - records in their order, in memory or in a spill file, read one by one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "scan/record_block.h"
#include "scan/spill_file.h"

class RecordRun {
 public:
    // A block that is finished.
    explicit RecordRun(RecordBlock block);

    // What next hands out, until it returns false, written to a spill file. Returns nothing when that fails.
    static std::optional<RecordRun> Write(const std::function<bool(std::string_view&)>& next,
                                          const std::shared_ptr<SpillFile>& file);

    // Goes to the first record, or from the present one to the next. Returns false when there is none, and when it
    // can't be read. A run in a file is read through a buffer of bufferBytes, or as much as its longest record needs.
    bool Next(std::size_t bufferBytes);
    std::string_view Record() const { return record_; }

    // Makes the present record the next one again. Once behind each Next that returned true.
    void PutBack();

    // Gives up the buffer, and with it the present record.
    void DropBuffer();

    // Makes the first record the next one again.
    void Rewind();

    // Writes what is left of a run in memory to a spill file, if that can be done.
    void Spill(const std::shared_ptr<SpillFile>& file);

    bool IsAtEnd() const { return IsInMemory() ? block_->IsAtEnd() : error_ != 0 || next_ == part_.End(); }
    bool IsInMemory() const { return block_.has_value(); }
    int Error() const { return error_; }                    // the errno of the read that failed, or 0
    std::size_t LongestRecord() const { return longest_; }  // in bytes of the file; 0 in memory
    std::size_t Memory() const { return buffer_.capacity() + (IsInMemory() ? block_->Memory() : 0); }

 private:
    RecordRun(SpilledPart part, std::size_t longest);

    std::string_view Buffered() const;
    void Fill(std::size_t bufferBytes);

    std::optional<RecordBlock> block_;
    RecordBlock::Place present_ = 0;  // in the block: where record_ is
    SpilledPart part_;
    std::size_t longest_ = 0;
    std::uint64_t next_ = 0;         // in the file: where the next record begins
    std::uint64_t bufferBegin_ = 0;  // in the file
    std::vector<char> buffer_;
    std::string_view record_;
    int error_ = 0;
};
