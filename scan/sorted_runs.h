// sorted_runs.h - byte strings, sorted or in a queue, at a bounded cost of memory whatever their number.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "scan/record_block.h"
#include "scan/record_run.h"
#include "scan/spill_file.h"

// All records are added, then taken out one by one. Up to a number of bytes they stay in memory; beyond it they lie in
// runs in a temporary file, which are merged as they are taken out. Where no file can be made or written, all of them
// stay in memory: nothing is lost. A record may be of any length, and equal ones all come out.
class SortedRuns {
 public:
    // memory is in bytes, the index counted, and holds but for some 64 KiB; records of which two do not fit in it take
    // what they need. A file may be shared with others in the same thread; null for one of its own.
    explicit SortedRuns(std::size_t memory, RecordOrder order = RecordOrder::Sorted,
                        std::shared_ptr<SpillFile> file = nullptr);
    SortedRuns(const SortedRuns&) = delete;
    SortedRuns& operator=(const SortedRuns&) = delete;
    ~SortedRuns();

    void Add(std::string_view record);

    // Once, behind all Adds and in front of all that follows.
    void Finish();

    // Returns false when there are no more. The record lives until the next call of Next or SpillRest.
    bool Next(std::string_view& record);

    bool IsAtEnd() const;

    // Moves what is left to the file, for others who need the memory. Next goes on behind it.
    void SpillRest();

    // What is in memory at present, in bytes.
    std::size_t Memory() const;

    // The errno when the file could not be read, and records were lost by that, or 0. To be asked at the end.
    int Error() const;

 private:
    void SealBlock();
    void MoveBlockToRuns();
    void MergeInPasses();
    bool MergeFirst(std::size_t count);
    std::size_t MostRunsAtOnce() const;
    bool NextInTurn(std::string_view& record);

    // Several runs as one in the order of bytes. The runs stay where they are meanwhile.
    class Merge {
     public:
        Merge(std::vector<RecordRun>& runs, std::size_t count, std::size_t bufferBytes);
        bool Next(std::string_view& record);
        bool IsAtEnd() const;
        void PutBack();  // so that a new Merge goes on behind the last record

     private:
        void StepOn();

        std::vector<RecordRun*> heap_;  // the least record first; each has a present record
        std::size_t bufferBytes_;
        bool taken_ = false;  // the least one has been handed out
    };

    std::size_t memory_;
    RecordOrder order_;
    std::shared_ptr<SpillFile> file_;
    RecordBlock block_;            // all there is, when there are no runs
    std::vector<RecordRun> runs_;  // in the order in which they were added, as far as that counts
    std::size_t turn_ = 0;         // AsAdded: the run that is read
    std::unique_ptr<Merge> merge_;
    int error_ = 0;  // of a pass
};
