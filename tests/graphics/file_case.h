// file_case.h - whole requests told as rows of a table: a file, the answer, and the signature row that gave it.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include "support/probe_case.h"

// One request. The name is the sentence, in words with capitals.
struct FileCase {
    const char* name;
    const char* bytes;  // in the notation of FIBytes
    FIID answer;
    std::uint16_t row;
    const char* fileName = "";
};

inline void PrintTo(const FileCase& fileCase, std::ostream* out) { *out << fileCase.name; }

inline std::string FIFileCaseName(const testing::TestParamInfo<FileCase>& info) { return info.param.name; }

// Runs the whole system over the case's file.
inline void FIExpectFileCase(const FileCase& fileCase) {
    std::uint16_t row = 0;
    EXPECT_EQ(FIIdentifyBytes(FIBytes(fileCase.bytes), fileCase.fileName, FIFlagExtendedText, &row), fileCase.answer);
    EXPECT_EQ(row, fileCase.row);
}

// Runs the whole system over a file that the routine of this row must let pass, whatever a later row makes of it.
inline void FIExpectRowLetsPass(const char* name, std::string_view bytes, std::uint16_t refusingRow) {
    std::uint16_t row = 0;
    static_cast<void>(FIIdentifyBytes(bytes, "", FIFlagExtendedText, &row));
    EXPECT_NE(row, refusingRow) << name;
}
