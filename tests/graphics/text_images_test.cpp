// Text images and card images: IGES, the marked records, XBM, XPM and the Netpbm formats.
#include "graphics/text_images.h"

#include <cstdint>
#include <cstring>
#include <string>

#include "file_case.h"
#include "reader/reader.h"
#include "support/probe_case.h"
#include "support/process_heap.h"

namespace {

// ---- IGES: one card
// ----------------------------------------------------------------------------------------------------

constexpr std::size_t cardSize = 80;

// The first 73 bytes of a card: 72 of free text and the section letter.
std::string CardStart(char section) { return std::string(72, '.') + section; }

// A card without a line end.
std::string Card(char section, const char* number) { return CardStart(section) + number; }

struct LineEndCase {
    const char* name;
    const char* behind;      // what stands behind the card's 80 bytes, in the notation of FIBytes
    std::uint64_t nextCard;  // where the next card is read from
};

const LineEndCase lineEndCases[] = {
    // clang-format off
    {"CrLf",                   R"(0D 0A "next card")",  82},
    {"LfCr",                   R"(0A 0D "next card")",  82},
    {"Lf",                     R"(0A "next card")",     81},
    {"Cr",                     R"(0D "next card")",     81},
    {"LfLfIsOneLf",            R"(0A 0A "next card")",  81},
    {"CrCrIsOneCr",            R"(0D 0D "next card")",  81},
    {"CrNulIsOneCr",           R"(0D 00 "next card")",  81},
    {"None",                   R"("next card")",        80},
    {"BlankAndLfIsNone",       R"(" " 0A "next card")", 80},
    {"BlankAndCrIsNone",       R"(" " 0D "next card")", 80},
    {"NulNulIsNone",           R"(00 00 "next card")",  80},
    // clang-format on
};

struct CardAnswer {
    bool read;
    std::int32_t sequence;
    std::string record;
};

// Reads a card over a handle, in a record of 80 bytes that holds '#' before.
CardAnswer ReadCard(TestHandle& handle) {
    FIReader reader;
    FIReaderStart(reader, FIFileOf(handle));
    std::uint8_t record[cardSize];
    std::memset(record, '#', cardSize);
    CardAnswer answer = {false, -7, ""};
    answer.read = FIReadCardRecord(reader, record, answer.sequence);
    answer.record.assign(reinterpret_cast<const char*>(record), cardSize);
    return answer;
}

TEST(ReadCardRecord, TakesALineEndOfNoneOneOrTwoBytes) {
    for (const LineEndCase& lineEnd : lineEndCases) {
        const auto handle = FIMakeTestHandle(Card('S', "0000001") + FIBytes(lineEnd.behind));
        const CardAnswer answer = ReadCard(*handle);
        EXPECT_TRUE(answer.read) << lineEnd.name;
        EXPECT_EQ(answer.sequence, 1) << lineEnd.name;
        EXPECT_EQ(answer.record, Card('S', "0000001")) << lineEnd.name;
        EXPECT_EQ(handle->position, lineEnd.nextCard) << lineEnd.name;
    }
}

struct SequenceCase {
    const char* name;
    std::string number;  // positions 73 to 79
    std::int32_t sequence;
};

const SequenceCase sequenceCases[] = {
    // clang-format off
    {"Digits",                    "1234567",                     1234567},
    {"Zeros",                     "0000000",                           0},
    {"BlanksInFrontCountAs0",     "      1",                           1},
    {"BlanksBehindCountAs0",      "1      ",                     1000000},
    {"BlanksBetweenCountAs0",     "1     1",                     1000001},
    {"BlanksOnly",                "       ",                           0},
    {"NulAtOnce",                 std::string("\0" "123456", 7),       0},
    {"NulEndsTheNumber",          std::string("12\0" "4567", 7),      12},
    {"NulBehindSixDigits",        std::string("123456\0", 7),     123456},
    {"LettersAreNotRefused",      "000000A",                          17},
    {"LetterInFront",             "A000000",                    17000000},
    {"MinusSignIsMinus3",         "-000000",                    -3000000},
    {"LfIsMinus38",               "000001\n",                        -28},
    {"TabIsMinus39",              "00000\t1",                       -389},
    // clang-format on
};

TEST(ReadCardRecord, ReadsTheNumberOfPositions73To79) {
    for (const SequenceCase& sequenceCase : sequenceCases) {
        ASSERT_EQ(sequenceCase.number.size(), 7U) << sequenceCase.name;
        const auto handle = FIMakeTestHandle(CardStart('S') + sequenceCase.number + "\r\n");
        const CardAnswer answer = ReadCard(*handle);
        EXPECT_TRUE(answer.read) << sequenceCase.name;
        EXPECT_EQ(answer.sequence, sequenceCase.sequence) << sequenceCase.name;
    }
}

TEST(ReadCardRecord, NoRecordIsAFailure) {
    const auto handle = FIMakeTestHandle(Card('S', "0000001"));
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    std::int32_t sequence = -7;
    EXPECT_FALSE(FIReadCardRecord(reader, nullptr, sequence));
    EXPECT_EQ(handle->reads, 0U);
}

TEST(ReadCardRecord, FailingReadOfTheCardOrOfItsLineEndIsAFailure) {
    for (std::uint32_t failing = 0; failing < 2; ++failing) {
        const auto handle = FIMakeTestHandle(Card('S', "0000001") + "\r\n");
        handle->failReadsFrom = failing;
        const CardAnswer answer = ReadCard(*handle);
        EXPECT_FALSE(answer.read) << failing;
        EXPECT_EQ(answer.sequence, -7) << failing;
        EXPECT_EQ(handle->reads, failing + 1);
    }
}

TEST(ReadCardRecord, ShortCardLeavesTheOldBytesBehindIt) {
    const auto handle = FIMakeTestHandle("short");
    const CardAnswer answer = ReadCard(*handle);
    EXPECT_TRUE(answer.read);
    EXPECT_EQ(answer.record, "short" + std::string(75, '#'));
    // '#' is 35, so each one adds -13.
    EXPECT_EQ(answer.sequence, -13 * 1111111);
    EXPECT_EQ(handle->position, 3U) << "two bytes are given back that were never there";
}

TEST(ReadCardRecord, CardAtTheEndGivesTwoBytesBackThatWereNeverThere) {
    const auto handle = FIMakeTestHandle(Card('S', "0000001"));
    EXPECT_TRUE(ReadCard(*handle).read);
    EXPECT_EQ(handle->position, 78U);
}

TEST(ReadCardRecord, FailingSeekBackIsNoFailure) {
    const auto handle = FIMakeTestHandle(Card('S', "0000001") + "next card");
    handle->failSeeksFrom = 0;
    EXPECT_TRUE(ReadCard(*handle).read);
    EXPECT_EQ(handle->position, 82U);
}

// ---- IGES: the routine
// -------------------------------------------------------------------------------------------------

const ProbeCase igesCases[] = {
    // clang-format off
    {"EmptyFile",                            R"()",                                                                                            0},
    {"G1AtOnce",                             R"("."*72 "G0000001" 0D 0A)",                                                                  1569},
    {"G1WithBlanks",                         R"("."*72 "G      1" 0D 0A)",                                                                  1569},
    {"G1WithoutLineEnd",                     R"("."*72 "G0000001")",                                                                        1569},
    {"G2AtOnce",                             R"("."*72 "G0000002" 0D 0A)",                                                                     0},
    {"G0AtOnce",                             R"("."*72 "G0000000" 0D 0A)",                                                                     0},
    {"G1WithTheDigitInFront",                R"("."*72 "G1      " 0D 0A)",                                                                     0},
    {"D1AtOnce",                             R"("."*72 "D0000001" 0D 0A)",                                                                     0},
    {"SmallLetterG",                         R"("."*72 "g0000001" 0D 0A)",                                                                     0},
    {"SmallLetterS",                         R"("."*72 "s0000001" 0D 0A "."*72 "G0000001" 0D 0A)",                                             0},
    {"LetterAtColumn72",                     R"("."*71 "G00000001" 0D 0A)",                                                                    0},
    {"S1G1",                                 R"("."*72 "S0000001" 0D 0A "."*72 "G0000001" 0D 0A)",                                          1569},
    {"S1G1WithLf",                           R"("."*72 "S0000001" 0A "."*72 "G0000001" 0A)",                                                1569},
    {"S1G1WithCr",                           R"("."*72 "S0000001" 0D "."*72 "G0000001" 0D)",                                                1569},
    {"S1G1WithLfCr",                         R"("."*72 "S0000001" 0A 0D "."*72 "G0000001" 0A 0D)",                                          1569},
    {"S1G1WithoutLineEnds",                  R"("."*72 "S0000001" "."*72 "G0000001")",                                                      1569},
    {"S1G1WithMixedLineEnds",                R"("."*72 "S0000001" 0A "."*72 "S0000002" "."*72 "S0000003" 0D 0A "."*72 "G0000001")",          1569},
    {"S1ToS12G1",                            R"("."*72 "S      1" 0A "."*72 "S      2" 0A "."*72 "S      3" 0A "."*72 "S      4" 0A
                                                "."*72 "S      5" 0A "."*72 "S      6" 0A "."*72 "S      7" 0A "."*72 "S      8" 0A
                                                "."*72 "S      9" 0A "."*72 "S     10" 0A "."*72 "S     11" 0A "."*72 "S     12" 0A
                                                "."*72 "G      1" 0A)",                                                                     1569},
    {"S1G2",                                 R"("."*72 "S0000001" 0D 0A "."*72 "G0000002" 0D 0A)",                                             0},
    {"S1D1",                                 R"("."*72 "S0000001" 0D 0A "."*72 "D0000001" 0D 0A)",                                             0},
    {"S1S3G1BreaksTheChain",                 R"("."*72 "S0000001" 0D 0A "."*72 "S0000003" 0D 0A "."*72 "G0000001" 0D 0A)",                     0},
    {"S1S1G1BreaksTheChain",                 R"("."*72 "S0000001" 0D 0A "."*72 "S0000001" 0D 0A "."*72 "G0000001" 0D 0A)",                     0},
    {"S2AtOnceBreaksTheChain",               R"("."*72 "S0000002" 0D 0A "."*72 "G0000001" 0D 0A)",                                             0},
    {"S0AtOnceBreaksTheChain",               R"("."*72 "S0000000" 0D 0A "."*72 "G0000001" 0D 0A)",                                             0},
    {"OnlyS1",                               R"("."*72 "S0000001" 0D 0A)",                                                                     0},
    {"OnlySCards",                           R"("."*72 "S0000001" 0D 0A "."*72 "S0000002" 0D 0A "."*72 "S0000003" 0D 0A)",                     0},
    {"OnlySCardsWithoutLineEnds",            R"("."*72 "S0000001" "."*72 "S0000002" "."*72 "S0000003")",                                       0},
    {"EmptyLineShiftsTheCards",              R"("."*72 "S0000001" 0D 0A 0D 0A "."*72 "G0000001" 0D 0A)",                                       0},
    {"79BytesLeaveANulBehindTheNumber",      R"("."*72 "G     1")",                                                                         1569},
    {"79BytesWithoutA1",                     R"("."*72 "G000000")",                                                                            0},
    {"74BytesEndInTheNumber",                R"("."*72 "G1")",                                                                              1569},
    {"73BytesHaveNoNumber",                  R"("."*72 "G")",                                                                                  0},
    {"72BytesHaveNoLetter",                  R"("."*72)",                                                                                      0},
    {"CutGCardKeepsTheOldNumber",            R"("."*72 "S0000001" 0D 0A "."*72 "G")",                                                       1569},
    {"CutSCardKeepsTheOldLetter",            R"("."*72 "S0000001" 0D 0A "."*72)",                                                              0},
    {"BlankIsTakenAsTheDigit0",              R"("."*72 "S 0 0 01" 0D 0A "."*72 "G0 0 0 1" 0D 0A)",                                          1569},
    // clang-format on
};

class ProbeIges : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeIges, Answers) {
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeIges, FIBytes(GetParam().bytes)), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(Iges, ProbeIges, testing::ValuesIn(igesCases), FICaseName);

