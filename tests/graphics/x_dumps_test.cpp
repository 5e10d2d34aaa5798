// X Window Dump.
#include "graphics/x_dumps.h"

#include <cstdint>

#include "support/decided_case.h"
#include "support/failing_seeks.h"
#include "support/probe_case.h"

namespace {

const ProbeCase xwdCases[] = {
    // clang-format off
    {"EmptyFile",                    R"()",                                            0},
    {"ZPixmap",                      R"(>7 07 >11 02 >15 08 >35 20 >55 03)",        1575},
    {"XyBitmap",                     R"(>7 07 >11 00 >15 08 >35 20 >55 03)",        1575},
    {"XyPixmap",                     R"(>7 07 >11 01 >15 08 >35 20 >55 03)",        1575},
    {"Format3",                      R"(>7 07 >11 03 >15 08 >35 20 >55 03)",           0},
    {"Format80IsNotBelow0",          R"(>7 07 >11 80 >15 08 >35 20 >55 03)",           0},
    {"FormatFFIsNotTheEndOfTheFile", R"(>7 07 >11 FF >15 08 >35 20 >55 03)",           0},
    {"Version6",                     R"(>7 06 >11 02 >15 08 >35 20 >55 03)",           0},
    {"Version8",                     R"(>7 08 >11 02 >15 08 >35 20 >55 03)",           0},
    {"Depth24",                      R"(>7 07 >11 02 >15 18 >35 20 >55 03)",        1575},
    {"Depth1",                       R"(>7 07 >11 02 >15 01 >35 20 >55 03)",           0},
    {"Depth7",                       R"(>7 07 >11 02 >15 07 >35 20 >55 03)",           0},
    {"Depth9",                       R"(>7 07 >11 02 >15 09 >35 20 >55 03)",           0},
    {"Depth16",                      R"(>7 07 >11 02 >15 10 >35 20 >55 03)",           0},
    {"Depth23",                      R"(>7 07 >11 02 >15 17 >35 20 >55 03)",           0},
    {"Depth25",                      R"(>7 07 >11 02 >15 19 >35 20 >55 03)",           0},
    {"Depth32",                      R"(>7 07 >11 02 >15 20 >35 20 >55 03)",           0},
    {"Unit8",                        R"(>7 07 >11 02 >15 08 >35 08 >55 03)",        1575},
    {"Unit16",                       R"(>7 07 >11 02 >15 08 >35 10 >55 03)",        1575},
    {"Unit7",                        R"(>7 07 >11 02 >15 08 >35 07 >55 03)",           0},
    {"Unit9",                        R"(>7 07 >11 02 >15 08 >35 09 >55 03)",           0},
    {"Unit24",                       R"(>7 07 >11 02 >15 08 >35 18 >55 03)",           0},
    {"Unit64",                       R"(>7 07 >11 02 >15 08 >35 40 >55 03)",           0},
    {"Visual0",                      R"(>7 07 >11 02 >15 08 >35 20 >55 00)",        1575},
    {"Visual1",                      R"(>7 07 >11 02 >15 08 >35 20 >55 01)",           0},
    {"Visual2",                      R"(>7 07 >11 02 >15 08 >35 20 >55 02)",           0},
    {"Visual4",                      R"(>7 07 >11 02 >15 08 >35 20 >55 04)",        1575},
    {"Visual5",                      R"(>7 07 >11 02 >15 08 >35 20 >55 05)",           0},
    {"OtherBytesAreNotLookedAt",     R"(FF*7 07 FF*3 02 FF*3 18 FF*19 10 FF*19 04)", 1575},
    {"FileEndsInFrontOfTheVersion",  R"(>7)",                                          0},
    {"FileEndsBehindTheVersion",     R"(>7 07)",                                       0},
    {"FileEndsBehindTheFormat",      R"(>7 07 >11 02)",                                0},
    {"FileEndsBehindTheDepth",       R"(>7 07 >11 02 >15 08)",                         0},
    {"FileEndsBehindTheUnit",        R"(>7 07 >11 02 >15 08 >35 20)",                  0},
    {"FileEndsInFrontOfTheVisual",   R"(>7 07 >11 02 >15 08 >35 20 >55)",              0},
    // clang-format on
};

class ProbeXwd : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeXwd, Answers) { EXPECT_EQ(FIAnswerOf(FIProbeXwd, FIBytes(GetParam().bytes)), GetParam().answer); }

INSTANTIATE_TEST_SUITE_P(Xwd, ProbeXwd, testing::ValuesIn(xwdCases), FICaseName);

TEST(Xwd, EachFailingSeekIsNoAnswer) {
    // One byte a read, so that each of the five seeks reaches the handle.
    const char* const dump = ">7 07 >11 02 >15 08 >35 20 >55 03";
    for (std::uint32_t failing = 0; failing < 5; ++failing) {
        EXPECT_EQ(FIAnswerWhenSeeksFailFrom(FIProbeXwd, FIBytes(dump), failing, 1), 0U) << failing;
    }
    EXPECT_EQ(FIAnswerWhenSeeksFailFrom(FIProbeXwd, FIBytes(dump), 5, 1), 1575U);
}

// ---- Whole requests ------------------------------------------------------------------------------------------------

const DecidedCase fileCases[] = {
    // clang-format off
    {"Xwd",                        R"(D:101 D:7 D:2 D:8 D:1 D:1 D:0 D:1 D:32 D:1 D:32 D:8 D:4 D:3 00*44)",          1575, 247_row},
    // clang-format on
};

class XwdRequest : public testing::TestWithParam<DecidedCase> {};

TEST_P(XwdRequest, Answers) { FIExpectDecision(GetParam(), FIFlagExtendedText); }

INSTANTIATE_TEST_SUITE_P(Files, XwdRequest, testing::ValuesIn(fileCases), FICaseName);

TEST(XwdRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("a dump of depth 16", FIBytes("D:101 D:7 D:2 D:16 D:1 D:1 D:0 D:1 D:32 D:1 D:32 D:8 D:4 D:3"),
                        247_row);
}

}  // namespace
