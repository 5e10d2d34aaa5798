// Code statistics: votes for three families of control codes, and words that end in a character with its top bit set.
#include "wordproc/code_statistics.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "support/case_name.h"
#include "support/ordinary_files.h"
#include "support/probe_case.h"
#include "support/whole_file.h"

namespace {

using ::PrintTo;

// ---- Votes for three families of control codes ---------------------------------------------------------------------

FIID CommandAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeCommandCounts, bytes); }

class ProbeCommandCounts : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeCommandCounts, Answers) { EXPECT_EQ(CommandAnswer(FIBytes(GetParam().bytes)), GetParam().answer); }

const ProbeCase plusCases[] = {
    // clang-format off
    {"EmptyFile",                       "",                                                   0},
    {"OnePlus",                         "2B",                                                 0},
    {"PlusAndOnePair",                  "2B 2B D1",                                           0},
    {"PlusAndTwoPairs",                 "2B 2B D1 2B D2",                                  1034},
    {"PlusIsHalfOfTheFirstPair",        "2B D1 2B D2",                                     1034},
    {"PlusAndOnePairFromIt",            "2B D1",                                              0},
    {"PlusAndTwoPairsOfD4",             "2B 2B D4 2B D4",                                  1034},
    {"PlusAndPairsOfD3",                "2B 2B D1 (2B D3)*40",                                0},
    {"PlusAndPairsOfD0",                "2B 2B D1 (2B D0)*40",                                0},
    {"PlusAndPairsOfD5",                "2B 2B D1 (2B D5)*40",                                0},
    {"PlusAndPairsOf51",                "2B 2B D1 (2B 51)*40",                                0},
    {"PlusBehindTheFirstByte",          "20 2B 2B D1 2B D2",                                  0},
    {"PairsApart",                      R"(2B 2B D1 "some text" 2B D2)",                   1034},
    {"PairWithAByteBetween",            "2B 2B D1 2B 20 D2",                                  0},
    {"OnePlusForTwoCodes",              "2B 2B D1 D2",                                        0},
    {"PairTurnedAround",                "2B 2B D1 20 D2 2B",                                  0},
    {"ThirtyOnePairs",                  "20 (2B D1)*31",                                      0},
    {"ThirtyTwoPairs",                  "20 (2B D1)*32",                                   1034},
    {"ThirtyTwoPairsOfAllKinds",        "20 (2B D1 2B D2 2B D4)*10 2B D1 2B D2",           1034},
    {"ThirtyTwoPairsBehindAZero",       "00 (2B D1)*32",                                   1034},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(PlusSigns, ProbeCommandCounts, testing::ValuesIn(plusCases), FICaseName);

const ProbeCase lineEndCases[] = {
    // clang-format off
    {"TwoLineEnds",                     "20 (0A 0B 52)*2",                                    0},
    {"ThreeLineEndsOfTheFirstKind",     "20 (0A 0B 52)*3",                                 1022},
    {"ThreeLineEndsOfTheSecondKind",    "20 (0E 0D 0A)*3",                                 1022},
    {"ThreeLineEndsOfTheThirdKind",     "20 (0D 0A 0F)*3",                                 1022},
    {"ThreeLineEndsOfAllKinds",         "20 0A 0B 52 20 0E 0D 0A 20 0D 0A 0F",             1022},
    {"TwoKindsInOne",                   "20 0E 0D 0A 0F 0E 0D 0A",                         1022},
    {"ThreeLineEndsFromTheFirstByte",   "(0A 0B 52)*3",                                    1022},
    {"ThreeLineEndsBehindAZero",        "00 (0A 0B 52)*3",                                 1022},
    {"LineEndsApart",                   R"("a" 0A 0B 52 "bc" 0A 0B 52 "de" 0A 0B 52)",     1022},
    {"FirstKindWithAByteBetween",       "20 (0A 0B 52)*2 0A 0B 20 52",                        0},
    {"FirstKindWithoutItsFirst",        "20 (0A 0B 52)*2 0D 0B 52",                           0},
    {"FirstKindWithoutItsSecond",       "20 (0A 0B 52)*2 0A 0C 52",                           0},
    {"FirstKindWithoutItsThird",        "20 (0A 0B 52)*2 0A 0B 53",                           0},
    {"SecondKindWithoutItsFirst",       "20 (0A 0B 52)*2 0F 0D 0A",                           0},
    {"SecondKindWithoutItsSecond",      "20 (0A 0B 52)*2 0E 0E 0A",                           0},
    {"SecondKindWithoutItsThird",       "20 (0A 0B 52)*2 0E 0D 0B",                           0},
    {"ThirdKindWithoutItsFirst",        "20 (0A 0B 52)*2 0E 0A 0F",                           0},
    {"ThirdKindWithoutItsSecond",       "20 (0A 0B 52)*2 0D 0B 0F",                           0},
    {"ThirdKindWithoutItsThird",        "20 (0A 0B 52)*2 0D 0A 0E",                           0},
    {"KindsAreNotMixed",                "20 (0A 0B 52)*2 0A 0B 0A 0D 0A 52 0E 0D 0F",         0},
    {"LastOneIsCutOff",                 "20 (0A 0B 52)*2 0A 0B",                              0},
    {"KeywordBetween",                  R"(20 (0A 0B 52)*2 0A 0B AE "LM" 52)",                0},
    {"NoKeywordBetween",                "20 (0A 0B 52)*2 AE 0A 0B 52",                     1022},
    {"KeywordInFront",                  R"(20 (0A 0B 52)*2 AE "LM" 0A 0B 52)",             1022},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(LineEnds, ProbeCommandCounts, testing::ValuesIn(lineEndCases), FICaseName);

const ProbeCase keywordCases[] = {
    // clang-format off
    {"OneKeyword",                      R"(20 AE "LM")",                                      0},
    {"TwoKeywords",                     R"(20 (AE "LM")*2)",                               1033},
    {"TwoKeywordsAtTheStart",           R"((AE "LM")*2)",                                  1033},
    {"TwoKeywordsBehindAZero",          R"(00 (AE "LM")*2)",                                  0},
    {"TwoKeywordsBehindAOne",           R"(01 (AE "LM")*2)",                               1033},
    {"KeywordsApart",                   R"("text" AE "LM" "text" AE "PG" "text")",         1033},
    {"NoKeywords",                      R"(20 (AE "XY")*9)",                                  0},
    {"KeywordBehindItsMarkTwice",       R"(20 AE "LM" AE AE "LM")",                        1033},
    {"OnlyOneBehindTheMarkTwice",       R"(20 AE AE "LM")",                                   0},
    {"LettersAreReadAgain",             R"(20 AE "LM" AE "X" AE "LM")",                    1033},
    {"SecondLetterIsReadAgain",         "20 (0A 0B 52)*2 AE 20 0A 0B 52",                  1022},
    {"FirstLetterIsReadAgain",          "2B D1 AE 2B D1",                                  1034},
    {"MarkCountsAsTheByteInFront",      "2B D1 2B AE D1 20",                                  0},
    {"ConsumedLettersAreNoPair",        R"(2B D1 2B AE "LM" D1)",                             0},
    {"KeywordInSmallLetters",           R"(20 (AE "lm")*9)",                                  0},
    {"KeywordTurnedAround",             R"(20 (AE "ML")*9)",                                  0},
    {"KeywordWithABlank",               R"(20 (AE " LM")*9)",                                 0},
    {"MarkAsTheLastByte",               R"(20 (AE "LM")*2 AE)",                            1033},
    {"MarkAsTheLastByteOfTooFew",       R"(20 AE "LM" AE)",                                   0},
    {"MarkAndOneLetterAtTheEnd",        R"(20 (AE "LM")*2 AE "L")",                        1033},
    {"MarkAloneInTheFile",              "AE",                                                 0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Keywords, ProbeCommandCounts, testing::ValuesIn(keywordCases), FICaseName);

constexpr std::string_view keywords =
    "AL BB BT CO CT DA EC EL FC FD FL FM FN FR FS IP JU LB LD LL LM LS MD NB NJ NS OF PA PG PL PN PS PT RF RH RM RT SF "
    "SN SP SS TM TP TR TS US NF DF UL ";

TEST(CommandCounts, CountTheFortyNineKeywordsAndNoOtherPairOfLetters) {
    static_assert(keywords.size() == 49 * 3);
    std::uint32_t found = 0;
    for (char first = 'A'; first <= 'Z'; ++first) {
        for (char second = 'A'; second <= 'Z'; ++second) {
            const std::string pair = {first, second};
            const bool isKeyword = keywords.find(pair + " ") != std::string_view::npos;
            found += isKeyword ? 1 : 0;
            EXPECT_EQ(CommandAnswer(" " + FIRepeat("\xAE" + pair, 2)), isKeyword ? 1033 : 0) << pair;
        }
    }
    EXPECT_EQ(found, 49U);
}

// Votes of each family, none of which helps another. The lead of 30 is the "+" at the start.
std::string Votes(std::size_t plusPairs, std::size_t lineEnds, std::size_t commands) {
    return " " + FIRepeat("+\xD1", plusPairs) + FIRepeat("\x0A\x0BR", lineEnds) + FIRepeat("\xAELM", commands);
}

std::string VotesWithLead(std::size_t plusPairs, std::size_t lineEnds, std::size_t commands) {
    return "+" + Votes(plusPairs, lineEnds, commands);
}

struct VoteCase {
    const char* name;
    std::size_t plusPairs;
    std::size_t lineEnds;
    std::size_t commands;
    FIID answer;
    FIID answerWithLead;
};

class CommandVotes : public testing::TestWithParam<VoteCase> {};

TEST_P(CommandVotes, Decide) {
    const VoteCase& votes = GetParam();
    EXPECT_EQ(CommandAnswer(Votes(votes.plusPairs, votes.lineEnds, votes.commands)), votes.answer);
    EXPECT_EQ(CommandAnswer(VotesWithLead(votes.plusPairs, votes.lineEnds, votes.commands)), votes.answerWithLead);
}

const VoteCase voteCases[] = {
    // clang-format off
    // name                  plus  line  commands  answer  with the lead of 30
    {"None",                    0,    0,    0,          0,    0},
    {"TwoAndTwo",               0,    2,    2,       1033,    0},
    {"TwoAndOne",               0,    2,    1,          0,    0},
    {"TwoLineEndsAlone",        0,    2,    0,          0,    0},
    {"ThreeLineEndsAlone",      0,    3,    0,       1022,    0},
    {"TwoCommandsAlone",        0,    0,    2,       1033,    0},
    {"OneCommandAlone",         0,    0,    1,          0,    0},
    {"ThreeAndThree",           0,    3,    3,       1022,    0},
    {"ThreeAndFour",            0,    3,    4,       1033,    0},
    {"FourAndThree",            0,    4,    3,       1022,    0},
    {"ThreeOfEach",             3,    3,    3,       1022, 1034},
    {"FourThreeThree",          4,    3,    3,          0, 1034},
    {"ThreeTwoThree",           3,    2,    3,       1033, 1034},
    {"ThreeTwoTwo",             3,    2,    2,          0, 1034},
    {"TwoTwoTwo",               2,    2,    2,       1033, 1034},
    {"OneTwentyNineLineEnds",   1,   29,    0,       1022,    0},
    {"NoneTwentyNineLineEnds",  0,   29,    0,       1022,    0},
    {"NoneThirtyLineEnds",      0,   30,    0,       1022, 1022},
    {"OneThirtyLineEnds",       1,   30,    0,       1022,    0},
    {"OneThirtyOneLineEnds",    1,   31,    0,       1022, 1022},
    {"TwoThirtyTwoLineEnds",    2,   32,    0,       1022, 1034},
    {"TwoThirtyThreeLineEnds",  2,   33,    0,       1022, 1022},
    {"NoneTwentyNineCommands",  0,    0,   29,       1033,    0},
    {"NoneThirtyCommands",      0,    0,   30,       1033, 1033},
    {"OneThirtyCommands",       1,    0,   30,       1033,    0},
    {"TwoThirtyTwoCommands",    2,    0,   32,       1033, 1034},
    {"TwoThirtyThreeCommands",  2,    0,   33,       1033, 1033},
    {"ThirtyOnePlus",          31,    0,    0,          0, 1034},
    {"ThirtyTwoOfEach",        32,   32,   32,       1034, 1034},
    {"ThirtyTwoThirtyThree",   32,   33,    0,       1022, 1034},
    {"ThirtyTwoAndCommands",   32,    0,   33,       1033, 1034},
    {"ThirtyOneOfEach",        31,   31,   31,       1022, 1034},
    {"SixtyTwoOfEach",         62,   62,   62,       1034, 1034},
    {"PlusBelowBoth",          32,   33,   33,       1022, 1034},
    {"PlusBelowCommandsMost",  32,   33,   34,       1033, 1034},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Ties, CommandVotes, testing::ValuesIn(voteCases), FICaseName);

// Zeros can't be votes of any kind; only the first one tells commands off.
TEST(CommandCounts, NeverAnswer1033BehindAZero) {
    EXPECT_EQ(CommandAnswer(std::string(1, '\0') + FIRepeat("\xAELM", 40)), 0);
    EXPECT_EQ(CommandAnswer(" " + std::string(9, '\0') + FIRepeat("\xAELM", 2)), 1033);
    EXPECT_EQ(CommandAnswer(std::string(1, '\0') + FIRepeat("\x0A\x0BR", 3) + FIRepeat("\xAELM", 4)), 0)
        << "the commands outvote the line ends but are not allowed";
}

constexpr std::size_t commandBudget = 4096;

TEST(CommandCounts, LookAt4096Bytes) {
    // The last byte of the last vote is the last one looked at, then the first one not looked at.
    const std::string twoLineEnds = "\x0A\x0BR\x0A\x0BR";
    const auto lineEndsEndingAt = [&](std::size_t size) {
        return twoLineEnds + std::string(size - twoLineEnds.size() - 3, ' ') + "\x0A\x0BR" + std::string(9, ' ');
    };
    EXPECT_EQ(CommandAnswer(lineEndsEndingAt(commandBudget)), 1022);
    EXPECT_EQ(CommandAnswer(lineEndsEndingAt(commandBudget + 1)), 0);
    const auto plusPairsEndingAt = [](std::size_t size) {
        return "+\xD1" + std::string(size - 4, ' ') + "+\xD4" + std::string(9, ' ');
    };
    EXPECT_EQ(CommandAnswer(plusPairsEndingAt(commandBudget)), 1034);
    EXPECT_EQ(CommandAnswer(plusPairsEndingAt(commandBudget + 1)), 0);
}

TEST(CommandCounts, ReadAKeywordWhoseMarkIsTheLastByteLookedAt) {
    // Quirk: the letters of the first keyword are no steps, so the last byte looked at stands two bytes further on.
    const auto marksAt = [](std::size_t offset) {
        return "\xAELM" + std::string(offset - 3, ' ') + "\xAELM" + std::string(9, ' ');
    };
    EXPECT_EQ(CommandAnswer(marksAt(commandBudget + 1)), 1033);
    EXPECT_EQ(CommandAnswer(marksAt(commandBudget + 2)), 0);
}

TEST(CommandCounts, TakeNothingOfTheBudgetForTheLettersOfAKeyword) {
    const std::string plus = "+\xD1" + FIRepeat("\xAELM", 20);  // 31 votes and 20, in 22 steps
    EXPECT_EQ(CommandAnswer(plus + std::string(commandBudget - 24, ' ') + "+\xD1"), 1034);
    EXPECT_EQ(CommandAnswer(plus + std::string(commandBudget - 23, ' ') + "+\xD1"), 0);
}

TEST(CommandCounts, SpendTheBudgetOnLettersThatAreNoKeyword) {
    const std::string plus = "+\xD1" + FIRepeat("\xAEXY", 20);  // 31 votes, in 62 steps
    EXPECT_EQ(CommandAnswer(plus + std::string(commandBudget - 64, ' ') + "+\xD1"), 1034);
    EXPECT_EQ(CommandAnswer(plus + std::string(commandBudget - 63, ' ') + "+\xD1"), 0);
}

// The mark of the first file stands on the last two bytes of the buffer, so that going back leaves the buffer.
std::string FileWithAMarkAcrossTheBuffer(std::size_t lineEndsInFront) {
    std::string file = FIRepeat("\x0A\x0BR", lineEndsInFront);
    file.resize(2046, ' ');
    file += "\xAEXY \x0A\x0BR";
    file.resize(4096, ' ');
    return file + "\x0A\x0BR ";  // where a handle stands that has delivered two buffers
}

TEST(CommandCounts, GoBackAcrossTheBuffer) {
    EXPECT_EQ(CommandAnswer(FileWithAMarkAcrossTheBuffer(2)), 1022);
    EXPECT_EQ(CommandAnswer(std::string(2046, ' ') + "\xAELM" + "\xAELM"), 1033);
    EXPECT_EQ(CommandAnswer(std::string(2044, ' ') + "\xAE\xAELM" + "\xAELM"), 1033);
}

TEST(CommandCounts, EndTheScanWhenGoingBackFails) {
    const auto answerOf = [](const std::string& file) {
        const auto handle = FIMakeTestHandle(file);
        handle->failSeeksFrom = 1;
        const FIID answer = FIAnswerOver(FIProbeCommandCounts, *handle);
        EXPECT_GT(handle->seeks, 1U);
        return answer;
    };
    EXPECT_EQ(answerOf(FileWithAMarkAcrossTheBuffer(2)), 0);
    EXPECT_EQ(answerOf(FileWithAMarkAcrossTheBuffer(3)), 1022) << "what was counted decides";
}

TEST(CommandCounts, FailingFirstSeek) {
    const auto handle = FIMakeTestHandle(" " + FIRepeat("\x0A\x0BR", 3));
    handle->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeCommandCounts, *handle), 0);
    EXPECT_EQ(handle->reads, 0U);
}

TEST(CommandCounts, StartAtOffset0WhereverTheReaderStands) {
    EXPECT_EQ(FIAnswerOf(FIProbeCommandCounts, " " + FIRepeat("\x0A\x0BR", 3), 8), 1022);
}

TEST(CommandCounts, ReadNoFurtherThanTheirBudget) {
    const auto handle = FIMakeTestHandle(std::string(100000, 'a'));
    handle->bytesPerRead = 1;
    EXPECT_EQ(FIAnswerOver(FIProbeCommandCounts, *handle), 0);
    EXPECT_LE(handle->bytesDelivered, commandBudget + 1);
}

TEST(CommandCounts, ClaimNoOrdinaryFile) {
    for (const std::string& file : FIOrdinaryFiles()) EXPECT_EQ(CommandAnswer(file), 0);
}

class CommandFile : public testing::TestWithParam<WholeFile> {};

TEST_P(CommandFile, IsIdentifiedByTheRoutinesRow) { FIExpectWholeFile(GetParam(), 365_row); }

const WholeFile commandFiles[] = {
    // clang-format off
    {"OnePlus",            "2B",                                                                     1999},
    {"PlusAndTwoPairs",    "2B 2B D1 2B D2",                                                         1034},
    {"PlusAndOnePair",     "2B 2B D1 2B D3",                                                         1999},
    {"TwoKeywords",        R"("A letter" AE "LM" "text" AE "PG" "more text")",                       1033},
    {"OneKeyword",         R"("A letter" AE "LM" "text" AE "XY" "more text")",                       1999},
    {"MarkTwice",          R"("A letter" AE AE "LM" "text" AE "XY" "more text")",                    1999},
    {"MarkAtTheEnd",       R"("A letter" AE "LM" "text" AE "PG" "more text" AE)",                    1033},
    {"ZeroFirst",          R"(00 "A letter" AE "LM" "text" AE "PG" "more text")",                    1999},
    {"ZeroFirstLineEnds",  R"(00 "A letter" (0A 0B "R")*3)",                                         1022},
    {"LineEnds",           R"("A letter" 0A 0B "Regards" 0E 0D 0A "text" 0D 0A 0F "more text")",     1022},
    {"TwoLineEnds",        R"("A letter" 0A 0B "Regards" 0E 0D 0A "text" 0D 0A "more text")",        1999},
    {"TwoAndTwo",          R"("A letter" (0A 0B "R")*2 (AE "LM")*2)",                                1033},
    {"ThreeAndThree",      R"("A letter" (0A 0B "R")*3 (AE "LM")*3)",                                1022},
    {"KeywordBetween",     R"("A letter" (0A 0B "R")*2 0A 0B AE "LM" "R")",                          1999},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(WholeTable, CommandFile, testing::ValuesIn(commandFiles), FICaseName);

// ---- Words whose last character has its top bit set ----------------------------------------------------------------

FIID WordAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeHighBitWords, bytes); }

