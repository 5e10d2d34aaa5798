// program_directory.h - a test of the program: a directory with files of its own, and commands that run in it.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/run_program.h"

class ProgramDirectory : public testing::Test {
 protected:
    ProgramDirectory() {
        std::string pattern = testing::TempDir() + "fiid-directory-" + std::string(6, 'X');
        base_ = mkdtemp(pattern.data());
        directory_ = base_ + "/files";
        mkdir(directory_.c_str(), 0700);
    }
    // rm goes down step by step: paths may be longer than the system takes.
    ~ProgramDirectory() override {
        static_cast<void>(std::system(("chmod -R u+rwx '" + base_ + "' 2>/dev/null; rm -rf '" + base_ + "'").c_str()));
    }
    void Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(directory_ + "/" + name, std::ios::binary) << bytes;
    }
    void MakeDirectory(const std::string& name) const { mkdir((directory_ + "/" + name).c_str(), 0700); }
    void MakeSocket(const std::string& name) const {
        ASSERT_EQ(mknod((directory_ + "/" + name).c_str(), S_IFSOCK | 0600, 0), 0);
    }
    ProgramRun Run(const std::string& command) const { return RunShell(directory_, command); }

    std::string base_;
    std::string directory_;
};

// What makes root subject to permissions, in front of $FIID; nothing for other users, who are so anyhow.
inline std::string WithoutPrivileges() { return geteuid() == 0 ? "setpriv --inh-caps=-all --bounding-set=-all " : ""; }

// The parts of a text that end in a character.
inline std::vector<std::string> PartsOf(const std::string& text, char end = '\n') {
    std::istringstream stream(text);
    std::vector<std::string> parts;
    for (std::string part; std::getline(stream, part, end);) parts.push_back(part);
    return parts;
}

inline std::vector<std::string> Sorted(std::vector<std::string> texts) {
    std::sort(texts.begin(), texts.end());
    return texts;
}

// The rows of a text as RFC 4180 has it; quoted fields may hold line ends.
inline std::vector<std::vector<std::string>> CsvRowsOf(const std::string& text) {
    std::vector<std::vector<std::string>> rows;
    std::vector<std::string> row(1);
    bool quoted = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char byte = text[at];
        if (quoted && byte == '"' && at + 1 < text.size() && text[at + 1] == '"') {
            row.back() += text[++at];
        } else if (byte == '"') {
            quoted = !quoted;
        } else if (!quoted && byte == ',') {
            row.emplace_back();
        } else if (!quoted && byte == '\n') {
            rows.push_back(row);
            row.assign(1, "");
        } else if (quoted || byte != '\r') {
            row.back() += byte;
        }
    }
    return rows;
}
