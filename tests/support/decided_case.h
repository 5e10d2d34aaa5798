// decided_case.h - a file, the answer of the whole system for it and the row of the table that gives it, as a row of a
// test's table.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>

#include "fiid.h"
#include "support/bytes.h"
#include "support/probe_case.h"

struct DecidedCase {
    const char* name;
    const char* bytes;  // in the notation of FIBytes
    FIID answer;
    std::uint16_t row;  // the deciding row; 0 when no row decides, and then the answer is 1999
    const char* fileName = "";
};

inline void PrintTo(const DecidedCase& decidedCase, std::ostream* out) { *out << decidedCase.name; }

inline std::string FIDecidedName(const testing::TestParamInfo<DecidedCase>& info) { return info.param.name; }

// Identifies the file, without a look at its characters when no row decides, and expects the case's answer and row.
inline void FIExpectDecision(const DecidedCase& decidedCase) {
    std::uint16_t row = 0;
    EXPECT_EQ(FIIdentifyBytes(FIBytes(decidedCase.bytes), decidedCase.fileName, 0, &row), decidedCase.answer);
    EXPECT_EQ(row, decidedCase.row);
}
