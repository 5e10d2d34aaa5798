// record_columns.cpp - the table of the fields, and which of them a report has.
#include "report/record_columns.h"

#include <algorithm>
#include <iterator>

#include "report/json_text.h"
#include "report/record_facts.h"
#include "report/value_text.h"

namespace {

// The warnings of an answer in words.
std::string_view WarningsOf(const fiid_result& answer) {
    static_assert(FIID_WARN_EXTENSION == 1 && FIID_WARN_CUT == 2 && FIID_WARN_SEVERAL == 4);
    constexpr std::string_view words[] = {"",        "extension",         "cut",         "extension cut",
                                          "several", "extension several", "cut several", "extension cut several"};
    return words[answer.warnings % std::size(words)];
}

Value ModifiedTime(const fiid_result& answer) {
    const bool told = answer.modified_known != 0 && TimeHasAForm(answer.modified_seconds);
    return told ? Time(answer.modified_seconds) : nothing;
}

Value Size(const fiid_result& answer) { return answer.size != FIID_SIZE_UNKNOWN ? Number(answer.size) : nothing; }

bool HasChange(const Record& record) { return record.change.kind != ChangeKind::None; }

Value RunTime(const Record& record) {
    return HasChange(record) && TimeHasAForm(record.change.seconds) ? Time(record.change.seconds) : nothing;
}

Value Run(const Record& record) {
    return HasChange(record) ? Number(static_cast<std::uint64_t>(record.change.run)) : nothing;
}

// A column of the answer: a record without one has none.
template <Value (*valueOf)(const fiid_result&)>
Value OfAnswer(const Record& record) {
    return HasAnswer(record) ? valueOf(record.answer) : nothing;
}

using Answer = const fiid_result&;

// In the order of csv and tsv.
constexpr RecordColumn recordColumns[] = {
    // clang-format off
    {"path",              ShownBy::Default,       [](const Record& r) { return Text(r.path); }},
    {"path_hex",          ShownBy::DefaultInJson, [](const Record& r) { return IsUtf8(r.path) ? nothing : Hex(r.path); }},
    {"fiid",              ShownBy::Default,       OfAnswer<[](Answer a) { return Number(a.fiid); }>},
    {"name",              ShownBy::Default,       OfAnswer<[](Answer a) { return Text(a.name); }>},
    {"mime",              ShownBy::Default,       OfAnswer<[](Answer a) { return Text(a.mime); }>},
    {"puid",              ShownBy::Default,       OfAnswer<[](Answer a) { return Words(a.puids); }>},
    {"error",             ShownBy::Default,       [](const Record& r) { return r.error ? Text(*r.error) : nothing; }},
    {"further",           ShownBy::Default,       OfAnswer<[](Answer a) { return NumberIfAny(a.further); }>},
    {"version",           ShownBy::Default,       OfAnswer<[](Answer a) { return TextIfAny(a.version); }>},
    {"basis",             ShownBy::Default,       OfAnswer<[](Answer a) { return Text(fiid_basis_text(a.basis)); }>},
    {"warning",           ShownBy::Default,       OfAnswer<[](Answer a) { return WordsIfAny(WarningsOf(a)); }>},
    {"size",              ShownBy::Default,       OfAnswer<Size>},
    {"mtime",             ShownBy::Default,       OfAnswer<ModifiedTime>},
    {"row",               ShownBy::Explain,       OfAnswer<[](Answer a) { return Number(a.row); }>},
    {"signature",         ShownBy::Explain,       OfAnswer<[](Answer a) { return Text(a.signature); }>},
    {"routine",           ShownBy::Explain,       OfAnswer<[](Answer a) { return TextIfAny(a.routine); }>},
    {"further_row",       ShownBy::Explain,       OfAnswer<[](Answer a) { return NumberIfAny(a.further_row); }>},
    {"further_signature", ShownBy::Explain,       OfAnswer<[](Answer a) { return TextIfAny(a.further_signature); }>},
    {"looked_at",         ShownBy::Explain,       OfAnswer<[](Answer a) { return TextIfAny(a.explanation); }>},
    {"bytes_read",        ShownBy::Explain,       OfAnswer<[](Answer a) { return Number(a.bytes_read); }>},
    {"calls",             ShownBy::Explain,       OfAnswer<[](Answer a) { return Number(a.calls); }>},
    {"family",            ShownBy::Name,          OfAnswer<[](Answer a) { return TextIfAny(a.family); }>},
    {"extensions",        ShownBy::Mismatch,      OfAnswer<[](Answer a) { return WordsIfAny(a.extensions); }>},
    {"sha256",            ShownBy::Sha256,        [](const Record& r) { return TextIfAny(r.hash); }},
    {"xxh3",              ShownBy::Xxh3,          [](const Record& r) { return TextIfAny(r.hash); }},
    {"change",            ShownBy::Changes,       [](const Record& r) { return TextIfAny(WordOf(r.change.kind)); }},
    {"run",               ShownBy::Changes,       Run},
    {"run_time",          ShownBy::Changes,       RunTime},
    {"before",            ShownBy::Changes,       [](const Record& r) { return TextIfAny(r.change.before); }},
    {"copies",            ShownBy::Copies,        [](const Record& r) { return NumberIfAny(r.copies); }},
    // clang-format on
};

bool IsJson(OutputFormat format) { return format == OutputFormat::Json || format == OutputFormat::Ndjson; }

bool HasFields(OutputFormat format) {
    return IsJson(format) || format == OutputFormat::Csv || format == OutputFormat::Tsv;
}

bool IsShownByDefault(ShownBy shownBy, const ReportOptions& options) {
    switch (shownBy) {
        case ShownBy::Default:
            return true;
        case ShownBy::DefaultInJson:
            return IsJson(options.format);
        case ShownBy::Name:
            return false;
        case ShownBy::Mismatch:
            return options.withExtensions;
        case ShownBy::Explain:
            return options.explain;
        case ShownBy::Sha256:
            return options.hash == HashKind::Sha256;
        case ShownBy::Xxh3:
            return options.hash == HashKind::Xxh3;
        case ShownBy::Changes:
            return options.withChanges;
        case ShownBy::Copies:
            return options.withCopies;
    }
    return false;
}

// The option without which a field has nothing to tell, or "".
std::string_view OptionOf(ShownBy shownBy) {
    switch (shownBy) {
        case ShownBy::Default:
        case ShownBy::DefaultInJson:
        case ShownBy::Name:
        case ShownBy::Mismatch:
            break;
        case ShownBy::Explain:
            return "--explain";
        case ShownBy::Sha256:
            return "--hash sha256";
        case ShownBy::Xxh3:
            return "--hash xxh3";
        case ShownBy::Changes:
            return "--query changes";
        case ShownBy::Copies:
            return "--query duplicates";
    }
    return "";
}

const RecordColumn* FindColumn(std::string_view key) {
    const auto* const found = std::find_if(std::begin(recordColumns), std::end(recordColumns),
                                           [key](const RecordColumn& column) { return column.key == key; });
    return found != std::end(recordColumns) ? found : nullptr;
}

std::string ListOfFields() {
    std::string list;
    for (const RecordColumn& column : recordColumns) {
        if (!list.empty()) list += ", ";
        list += column.key;
    }
    return list;
}

// What is wrong with one field, or nothing.
std::string CheckField(const std::string& key, const ReportOptions& options) {
    const RecordColumn* const column = FindColumn(key);
    if (column == nullptr) return "--fields: no field is called \"" + key + "\"; there are " + ListOfFields();
    if (std::count(options.fields.begin(), options.fields.end(), key) > 1) {
        return "--fields: " + key + " is named more than once";
    }
    const std::string_view option = OptionOf(column->shownBy);
    if (option.empty() || IsShownByDefault(column->shownBy, options)) return "";
    return "--fields: " + key + " goes with " + std::string(option);
}

}  // namespace

std::string CheckFields(const ReportOptions& options) {
    if (options.fields.empty()) return "";
    if (!HasFields(options.format)) return "--fields goes with the formats csv, tsv, json and ndjson";
    for (const std::string& key : options.fields) {
        std::string mistake = CheckField(key, options);
        if (!mistake.empty()) return mistake;
    }
    return "";
}

std::vector<const RecordColumn*> ColumnsOf(const ReportOptions& options) {
    std::vector<const RecordColumn*> columns;
    for (const std::string& key : options.fields) columns.push_back(FindColumn(key));
    if (!columns.empty()) return columns;
    for (const RecordColumn& column : recordColumns) {
        if (IsShownByDefault(column.shownBy, options)) columns.push_back(&column);
    }
    return columns;
}
