// record_columns.h - the fields of a record: what csv, tsv, json and ndjson tell under which key.
#pragma once

#include <string_view>
#include <vector>

#include "report/report_writer.h"
#include "report/value.h"

// What brings a field into a report.
enum class ShownBy {
    Default,        // nothing: it is there, unless other fields are named
    DefaultInJson,  // likewise in JSON; in lines when it is named
    Name,           // that it is named
    Mismatch,       // --mismatch, or that it is named
    Explain,        // --explain. Without the option the field can't be named; likewise below
    Sha256,         // --hash sha256
    Xxh3,           // --hash xxh3
    Changes,        // --query changes
    Copies,         // --query duplicates
};

struct RecordColumn {
    std::string_view key;  // of ASCII letters, digits and low lines
    ShownBy shownBy;
    Value (*value)(const Record& record);
};

// The fields that a report has, in order: those that are named, or the default ones. The columns are static.
std::vector<const RecordColumn*> ColumnsOf(const ReportOptions& options);
