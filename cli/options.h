// options.h - the command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/progress.h"
#include "report/report_writer.h"
#include "report/summary.h"
#include "scan/format_filter.h"
#include "scan/hash.h"
#include "scan/name_filter.h"

enum class StoreQueryKind { Files, Summary, Mismatch, Changes, Errors, Duplicates };

// What is looked at.
struct Options {
    // Paths.
    std::vector<std::string> paths;        // "-" for standard input
    std::optional<std::string> filesFrom;  // "-" for standard input
    bool nulSeparated = false;

    // Which files below directories, and how they are walked.
    NameFilter names;
    bool filtersNames = false;
    std::uint32_t maxDepth = UINT32_MAX;
    bool oneFileSystem = false;
    bool sorted = true;
    std::uint64_t minSize = 0;
    std::uint64_t maxSize = UINT64_MAX;
    unsigned jobs = 1;

    // How they are told.
    bool extendedText = true;
    bool further = true;
    HashKind hash = HashKind::None;

    // What is written.
    FormatFilter formats;
    ReportOptions report;
    std::optional<SummaryKey> summary;
    bool writesRecords = true;
    bool listFormats = false;
    bool verbose = false;
    ProgressMode progress = ProgressMode::Auto;

    // The store.
    std::optional<std::string> store;
    std::optional<StoreQueryKind> query;
    bool prune = false;
    bool rescan = false;
    bool refresh = false;
    std::vector<std::string> arguments;  // all of the command line behind the program's name
};

// Reads the command line. When the program is to end at once (help, version, wrong usage) the text is printed and the
// exit status is in exitStatus.
std::optional<Options> ParseOptions(int argc, char** argv, int& exitStatus);
