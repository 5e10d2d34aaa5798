// path_list.h - lists of paths in files.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "scan/descriptors.h"

// A list of paths, one a line, or NUL-separated; it is read as it is asked for paths, and no further than to the next.
class PathList {
 public:
    // file is "-" for standard input.
    PathList(const std::string& file, bool nulSeparated);

    // The next path; nothing at the end, at a failure, and when a signal ends the program. Empty entries are passed
    // over. An entry that is longer than longestPath comes cut one byte behind that, which a walk takes for a failure;
    // its rest is passed over, however much it is.
    std::optional<std::string> Next();

    // Why the list could not be read, or not to its end.
    const std::optional<std::string>& Failure() const { return failure_; }

    // How much of the list there is, in bytes, from where it is read from: known of regular files. They may grow.
    std::optional<std::uint64_t> TotalBytes() const { return totalBytes_; }
    // How much of that has been handed out so far.
    std::uint64_t BytesRead() const { return bytesRead_; }

 private:
    int Descriptor() const;
    bool Fill();
    bool TakeToSeparator(std::string& entry);

    OwnedDescriptor opened_;  // nothing for standard input
    bool isStandardInput_;
    char separator_;
    bool isAtEnd_ = false;
    std::array<char, readBlockBytes> block_;
    std::string_view rest_;  // of what was read last
    std::optional<std::string> failure_;
    std::optional<std::uint64_t> totalBytes_;
    std::uint64_t bytesRead_ = 0;
};

// Whether the paths of a list come through a pipe, a FIFO, a socket or a terminal: whoever writes them may wait for the
// answer to one path before the next.
bool PathsComeOneByOne(const std::string& file);
