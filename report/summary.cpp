// summary.cpp - from records to groups.
#include "report/summary.h"

#include <algorithm>
#include <tuple>

#include "report/value.h"

namespace {

// PRONOM identifiers in the order of their prefixes and numbers.
struct PuidOrder {
    static std::tuple<std::string_view, std::size_t, std::string_view> PartsOf(std::string_view puid) {
        const std::size_t slash = std::min(puid.find('/'), puid.size());
        return {puid.substr(0, slash), puid.size(), puid};  // of numbers, the longer one is the larger one
    }
    bool operator()(std::string_view a, std::string_view b) const { return PartsOf(a) < PartsOf(b); }
};

std::string JoinLists(const std::set<std::string, std::less<>>& lists) {
    std::set<std::string_view, PuidOrder> puids;
    for (std::string_view list : lists) {
        while (!list.empty()) puids.insert(TakeWord(list));
    }
    std::string joined;
    for (const std::string_view puid : puids) {
        if (!joined.empty()) joined += ' ';
        joined += puid;
    }
    return joined;
}

// Groups go out from the end.
bool IsBehind(const SummaryGroup& a, const SummaryGroup& b) {
    return std::tie(a.count.files, b.name, b.format) < std::tie(b.count.files, a.name, a.format);
}

std::string_view NameOfPath(std::string_view path) { return path.substr(path.rfind('/') + 1); }  // npos + 1 is 0

bool IsUnknown(const fiid_result& answer) { return answer.basis == FIID_BASIS_NONE; }

}  // namespace

std::string_view ToldMime(const fiid_result& answer) {
    if (answer.size == 0) return "inode/x-empty";
    return answer.mime[0] != '\0' ? answer.mime : "application/octet-stream";
}

std::string_view ExtensionOfPath(std::string_view path) {
    const std::string_view name = NameOfPath(path);
    const std::size_t stop = name.rfind('.');
    return stop == std::string_view::npos || stop == 0 ? std::string_view() : name.substr(stop + 1);
}

std::string_view DirectoryOfPath(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) return ".";
    const std::size_t last = path.substr(0, slash).find_last_not_of('/');
    return last == std::string_view::npos ? "/" : path.substr(0, last + 1);
}

void Summary::Add(const Record& record) {
    const bool sized = !record.error.has_value() && record.answer.size != FIID_SIZE_UNKNOWN;
    AddMany(record, {1, sized ? record.answer.size : 0});
}

void Summary::AddMany(const Record& record, const FileCount& count) {
    if (record.error.has_value()) {
        totals_.all += {count.files, 0};
        totals_.unreadable += count.files;
        return;
    }
    const fiid_result& answer = record.answer;
    totals_.all += count;
    if (IsUnknown(answer)) totals_.unknown += count;
    if ((answer.warnings & FIID_WARN_EXTENSION) != 0) totals_.unusual += count;
    if (key_ != SummaryKey::Format) {
        groups_.Add(KeyOf(record), count);
    } else if (!IsUnknown(answer)) {
        AddToFormat(answer.further != 0 ? answer.further : answer.fiid, answer.name, answer.puids, count);
    }
}

void Summary::AddGroup(const SummaryGroup& group) {
    if (key_ == SummaryKey::Format) {
        AddToFormat(group.format, group.name, group.puids, group.count);
    } else {
        groups_.Add(group.name, group.count);
    }
}

void Summary::AddTotals(const SummaryTotals& totals) {
    totals_.all += totals.all;
    totals_.unknown += totals.unknown;
    totals_.unreadable += totals.unreadable;
    totals_.unusual += totals.unusual;
}

void Summary::AddToFormat(std::uint16_t format, std::string_view name, std::string_view puids, const FileCount& count) {
    FormatGroup& group = formats_[format];
    if (group.name.empty()) group.name = name;
    if (!puids.empty() && group.puids.find(puids) == group.puids.end()) group.puids.emplace(puids);
    group.count += count;
}

std::string_view Summary::KeyOf(const Record& record) {
    switch (key_) {
        case SummaryKey::Format:
            break;  // formats have a table of their own
        case SummaryKey::Family:
            return record.answer.family;
        case SummaryKey::Mime:
            return ToldMime(record.answer);
        case SummaryKey::Extension:
            lowerExtension_ = ExtensionOfPath(record.path);
            for (char& byte : lowerExtension_) {
                if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
            }
            return lowerExtension_;
        case SummaryKey::Directory:
            return DirectoryOfPath(record.path);
    }
    return {};
}

void Summary::Finish() {
    if (key_ != SummaryKey::Format) {
        groups_.Finish();
        return;
    }
    for (const auto& [format, group] : formats_) {
        formatsLeft_.push_back({group.name, format, JoinLists(group.puids), group.count});
    }
    std::sort(formatsLeft_.begin(), formatsLeft_.end(), IsBehind);
}

bool Summary::Next(SummaryGroup& group) {
    if (key_ != SummaryKey::Format) {
        group.format = 0;
        group.puids.clear();
        return groups_.Next(group.name, group.count);
    }
    if (formatsLeft_.empty()) return false;
    group = std::move(formatsLeft_.back());
    formatsLeft_.pop_back();
    return true;
}
