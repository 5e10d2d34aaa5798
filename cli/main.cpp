// main.cpp - the program fiid: tells the format of files.
#include <fcntl.h>
#include <unistd.h>

#include <exception>
#include <filesystem>

#include "cli/options.h"
#include "fiid/detect.h"
#include "report/output.h"
#include "report/record_writer.h"
#include "scan/descriptors.h"
#include "scan/file_walk.h"
#include "scan/identify.h"
#include "scan/interrupt.h"
#include "scan/path_list.h"

namespace {

constexpr int successExitStatus = 0;

void ListFormats(const Options& options) {
    RecordWriter writer(options.format, options.explain);
    writer.BeginFormats();
    fiid_format format;
    for (std::uint32_t index = 0; fiid_format_at(index, &format) == FIID_OK; ++index) writer.Write(format);
    writer.End();
}

std::uint32_t FlagsOf(const Options& options) {
    std::uint32_t flags = 0;
    if (!options.extendedText) flags |= FIID_NO_TEXT;
    if (!options.further) flags |= FIID_NO_FURTHER;
    if (options.explain) flags |= FIID_EXPLAIN;
    return flags;
}

// Identifies everything the options name. Returns whether all of it could be read.
bool IdentifyAll(const Options& options) {
    IdentifyOptions how;
    how.flags = FlagsOf(options);
    bool allRead = true;
    RecordWriter writer(options.format, options.explain);
    const auto write = [&](const std::optional<Record>& record) {
        if (Interrupted() || !record.has_value()) return;  // it may have been cut short
        allRead = allRead && !record->error.has_value();
        writer.Write(*record);
    };
    const auto writeFailure = [&](const std::string& path, const std::string& reason) {
        Record record;
        record.path = path;
        record.error = reason;
        write(record);
    };
    const auto writeNamed = [&](const std::string& path) {
        std::error_code unknown;
        if (std::filesystem::is_directory(path, unknown)) return false;
        write(IdentifyNamedPath(path, how));
        return true;
    };
    const auto writeEntry = [&](const std::string& path) { write(IdentifyEntry(AT_FDCWD, path, 0, how)); };
    const WalkVisitor visitor = {writeNamed, writeEntry, writeFailure};

    writer.BeginRecords();
    for (const std::string& path : options.paths) {
        if (Interrupted()) break;
        if (path == "-") {
            write(IdentifyStandardInput(how));
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
    writer.End();
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
        ListFormats(*options);
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