FIID IgesAnswerWhenReadsFailFrom(const std::string& bytes, std::uint32_t failing) {
    const auto handle = FIMakeTestHandle(bytes);
    handle->failReadsFrom = failing;
    return FIAnswerOver(FIProbeIges, *handle);
}

// Each card takes two reads: its 80 bytes and its line end.
TEST(Iges, FailingReadBehindAnSCardIsAnIgesFile) {
    const std::string cards = Card('S', "0000001") + "\n" + Card('S', "0000002") + "\n";
    EXPECT_EQ(IgesAnswerWhenReadsFailFrom(cards, 0), 0U);
    EXPECT_EQ(IgesAnswerWhenReadsFailFrom(cards, 1), 0U);
    EXPECT_EQ(IgesAnswerWhenReadsFailFrom(cards, 2), 1569U) << "the second card";
    EXPECT_EQ(IgesAnswerWhenReadsFailFrom(cards, 3), 1569U) << "its line end";
    EXPECT_EQ(IgesAnswerWhenReadsFailFrom(cards, 4), 1569U) << "behind the last card";
    EXPECT_EQ(IgesAnswerWhenReadsFailFrom(cards, testNever), 0U) << "a count of 0 is no failure";
}

TEST(Iges, FailingReadDoesNotHelpABrokenChain) {
    EXPECT_EQ(IgesAnswerWhenReadsFailFrom(Card('S', "0000002") + "\n", 2), 0U);
    EXPECT_EQ(IgesAnswerWhenReadsFailFrom(Card('D', "0000001") + "\n", 2), 0U);
    EXPECT_EQ(IgesAnswerWhenReadsFailFrom(Card('G', "0000001") + "\n", 2), 1569U) << "nothing more is read";
}

