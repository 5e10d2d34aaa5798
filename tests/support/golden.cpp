#include "support/golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace {

std::string PathOf(const std::string& name) { return FIID_GOLDEN_DIR "/" + name; }

std::vector<std::string> ReadLines(const std::string& name, bool comments) {
    std::ifstream file(PathOf(name));
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("#") == comments) lines.push_back(line);
    }
    return lines;
}

void Rewrite(const std::string& name, const std::vector<std::string>& lines) {
    const std::vector<std::string> comments = ReadLines(name, true);
    std::ofstream file(PathOf(name));
    for (const std::string& line : comments) file << line << "\n";
    for (const std::string& line : lines) file << line << "\n";
    ASSERT_TRUE(file.good()) << PathOf(name);
}

}  // namespace

std::vector<std::string> FIReadGolden(const std::string& name) {
    std::vector<std::string> lines = ReadLines(name, false);
    EXPECT_FALSE(lines.empty()) << PathOf(name);
    return lines;
}

void FIExpectGolden(const std::string& name, const std::vector<std::string>& lines) {
    if (std::getenv("FIID_ACCEPT") != nullptr) return Rewrite(name, lines);
    const std::vector<std::string> expected = FIReadGolden(name);
    for (std::size_t index = 0; index < std::min(lines.size(), expected.size()); ++index) {
        ASSERT_EQ(lines[index], expected[index]) << name << ", entry " << index + 1;
    }
    ASSERT_EQ(lines.size(), expected.size()) << name;
}
