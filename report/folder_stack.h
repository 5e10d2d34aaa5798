// folder_stack.h - numbers for files and the folders above them.
#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

struct Folder {
    std::string_view path;  // absolute; "" for the root
    std::uint64_t number;
    std::uint64_t parent;  // number of the folder that it lies in, 0 for none
};

// Numbers files and folders from 1 on, as they come. Of folders those are kept that lie above the last file, so that
// memory is bounded by the depth of a tree: a folder that is left and come back to has another number then.
//
// The topmost folder with a number is one that was named to the program. For files that do not lie below such a one, as
// those of lists, it is the first one below the working directory, or below the root.
class FolderStack {
 public:
    // Of named paths some may be files: they lie in no folder.
    FolderStack(const std::vector<std::string>& named, std::string workingDirectory);

    // Returns the number of the folder that a file lies in, 0 for none. In front of that, calls tellNew for each folder
    // above the file that has no number yet, outer ones first.
    std::uint64_t FolderOf(std::string_view path, const std::function<void(const Folder&)>& tellNew);

    // The number for the next file.
    std::uint64_t NextNumber() { return ++lastNumber_; }

 private:
    struct Level {
        std::size_t end;  // in current_: where the folder's path ends
        std::uint64_t number;
    };

    void Enter(std::string directory, const std::function<void(const Folder&)>& tellNew);
    void LeaveWhatIsNotAbove(std::string_view directory);
    std::size_t TopmostEnd(std::string_view directory) const;
    std::uint64_t InnermostNumber() const { return levels_.empty() ? 0 : levels_.back().number; }

    std::string workingDirectory_;
    std::set<std::string, std::less<>> named_;          // as they are
    std::set<std::string, std::less<>> absoluteNamed_;  // in their absolute form
    std::string last_;                                  // the directory of the last file, as in its path
    bool any_ = false;                                  // there was a last file
    std::string current_;                               // the same in its absolute form
    std::vector<Level> levels_;                         // folders above the last file, outer ones first
    std::uint64_t lastNumber_ = 0;
};
