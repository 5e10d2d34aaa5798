// named_paths.cpp - the paths of the command line, and behind them those of a list.
#include "cli/named_paths.h"

#include <utility>

std::optional<NamedPaths::Named> NamedPaths::Next() {
    if (taken_ < options_.paths.size()) {
        const std::string& path = options_.paths[taken_++];
        return Named{path, path == "-"};
    }
    if (!options_.filesFrom.has_value()) return std::nullopt;
    if (!list_.has_value()) list_.emplace(*options_.filesFrom, options_.nulSeparated);
    std::optional<std::string> path = list_->Next();
    if (!path.has_value()) return std::nullopt;
    return Named{std::move(*path), false};
}

std::optional<std::string> NamedPaths::ListFailure() const {
    return list_.has_value() ? list_->Failure() : std::nullopt;
}

std::uint64_t NamedPaths::Done() const {
    return list_.has_value() && list_->TotalBytes().has_value() ? list_->BytesRead() : taken_;
}

// Of a directory nobody knows how much lies below it: a command line of one path tells nothing.
std::uint64_t NamedPaths::Total() const {
    if (options_.filesFrom.has_value()) return list_.has_value() ? list_->TotalBytes().value_or(0) : 0;
    return options_.paths.size() > 1 ? options_.paths.size() : 0;
}
