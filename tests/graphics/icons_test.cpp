// Windows icons and cursors.
#include "graphics/icons.h"

#include <cstdint>

#include "support/decided_case.h"
#include "support/failing_seeks.h"
#include "support/probe_case.h"

namespace {

const ProbeCase iconCases[] = {
    // clang-format off
    {"EmptyFile",                     R"()",                                               0},
    {"Icon",                          R"(00 00 01 00 01 00 00*12 d:22 d:40 00*36)",     1515},
    {"Cursor",                        R"(00 00 02 00 01 00 00*12 d:22 d:40 00*36)",     1516},
    {"Type0",                         R"(00 00 00 00 01 00 00*12 d:22 d:40)",              0},
    {"Type3",                         R"(00 00 03 00 01 00 00*12 d:22 d:40)",              0},
    {"Byte0NotZero",                  R"(01 00 01 00 01 00 00*12 d:22 d:40)",              0},
    {"Byte1NotZero",                  R"(00 01 01 00 01 00 00*12 d:22 d:40)",              0},
    {"Byte3NotZero",                  R"(00 00 01 01 01 00 00*12 d:22 d:40)",              0},
    {"CountOf0IsNotLookedAt",         R"(00 00 01 00 00 00 00*12 d:22 d:40)",           1515},
    {"CountOf65535IsNotLookedAt",     R"(00 00 01 00 FF FF FF*12 d:22 d:40)",           1515},
    {"Size39",                        R"(00 00 01 00 01 00 00*12 d:22 d:39)",              0},
    {"Size41",                        R"(00 00 01 00 01 00 00*12 d:22 d:41)",              0},
    {"SizeWithSecondByte",            R"(00 00 01 00 01 00 00*12 d:22 28 01 00 00)",       0},
    {"SizeWithThirdByte",             R"(00 00 01 00 01 00 00*12 d:22 28 00 01 00)",       0},
    {"SizeWithFourthByte",            R"(00 00 01 00 01 00 00*12 d:22 28 00 00 01)",       0},
    {"SizeMostSignificantByteFirst",  R"(00 00 01 00 01 00 00*12 d:22 D:40)",              0},
    {"ImageFarAway",                  R"(00 00 01 00 01 00 00*12 d:70000 >70000 d:40)", 1515},
    {"ImageInTheHeader",              R"(00 00 01 00 28 00 00 00 00*10 d:4)",           1515},
    {"ImageIsAPng",                   R"(00 00 01 00 01 00 00*12 d:22 89 "PNG" 0D 0A 1A 0A)", 0},
    {"ImageBehindTheEnd",             R"(00 00 01 00 01 00 00*12 d:1000 d:40)",            0},
    {"ImageAt2GiB",                   R"(00 00 01 00 01 00 00*12 d:0x80000000 d:40)",      0},
    {"FileEndsInTheMagic",            R"(00 00 01)",                                       0},
    {"FileEndsBehindTheMagic",        R"(00 00 01 00)",                                    0},
    {"FileEndsInFrontOfTheOffset",    R"(00 00 01 00 01 00 00*12)",                        0},
    {"FileEndsInTheOffset",           R"(00 00 01 00 01 00 00*12 16 00 00)",               0},
    {"FileEndsInFrontOfTheSize",      R"(00 00 01 00 01 00 00*12 d:22)",                   0},
    {"FileEndsBehindSizeByte1",       R"(00 00 01 00 01 00 00*12 d:22 28)",                0},
    {"FileEndsBehindSizeByte2",       R"(00 00 01 00 01 00 00*12 d:22 28 00)",             0},
    {"FileEndsBehindSizeByte3",       R"(00 00 01 00 01 00 00*12 d:22 28 00 00)",          0},
    {"FileEndsBehindTheSize",         R"(00 00 01 00 01 00 00*12 d:22 28 00 00 00)",    1515},
    // clang-format on
};

class ProbeIconFile : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeIconFile, Answers) { EXPECT_EQ(FIAnswerOf(FIProbeIconFile, FIBytes(GetParam().bytes)), GetParam().answer); }

INSTANTIATE_TEST_SUITE_P(Icons, ProbeIconFile, testing::ValuesIn(iconCases), FICaseName);

TEST(IconFile, EachFailingSeekIsNoAnswer) {
    // Four bytes a read, so that each of the three seeks reaches the handle.
    const char* const icon = "00 00 01 00 01 00 00*12 d:22 d:40";
    for (std::uint32_t failing = 0; failing < 3; ++failing) {
        EXPECT_EQ(FIAnswerWhenSeeksFailFrom(FIProbeIconFile, FIBytes(icon), failing, 4), 0U) << failing;
    }
    EXPECT_EQ(FIAnswerWhenSeeksFailFrom(FIProbeIconFile, FIBytes(icon), 3, 4), 1515U);
}

// ---- Whole requests ------------------------------------------------------------------------------------------------

const DecidedCase fileCases[] = {
    // clang-format off
    {"Icon",                       R"(00 00 01 00 01 00 10 10 10 00 00 00 00 00 d:296 d:22 d:40 d:16 d:32 00*284)", 1515, 171_row},
    {"Cursor",                     R"(00 00 02 00 01 00 10 10 10 00 00 00 00 00 d:296 d:22 d:40 d:16 d:32 00*284)", 1516, 171_row},
    // clang-format on
};

class IconRequest : public testing::TestWithParam<DecidedCase> {};

TEST_P(IconRequest, Answers) { FIExpectDecision(GetParam(), FIFlagExtendedText); }

INSTANTIATE_TEST_SUITE_P(Files, IconRequest, testing::ValuesIn(fileCases), FICaseName);

TEST(IconRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("icon of a PNG", FIBytes(R"(00 00 01 00 01 00 00*12 d:22 89 "PNG" 0D 0A 1A 0A)"), 171_row);
}

}  // namespace
