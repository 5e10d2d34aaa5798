// MacPaint bitmaps without a magic number: a header of 512 bytes and 11 packed scan lines of 72 bytes.
//
// In the cases a line is a group in brackets. B9 packs 72 equal bytes, so (B9 00) is a line.
#include "graphics/macpaint.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include "support/decided_case.h"
#include "support/probe_case.h"

namespace {

const ProbeCase macPaintCases[] = {
    // clang-format off
    {"EmptyFile",                            R"()",                                                                          0},
    {"ElevenLines",                          R"(00*512 (B9 00)*11)",                                                      1518},
    {"BytesBehindTheLines",                  R"(00*512 (B9 00)*11 49)",                                                   1518},
    {"TenLines",                             R"(00*512 (B9 00)*10)",                                                         0},
    {"TwelfthLineIsNotLookedAt",             R"(00*512 (B9 00)*11 (B8 00))",                                              1518},

    {"FirstByteNotZero",                     R"(01 00*511 (B9 00)*11)",                                                      0},
    {"FileOfOneZeroByte",                    R"(00)",                                                                        0},
    {"FileOfTwoZeroBytes",                   R"(00 00)",                                                                     0},
    {"HeaderAlone",                          R"(00*512)",                                                                    0},
    {"FileOf600Bytes",                       R"(00*512 (B9 00)*10 47 00*67)",                                                0},
    {"SixteenPairsOfText",                   R"((00 "T")*16 00*480 (B9 00)*11)",                                             0},
    {"FifteenPairsOfText",                   R"((00 "T")*15 00*482 (B9 00)*11)",                                          1518},
    {"SixteenPairsTheLastOfTwoLetters",      R"((00 "T")*15 "TT" 00*480 (B9 00)*11)",                                     1518},
    {"SixteenPairsTheFirstOfTwoZeros",       R"(00 00 (00 "T")*15 00*480 (B9 00)*11)",                                    1518},
    {"TextOfMoreThanSixteenPairs",           R"((00 "T")*256 (B9 00)*11)",                                                   0},
    {"FileEndsInThePairs",                   R"((00 "T")*15)",                                                               0},
    {"FileEndsInAPair",                      R"((00 "T")*15 00)",                                                            0},
    {"OtherHeaderBytesAreNotLookedAt",       R"(00 00 FF*510 (B9 00)*11)",                                                1518},
    {"HeaderOf511Bytes",                     R"(00*511 (B9 00)*11)",                                                         0},

    {"RunOf72",                              R"(00*512 (B9 AA)*11)",                                                      1518},
    {"RunOf73",                              R"(00*512 (B9 00)*10 (B8 00))",                                                 0},
    {"RunOf71AndOneByte",                    R"(00*512 (B9 00)*10 (BA 00 00 07))",                                        1518},
    {"RunOf71AndARunOf2",                    R"(00*512 (B9 00)*10 (BA 00 FF 07))",                                           0},
    {"RunOf129",                             R"(00*512 (B9 00)*10 (80 00))",                                                 0},
    {"RunOf70AndARunOf2",                    R"(00*512 (B9 00)*10 (BB 00 FF 07))",                                        1518},
    {"FirstLineOf73",                        R"(00*512 (B8 00) (B9 00)*10)",                                                 0},
    {"LiteralOf72",                          R"(00*512 (47 11*72)*11)",                                                   1518},
    {"LiteralOf73",                          R"(00*512 (B9 00)*10 (48 11*73))",                                              0},
    {"Control49",                            R"(00*512 (B9 00)*10 (49 11*74))",                                              0},
    {"Control7F",                            R"(00*512 (B9 00)*10 (7F 11*128))",                                             0},
    {"Control49BehindARun",                  R"(00*512 (B9 00)*10 (BA 00 49))",                                              0},
    {"LiteralOf2IsTheShortest",              R"(00*512 (01 11*2)*396)",                                                   1518},
    {"SingleBytes",                          R"(00*512 ((00 11)*72)*11)",                                                 1518},
    {"SeventyThreeInGroups",                 R"(00*512 (B9 00)*10 (C9 00 0E 11*15 FF 11))",                                  0},
    {"SeventyTwoInGroups",                   R"(00*512 (B9 00)*10 (C9 00 0E 11*15 00 11))",                               1518},
    {"LinesDoNotRunIntoEachOther",           R"(00*512 (B9 00)*9 (DD 00 DD 00) (B9 00))",                                 1518},
    {"LineOf36IsNoLine",                     R"(00*512 (B9 00)*10 (DD 00))",                                                 0},

    // A control byte FF is a run of two bytes; 30 of them are allowed, counted over all lines.
    {"TwoByteRuns24",                        R"(00*512 ((FF 00)*8 C9 00)*3 (B9 00)*8)",                                   1518},
    {"TwoByteRuns32InTheFourthLine",         R"(00*512 ((FF 00)*8 C9 00)*4 (B9 00)*7)",                                      0},
    {"TwoByteRuns30",                        R"(00*512 ((FF 00)*10 CD 00)*3 (B9 00)*8)",                                  1518},
    {"TwoByteRuns31",                        R"(00*512 ((FF 00)*10 CD 00)*3 (FF 00 BB 00) (B9 00)*7)",                       0},
    {"TwoByteRuns31InTheLastLine",           R"(00*512 (B9 00)*7 ((FF 00)*10 CD 00)*3 (FF 00 BB 00))",                       0},
    {"TwoByteRuns36InOneLine",               R"(00*512 ((FF 00)*36) (B9 00)*10)",                                            0},
    {"TwoByteRuns30InOneLine",               R"(00*512 ((FF 00)*30 F5 00) (B9 00)*10)",                                   1518},
    {"RunsOfThreeAreNotCounted",             R"(00*512 ((FE 00)*24)*11)",                                                 1518},

    // Single zero bytes in a row; each counts two, and 16 are too many.
    {"ZeroPairs7",                           R"(00*512 ((00 00)*7 C0 00)*11)",                                            1518},
    {"ZeroPairs8",                           R"(00*512 ((00 00)*8 C1 00) (B9 00)*10)",                                       0},
    {"ZeroPairs8AtTheEndOfALine",            R"(00*512 (C1 00 (00 00)*8) (B9 00)*10)",                                       0},
    {"ZeroPairs7And7WithARunBetween",        R"(00*512 ((00 00)*7 C7 00 (00 00)*7) (B9 00)*10)",                          1518},
    {"ZeroPairs7And7WithALiteralBetween",    R"(00*512 ((00 00)*7 39 00*58 (00 00)*7) (B9 00)*10)",                       1518},
    {"ZeroPairsAcrossTwoLines",              R"(00*512 (C0 00 (00 00)*7) ((00 00) BA 00) (B9 00)*9)",                        0},
    {"ZeroPairs7AcrossTwoLines",             R"(00*512 (BF 00 (00 00)*6) ((00 00) BA 00) (B9 00)*9)",                     1518},
    {"ZeroBytesOfARunAreNotCounted",         R"(00*512 ((00 00)*7 FF 00 C2 00) (B9 00)*10)",                              1518},

    // Quirk: a single byte that is not zero counts one, and is not looked at for the limit.
    {"SingleBytes14AndAZeroPair",            R"(00*512 ((00 01)*14 (00 00) C8 00) (B9 00)*10)",                              0},
    {"SingleBytes13AndAZeroPair",            R"(00*512 ((00 01)*13 (00 00) C7 00) (B9 00)*10)",                           1518},
    {"SingleBytes15AndAZeroPair",            R"(00*512 ((00 01)*15 (00 00) C9 00) (B9 00)*10)",                              0},
    {"SingleBytes40AndNoZeroPair",           R"(00*512 ((00 01)*40 E1 00) (B9 00)*10)",                                   1518},
    {"SingleBytes40AndAZeroPairBehindARun",  R"(00*512 ((00 01)*40 E2 00 00 00) (B9 00)*10)",                             1518},
    {"SingleBytes72AndAZeroPairInTheNextLine", R"(00*512 ((00 01)*72) (00 00 BA 00) (B9 00)*9)",                             0},

    {"FileEndsBehindARunsControlByte",       R"(00*512 (B9 00)*10 B9)",                                                      0},
    {"FileEndsInALiteral",                   R"(00*512 (B9 00)*10 47 11*71)",                                                0},
    {"FileEndsBehindASinglesControlByte",    R"(00*512 (B9 00)*10 BA 00 00)",                                                0},
    {"FileEndsBetweenGroups",                R"(00*512 (B9 00)*10 BA 00)",                                                   0},
    // clang-format on
};

class ProbeMacPaint : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeMacPaint, Answers) { EXPECT_EQ(FIAnswerOf(FIProbeMacPaint, FIBytes(GetParam().bytes)), GetParam().answer); }

