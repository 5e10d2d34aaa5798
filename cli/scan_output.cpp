// scan_output.cpp - what a run writes: records or a summary to standard output, messages and progress to standard error.
#include "cli/scan_output.h"

#include <langinfo.h>
#include <unistd.h>

#include <chrono>
#include <clocale>

#include "cli/terminal.h"
#include "report/output.h"
#include "report/summary_writer.h"

namespace {

// Whoever reads along sees records no later than this behind their time.
constexpr std::chrono::milliseconds longestGathered{200};

ProgressOptions ProgressOptionsOf(const Options& options) {
    ProgressOptions progress;
    progress.mode = options.progress;
    progress.terminal = IsDrawingTerminal(STDERR_FILENO);
    progress.write = [](std::string_view bytes) { WriteErrorText(bytes); };
    progress.columns = [] { return ColumnsOfTerminal(STDERR_FILENO); };
    return progress;
}

std::chrono::steady_clock::time_point Now() { return std::chrono::steady_clock::now(); }

}  // namespace

ScanOutput::ScanOutput(const Options& options)
    : options_(options),
      progress_(ProgressOptionsOf(options), Now()),
      flushed_(Now()),
      sharesTerminal_(isatty(STDOUT_FILENO) != 0) {
    if (options.writesRecords) writer_ = MakeReportWriter(options.report);
    if (options.summary.has_value()) summary_.emplace(*options.summary);
}

void ScanOutput::Begin() {
    if (writer_ == nullptr) return;
    writer_->Begin(BeginRecord());
    EndRecord();
}

void ScanOutput::Render(const Record& record, std::string& out) const {
    if (writer_ != nullptr) writer_->Render(record, out);
}

void ScanOutput::Place(const Record& record, std::string_view rendered, bool isWritten) {
    progress_.Count(record);
    if (record.error.has_value()) Complain(record.path + ": " + *record.error);
    if (!isWritten) return;
    if (summary_.has_value()) summary_->Add(record);
    if (writer_ == nullptr) return;
    if (sharesTerminal_) progress_.Hide();
    writer_->Place(record, rendered, BeginRecord());
    EndRecord();
}

void ScanOutput::Note(const std::string& path, const std::string& reason) {
    if (options_.verbose) Tell(path + ": passed over: " + reason);
}

void ScanOutput::Complain(const std::string& message) {
    allWasRead_ = false;
    Tell(message);
}

void ScanOutput::Tell(const std::string& message) {
    progress_.Hide();
    WriteMessage(message);
}

void ScanOutput::ShowProgress(std::uint64_t done, std::uint64_t total) {
    if (total > 0) progress_.SetList(done, total);
    const std::chrono::steady_clock::time_point now = Now();
    if (now - flushed_ >= longestGathered) {
        FlushOutput();
        flushed_ = now;
    }
    progress_.Tick(now);
}

void ScanOutput::End(bool interrupted) {
    progress_.Finish(Now());
    if (writer_ != nullptr) {
        writer_->End(BeginRecord(), interrupted);
        EndRecord();
    }
    if (summary_.has_value()) WriteSummaryOf(*summary_, options_);
    FlushOutput();
}

void WriteSummaryOf(Summary& summary, const Options& options) {
    std::setlocale(LC_CTYPE, "");  // whether a terminal takes UTF-8 is all that is asked of it
    SummaryOptions form;
    form.format = options.report.format;
    form.columns = ColumnsOfTerminal(STDOUT_FILENO);
    form.utf8 = std::string_view(nl_langinfo(CODESET)) == "UTF-8";
    WriteSummary(summary, form, [](std::string_view piece) { WriteRecord(piece); });
    if (!summary.Failure().empty()) WriteMessage(summary.Failure());
}
