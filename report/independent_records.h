// independent_records.h - what the writers have in common whose records do not depend on each other.
#pragma once

#include "report/report_writer.h"

// Nothing stands in front of the records, between them, or behind them.
class IndependentRecords : public ReportWriter {
 public:
    void Begin(std::string&) override {}
    void Place(const Record&, std::string_view rendered, std::string& out) override { out += rendered; }
    void End(std::string&, bool) override {}
};
