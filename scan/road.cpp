// road.cpp - the directories from a named one down to the one where a walk is, a limited number of them open.
#include "scan/road.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <utility>

namespace {

constexpr std::size_t fewestOpenOfARoad = 2;
constexpr std::size_t mostOpenOfARoad = 64;
constexpr std::size_t mostOpenOfAWalk = 512;

// Of directories with names of 255 bytes, 16 lie within PATH_MAX.
constexpr std::size_t lentLevelsApart = 8;

constexpr int namedDirectory = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr int directoryBelow = namedDirectory | O_NOFOLLOW;

// A part of the descriptors that the process may have, most at most.
std::size_t ShareOfDescriptors(rlim_t part, std::size_t most) {
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return most;
    return static_cast<std::size_t>(std::clamp<rlim_t>(limit.rlim_cur / part, fewestOpenOfARoad, most));
}

}  // namespace

Road::Road()
    : mostOpen_(ShareOfDescriptors(4, mostOpenOfARoad)), mostOpenOfAll_(ShareOfDescriptors(2, mostOpenOfAWalk)) {}

int Road::Start(const std::string& named) {
    LeaveAll();
    FileIdentity identity;
    int reason = 0;
    std::shared_ptr<const OpenDirectory> directory = Open(AT_FDCWD, named.c_str(), namedDirectory, identity, reason);
    if (directory == nullptr) return reason;
    path_ = named;
    Push(std::move(directory), identity);
    return 0;
}

void Road::SetEntry(std::string_view name) {
    ClearEntry();
    if (!path_.ends_with('/')) path_ += '/';
    path_ += name;
}

Entering Road::Enter(bool onDeviceOfNamed, int& reason) {
    FileIdentity identity;
    std::shared_ptr<const OpenDirectory> directory = Open(Descriptor(), Name(), directoryBelow, identity, reason);
    if (directory == nullptr) return Entering::Failed;
    if (onDeviceOfNamed && identity.device != levels_.front().identity.device) return Entering::OtherDevice;
    if (identities_.contains(identity)) return Entering::Loop;
    Push(std::move(directory), identity);
    return Entering::Entered;
}

void Road::Push(std::shared_ptr<const OpenDirectory> directory, const FileIdentity& identity) {
    levels_.push_back({std::move(directory), {}, identity, path_.size(), 0});
    identities_.insert(identity);
    if (levels_.size() > mostOpen_) CloseAbove(levels_.size() - mostOpen_);
}

void Road::Close(Level& level) {
    if (level.directory == nullptr) return;
    level.closed = level.directory;
    level.directory = nullptr;
}

void Road::CloseAbove(std::size_t index) {
    for (; firstOpen_ < index; ++firstOpen_) Close(levels_[firstOpen_]);
}

// Returns null with the errno of the failure in reason.
std::shared_ptr<const OpenDirectory> Road::Open(int above, const char* name, int flags, FileIdentity& identity,
                                                int& reason) {
    int descriptor = openat(above, name, flags);
    if (descriptor < 0 && (errno == EMFILE || errno == ENFILE) && !levels_.empty()) {
        mostOpen_ = fewestOpenOfARoad;  // from now on: others need some too
        CloseAbove(levels_.size() - 1);
        descriptor = openat(above, name, flags);
    }
    if (descriptor < 0) {
        reason = errno;
        return nullptr;
    }
    std::shared_ptr<const OpenDirectory> directory = std::make_shared<OpenDirectory>(descriptor, openCount_);
    struct stat status = {};
    if (fstat(descriptor, &status) != 0) {
        reason = errno;
        return nullptr;
    }
    identity = {status.st_dev, status.st_ino};
    return directory;
}

void Road::LeaveAll() {
    levels_.clear();
    identities_.clear();
    firstOpen_ = 1;
    path_.clear();
}

