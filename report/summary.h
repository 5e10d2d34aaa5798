// summary.h - how many files there are of what.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "report/group_counts.h"
#include "scan/record.h"

// What files are counted by.
enum class SummaryKey {
    Format,     // the most precise identifier
    Family,     // of formats
    Mime,       // media type, as --mime tells it
    Extension,  // of the path's name, in lower case, without a full stop
    Directory,  // what stands in front of the path's last slash
};

struct SummaryGroup {
    // Of the format; else the key: the family's word, the media type, the extension ("" for none) or the directory. The
    // last two are any bytes.
    std::string name;

    // For SummaryKey::Format: the most precise identifier, and the PRONOM identifiers that its files have, with one blank
    // between two. Else 0 and "".
    std::uint16_t format = 0;
    std::string puids;

    FileCount count;
};

struct SummaryTotals {
    FileCount all;                 // every file, also those that could not be read
    FileCount unknown;             // nothing was found that tells the format
    std::uint64_t unreadable = 0;  // files, or other paths, that could not be read; no size is known of them
    FileCount unusual;             // the extension is not usual for the format
};

// Counts the records of a run. Every file that could be read is in one group, but for unknown ones of SummaryKey::Format:
// they have no format. An unknown or unusual file is also counted as such. A size that is not known counts as 0.
//
// Memory stays within some times the budget, however many groups there are.
class Summary {
 public:
    static constexpr std::size_t usualMemory = std::size_t{8} << 20;

    explicit Summary(SummaryKey key, std::size_t memory = usualMemory) : key_(key), groups_(memory) {}

    void Add(const Record& record);

    // Files whose records are like this one in all that is counted: a store tells them by one row. bytes are their sizes
    // together; the record's own size only tells whether they are empty.
    void AddMany(const Record& record, const FileCount& count);

    // Files that others have counted. format and puids are looked at for SummaryKey::Format alone. They are not in the
    // totals yet: those come with AddTotals.
    void AddGroup(const SummaryGroup& group);
    void AddTotals(const SummaryTotals& totals);

    SummaryKey Key() const { return key_; }
    const SummaryTotals& Totals() const { return totals_; }

    // Ends the adding. Call it once, and then Next until it returns false: the largest number of files first, those with
    // the same by name, and by identifier.
    void Finish();
    bool Next(SummaryGroup& group);

    // Why groups are missing, in plain words, or "".
    const std::string& Failure() const { return groups_.Failure(); }

 private:
    struct FormatGroup {
        std::string name;
        std::set<std::string, std::less<>> puids;  // lists as records have them
        FileCount count;
    };

    void AddToFormat(std::uint16_t format, std::string_view name, std::string_view puids, const FileCount& count);
    std::string_view KeyOf(const Record& record);

    SummaryKey key_;
    SummaryTotals totals_;
    std::map<std::uint16_t, FormatGroup> formats_;  // for SummaryKey::Format
    GroupCounts groups_;                            // for all other keys
    std::string lowerExtension_;                    // kept for its memory
    std::vector<SummaryGroup> formatsLeft_;         // from Finish on; the next one is the last
};

// The media type that --mime tells of an answer: never "".
std::string_view ToldMime(const fiid_result& answer);

// The extension of a path's name, as the library takes it: what follows the name's last full stop, as it is written. ""
// for a name without one, and for a hidden one that has no other.
std::string_view ExtensionOfPath(std::string_view path);

// What stands in front of a path's last slash: "." where there is none, "/" for what lies in the root.
std::string_view DirectoryOfPath(std::string_view path);
