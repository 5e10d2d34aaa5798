// siegfried.h - the CSV that siegfried writes.
#pragma once

#include "report/report_writer.h"

// A row for each file and PRONOM identifier. docs/output-formats.md tells the columns.
std::unique_ptr<ReportWriter> MakeSiegfriedWriter(const ReportOptions& options);
