// json_writer.cpp - json and ndjson.
#include "report/json_writer.h"

#include "report/independent_records.h"
#include "report/record_columns.h"
#include "report/value_text.h"

namespace {

void AppendObject(std::string& out, const Record& record, const std::vector<const RecordColumn*>& columns) {
    JsonObject object(out);
    for (const RecordColumn* const column : columns) object.Add(column->key, column->value(record));
    object.End();
}

class NdjsonWriter : public IndependentRecords {
 public:
    explicit NdjsonWriter(const ReportOptions& options) : columns_(ColumnsOf(options)) {}

    void Render(const Record& record, std::string& out) const override {
        AppendObject(out, record, columns_);
        out += '\n';
    }

 private:
    std::vector<const RecordColumn*> columns_;
};

class JsonWriter : public ReportWriter {
 public:
    explicit JsonWriter(const ReportOptions& options) : columns_(ColumnsOf(options)) {}

    void Begin(std::string& out) override { out += '['; }

    void Render(const Record& record, std::string& out) const override { AppendObject(out, record, columns_); }

    // The comma of the array stands in front of an item, so that an array ends well behind any of them.
    void Place(const Record&, std::string_view rendered, std::string& out) override {
        out += first_ ? "\n" : ",\n";
        first_ = false;
        out += rendered;
    }

    void End(std::string& out, bool) override { out += first_ ? "]\n" : "\n]\n"; }

 private:
    std::vector<const RecordColumn*> columns_;
    bool first_ = true;
};

}  // namespace

std::unique_ptr<ReportWriter> MakeJsonWriter(const ReportOptions& options) {
    if (options.format == OutputFormat::Json) return std::make_unique<JsonWriter>(options);
    return std::make_unique<NdjsonWriter>(options);
}
