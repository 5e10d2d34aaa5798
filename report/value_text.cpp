// value_text.cpp - values in lines of csv and tsv, and in JSON.
#include "report/value_text.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstddef>

#include "report/byte_set.h"
#include "report/hex_digits.h"
#include "report/json_text.h"

namespace {

// The first second of the year 0 and the one behind the year 9999.
constexpr std::int64_t firstSecondTold = -62167219200;
constexpr std::int64_t behindSecondsTold = 253402300800;

void AppendHex(std::string& out, std::string_view bytes) {
    for (const char byte : bytes) AppendHexByte(out, static_cast<std::uint8_t>(byte), lowerHexDigits);
}

// Writes the last digits of a number, as many as count tells, and returns what is behind them.
char* WriteDigits(char* to, std::size_t count, std::uint32_t number) {
    for (std::size_t index = count; index-- > 0; number /= 10) to[index] = static_cast<char>('0' + number % 10);
    return to + count;
}

void AppendJsonWords(std::string& out, std::string_view words) {
    out += '[';
    while (!words.empty()) {
        AppendJsonText(out, TakeWord(words));
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

}  // namespace

void AppendNumber(std::string& out, std::uint64_t number) {
    std::array<char, 20> digits;
    out.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

bool TimeHasAForm(std::int64_t seconds) { return seconds >= firstSecondTold && seconds < behindSecondsTold; }

void AppendTimeWithoutZone(std::string& out, std::int64_t seconds) {
    using namespace std::chrono;
    const sys_seconds time{std::chrono::seconds{seconds}};
    const sys_days day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss<std::chrono::seconds> clock(time - day);
    std::array<char, 19> text;
    char* to = WriteDigits(text.data(), 4, static_cast<std::uint32_t>(int{date.year()}));
    const auto addTwo = [&to](char separator, std::uint32_t number) {
        *to = separator;
        to = WriteDigits(to + 1, 2, number);
    };
    addTwo('-', unsigned{date.month()});
    addTwo('-', unsigned{date.day()});
    addTwo('T', static_cast<std::uint32_t>(clock.hours().count()));
    addTwo(':', static_cast<std::uint32_t>(clock.minutes().count()));
    addTwo(':', static_cast<std::uint32_t>(clock.seconds().count()));
    out.append(text.data(), text.size());
}

void AppendTime(std::string& out, std::int64_t seconds) {
    AppendTimeWithoutZone(out, seconds);
    out += 'Z';
}

void AppendCsvText(std::string& out, std::string_view text) {
    constexpr ByteSet quoted = ByteSet(",\"\r\n");
    const std::size_t start = out.size();
    if (!quoted.AppendUpTo(out, text)) return;
    out.insert(start, 1, '"');
    AppendDoubled(out, text);
    out += '"';
}

void AppendDoubled(std::string& out, std::string_view text) {
    constexpr ByteSet doubled = ByteSet("\"");
    while (doubled.AppendUpTo(out, text)) {
        out += "\"\"";
        text.remove_prefix(1);
    }
}

void AppendQuotedCsvText(std::string& out, std::string_view text) {
    out += '"';
    AppendDoubled(out, text);
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

void JsonObject::Add(std::string_view key, const Value& value) {
    if (value.kind == Value::Kind::None) return;
    if (!first_) out_ += ',';
    first_ = false;
    out_ += '"';
    out_ += key;
    out_ += "\":";
    AppendJsonValue(out_, value);
}
