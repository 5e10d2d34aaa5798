// record_writer.h - the output formats.
#pragma once

#include <span>

#include "fiid/detect.h"
#include "report/report_writer.h"
#include "scan/record.h"

// Writes records to standard output in one format, from Begin to End.
class RecordWriter {
 public:
    // With explain, records also tell what decided, what it looked at, and what that cost.
    RecordWriter(OutputFormat format, bool explain) : format_(format), explain_(explain) {}

    void BeginRecords();
    void Write(const Record& record);
    void BeginFormats();
    void Write(const fiid_format& format);
    void End();

 private:
    // The header, of a column each.
    template <typename Column>
    void Begin(std::span<const Column> columns);
    template <typename Item>
    void WriteItem(const Item& item);

    OutputFormat format_;
    bool explain_;
    bool first_ = true;
};
