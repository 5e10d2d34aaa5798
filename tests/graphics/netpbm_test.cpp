// The Netpbm formats.
#include "graphics/netpbm.h"

#include "support/decided_case.h"
#include "support/probe_case.h"

namespace {

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

// ---- Whole requests ------------------------------------------------------------------------------------------------

const DecidedCase fileCases[] = {
    // clang-format off
    {"Pbm",                       R"("P1" 0A "2 2" 0A "1 0" 0A "0 1" 0A)",                                                            1588, 359_row},
    {"PgmRaw",                    R"("P5" 0A "# by hand" 0A "2 2" 0A "255" 0A 01 02 03 04)",                                          1589, 359_row},
    {"PpmRaw",                    R"("P6 2 2 255" 0A "abcabcabcabc")",                                                                1590, 359_row},
    // clang-format on
};

class NetpbmRequest : public testing::TestWithParam<DecidedCase> {};

TEST_P(NetpbmRequest, Answers) { FIExpectDecision(GetParam(), FIFlagExtendedText); }

INSTANTIATE_TEST_SUITE_P(Files, NetpbmRequest, testing::ValuesIn(fileCases), FICaseName);

TEST(NetpbmRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("P7", "P7\n1 1\n", 359_row);
    FIExpectRowLetsPass("blank behind the comment", "P6\n# by hand\n 1 1\n", 359_row);
}

}  // namespace
