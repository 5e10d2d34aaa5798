// road.h - the directories from a named one down to the one where a walk is, a limited number of them open.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "scan/open_directory.h"

// What entering a directory came to.
enum class Entering { Entered, Failed, OtherDevice, Loop };

// What a file is to the system.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;

    bool operator==(const FileIdentity&) const = default;
};

struct FileIdentityHash {
    std::size_t operator()(const FileIdentity& identity) const {
        return std::hash<ino_t>()(identity.inode) * 31 + std::hash<dev_t>()(identity.device);
    }
};

// Each directory is opened relative to the one above it, so that a path may be of any length. Of a long road the named
// directory and the lowest ones are open. One that was closed is opened again when the walk comes back to it: through
// ".." of the one below, or if that is no longer the same directory, from the named one down.
class Road {
 public:
    // As many directories are open as the limit for descriptors of the process leaves others enough.
    Road();

    // Leaves all and goes to a named directory, over links. Returns 0 or the errno of the failure.
    int Start(const std::string& named);

    // Sets the entry of the present directory that Path, RelativePath and Name tell of.
    void SetEntry(std::string_view name);

    // Goes down into the entry, if it is a directory itself and no link to one. reason is the errno when that Failed.
    Entering Enter(bool onDeviceOfNamed, int& reason);

    // Goes up; from the named directory, to nothing.
    void Leave();
    void LeaveAll();

    // How many directories lie on the road: 1 for the named one.
    std::size_t Depth() const { return levels_.size(); }

    // The present directory. There is none where Lost is not 0: it could not be opened again, with that errno, or with
    // ESTALE because another directory is in its place.
    int Descriptor() const { return levels_.back().directory->Descriptor(); }
    int Lost() const { return levels_.back().lost; }

    const std::string& Path() const { return path_; }  // of the entry if one is set, else of the directory
    std::string_view RelativePath() const { return std::string_view(path_).substr(NameStart(0)); }  // of the entry
    const char* Name() const { return path_.c_str() + NameStart(levels_.size() - 1); }              // of the entry
    void ClearEntry() { path_.resize(levels_.back().pathBytes); }

    // What path.substr(nameStart) of the entry can be opened relative to by others, who let go of it when they like. It
    // is the present directory as long as others do not hold too many.
    std::shared_ptr<const OpenDirectory> Lend(std::size_t& nameStart) const;

 private:
    struct Level {
        std::shared_ptr<const OpenDirectory> directory;  // null while it is closed for the road, or lost
        std::weak_ptr<const OpenDirectory> closed;       // then others may still hold it
        FileIdentity identity;
        std::size_t pathBytes = 0;  // how much of path_ is its path
        int lost = 0;
    };

    std::shared_ptr<const OpenDirectory> Open(int above, const char* name, int flags, FileIdentity& identity,
                                              int& reason);
    int OpenAgain(Level& level, int from, const char* name);
    void OpenFromBelow(std::shared_ptr<const OpenDirectory> below);
    void OpenFromNamed();
    void Push(std::shared_ptr<const OpenDirectory> directory, const FileIdentity& identity);
    static void Close(Level& level);
    void CloseAbove(std::size_t index);
    std::size_t NameStart(std::size_t index) const;
    static std::shared_ptr<const OpenDirectory> HeldByOthers(const Level& level);
    std::size_t LevelToLend(std::shared_ptr<const OpenDirectory>& directory) const;

    std::vector<Level> levels_;
    std::unordered_set<FileIdentity, FileIdentityHash> identities_;  // of all levels
    std::size_t firstOpen_ = 1;  // this level and those below it are open or lost; so is the named directory
    std::string path_;
    std::shared_ptr<OpenDirectoryCount> openCount_ = std::make_shared<OpenDirectoryCount>(0);
    std::size_t mostOpen_;       // of the road, beside the named directory
    std::size_t mostOpenOfAll_;  // with those that others hold
};
