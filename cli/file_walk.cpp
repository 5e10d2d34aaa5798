// file_walk.cpp - directories, recursively and in sorted order.
#include "cli/file_walk.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <vector>

namespace {

enum class EntryKind { File, Directory, LinkToDirectory };

struct Entry {
    std::string name;
    EntryKind kind;
};

bool IsDirectory(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

EntryKind KindOf(const std::string& path, unsigned char type) {
    if (type == DT_UNKNOWN) {
        struct stat status = {};
        if (lstat(path.c_str(), &status) != 0) return EntryKind::File;
        type = S_ISDIR(status.st_mode) ? DT_DIR : S_ISLNK(status.st_mode) ? DT_LNK : DT_REG;
    }
    if (type == DT_DIR) return EntryKind::Directory;
    if (type == DT_LNK && IsDirectory(path)) return EntryKind::LinkToDirectory;
    return EntryKind::File;
}

std::string Join(const std::string& directory, const std::string& name) {
    return directory.ends_with('/') ? directory + name : directory + '/' + name;
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
        entries.push_back({entry->d_name, KindOf(Join(path, entry->d_name), entry->d_type)});
    }
    reason = errno;
    closedir(directory);
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        // Names are compared by their bytes, unsigned, whatever char is.
        return std::lexicographical_compare(
            a.name.begin(), a.name.end(), b.name.begin(), b.name.end(),
            [](char x, char y) { return static_cast<unsigned char>(x) < static_cast<unsigned char>(y); });
    });
    return entries;
}

}  // namespace

void WalkPath(const std::string& path, const std::function<void(const std::string&)>& visitFile,
              const std::function<void(const std::string&, const std::string&)>& visitFailure) {
    if (!IsDirectory(path)) return visitFile(path);
    // The directories in front of the place where the walk is, each with what is still to be visited in it, last first.
    std::vector<Entry> pending = {{path, EntryKind::Directory}};
    while (!pending.empty()) {
        const Entry entry = std::move(pending.back());
        pending.pop_back();
        if (entry.kind == EntryKind::LinkToDirectory) continue;
        if (entry.kind == EntryKind::File) {
            visitFile(entry.name);
            continue;
        }
        int reason = 0;
        std::vector<Entry> entries = ReadDirectory(entry.name, reason);
        if (reason != 0) visitFailure(entry.name, std::strerror(reason));
        for (auto child = entries.rbegin(); child != entries.rend(); ++child) {
            pending.push_back({Join(entry.name, child->name), child->kind});
        }
    }
}
