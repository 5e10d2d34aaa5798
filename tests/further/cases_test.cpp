// Cases of the second table and of the versions, as lists under tests/data/further: what each line, each limit of each
// routine and each version is told by, and what just misses it.
//
// A line holds the identifier expected, in versions.tsv the version and the PRONOM identifiers too, the case's name, the
// file's name and its contents: words with one blank between two, each a text in quotation marks or bytes in
// hexadecimal, with *count behind it for as many of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "core/driver.h"
#include "further/further.h"
#include "further/look.h"
#include "further/versions.h"
#include "platform/byte_objects.h"
#include "platform/operations.h"

namespace {

struct Answers {
    std::uint16_t further;
    std::string version;
    std::string puids;
    std::uint16_t identifier;  // the one that the version was asked of
};

Answers Tell(const std::string& contents, const std::string& name) {
    Answers answers = {};
    const IOMemorySpec memory = {contents.data(), contents.size(), name.c_str()};
    UTHandle* const handle = UTOpenMemory(memory);
    if (handle == nullptr) return answers;
    UTGiveOperations(*handle);
    FIVerdict verdict = {};
    FILook look;
    if (FIIdHandleWithRow(UTHandleFile(*handle), FIFlagExtendedText, verdict) == 0 &&
        FIStartLook(look, *handle, verdict.fiid, verdict.row)) {
        answers.further = FITellFurther(look).further;
        answers.identifier = answers.further != 0 ? answers.further : verdict.fiid;
        FIVersion version = {"", ""};
        if (FIReadVersion(look, answers.identifier, version)) {
            answers.version = version.version;
            answers.puids = version.puids;
        }
        FIEndLook(look);
    }
    UTCloseHandle(*handle);
    return answers;
}

std::vector<std::string_view> SplitLine(std::string_view line) {
    std::vector<std::string_view> columns;
    for (std::size_t tab = line.find('\t'); tab != std::string_view::npos; tab = line.find('\t')) {
        columns.push_back(line.substr(0, tab));
        line.remove_prefix(tab + 1);
    }
    columns.push_back(line);
    return columns;
}

// Takes the text in quotation marks that starts a line.
std::string TakeText(std::string_view& line) {
    std::string text;
    std::size_t at = 1;
    for (; at < line.size() && line[at] != '"'; ++at) {
        char character = line[at];
        if (character == '\\' && at + 1 < line.size()) {
            character = line[++at];
            if (character == 'n') character = '\n';
            if (character == 'r') character = '\r';
            if (character == 't') character = '\t';
        }
        text += character;
    }
    line.remove_prefix(std::min(at + 1, line.size()));
    return text;
}

// Takes the hexadecimal digits that start a line.
std::string TakeBytes(std::string_view& line) {
    std::string bytes;
    std::uint8_t byte = 0;
    while (line.size() >= 2 && std::from_chars(line.data(), line.data() + 2, byte, 16).ptr == line.data() + 2) {
        bytes += static_cast<char>(byte);
        line.remove_prefix(2);
    }
    return bytes;
}

// False for words that are none of these.
bool ReadContents(std::string_view line, std::string& contents) {
    while (!line.empty()) {
        const std::string word = line.front() == '"' ? TakeText(line) : TakeBytes(line);
        std::size_t count = 1;
        if (line.starts_with('*')) {
            const char* const end = line.data() + line.size();
            const char* const digits = std::from_chars(line.data() + 1, end, count).ptr;
            line.remove_prefix(static_cast<std::size_t>(digits - line.data()));
        }
        if (word.empty() || (!line.empty() && line.front() != ' ')) return false;
        if (word.size() == 1) contents.append(count, word.front());
        if (word.size() == 1) count = 0;
        for (; count > 0; --count) contents += word;
        if (!line.empty()) line.remove_prefix(1);
    }
    return true;
}

// Runs a list's cases; check is called with the columns in front of the name, and the answers.
template <typename Check>
void RunList(const std::string& list, std::size_t expected, std::size_t least, Check check) {
    std::ifstream file(std::string(FIID_TEST_DATA_DIR) + "/further/" + list + ".tsv", std::ios::binary);
    std::string line;
    std::string contents;
    std::size_t count = 0;
    std::getline(file, line);  // the columns' names
    while (std::getline(file, line)) {
        const std::vector<std::string_view> columns = SplitLine(line);
        ASSERT_EQ(columns.size(), expected + 3) << line;
        SCOPED_TRACE(list + ": " + std::string(columns[expected]));
        contents.clear();
        ASSERT_TRUE(ReadContents(columns[expected + 2], contents));
        check(columns, Tell(contents, std::string(columns[expected + 1])));
        ++count;
    }
    EXPECT_GE(count, least) << list;
}

void RunTellings(const std::string& list, std::size_t least) {
    RunList(list, 1, least, [](const std::vector<std::string_view>& columns, const Answers& answers) {
        EXPECT_EQ(std::to_string(answers.further), columns[0]);
    });
}

TEST(FurtherCases, PatternsAreToldAndTheirNearMissesAreNot) { RunTellings("patterns", 3000); }

TEST(FurtherCases, TextsAreToldByTheirBeginnings) { RunTellings("text_forms", 600); }

TEST(FurtherCases, TextsAreToldFromOtherBytes) { RunTellings("texts", 500); }

TEST(FurtherCases, JsonIsToldByItsGrammar) { RunTellings("json", 200); }

TEST(FurtherCases, StoragesAreToldByClassAndEntries) { RunTellings("storages", 80); }

TEST(FurtherCases, PackagesAreToldByMainPartAndMembers) { RunTellings("packages", 500); }

TEST(FurtherCases, VersionsAreReadAndChooseAmongIdentifiers) {
    RunList("versions", 3, 800, [](const std::vector<std::string_view>& columns, const Answers& answers) {
        EXPECT_EQ(std::to_string(answers.identifier), columns[0]);
        EXPECT_EQ(answers.version, columns[1]);
        EXPECT_EQ(answers.puids, columns[2]);
    });
}

}  // namespace
