// The samples: real files of public programs, identified by the program, against the answers beside them.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <vector>

#include "cli/run_program.h"

namespace {

std::vector<std::string> SplitAtTabs(const std::string& line) {
    std::istringstream text(line);
    std::vector<std::string> fields;
    for (std::string field; std::getline(text, field, '\t');) fields.push_back(field);
    return fields;
}

// The lines of a table with a header, by their first column.
std::map<std::string, std::vector<std::string>> ReadTable(const std::string& text) {
    std::istringstream lines(text);
    std::map<std::string, std::vector<std::string>> table;
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        const std::vector<std::string> fields = SplitAtTabs(line);
        table[fields.front()] = fields;
    }
    return table;
}

constexpr const char* answersFile = "answers.tsv";

TEST(Samples, GetTheirAnswersAndDecidingRows) {
    const auto answers = ReadTable(ReadWholeFile(FIID_SAMPLES_DIR "/answers.tsv"));
    ASSERT_GE(answers.size(), 40U);
    const ProgramRun run = RunShell(FIID_SAMPLES_DIR, "$FIID --explain --format tsv *");
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.messages, "");
    const auto records = ReadTable(run.output);
    for (const auto& [path, answer] : answers) {
        const auto record = records.find(path);
        ASSERT_NE(record, records.end()) << path << " is missing";
        ASSERT_GE(answer.size(), 3U) << path;
        constexpr std::size_t fiidColumn = 1;
        constexpr std::size_t rowColumn = 12;
        EXPECT_EQ(record->second[fiidColumn], answer[1]) << path;
        const std::string& row = record->second[rowColumn];
        EXPECT_EQ(row, answer[2] == "text" || answer[2] == "none" ? "0" : answer[2]) << path;
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
