// group_counts.cpp - a table of names, and two sorts for those that it has no room for: by name, so that what belongs
// together is added up, and by count.
//
// Records of the sorts, of which the order of their bytes is the order that is wanted:
//
//   By name    name, end; files, bytes
//   By count   UINT64_MAX - files; name, end; bytes
//
// Numbers have eight bytes, the highest first. The end is 00, and for 00 and 01 in a name there stand 01 01 and 01 02.
#include "report/group_counts.h"

#include <algorithm>
#include <cstring>

#include "scan/sorted_runs.h"

namespace {

constexpr char nameEnd = '\0';
constexpr char escape = '\x01';

void AppendName(std::string& record, std::string_view name) {
    for (const char byte : name) {
        if (byte == nameEnd || byte == escape) record += escape;
        record += byte == nameEnd || byte == escape ? static_cast<char>(byte + 1) : byte;
    }
    record += nameEnd;
}

// Takes a name from the front of a record.
void TakeName(std::string_view& record, std::string& name) {
    name.clear();
    std::size_t place = 0;
    for (; record[place] != nameEnd; ++place) {
        if (record[place] != escape) {
            name += record[place];
        } else {
            name += static_cast<char>(record[++place] - 1);
        }
    }
    record.remove_prefix(place + 1);
}

void AppendNumber(std::string& record, std::uint64_t number) {
    for (int shift = 56; shift >= 0; shift -= 8) record += static_cast<char>(number >> shift & 0xFF);
}

std::uint64_t TakeNumber(std::string_view& record) {
    std::uint64_t number = 0;
    for (std::size_t index = 0; index < 8; ++index) number = number << 8 | static_cast<std::uint8_t>(record[index]);
    record.remove_prefix(8);
    return number;
}

std::uint64_t CappedSum(std::uint64_t a, std::uint64_t b) { return a + std::min(b, UINT64_MAX - a); }

// What an entry of the table takes: its node with a pointer, a hash and what the heap adds, the bucket, and the bytes of a
// name that does not fit in its string.
std::size_t EntryBytes(std::string_view name) {
    constexpr std::size_t ownBytes =
        sizeof(std::string) + sizeof(FileCount) + 2 * sizeof(void*) + 16 + 2 * sizeof(void*);
    constexpr std::size_t shortName = 15;
    return ownBytes + (name.size() > shortName ? name.size() + 1 + 16 : 0);
}

}  // namespace

FileCount& FileCount::operator+=(const FileCount& other) {
    files = CappedSum(files, other.files);
    bytes = CappedSum(bytes, other.bytes);
    return *this;
}

GroupCounts::GroupCounts(std::size_t memory) : memory_(memory) {}

GroupCounts::~GroupCounts() = default;

void GroupCounts::Add(std::string_view name, const FileCount& count) {
    const auto place = table_.find(name);
    if (place != table_.end()) {
        place->second += count;
        return;
    }
    const std::size_t entryBytes = EntryBytes(name);
    if (tableBytes_ + entryBytes > memory_ && !table_.empty()) SpillTable();
    table_.emplace(name, count);
    tableBytes_ += entryBytes;
}

void GroupCounts::SpillTable() {
    if (byName_ == nullptr) byName_ = std::make_unique<SortedRuns>(memory_ / 2);
    std::string record;
    for (const auto& [name, count] : table_) {
        record.clear();
        AppendName(record, name);
        AppendNumber(record, count.files);
        AppendNumber(record, count.bytes);
        byName_->Add(record);
    }
    table_.clear();
    tableBytes_ = 0;
}

void GroupCounts::OrderByCount(std::string_view name, const FileCount& count) {
    record_.clear();
    AppendNumber(record_, UINT64_MAX - count.files);
    AppendName(record_, name);
    AppendNumber(record_, count.bytes);
    byCount_->Add(record_);
}

void GroupCounts::OrderSpilled() {
    byName_->Finish();
    std::string name;
    std::string nextName;
    FileCount sum;
    bool any = false;
    std::string_view record;
    while (byName_->Next(record)) {
        TakeName(record, nextName);
        const std::uint64_t files = TakeNumber(record);
        const FileCount count = {files, TakeNumber(record)};
        if (any && name == nextName) {
            sum += count;
            continue;
        }
        if (any) OrderByCount(name, sum);
        name.swap(nextName);
        sum = count;
        any = true;
    }
    if (any) OrderByCount(name, sum);
    KeepFailure(*byName_);
    byName_.reset();
}

void GroupCounts::KeepFailure(const SortedRuns& runs) {
    if (runs.Error() != 0 && failure_.empty()) failure_ = std::string("temporary file: ") + std::strerror(runs.Error());
}

void GroupCounts::Finish() {
    if (byName_ != nullptr) SpillTable();
    byCount_ = std::make_unique<SortedRuns>(memory_ / 2);
    if (byName_ != nullptr) {
        OrderSpilled();
    } else {
        for (const auto& [name, count] : table_) OrderByCount(name, count);
    }
    decltype(table_)().swap(table_);  // its memory too
    byCount_->Finish();
}

bool GroupCounts::Next(std::string& name, FileCount& count) {
    std::string_view record;
    if (!byCount_->Next(record)) {
        KeepFailure(*byCount_);
        return false;
    }
    count.files = UINT64_MAX - TakeNumber(record);
    TakeName(record, name);
    count.bytes = TakeNumber(record);
    return true;
}
