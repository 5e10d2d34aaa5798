// json_writer.h - records as objects of JSON.
#pragma once

#include "report/report_writer.h"

// json: one array; ndjson: an object a line. A failed record is an object, too.
std::unique_ptr<ReportWriter> MakeJsonWriter(const ReportOptions& options);