TEST(Iges, FailingRewindIsNoIgesFile) {
    const auto handle = FIMakeTestHandle(Card('G', "0000001") + "\r\n");
    handle->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeIges, *handle), 0U);
    EXPECT_EQ(handle->reads, 0U);
}

TEST(Iges, FailingSeeksBackAreIgnored) {
    const auto twoByteEnds = FIMakeTestHandle(Card('S', "0000001") + "\r\n" + Card('G', "0000001") + "\r\n");
    twoByteEnds->failSeeksFrom = 1;
    EXPECT_EQ(FIAnswerOver(FIProbeIges, *twoByteEnds), 1569U) << "nothing is given back";
    const auto noEnds = FIMakeTestHandle(Card('S', "0000001") + Card('G', "0000001"));
    noEnds->failSeeksFrom = 1;
    EXPECT_EQ(FIAnswerOver(FIProbeIges, *noEnds), 0U) << "the second card is read two bytes too late";
}

TEST(Iges, NoMemoryIsNoIgesFile) {
    const auto handle = FIMakeTestHandle(Card('G', "0000001") + "\r\n");
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    const std::size_t blocks = FIHeapBlocks();
    FIFailAllocationsFrom(0);
    const FIID answer = FIProbeIges(reader);
    FIHeapNeverFails();
    EXPECT_EQ(answer, 0U);
    EXPECT_EQ(FIHeapBlocks(), blocks);
}

