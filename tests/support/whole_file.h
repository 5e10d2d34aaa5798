// whole_file.h - whole requests over the bytes of a file.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "support/probe_case.h"

// Runs the whole system over a file. The row that decided must be this one, if any row did.
inline void FIExpectWholeFile(const std::string& file, FIID answer, std::uint16_t decidingRow) {
    std::uint16_t row = 0;
    EXPECT_EQ(FIIdentifyBytes(file, "LETTER", 0, &row), answer);
    if (answer != 1999) {
        EXPECT_EQ(row, decidingRow);
    }
}