void Road::Leave() {
    if (levels_.size() == 1) return LeaveAll();
    const Level left = std::move(levels_.back());
    levels_.pop_back();
    identities_.erase(left.identity);
    ClearEntry();
    if (levels_.back().directory == nullptr && levels_.back().lost == 0) OpenFromBelow(left.directory);
}

// Some levels at once: they serve as what is lent to others. Where the first is another directory than it was, the
// named directory is where to begin.
void Road::OpenFromBelow(std::shared_ptr<const OpenDirectory> below) {
    const std::size_t last = levels_.size() - 1;
    firstOpen_ = last + 1;
    for (std::size_t index = last; below != nullptr && index > 0 && last - index < mostOpen_; --index) {
        Level& level = levels_[index];
        level.directory = level.closed.lock();
        if (level.directory == nullptr && OpenAgain(level, below->Descriptor(), "..") != 0) break;
        below = level.directory;
        firstOpen_ = index;
    }
    if (levels_[last].directory == nullptr) OpenFromNamed();
}

// Returns 0, or the errno of the failure: ESTALE when the directory there is another one.
int Road::OpenAgain(Level& level, int from, const char* name) {
    FileIdentity identity;
    int reason = 0;
    std::shared_ptr<const OpenDirectory> directory = Open(from, name, directoryBelow, identity, reason);
    if (directory == nullptr) return reason;
    if (identity != level.identity) return ESTALE;
    level.directory = std::move(directory);
    return 0;
}

// All levels but the first are closed. Where one can't be opened again, it is lost with those below it.
void Road::OpenFromNamed() {
    const std::size_t last = levels_.size() - 1;
    std::shared_ptr<const OpenDirectory> above = levels_.front().directory;
    int reason = 0;
    for (std::size_t index = 1; index <= last; ++index) {
        Level& level = levels_[index];
        const std::size_t nameStart = NameStart(index - 1);
        const std::string name = path_.substr(nameStart, level.pathBytes - nameStart);
        if (reason == 0) reason = OpenAgain(level, above->Descriptor(), name.c_str());
        level.lost = reason;
        above = level.directory;
        if (index + mostOpen_ <= last) Close(level);
    }
    firstOpen_ = last < mostOpen_ ? 1 : last + 1 - mostOpen_;
}

// Where the names of what lies in a directory begin in path_.
std::size_t Road::NameStart(std::size_t index) const {
    const std::size_t pathBytes = levels_[index].pathBytes;
    return path_[pathBytes - 1] == '/' ? pathBytes : pathBytes + 1;
}

std::shared_ptr<const OpenDirectory> Road::Lend(std::size_t& nameStart) const {
    std::shared_ptr<const OpenDirectory> directory = levels_.back().directory;
    std::size_t index = levels_.size() - 1;
    // One that is lent stays open when the walk is through with it.
    if (*openCount_ >= mostOpenOfAll_ && directory.use_count() == 1 + 1) index = LevelToLend(directory);
    nameStart = NameStart(index);
    return directory;
}

std::shared_ptr<const OpenDirectory> Road::HeldByOthers(const Level& level) {
    if (level.directory == nullptr) return level.closed.lock();
    return level.directory.use_count() > 1 ? level.directory : nullptr;
}

// For an entry of a directory that nobody else holds, when enough of them are open: one further up that serves many
// entries. It is the lowest that is held by others, or else the highest in reach of those that stand apart.
std::size_t Road::LevelToLend(std::shared_ptr<const OpenDirectory>& directory) const {
    std::size_t chosen = levels_.size() - 1;
    for (std::size_t index = chosen, turn = 0; index > 0; ++turn) {
        index = turn < mostOpenOfARoad ? index - 1 : 0;
        if (path_.size() - NameStart(index) >= PATH_MAX) break;
        if (std::shared_ptr<const OpenDirectory> held = HeldByOthers(levels_[index]); held != nullptr) {
            directory = std::move(held);
            return index;
        }
        if (index % lentLevelsApart != 0 || levels_[index].directory == nullptr) continue;
        directory = levels_[index].directory;
        chosen = index;
    }
    return chosen;
}
