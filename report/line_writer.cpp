// line_writer.cpp - csv and tsv.
#include "report/line_writer.h"

#include "report/independent_records.h"
#include "report/record_columns.h"
#include "report/value_text.h"

namespace {

class LineWriter : public IndependentRecords {
 public:
    explicit LineWriter(const ReportOptions& options)
        : form_(options.format == OutputFormat::Csv ? csvForm : tsvForm), columns_(ColumnsOf(options)) {}

    void Begin(std::string& out) override {
        AppendLine(out, [](const RecordColumn& column) { return Text(column.key); });
    }

    void Render(const Record& record, std::string& out) const override {
        AppendLine(out, [&](const RecordColumn& column) { return column.value(record); });
    }

 private:
    template <typename ValueOf>
    void AppendLine(std::string& out, ValueOf valueOf) const {
        bool first = true;
        for (const RecordColumn* const column : columns_) {
            if (!first) out += form_.separator;
            first = false;
            AppendField(out, valueOf(*column), form_);
        }
        out += form_.end;
    }

    const LineForm& form_;
    std::vector<const RecordColumn*> columns_;
};

}  // namespace

std::unique_ptr<ReportWriter> MakeLineWriter(const ReportOptions& options) {
    return std::make_unique<LineWriter>(options);
}