class ProbeHighBitWords : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeHighBitWords, Answers) { EXPECT_EQ(WordAnswer(FIBytes(GetParam().bytes)), GetParam().answer); }

const ProbeCase lineCases[] = {
    // clang-format off
    {"EmptyFile",                    "",                                                                    0},
    {"OneByte",                      "E3",                                                                  0},
    {"TwoBytes",                     R"("ab")",                                                             0},
    {"FiveBytes",                    R"("ab" E3 0D 0A)",                                                    0},
    {"FourLines",                    R"(("ab" E3 20 "d" E4 0D 0A)*4)",                                   1003},
    {"ThreeLines",                   R"(("ab" E3 20 "d" E4 0D 0A)*3)",                                      0},
    {"ThreeLinesAndAnOpenOne",       R"(("ab" E3 20 "d" E4 0D 0A)*3 "ab" E3 20)",                        1003},
    {"ThreeLinesAndPlainText",       R"(("ab" E3 20 "d" E4 0D 0A)*3 "plain text" 0D 0A "more")",            0},
    {"FourLinesAndPlainText",        R"(("ab" E3 20 "d" E4 0D 0A)*4 "plain text" 0D 0A "more")",         1003},
    {"FourLinesAmongPlainText",      R"("plain text" 0D 0A ("ab" E3 20 0D 0A "plain text" 0D 0A)*4)",    1003},
    {"LinesEndedByTopBitBytes",      R"(("ab" E3 A0 "d" E4 8D 8A)*4)",                                   1003},
    {"LinesEndedByHalfTopBitBytes",  R"(("ab" E3 20 "d" E4 8D 0A "ab" E3 20 "d" E4 0D 8A)*2)",           1003},
    {"LinesEndedByCRAlone",          R"(("ab" E3 20 0D)*4)",                                                0},
    {"LinesEndedByLFAlone",          R"(("ab" E3 20 0A)*4)",                                                0},
    {"LinesEndedByLFCR",             R"(("ab" E3 20 0A 0D)*4)",                                             0},
    {"EmptyLinesBetween",            R"(("ab" E3 20 0D 0A 0D 0A)*4)",                                    1003},
    {"EmptyLinesDoNotCount",         R"(("ab" E3 20 0D 0A)*3 (0D 0A)*9)",                                   0},
    {"ByteAt1IsNoMark",              R"("a" E3 20 0D 0A ("ab" E3 20 0D 0A)*3)",                             0},
    {"ByteAt2IsAMark",               R"("ab" E3 20 0D 0A ("ab" E3 20 0D 0A)*3)",                         1003},
    {"OpenLineWithABadMark",         R"(("ab" E3 20 0D 0A)*3 "ab" E3 20 "a" E3 01 01)",                     0},
    {"OpenLineWithAGap",             R"(("ab" E3 20 0D 0A)*3 "ab" E3 20 "a b")",                            0},
    {"OpenLineWithoutAMark",         R"(("ab" E3 20 0D 0A)*3 "abc")",                                       0},
    {"OpenLineOfBadMarksAlone",      R"(("ab" E3 20 0D 0A)*4 (E3 01 01)*9)",                             1003},
    {"OpenLineEndsInAMark",          R"(("ab" E3 20 0D 0A)*3 "ab" E3 20 "ab" E3)",                          0},
    {"OpenLineEndsInAMarkAndCR",     R"(("ab" E3 20 0D 0A)*3 "ab" E3 20 "ab" E3 0D)",                       0},
    {"OpenLineEndsInAMarkAndLineEnd",R"(("ab" E3 20 0D 0A)*3 "ab" E3 20 "ab" E3 0D 0A)",                 1003},
    {"OpenLineEndsInABlank",         R"(("ab" E3 20 0D 0A)*3 "ab" E3 20 "ab" E3 20)",                    1003},
    {"BadLineAfterManyCleanOnes",    R"(("ab" E3 20 0D 0A)*20 (01 E3 01 01)*2 01 01 E3 20 0D 0A)",          0},
    {"BadLineFirst",                 R"(01 01 (E3 01 01)*2 01 01 E3 20 0D 0A ("ab" E3 20 0D 0A)*20)",       0},
    {"EvenLineDoesNotEndTheSearch",  R"(01 01 E3 01 01 E3 20 0D 0A ("ab" E3 20 0D 0A)*4)",               1003},
    {"EvenLineDoesNotCount",         R"(01 01 E3 01 01 E3 20 0D 0A ("ab" E3 20 0D 0A)*3)",                  0},
    {"BadMarksAreOfTheirLineOnly",   R"((01 01 E3 01 01 E3 20 0D 0A)*9 ("ab" E3 20 0D 0A)*4)",           1003},
    {"GapIsOfItsLineOnly",           R"(("a b" 0D 0A "ab" E3 20 0D 0A)*4)",                              1003},
    {"GapSpoilsItsLine",             R"(("ab" E3 20 "a b" 0D 0A)*9 ("ab" E3 20 0D 0A)*3)",                  0},
    {"GapInFrontOfTheMark",          R"(("a b" E3 20 0D 0A)*9)",                                            0},
    {"ManyMarksAreOneLine",          R"(("ab" E3 20)*40 0D 0A)",                                            0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Lines, ProbeHighBitWords, testing::ValuesIn(lineCases), FICaseName);

// What the bytes of a line are worth, shown with other marks of known worth in front of them in the same line.
struct MarkCase {
    const char* name;
    const char* bytes;  // two bytes 01 stand in front of them, the line end behind them
    std::size_t good;
    std::size_t bad;
    bool gap = false;
};

class HighBitMarks : public testing::TestWithParam<MarkCase> {
 protected:
    std::string LineWith(std::size_t otherGood, std::size_t otherBad) const {
        return FIBytes("01 01") + FIRepeat("\xE3\x0F\x01\x01", otherGood) + FIRepeat("\xE3\x01\x01", otherBad) +
               FIBytes("01 01") + FIBytes(GetParam().bytes) + "\r\n";
    }
    const std::string cleanLines_ = FIBytes(R"(("ab" E3 20 0D 0A)*4)");
};

TEST_P(HighBitMarks, MakeALineOfTheFormat) {
    const bool counts = GetParam().good > 0 && GetParam().bad == 0 && !GetParam().gap;
    EXPECT_EQ(WordAnswer(FIRepeat(LineWith(0, 0), 3) + cleanLines_.substr(0, 6)), counts ? 1003 : 0);
}

TEST_P(HighBitMarks, MakeALineOfTheFormatWithAnotherGoodMark) {
    const bool counts = GetParam().bad == 0 && !GetParam().gap;
    EXPECT_EQ(WordAnswer(FIRepeat(LineWith(1, 0), 4)), counts ? 1003 : 0);
}

TEST_P(HighBitMarks, SpeakAgainstTheFormatWhenBadOnesAreMore) {
    const std::size_t more = GetParam().good + GetParam().bad;  // enough on either side to come out even
    const std::size_t otherGood = more - GetParam().good;
    const std::size_t otherBad = more - GetParam().bad;
    EXPECT_EQ(WordAnswer(cleanLines_ + LineWith(otherGood, otherBad)), 1003) << "as many good as bad";
    EXPECT_EQ(WordAnswer(cleanLines_ + LineWith(otherGood, otherBad + 1)), 0) << "one bad mark more";
    if (otherGood > 0) {
        EXPECT_EQ(WordAnswer(cleanLines_ + LineWith(otherGood - 1, otherBad)), 0) << "one good mark less";
    }
}

const MarkCase markCases[] = {
    // clang-format off
    {"NoMark",                            "41 01",                 0, 0},
    {"BlankBehind",                       "C1 20 01",              1, 0},
    {"Byte0FBehind",                      "C1 0F 01",              1, 0},
    {"Byte1EBehind",                      "C1 1E 01",              1, 0},
    {"TopBitBlankBehind",                 "C1 A0 01",              1, 0},
    {"Byte0EBehind",                      "C1 0E 01",              0, 1},
    {"Byte10Behind",                      "C1 10 01",              0, 1},
    {"Byte1DBehind",                      "C1 1D 01",              0, 1},
    {"Byte1FBehind",                      "C1 1F 01",              0, 1},
    {"Byte21Behind",                      "C1 21 01",              0, 1},
    {"Byte9EBehind",                      "C1 9E 20 01",           1, 0},  // the first is reduced, the second a mark
    {"LineEndBehind",                     "C1",                    0, 0},
    {"TopBitLineEndBehind",               "C1 8D 8A",              0, 0},
    {"CRAloneBehind",                     "C1 0D 01",              0, 1},
    {"LFAloneBehind",                     "C1 0A 01",              0, 1},
    {"CRAndBlankBehind",                  "C1 0D 20 01",           0, 0},
    {"LowestMark",                        "80 20 01",              1, 0},
    {"HighestMark",                       "FF 20 01",              1, 0},
    {"Byte7FIsNoMark",                    "7F 01",                 0, 0},
    {"TopBitBlankIsNoMark",               "A0 01 01",              0, 0},
    {"TopBitCRIsNoMark",                  "8D 01 01",              0, 0},
    {"TopBitLFIsNoMark",                  "8A 01 01",              0, 0},
    {"Byte89IsAMark",                     "89 01 01",              0, 1},
    {"Byte8BIsAMark",                     "8B 01 01",              0, 1},
    {"Byte8CIsAMark",                     "8C 01 01",              0, 1},
    {"Byte8EIsAMark",                     "8E 01 01",              0, 1},
    {"Byte9FIsAMark",                     "9F 01 01",              0, 1},
    {"ByteA1IsAMark",                     "A1 01 01",              0, 1},
    // In front of a mark at a word's end stands a word break, or two bytes without the top bit.
    {"PlainBytesInFront",                 "41 42 C1 20 01",        1, 0},
    {"HighestPlainBytesInFront",          "7F 7F C1 20 01",        1, 0},
    {"BlankInFront",                      "C2 20 C1 20 01",        2, 0},
    {"TopBitBlankInFront",                "C2 A0 C1 20 01",        2, 0},
    {"Byte0FInFront",                     "C2 0F C1 20 01",        2, 0},
    {"Byte1EInFront",                     "C2 1E C1 20 01",        2, 0},
    {"Byte0EInFront",                     "C2 0E C1 20 01",        0, 1},
    {"Byte10InFront",                     "C2 10 C1 20 01",        0, 1},
    {"Byte1DInFront",                     "C2 1D C1 20 01",        0, 1},
    {"Byte1FInFront",                     "C2 1F C1 20 01",        0, 1},
    {"LetterInFrontMarkBefore",           "C2 61 C1 20 01",        0, 1},
    {"LowestMarkBefore",                  "80 61 C1 20 01",        0, 1},
    {"Byte7FBefore",                      "7F 61 C1 20 01",        1, 0},
    {"BlankInFrontAtTheLineEnd",          "C2 20 C1",              1, 0},
    {"LetterInFrontAtTheLineEnd",         "C2 61 C1",              0, 1},
    {"EscapeInFront",                     "1B C1 20 01",           1, 0},
    // ESC, a character and 1C.
    {"Escaped",                           "1B C1 1C 01",           1, 0},
    {"EscapedBehindAMark",                "C2 1B C1 1C 01",        1, 1},
    {"EscapedInFrontOfABlank",            "1B C1 1C 20 01",        1, 0},
    {"EscapeWithoutItsEnd",               "1B C1 1D 01",           0, 1},
    {"EscapeWithoutItsStart",             "1A C1 1C 01",           0, 1},
    {"EscapeEndWithoutItsStartAndABlank", "1A C1 1C 20 01",        0, 0},
    {"EscapeWithoutItsEndAndABlank",      "1B C1 1D 20 01",        0, 0},
    // One character in front of a word's last one: it loses its top bit.
    {"BlankTwoBehind",                    "C1 01 20 01",           0, 0},
    {"TopBitBlankTwoBehind",              "C1 01 A0 01",           0, 0},
    {"Byte0FTwoBehind",                   "C1 01 0F 01",           0, 1},
    {"Byte1FTwoBehind",                   "C1 01 1F 01",           0, 1},
    {"Byte21TwoBehind",                   "C1 01 21 01",           0, 1},
    {"TwoMarksAtAWordsEnd",               "C1 C2 20 01",           1, 0},
    {"ThreeMarksAtAWordsEnd",             "C1 C2 C3 20 01",        0, 1},
    {"HighestMarkInFrontOfTheLast",       "FF C1 20 01",           1, 0},
    {"ReducedToALetterBehindAMark",       "C2 A1 C1 20 01",        0, 1},
    {"ReducedTo0FBehindAMark",            "C2 8F C1 20 01",        1, 1},  // what is left of it is a word break
    {"ReducedTo1EBehindAMark",            "C2 9E C1 20 01",        1, 1},
    {"NotReducedInFrontOf0F",             "80 C1 0F 01",           0, 1},
    {"NotReducedInFrontOf1E",             "C2 C1 1E 01",           0, 1},
    {"Byte7FInFrontOfAMarkAnd0F",         "7F C1 0F 01",           1, 0},
    {"ThreeMarks",                        "C1 C2 C3 01 01",        0, 3},
    // A blank behind an ordinary character.
    {"BlankBehindABlank",                 "C1 20 20 01",           1, 0},
    {"BlankBehind1F",                     "C1 20 1F 20 01",        1, 0},
    {"BlankBehind21",                     "C1 20 21 20 01",        1, 0, true},
    {"BlankBehindALetter",                "C1 20 61 20 01",        1, 0, true},
    {"BlankBehind7F",                     "C1 20 7F 20 01",        1, 0, true},
    {"TopBitBlankBehindALetter",          "C1 20 61 A0 01",        1, 0, true},
    {"BlankBehindAMark",                  "C1 20 E1 20 01",        2, 0},
    {"BlankBehindALetterAlone",           "61 20 01",              0, 0, true},
    {"BlankBehindALineEnd",               "C1 20 0D 0A 20 01",     1, 0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Marks, HighBitMarks, testing::ValuesIn(markCases), FICaseName);

constexpr std::size_t lastMiddle = 1022;  // the last byte that is looked at in its surroundings

std::string ThreeCleanLines() { return FIBytes(R"(("ab" E3 20 0D 0A)*3)"); }

// A file whose byte at an offset is the first of an ending.
std::string FileWithAt(const std::string& start, std::size_t offset, const std::string& ending) {
    return start + std::string(offset - start.size(), '\x01') + ending;
}

TEST(HighBitWords, LookAtMarksUpToByte1022) {
    const std::string ending = "\xE3 \x01\x01\x01\x01";
    EXPECT_EQ(WordAnswer(FileWithAt(ThreeCleanLines(), lastMiddle, ending)), 1003);
    EXPECT_EQ(WordAnswer(FileWithAt(ThreeCleanLines(), lastMiddle + 1, ending)), 0);
}

TEST(HighBitWords, LookAtGapsUpToByte1022) {
    const std::string start = ThreeCleanLines() + "ab\xE3 ";
    EXPECT_EQ(WordAnswer(FileWithAt(start, lastMiddle - 1, "x \x01\x01\x01")), 0);
    EXPECT_EQ(WordAnswer(FileWithAt(start, lastMiddle, "x \x01\x01\x01")), 1003);
}

TEST(HighBitWords, LookAtLineEndsUpToByte1022) {
    const std::string start = ThreeCleanLines() + "ab\xE3 \r\n\x01\x01\xE3\x01\x01";
    EXPECT_EQ(WordAnswer(FileWithAt(start, lastMiddle, "\r\n\x01\x01\x01")), 0) << "the bad line is closed";
    EXPECT_EQ(WordAnswer(FileWithAt(start, lastMiddle + 1, "\r\n\x01\x01\x01")), 1003) << "the bad line is open";
}

TEST(HighBitWords, LookAtNoLinesBehindByte1022) {
    EXPECT_EQ(WordAnswer(std::string(1025, '\x01') + FIRepeat("ab\xE3 \r\n", 40)), 0);
    EXPECT_EQ(WordAnswer(std::string(900, '\x01') + FIRepeat("ab\xE3 \r\n", 40)), 1003);
}

TEST(HighBitWords, ReadNoFurtherThan1026Bytes) {
    const auto handle = FIMakeTestHandle(std::string(100000, 'a'));
    handle->bytesPerRead = 1;
    EXPECT_EQ(FIAnswerOver(FIProbeHighBitWords, *handle), 0);
    EXPECT_LE(handle->bytesDelivered, 1026U);
}

TEST(HighBitWords, FailingFirstSeek) {
    const auto handle = FIMakeTestHandle(FIRepeat("ab\xE3 \r\n", 4));
    handle->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeHighBitWords, *handle), 0);
    EXPECT_EQ(handle->reads, 0U);
}

