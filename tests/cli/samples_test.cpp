// The samples: real files of public programs, identified by the program, against the answers beside them.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <vector>

#include "support/run_program.h"

namespace {

std::vector<std::string> SplitAtTabs(const std::string& line) {
    std::istringstream text(line);
    std::vector<std::string> fields;
    for (std::string field; std::getline(text, field, '\t');) fields.push_back(field);
    return fields;
}

// The lines of a table with a header, by their first column; the fields of a line, by the header's names.
using Record = std::map<std::string, std::string>;

std::map<std::string, Record> ReadTable(const std::string& text) {
    std::istringstream lines(text);
    std::map<std::string, Record> table;
    std::string line;
    std::getline(lines, line);
    const std::vector<std::string> names = SplitAtTabs(line);
    while (std::getline(lines, line)) {
        std::vector<std::string> fields = SplitAtTabs(line);
        fields.resize(names.size());  // empty fields at the line's end
        Record& record = table[fields.front()];
        for (std::size_t i = 0; i < names.size(); i++) record[names[i]] = fields[i];
    }
    return table;
}

constexpr const char* answersFile = "answers.tsv";

TEST(Samples, GetTheirAnswersAndDecidingRows) {
    const auto answers = ReadTable(ReadWholeFile(FIID_SAMPLES_DIR "/answers.tsv"));
    ASSERT_GE(answers.size(), 800U);
    const ProgramRun run = RunShell(FIID_SAMPLES_DIR, "$FIID --explain --format tsv *");
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.messages, "");
    const auto records = ReadTable(run.output);
    for (const auto& [path, answer] : answers) {
        const auto found = records.find(path);
        ASSERT_NE(found, records.end()) << path << " is missing";
        const Record& record = found->second;
        EXPECT_EQ(record.at("fiid"), answer.at("identifier")) << path;
        const std::string& row = answer.at("row");
        EXPECT_EQ(record.at("row"), row == "text" || row == "none" ? "0" : row) << path;
        EXPECT_EQ(record.at("further"), answer.at("further")) << path;
        EXPECT_NE(answer.at("what"), "") << path;
    }
}

// The table's answers are the same without the further one.
TEST(Samples, NeedNothingFurtherForTheTablesAnswers) {
    const auto answers = ReadTable(ReadWholeFile(FIID_SAMPLES_DIR "/answers.tsv"));
    const auto records = ReadTable(RunShell(FIID_SAMPLES_DIR, "$FIID --no-further --format tsv *").output);
    for (const auto& [path, answer] : answers) {
        ASSERT_TRUE(records.contains(path)) << path << " is missing";
        EXPECT_EQ(records.at(path).at("fiid"), answer.at("identifier")) << path;
        EXPECT_EQ(records.at(path).at("further"), "") << path;
    }
}

// A further answer is listed, and its name stands in the record in place of the table's.
TEST(Samples, AreNamedByTheirFurtherAnswers) {
    const auto formats = ReadTable(RunShell(FIID_SAMPLES_DIR, "$FIID --formats --format tsv").output);
    for (const auto& [path, record] : ReadTable(RunShell(FIID_SAMPLES_DIR, "$FIID --format tsv *").output)) {
        const std::string& further = record.at("further");
        if (further.empty()) continue;
        ASSERT_TRUE(formats.contains(further)) << path << ": " << further;
        EXPECT_NE(record.at("name"), "") << path;
        EXPECT_EQ(record.at("name"), formats.at(further).at("name")) << path;
    }
}

TEST(Samples, EachHasAnAnswer) {
    const auto answers = ReadTable(ReadWholeFile(FIID_SAMPLES_DIR "/answers.tsv"));
    for (const auto& entry : std::filesystem::recursive_directory_iterator(FIID_SAMPLES_DIR)) {
        if (!entry.is_regular_file()) continue;
        const std::string path = std::filesystem::relative(entry.path(), FIID_SAMPLES_DIR).string();
        if (path == answersFile || path == "README.md" || path == ".gitattributes") continue;
        EXPECT_TRUE(answers.contains(path)) << path;
    }
}

}  // namespace
