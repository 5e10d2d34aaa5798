// docs/record.schema.json against what the program writes, by a checker of the keywords that the schema uses.
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <tuple>

#include "support/report_text.h"
#include "support/run_program.h"

namespace {

using Json = nlohmann::json;

bool HasType(const Json& value, const std::string& type) {
    if (type == "object") return value.is_object();
    if (type == "array") return value.is_array();
    if (type == "string") return value.is_string();
    if (type == "integer") return value.is_number_integer();
    ADD_FAILURE() << "unknown type " << type;
    return false;
}

bool Matches(const std::string& text, const std::string& pattern) {
    static std::map<std::string, std::regex>& compiled = *new std::map<std::string, std::regex>;
    const auto place = compiled.try_emplace(pattern, pattern).first;
    return std::regex_search(text, place->second);
}

std::string Check(const Json& value, const Json& schema);

std::string CheckProperties(const Json& value, const Json& schema) {
    for (const auto& [key, member] : value.items()) {
        if (!schema["properties"].contains(key)) return "no property " + key;
        const std::string mistake = Check(member, schema["properties"][key]);
        if (!mistake.empty()) return key + ": " + mistake;
    }
    return "";
}

std::string CheckItems(const Json& value, const Json& schema) {
    for (const Json& item : value) {
        const std::string mistake = Check(item, schema);
        if (!mistake.empty()) return "item: " + mistake;
    }
    return "";
}

// What a keyword has against a value, or nothing.
std::string CheckKeyword(const Json& value, const std::string& keyword, const Json& told, const Json& schema) {
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

// What is wrong with a value, or nothing. The type comes first: the other keywords take it for granted.
std::string Check(const Json& value, const Json& schema) {
    if (schema.contains("type") && !HasType(value, schema["type"])) return "no " + schema["type"].dump();
    for (const auto& [keyword, told] : schema.items()) {
        std::string mistake = CheckKeyword(value, keyword, told, schema);
        if (!mistake.empty()) return mistake;
    }
    return "";
}

const Json& RecordSchema() {
    static const Json& schema = *new Json(Json::parse(ReadWholeFile(FIID_SCHEMA)));
    return schema;
}

// The keys that records in lines have, all of which the schema must allow.
std::set<std::string> KeysOfLines(const std::string& text) {
    std::istringstream lines(text);
    std::set<std::string> keys;
    for (std::string line; std::getline(lines, line);) {
        const Json record = Json::parse(line);
        EXPECT_EQ(Check(record, RecordSchema()), "") << line;
        for (const auto& [key, value] : record.items()) keys.insert(key);
    }
    return keys;
}

std::set<std::string> KeysOf(const std::string& arguments) {
    return KeysOfLines(RunShell(FIID_SAMPLES_DIR, "$FIID --format ndjson " + arguments).output);
}

// The keys of what a store and hashes add to an answer and a failure.
std::set<std::string> KeysOfStoredRecords() {
    Record record = RecordOf("a", 1503, "GIF image");
    record.answer.family = "image";
    record.answer.extensions = "gif";
    record.change = {ChangeKind::Changed, 2, 981173106, "Plain text"};
    record.copies = 2;
    Record failed = FailedRecord("b", "Permission denied");
    failed.change = {ChangeKind::New, 1, 0, ""};
    ReportOptions options = OptionsFor(OutputFormat::Ndjson);
    options.withChanges = options.withCopies = true;
    std::set<std::string> keys;
    for (const auto& [kind, key, size] :
         {std::tuple(HashKind::Sha256, "sha256", 64), std::tuple(HashKind::Xxh3, "xxh3", 16)}) {
        options.hash = kind;
        options.fields = {"path",       "fiid", "name",   "mime", "puid",     "error",  "basis", "family",
                          "extensions", key,    "change", "run",  "run_time", "before", "copies"};
        record.hash.assign(static_cast<std::size_t>(size), 'a');
        keys.merge(KeysOfLines(ReportOf({record, failed}, options)));
    }
    return keys;
}

TEST(Schema, AllowsAllThatTheProgramWritesAndNoMore) {
    KeysOf(". missing");
    KeysOf("--no-further --no-text .");
    KeysOf("--explain /proc/self/status $'\\xff'");
    std::set<std::string> keys = KeysOf("--explain . missing $'no\\xff' < gif/draw.gif");
    keys.merge(KeysOfStoredRecords());
    for (const Json& form : RecordSchema()["oneOf"]) {
        for (const auto& [key, told] : form["properties"].items()) EXPECT_TRUE(keys.contains(key)) << key;
    }
}

// The checker and the schema both refuse what is none.
TEST(Schema, RefusesWhatIsNoRecord) {
    const Json record = {{"path", "a"}, {"fiid", 1503},          {"name", "x"},
                         {"mime", ""},  {"puid", Json::array()}, {"basis", "text"}};
    EXPECT_EQ(Check(record, RecordSchema()), "");
    const auto refused = [&](const char* key, const Json& value) {
        Json other = record;
        other[key] = value;
        return !Check(other, RecordSchema()).empty();
    };
    EXPECT_TRUE(refused("path", ""));
    EXPECT_TRUE(refused("path_hex", "ABC"));
    EXPECT_TRUE(refused("fiid", 0));
    EXPECT_TRUE(refused("fiid", 65536));
    EXPECT_TRUE(refused("fiid", "1503"));
    EXPECT_TRUE(refused("mime", "image"));
    EXPECT_TRUE(refused("puid", {"fmt/3", "fmt/3"}));
    EXPECT_TRUE(refused("further", 0));
    EXPECT_TRUE(refused("basis", "guess"));
    EXPECT_TRUE(refused("warning", Json::array()));
    EXPECT_TRUE(refused("mtime", "yesterday"));
    EXPECT_TRUE(refused("error", "is a directory"));
    EXPECT_TRUE(refused("family", "book"));
    EXPECT_TRUE(refused("extensions", Json::array()));
    EXPECT_TRUE(refused("sha256", std::string(63, 'a')));
    EXPECT_TRUE(refused("sha256", std::string(64, 'A')));
    EXPECT_TRUE(refused("xxh3", std::string(17, 'a')));
    EXPECT_TRUE(refused("change", "same"));
    EXPECT_TRUE(refused("run", 0));
    EXPECT_TRUE(refused("run_time", "yesterday"));
    EXPECT_TRUE(refused("before", ""));
    EXPECT_TRUE(refused("copies", 0));
    EXPECT_TRUE(refused("other", 1));
    Json failed = {{"path", "a"}, {"error", "is a directory"}};
    EXPECT_EQ(Check(failed, RecordSchema()), "");
    failed.erase("path");
    EXPECT_NE(Check(failed, RecordSchema()), "");
}

// The fields that the message about an unknown one lists, those of the schema, and those that the documents tell.
TEST(Schema, HasTheFieldsThatThereAre) {
    ReportOptions options = OptionsFor(OutputFormat::Csv);
    options.fields = {"no"};
    std::string list = CheckFields(options);
    list.erase(0, list.find("there are ") + 10);
    const std::string document = ReadWholeFile(FIID_OUTPUT_FORMATS);
    std::set<std::string> fields;
    std::istringstream words(list);
    for (std::string field; words >> field;) {
        if (field.back() == ',') field.pop_back();
        fields.insert(field);
        EXPECT_NE(document.find("\n| `" + field + "` | "), std::string::npos) << field;
    }
    std::set<std::string> keys;
    for (const Json& form : RecordSchema()["oneOf"]) {
        for (const auto& [key, told] : form["properties"].items()) keys.insert(key);
    }
    EXPECT_EQ(fields, keys);
}

}  // namespace