TEST(HighBitWords, StartAtOffset0WhereverTheReaderStands) {
    EXPECT_EQ(FIAnswerOf(FIProbeHighBitWords, FIRepeat("ab\xE3 \r\n", 4), 12), 1003);
}

TEST(HighBitWords, ClaimNoOrdinaryFile) {
    for (const std::string& file : FIOrdinaryFiles()) EXPECT_EQ(WordAnswer(file), 0);
}

class WordFile : public testing::TestWithParam<WholeFile> {};

TEST_P(WordFile, IsIdentifiedByTheRoutinesRow) { FIExpectWholeFile(GetParam(), 398_row); }

const WholeFile wordFiles[] = {
    // clang-format off
    {"FourLines",              R"(("thi" F3 20 "i" F3 20 "clea" EE 0D 0A)*4)",                               1003},
    {"ThreeLinesAndAnOpenOne", R"(("thi" F3 20 "i" F3 20 "clea" EE 0D 0A)*3 "thi" F3 20)",                   1003},
    {"ThreeLinesAndPlainText", R"(("thi" F3 20 "i" F3 20 "clea" EE 0D 0A)*3 "this is plain" 0D 0A)",         1999},
    {"BadLineAtTheEnd",        R"(("thi" F3 20 "i" F3 20 "clea" EE 0D 0A)*9 "t" E8 "i" F3 "x" E9 "yz" 20 0D 0A)", 1999},
    {"LinesWithAGap",          R"(("thi" F3 20 "a b" F3 20 0D 0A)*9)",                                       1999},
    {"LinesBehindByte1022",    R"(("plain" 0D 0A)*147 ("thi" F3 20 "i" F3 20 "clea" EE 0D 0A)*9)",           1999},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(WholeTable, WordFile, testing::ValuesIn(wordFiles), FICaseName);

}  // namespace
