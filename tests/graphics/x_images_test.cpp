// X bitmaps and pixmaps.
#include "graphics/x_images.h"

#include "support/decided_case.h"
#include "support/probe_case.h"

namespace {

// ---- XBM -----------------------------------------------------------------------------------------------------------

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

// ---- XPM -----------------------------------------------------------------------------------------------------------

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

// ---- Whole requests ------------------------------------------------------------------------------------------------

const DecidedCase fileCases[] = {
    // clang-format off
    {"Xbm",                       R"("#define x_width 8" 0A "#define x_height 8" 0A "static char x_bits[] = {" 0A "0x00, 0x01, 0x02" 0A)", 1571, 245_row},
    {"XbmWithHotSpot",            R"("#define w 8" 0A "#define h 8" 0A "#define x 1" 0A "#define y 1" 0A "static char b[] = {" 0A)",   1571, 245_row},
    {"XbmBehindAComment",         R"("/* by hand */" 0A "#define w 8" 0A "#define h 8" 0A "static char b[] = {" 0A "0, 1, 2, 3" 0A)",  1571, 245_row},
    {"Xpm",                       R"("/* XPM */" 0A "static char *x[] = {" 0A)",                                                      1572, 246_row},
    {"XbmThatLooksLikeXpm",       R"("/* XPM */" 0A "#define w 8" 0A "#define h 8" 0A "static char b[] = {" 0A "0, 1, 2, 3" 0A)",      1571, 245_row},
    // clang-format on
};

class XImageRequest : public testing::TestWithParam<DecidedCase> {};

TEST_P(XImageRequest, Answers) { FIExpectDecision(GetParam(), FIFlagExtendedText); }

INSTANTIATE_TEST_SUITE_P(Files, XImageRequest, testing::ValuesIn(fileCases), FICaseName);

TEST(XImageRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("thirteen tokens", "#define x_width 8 #define x_height 8 static char x_bits[] = { a b",
                        245_row);
    FIExpectRowLetsPass("no blanks", "/*XPM*/\n", 246_row);
}

}  // namespace
