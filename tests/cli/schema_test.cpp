// docs/record.schema.json against what the program writes.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <tuple>

#include "support/json_schema.h"
#include "support/report_text.h"
#include "support/run_program.h"

namespace {

using json_schema::Check;
using json_schema::Json;

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
