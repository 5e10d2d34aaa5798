// html_report.h - a report as one page that needs no network: what a person mails to the one who asked.
#pragma once

#include <memory>

#include "report/report_writer.h"

// The page streams: of the records only counts for each answer stay in memory. Records whose answer has no identifier,
// as one that is gone may have, count as files of no format.
std::unique_ptr<ReportWriter> MakeHtmlWriter(const ReportOptions& options);
