// main.cpp - the program fiid: tells the format of files.
#include <malloc.h>
#include <unistd.h>

#include <exception>
#include <new>

#include "cli/options.h"
#include "cli/scan_session.h"
#include "cli/store_query.h"
#include "report/formats_list.h"
#include "report/output.h"
#include "scan/descriptors.h"
#include "scan/interrupt.h"
#include "scan/path_list.h"

namespace {

constexpr int successExitStatus = 0;
constexpr int largestKeptBlock = 256 * 1024;  // in bytes

// Output goes to a terminal, or to a program that writes a path and waits for its record.
bool ReaderWaitsForRecords(const Options& options) {
    return isatty(STDOUT_FILENO) != 0 || (options.filesFrom.has_value() && PathsComeOneByOne(*options.filesFrom));
}

// Returns whether all was done as asked.
bool Follow(const Options& options) {
    if (options.listFormats) {
        WriteFormatsList(options.report.format);
        return true;
    }
    return options.query.has_value() ? RunStoreQuery(options) : RunScan(options);
}

int Run(int argc, char** argv) {
    int exitStatus = successExitStatus;
    const std::optional<Options> options = ParseOptions(argc, argv, exitStatus);
    if (!options.has_value()) return exitStatus;
    if (ReaderWaitsForRecords(*options)) FlushEachRecord();
    return Follow(*options) ? successExitStatus : failedExitStatus;
}

// The library would keep what one path of a megabyte took in each thread, for the next.
void GiveLargeBlocksBack() {
#ifdef M_MMAP_THRESHOLD
    static_cast<void>(mallopt(M_MMAP_THRESHOLD, largestKeptBlock));
#endif
}

}  // namespace

int main(int argc, char** argv) {
    FillStandardDescriptors();
    CatchInterrupts();
    GiveLargeBlocksBack();
    try {
        const int exitStatus = Run(argc, argv);
        EndIfInterrupted();
        return exitStatus;
    } catch (const std::bad_alloc&) {
        WriteMessage("memory is exhausted");
        return failedExitStatus;
    } catch (const std::exception& error) {
        WriteMessage(error.what());
        return failedExitStatus;
    }
}
