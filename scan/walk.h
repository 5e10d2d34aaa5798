// walk.h - what a path stands for: a file, or everything below a directory.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scan/directory_reader.h"
#include "scan/open_directory.h"
#include "scan/road.h"
#include "scan/sorted_runs.h"
#include "scan/spill_file.h"

// In bytes, and far more than the system opens: of what is named and longer, only the beginning is told. What is met
// below a directory may have a longer path.
inline constexpr std::size_t longestPath = 65536;

enum class Met {
    File,           // below a directory: a regular file, a block device, or a link to one, when it was met
    Named,          // what was named itself, whatever it leads to, but for a directory
    StandardInput,  // no walk meets it: for those who hand on items of their own
    Failure,        // what can't be walked
    Note,           // what is passed over, and is no failure
};

// What a walk comes to.
struct WalkItem {
    Met met = Met::File;
    std::string path;  // as told, any bytes; of Failure and Note, what they are about
    // File: what path.substr(nameStart) is opened relative to, with openat. Mostly that is the name of the file, and
    // the directory that it lies in; while others hold many directories, some components, and one further up. It is
    // shorter than PATH_MAX.
    std::shared_ptr<const OpenDirectory> directory;
    std::size_t nameStart = 0;
    std::string reason;  // Failure, Note: in plain words
};

struct WalkOptions {
    bool sorted = true;                   // else a directory's files as the file system has them, then its directories
    bool oneFileSystem = false;           // directories on another device than the named one's are not entered
    std::uint32_t maxDepth = UINT32_MAX;  // 1: what lies in a named directory itself; 0: nothing below it
    std::size_t memory = std::size_t{16} << 20;  // in bytes, for names; what does not fit lies in a temporary file
    // Asked for what is met below a named directory, with its path relative to that one, and whether it is a directory,
    // not over a link. What it does not take is passed over, a directory with all that lies below it. Empty: takes all.
    std::function<bool(std::string_view relativePath, bool directory)> takes;
};

// Walks one named path after the other, to be called by one thread at a time. What lies below a directory comes in the
// order of the bytes of names, each directory in the place of its name; unsorted, at once.
//
// A symbolic link to a directory is followed for a named path and passed over below it. FIFOs, sockets, character
// devices and links that lead nowhere are no failures below a directory, and not even opened there: that would take a
// waiting writer's reader away again. A file costs the walk no system call where the file system tells the kinds of
// entries.
class Walk {
 public:
    explicit Walk(WalkOptions options);

    // Begins with a path; what is left of the one before is dropped.
    void Start(std::string named);

    // Returns false when there is no more, and when a signal ends the program.
    bool Next(WalkItem& item);

 private:
    // What is still to be visited in a directory on the road.
    struct Listing {
        std::unique_ptr<SortedRuns> names;  // unsorted, those of directories; null for none
        bool isRead = false;                // unsorted: the directory is still being read
        std::size_t memory = 0;             // of names, while the walk is further down
    };

    enum class Kind { File, Directory, LinkToDirectory, Fifo, Socket, CharacterDevice, BrokenLink };

    // Each returns whether it has come to an item.
    bool VisitNamed(WalkItem& item);
    bool BeginListing(WalkItem& item);
    bool ReadListing(WalkItem& item);
    bool Step(WalkItem& item);
    bool StepInReading(WalkItem& item);
    bool VisitEntry(Kind kind, WalkItem& item);
    bool EnterEntry(WalkItem& item);
    bool LeaveDirectory(WalkItem& item);
    bool TellFile(WalkItem& item) const;

    Kind KindOfEntry(unsigned char type) const;
    Kind KindOfLink() const;
    static Kind KindOf(mode_t mode);
    void PutListingAside();

    WalkOptions options_;
    std::optional<std::string> named_;  // not visited yet
    Road road_;
    std::vector<Listing> listings_;  // of the directories on the road
    DirectoryReader reader_;
    std::shared_ptr<SpillFile> spill_;
    std::size_t memoryAbove_ = 0;    // of listings that were put aside
    std::size_t firstInMemory_ = 0;  // listings above this one are not in memory any more, as far as that could be done
    std::string record_;             // a name with its kind
};
