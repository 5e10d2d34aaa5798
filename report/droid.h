// droid.h - the CSV that DROID 6 exports, one row per format.
#pragma once

#include "report/report_writer.h"

// A row for each file and PRONOM identifier, and in front of a folder's first file one for the folder. docs/output-formats.md
// tells the columns.
std::unique_ptr<ReportWriter> MakeDroidWriter(const ReportOptions& options);
