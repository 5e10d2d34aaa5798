// What the writer appends, against a plain form that builds a tree of each record and takes the text of that.
#include "cli/record_writer.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <random>
#include <sstream>
#include <vector>

#include "cli/output.h"
#include "cli/temporary_directory.h"
#include "signatures/table.h"
#include "support/row_number.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr OutputFormat everyFormat[] = {OutputFormat::Text, OutputFormat::Ndjson, OutputFormat::Json, OutputFormat::Csv,
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

Json TreeOf(const FIFormatRecord& format) {
    return {{"fiid", format.fiid},
            {"name", format.name},
            {"mime", format.mime},
            {"puid", WordsOf(format.puids)},
            {"extensions", WordsOf(format.extensions)}};
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
    const FIFormatRecord* const format = FIFindFormatRecord(record.fiid);
    tree["fiid"] = record.fiid;
    tree["name"] = format != nullptr ? format->name : "";
    tree["mime"] = format != nullptr ? format->mime : "";
    tree["puid"] = WordsOf(format != nullptr ? format->puids : "");
    const FISignatureRow* const row = FIFindSignatureRow(record.row);
    if (explain) tree["row"] = record.row;
    if (explain) tree["signature"] = row != nullptr ? std::string(row->signature) : "";
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

class Writer : public testing::Test {
 protected:
    // What comes to standard output while a function writes; standard error is closed.
    template <typename Function>
    std::string Written(Function write) const {
        const std::string path = directory_.At("written");
        const int output = dup(STDOUT_FILENO);
        const int messages = dup(STDERR_FILENO);
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(file, STDOUT_FILENO);
        close(STDERR_FILENO);
        write();
        dup2(output, STDOUT_FILENO);
        dup2(messages, STDERR_FILENO);
        for (const int descriptor : {output, messages, file}) close(descriptor);
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }
    std::string Written(const std::vector<Record>& records, OutputFormat format, bool explain) const {
        return Written([&] {
            RecordWriter writer(format, explain);
            writer.BeginRecords();
            for (const Record& record : records) writer.Write(record);
            writer.End();
        });
    }

    TemporaryDirectory directory_;
};

// Every format once, with a row of the table each, and paths of bytes that some format does not take as they are.
struct Records {
    std::vector<std::string> paths;
    std::vector<Record> records;
};

Records MakeRecords() {
    constexpr std::string_view bytes = "aZ ~,;\"\\\t\n\r\x01\x1F\x7F\x80\x9B\xBF\xC2\xC3\xE2\xED\xF0\xF4\xFF";
    Records made;
    std::mt19937 random(3);
    const std::size_t count = FIFormatRecords().size();
    for (std::size_t index = 0; index < 4 * count; ++index) {
        std::string path;
        while (path.size() < 1U + random() % 30) path += bytes[random() % bytes.size()];
        made.paths.push_back(path);
    }
    made.paths.push_back(std::string(6000, 'x'));
    for (std::size_t index = 0; index < made.paths.size(); ++index) {
        Record record;
        record.path = made.paths[index];
        record.fiid = FIFormatRecords()[index % count].fiid;
        record.row = static_cast<std::uint16_t>(index % (signatureRowCount + 2));
        if (index % 7 == 0) record.error = "is " + made.paths[index] + ", not a file";
        made.records.push_back(record);
    }
    made.records.back().fiid = 7;  // that no format has
    return made;
}

TEST_F(Writer, RecordsAreAsThePlainFormWritesThem) {
    const Records made = MakeRecords();
    for (const bool explain : {false, true}) {
        std::vector<std::string> keys = {"path", "fiid", "name", "mime", "puid", "error"};
        if (explain) keys.insert(keys.end(), {"row", "signature"});
        std::vector<Json> trees;
        for (const Record& record : made.records) trees.push_back(TreeOf(record, explain));
        for (const OutputFormat format : everyFormat) {
            if (format == OutputFormat::Text) continue;
            const std::string expected = OutputOf(trees, keys, format);
            EXPECT_TRUE(Written(made.records, format, explain) == expected)
                << static_cast<int>(format) << " " << explain;
            EXPECT_EQ(Written({}, format, explain), OutputOf({}, keys, format));
        }
    }
}

TEST_F(Writer, FormatsAreAsThePlainFormWritesThem) {
    std::vector<Json> trees;
    for (const FIFormatRecord& format : FIFormatRecords()) trees.push_back(TreeOf(format));
    for (const OutputFormat format : everyFormat) {
        if (format == OutputFormat::Text) continue;
        const std::string written = Written([&] {
            RecordWriter writer(format, false);
            writer.BeginFormats();
            for (const FIFormatRecord& record : FIFormatRecords()) writer.Write(record);
            writer.End();
        });
        EXPECT_TRUE(written == OutputOf(trees, {"fiid", "name", "mime", "puid", "extensions"}, format))
            << static_cast<int>(format);
    }
}

TEST_F(Writer, TextOfRecordsAndFormats) {
    Record known = {"a\x1B\\", 1503, 172_row, std::nullopt};
    Record unknown = {"\xFF", 7, 0, std::nullopt};
    Record failed = {"b", 0, 0, "is nothing"};
    EXPECT_EQ(Written({known, unknown, failed}, OutputFormat::Text, false),
              "a\\x1B\\\\: GIF image [1503]\n\xFF:  [7]\n");
    EXPECT_EQ(Written({known, unknown, failed}, OutputFormat::Text, true),
              "a\\x1B\\\\: GIF image [1503] (row 172: >0 \"GIF8\" (37/39))\n\xFF:  [7] (no row)\n");
    const FIFormatRecord format = {65535, "Sheet", "", "", ""};
    EXPECT_EQ(Written([&] {
                  RecordWriter writer(OutputFormat::Text, false);
                  writer.BeginFormats();
                  writer.Write(format);
                  writer.End();
              }),
              "65535  Sheet\n");
}

TEST_F(Writer, RecordThatWasNotEndedIsNeverHandedOver) {
    EXPECT_EQ(Written([] {
                  WriteRecord("whole\n");
                  BeginRecord() += "half";
                  FlushOutput();
                  BeginRecord() += "next\n";
                  EndRecord();
                  BeginRecord() += "half";
                  FlushOutput();
                  FlushOutput();
                  static_cast<void>(BeginRecord());
              }),
              "whole\nnext\n");
}

}  // namespace
