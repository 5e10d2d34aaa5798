// record.h - what the program says about one path.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "fiid/detect.h"

// A file as the file system tells it: what shows whether it has changed since it was looked at.
struct FileState {
    bool known = false;  // all else is 0 where it is false
    std::uint64_t size = 0;
    std::int64_t modifiedSeconds = 0;
    std::uint32_t modifiedNanoseconds = 0;
    std::uint64_t inode = 0;
    std::uint64_t device = 0;
};

enum class ChangeKind { None, New, Changed, Gone };

// What became of a path from one run to the next, as a store knows it.
struct Change {
    ChangeKind kind = ChangeKind::None;
    std::int64_t run = 0;      // the run that saw it
    std::int64_t seconds = 0;  // when that run began, since 1970-01-01 UTC
    std::string before;        // the name of the earlier answer or the earlier error; empty for New
};

struct Record {
    std::string path;                  // as given or as found, any bytes
    std::optional<std::string> error;  // in plain words, when the path could not be read
    fiid_result answer;                // of no meaning when there is an error
    FileState state;
    std::string hash;          // of the whole file, in lower-case hexadecimal; empty when none was asked for
    Change change;             // for --query changes
    std::uint64_t copies = 0;  // how many files of a store have these bytes, for --query duplicates; else 0
};
