// whole_file.h - whole requests over the bytes of a file.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "support/case_name.h"
#include "support/probe_case.h"

// Runs the whole system over a file. The row that decided must be this one, if any row did.
inline void FIExpectWholeFile(std::string_view file, FIID answer, std::uint16_t decidingRow) {
    std::uint16_t row = 0;
    EXPECT_EQ(FIIdentifyBytes(file, "LETTER", 0, &row), answer);
    if (answer != 1999) {
        EXPECT_EQ(row, decidingRow);
    }
}

// The same as a row of a table whose cases one row of the signature table decides, if any does.
struct WholeFile {
    const char* name;
    const char* bytes;  // in the notation of FIBytes
    FIID answer;
};

inline void FIExpectWholeFile(const WholeFile& file, std::uint16_t decidingRow) {
    FIExpectWholeFile(FIBytes(file.bytes), file.answer, decidingRow);
}
