// What the writers append, against a plain form that builds a tree of each record and takes the text of that.
#include "report/report_writer.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>
#include <vector>

#include "signatures/table.h"
#include "support/report_text.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr OutputFormat formsOfFields[] = {OutputFormat::Ndjson, OutputFormat::Json, OutputFormat::Csv,
                                          OutputFormat::Tsv};

// ---- The plain form -------------------------------------------------------------------------------------------------

std::vector<std::string> WordsOf(const char* text) {
    std::istringstream words(text);
    std::vector<std::string> list;
    for (std::string word; words >> word;) list.push_back(word);
    return list;
}

std::string HexOf(std::string_view bytes) {
    std::ostringstream text;
    for (const char byte : bytes) text << "0123456789abcdef"[byte >> 4 & 0x0F] << "0123456789abcdef"[byte & 0x0F];
    return text.str();
}

std::string Dump(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

std::string TimeOf(std::int64_t seconds) {
    const std::time_t time = seconds;
    const std::tm* const parts = std::gmtime(&time);
    char text[64] = "";
    std::snprintf(text, sizeof(text), "%04d-%02d-%02dT%02d:%02d:%02dZ", parts->tm_year + 1900, parts->tm_mon + 1,
                  parts->tm_mday, parts->tm_hour, parts->tm_min, parts->tm_sec);
    return text;
}

void AddIfAny(Json& tree, const char* key, const Json& value) {
    if (!value.empty() && value != 0 && value != "") tree[key] = value;
}

Json TreeOf(const Record& record, bool explain) {
    const std::string path(record.path);
    Json tree = {{"path", path}};
    try {
        static_cast<void>(tree.dump());
    } catch (const Json::exception&) {
        tree["path_hex"] = HexOf(path);
    }
    if (record.error.has_value()) {
        tree["error"] = *record.error;
        return tree;
    }
    const fiid_result& answer = record.answer;
    tree["fiid"] = answer.fiid;
    tree["name"] = answer.name;
    tree["mime"] = answer.mime;
    tree["puid"] = WordsOf(answer.puids);
    AddIfAny(tree, "further", answer.further);
    AddIfAny(tree, "version", answer.version);
    tree["basis"] = fiid_basis_text(answer.basis);
    Json warnings = Json::array();
    if ((answer.warnings & FIID_WARN_EXTENSION) != 0) warnings.push_back("extension");
    if ((answer.warnings & FIID_WARN_CUT) != 0) warnings.push_back("cut");
    if ((answer.warnings & FIID_WARN_SEVERAL) != 0) warnings.push_back("several");
    AddIfAny(tree, "warning", warnings);
    if (answer.size != FIID_SIZE_UNKNOWN) tree["size"] = answer.size;
    if (answer.modified_known != 0) tree["mtime"] = TimeOf(answer.modified_seconds);
    if (!explain) return tree;
    tree["row"] = answer.row;
    tree["signature"] = answer.signature;
    AddIfAny(tree, "routine", answer.routine);
    AddIfAny(tree, "further_row", answer.further_row);
    AddIfAny(tree, "further_signature", answer.further_signature);
    AddIfAny(tree, "looked_at", std::string(answer.explanation));
    tree["bytes_read"] = answer.bytes_read;
    tree["calls"] = answer.calls;
    return tree;
}

std::string FieldOf(const Json& tree, const std::string& key) {
    if (!tree.contains(key)) return "";
    if (tree[key].is_string()) return tree[key];
    if (tree[key].is_number()) return tree[key].dump();
    std::string field;
    for (const std::string word : tree[key]) field += (field.empty() ? "" : " ") + word;
    return field;
}

std::string CsvField(const std::string& field) {
    if (field.find_first_of(",\"\r\n") == std::string::npos) return field;
    std::string quoted = "\"";
    for (const char character : field) quoted += character == '"' ? "\"\"" : std::string(1, character);
    return quoted + "\"";
}

std::string TsvField(const std::string& field) {
    std::string escaped;
    for (const char character : field) {
        switch (character) {
            case '\t':
                escaped += "\\t";
                break;
            case '\n':
                escaped += "\\n";
                break;
            case '\r':
                escaped += "\\r";
                break;
            case '\\':
                escaped += "\\\\";
                break;
            default:
                escaped += character;
        }
    }
    return escaped;
}

std::string LineOf(const Json& tree, const std::vector<std::string>& keys, OutputFormat format) {
    std::string line;
    for (const std::string& key : keys) {
        const std::string field = FieldOf(tree, key);
        if (&key != &keys.front()) line += format == OutputFormat::Csv ? "," : "\t";
        line += format == OutputFormat::Csv ? CsvField(field) : TsvField(field);
    }
    return line + (format == OutputFormat::Csv ? "\r\n" : "\n");
}

// All of an output but Text.
std::string OutputOf(const std::vector<Json>& trees, const std::vector<std::string>& keys, OutputFormat format) {
    std::string output;
    if (format == OutputFormat::Csv || format == OutputFormat::Tsv) {
        Json header;
        for (const std::string& key : keys) header[key] = key;
        output = LineOf(header, keys, format);
        for (const Json& tree : trees) output += LineOf(tree, keys, format);
    } else if (format == OutputFormat::Ndjson) {
        for (const Json& tree : trees) output += Dump(tree) + "\n";
    } else {
        for (const Json& tree : trees) output += (output.empty() ? "[\n" : ",\n") + Dump(tree);
        output += output.empty() ? "[]\n" : "\n]\n";
    }
    return output;
}

// ---- What is written ------------------------------------------------------------------------------------------------

std::vector<fiid_format> AllFormats() {
    std::vector<fiid_format> formats(fiid_format_count());
    for (std::uint32_t index = 0; index < formats.size(); ++index) fiid_format_at(index, &formats[index]);
    return formats;
}

// What an identification could have told of a format, more or less, with times from the year 0 to 9999.
fiid_result AnswerOf(const fiid_format& format, std::size_t index, std::mt19937& random) {
    fiid_result answer = EmptyAnswer();
    answer.fiid = format.id;
    answer.name = format.name;
    answer.mime = format.mime;
    answer.puids = format.puids;
    answer.row = static_cast<std::uint16_t>(index % (signatureRowCount + 2));
    const FISignatureRow* const row = FIFindSignatureRow(answer.row);
    if (row != nullptr) answer.signature = row->signature.data();
    answer.basis = static_cast<std::int32_t>(index % (FIID_BASIS_TEXT + 1));
    answer.warnings = static_cast<std::uint32_t>(random() % 8);
    if (index % 3 != 0) answer.size = std::uint64_t{random()} << index % 32;
    answer.modified_known = index % 5 != 0 ? 1 : 0;
    answer.modified_seconds = static_cast<std::int64_t>(random() % 398900) * 791001 - 62167219200;
    answer.bytes_read = random();
    answer.calls = random() % 100;
    if (index % 2 == 0) return answer;
    answer.further = static_cast<std::uint16_t>(20000 + index % 400);
    answer.further_row = static_cast<std::uint16_t>(1 + index % 400);
    answer.further_signature = ">0 \"x\"";
    answer.version = "1.7, \"a\"";
    answer.routine = "FITellNothing";
    std::strcpy(answer.explanation, "bytes at 0, 8; stream \\x05S");
    return answer;
}

// Every format once, and paths of bytes that some output format does not take as they are.
struct Records {
    std::vector<std::string> paths;
    std::vector<Record> records;
};

Records MakeRecords() {
    constexpr std::string_view bytes = "aZ ~,;\"\\\t\n\r\x01\x1F\x7F\x80\x9B\xBF\xC2\xC3\xE2\xED\xF0\xF4\xFF";
    Records made;
    std::mt19937 random(3);
    const std::vector<fiid_format> formats = AllFormats();
    const std::size_t count = formats.size();
    for (std::size_t index = 0; index < count; ++index) {
        std::string path;
        while (path.size() < 1U + random() % 30) path += bytes[random() % bytes.size()];
        made.paths.push_back(path);
    }
    made.paths.push_back(std::string(6000, 'x'));
    for (std::size_t index = 0; index < made.paths.size(); ++index) {
        Record record;
        record.path = made.paths[index];
        record.answer = AnswerOf(formats[index % count], index, random);
        if (index % 7 == 0) record.error = "is " + made.paths[index] + ", not a file";
        made.records.push_back(record);
    }
    return made;
}

TEST(ReportWriter, WritesRecordsAsThePlainFormDoes) {
    const Records made = MakeRecords();
    for (const bool explain : {false, true}) {
        std::vector<std::string> keys = {"path",    "fiid",    "name",  "mime",    "puid", "error",
                                         "further", "version", "basis", "warning", "size", "mtime"};
        if (explain) {
            keys.insert(keys.end(), {"row", "signature", "routine", "further_row", "further_signature", "looked_at",
                                     "bytes_read", "calls"});
        }
        std::vector<Json> trees;
        for (const Record& record : made.records) trees.push_back(TreeOf(record, explain));
        for (const OutputFormat format : formsOfFields) {
            const std::string expected = OutputOf(trees, keys, format);
            ReportOptions options = OptionsFor(format);
            options.explain = explain;
            EXPECT_TRUE(ReportOf(made.records, options) == expected) << static_cast<int>(format) << " " << explain;
            EXPECT_EQ(ReportOf({}, options), OutputOf({}, keys, format));
        }
    }
}

TEST(ReportWriter, LeavesOutTimesThatHaveNoSuchForm) {
    constexpr std::int64_t firstTold = -62167219200;
    constexpr std::int64_t lastTold = 253402300799;
    Record record = RecordOf("a", 1999, "");
    record.answer.modified_known = 1;
    const auto timeOf = [&](std::int64_t seconds) {
        record.answer.modified_seconds = seconds;
        const Json json = Json::parse(ReportOf({record}, OutputFormat::Ndjson));
        return json.contains("mtime") ? json["mtime"].get<std::string>() : "none";
    };
    EXPECT_EQ(timeOf(0), "1970-01-01T00:00:00Z");
    EXPECT_EQ(timeOf(-1), "1969-12-31T23:59:59Z");
    EXPECT_EQ(timeOf(951782400), "2000-02-29T00:00:00Z");
    EXPECT_EQ(timeOf(firstTold), "0000-01-01T00:00:00Z");
    EXPECT_EQ(timeOf(firstTold - 1), "none");
    EXPECT_EQ(timeOf(lastTold), "9999-12-31T23:59:59Z");
    EXPECT_EQ(timeOf(lastTold + 1), "none");
}

}  // namespace
