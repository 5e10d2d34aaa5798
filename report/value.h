// value.h - what there is to tell under one key.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

// The bytes are those of the item that it is told of.
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

inline constexpr Value nothing = {Value::Kind::None, 0, {}};

constexpr Value Number(std::uint64_t number) { return {Value::Kind::Number, number, {}}; }
constexpr Value Text(std::string_view bytes) { return {Value::Kind::Text, 0, bytes}; }
constexpr Value Hex(std::string_view bytes) { return {Value::Kind::Hex, 0, bytes}; }
constexpr Value Words(std::string_view bytes) { return {Value::Kind::Words, 0, bytes}; }
constexpr Value Time(std::int64_t seconds) { return {Value::Kind::Time, static_cast<std::uint64_t>(seconds), {}}; }

// What does not exist is nothing.
constexpr Value NumberIfAny(std::uint64_t number) { return number != 0 ? Number(number) : nothing; }
constexpr Value TextIfAny(std::string_view bytes) { return bytes.empty() ? nothing : Text(bytes); }
constexpr Value WordsIfAny(std::string_view bytes) { return bytes.empty() ? nothing : Words(bytes); }

// Removes the first word of some with one blank between two, which are not empty, and returns it.
constexpr std::string_view TakeWord(std::string_view& words) {
    const std::size_t size = std::min(words.find(' '), words.size());
    const std::string_view word = words.substr(0, size);
    words.remove_prefix(std::min(size + 1, words.size()));
    return word;
}