INSTANTIATE_TEST_SUITE_P(MacPaint, ProbeMacPaint, testing::ValuesIn(macPaintCases), FICaseName);

// Every control byte at the start of the last line, followed by what makes the line 72 bytes long.
TEST(MacPaint, EveryControlByteFillsALine) {
    for (std::uint32_t control = 0; control < 256; ++control) {
        const std::uint32_t data = control >= 1 && control <= 0x48 ? control + 1 : 1;
        const std::uint32_t produced = control >= 0x80 ? 257 - control : control == 0 ? 1 : control + 1;
        std::string bytes = FIBytes("00*512 (B9 00)*10") + static_cast<char>(control) + std::string(data, '\x11');
        for (std::uint32_t left = produced < 72 ? 72 - produced : 0; left > 0; --left) bytes += FIBytes("00 11");
        const bool allowed = control <= 0x48 || control >= 0x80;
        EXPECT_EQ(FIAnswerOf(FIProbeMacPaint, bytes), allowed && produced <= 72 ? 1518U : 0U) << control;
    }
}

TEST(MacPaint, EveryCutGivesNothing) {
    const std::string whole = FIBytes("00*512 (47 11*72 B9 00 00 01 BA 00)*3 (B9 00)*2");
    ASSERT_EQ(FIAnswerOf(FIProbeMacPaint, whole), 1518U);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const auto handle = FIMakeTestHandle(whole.substr(0, size));
        EXPECT_EQ(FIAnswerOver(FIProbeMacPaint, *handle), 0U) << size;
    }
}

