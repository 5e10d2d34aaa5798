// file_walk.cpp - directories, recursively and in sorted order.
#include "scan/file_walk.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <vector>

#include "scan/interrupt.h"

namespace {

// No path of a file system is longer; of a list that is read the wrong way round, more would be told.
constexpr std::size_t longestToldPath = 4096;

enum class EntryKind { File, Fifo, Directory, LinkToDirectory };

struct Entry {
    std::string name;
    EntryKind kind;
};

EntryKind KindOf(mode_t mode) {
    if (S_ISDIR(mode)) return EntryKind::Directory;
    return S_ISFIFO(mode) ? EntryKind::Fifo : EntryKind::File;
}

// What a path leads to, over symbolic links; a file for one that leads nowhere, which shows when it is opened.
EntryKind KindOf(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? KindOf(status.st_mode) : EntryKind::File;
}

std::string Join(const std::string& directory, std::string_view name) {
    std::string path;
    path.reserve(directory.size() + 1 + name.size());
    path += directory;
    if (!directory.ends_with('/')) path += '/';
    path += name;
    return path;
}

// The type of an entry is looked at where its directory does not tell it.
EntryKind KindOf(const std::string& directory, std::string_view name, unsigned char type) {
    if (type == DT_UNKNOWN) {
        struct stat status = {};
        if (lstat(Join(directory, name).c_str(), &status) != 0) return EntryKind::File;
        if (!S_ISLNK(status.st_mode)) return KindOf(status.st_mode);
        type = DT_LNK;
    }
    if (type == DT_LNK) {
        const EntryKind kind = KindOf(Join(directory, name));
        return kind == EntryKind::Directory ? EntryKind::LinkToDirectory : kind;
    }
    return KindOf(DTTOIF(static_cast<mode_t>(type)));
}

// The entries of a directory in sorted order, or the errno of the failure in reason.
std::vector<Entry> ReadDirectory(const std::string& path, int& reason) {
    std::vector<Entry> entries;
    reason = 0;
    DIR* const directory = opendir(path.c_str());
    if (directory == nullptr) {
        reason = errno;
        return entries;
    }
    while (true) {
        errno = 0;
        const dirent* const entry = readdir(directory);
        if (entry == nullptr) break;
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") continue;
        entries.push_back({entry->d_name, KindOf(path, name, entry->d_type)});
    }
    reason = errno;
    closedir(directory);
    std::ranges::sort(entries, {}, &Entry::name);  // strings are compared by their bytes, unsigned, whatever char is
    return entries;
}

}  // namespace

void WalkPath(const std::string& path, const WalkVisitor& visitor) {
    if (path.find('\0') != std::string::npos) {
        return visitor.failure(path.substr(0, longestToldPath),
                               "a path can't hold a NUL byte; -0 reads a list that is separated by them");
    }
    if (path.size() > longestPath) return visitor.failure(path.substr(0, longestToldPath), "is too long for a path");
    if (visitor.named(path)) return;
    // The directories in front of the place where the walk is, each with what is still to be visited in it, last first.
    std::vector<Entry> pending = {{path, EntryKind::Directory}};
    while (!pending.empty() && !Interrupted()) {
        const Entry entry = std::move(pending.back());
        pending.pop_back();
        switch (entry.kind) {
            case EntryKind::File:
                visitor.file(entry.name);
                break;
            case EntryKind::Fifo:
                visitor.failure(entry.name, "is a FIFO, not a file");
                break;
            case EntryKind::LinkToDirectory:
                break;
            case EntryKind::Directory: {
                int reason = 0;
                const std::vector<Entry> entries = ReadDirectory(entry.name, reason);
                if (reason != 0) visitor.failure(entry.name, std::strerror(reason));
                for (auto child = entries.rbegin(); child != entries.rend(); ++child) {
                    pending.push_back({Join(entry.name, child->name), child->kind});
                }
                break;
            }
        }
    }
}
