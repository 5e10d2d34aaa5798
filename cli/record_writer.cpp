// record_writer.cpp - text, JSON, CSV and TSV.
#include "cli/record_writer.h"

#include <nlohmann/json.hpp>
#include <span>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/escape_text.h"
#include "cli/output.h"
#include "signatures/table.h"

namespace {

using Json = nlohmann::ordered_json;

// The fields of a line in the order of its header; an error stands in a field of its own.
std::string JoinCsv(const std::vector<std::string>& fields) {
    std::string line;
    for (const std::string& field : fields) {
        if (&field != &fields.front()) line += ',';
        if (field.find_first_of(",\"\r\n") == std::string::npos) {
            line += field;
            continue;
        }
        line += '"';
        for (const char character : field) {
            if (character == '"') line += '"';
            line += character;
        }
        line += '"';
    }
    return line + "\r\n";
}

std::string JoinTsv(const std::vector<std::string>& fields) {
    std::string line;
    for (const std::string& field : fields) {
        if (&field != &fields.front()) line += '\t';
        for (const char character : field) {
            switch (character) {
                case '\t':
                    line += "\\t";
                    break;
                case '\n':
                    line += "\\n";
                    break;
                case '\r':
                    line += "\\r";
                    break;
                case '\\':
                    line += "\\\\";
                    break;
                default:
                    line += character;
            }
        }
    }
    return line + "\n";
}

std::vector<std::string> SplitAtBlanks(const char* text) {
    std::istringstream words(text);
    std::vector<std::string> list;
    for (std::string word; words >> word;) list.push_back(word);
    return list;
}

std::string HexOf(const std::string& bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

// Compact, each invalid byte of UTF-8 as the replacement character.
std::string Dump(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

bool IsUtf8(const std::string& text) {
    try {
        static_cast<void>(Json(text).dump());
        return true;
    } catch (const Json::exception&) {
        return false;
    }
}

std::string SignatureOf(std::uint16_t row) {
    const FISignatureRow* const signature = FIFindSignatureRow(row);
    return signature != nullptr ? std::string(signature->signature) : "";
}

const FIFormatRecord& FormatOf(FIID fiid) {
    static constexpr FIFormatRecord nameless = {0, "", "", "", ""};
    const FIFormatRecord* const format = FIFindFormatRecord(fiid);
    return format != nullptr ? *format : nameless;
}

enum class Shown { Always, InJson, WithExplain };

// What the output tells of one item (a Record, a FIFormatRecord) under one key.
template <typename Item>
struct Column {
    const char* key;
    Shown shown;
    Json (*value)(const Item&);  // null where there is nothing to tell: left out of JSON, empty in csv and tsv
};

bool Failed(const Record& record) { return record.error.has_value(); }

const FIFormatRecord& FormatOf(const Record& record) { return FormatOf(record.fiid); }

Json PuidsOf(const FIFormatRecord& format) { return SplitAtBlanks(format.puids); }

// In the order of csv and tsv. An error leaves only the path to tell, and a failed record no answer.
constexpr Column<Record> recordColumns[] = {
    // clang-format off
    {"path",      Shown::Always,      [](const Record& r) { return Json(r.path); }},
    {"path_hex",  Shown::InJson,      [](const Record& r) { return IsUtf8(r.path) ? Json() : Json(HexOf(r.path)); }},
    {"fiid",      Shown::Always,      [](const Record& r) { return Failed(r) ? Json() : Json(r.fiid); }},
    {"name",      Shown::Always,      [](const Record& r) { return Failed(r) ? Json() : Json(FormatOf(r).name); }},
    {"mime",      Shown::Always,      [](const Record& r) { return Failed(r) ? Json() : Json(FormatOf(r).mime); }},
    {"puid",      Shown::Always,      [](const Record& r) { return Failed(r) ? Json() : PuidsOf(FormatOf(r)); }},
    {"error",     Shown::Always,      [](const Record& r) { return Failed(r) ? Json(*r.error) : Json(); }},
    {"row",       Shown::WithExplain, [](const Record& r) { return Failed(r) ? Json() : Json(r.row); }},
    {"signature", Shown::WithExplain, [](const Record& r) { return Failed(r) ? Json() : Json(SignatureOf(r.row)); }},
    // clang-format on
};

constexpr Column<FIFormatRecord> formatColumns[] = {
    // clang-format off
    {"fiid",       Shown::Always, [](const FIFormatRecord& f) { return Json(f.fiid); }},
    {"name",       Shown::Always, [](const FIFormatRecord& f) { return Json(f.name); }},
    {"mime",       Shown::Always, [](const FIFormatRecord& f) { return Json(f.mime); }},
    {"puid",       Shown::Always, [](const FIFormatRecord& f) { return PuidsOf(f); }},
    {"extensions", Shown::Always, [](const FIFormatRecord& f) { return Json(SplitAtBlanks(f.extensions)); }},
    // clang-format on
};

// A value as a field of csv and tsv: text as it is, a list with blanks between its members.
std::string FieldOf(const Json& value) {
    if (value.is_null()) return "";
    if (value.is_string()) return value.get<std::string>();
    if (!value.is_array()) return value.dump();
    std::string field;
    for (const Json& member : value) field += (field.empty() ? "" : " ") + member.get<std::string>();
    return field;
}

template <typename Item>
bool HasField(const Column<Item>& column, bool explain) {
    return column.shown == Shown::Always || (column.shown == Shown::WithExplain && explain);
}

template <typename Item>
std::vector<std::string> HeaderOf(std::span<const Column<Item>> columns, bool explain) {
    std::vector<std::string> header;
    for (const Column<Item>& column : columns) {
        if (HasField(column, explain)) header.emplace_back(column.key);
    }
    return header;
}

template <typename Item>
std::vector<std::string> FieldsOf(std::span<const Column<Item>> columns, const Item& item, bool explain) {
    std::vector<std::string> fields;
    for (const Column<Item>& column : columns) {
        if (HasField(column, explain)) fields.push_back(FieldOf(column.value(item)));
    }
    return fields;
}

template <typename Item>
Json JsonOf(std::span<const Column<Item>> columns, const Item& item, bool explain) {
    Json json;
    for (const Column<Item>& column : columns) {
        if (column.shown == Shown::WithExplain && !explain) continue;
        Json value = column.value(item);
        if (!value.is_null()) json[column.key] = std::move(value);
    }
    return json;
}

std::string TextOf(const Record& record, bool explain) {
    std::ostringstream line;
    line << EscapeForText(record.path) << ": " << FormatOf(record.fiid).name << " [" << record.fiid << "]";
    if (explain && record.row != 0) line << " (row " << record.row << ": " << SignatureOf(record.row) << ")";
    if (explain && record.row == 0) line << " (no row)";
    line << "\n";
    return line.str();
}

std::string TextOf(const FIFormatRecord& format) { return std::to_string(format.fiid) + "  " + format.name + "\n"; }

}  // namespace

void RecordWriter::Begin(const std::vector<std::string>& header) {
    if (format_ == OutputFormat::Csv) WriteRecord(JoinCsv(header));
    if (format_ == OutputFormat::Tsv) WriteRecord(JoinTsv(header));
    if (format_ == OutputFormat::Json) WriteRecord("[");
}

void RecordWriter::BeginRecords() { Begin(HeaderOf<Record>(recordColumns, explain_)); }

void RecordWriter::BeginFormats() { Begin(HeaderOf<FIFormatRecord>(formatColumns, explain_)); }

// The comma of the array stands in front of an item, so that an array ends well behind any of them.
void RecordWriter::WriteItem(const std::string& text) {
    const char* const start = format_ != OutputFormat::Json ? "" : first_ ? "\n" : ",\n";
    const char* const end = format_ == OutputFormat::Ndjson ? "\n" : "";
    first_ = false;
    WriteRecord(start + text + end);
}

void RecordWriter::Write(const Record& record) {
    if (Failed(record)) WriteMessage(record.path + ": " + *record.error);
    switch (format_) {
        case OutputFormat::Text:
            if (!Failed(record)) WriteItem(TextOf(record, explain_));
            return;
        case OutputFormat::Csv:
            return WriteItem(JoinCsv(FieldsOf<Record>(recordColumns, record, explain_)));
        case OutputFormat::Tsv:
            return WriteItem(JoinTsv(FieldsOf<Record>(recordColumns, record, explain_)));
        case OutputFormat::Json:
        case OutputFormat::Ndjson:
            return WriteItem(Dump(JsonOf<Record>(recordColumns, record, explain_)));
    }
}

void RecordWriter::Write(const FIFormatRecord& format) {
    switch (format_) {
        case OutputFormat::Text:
            return WriteItem(TextOf(format));
        case OutputFormat::Csv:
            return WriteItem(JoinCsv(FieldsOf<FIFormatRecord>(formatColumns, format, explain_)));
        case OutputFormat::Tsv:
            return WriteItem(JoinTsv(FieldsOf<FIFormatRecord>(formatColumns, format, explain_)));
        case OutputFormat::Json:
        case OutputFormat::Ndjson:
            return WriteItem(Dump(JsonOf<FIFormatRecord>(formatColumns, format, explain_)));
    }
}

void RecordWriter::End() {
    if (format_ == OutputFormat::Json) WriteRecord(first_ ? "]\n" : "\n]\n");
    FlushOutput();
}
