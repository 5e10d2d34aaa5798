// json_schema.h - a checker of JSON against a schema, for the keywords that the schemas of docs/ use.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <string>

namespace json_schema {

using Json = nlohmann::json;

inline bool HasType(const Json& value, const std::string& type) {
    if (type == "object") return value.is_object();
    if (type == "array") return value.is_array();
    if (type == "string") return value.is_string();
    if (type == "number") return value.is_number();
    if (type == "integer") return value.is_number_integer();
    ADD_FAILURE() << "unknown type " << type;
    return false;
}

inline bool Matches(const std::string& text, const std::string& pattern) {
    static std::map<std::string, std::regex>& compiled = *new std::map<std::string, std::regex>;
    const auto place = compiled.try_emplace(pattern, pattern).first;
    return std::regex_search(text, place->second);
}

// What is wrong with a value, or nothing. The type comes first: the other keywords take it for granted.
inline std::string Check(const Json& value, const Json& schema);

inline std::string CheckProperties(const Json& value, const Json& schema) {
    for (const auto& [key, member] : value.items()) {
        if (!schema["properties"].contains(key)) return "no property " + key;
        const std::string mistake = Check(member, schema["properties"][key]);
        if (!mistake.empty()) return key + ": " + mistake;
    }
    return "";
}

inline std::string CheckItems(const Json& value, const Json& schema) {
    for (const Json& item : value) {
        const std::string mistake = Check(item, schema);
        if (!mistake.empty()) return "item: " + mistake;
    }
    return "";
}

// What a keyword has against a value, or nothing.
inline std::string CheckKeyword(const Json& value, const std::string& keyword, const Json& told, const Json& schema) {
    const auto unless = [&](bool holds) { return holds ? "" : keyword + " " + told.dump() + ": " + value.dump(); };
    if (keyword == "type") return unless(HasType(value, told));
    if (keyword == "minimum") return unless(value >= told);
    if (keyword == "maximum") return unless(value <= told);
    if (keyword == "minLength") return unless(value.get<std::string>().size() >= told);
    if (keyword == "minItems") return unless(value.size() >= told);
    if (keyword == "uniqueItems") return unless(std::set<Json>(value.begin(), value.end()).size() == value.size());
    if (keyword == "pattern") return unless(Matches(value, told));
    if (keyword == "enum") return unless(std::find(told.begin(), told.end(), value) != told.end());
    if (keyword == "items") return CheckItems(value, told);
    if (keyword == "properties") return CheckProperties(value, schema);
    if (keyword == "required") {
        return unless(std::all_of(told.begin(), told.end(), [&](const Json& key) { return value.contains(key); }));
    }
    if (keyword == "oneOf") {
        return unless(std::count_if(told.begin(), told.end(), [&](const Json& s) { return Check(value, s).empty(); }) ==
                      1);
    }
    if (keyword == "additionalProperties") return unless(told == false);  // CheckProperties refuses them
    const bool says = keyword == "$schema" || keyword == "title" || keyword == "description";
    return says ? "" : "unknown keyword " + keyword;
}

inline std::string Check(const Json& value, const Json& schema) {
    if (schema.contains("type") && !HasType(value, schema["type"])) return "no " + schema["type"].dump();
    for (const auto& [keyword, told] : schema.items()) {
        std::string mistake = CheckKeyword(value, keyword, told, schema);
        if (!mistake.empty()) return mistake;
    }
    return "";
}

}  // namespace json_schema
