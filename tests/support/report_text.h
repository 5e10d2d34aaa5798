// report_text.h - records as tests need them, and the reports of some.
#pragma once

#include <string>
#include <vector>

#include "report/report_writer.h"

// An answer with nothing in it.
inline fiid_result EmptyAnswer() {
    fiid_result answer;
    fiid_detect_memory(nullptr, 1, nullptr, nullptr, &answer);
    return answer;
}

inline Record RecordOf(const std::string& path, std::uint16_t fiid, const char* name) {
    Record record;
    record.path = path;
    record.answer = EmptyAnswer();
    record.answer.fiid = fiid;
    record.answer.name = name;
    return record;
}

inline Record FailedRecord(const std::string& path, const std::string& error) {
    Record record = RecordOf(path, 0, "");
    record.error = error;
    return record;
}

inline ReportOptions OptionsFor(OutputFormat format) {
    ReportOptions options;
    options.format = format;
    return options;
}

// All bytes of the report of some records.
inline std::string ReportOf(const std::vector<Record>& records, const ReportOptions& options) {
    const std::unique_ptr<ReportWriter> writer = MakeReportWriter(options);
    std::string out;
    writer->Begin(out);
    for (const Record& record : records) {
        std::string rendered;
        writer->Render(record, rendered);
        writer->Place(record, rendered, out);
    }
    writer->End(out, false);
    return out;
}

inline std::string ReportOf(const std::vector<Record>& records, OutputFormat format) {
    return ReportOf(records, OptionsFor(format));
}
