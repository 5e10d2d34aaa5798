// report_writer.h - the output formats.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "scan/hash.h"
#include "scan/record.h"

enum class OutputFormat { Text, Ndjson, Json, Csv, Tsv, Mime, Path, Droid, Siegfried, Html };

// What a report tells, and in which form.
struct ReportOptions {
    OutputFormat format = OutputFormat::Text;
    bool explain = false;             // also tells what decided, what it looked at, and what that cost
    HashKind hash = HashKind::None;   // which hash the records have
    bool withExtensions = false;      // --mismatch: the field extensions at the end
    bool withChanges = false;         // --query changes
    bool withCopies = false;          // --query duplicates
    std::vector<std::string> fields;  // --fields: keys in the order asked for; empty for the default ones
    char pathEnd = '\n';              // Path: what stands behind a path, a line feed or NUL
    std::string title;                // Html: what was looked at, for people; any bytes
    std::int64_t startedSeconds = 0;  // Html: when the run began, since 1970-01-01 UTC
    std::vector<std::string> named;   // Droid: the paths that were named; folders above them have no rows
    std::string directory;            // Droid: where relative paths start; empty: in the working directory
};

// Makes the bytes of a report, from Begin to End. Whoever calls hands them over: what Begin, one call of Place, or End
// appends is one record of output.h each, and must stay in one piece. The other call for each record, Render, is the
// larger part of the work, and any number of threads may be in it.
class ReportWriter {
 public:
    virtual ~ReportWriter() = default;

    // Appends what stands in front of all records.
    virtual void Begin(std::string& out) = 0;

    // Appends the form of a record as far as it does not depend on the records in front of it. Nothing for a record that
    // has no form here, such as a failed one in text.
    virtual void Render(const Record& record, std::string& out) const = 0;

    // Appends the record, of which Render appended `rendered`, to the report: in the order of the records, by one thread.
    virtual void Place(const Record& record, std::string_view rendered, std::string& out) = 0;

    // Appends what stands behind all records; interrupted if there would have been more of them.
    virtual void End(std::string& out, bool interrupted) = 0;
};

// What is wrong with --fields and the other options, for people, or nothing. Fields may be named by anyone: the text may
// hold any of their bytes.
std::string CheckFields(const ReportOptions& options);

// The options must be such that CheckFields finds nothing wrong.
std::unique_ptr<ReportWriter> MakeReportWriter(const ReportOptions& options);
