// decided_case.h - a file, the answer of the whole system for it and the row of the table that gives it, as a row of a
// test's table.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "fiid.h"
#include "support/bytes.h"
#include "support/case_name.h"
#include "support/probe_case.h"

struct DecidedCase {
    const char* name;
    const char* bytes;  // in the notation of FIBytes
    FIID answer;
    std::uint16_t row;  // the deciding row; 0 when no row decides
    const char* fileName = "";
};

// Identifies the file and expects the case's answer and row. Without a flag, no look is taken at its characters when no
// row decides.
inline void FIExpectDecision(const DecidedCase& decidedCase, std::uint32_t flags = 0) {
    std::uint16_t row = 0;
    EXPECT_EQ(FIIdentifyBytes(FIBytes(decidedCase.bytes), decidedCase.fileName, flags, &row), decidedCase.answer);
    EXPECT_EQ(row, decidedCase.row);
}

// Runs the whole system over a file that the routine of this row must let pass, whatever a later row makes of it.
inline void FIExpectRowLetsPass(const char* name, std::string_view bytes, std::uint16_t refusingRow) {
    std::uint16_t row = 0;
    static_cast<void>(FIIdentifyBytes(bytes, "", FIFlagExtendedText, &row));
    EXPECT_NE(row, refusingRow) << name;
}
