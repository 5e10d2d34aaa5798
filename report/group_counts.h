// group_counts.h - files counted under any number of names, in bounded memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

// So many files, and their sizes together. What would be above UINT64_MAX is told as that.
struct FileCount {
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;

    FileCount& operator+=(const FileCount& other);
    bool operator==(const FileCount&) const = default;
};

class SortedRuns;

// Counts come in under names in any order and go out once for each name: the largest number of files first, those that
// have the same by name, as unsigned bytes. A table holds the names in memory up to a budget; what is more goes through a
// temporary file, sorted.
class GroupCounts {
 public:
    // memory is the budget of the table, in bytes; sorting takes as much again.
    explicit GroupCounts(std::size_t memory);
    GroupCounts(const GroupCounts&) = delete;
    GroupCounts& operator=(const GroupCounts&) = delete;
    ~GroupCounts();

    // A name is any bytes.
    void Add(std::string_view name, const FileCount& count);

    // Ends the adding. Call it once, and then Next until it returns false.
    void Finish();
    bool Next(std::string& name, FileCount& count);

    // Why groups are missing, in plain words: what was written to the temporary file could not be read. Else "".
    const std::string& Failure() const { return failure_; }

 private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
    };

    void SpillTable();
    void OrderByCount(std::string_view name, const FileCount& count);
    void OrderSpilled();
    void KeepFailure(const SortedRuns& runs);

    std::size_t memory_;
    std::size_t tableBytes_ = 0;
    std::unordered_map<std::string, FileCount, Hash, std::equal_to<>> table_;
    std::unique_ptr<SortedRuns> byName_;   // null as long as all is in the table
    std::unique_ptr<SortedRuns> byCount_;  // from Finish on
    std::string record_;                   // kept for its memory
    std::string failure_;
};
