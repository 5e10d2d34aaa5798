// progress.cpp - counts, rates and the line that tells them.
#include "cli/progress.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "report/readable_numbers.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr milliseconds drawingInterval{200};
constexpr seconds plainInterval{10};
constexpr seconds quietStart{1};

// A rate over less than this jumps about; a time left over less than the other one too, as what is done of a list is told
// in jumps: by the blocks that are read of it.
constexpr seconds rateSpan{5};
constexpr seconds leftSpan{60};
constexpr seconds sampleInterval{1};

constexpr std::uint32_t usualColumns = 80;
constexpr std::string_view eraseToEnd = "\x1B[K";
constexpr std::string_view plainStart = "fiid: ";

double SecondsBetween(Progress::Time from, Progress::Time to) {
    return std::chrono::duration<double>(to - from).count();
}

// H:MM:SS
std::string ClockText(std::int64_t total) {
    const auto twoDigits = [](std::int64_t number) {
        const std::string digits = std::to_string(number);
        return digits.size() < 2 ? "0" + digits : digits;
    };
    return std::to_string(total / 3600) + ":" + twoDigits(total / 60 % 60) + ":" + twoDigits(total % 60);
}

std::string Counted(std::uint64_t count, std::string_view one, std::string_view more) {
    std::string text;
    AppendGroupedNumber(text, count);
    text += ' ';
    text += count == 1 ? one : more;
    return text;
}

// A part of the line. Where there is no room the one of the lowest rank goes first.
struct Part {
    std::string text;
    int rank;
};

constexpr std::string_view gap = "  ";

std::string Joined(const std::vector<Part>& parts) {
    std::string line;
    for (const Part& part : parts) {
        if (!line.empty()) line += gap;
        line += part.text;
    }
    return line;
}

// The parts that fit, or as much as fits of the last one that is left.
std::string FittingLine(std::vector<Part> parts, std::size_t columns) {
    const auto isLower = [](const Part& a, const Part& b) { return a.rank < b.rank; };
    std::string line = Joined(parts);
    while (line.size() > columns && parts.size() > 1) {
        parts.erase(std::min_element(parts.begin(), parts.end(), isLower));
        line = Joined(parts);
    }
    return line.substr(0, columns);
}

}  // namespace

Progress::Progress(ProgressOptions options, Time start)
    : options_(std::move(options)), start_(start), samples_{{start, 0, 0}}, drawn_(start) {}

void Progress::Count(const Record& record) {
    ++files_;
    if (record.error.has_value()) {
        ++errors_;
    } else if (record.answer.size != FIID_SIZE_UNKNOWN) {
        bytes_ += std::min(record.answer.size, UINT64_MAX - bytes_);
    }
}

void Progress::SetList(std::uint64_t done, std::uint64_t total) {
    listDone_ = std::min(done, total);
    listTotal_ = total;
}

void Progress::TakeSample(Time now) {
    if (now - samples_.back().time < sampleInterval) return;
    samples_.push_back({now, files_, listDone_});
    // The oldest one is at least leftSpan old, as long as there are such.
    while (now - samples_[1].time >= leftSpan) samples_.pop_front();
}

std::uint64_t Progress::RecentRate(Time now) const {
    auto sample = samples_.rbegin();
    while (now - sample->time < rateSpan && std::next(sample) != samples_.rend()) ++sample;
    const double span = SecondsBetween(sample->time, now);
    return span > 0 ? static_cast<std::uint64_t>(std::llround(static_cast<double>(files_ - sample->files) / span)) : 0;
}

std::int64_t Progress::SecondsLeft(Time now) const {
    if (listTotal_ == 0 || listDone_ == 0) return -1;
    // A list may be done sooner than its files.
    if (listDone_ == listTotal_) return -1;
    // Of a list that stands still for so long the whole run tells.
    const bool moves = listDone_ > samples_.front().listDone;
    const double span = SecondsBetween(moves ? samples_.front().time : start_, now);
    const std::uint64_t done = listDone_ - (moves ? samples_.front().listDone : 0);
    const double left = span * static_cast<double>(listTotal_ - listDone_) / static_cast<double>(done);
    constexpr double mostTold = 1e9;  // some thirty years
    return left <= mostTold ? static_cast<std::int64_t>(std::ceil(left)) : -1;
}

std::string Progress::LineOf(Time now, bool last) const {
    const double elapsed = SecondsBetween(start_, now);
    const double overall = elapsed > 0 ? static_cast<double>(files_) / elapsed : 0;
    std::string rate;
    AppendGroupedNumber(rate, last ? static_cast<std::uint64_t>(std::llround(overall)) : RecentRate(now));
    std::string size;
    AppendReadableSize(size, bytes_);
    std::vector<Part> parts = {{Counted(files_, "file", "files"), 6},
                               {rate + "/s", 2},
                               {size, 1},
                               {Counted(errors_, "error", "errors"), 3},
                               {ClockText(static_cast<std::int64_t>(elapsed)), 4}};
    const std::int64_t left = last ? -1 : SecondsLeft(now);
    if (left >= 0) parts.push_back({"left " + ClockText(left), 5});
    if (!options_.terminal) return Joined(parts);
    const std::uint32_t told = options_.columns ? options_.columns() : 0;
    // The last column stays free: behind a character there, some terminals go on to the next line.
    return FittingLine(std::move(parts), (told != 0 ? told : usualColumns) - 1);
}

void Progress::Draw(std::string_view line, Time now) {
    std::string text;
    if (options_.terminal) {
        text += '\r';
        text += line;
        text += eraseToEnd;
        isShown_ = true;
    } else {
        text += plainStart;
        text += line;
        text += '\n';
    }
    options_.write(text);
    drawn_ = now;
    hasDrawn_ = true;
}

void Progress::Tick(Time now) {
    const bool silent =
        options_.mode == ProgressMode::Off || (options_.mode == ProgressMode::Auto && !options_.terminal);
    if (silent || ended_) return;
    TakeSample(now);
    if (options_.terminal) {
        if (options_.mode == ProgressMode::Auto && now - start_ <= quietStart) return;
        if (hasDrawn_ && now - drawn_ < drawingInterval) return;
    } else if (now - drawn_ < plainInterval) {
        return;
    }
    Draw(LineOf(now, false), now);
}

void Progress::Hide() {
    if (!isShown_) return;
    options_.write("\r" + std::string(eraseToEnd));
    isShown_ = false;
}

void Progress::Finish(Time now) {
    if (ended_) return;
    ended_ = true;
    if (options_.mode == ProgressMode::Auto) Hide();
    if (options_.mode != ProgressMode::On) return;
    Draw(LineOf(now, true), now);
    if (options_.terminal) options_.write("\n");
    isShown_ = false;
}
