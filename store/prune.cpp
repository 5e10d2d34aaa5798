// prune.cpp - takes out what is gone, and ends a run.
#include <fcntl.h>
#include <unistd.h>

#include <ctime>
#include <string_view>

#include "store/gone.h"
#include "store/store.h"
#include "store/store_parts.h"

// Keys from one on up to another, and the path below which those that count lie.
struct PathRange {
    std::string below;  // "": all
    std::string from;
    std::optional<std::string> before;  // none: up to the end
};

namespace {

// Whether a path is another, or lies below it.
bool IsWithin(std::string_view path, std::string_view below) {
    if (below.empty()) return true;
    if (below == "/") return path.starts_with('/');
    if (below == ".") return !path.starts_with('/') && path != ".." && !path.starts_with("../");
    return path.starts_with(below) && (path.size() == below.size() || path[below.size()] == '/');
}

// Where in the order of keys lies what is within a path.
std::vector<PathRange> RangesOf(const std::string& path) {
    const std::string below = NormalisedPath(path);
    if (below == "/") return {{below, "/", "0"}};
    if (below == ".") return {{below, "", "/"}, {below, "0", std::nullopt}};
    const std::string key = KeyOfPath(below).text;
    return {{below, key, key + '\x01'}, {below, key + '/', key + '0'}};
}

bool CanBeRead(const std::string& directory) {
    const int descriptor = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) close(descriptor);
    return descriptor >= 0;
}

}  // namespace

bool Store::Parts::TakeOut(const PathKey& key, bool noted) {
    if (noted) {
        noteGone.BindText(1, key.text);
        noteGone.BindText(2, key.hex);
        noteGone.Bind(3, number);
        if (!noteGone.Run()) return false;
    }
    remove.BindText(1, key.text);
    remove.BindText(2, key.hex);
    return remove.Run();
}

bool Store::Parts::ReadBatch(Statement& listing, const PathKey& from, const std::optional<std::string>& before,
                             std::vector<Listed>& batch) {
    listing.BindText(1, from.text);
    listing.BindText(2, from.hex);
    if (before) {
        listing.BindText(3, *before);
    } else {
        listing.BindBlob(3, {});  // behind all texts
    }
    listing.Bind(4, number);  // what this run has put is as it says
    batch.clear();
    int status = listing.Step();
    for (; status == SQLITE_ROW; status = listing.Step()) {
        batch.push_back({{std::string(listing.Text(0)), std::string(listing.Text(1))}, listing.Number(2) != 0});
    }
    listing.Reset();
    return status == SQLITE_DONE;
}

// The failure of a directory stays: that it is one is no news.
bool Store::PruneRange(const PathRange& range, const std::function<bool()>& goOn) {
    std::vector<Parts::Listed> batch;
    PathKey from = {range.from, {}};
    while (goOn()) {
        if (!parts_->ReadBatch(parts_->list, from, range.before, batch)) return Fail();
        if (batch.empty()) break;
        for (const Parts::Listed& listed : batch) {
            const std::string path = PathOfKey(listed.key.text, listed.key.hex);
            if (!IsWithin(path, range.below)) continue;
            const Presence presence = PresenceOf(path);
            if (presence == Presence::File || (presence == Presence::Directory && listed.failed)) continue;
            if (!Begin()) return false;
            if (!parts_->TakeOut(listed.key, true)) return Fail();
            ++counts_.gone;
        }
        if (!CommitIfDue()) return false;
        // The key behind the last one: no path has a NUL byte, and no hexadecimal digits either.
        from = batch.back().key;
        from.hex += '\0';
    }
    return true;
}

bool Store::Prune(const std::vector<std::string>& below, const std::function<bool()>& goOn) {
    if (below.empty()) return PruneRange({"", "", std::nullopt}, goOn);
    for (const std::string& path : below) {
        for (const PathRange& range : RangesOf(path)) {
            if (!PruneRange(range, goOn)) return false;
        }
    }
    return true;
}

// A walk tells of a directory only that it can't be read. So a directory that it came into says nothing, and its
// earlier failure would stay.
bool Store::ForgetFailures() {
    std::vector<Parts::Listed> batch;
    PathKey from;
    while (true) {
        if (!parts_->ReadBatch(parts_->listNotRead, from, std::nullopt, batch)) return Fail();
        if (batch.empty()) return true;
        for (const Parts::Listed& listed : batch) {
            const std::string path = PathOfKey(listed.key.text, listed.key.hex);
            if (PresenceOf(path) != Presence::Directory || !CanBeRead(path)) continue;
            if (!Begin()) return false;
            if (!parts_->TakeOut(listed.key, false)) return Fail();
        }
        from = batch.back().key;
        from.hex += '\0';
    }
}

bool Store::EndRun(RunEnd end, StoreCounts& counts) {
    const bool ready = (end != RunEnd::Complete || ForgetFailures()) && Begin();
    counts_.older = parts_->older;
    counts = counts_;
    if (!ready) return false;
    Statement statement;
    if (!statement.Prepare(parts_->database.Connection(),
                           "UPDATE runs SET ended = ?2, state = ?3, new = ?4, changed = ?5, unchanged = ?6, gone = ?7, "
                           "unreadable = ?8 WHERE run = ?1")) {
        return Fail();
    }
    const char* const state = end == RunEnd::Complete      ? "complete"
                              : end == RunEnd::Interrupted ? "interrupted"
                                                           : "failed";
    const auto bind = [&](int parameter, std::uint64_t count) {
        statement.Bind(parameter, static_cast<std::int64_t>(count));
    };
    statement.Bind(1, parts_->number);
    statement.Bind(2, std::time(nullptr));
    statement.BindText(3, state);
    bind(4, counts.fresh);
    bind(5, counts.changed);
    bind(6, counts.unchanged);
    bind(7, counts.gone);
    bind(8, counts.unreadable);
    if (!statement.Run()) return Fail();
    parts_->number = 0;
    return Commit();
}
