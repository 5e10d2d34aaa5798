// Encapsulated PostScript with a preview.
#include "graphics/eps_preview.h"

#include "support/decided_case.h"
#include "support/failing_seeks.h"
#include "support/probe_case.h"

namespace {

const ProbeCase epsPreviewCases[] = {
    // clang-format off
    {"EmptyFile",                        R"()",                                     0},
    {"TiffPreview",                      R"(C5 D0 D3 C6 00*16 d:30 d:0 FF FF)",  1504},
    {"LowestByteNotZero",                R"(C5 D0 D3 C6 00*16 01 00 00 00)",     1504},
    {"SecondByteNotZero",                R"(C5 D0 D3 C6 00*16 00 01 00 00)",     1504},
    {"ThirdByteNotZero",                 R"(C5 D0 D3 C6 00*16 00 00 01 00)",     1504},
    {"HighestByteNotZero",               R"(C5 D0 D3 C6 00*16 00 00 00 80)",     1504},
    {"NoPreview",                        R"(C5 D0 D3 C6 FF*16 00 00 00 00)",        0},
    {"NoPreviewAndBytesBehind",          R"(C5 D0 D3 C6 FF*16 00 00 00 00 FF)",     0},
    {"FirstMagicByteDiffers",            R"(C4 D0 D3 C6 00*16 d:30)",               0},
    {"SecondMagicByteDiffers",           R"(C5 D1 D3 C6 00*16 d:30)",               0},
    {"ThirdMagicByteDiffers",            R"(C5 D0 D2 C6 00*16 d:30)",               0},
    {"FourthMagicByteDiffers",           R"(C5 D0 D3 C7 00*16 d:30)",               0},
    {"ThreeBytes",                       R"(C5 D0 D3)",                             0},
    {"FileEndsBehindTheMagic",           R"(C5 D0 D3 C6)",                       1504},
    {"FileEndsInFrontOfTheField",        R"(C5 D0 D3 C6 00*15)",                 1504},
    {"FileOf20Bytes",                    R"(C5 D0 D3 C6 00*16)",                 1504},
    {"FileEndsInTheField",               R"(C5 D0 D3 C6 00*16 00 00 00)",        1504},
    {"FileEndsBehindTheField",           R"(C5 D0 D3 C6 00*16 00 00 00 00)",        0},
    // clang-format on
};

class ProbeEpsPreview : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeEpsPreview, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeEpsPreview, FIBytes(GetParam().bytes)), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(EpsPreview, ProbeEpsPreview, testing::ValuesIn(epsPreviewCases), FICaseName);

TEST(EpsPreview, FailingRewindIsNoAnswer) {
    EXPECT_EQ(FIAnswerWhenSeeksFailFrom(FIProbeEpsPreview, FIBytes("C5 D0 D3 C6 00*16 d:30"), 0), 0U);
}

// ---- Whole requests ------------------------------------------------------------------------------------------------

const DecidedCase fileCases[] = {
    // clang-format off
    {"EpsWithPreview",             R"(C5 D0 D3 C6 d:30 d:4 d:0 d:0 d:34 d:4 FF FF "%!PSII*" 00)",                   1504, 173_row},
    {"EpsOf20Bytes",               R"(C5 D0 D3 C6 d:30 d:4 d:0 d:0)",                                               1504, 173_row},
    {"EpsWithoutPreviewIsPostScript", R"(C5 D0 D3 C6 d:30 d:4 d:0 d:0 d:0 d:0 FF FF "%!PS")",                       1580, 387_row},
    // clang-format on
};

class EpsPreviewRequest : public testing::TestWithParam<DecidedCase> {};

TEST_P(EpsPreviewRequest, Answers) { FIExpectDecision(GetParam(), FIFlagExtendedText); }

INSTANTIATE_TEST_SUITE_P(Files, EpsPreviewRequest, testing::ValuesIn(fileCases), FICaseName);

}  // namespace