TEST(Iges, ReadsFromTheStartWhereverTheReaderStands) {
    const auto handle = FIMakeTestHandle(Card('G', "0000001") + "\r\n");
    EXPECT_EQ(FIAnswerOver(FIProbeIges, *handle, 40), 1569U);
}

// ---- Marked records
// ----------------------------------------------------------------------------------------------------

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

// ---- XBM
// ---------------------------------------------------------------------------------------------------------------

// The tokens are numbered from 0; the routine looks at 14 of them.
const ProbeCase xbmCases[] = {
    // clang-format off
    {"EmptyFile",                          R"()",                                                                                                          0},
    {"TwoDefines",                         R"("#define x_width 8" 0A "#define x_height 8" 0A "static char x_bits[] = {" 0A "0x00, 0x01, 0x02 };" 0A)",  1571},
    {"TwoDefinesWithCrLf",                 R"("#define x_width 8" 0D 0A "#define x_height 8" 0D 0A "static char x_bits[] = {" 0D 0A "0, 1, 2 };" 0D 0A)", 1571},
    {"TwoDefinesWithTabsAndBlanks",        R"("#define" 09 "w" 09 20 "8" 0A 0A "#define h  8 " 0A "static" 09*5 "char b[] = { 0, 1, 2 ")",                  1571},
    {"FourteenTokensAndABlank",            R"("#define x_width 8 #define x_height 8 static char x_bits[] = { a b c ")",                                 1571},
    {"FourteenTokensAndNoByteBehind",      R"("#define x_width 8 #define x_height 8 static char x_bits[] = { a b c")",                                     0},
    {"ThirteenTokens",                     R"("#define x_width 8 #define x_height 8 static char x_bits[] = { a b ")",                                      0},
    {"ThirteenTokensAndNoByteBehind",      R"("#define x_width 8 #define x_height 8 static char x_bits[] = { a b")",                                       0},
    {"FourDefines",                        R"("#define w 8 #define h 8 #define x 0 #define y 0 static char ")",                                         1571},
    {"FourDefinesAndNoByteBehind",         R"("#define w 8 #define h 8 #define x 0 #define y 0 static char")",                                             0},
    {"FourDefinesOfThirteenTokens",        R"("#define w 8 #define h 8 #define x 0 #define y 0 static ")",                                                 0},
    {"ThreeDefines",                       R"("#define w 8 #define h 8 #define x 0 static char b[] = { 0 1 ")",                                            0},
    {"FiveDefines",                        R"("#define w 8 #define h 8 #define x 0 #define y 0 #define z 0 static char ")",                                0},
    {"OneDefine",                          R"("#define w 8 static char b[] = { 0 1 2 3 4 5 6 7 ")",                                                        0},
    {"Token0MayBeLonger",                  R"("#defined w 8 #define h 8 static char b[] = { 0 1 2 3 4 5 ")",                                            1571},
    {"Token0OfSixCharacters",              R"("#defin w 8 #defin h 8 static char b[] = { 0 1 2 3 4 5 6 ")",                                             1571},
    {"Token0OfFiveCharacters",             R"("#defi w 8 #define h 8 static char b[] = { 0 1 2 3 4 5 6 ")",                                                0},
    {"Token0InCapitals",                   R"("#DEFINE w 8 #define h 8 static char b[] = { 0 1 2 3 4 5 6 ")",                                              0},
    {"Token0WithABlankBehindTheSign",      R"("# define w 8 #define h 8 static char b[] = { 0 1 2 3 4 5 6 ")",                                             0},
    {"Token3IsAnotherWord",                R"("#define w 8 #undef h 8 static char b[] = { 0 1 2 3 4 5 6 ")",                                               0},
    {"Token3MayBeLonger",                  R"("#define w 8 #definitely h 8 static char b[] = { 0 1 2 3 4 ")",                                           1571},
    {"Token6MayBeLonger",                  R"("#define w 8 #define h 8 statically char b[] = { 0 1 2 3 4 ")",                                           1571},
    {"Token6IsAnotherWord",                R"("#define w 8 #define h 8 unsigned char b[] = { 0 1 2 3 4 5 6 ")",                                            0},
    {"Token6InCapitals",                   R"("#define w 8 #define h 8 STATIC char b[] = { 0 1 2 3 4 5 6 ")",                                              0},
    {"Token9IsAnotherWord",                R"("#define w 8 #define h 8 #define x 0 #undef y 0 static char ")",                                             0},
    {"Token12IsAnotherWord",               R"("#define w 8 #define h 8 #define x 0 #define y 0 extern char ")",                                            0},
    {"Token12MayBeLonger",                 R"("#define w 8 #define h 8 #define x 0 #define y 0 statics char ")",                                        1571},
    {"OtherTokensAreNotLookedAt",          R"("#define 1 2 #define 3 4 static static #define # ; 5 6 7 ")",                                             1571},
    {"BlankInFrontIsAnEmptyToken",         R"(" #define x_width 8 #define x_height 8 static char x_bits[] = { a b c ")",                                   0},
    {"LineFeedInFrontIsAnEmptyToken",      R"(0A "#define x_width 8 #define x_height 8 static char x_bits[] = { a b c ")",                                 0},
    {"FormFeedIsNoWhiteSpace",             R"("#define x_width 8" 0C "#define x_height 8 static char x_bits[] = { a b c d ")",                             0},
    {"NulIsNoWhiteSpace",                  R"("#define x_width 8" 00 "#define x_height 8 static char x_bits[] = { a b c d ")",                             0},

    {"41Bytes",                            R"("#defin a 1 #defin b 1 static c d e f g h ")",                                                               0},
    {"42BytesEndBehindTheLastToken",       R"("#defin a 1 #defin b 1 static c d e f g h i")",                                                              0},
    {"43Bytes",                            R"("#defin a 1 #defin b 1 static c d e f g h i ")",                                                          1571},

    {"CommentInFront",                     R"("/* made by hand */" 0A "#define w 8 #define h 8 static char b[] = { 0 1 2 3 ")",                         1571},
    {"CommentOfTwoSlashes",                R"("// made by hand" 0A "#define w 8 #define h 8 static char b[] = { 0 1 2 3 ")",                            1571},
    {"CommentWithAnotherSlash",            R"("/* made / by hand */" 0A "#define w 8 #define h 8 static char b[] = { 0 1 2 3 ")",                       1571},
    {"CommentWithASignInFrontOfTheSlash",  R"("/* number # 1 */" 0A "#define w 8 #define h 8 static char b[] = { 0 1 2 3 ")",                           1571},
    {"CommentWithASignBehindASlash",       R"("/* a/b #1 */" 0A "#define w 8 #define h 8 static char b[] = { 0 1 2 3 ")",                                  0},
    {"CommentThatEndsInTheFirstDefine",    R"("/* no end #define w 8 / #define w 8 #define h 8 static char b[] = { 0 1 2 3 ")",                         1571},
    {"TextBetweenCommentAndSign",          R"("/* a */ int i; #define w 8 #define h 8 static char b[] = { 0 1 2 3 ")",                                  1571},
    {"CommentWithoutEnd",                  R"("/* #define w 8 #define h 8 static char b[] = { 0 1 2 3 ")",                                                 0},
    {"CommentWithoutSignBehind",           R"("/* define w 8 */ define h 8 static char b[] = { 0 1 2 3 ")",                                                0},
    {"BlankInFrontOfTheComment",           R"(" /* made by hand */ #define w 8 #define h 8 static char b[] = { 0 1 2 3 ")",                                0},
    {"TwoComments",                        R"("/* a */ /* b */ #define w 8 #define h 8 static char b[] = { 0 1 2 3 ")",                                 1571},

    {"NameOf48Bytes",                      R"("#define " "n"*48 " 8 #define h 8 static char b[] = { 0 1 2 ")",                                          1571},
    {"NameOf49BytesIsTwoTokens",           R"("#define " "n"*49 " 8 #define h 8 static char b[] = { 0 1 2 3 4 ")",                                         0},
    {"NameOf49BytesAndNoNumber",           R"("#define " "n"*49 " #define h 8 static char b[] = { 0 1 2 3 ")",                                          1571},
    {"NameOf96BytesAndNoNumber",           R"("#define " "n"*96 " #define h 8 static char b[] = { 0 1 2 3 ")",                                          1571},
    {"NameOf97BytesAndNoNumber",           R"("#define " "n"*97 " #define h 8 static char b[] = { 0 1 2 3 ")",                                             0},
    {"LastTokenOf48BytesAtTheEnd",         R"("#define w 8 #define h 8 static char b[] = { 0 1 " "n"*48)",                                                 0},
    {"LastTokenOf48BytesAndOneBehind",     R"("#define w 8 #define h 8 static char b[] = { 0 1 " "n"*49)",                                              1571},
    {"LastTokenOf47BytesAtTheEnd",         R"("#define w 8 #define h 8 static char b[] = { 0 1 " "n"*47)",                                                 0},

    // 4,096 bytes are looked at. The text in front of the many blanks has 48 bytes.
    {"LastTokenEndsInFrontOfTheLastByte",  R"("#define w 8 #define h 8 static char b[] = { 0 1 " " "*4046 "2" 0A "3")",                                 1571},
    {"LastTokenEndsTheBlock",              R"("#define w 8 #define h 8 static char b[] = { 0 1 " " "*4047 "2" 0A "3")",                                    0},
    {"LastTokenLeavesTheBlock",            R"("#define w 8 #define h 8 static char b[] = { 0 1 " " "*4048 "2" 0A "3")",                                    0},
    // clang-format on
};

class ProbeXbm : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeXbm, Answers) {
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeXbm, FIBytes(GetParam().bytes)), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(Xbm, ProbeXbm, testing::ValuesIn(xbmCases), FICaseName);

// ---- XPM
// ---------------------------------------------------------------------------------------------------------------

const ProbeCase xpmCases[] = {
    // clang-format off
    {"EmptyFile",                     R"()",                                                    0},
    {"Comment",                       R"("/* XPM */" 0A "static char *x[] = {" 0A)",         1572},
    {"NoByteBehind",                  R"("/* XPM */")",                                      1572},
    {"OneByte",                       R"("/")",                                                 0},
    {"CutBehindTheSecondToken",       R"("/* XPM *")",                                          0},
    {"TwoTokens",                     R"("/* XPM")",                                            0},
    {"OneToken",                      R"("/*")",                                                0},
    {"NoBlanks",                      R"("/*XPM*/")",                                           0},
    {"NoFirstBlank",                  R"("/*XPM */ */")",                                       0},
    {"NoSecondBlank",                 R"("/* XPM*/ */")",                                    1572},
    {"MuchWhiteSpace",                R"("/*" 20 09 0D 0A 20 "XPM" 0A 0A 09 "*/")",          1572},
    {"FormFeedIsNoWhiteSpace",        R"("/*" 0C "XPM */")",                                    0},
    {"FirstTokenMayBeLonger",         R"("/*** XPM */")",                                    1572},
    {"SecondTokenMayBeLonger",        R"("/* XPM2 */")",                                     1572},
    {"ThirdTokenMayBeLonger",         R"("/* XPM */static")",                                1572},
    {"FirstTokenIsAnother",           R"("// XPM */")",                                         0},
    {"SecondTokenIsAnother",          R"("/* XPN */")",                                         0},
    {"SecondTokenInSmallLetters",     R"("/* xpm */")",                                         0},
    {"SecondTokenIsShort",            R"("/* XP */")",                                          0},
    {"ThirdTokenIsAnother",           R"("/* XPM **/")",                                        0},
    {"BlankInFrontIsAnEmptyToken",    R"(" /* XPM */")",                                        0},
    {"LineFeedInFrontIsAnEmptyToken", R"(0A "/* XPM */")",                                      0},
    {"FirstTokenOf48Bytes",           R"("/*" "-"*46 " XPM */")",                            1572},
    {"FirstTokenOf48BytesAndNoBlank", R"("/*" "-"*46 "XPM */")",                             1572},
    {"FirstTokenOf47BytesAndNoBlank", R"("/*" "-"*45 "XPM */")",                                0},
    {"SecondTokenOf48BytesAndNoBlank", R"("/* XPM" "-"*45 "*/")",                            1572},
    {"SecondTokenOf49BytesAndNoBlank", R"("/* XPM" "-"*46 "*/")",                               0},
    // 4,096 bytes are looked at. "/* XPM" and the blanks reach to the third token.
    {"ThirdTokenEndsTheBlock",        R"("/* XPM" " "*4088 "*/" 0A)",                        1572},
    {"ThirdTokenLeavesTheBlock",      R"("/* XPM" " "*4089 "*/" 0A)",                           0},
    {"ThirdTokenBehindTheBlock",      R"("/* XPM" " "*4090 "*/" 0A)",                           0},
    // clang-format on
};

class ProbeXpm : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeXpm, Answers) {
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeXpm, FIBytes(GetParam().bytes)), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(Xpm, ProbeXpm, testing::ValuesIn(xpmCases), FICaseName);

// ---- The block readers and their handles
// -------------------------------------------------------------------------------

struct BlockReader {
    const char* name;
    FIProbe probe;
    const char* bytes;
    FIID answer;
    std::uint64_t blockSize;
};

const BlockReader blockReaders[] = {
    // clang-format off
    {"marked records", FIProbeMarkedRecords, R"(02 02 02 7E)",                                                            1570, 2000},
    {"XBM",            FIProbeXbm,           R"("#define w 8 #define h 8 static char b[] = { 0 1 2 3 ")",                 1571, 4096},
    {"XPM",            FIProbeXpm,           R"("/* XPM */" 0A)",                                                         1572, 4096},
    // clang-format on
};

TEST(BlockReaders, ReadOneBlockFromTheStartWhereverTheReaderStands) {
    for (const BlockReader& reader : blockReaders) {
        const auto handle = FIMakeTestHandle(FIBytes(reader.bytes) + std::string(10000, ' '));
        EXPECT_EQ(FIAnswerOver(reader.probe, *handle, 3), reader.answer) << reader.name;
        EXPECT_EQ(handle->reads, 1U) << reader.name;
        EXPECT_EQ(handle->bytesDelivered, reader.blockSize) << reader.name;
    }
}

TEST(BlockReaders, FailingSeekIsNoAnswer) {
    for (const BlockReader& reader : blockReaders) {
        const auto handle = FIMakeTestHandle(FIBytes(reader.bytes));
        handle->failSeeksFrom = 0;
        EXPECT_EQ(FIAnswerOver(reader.probe, *handle), 0U) << reader.name;
        EXPECT_EQ(handle->reads, 0U) << reader.name;
    }
}

TEST(BlockReaders, FailingReadIsNoAnswer) {
    for (const BlockReader& reader : blockReaders) {
        const auto handle = FIMakeTestHandle(FIBytes(reader.bytes));
        handle->failReadsFrom = 0;
        EXPECT_EQ(FIAnswerOver(reader.probe, *handle), 0U) << reader.name;
    }
}

TEST(BlockReaders, ShortReadIsAllThatIsLookedAt) {
    for (const BlockReader& reader : blockReaders) {
        const std::string bytes = FIBytes(reader.bytes);
        const auto handle = FIMakeTestHandle(bytes + bytes);
        handle->bytesPerRead = static_cast<std::uint32_t>(bytes.size());
        EXPECT_EQ(FIAnswerOver(reader.probe, *handle), reader.answer) << reader.name;
        EXPECT_EQ(handle->reads, 1U) << reader.name;
        const auto oneByte = FIMakeTestHandle(bytes + bytes);
        oneByte->bytesPerRead = 1;
        EXPECT_EQ(FIAnswerOver(reader.probe, *oneByte), 0U) << reader.name;
    }
}

// ---- Netpbm
// ------------------------------------------------------------------------------------------------------------

const ProbeCase netpbmCases[] = {
    // clang-format off
    {"EmptyFile",                      R"()",                                      0},
    {"P1",                             R"("P1" 0A "1")",                        1588},
    {"P2",                             R"("P2" 0A "1")",                        1589},
    {"P3",                             R"("P3" 0A "1")",                        1590},
    {"P4",                             R"("P4" 0A "1")",                        1588},
    {"P5",                             R"("P5" 0A "1")",                        1589},
    {"P6",                             R"("P6" 0A "1")",                        1590},
    {"P0",                             R"("P0" 0A "1")",                           0},
    {"P7",                             R"("P7" 0A "1")",                           0},
    {"SmallLetterP",                   R"("p1" 0A "1")",                           0},
    {"LetterBehindP",                  R"("PA" 0A "1")",                           0},
    {"PAlone",                         R"("P")",                                   0},
    {"P5Alone",                        R"("P5")",                                  0},
    {"P5AndWhiteSpaceAlone",           R"("P5" 0A)",                               0},
    {"P5DirectlyFollowedByADigit",     R"("P51")",                                 0},
    {"P5DirectlyFollowedByAComment",   R"("P5#" 0A "1")",                          0},
    {"Blank",                          R"("P5" 20 "1")",                        1589},
    {"CarriageReturn",                 R"("P5" 0D "1")",                        1589},
    {"Tab",                            R"("P5" 09 "1")",                        1589},
    {"VerticalTab",                    R"("P5" 0B "1")",                           0},
    {"FormFeed",                       R"("P5" 0C "1")",                           0},
    {"Nul",                            R"("P5" 00 "1")",                           0},
    {"VerticalTabBehindABlank",        R"("P5" 20 0B "1")",                        0},
    {"MuchWhiteSpace",                 R"("P5" (20 09 0D 0A)*900 "1")",         1589},
    {"Digit0",                         R"("P5" 0A "0")",                        1589},
    {"Digit9",                         R"("P5" 0A "9")",                        1589},
    {"SlashIsBelow0",                  R"("P5" 0A "/")",                           0},
    {"ColonIsAbove9",                  R"("P5" 0A ":")",                           0},
    {"MinusSign",                      R"("P5" 0A "-1")",                          0},
    {"ByteFFIsNoDigit",                R"("P5" 0A FF)",                            0},
    {"Comment",                        R"("P6" 0A "# by hand" 0A "1 1 255")",   1590},
    {"EmptyComment",                   R"("P6" 0A "#" 0A "1")",                 1590},
    {"ThreeComments",                  R"("P6" 0A "#a" 0A "#" 0A "##" 0A "1")", 1590},
    {"CommentBehindABlank",            R"("P6 # by hand" 0A "1")",              1590},
    {"CommentEndsAtLfOnly",            R"("P6" 0A "# by" 0D "hand" 0A "1")",    1590},
    {"CommentEndedByCr",               R"("P6" 0A "# by hand" 0D "1 1")",          0},
    {"BlankBehindTheComment",          R"("P6" 0A "# by hand" 0A " 1")",           0},
    {"LfBehindTheComment",             R"("P6" 0A "# by hand" 0A 0A "1")",         0},
    {"CrBehindTheComment",             R"("P6" 0A "# by hand" 0A 0D "1")",         0},
    {"CommentAndNoMore",               R"("P6" 0A "# by hand" 0A)",                0},
    {"CommentWithoutEnd",              R"("P6" 0A "# by hand")",                   0},
    {"CommentOf249BytesWithItsLf",     R"("P6" 0A "#" "c"*248 0A "1")",         1590},
    {"CommentOf250BytesWithItsLf",     R"("P6" 0A "#" "c"*249 0A "1")",            0},
    {"CommentOf251BytesWithItsLf",     R"("P6" 0A "#" "c"*250 0A "1")",            0},
    {"EachCommentIsCountedAnew",       R"("P6" 0A ("#" "c"*248 0A)*20 "1")",    1590},
    {"SecondCommentIsTooLong",         R"("P6" 0A "#" 0A "#" "c"*249 0A "1")",     0},
    // clang-format on
};

class ProbeNetpbm : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeNetpbm, Answers) { EXPECT_EQ(FIAnswerOf(FIProbeNetpbm, FIBytes(GetParam().bytes)), GetParam().answer); }

INSTANTIATE_TEST_SUITE_P(Netpbm, ProbeNetpbm, testing::ValuesIn(netpbmCases), FICaseName);

TEST(Netpbm, RewindsTheReader) { EXPECT_EQ(FIAnswerOf(FIProbeNetpbm, FIBytes(R"("P4" 0A "1 1")"), 2), 1588U); }

TEST(Netpbm, FailingRewindIsNoAnswer) {
    const auto handle = FIMakeTestHandle(FIBytes(R"("P4" 0A "1 1")"));
    handle->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeNetpbm, *handle), 0U);
}

// ---- Whole requests
// ----------------------------------------------------------------------------------------------------

const FileCase fileCases[] = {
    // clang-format off
    {"IgesWithTwoSections",       R"(" text"*14 "  S      1" 0A "1H,,1H;," " "*64 "G      1" 0A)",                                    1569, 241},
    {"IgesFromTheGlobalSection",  R"("1H,,1H;," " "*64 "G      1" 0D 0A)",                                                            1569, 241},
    {"MarkedRecords",             R"(02 02 00 00 02 02 01 7E 02 02 01 7F 02 02 02 7E)",                                               1570, 244},
    {"Xbm",                       R"("#define x_width 8" 0A "#define x_height 8" 0A "static char x_bits[] = {" 0A "0x00, 0x01, 0x02" 0A)", 1571, 245},
    {"XbmWithHotSpot",            R"("#define w 8" 0A "#define h 8" 0A "#define x 1" 0A "#define y 1" 0A "static char b[] = {" 0A)",   1571, 245},
    {"XbmBehindAComment",         R"("/* by hand */" 0A "#define w 8" 0A "#define h 8" 0A "static char b[] = {" 0A "0, 1, 2, 3" 0A)",  1571, 245},
    {"Xpm",                       R"("/* XPM */" 0A "static char *x[] = {" 0A)",                                                      1572, 246},
    {"XbmThatLooksLikeXpm",       R"("/* XPM */" 0A "#define w 8" 0A "#define h 8" 0A "static char b[] = {" 0A "0, 1, 2, 3" 0A)",      1571, 245},
    {"Pbm",                       R"("P1" 0A "2 2" 0A "1 0" 0A "0 1" 0A)",                                                            1588, 359},
    {"PgmRaw",                    R"("P5" 0A "# by hand" 0A "2 2" 0A "255" 0A 01 02 03 04)",                                          1589, 359},
    {"PpmRaw",                    R"("P6 2 2 255" 0A "abcabcabcabc")",                                                                1590, 359},
    // clang-format on
};

class TextImageRequest : public testing::TestWithParam<FileCase> {};

TEST_P(TextImageRequest, Answers) { FIExpectFileCase(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Files, TextImageRequest, testing::ValuesIn(fileCases), FIFileCaseName);

TEST(TextImageRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("only S cards", Card('S', "0000001") + "\n" + Card('S', "0000002") + "\n", 241);
    FIExpectRowLetsPass("G2", Card('G', "0000002") + "\n", 241);
    FIExpectRowLetsPass("no closing mark", FIBytes("02 02 01 7E 02 02 01 7F"), 244);
    FIExpectRowLetsPass("thirteen tokens", "#define x_width 8 #define x_height 8 static char x_bits[] = { a b", 245);
    FIExpectRowLetsPass("no blanks", "/*XPM*/\n", 246);
    FIExpectRowLetsPass("P7", "P7\n1 1\n", 359);
    FIExpectRowLetsPass("blank behind the comment", "P6\n# by hand\n 1 1\n", 359);
}

}  // namespace
