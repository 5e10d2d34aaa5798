// text_writer.h - records for people, and paths for other programs.
#pragma once

#include "report/report_writer.h"

// text, mime and path: a line for each record; none for a failed one, which is told on standard error.
std::unique_ptr<ReportWriter> MakeTextWriter(const ReportOptions& options);
