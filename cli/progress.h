// progress.h - how far a run is, on standard error, for those who wait for it.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>

#include "scan/record.h"

enum class ProgressMode {
    Auto,  // on a terminal, once a run takes more than a second; nothing is left of it at the end
    On,    // from the start on; the last line stays
    Off,
};

struct ProgressOptions {
    ProgressMode mode = ProgressMode::Auto;

    // Whether standard error is a terminal that knows how to erase a line. On one a single line is drawn again and again;
    // elsewhere a line is added now and then.
    bool terminal = false;

    // Where the bytes go, at once. Must be set unless the mode is Off.
    std::function<void(std::string_view)> write;

    // The columns of the terminal, asked at each drawing; 0 where they are not known, which is taken for 80. May be empty.
    std::function<std::uint32_t()> columns;
};

// Counts what a run has done and draws it: "12,345 files  3,210/s  1.2 GiB  4 errors  0:00:12  left 0:01:05". The rate is
// that of the last seconds, and at the end that of the whole run. In a narrow terminal parts are left out.
//
// All of it belongs to one thread. It draws in Tick and Finish alone, so that nothing comes in between when that thread
// writes to the terminal behind Hide.
class Progress {
 public:
    using Time = std::chrono::steady_clock::time_point;

    // start is when the run began.
    Progress(ProgressOptions options, Time start);

    // One more file, looked at or failed.
    void Count(const Record& record);

    // How far the list of what is to be done is done: in bytes, entries or anything else that adds up to total. There is a
    // time left from the first call with a total above 0 on. A done above total is taken for total.
    void SetList(std::uint64_t done, std::uint64_t total);

    // Draws when it is time to: at most five times a second on a terminal, else every ten seconds. Called more often.
    void Tick(Time now);

    // Takes the line off the terminal, if there is one, before anything else is written there. Tick brings it back.
    void Hide();

    // Ends it: leaves a last line or none, as the mode says. Nothing is drawn from here on.
    void Finish(Time now);

 private:
    struct Sample {
        Time time;
        std::uint64_t files;
        std::uint64_t listDone;
    };

    void TakeSample(Time now);
    // Files in a second since the newest sample that is some seconds old.
    std::uint64_t RecentRate(Time now) const;
    // Seconds, or -1 when that can't be told.
    std::int64_t SecondsLeft(Time now) const;
    std::string LineOf(Time now, bool last) const;
    void Draw(std::string_view line, Time now);

    ProgressOptions options_;
    Time start_;
    std::uint64_t files_ = 0;
    std::uint64_t bytes_ = 0;
    std::uint64_t errors_ = 0;
    std::uint64_t listDone_ = 0;
    std::uint64_t listTotal_ = 0;
    std::deque<Sample> samples_;  // the oldest first; never empty
    Time drawn_;                  // when a line was drawn last, or the run began
    bool hasDrawn_ = false;
    bool isShown_ = false;  // whether there is a line on the terminal
    bool ended_ = false;
};