TEST(MacPaint, FailingSeeksGiveNothing) {
    const std::string whole = FIBytes("00*512 (B9 00)*11");
    const auto noRewind = FIMakeTestHandle(whole);
    noRewind->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeMacPaint, *noRewind), 0U);
    // 100 bytes a read: the second and third rewind stay in the buffer, and offset 512 does not.
    const auto noLines = FIMakeTestHandle(whole);
    noLines->bytesPerRead = 100;
    noLines->failSeeksFrom = 1;
    EXPECT_EQ(FIAnswerOver(FIProbeMacPaint, *noLines), 0U);
    const auto noSeekBehindTheEnd = FIMakeTestHandle(FIBytes("00*100"));
    noSeekBehindTheEnd->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeMacPaint, *noSeekBehindTheEnd), 0U);
}

TEST(MacPaint, RewindsTheReader) { EXPECT_EQ(FIAnswerOf(FIProbeMacPaint, FIBytes("00*512 (B9 00)*11"), 300), 1518U); }

// ---- Whole requests ------------------------------------------------------------------------------------------------

const DecidedCase fileCases[] = {
    // clang-format off
    {"MacPaint",                    R"(00*512 (B9 00)*11)",                                    1518, 361_row},
    {"MacPaintOfAllGroups",         R"(00*512 (00 11 0E 22*15 C9 33)*11 00*20)",               1518, 361_row},
    {"MacPaintBehindAMacBinary",    R"(00 05 "Paint" >65 "PNTGMPNT" >128 00*512 49*40)",       1518, 362_row},
    // clang-format on
};

class MacPaintRequest : public testing::TestWithParam<DecidedCase> {};

TEST_P(MacPaintRequest, Answers) { FIExpectDecision(GetParam(), FIFlagExtendedText); }

INSTANTIATE_TEST_SUITE_P(Files, MacPaintRequest, testing::ValuesIn(fileCases), FICaseName);

TEST(MacPaintRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("a line of 73", FIBytes("00*512 (B8 00) (B9 00)*10"), 361_row);
    FIExpectRowLetsPass("600 zero bytes", FIBytes("00*600"), 361_row);
    FIExpectRowLetsPass("text of 16-bit characters", FIBytes(R"((00 "T")*256 (B9 00)*11)"), 361_row);
}

}  // namespace
