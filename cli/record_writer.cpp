// record_writer.cpp - text, JSON, CSV and TSV.
#include "cli/record_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <string_view>

#include "cli/byte_set.h"
#include "cli/escape_text.h"
#include "cli/hex_digits.h"
#include "cli/json_text.h"
#include "cli/output.h"
#include "signatures/table.h"

namespace {

std::string_view SignatureOf(std::uint16_t row) {
    const FISignatureRow* const signature = FIFindSignatureRow(row);
    return signature != nullptr ? signature->signature : std::string_view();
}

const FIFormatRecord& FormatOf(FIID fiid) {
    static constexpr FIFormatRecord nameless = {0, "", "", "", ""};
    const FIFormatRecord* const format = FIFindFormatRecord(fiid);
    return format != nullptr ? *format : nameless;
}

// What there is to tell under one key. The bytes are those of the item that it is told of.
struct Value {
    enum class Kind {
        None,    // nothing: left out of JSON, empty in csv and tsv
        Number,  // number
        Text,    // bytes as they are
        Hex,     // bytes in hexadecimal
        Words,   // words with one blank between two: an array in JSON
    };
    Kind kind;
    std::uint32_t number;
    std::string_view bytes;
};

constexpr Value nothing = {Value::Kind::None, 0, {}};

constexpr Value Number(std::uint32_t number) { return {Value::Kind::Number, number, {}}; }
constexpr Value Text(std::string_view bytes) { return {Value::Kind::Text, 0, bytes}; }
constexpr Value Hex(std::string_view bytes) { return {Value::Kind::Hex, 0, bytes}; }
constexpr Value Words(std::string_view bytes) { return {Value::Kind::Words, 0, bytes}; }

enum class Shown { Always, InJson, WithExplain };

// What the output tells of one item (a Record, a FIFormatRecord) under one key.
template <typename Item>
struct Column {
    std::string_view key;
    Shown shown;
    Value (*value)(const Item&);
};

bool Failed(const Record& record) { return record.error.has_value(); }

const FIFormatRecord& FormatOf(const Record& record) { return FormatOf(record.fiid); }

// In the order of csv and tsv. An error leaves only the path to tell, and a failed record no answer.
constexpr Column<Record> recordColumns[] = {
    // clang-format off
    {"path",      Shown::Always,      [](const Record& r) { return Text(r.path); }},
    {"path_hex",  Shown::InJson,      [](const Record& r) { return IsUtf8(r.path) ? nothing : Hex(r.path); }},
    {"fiid",      Shown::Always,      [](const Record& r) { return Failed(r) ? nothing : Number(r.fiid); }},
    {"name",      Shown::Always,      [](const Record& r) { return Failed(r) ? nothing : Text(FormatOf(r).name); }},
    {"mime",      Shown::Always,      [](const Record& r) { return Failed(r) ? nothing : Text(FormatOf(r).mime); }},
    {"puid",      Shown::Always,      [](const Record& r) { return Failed(r) ? nothing : Words(FormatOf(r).puids); }},
    {"error",     Shown::Always,      [](const Record& r) { return Failed(r) ? Text(*r.error) : nothing; }},
    {"row",       Shown::WithExplain, [](const Record& r) { return Failed(r) ? nothing : Number(r.row); }},
    {"signature", Shown::WithExplain, [](const Record& r) { return Failed(r) ? nothing : Text(SignatureOf(r.row)); }},
    // clang-format on
};

constexpr Column<FIFormatRecord> formatColumns[] = {
    // clang-format off
    {"fiid",       Shown::Always, [](const FIFormatRecord& f) { return Number(f.fiid); }},
    {"name",       Shown::Always, [](const FIFormatRecord& f) { return Text(f.name); }},
    {"mime",       Shown::Always, [](const FIFormatRecord& f) { return Text(f.mime); }},
    {"puid",       Shown::Always, [](const FIFormatRecord& f) { return Words(f.puids); }},
    {"extensions", Shown::Always, [](const FIFormatRecord& f) { return Words(f.extensions); }},
    // clang-format on
};

std::span<const Column<Record>> ColumnsOf(const Record&) { return recordColumns; }

std::span<const Column<FIFormatRecord>> ColumnsOf(const FIFormatRecord&) { return formatColumns; }

void AppendNumber(std::string& out, std::uint32_t number) {
    std::array<char, 10> digits;
    out.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

void AppendHex(std::string& out, std::string_view bytes) {
    for (const char byte : bytes) AppendHexByte(out, static_cast<std::uint8_t>(byte), lowerHexDigits);
}

void AppendJsonWords(std::string& out, std::string_view words) {
    out += '[';
    while (!words.empty()) {
        const std::size_t size = std::min(words.find(' '), words.size());
        AppendJsonText(out, words.substr(0, size));
        words.remove_prefix(std::min(size + 1, words.size()));
        if (!words.empty()) out += ',';
    }
    out += ']';
}

void AppendJsonValue(std::string& out, const Value& value) {
    switch (value.kind) {
        case Value::Kind::None:
            return;
        case Value::Kind::Number:
            return AppendNumber(out, value.number);
        case Value::Kind::Text:
            return AppendJsonText(out, value.bytes);
        case Value::Kind::Hex:
            out += '"';
            AppendHex(out, value.bytes);
            out += '"';
            return;
        case Value::Kind::Words:
            return AppendJsonWords(out, value.bytes);
    }
}

void AppendCsvText(std::string& out, std::string_view text) {
    constexpr ByteSet quoted = ByteSet(",\"\r\n");
    constexpr ByteSet doubled = ByteSet("\"");
    const std::size_t start = out.size();
    if (!quoted.AppendUpTo(out, text)) return;
    out.insert(start, 1, '"');
    while (doubled.AppendUpTo(out, text)) {
        out += "\"\"";
        text.remove_prefix(1);
    }
    out += '"';
}

void AppendTsvText(std::string& out, std::string_view text) {
    constexpr ByteSet escaped = ByteSet("\t\n\r\\");
    while (escaped.AppendUpTo(out, text)) {
        out += '\\';
        out += text[0] == '\t' ? 't' : text[0] == '\n' ? 'n' : text[0] == '\r' ? 'r' : '\\';
        text.remove_prefix(1);
    }
}

// How the fields of a line are written, and what stands between and behind them.
struct LineForm {
    char separator;
    std::string_view end;
    void (*appendText)(std::string& out, std::string_view text);
};

constexpr LineForm csvForm = {',', "\r\n", AppendCsvText};
constexpr LineForm tsvForm = {'\t', "\n", AppendTsvText};

void AppendField(std::string& out, const Value& value, const LineForm& form) {
    switch (value.kind) {
        case Value::Kind::None:
            return;
        case Value::Kind::Number:
            return AppendNumber(out, value.number);
        case Value::Kind::Text:
        case Value::Kind::Words:
            return form.appendText(out, value.bytes);
        case Value::Kind::Hex:
            return AppendHex(out, value.bytes);
    }
}

// A line of the values of those columns that are shown in lines.
template <typename Item, typename ValueOf>
void AppendLine(std::string& out, std::span<const Column<Item>> columns, bool explain, const LineForm& form,
                ValueOf valueOf) {
    bool first = true;
    for (const Column<Item>& column : columns) {
        if (column.shown == Shown::InJson || (column.shown == Shown::WithExplain && !explain)) continue;
        if (!first) out += form.separator;
        first = false;
        AppendField(out, valueOf(column), form);
    }
    out += form.end;
}

template <typename Item>
void AppendHeader(std::string& out, std::span<const Column<Item>> columns, bool explain, const LineForm& form) {
    AppendLine(out, columns, explain, form, [](const Column<Item>& column) { return Text(column.key); });
}

template <typename Item>
void AppendItem(std::string& out, const Item& item, bool explain, const LineForm& form) {
    AppendLine(out, ColumnsOf(item), explain, form, [&](const Column<Item>& column) { return column.value(item); });
}

template <typename Item>
void AppendJson(std::string& out, const Item& item, bool explain) {
    char separator = '{';
    for (const Column<Item>& column : ColumnsOf(item)) {
        if (column.shown == Shown::WithExplain && !explain) continue;
        const Value value = column.value(item);
        if (value.kind == Value::Kind::None) continue;
        out += separator;
        separator = ',';
        out += '"';
        out += column.key;
        out += "\":";
        AppendJsonValue(out, value);
    }
    out += '}';
}

void AppendText(std::string& out, const Record& record, bool explain) {
    AppendEscapedText(out, record.path);
    out += ": ";
    out += FormatOf(record).name;
    out += " [";
    AppendNumber(out, record.fiid);
    out += ']';
    if (explain && record.row != 0) {
        out += " (row ";
        AppendNumber(out, record.row);
        out += ": ";
        out += SignatureOf(record.row);
        out += ')';
    } else if (explain) {
        out += " (no row)";
    }
    out += '\n';
}

void AppendText(std::string& out, const FIFormatRecord& format, bool) {
    AppendNumber(out, format.fiid);
    out += "  ";
    out += format.name;
    out += '\n';
}

}  // namespace

template <typename ItemColumn>
void RecordWriter::Begin(std::span<const ItemColumn> columns) {
    std::string& out = BeginRecord();
    if (format_ == OutputFormat::Csv) AppendHeader(out, columns, explain_, csvForm);
    if (format_ == OutputFormat::Tsv) AppendHeader(out, columns, explain_, tsvForm);
    if (format_ == OutputFormat::Json) out += '[';
    EndRecord();
}

void RecordWriter::BeginRecords() { Begin<Column<Record>>(recordColumns); }

void RecordWriter::BeginFormats() { Begin<Column<FIFormatRecord>>(formatColumns); }

template <typename Item>
void RecordWriter::WriteItem(const Item& item) {
    std::string& out = BeginRecord();
    switch (format_) {
        case OutputFormat::Text:
            AppendText(out, item, explain_);
            break;
        case OutputFormat::Csv:
            AppendItem(out, item, explain_, csvForm);
            break;
        case OutputFormat::Tsv:
            AppendItem(out, item, explain_, tsvForm);
            break;
        case OutputFormat::Json:
            // The comma of the array stands in front of an item, so that an array ends well behind any of them.
            out += first_ ? "\n" : ",\n";
            AppendJson(out, item, explain_);
            break;
        case OutputFormat::Ndjson:
            AppendJson(out, item, explain_);
            out += '\n';
            break;
    }
    first_ = false;
    EndRecord();
}

void RecordWriter::Write(const Record& record) {
    if (Failed(record)) {
        WriteMessage(std::string(record.path) + ": " + *record.error);
        if (format_ == OutputFormat::Text) return;
    }
    WriteItem(record);
}

void RecordWriter::Write(const FIFormatRecord& format) { WriteItem(format); }

void RecordWriter::End() {
    if (format_ == OutputFormat::Json) WriteRecord(first_ ? "]\n" : "\n]\n");
    FlushOutput();
}
