// record_writer.cpp - text, JSON, CSV and TSV.
#include "cli/record_writer.h"

#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>
#include <vector>

#include "cli/output.h"
#include "signatures/table.h"

namespace {

using Json = nlohmann::ordered_json;

std::string EscapeByte(unsigned char byte) {
    std::array<char, 5> text = {};
    std::snprintf(text.data(), text.size(), "\\x%02X", static_cast<unsigned>(byte));
    return text.data();
}

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

Json JsonOf(const Record& record, bool explain) {
    Json json;
    json["path"] = record.path;
    if (!IsUtf8(record.path)) json["path_hex"] = HexOf(record.path);
    if (record.error.has_value()) {
        json["error"] = *record.error;
        return json;
    }
    const FIFormatRecord& format = FormatOf(record.fiid);
    json["fiid"] = record.fiid;
    json["name"] = format.name;
    json["mime"] = format.mime;
    json["puid"] = SplitAtBlanks(format.puids);
    if (explain) {
        json["row"] = record.row;
        json["signature"] = SignatureOf(record.row);
    }
    return json;
}

Json JsonOf(const FIFormatRecord& format) {
    Json json;
    json["fiid"] = format.fiid;
    json["name"] = format.name;
    json["mime"] = format.mime;
    json["puid"] = SplitAtBlanks(format.puids);
    json["extensions"] = SplitAtBlanks(format.extensions);
    return json;
}

std::vector<std::string> FieldsOf(const Record& record, bool explain) {
    const bool failed = record.error.has_value();
    const FIFormatRecord& format = FormatOf(record.fiid);
    std::vector<std::string> fields = {record.path,  failed ? "" : std::to_string(record.fiid),
                                       format.name,  format.mime,
                                       format.puids, record.error.value_or("")};
    if (explain) {
        fields.push_back(failed ? "" : std::to_string(record.row));
        fields.push_back(SignatureOf(record.row));
    }
    return fields;
}

std::vector<std::string> FieldsOf(const FIFormatRecord& format) {
    return {std::to_string(format.fiid), format.name, format.mime, format.puids, format.extensions};
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

std::string EscapeForText(const std::string& path) {
    std::string text;
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F) {
            text += EscapeByte(byte);
        } else if (character == '\\') {
            text += "\\\\";
        } else {
            text += character;
        }
    }
    return text;
}

void RecordWriter::BeginRecords() {
    std::vector<std::string> header = {"path", "fiid", "name", "mime", "puid", "error"};
    if (explain_) header.insert(header.end(), {"row", "signature"});
    if (format_ == OutputFormat::Csv) WriteOutput(JoinCsv(header));
    if (format_ == OutputFormat::Tsv) WriteOutput(JoinTsv(header));
    if (format_ == OutputFormat::Json) WriteOutput("[");
}

void RecordWriter::BeginFormats() {
    const std::vector<std::string> header = {"fiid", "name", "mime", "puid", "extensions"};
    if (format_ == OutputFormat::Csv) WriteOutput(JoinCsv(header));
    if (format_ == OutputFormat::Tsv) WriteOutput(JoinTsv(header));
    if (format_ == OutputFormat::Json) WriteOutput("[");
}

void RecordWriter::WriteFields(const std::string& line) {
    if (format_ == OutputFormat::Json) WriteOutput(first_ ? "\n" : ",\n");
    first_ = false;
    WriteOutput(line);
    if (format_ == OutputFormat::Ndjson) WriteOutput("\n");
}

void RecordWriter::Write(const Record& record) {
    if (record.error.has_value()) WriteMessage(EscapeForText(record.path) + ": " + *record.error);
    switch (format_) {
        case OutputFormat::Text:
            if (!record.error.has_value()) WriteFields(TextOf(record, explain_));
            return;
        case OutputFormat::Csv:
            return WriteFields(JoinCsv(FieldsOf(record, explain_)));
        case OutputFormat::Tsv:
            return WriteFields(JoinTsv(FieldsOf(record, explain_)));
        case OutputFormat::Json:
        case OutputFormat::Ndjson:
            return WriteFields(Dump(JsonOf(record, explain_)));
    }
}

void RecordWriter::Write(const FIFormatRecord& format) {
    switch (format_) {
        case OutputFormat::Text:
            return WriteFields(TextOf(format));
        case OutputFormat::Csv:
            return WriteFields(JoinCsv(FieldsOf(format)));
        case OutputFormat::Tsv:
            return WriteFields(JoinTsv(FieldsOf(format)));
        case OutputFormat::Json:
        case OutputFormat::Ndjson:
            return WriteFields(Dump(JsonOf(format)));
    }
}

void RecordWriter::End() {
    if (format_ == OutputFormat::Json) WriteOutput(first_ ? "]\n" : "\n]\n");
    FlushOutput();
}
