// report_writer.cpp - which writer makes which format.
#include "report/report_writer.h"

#include "report/droid.h"
#include "report/html_report.h"
#include "report/json_writer.h"
#include "report/line_writer.h"
#include "report/siegfried.h"
#include "report/text_writer.h"

std::unique_ptr<ReportWriter> MakeReportWriter(const ReportOptions& options) {
    switch (options.format) {
        case OutputFormat::Text:
        case OutputFormat::Mime:
        case OutputFormat::Path:
            return MakeTextWriter(options);
        case OutputFormat::Json:
        case OutputFormat::Ndjson:
            return MakeJsonWriter(options);
        case OutputFormat::Csv:
        case OutputFormat::Tsv:
            return MakeLineWriter(options);
        case OutputFormat::Droid:
            return MakeDroidWriter(options);
        case OutputFormat::Siegfried:
            return MakeSiegfriedWriter(options);
        case OutputFormat::Html:
            return MakeHtmlWriter(options);
    }
    return nullptr;
}
