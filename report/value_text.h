// value_text.h - values in lines of csv and tsv, and in JSON.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "report/value.h"

void AppendNumber(std::string& out, std::uint64_t number);

// Whether a time, in seconds since 1970-01-01 UTC, lies in the years 0 to 9999, which have a form.
bool TimeHasAForm(std::int64_t seconds);

// Appends such a time in UTC as YYYY-MM-DDTHH:MM:SS.
void AppendTimeWithoutZone(std::string& out, std::int64_t seconds);

// The same with a Z behind it, as RFC 3339 has it.
void AppendTime(std::string& out, std::int64_t seconds);

// Appends a field of RFC 4180, in quotation marks if it needs them.
void AppendCsvText(std::string& out, std::string_view text);

// Appends the text with its quotation marks doubled, as it stands between those of a field.
void AppendDoubled(std::string& out, std::string_view text);

// Appends a field in quotation marks, whatever it is.
void AppendQuotedCsvText(std::string& out, std::string_view text);

// Appends a field of tsv: tab, line feed, carriage return and backslash become \t, \n, \r and \\.
void AppendTsvText(std::string& out, std::string_view text);

// How the fields of a line are written, and what stands between and behind them.
struct LineForm {
    char separator;
    std::string_view end;
    void (*appendText)(std::string& out, std::string_view text);
};

inline constexpr LineForm csvForm = {',', "\r\n", AppendCsvText};
inline constexpr LineForm tsvForm = {'\t', "\n", AppendTsvText};

void AppendField(std::string& out, const Value& value, const LineForm& form);

// Appends the members of one object of JSON.
class JsonObject {
 public:
    explicit JsonObject(std::string& out) : out_(out) { out_ += '{'; }
    // A key needs no escapes. What is nothing is left out.
    void Add(std::string_view key, const Value& value);
    void End() { out_ += '}'; }

 private:
    std::string& out_;
    bool first_ = true;
};
