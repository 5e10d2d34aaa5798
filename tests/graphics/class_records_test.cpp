// Three records of three classes.
#include "graphics/class_records.h"

#include "support/decided_case.h"
#include "support/failing_seeks.h"
#include "support/probe_case.h"

namespace {

const ProbeCase classRecordCases[] = {
    // clang-format off
    {"EmptyFile",                            R"()",                                                             0},
    {"Classes8And9And10",                    R"(w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 w:0)",                    1601},
    {"Classes8And10And9",                    R"(w:0x0800 w:0 w:0x0A00 w:0 w:0x0900 w:0)",                    1601},
    {"Classes9And8And10",                    R"(w:0x0900 w:0 w:0x0800 w:0 w:0x0A00 w:0)",                    1601},
    {"Classes9And10And8",                    R"(w:0x0900 w:0 w:0x0A00 w:0 w:0x0800 w:0)",                    1601},
    {"Classes10And8And9",                    R"(w:0x0A00 w:0 w:0x0800 w:0 w:0x0900 w:0)",                    1601},
    {"Classes10And9And8",                    R"(w:0x0A00 w:0 w:0x0900 w:0 w:0x0800 w:0)",                    1601},
    {"TopBitAndLowByteAreNotLookedAt",       R"(w:0x8A00 w:0 w:0x0901 w:0 w:0x8800 w:0)",                    1601},
    {"AllLowBytes",                          R"(w:0x88FF w:0 w:0x897F w:0 w:0x8A80 w:0)",                    1601},
    {"Class8Twice",                          R"(w:0x0800 w:0 w:0x0800 w:0 w:0x0900 w:0)",                       0},
    {"Class9Twice",                          R"(w:0x0900 w:0 w:0x0A00 w:0 w:0x0900 w:0)",                       0},
    {"Class10Twice",                         R"(w:0x0A00 w:0 w:0x0800 w:0 w:0x8A00 w:0)",                       0},
    {"Class8Twice9And10",                    R"(w:0x0800 w:0 w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 w:0)",          0},
    {"Class7",                               R"(w:0x0700 w:0 w:0x0900 w:0 w:0x0A00 w:0)",                       0},
    {"Class11",                              R"(w:0x0800 w:0 w:0x0900 w:0 w:0x0B00 w:0)",                       0},
    {"Class0InTheMiddle",                    R"(w:0x0800 w:0 w:0x0000 w:0 w:0x0A00 w:0)",                       0},
    {"Class48IsNotClass8",                   R"(w:0x4800 w:0 w:0x0900 w:0 w:0x0A00 w:0)",                       0},
    {"ClassInTheLowByte",                    R"(W:0x0800 w:0 W:0x0900 w:0 W:0x0A00 w:0)",                       0},
    {"LengthsCount16BitUnits",               R"(w:0x0800 w:1 FF*2 w:0x0900 w:3 FF*6 w:0x0A00 w:2 FF*4)",     1601},
    {"LengthsAreNoBytes",                    R"(w:0x0800 w:2 FF*2 w:0x0900 w:0 w:0x0A00 w:0)",                  0},
    {"LengthIsLeastSignificantByteFirst",    R"(w:0x0800 w:258 FF*516 w:0x0900 w:0 w:0x0A00 w:0)",           1601},
    {"LengthOf65535",                        R"(w:0x0800 w:0xFFFF FF*131070 w:0x0900 w:0 w:0x0A00 w:0)",     1601},
    {"LengthOf32768",                        R"(w:0x0800 w:0 w:0x0900 w:0x8000 FF*65536 w:0x0A00 w:0)",      1601},
    {"LastRecordsDataMayBeMissing",          R"(w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 w:0xFFFF)",               1601},
    {"SecondRecordsDataIsMissing",           R"(w:0x0800 w:0 w:0x0900 w:9 w:0x0A00 w:0)",                       0},
    {"FileEndsInTheFirstType",               R"(00)",                                                           0},
    {"FileEndsBehindTheFirstType",           R"(w:0x0800)",                                                     0},
    {"FileEndsInTheFirstLength",             R"(w:0x0800 00)",                                                  0},
    {"FileEndsBehindTheFirstRecord",         R"(w:0x0800 w:0)",                                                 0},
    {"FileEndsInTheSecondType",              R"(w:0x0800 w:0 00)",                                              0},
    {"FileEndsBehindTheSecondType",          R"(w:0x0800 w:0 w:0x0900)",                                        0},
    {"FileEndsBehindTheSecondRecord",        R"(w:0x0800 w:0 w:0x0900 w:0)",                                    0},
    {"FileEndsBehindTheThirdType",           R"(w:0x0800 w:0 w:0x0900 w:0 w:0x0A00)",                           0},
    {"FileEndsInTheThirdLength",             R"(w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 00)",                        0},
    // clang-format on
};

class ProbeClassRecords : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeClassRecords, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeClassRecords, FIBytes(GetParam().bytes)), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(ClassRecords, ProbeClassRecords, testing::ValuesIn(classRecordCases), FICaseName);

TEST(ClassRecords, OnlyTheSecondRewindCounts) {
    const char* const records = "w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 w:1";
    EXPECT_EQ(FIAnswerOver(FIProbeClassRecords, *FIMakeHandleFailingOnce(FIBytes(records), 0)), 1601U);
    EXPECT_EQ(FIAnswerWhenSeeksFailFrom(FIProbeClassRecords, FIBytes(records), 0), 0U);
    EXPECT_EQ(FIAnswerWhenSeeksFailFrom(FIProbeClassRecords, FIBytes(records), 1), 0U);
    EXPECT_EQ(FIAnswerWhenSeeksFailFrom(FIProbeClassRecords, FIBytes(records), 2), 1601U)
        << "the seek behind a record may fail";
}

TEST(ClassRecords, SeekBehindTheLastRecordMayBeRefused) {
    const auto handle = FIMakeTestHandle(FIBytes("w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 w:9"));
    handle->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeClassRecords, *handle), 1601U);
}

// ---- Whole requests ------------------------------------------------------------------------------------------------

const DecidedCase fileCases[] = {
    // clang-format off
    {"ClassRecords",               R"(w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 w:0)",                                     1601, 113_row},
    {"ClassRecordsWithTopBits",    R"(w:0x8A00 w:0 w:0x0901 w:0 w:0x8800 w:0)",                                     1601, 113_row},
    // clang-format on
};

class ClassRecordsRequest : public testing::TestWithParam<DecidedCase> {};

TEST_P(ClassRecordsRequest, Answers) { FIExpectDecision(GetParam(), FIFlagExtendedText); }

INSTANTIATE_TEST_SUITE_P(Files, ClassRecordsRequest, testing::ValuesIn(fileCases), FICaseName);

TEST(ClassRecordsRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("class 8 twice", FIBytes("w:0x0800 w:0 w:0x0800 w:0 w:0x0900 w:0"), 113_row);
}

}  // namespace
