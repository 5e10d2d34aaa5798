// line_writer.h - records in lines of fields.
#pragma once

#include "report/report_writer.h"

// csv and tsv: a line of keys, and one for each record, also for a failed one.
std::unique_ptr<ReportWriter> MakeLineWriter(const ReportOptions& options);
