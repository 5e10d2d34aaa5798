// named_paths.cpp - the paths of the command line, and behind them those of a list.
#include "cli/named_paths.h"

#include <utility>

// Of a directory nobody knows how much lies below it: a command line of one path tells nothing.
NamedPaths::NamedPaths(const Options& options)
    : options_(options), total_(options.filesFrom.has_value() || options.paths.size() < 2 ? 0 : options.paths.size()) {}

std::optional<NamedPaths::Named> NamedPaths::Next() {
    if (taken_ < options_.paths.size()) {
        const std::string& path = options_.paths[taken_++];
        done_ = taken_;
        return Named{path, path == "-"};
    }
    if (!options_.filesFrom.has_value()) return std::nullopt;
    if (!list_.has_value()) list_.emplace(*options_.filesFrom, options_.nulSeparated);
    std::optional<std::string> path = list_->Next();
    if (list_->TotalBytes().has_value()) {
        done_ = list_->BytesRead();
        total_ = *list_->TotalBytes();
    }
    if (!path.has_value()) return std::nullopt;
    return Named{std::move(*path), false};
}

std::optional<std::string> NamedPaths::ListFailure() const {
    return list_.has_value() ? list_->Failure() : std::nullopt;
}
