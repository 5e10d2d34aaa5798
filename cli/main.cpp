// main.cpp - the program fiid: tells the format of files.
#include <unistd.h>

#include <exception>

#include "cli/options.h"
#include "fiid/detect.h"
#include "report/formats_list.h"
#include "report/output.h"
#include "report/report_writer.h"
#include "scan/descriptors.h"
#include "scan/file_walk.h"
#include "scan/identify.h"
#include "scan/interrupt.h"
#include "scan/path_list.h"

namespace {

constexpr int successExitStatus = 0;

std::uint32_t FlagsOf(const Options& options) {
    std::uint32_t flags = 0;
    if (!options.extendedText) flags |= FIID_NO_TEXT;
    if (!options.further) flags |= FIID_NO_FURTHER;
    if (options.explain) flags |= FIID_EXPLAIN;
    return flags;
}

void Report(ReportWriter& writer, const Record& record) {
    if (record.error.has_value()) WriteMessage(record.path + ": " + *record.error);
    std::string rendered;
    writer.Render(record, rendered);
    writer.Place(record, rendered, BeginRecord());
    EndRecord();
}

// Identifies everything the options name. Returns whether all of it could be read.
bool IdentifyAll(const Options& options) {
    const std::uint32_t flags = FlagsOf(options);
    bool allRead = true;
    ReportOptions reportOptions;
    reportOptions.format = options.format;
    reportOptions.explain = options.explain;
    const std::unique_ptr<ReportWriter> writer = MakeReportWriter(reportOptions);
    const auto write = [&](const Record& record) {
        if (Interrupted()) return;  // it may have been cut short
        allRead = allRead && !record.error.has_value();
        Report(*writer, record);
    };
    const auto writeFailure = [&](const std::string& path, const std::string& reason) {
        Record record;
        record.path = path;
        record.error = reason;
        write(record);
    };
    const auto writeNamed = [&](const std::string& path) {
        const std::optional<Record> record = IdentifyNamedPath(path, flags);
        if (record.has_value()) write(*record);
        return record.has_value();
    };
    const WalkVisitor visitor = {writeNamed, [&](const std::string& path) { write(IdentifyPath(path, flags)); },
                                 writeFailure};

    writer->Begin(BeginRecord());
    EndRecord();
    for (const std::string& path : options.paths) {
        if (Interrupted()) break;
        if (path == "-") {
            write(IdentifyStandardInput(flags));
        } else {
            WalkPath(path, visitor);
        }
    }
    if (options.filesFrom.has_value() && !Interrupted()) {
        const std::optional<std::string> failure = ReadPathList(
            *options.filesFrom, options.nulSeparated, [&](const std::string& path) { WalkPath(path, visitor); });
        if (failure.has_value()) {
            WriteMessage(*options.filesFrom + ": " + *failure);
            allRead = false;
        }
    }
    writer->End(BeginRecord(), Interrupted());
    EndRecord();
    FlushOutput();
    return allRead;
}

bool ReaderWaitsForRecords(const Options& options) {
    return isatty(STDOUT_FILENO) != 0 || (options.filesFrom.has_value() && PathsComeOneByOne(*options.filesFrom));
}

int Run(int argc, char** argv) {
    int exitStatus = successExitStatus;
    const std::optional<Options> options = ParseOptions(argc, argv, exitStatus);
    if (!options.has_value()) return exitStatus;
    if (ReaderWaitsForRecords(*options)) FlushEachRecord();
    bool allRead = true;
    if (options->listFormats) {
        WriteFormatsList(options->format);
    } else {
        allRead = IdentifyAll(*options);
    }
    return allRead ? successExitStatus : failedExitStatus;
}

}  // namespace

int main(int argc, char** argv) {
    FillStandardDescriptors();
    CatchInterrupts();
    try {
        const int exitStatus = Run(argc, argv);
        EndIfInterrupted();
        return exitStatus;
    } catch (const std::exception& error) {
        WriteMessage(error.what());
        return failedExitStatus;
    }
}
