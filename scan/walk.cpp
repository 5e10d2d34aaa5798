// walk.cpp - directories, recursively and in sorted order.
//
// A sorted directory is read as a whole, when its turn comes, as records of name, NUL and kind, which are in the order
// of the names because no name has a NUL. What an entry is where the file system does not tell, and what a link leads
// to, is asked when its turn comes.
#include "scan/walk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "scan/interrupt.h"

namespace {

// No path of a file system is longer; of a list that is read the wrong way round, more would be told.
constexpr std::size_t longestToldPath = 4096;

bool IsDirectory(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool Tell(WalkItem& item, Met met, std::string_view path, std::string_view reason) {
    item.met = met;
    item.path = path;
    item.directory = nullptr;
    item.nameStart = 0;
    item.reason = reason;
    return true;
}

}  // namespace

Walk::Walk(WalkOptions options) : options_(std::move(options)) {}

void Walk::Start(std::string named) {
    named_ = std::move(named);
    listings_.clear();
    road_.LeaveAll();
    spill_ = std::make_shared<SpillFile>();  // a disk that was full may have room again
    memoryAbove_ = firstInMemory_ = 0;
}

bool Walk::Next(WalkItem& item) {
    while (!Interrupted()) {
        if (named_.has_value()) {
            if (VisitNamed(item)) return true;
        } else if (listings_.empty()) {
            return false;
        } else if (Step(item)) {
            return true;
        }
    }
    return false;
}

bool Walk::VisitNamed(WalkItem& item) {
    std::string path;
    path.swap(*named_);
    named_.reset();
    const std::string_view toldPath = std::string_view(path).substr(0, longestToldPath);
    if (path.find('\0') != std::string::npos) {
        return Tell(item, Met::Failure, toldPath,
                    "a path can't hold a NUL byte; -0 reads a list that is separated by them");
    }
    if (path.size() > longestPath) return Tell(item, Met::Failure, toldPath, "is too long for a path");
    if (!IsDirectory(path)) return Tell(item, Met::Named, path, "");
    if (options_.maxDepth == 0) return false;
    const int reason = road_.Start(path);
    return reason == 0 ? BeginListing(item) : Tell(item, Met::Failure, path, std::strerror(reason));
}

bool Walk::BeginListing(WalkItem& item) {
    PutListingAside();
    const std::size_t memory = options_.memory - std::min(memoryAbove_, options_.memory / 2);
    const RecordOrder order = options_.sorted ? RecordOrder::Sorted : RecordOrder::AsAdded;
    Listing& listing = listings_.emplace_back();
    listing.names = std::make_unique<SortedRuns>(memory, order, spill_);
    listing.isRead = !options_.sorted;
    reader_.Start(road_.Descriptor());
    return options_.sorted && ReadListing(item);
}

bool Walk::ReadListing(WalkItem& item) {
    SortedRuns& names = *listings_.back().names;
    unsigned char type = DT_UNKNOWN;
    for (std::string_view name; reader_.Next(name, type);) {
        record_ = name;
        record_ += '\0';
        record_ += static_cast<char>(type);
        names.Add(record_);
    }
    names.Finish();
    return reader_.Error() != 0 && Tell(item, Met::Failure, road_.Path(), std::strerror(reader_.Error()));
}

// Half of the memory is for the listings above the one that begins. Beyond that they move to the file, those further up
// first: it takes longest until the walk comes back to them.
void Walk::PutListingAside() {
    if (listings_.empty()) return;
    Listing& last = listings_.back();
    if (last.names->IsAtEnd() && last.names->Error() == 0) {
        last.names = nullptr;
    } else {
        last.memory = last.names->Memory();
        memoryAbove_ += last.memory;
    }
    for (; memoryAbove_ > options_.memory / 2 && firstInMemory_ < listings_.size(); ++firstInMemory_) {
        Listing& listing = listings_[firstInMemory_];
        if (listing.names == nullptr) continue;
        listing.names->SpillRest();
        memoryAbove_ -= listing.memory;
        listing.memory = listing.names->Memory();
        memoryAbove_ += listing.memory;
    }
}

bool Walk::Step(WalkItem& item) {
    Listing& listing = listings_.back();
    if (listing.isRead) return StepInReading(item);
    if (listing.names != nullptr && road_.Lost() != 0) {
        listing.names = nullptr;
        const bool isReplaced = road_.Lost() == ESTALE;
        return Tell(item, Met::Failure, road_.Path(),
                    std::string("can't be opened again, and some of it was not looked at: ") +
                        (isReplaced ? "another directory is in its place" : std::strerror(road_.Lost())));
    }
    std::string_view record;
    if (listing.names == nullptr || !listing.names->Next(record)) return LeaveDirectory(item);
    if (!options_.sorted) {
        road_.SetEntry(record);
        return EnterEntry(item);
    }
    const auto type = static_cast<unsigned char>(record.back());
    record.remove_suffix(2);
    road_.SetEntry(record);
    return VisitEntry(KindOfEntry(type), item);
}

bool Walk::StepInReading(WalkItem& item) {
    std::string_view name;
    unsigned char type = DT_UNKNOWN;
    if (reader_.Next(name, type)) {
        road_.SetEntry(name);
        return VisitEntry(KindOfEntry(type), item);
    }
    listings_.back().isRead = false;
    listings_.back().names->Finish();
    road_.ClearEntry();
    return reader_.Error() != 0 && Tell(item, Met::Failure, road_.Path(), std::strerror(reader_.Error()));
}

bool Walk::LeaveDirectory(WalkItem& item) {
    const SortedRuns* const names = listings_.back().names.get();
    const int reason = names == nullptr ? 0 : names->Error();
    road_.ClearEntry();
    if (reason != 0) {
        Tell(item, Met::Failure, road_.Path(),
             std::string("its list can't be read from the temporary file: ") + std::strerror(reason));
    }
    listings_.pop_back();
    road_.Leave();
    if (!listings_.empty()) {
        memoryAbove_ -= std::exchange(listings_.back().memory, 0);
        firstInMemory_ = std::min(firstInMemory_, listings_.size() - 1);
    }
    return reason != 0;
}

bool Walk::VisitEntry(Kind kind, WalkItem& item) {
    const bool isDirectory = kind == Kind::Directory;
    if (options_.takes && !options_.takes(road_.RelativePath(), isDirectory)) return false;
    switch (kind) {
        case Kind::File:
            return TellFile(item);
        case Kind::Directory:
            if (road_.Depth() >= options_.maxDepth) return false;
            if (options_.sorted) return EnterEntry(item);
            listings_.back().names->Add(road_.Name());
            return false;
        case Kind::LinkToDirectory:
            return Tell(item, Met::Note, road_.Path(), "is a symbolic link to a directory");
        case Kind::Fifo:
            return Tell(item, Met::Note, road_.Path(), "is a FIFO, not a file");
        case Kind::Socket:
            return Tell(item, Met::Note, road_.Path(), "is a socket, not a file");
        case Kind::CharacterDevice:
            return Tell(item, Met::Note, road_.Path(), "is a character device, not a file");
        case Kind::BrokenLink:
            return Tell(item, Met::Note, road_.Path(), "is a symbolic link that leads nowhere");
    }
    return false;
}

bool Walk::EnterEntry(WalkItem& item) {
    int reason = 0;
    switch (road_.Enter(options_.oneFileSystem, reason)) {
        case Entering::Entered:
            return BeginListing(item);
        case Entering::OtherDevice:
            return Tell(item, Met::Note, road_.Path(), "is on another file system");
        case Entering::Loop:
            return Tell(item, Met::Failure, road_.Path(), "is a loop: it is a directory that it lies in");
        case Entering::Failed:
            break;
    }
    if (reason == ENOTDIR || reason == ELOOP) {
        const Kind kind = KindOfEntry(DT_UNKNOWN);  // something else has come into its place
        if (kind != Kind::Directory) return VisitEntry(kind, item);
    }
    return Tell(item, Met::Failure, road_.Path(), std::strerror(reason));
}

bool Walk::TellFile(WalkItem& item) const {
    item.met = Met::File;
    item.path = road_.Path();
    item.directory = road_.Lend(item.nameStart);
    item.reason.clear();
    return true;
}

Walk::Kind Walk::KindOf(mode_t mode) {
    if (S_ISDIR(mode)) return Kind::Directory;
    if (S_ISFIFO(mode)) return Kind::Fifo;
    if (S_ISSOCK(mode)) return Kind::Socket;
    return S_ISCHR(mode) ? Kind::CharacterDevice : Kind::File;
}

// What can't be looked at is a file: why that is so shows when it is opened.
Walk::Kind Walk::KindOfEntry(unsigned char type) const {
    auto mode = static_cast<mode_t>(DTTOIF(static_cast<mode_t>(type)));
    if (type == DT_UNKNOWN) {
        struct stat status = {};
        if (fstatat(road_.Descriptor(), road_.Name(), &status, AT_SYMLINK_NOFOLLOW) != 0) return Kind::File;
        mode = status.st_mode;
    }
    return S_ISLNK(mode) ? KindOfLink() : KindOf(mode);
}

Walk::Kind Walk::KindOfLink() const {
    struct stat status = {};
    if (fstatat(road_.Descriptor(), road_.Name(), &status, 0) == 0) {
        const Kind kind = KindOf(status.st_mode);
        return kind == Kind::Directory ? Kind::LinkToDirectory : kind;
    }
    // One that leads to itself leads nowhere, too. The link itself may be gone.
    const bool leadsNowhere = (errno == ENOENT || errno == ELOOP) &&
                              fstatat(road_.Descriptor(), road_.Name(), &status, AT_SYMLINK_NOFOLLOW) == 0;
    return leadsNowhere ? Kind::BrokenLink : Kind::File;
}
