// named_paths.h - the paths of the command line, and behind them those of a list.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "cli/options.h"
#include "scan/path_list.h"

// One thread at a time takes paths; any thread asks meanwhile how far that is.
class NamedPaths {
 public:
    // The options must outlive it.
    explicit NamedPaths(const Options& options);

    struct Named {
        std::string path;
        bool isStandardInput = false;
    };

    // The next path, or nothing behind the last one and when a signal has come.
    std::optional<Named> Next();

    // Why the list could not be read to its end, or nothing. To be asked behind the last path.
    std::optional<std::string> ListFailure() const;

    // How much was taken of all there is: bytes of the list where it is a file, or else paths of the command line. Total is
    // 0 where the end is not known.
    std::uint64_t Done() const { return done_; }
    std::uint64_t Total() const { return total_; }

 private:
    const Options& options_;
    std::size_t taken_ = 0;  // of the command line
    std::optional<PathList> list_;
    std::atomic<std::uint64_t> done_ = 0;
    std::atomic<std::uint64_t> total_;
};
