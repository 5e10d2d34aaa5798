// folder_stack.cpp - which folders are new, against those above the last file.
#include "report/folder_stack.h"

#include <algorithm>
#include <utility>

#include "report/path_parts.h"

namespace {

// Where the component behind a folder's path ends. There must be one.
std::size_t NextEnd(std::string_view directory, std::size_t end) {
    return std::min(directory.find('/', end + 1), directory.size());
}

// Whether a directory is the folder that ends at end, or lies in it.
bool ReachesInto(std::string_view directory, std::string_view folder) {
    return directory.starts_with(folder) && (directory.size() == folder.size() || directory[folder.size()] == '/');
}

}  // namespace

FolderStack::FolderStack(const std::vector<std::string>& named, std::string workingDirectory)
    : workingDirectory_(std::move(workingDirectory)), named_(named.begin(), named.end()) {
    for (const std::string& path : named) absoluteNamed_.insert(AbsolutePath(workingDirectory_, path));
}

std::uint64_t FolderStack::FolderOf(std::string_view path, const std::function<void(const Folder&)>& tellNew) {
    if (named_.contains(path)) return 0;
    const std::string_view directory = path.substr(0, path.size() - NameOf(path).size());
    if (any_ && directory == last_) return InnermostNumber();
    any_ = true;
    last_ = directory;
    Enter(AbsolutePath(workingDirectory_, directory), tellNew);
    return InnermostNumber();
}

void FolderStack::Enter(std::string directory, const std::function<void(const Folder&)>& tellNew) {
    LeaveWhatIsNotAbove(directory);
    current_ = std::move(directory);
    std::size_t end = 0;
    if (levels_.empty()) {
        end = TopmostEnd(current_);
    } else {
        end = levels_.back().end < current_.size() ? NextEnd(current_, levels_.back().end) : std::string::npos;
    }
    while (end != std::string::npos) {
        const Folder folder = {std::string_view(current_).substr(0, end), NextNumber(), InnermostNumber()};
        tellNew(folder);
        levels_.push_back({end, folder.number});
        end = end < current_.size() ? NextEnd(current_, end) : std::string::npos;
    }
}

void FolderStack::LeaveWhatIsNotAbove(std::string_view directory) {
    while (!levels_.empty() && !ReachesInto(directory, std::string_view(current_).substr(0, levels_.back().end))) {
        levels_.pop_back();
    }
}

// Where the path of the topmost folder with a number ends; npos if there is none above a file in this directory.
std::size_t FolderStack::TopmostEnd(std::string_view directory) const {
    for (std::size_t end = 0; !absoluteNamed_.empty(); end = NextEnd(directory, end)) {
        if (absoluteNamed_.contains(directory.substr(0, end))) return end;
        if (end == directory.size()) break;
    }
    const bool below = ReachesInto(directory, workingDirectory_);
    const std::size_t start = below ? workingDirectory_.size() : 0;
    return start < directory.size() ? NextEnd(directory, start) : std::string::npos;
}
