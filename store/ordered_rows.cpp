// ordered_rows.cpp - fetches directories in front of the rows that SQLite has in front of them.
#include "store/ordered_rows.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "store/path_key.h"
#include "store/record_rows.h"
#include "store/walk_order.h"

namespace {

constexpr std::size_t none = std::string::npos;

bool IsBelowSlash(char byte) { return static_cast<std::uint8_t>(byte) < '/'; }

std::size_t CommonSize(std::string_view first, std::string_view second) {
    return static_cast<std::size_t>(std::ranges::mismatch(first, second).in1 - first.begin());
}

bool LiesBelow(std::string_view path, std::string_view directory) {
    return path.size() > directory.size() && path.starts_with(directory) && path[directory.size()] == '/';
}

}  // namespace

// Begins at a path, up to the end of the directory that is read, or of all.
void OrderedRows::Seek(std::string from) {
    rows_.Reset();
    const bool bounded = !directories_.empty();
    from_ = key_ == Key::Hex ? HexOf(from) : std::move(from);
    if (bounded) {
        const std::string behind = directories_.back().path + '0';  // '0' is the byte behind the slash
        before_ = key_ == Key::Hex ? HexOf(behind) : behind;
    }
    rows_.BindText(1, from_);
    if (bounded) {
        rows_.BindText(2, before_);
    } else {
        rows_.BindBlob(2, {});  // behind all texts
    }
    status_ = rows_.Step();
}

std::string OrderedRows::NextPath() const { return status_ == SQLITE_ROW ? PathOfRow(rows_) : std::string(); }

// The directory is at its end: the row that it was fetched in front of comes again.
void OrderedRows::GoBack() {
    Directory done = std::move(directories_.back());
    directories_.pop_back();
    previous_.clear();
    looked_ = done.path.size();
    Seek(done.row);
    if (done.hasRows) passed_.push_back(std::move(done.path));
}

// Passes over the rows of a directory that were fetched before.
bool OrderedRows::PassOver() {
    if (passed_.empty() || !LiesBelow(PathOfRow(rows_), passed_.back())) return false;
    const std::string behind = passed_.back() + '0';
    passed_.pop_back();
    Seek(behind);
    return true;
}

// Up to where the current path is the name of a directory that may have rows behind this one, and that nobody has
// looked for; none if there is no such place.
std::size_t OrderedRows::FirstDirectory(const std::string& next) const {
    const std::string& path = current_.path;
    const std::size_t start = directories_.empty() ? 0 : directories_.back().path.size() + 1;
    const std::size_t shared = next.empty() ? 0 : CommonSize(path, next);
    const std::size_t earlier = previous_.empty() ? 0 : CommonSize(path, previous_);
    const std::size_t last = std::min(shared, path.size() - 1);
    for (std::size_t size = std::max({start + 1, looked_ + 1, earlier, std::size_t{1}}); size <= last; ++size) {
        if (!IsBelowSlash(path[size]) || path[size - 1] == '/') continue;
        if (size == earlier && previous_.size() > earlier) continue;  // the row in front was the first of these
        if (next[size] <= '/' && next[size] >= 0) return size;        // characters may be signed
    }
    return none;
}

int OrderedRows::Next() {
    if (status_ == SQLITE_OK) Seek({});
    while (true) {
        if (status_ == SQLITE_DONE && !directories_.empty()) {
            GoBack();
            continue;
        }
        if (status_ != SQLITE_ROW) return status_;
        if (PassOver()) continue;
        if (!read_(rows_, current_)) return SQLITE_CORRUPT;
        status_ = rows_.Step();
        if (status_ != SQLITE_ROW && status_ != SQLITE_DONE) return status_;
        const std::size_t size = FirstDirectory(NextPath());
        if (size == none) break;
        directories_.push_back({current_.path.substr(0, size), current_.path, false});
        previous_.clear();
        looked_ = 0;
        Seek(directories_.back().path + '/');
        directories_.back().hasRows = status_ == SQLITE_ROW;
    }
    previous_ = current_.path;
    looked_ = 0;
    return SQLITE_ROW;
}

int MergedRows::Next(Record*& record) {
    if (textStatus_ == SQLITE_OK) textStatus_ = texts_.Next();
    if (otherStatus_ == SQLITE_OK) otherStatus_ = others_.Next();
    for (const int status : {textStatus_, otherStatus_}) {
        if (status != SQLITE_ROW && status != SQLITE_DONE) return status;
    }
    if (textStatus_ == SQLITE_DONE && otherStatus_ == SQLITE_DONE) return SQLITE_DONE;
    const bool isText =
        otherStatus_ == SQLITE_DONE ||
        (textStatus_ == SQLITE_ROW && CompareInWalkOrder(texts_.Current().path, others_.Current().path) < 0);
    (isText ? textStatus_ : otherStatus_) = SQLITE_OK;
    record = isText ? &texts_.Current() : &others_.Current();
    return SQLITE_ROW;
}
