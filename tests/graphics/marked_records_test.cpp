// A chain of marked records.
#include "graphics/marked_records.h"

#include "support/decided_case.h"
#include "support/probe_case.h"

namespace {

const ProbeCase markedRecordCases[] = {
    // clang-format off
    {"EmptyFile",                                 R"()",                                                                           0},
    {"TwoBytes",                                  R"(02 02)",                                                                      0},
    {"ThreeBytes",                                R"(02 02 02)",                                                                   0},
    {"ClosingMarkAlone",                          R"(02 02 02 7E)",                                                             1570},
    {"ClosingMarkWithBytesBehind",                R"(02 02 02 7E FF FF FF)",                                                    1570},
    {"ClosingMarkOfAnotherLead",                  R"(03 02 02 7E)",                                                                0},
    {"ClosingMarkOfAnotherLength",                R"(02 03 02 7E)",                                                                0},
    {"ClosingMarkOfAnotherClass",                 R"(02 02 03 7E)",                                                                0},
    {"ClosingMarkOfAnotherCode",                  R"(02 02 02 7F)",                                                                0},
    {"FirstRecordOfClass0IsPassedOver",           R"(02 02 00 00 02 02 02 7E)",                                                 1570},
    {"FirstRecordOfClass0AndLength5",             R"(02 05 00 "abcd" 02 02 02 7E)",                                             1570},
    {"FirstRecordOfClass0AndLength255",           R"(02 FF 00 FF*254 02 02 02 7E)",                                             1570},
    {"FirstRecordOfClass0AndLength0",             R"(02 00 00 02 02 02 7E)",                                                       0},
    {"FirstRecordOfClass0FillsTheFile",           R"(02 02 00 00)",                                                                0},
    {"FirstRecordOfClass0LeavesTheFile",          R"(02 FF 00 00 02 02 02 7E)",                                                    0},
    {"SecondRecordOfClass0IsNotPassedOver",       R"(02 02 00 00 02 02 00 00 02 02 02 7E)",                                        0},
    {"FirstRecordOfAnotherLead",                  R"(01 02 00 00 02 02 02 7E)",                                                    0},

    {"FirstGroup",                                R"(02 02 01 7E 02 02 01 7F 02 02 02 7E)",                                     1570},
    {"FirstGroupBehindClass0",                    R"(02 03 00 00 00 02 02 01 7E 02 02 01 7F 02 02 02 7E)",                      1570},
    {"FirstGroupWithRecords",                     R"(02 02 01 7E 02 04 01 00 AA AA 02 06 01 33 BB*4 02 02 01 7F 02 02 02 7E)",  1570},
    {"FirstGroupsOpenersLengthIsNotLookedAt",     R"(02 09 01 7E 02 02 01 7F 02 02 02 7E)",                                     1570},
    {"FirstGroupsCloserMayBeLonger",              R"(02 02 01 7E 02 05 01 7F AA AA AA 02 02 02 7E)",                            1570},
    {"FirstGroupOpenedAgain",                     R"(02 02 01 7E 02 02 01 7E 02 02 01 7F 02 02 02 7E)",                         1570},
    {"FirstGroupWithoutCloserHoldsAnotherLead",   R"(02 02 01 7E 02 02 01 00 03 02 01 7F 02 02 02 7E)",                            0},
    {"FirstGroupWithoutCloserHoldsAnotherClass",  R"(02 02 01 7E 02 02 01 00 02 02 02 7E)",                                        0},
    {"FirstGroupIsOpenAtTheEnd",                  R"(02 02 01 7E)",                                                                0},
    {"FirstGroupsRecordEndsWithTheFile",          R"(02 02 01 7E 02 02 01 00)",                                                    0},
    {"FirstGroupsRecordLeavesTheFileBy1",         R"(02 02 01 7E 02 03 01 00)",                                                 1570},
    {"FirstGroupsRecordLeavesTheFileFar",         R"(02 02 01 7E 02 FF 01 00)",                                                 1570},
    {"FirstGroupsCloserLeavesTheFile",            R"(02 02 01 7E 02 03 01 7F)",                                                 1570},
    {"FirstGroupsCloserEndsWithTheFile",          R"(02 02 01 7E 02 02 01 7F)",                                                    0},
    {"FirstGroupsRecordOfLength0",                R"(02 02 01 7E 02 00 01 02 02 01 7F 02 02 02 7E)",                               0},
    {"FirstGroupWithoutClosingMark",              R"(02 02 01 7E 02 02 01 7F 02 02 02 7F)",                                        0},

    {"SecondGroup",                               R"(02 02 04 7E 02 02 04 00 02 02 04 7F 02 02 02 7E)",                         1570},
    {"SecondGroupsRecordMayBeLonger",             R"(02 02 04 7E 02 06 04 00 AA*4 02 02 04 7F 02 02 02 7E)",                    1570},
    {"SecondGroupsLengthsAreNotLookedAt",         R"(02 09 04 7E 02 02 04 00 02 09 04 7F 02 02 02 7E)",                         1570},
    {"SecondGroupsRecordOfAnotherLead",           R"(02 02 04 7E 03 02 04 00 02 02 04 7F 02 02 02 7E)",                            0},
    {"SecondGroupsRecordOfAnotherClass",          R"(02 02 04 7E 02 02 01 00 02 02 04 7F 02 02 02 7E)",                            0},
    {"SecondGroupHasOneRecordOnly",               R"(02 02 04 7E 02 02 04 00 02 02 04 00 02 02 04 7F 02 02 02 7E)",                0},
    {"SecondGroupsRecordMayHaveTheCodeOfACloser", R"(02 02 04 7E 02 02 04 7F 02 02 04 7F 02 02 02 7E)",                         1570},
    {"SecondGroupWithoutRecord",                  R"(02 02 04 7E 02 02 04 7F 02 02 02 7E)",                                        0},
    {"SecondGroupsCloserOfAnotherLead",           R"(02 02 04 7E 02 02 04 00 01 02 04 7F 02 02 02 7E)",                            0},
    {"SecondGroupsCloserOfAnotherClass",          R"(02 02 04 7E 02 02 04 00 02 02 01 7F 02 02 02 7E)",                            0},
    {"SecondGroupsCloserOfAnotherCode",           R"(02 02 04 7E 02 02 04 00 02 02 04 7E 02 02 02 7E)",                            0},
    {"SecondGroupIsOpenAtTheEnd",                 R"(02 02 04 7E)",                                                                0},
    {"SecondGroupsRecordEndsWithTheFile",         R"(02 02 04 7E 02 02 04 00)",                                                    0},
    {"SecondGroupsRecordLeavesTheFileBy1",        R"(02 02 04 7E 02 03 04 00)",                                                 1570},
    {"SecondGroupWithoutClosingMark",             R"(02 02 04 7E 02 02 04 00 02 02 04 7F)",                                        0},
    {"BothGroups",                                R"(02 02 01 7E 02 02 01 7F 02 02 04 7E 02 02 04 00 02 02 04 7F 02 02 02 7E)", 1570},
    {"GroupsInTheOtherOrder",                     R"(02 02 04 7E 02 02 04 00 02 02 04 7F 02 02 01 7E 02 02 01 7F 02 02 02 7E)",    0},

    // 2,000 bytes are looked at. The closer's record leads from offset 1803 to 1996 or to 1997.
    {"ClosingMarkEndsTheBlock",                   R"(02 02 01 7E (02 FF 01 00 00*253)*7 02 BF 01 7F >1996 02 02 02 7E)",        1570},
    {"ClosingMarkEndsTheBlockOfALongFile",        R"(02 02 01 7E (02 FF 01 00 00*253)*7 02 BF 01 7F >1996 02 02 02 7E FF*900)", 1570},
    {"ClosingMarkLeavesTheBlock",                 R"(02 02 01 7E (02 FF 01 00 00*253)*7 02 C0 01 7F >1997 02 02 02 7E FF*900)",    0},
    {"WalkEndsWithTheBlock",                      R"(02 02 01 7E (02 FF 01 00 00*253)*7 02 C3 01 00 >2000 02 02 01 7F 02 02 02 7E)", 0},
    {"WalkLeavesTheBlock",                        R"(02 02 01 7E (02 FF 01 00 00*253)*7 02 C4 01 00 >2001 03*900)",               1570},
    {"WalkOfManyRecordsLeavesTheBlock",           R"(02 02 01 7E (02 FF 01 00 00*253)*9)",                                      1570},
    // clang-format on
};

class ProbeMarkedRecords : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeMarkedRecords, Answers) {
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeMarkedRecords, FIBytes(GetParam().bytes)), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(MarkedRecords, ProbeMarkedRecords, testing::ValuesIn(markedRecordCases), FICaseName);

// ---- Whole requests ------------------------------------------------------------------------------------------------

const DecidedCase fileCases[] = {
    // clang-format off
    {"MarkedRecords",             R"(02 02 00 00 02 02 01 7E 02 02 01 7F 02 02 02 7E)",                                               1570, 244_row},
    // clang-format on
};

class MarkedRecordsRequest : public testing::TestWithParam<DecidedCase> {};

TEST_P(MarkedRecordsRequest, Answers) { FIExpectDecision(GetParam(), FIFlagExtendedText); }

INSTANTIATE_TEST_SUITE_P(Files, MarkedRecordsRequest, testing::ValuesIn(fileCases), FICaseName);

TEST(MarkedRecordsRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("no closing mark", FIBytes("02 02 01 7E 02 02 01 7F"), 244_row);
}

}  // namespace
