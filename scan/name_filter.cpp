// name_filter.cpp - which of the names below a directory are looked at.
#include "scan/name_filter.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

// Of an argument that is refused, this many bytes are told.
constexpr std::size_t bytesTold = 100;

std::string FailureOf(std::string_view argument, const std::string& reason) {
    if (argument.empty()) return "an empty glob " + reason;
    const bool cut = argument.size() > longestGlob;
    return std::string(cut ? argument.substr(0, bytesTold) : argument) + (cut ? "...: " : ": ") + reason;
}

}  // namespace

std::string NameFilter::AddGlob(std::string_view glob) {
    const bool takes = !glob.starts_with('!');
    Rule rule = {{}, takes};
    const std::string reason = rule.glob.Compile(glob.substr(takes ? 0 : 1),
                                                 takes ? TrailingSlash::DirectoryAndBelow : TrailingSlash::Directory);
    if (!reason.empty()) return FailureOf(glob, reason);
    globs_.push_back(std::move(rule));
    takesOnlyMatches_ = takesOnlyMatches_ || takes;
    return "";
}

std::string NameFilter::AddExclude(std::string_view glob) {
    Glob exclude;
    const std::string reason = exclude.Compile(glob);
    if (!reason.empty()) return FailureOf(glob, reason);
    excludes_.push_back(std::move(exclude));
    return "";
}

bool NameFilter::TakesFile(std::string_view path) const {
    if (IsLeftOutHidden(path)) return false;
    if (std::ranges::any_of(excludes_, [&](const Glob& glob) { return glob.MatchesFile(path); })) return false;
    const auto last =
        std::find_if(globs_.rbegin(), globs_.rend(), [&](const Rule& rule) { return rule.glob.MatchesFile(path); });
    return last != globs_.rend() ? last->takes : !takesOnlyMatches_;
}

bool NameFilter::EntersDirectory(std::string_view path) const {
    if (IsLeftOutHidden(path)) return false;
    if (std::ranges::any_of(excludes_, [&](const Glob& glob) { return glob.MatchesDirectory(path); })) return false;
    const auto last = std::find_if(globs_.rbegin(), globs_.rend(),
                                   [&](const Rule& rule) { return rule.glob.MatchesDirectory(path); });
    return last == globs_.rend() || last->takes;
}

bool NameFilter::IsLeftOutHidden(std::string_view path) const {
    return !hidden_ && path.substr(path.rfind('/') + 1).starts_with('.');  // behind the last slash, or all of it
}
