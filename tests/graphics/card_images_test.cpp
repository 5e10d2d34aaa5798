// Card images: a card, and IGES.
#include "graphics/card_images.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "reader/reader.h"
#include "support/decided_case.h"
#include "support/probe_case.h"
#include "support/process_heap.h"

namespace {

// ---- One card ------------------------------------------------------------------------------------------------------

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

// ---- The routine ---------------------------------------------------------------------------------------------------

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

// ---- Whole requests ------------------------------------------------------------------------------------------------

const DecidedCase fileCases[] = {
    // clang-format off
    {"IgesWithTwoSections",       R"(" text"*14 "  S      1" 0A "1H,,1H;," " "*64 "G      1" 0A)",                                    1569, 241_row},
    {"IgesFromTheGlobalSection",  R"("1H,,1H;," " "*64 "G      1" 0D 0A)",                                                            1569, 241_row},
    // clang-format on
};

class IgesRequest : public testing::TestWithParam<DecidedCase> {};

TEST_P(IgesRequest, Answers) { FIExpectDecision(GetParam(), FIFlagExtendedText); }

INSTANTIATE_TEST_SUITE_P(Files, IgesRequest, testing::ValuesIn(fileCases), FICaseName);

TEST(IgesRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("only S cards", Card('S', "0000001") + "\n" + Card('S', "0000002") + "\n", 241_row);
    FIExpectRowLetsPass("G2", Card('G', "0000002") + "\n", 241_row);
}

}  // namespace
