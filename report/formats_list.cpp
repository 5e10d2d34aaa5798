// formats_list.cpp - what is told of each format, and in which forms.
#include "report/formats_list.h"

#include "fiid/detect.h"
#include "report/output.h"
#include "report/value.h"
#include "report/value_text.h"

namespace {

struct FormatColumn {
    std::string_view key;
    Value (*value)(const fiid_format&);
};

constexpr FormatColumn formatColumns[] = {
    // clang-format off
    {"fiid",       [](const fiid_format& f) { return Number(f.id); }},
    {"name",       [](const fiid_format& f) { return Text(f.name); }},
    {"mime",       [](const fiid_format& f) { return Text(f.mime); }},
    {"puid",       [](const fiid_format& f) { return Words(f.puids); }},
    {"extensions", [](const fiid_format& f) { return Words(f.extensions); }},
    {"family",     [](const fiid_format& f) { return Text(f.family); }},
    // clang-format on
};

template <typename ValueOf>
void AppendLine(std::string& out, const LineForm& form, ValueOf valueOf) {
    bool first = true;
    for (const FormatColumn& column : formatColumns) {
        if (!first) out += form.separator;
        first = false;
        AppendField(out, valueOf(column), form);
    }
    out += form.end;
}

void AppendHeader(std::string& out, const LineForm& form) {
    AppendLine(out, form, [](const FormatColumn& column) { return Text(column.key); });
}

void AppendItem(std::string& out, const fiid_format& format, const LineForm& form) {
    AppendLine(out, form, [&](const FormatColumn& column) { return column.value(format); });
}

void AppendText(std::string& out, const fiid_format& format) {
    AppendNumber(out, format.id);
    out += "  ";
    out += format.name;
    out += '\n';
}

void AppendObject(std::string& out, const fiid_format& format) {
    JsonObject object(out);
    for (const FormatColumn& column : formatColumns) object.Add(column.key, column.value(format));
    object.End();
}

void AppendFormat(std::string& out, const fiid_format& format, OutputFormat form, bool first) {
    switch (form) {
        case OutputFormat::Text:
            return AppendText(out, format);
        case OutputFormat::Csv:
            return AppendItem(out, format, csvForm);
        case OutputFormat::Tsv:
            return AppendItem(out, format, tsvForm);
        case OutputFormat::Json:
            out += first ? "\n" : ",\n";
            return AppendObject(out, format);
        case OutputFormat::Ndjson:
            AppendObject(out, format);
            out += '\n';
            return;
        case OutputFormat::Mime:
        case OutputFormat::Path:
        case OutputFormat::Droid:
        case OutputFormat::Siegfried:
        case OutputFormat::Html:
            return;  // forms of records alone
    }
}

}  // namespace

void WriteFormatsList(OutputFormat form) {
    std::string& begin = BeginRecord();
    if (form == OutputFormat::Csv) AppendHeader(begin, csvForm);
    if (form == OutputFormat::Tsv) AppendHeader(begin, tsvForm);
    if (form == OutputFormat::Json) begin += '[';
    EndRecord();
    fiid_format format;
    for (std::uint32_t index = 0; fiid_format_at(index, &format) == FIID_OK; ++index) {
        AppendFormat(BeginRecord(), format, form, index == 0);
        EndRecord();
    }
    if (form == OutputFormat::Json) WriteRecord("\n]\n");
    FlushOutput();
}
