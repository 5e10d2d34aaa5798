// named_paths.h - the paths of the command line, and behind them those of a list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "cli/options.h"
#include "scan/path_list.h"

class NamedPaths {
 public:
    // The options must outlive it.
    explicit NamedPaths(const Options& options) : options_(options) {}

    struct Named {
        std::string path;
        bool isStandardInput = false;
    };

    // The next path, or nothing behind the last one and when a signal has come.
    std::optional<Named> Next();

    // Why the list could not be read to its end, or nothing.
    std::optional<std::string> ListFailure() const;

    // How much was taken of all there is: bytes of the list where it is a file, or else paths of the command line. Total is
    // 0 where the end is not known.
    std::uint64_t Done() const;
    std::uint64_t Total() const;

 private:
    const Options& options_;
    std::size_t taken_ = 0;  // of the command line
    std::optional<PathList> list_;
};
