// scan_output.h - what a run writes: records or a summary to standard output, messages and progress to standard error.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "cli/options.h"
#include "cli/progress.h"
#include "report/report_writer.h"
#include "report/summary.h"
#include "scan/record.h"

// All of it is called by one thread, but for Render.
class ScanOutput {
 public:
    // The options must outlive it.
    explicit ScanOutput(const Options& options);

    void Begin();

    // Appends the form of a record; any thread, any order.
    void Render(const Record& record, std::string& out) const;

    // A record, in order. One that is not written counts for progress alone.
    void Place(const Record& record, std::string_view rendered, bool isWritten);

    // What was passed over, with --verbose.
    void Note(const std::string& path, const std::string& reason);

    // A message; one that is a complaint makes the run a failed one.
    void Complain(const std::string& message);
    void Tell(const std::string& message);

    // Called some times a second. done of total was taken of what is to be looked at; total is 0 where that is not known.
    void ShowProgress(std::uint64_t done, std::uint64_t total);

    // Writes what stands behind all records.
    void End(bool interrupted);

    bool AllWasRead() const { return allWasRead_; }

 private:
    const Options& options_;
    std::unique_ptr<ReportWriter> writer_;  // null when no records are written
    std::optional<Summary> summary_;
    Progress progress_;
    std::chrono::steady_clock::time_point flushed_;  // when output was handed over for its time
    bool allWasRead_ = true;
    const bool sharesTerminal_;  // records go to a terminal, as progress may
};

// Ends a summary and writes it to standard output.
void WriteSummaryOf(Summary& summary, const Options& options);
