// record_writer.cpp - text, JSON, CSV and TSV.
#include "report/record_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <span>
#include <string_view>

#include "report/byte_set.h"
#include "report/escape_text.h"
#include "report/hex_digits.h"
#include "report/json_text.h"
#include "report/output.h"

namespace {

// What there is to tell under one key. The bytes are those of the item that it is told of.
struct Value {
    enum class Kind {
        None,    // nothing: left out of JSON, empty in csv and tsv
        Number,  // number
        Text,    // bytes as they are
        Hex,     // bytes in hexadecimal
        Words,   // words with one blank between two: an array in JSON
        Time,    // seconds since 1970-01-01 UTC, as RFC 3339 has them
    };
    Kind kind;
    std::uint64_t number;
    std::string_view bytes;
};

constexpr Value nothing = {Value::Kind::None, 0, {}};

constexpr Value Number(std::uint64_t number) { return {Value::Kind::Number, number, {}}; }
constexpr Value Text(std::string_view bytes) { return {Value::Kind::Text, 0, bytes}; }
constexpr Value Hex(std::string_view bytes) { return {Value::Kind::Hex, 0, bytes}; }
constexpr Value Words(std::string_view bytes) { return {Value::Kind::Words, 0, bytes}; }
constexpr Value Time(std::int64_t seconds) { return {Value::Kind::Time, static_cast<std::uint64_t>(seconds), {}}; }

// What does not exist is nothing.
constexpr Value NumberIfAny(std::uint64_t number) { return number != 0 ? Number(number) : nothing; }
constexpr Value TextIfAny(std::string_view bytes) { return bytes.empty() ? nothing : Text(bytes); }
constexpr Value WordsIfAny(std::string_view bytes) { return bytes.empty() ? nothing : Words(bytes); }

enum class Shown { Always, InJson, WithExplain };

// What the output tells of one item (a Record, a fiid_format) under one key.
template <typename Item>
struct Column {
    std::string_view key;
    Shown shown;
    Value (*value)(const Item&);
};

bool Failed(const Record& record) { return record.error.has_value(); }

// The warnings of an answer in words.
std::string_view WarningsOf(const fiid_result& answer) {
    static_assert(FIID_WARN_EXTENSION == 1 && FIID_WARN_CUT == 2 && FIID_WARN_SEVERAL == 4);
    constexpr std::string_view words[] = {"",        "extension",         "cut",         "extension cut",
                                          "several", "extension several", "cut several", "extension cut several"};
    return words[answer.warnings % std::size(words)];
}

// The first second of the year 0 and the one behind the year 9999, which RFC 3339 can tell.
constexpr std::int64_t firstSecondTold = -62167219200;
constexpr std::int64_t behindSecondsTold = 253402300800;

Value ModifiedTime(const fiid_result& answer) {
    const std::int64_t seconds = answer.modified_seconds;
    const bool told = answer.modified_known != 0 && seconds >= firstSecondTold && seconds < behindSecondsTold;
    return told ? Time(seconds) : nothing;
}

Value Size(const fiid_result& answer) { return answer.size != FIID_SIZE_UNKNOWN ? Number(answer.size) : nothing; }

// A column of the answer: a failed record has none.
template <Value (*valueOf)(const fiid_result&)>
Value OfAnswer(const Record& record) {
    return Failed(record) ? nothing : valueOf(record.answer);
}

using Answer = const fiid_result&;

// In the order of csv and tsv. An error leaves only the path to tell, and a failed record no answer.
constexpr Column<Record> recordColumns[] = {
    // clang-format off
    {"path",              Shown::Always,      [](const Record& r) { return Text(r.path); }},
    {"path_hex",          Shown::InJson,      [](const Record& r) { return IsUtf8(r.path) ? nothing : Hex(r.path); }},
    {"fiid",              Shown::Always,      OfAnswer<[](Answer a) { return Number(a.fiid); }>},
    {"name",              Shown::Always,      OfAnswer<[](Answer a) { return Text(a.name); }>},
    {"mime",              Shown::Always,      OfAnswer<[](Answer a) { return Text(a.mime); }>},
    {"puid",              Shown::Always,      OfAnswer<[](Answer a) { return Words(a.puids); }>},
    {"error",             Shown::Always,      [](const Record& r) { return Failed(r) ? Text(*r.error) : nothing; }},
    {"further",           Shown::Always,      OfAnswer<[](Answer a) { return NumberIfAny(a.further); }>},
    {"version",           Shown::Always,      OfAnswer<[](Answer a) { return TextIfAny(a.version); }>},
    {"basis",             Shown::Always,      OfAnswer<[](Answer a) { return Text(fiid_basis_text(a.basis)); }>},
    {"warning",           Shown::Always,      OfAnswer<[](Answer a) { return WordsIfAny(WarningsOf(a)); }>},
    {"size",              Shown::Always,      OfAnswer<Size>},
    {"mtime",             Shown::Always,      OfAnswer<ModifiedTime>},
    {"row",               Shown::WithExplain, OfAnswer<[](Answer a) { return Number(a.row); }>},
    {"signature",         Shown::WithExplain, OfAnswer<[](Answer a) { return Text(a.signature); }>},
    {"routine",           Shown::WithExplain, OfAnswer<[](Answer a) { return TextIfAny(a.routine); }>},
    {"further_row",       Shown::WithExplain, OfAnswer<[](Answer a) { return NumberIfAny(a.further_row); }>},
    {"further_signature", Shown::WithExplain, OfAnswer<[](Answer a) { return TextIfAny(a.further_signature); }>},
    {"looked_at",         Shown::WithExplain, OfAnswer<[](Answer a) { return TextIfAny(a.explanation); }>},
    {"bytes_read",        Shown::WithExplain, OfAnswer<[](Answer a) { return Number(a.bytes_read); }>},
    {"calls",             Shown::WithExplain, OfAnswer<[](Answer a) { return Number(a.calls); }>},
    // clang-format on
};

constexpr Column<fiid_format> formatColumns[] = {
    // clang-format off
    {"fiid",       Shown::Always, [](const fiid_format& f) { return Number(f.id); }},
    {"name",       Shown::Always, [](const fiid_format& f) { return Text(f.name); }},
    {"mime",       Shown::Always, [](const fiid_format& f) { return Text(f.mime); }},
    {"puid",       Shown::Always, [](const fiid_format& f) { return Words(f.puids); }},
    {"extensions", Shown::Always, [](const fiid_format& f) { return Words(f.extensions); }},
    {"family",     Shown::Always, [](const fiid_format& f) { return Text(f.family); }},
    // clang-format on
};

std::span<const Column<Record>> ColumnsOf(const Record&) { return recordColumns; }

std::span<const Column<fiid_format>> ColumnsOf(const fiid_format&) { return formatColumns; }

void AppendNumber(std::string& out, std::uint64_t number) {
    std::array<char, 20> digits;
    out.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

void AppendHex(std::string& out, std::string_view bytes) {
    for (const char byte : bytes) AppendHexByte(out, static_cast<std::uint8_t>(byte), lowerHexDigits);
}

void AppendDigits(std::string& out, std::uint32_t number, std::size_t count) {
    const std::string digits = std::to_string(number);
    out.append(count - std::min(count, digits.size()), '0');
    out += digits;
}

// YYYY-MM-DDTHH:MM:SSZ
void AppendTime(std::string& out, std::int64_t seconds) {
    using namespace std::chrono;
    const sys_seconds time{std::chrono::seconds{seconds}};
    const sys_days day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss<std::chrono::seconds> clock(time - day);
    AppendDigits(out, static_cast<std::uint32_t>(int{date.year()}), 4);
    out += '-';
    AppendDigits(out, unsigned{date.month()}, 2);
    out += '-';
    AppendDigits(out, unsigned{date.day()}, 2);
    out += 'T';
    AppendDigits(out, static_cast<std::uint32_t>(clock.hours().count()), 2);
    out += ':';
    AppendDigits(out, static_cast<std::uint32_t>(clock.minutes().count()), 2);
    out += ':';
    AppendDigits(out, static_cast<std::uint32_t>(clock.seconds().count()), 2);
    out += 'Z';
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
        case Value::Kind::Time:
            out += '"';
            AppendTime(out, static_cast<std::int64_t>(value.number));
            out += '"';
            return;
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
        case Value::Kind::Time:
            return AppendTime(out, static_cast<std::int64_t>(value.number));
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

// A row of a table and its notation.
void AppendRow(std::string& out, std::string_view label, std::uint16_t row, std::string_view signature) {
    out += label;
    AppendNumber(out, row);
    if (!signature.empty()) {
        out += ": ";
        out += signature;
    }
}

void AppendExplanation(std::string& out, const fiid_result& answer) {
    out += " (";
    if (answer.row != 0) {
        AppendRow(out, "row ", answer.row, answer.signature);
    } else {
        out += "no row";
    }
    if (answer.further_row != 0) AppendRow(out, "; further row ", answer.further_row, answer.further_signature);
    if (answer.routine[0] != '\0') {
        out += "; ";
        out += answer.routine;
    }
    if (answer.explanation[0] != '\0') {
        out += "; looked at ";
        out += answer.explanation;
    }
    out += "; ";
    AppendNumber(out, answer.bytes_read);
    out += answer.bytes_read == 1 ? " byte in " : " bytes in ";
    AppendNumber(out, answer.calls);
    out += answer.calls == 1 ? " call)" : " calls)";
}

void AppendText(std::string& out, const Record& record, bool explain) {
    AppendEscapedText(out, record.path);
    out += ": ";
    out += record.answer.name;
    out += " [";
    AppendNumber(out, record.answer.fiid);
    if (record.answer.further != 0) {
        out += ", ";
        AppendNumber(out, record.answer.further);
    }
    out += ']';
    if (explain) AppendExplanation(out, record.answer);
    out += '\n';
}

// The type of an empty file is what other programs say.
void AppendMime(std::string& out, const Record& record, bool explain) {
    const std::string_view mime = record.answer.mime;
    AppendEscapedText(out, record.path);
    out += ": ";
    if (record.answer.size == 0) {
        out += "inode/x-empty";
    } else {
        out += mime.empty() ? "application/octet-stream" : mime;
    }
    if (explain) AppendExplanation(out, record.answer);
    out += '\n';
}

void AppendMime(std::string&, const fiid_format&, bool) {}  // the command line has no such form

void AppendText(std::string& out, const fiid_format& format, bool) {
    AppendNumber(out, format.id);
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

void RecordWriter::BeginFormats() { Begin<Column<fiid_format>>(formatColumns); }

template <typename Item>
void RecordWriter::WriteItem(const Item& item) {
    std::string& out = BeginRecord();
    switch (format_) {
        case OutputFormat::Text:
            AppendText(out, item, explain_);
            break;
        case OutputFormat::Mime:
            AppendMime(out, item, explain_);
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
        default:
            break;
    }
    first_ = false;
    EndRecord();
}

void RecordWriter::Write(const Record& record) {
    if (Failed(record)) {
        WriteMessage(std::string(record.path) + ": " + *record.error);
        if (format_ == OutputFormat::Text || format_ == OutputFormat::Mime) return;
    }
    WriteItem(record);
}

void RecordWriter::Write(const fiid_format& format) { WriteItem(format); }

void RecordWriter::End() {
    if (format_ == OutputFormat::Json) WriteRecord(first_ ? "]\n" : "\n]\n");
    FlushOutput();
}
