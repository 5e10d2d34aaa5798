// Drawings and pages as text: DXF, FrameMaker interchange text, and PDF behind other bytes.
#include "graphics/drawings.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "platform/base_utility.h"
#include "reader/reader.h"
#include "reader/text_line.h"
#include "support/case_name.h"
#include "support/decided_case.h"
#include "support/probe_case.h"

namespace {

using ::PrintTo;

// ---- Lines ---------------------------------------------------------------------------------------------------------

// A line as FIReadTextLine delivers it: its result and its text.
struct TextLine {
    std::int16_t result;
    std::string text;

    bool operator==(const TextLine&) const = default;
};

void PrintTo(const TextLine& line, std::ostream* out) { *out << line.result << " \"" << line.text << '"'; }

struct LineCase {
    const char* name;
    const char* bytes;  // in the notation of FIBytes
    std::uint16_t capacity;
    std::vector<TextLine> lines;  // what so many calls deliver
};

constexpr std::size_t largestLine = 8192;

const LineCase lineCases[] = {
    // clang-format off
    {"EmptyFile",                       R"()",                             128, {{0, ""}, {0, ""}}},
    {"EndOfFileEndsALine",              R"("abc")",                        128, {{0, "abc"}, {0, ""}}},
    {"Lf",                              R"("abc" 0A "def")",               128, {{1, "abc"}, {0, "def"}, {0, ""}}},
    {"Cr",                              R"("abc" 0D "def")",               128, {{1, "abc"}, {0, "def"}}},
    {"CrLf",                            R"("abc" 0D 0A "def")",            128, {{1, "abc"}, {0, "def"}}},
    {"LfCr",                            R"("abc" 0A 0D "def")",            128, {{1, "abc"}, {0, "def"}}},
    {"LfLfIsTwoLineEnds",               R"("abc" 0A 0A "def")",            128, {{1, "abc"}, {1, ""}, {0, "def"}}},
    {"CrCrIsTwoLineEnds",               R"("abc" 0D 0D "def")",            128, {{1, "abc"}, {1, ""}, {0, "def"}}},
    {"CrLfCrLfIsTwoLineEnds",           R"("abc" 0D 0A 0D 0A "def")",      128, {{1, "abc"}, {1, ""}, {0, "def"}}},
    {"LfCrLfIsTwoLineEnds",             R"("abc" 0A 0D 0A "def")",         128, {{1, "abc"}, {1, ""}, {0, "def"}}},
    {"LfAtTheEndOfTheFile",             R"("abc" 0A)",                     128, {{1, "abc"}, {0, ""}, {0, ""}}},
    {"CrAtTheEndOfTheFile",             R"("abc" 0D)",                     128, {{1, "abc"}, {0, ""}, {0, ""}}},
    {"CrLfAtTheEndOfTheFile",           R"("abc" 0D 0A)",                  128, {{1, "abc"}, {0, ""}}},
    {"NulEndsALineLikeTheEndOfTheFile", R"("abc" 00 "def" 0A)",            128, {{0, "abc"}, {1, "def"}, {0, ""}}},
    {"NulBehindALineEndIsPutBack",      R"("abc" 0A 00 "def")",            128, {{1, "abc"}, {0, ""}, {0, "def"}}},
    {"ControlBytesAreStored",           R"("a" 01 09 0C 1A 1B 1F "b" 0A)", 128, {{1, "a\x01\x09\x0C\x1A\x1B\x1F" "b"}}},
    {"HighBytesAreStored",              R"(20 7F 80 9F A0 FE FF 0A)",      128, {{1, "\x20\x7F\x80\x9F\xA0\xFE\xFF"}}},
    {"LineOfCapacityMinus2",            R"("abc" 0A "def" 0A)",              5, {{1, "abc"}, {1, "def"}, {0, ""}}},
    {"LineOfCapacityMinus1LeavesItsLineEnd", R"("abc" 0A "def" 0A)",         4, {{1, "abc"}, {1, ""}, {1, "def"}, {1, ""}, {0, ""}}},
    {"LongerLineComesInPieces",         R"("abcdefgh" 0A)",                  4, {{1, "abc"}, {1, "def"}, {1, "gh"}, {0, ""}}},
    {"FullBufferAtTheEndOfTheFile",     R"("abc")",                          4, {{1, "abc"}, {0, ""}}},
    {"FullBufferInFrontOfANul",         R"("abc" 00 "def")",                 4, {{1, "abc"}, {0, ""}, {1, "def"}}},
    {"Capacity2HoldsOneByte",           R"("ab" 0A)",                        2, {{1, "a"}, {1, "b"}, {1, ""}, {0, ""}}},
    {"Capacity1ReadsNothing",           R"("abc" 0A)",                       1, {{1, ""}, {1, ""}}},
    {"Capacity0ReadsNothing",           R"("abc" 0A)",                       0, {{1, ""}, {1, ""}}},
    {"PutBackInFrontOfTheBuffer",       R"("a"*2047 0A "b" 0A)",          8192, {{1, std::string(2047, 'a')}, {1, "b"}, {0, ""}}},
    {"CrLfAcrossTheBuffer",             R"("a"*2047 0D 0A "b" 0A)",       8192, {{1, std::string(2047, 'a')}, {1, "b"}, {0, ""}}},
    // clang-format on
};

class ReadTextLine : public testing::TestWithParam<LineCase> {};

std::vector<TextLine> ReadLines(TestHandle& handle, std::uint16_t capacity, std::size_t count) {
    FIReader reader;
    FIReaderStart(reader, FIFileOf(handle));
    std::vector<TextLine> lines;
    for (std::size_t index = 0; index < count; ++index) {
        std::string buffer(largestLine, '#');
        const std::int16_t result = FIReadTextLine(buffer.data(), capacity, reader);
        lines.push_back({result, buffer.substr(0, buffer.find('\0'))});
    }
    return lines;
}

TEST_P(ReadTextLine, Delivers) {
    const LineCase& lineCase = GetParam();
    const auto handle = FIMakeTestHandle(FIBytes(lineCase.bytes));
    EXPECT_EQ(ReadLines(*handle, lineCase.capacity, lineCase.lines.size()), lineCase.lines);
    const auto slow = FIMakeTestHandle(FIBytes(lineCase.bytes));
    slow->bytesPerRead = 1;
    EXPECT_EQ(ReadLines(*slow, lineCase.capacity, lineCase.lines.size()), lineCase.lines);
}

INSTANTIATE_TEST_SUITE_P(Lines, ReadTextLine, testing::ValuesIn(lineCases), FICaseName);

TEST(ReadTextLineBuffer, CapacityIsNotPassed) {
    for (std::uint16_t capacity = 0; capacity <= 6; ++capacity) {
        const auto handle = FIMakeTestHandle("abcdefgh");
        FIReader reader;
        FIReaderStart(reader, FIFileOf(*handle));
        std::string buffer(16, '#');
        static_cast<void>(FIReadTextLine(buffer.data(), capacity, reader));
        const std::size_t used = std::max<std::size_t>(capacity, 1);
        EXPECT_EQ(buffer.substr(used), std::string(16 - used, '#')) << capacity;
        EXPECT_EQ(handle->reads, capacity < 2 ? 0U : 1U) << capacity;
    }
}

// ---- DXF -----------------------------------------------------------------------------------------------------------

const ProbeCase dxfCases[] = {
    // clang-format off
    {"EmptyFile",                         R"()",                                                  0},
    {"Section",                           R"("  0" 0A "SECTION" 0A "  2" 0A)",                 1544},
    {"SectionWithCrLf",                   R"("0" 0D 0A "SECTION" 0D 0A)",                      1544},
    {"SectionWithCr",                     R"("0" 0D "SECTION" 0D)",                            1544},
    {"SectionWithLfCr",                   R"("0" 0A 0D "SECTION" 0A 0D)",                      1544},
    {"SmallLettersAndTrailingBlanks",     R"("0" 0D 0A "section   " 0D 0A)",                   1544},
    {"MixedLetters",                      R"("0" 0A "SeCtIoN" 0A)",                            1544},
    {"BlanksAndTabsAround",               R"("0" 0A 20 09 "SECTION" 09 20 09 0A)",             1544},
    {"EndOfFileBehindTheWord",            R"("0" 0A "SECTION")",                               1544},
    {"NulBehindTheWord",                  R"("0" 0A "SECTION" 00 "X")",                        1544},
    {"AnotherWordBehind",                 R"("0" 0A "SECTION X" 0A)",                             0},
    {"AnotherWordBehindATab",             R"("0" 0A "SECTION" 09 20 "X" 0A)",                     0},
    {"WordInTwo",                         R"("0" 0A "SEC TION" 0A)",                              0},
    {"WordIsLonger",                      R"("0" 0A "SECTIONS" 0A)",                              0},
    {"WordIsShorter",                     R"("0" 0A "SECTIO" 0A)",                                0},
    {"WordIsAnother",                     R"("0" 0A "ENDSEC" 0A)",                                0},
    {"ControlByteBehindTheWord",          R"("0" 0A "SECTION" 0C 0A)",                            0},
    {"HighByteBehindTheWord",             R"("0" 0A "SECTION" A0 0A)",                            0},
    {"NoWord",                            R"("0" 0A)",                                            0},
    {"EmptyLineInFrontOfTheWord",         R"("0" 0A 0A "SECTION" 0A)",                            0},
    {"BlanksOnlyInFrontOfTheWord",        R"("0" 0A "  " 0A "SECTION" 0A)",                       0},
    {"GroupCodeEndsWithTheFile",          R"("0")",                                               0},
    {"GroupCodeEndsInANul",               R"("0" 00 "SECTION" 0A)",                               0},
    {"WhiteSpaceOnly",                    R"(20 09 0D 0A 20)",                                    0},
    {"EmptyLinesInFront",                 R"(0A 0D 0A 20 09 0A "  0" 0A "SECTION" 0A)",        1544},
    {"ManyEmptyLinesInFront",             R"((0D 0A)*3000 "0" 0A "SECTION" 0A)",               1544},
    {"FormFeedInFront",                   R"(0C "0" 0A "SECTION" 0A)",                            0},
    {"NulInFront",                        R"(00 "0" 0A "SECTION" 0A)",                            0},

    {"GroupCodeWithWordsBehind",          R"("0 x" 0A "SECTION" 0A)",                          1544},
    {"GroupCodeWithATabBehind",           R"("0" 09 "9" 0A "SECTION" 0A)",                     1544},
    {"GroupCodeWithALetterBehind",        R"("0x" 0A "SECTION" 0A)",                              0},
    {"GroupCodeWithAFormFeedBehind",      R"("0" 0C 0A "SECTION" 0A)",                            0},
    {"GroupCodeWithAHighByteBehind",      R"("0" A0 0A "SECTION" 0A)",                            0},
    {"GroupCodeOfManyZeros",              R"("000000" 0A "SECTION" 0A)",                       1544},
    {"GroupCode1",                        R"("1" 0A "SECTION" 0A)",                               0},
    {"GroupCode10",                       R"("10" 0A "SECTION" 0A)",                              0},
    {"GroupCode01",                       R"("01" 0A "SECTION" 0A)",                              0},
    {"GroupCodeMinus0",                   R"("-0" 0A "SECTION" 0A)",                              0},
    {"GroupCodePlus0",                    R"("+0" 0A "SECTION" 0A)",                              0},
    {"GroupCodeIsAWord",                  R"("SECTION" 0A "SECTION" 0A)",                         0},
    {"GroupCode65536DoesNotWrap",         R"("65536" 0A "SECTION" 0A)",                           0},
    {"GroupCode66535DoesNotWrap",         R"("66535" 0A "remark" 0A "0" 0A "SECTION" 0A)",        0},
    {"GroupCode4294967296DoesNotWrap",    R"("4294967296" 0A "SECTION" 0A)",                      0},
    {"GroupCode4294968295DoesNotWrap",    R"("4294968295" 0A "remark" 0A "0" 0A "SECTION" 0A)",   0},
    {"GroupCodeOf2To64DoesNotWrap",       R"("18446744073709551616" 0A "SECTION" 0A)",            0},
    {"GroupCodeOf2To64And999DoesNotWrap", R"("18446744073709552615" 0A "remark" 0A "0" 0A "SECTION" 0A)", 0},
    {"GroupCodeOf120DigitsDoesNotWrap",   R"("1" "0"*119 0A "SECTION" 0A)",                       0},

    {"Comment",                           R"("999" 0A "remark" 0A "0" 0A "SECTION" 0A)",       1544},
    {"CommentWithBlanks",                 R"("999  remark" 0A "remark" 0A "  0" 0A "SECTION" 0A)", 1544},
    {"CommentWithLeadingZero",            R"("0999" 0A "remark" 0A "0" 0A "SECTION" 0A)",      1544},
    {"ManyComments",                      R"(("999" 0A "remark" 0A)*400 "0" 0A "SECTION" 0A)", 1544},
    {"EmptyComment",                      R"("999" 0A 0A "0" 0A "SECTION" 0A)",                1544},
    {"CommentThatLooksLikeTheWord",       R"("999" 0A "SECTION" 0A "0" 0A "SECTION" 0A)",      1544},
    {"EmptyLineBehindACommentIsCode0",    R"("999" 0A "remark" 0A 0A "SECTION" 0A)",           1544},
    {"BlankLineBehindACommentIsCode0",    R"("999" 0A "remark" 0A 20 09 0A "SECTION" 0A)",     1544},
    {"CommentThenCode1",                  R"("999" 0A "remark" 0A "1" 0A "SECTION" 0A)",          0},
    {"CommentThenAWord",                  R"("999" 0A "remark" 0A "remark" 0A "SECTION" 0A)",     0},
    {"GroupCode998",                      R"("998" 0A "remark" 0A "0" 0A "SECTION" 0A)",          0},
    {"GroupCode9990",                     R"("9990" 0A "remark" 0A "0" 0A "SECTION" 0A)",         0},
    {"CommentWithoutText",                R"("999" 0A)",                                          0},
    {"CommentEndsWithTheFile",            R"("999" 0A "remark")",                                 0},
    {"CommentEndsInANul",                 R"("999" 0A "remark" 00 "0" 0A "SECTION" 0A)",          0},
    {"CodeBehindACommentIsMissing",       R"("999" 0A "remark" 0A)",                              0},
    {"CodeBehindACommentEndsWithTheFile", R"("999" 0A "remark" 0A "0")",                          0},

    // A line holds 127 bytes; what is behind them is the next line.
    {"GroupCodeOf126Zeros",               R"("0"*126 0A "SECTION" 0A)",                        1544},
    {"GroupCodeOf127Zeros",               R"("0"*127 0A "SECTION" 0A)",                           0},
    {"GroupCodeOf127ZerosAndTheWord",     R"("0"*127 "SECTION" 0A)",                           1544},
    {"CommentOf126Bytes",                 R"("999" 0A "c"*126 0A "0" 0A "SECTION" 0A)",        1544},
    {"CommentOf127BytesLeavesCode0",      R"("999" 0A "c"*127 0A "SECTION" 0A)",               1544},
    {"CommentOf127BytesTakesTheCode",     R"("999" 0A "c"*127 0A "0" 0A "SECTION" 0A)",           0},
    {"CommentOf128BytesLeavesALetter",    R"("999" 0A "c"*128 0A "0" 0A "SECTION" 0A)",           0},
    {"CommentOf128BytesLeavesA0",         R"("999" 0A "c"*127 "0" 0A "SECTION" 0A)",           1544},
    {"WordWithBlanksToByte127",           R"("0" 0A "SECTION" " "*119 "X" 0A)",                   0},
    {"WordWithBlanksBehindByte127",       R"("0" 0A "SECTION" " "*120 "X" 0A)",                1544},
    {"WordBehindBlanksToByte127",         R"("0" 0A " "*120 "SECTION" 0A)",                    1544},
    {"WordBehindTooManyBlanks",           R"("0" 0A " "*121 "SECTION" 0A)",                       0},
    // clang-format on
};

class ProbeDxf : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeDxf, Answers) { EXPECT_EQ(FIAnswerOf(FIProbeDxf, FIBytes(GetParam().bytes)), GetParam().answer); }

INSTANTIATE_TEST_SUITE_P(Dxf, ProbeDxf, testing::ValuesIn(dxfCases), FICaseName);

TEST(Dxf, RewindsTheReader) {
    EXPECT_EQ(FIAnswerOf(FIProbeDxf, FIBytes(R"("0" 0A "SECTION" 0A)"), 5), 1544U);
    const auto handle = FIMakeTestHandle(FIBytes(R"("0" 0A "SECTION" 0A)"));
    handle->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeDxf, *handle), 0U);
}

// ---- FrameMaker interchange text -----------------------------------------------------------------------------------

constexpr std::uint32_t behindMifWord = 8;  // "<MIFFile", which the signature row has compared

const ProbeCase mifCases[] = {
    // clang-format off
    {"Version3",                     R"("<MIFFile 3.00>")",                 1129},
    {"Version4",                     R"("<MIFFile 4.00>")",                 1130},
    {"Version5",                     R"("<MIFFile 5.00>")",                 1131},
    {"Version6",                     R"("<MIFFile 6.00>")",                 1166},
    {"JapaneseVersion3",             R"("<MIFFile Jp3.00>")",               1135},
    {"JapaneseVersion4",             R"("<MIFFile Jp4.00>")",               1136},
    {"JapaneseVersion5",             R"("<MIFFile Jp5.00>")",               1137},
    {"JapaneseVersion6",             R"("<MIFFile Jp6.00>")",               1167},
    {"JapaneseWithABlank",           R"("<MIFFile Jp 5.50>")",              1137},
    {"JapaneseInSmallLetters",       R"("<MIFFile jp3>")",                  1135},
    {"JapaneseInCapitals",           R"("<MIFFile JP3>")",                  1135},
    {"JapaneseSmallThenCapital",     R"("<MIFFile jP3>")",                  1135},
    {"JapaneseBehindAnotherJ",       R"("<MIFFile JJp3>")",                 1135},
    {"JapaneseFarInFront",           R"("<MIFFile Jp version x 3>")",       1135},
    {"JapaneseBehindTheDigit",       R"("<MIFFile 3.00Jp>")",               1129},
    {"JAlone",                       R"("<MIFFile J3.00>")",                1129},
    {"PAlone",                       R"("<MIFFile p3.00>")",                1129},
    {"JAndABlankAndP",               R"("<MIFFile J p3.00>")",              1129},
    {"PBeforeJ",                     R"("<MIFFile pJ3.00>")",               1129},
    {"JInFrontOfAStop",              R"("<MIFFile J>3")",                   1168},
    {"JpWithoutDigit",               R"("<MIFFile Jp>")",                   1168},
    {"Version1",                     R"("<MIFFile 1.00>")",                 1168},
    {"Version2",                     R"("<MIFFile 2.00>")",                 1168},
    {"Version7",                     R"("<MIFFile 7.00>")",                 1168},
    {"Version8",                     R"("<MIFFile 8.00>")",                 1168},
    {"Version9",                     R"("<MIFFile 9.00>")",                 1168},
    {"Version0",                     R"("<MIFFile 0.00>")",                 1168},
    {"FirstDigitFrom3To6Decides",    R"("<MIFFile 6.345>")",                1166},
    {"DigitBehindTheDotCounts",      R"("<MIFFile 7.5>")",                  1131},
    {"Version10Point4",              R"("<MIFFile 10.4>")",                 1130},
    {"StopAtOnce",                   R"("<MIFFile>")",                      1168},
    {"DigitAtOnce",                  R"("<MIFFile5")",                      1131},
    {"StopAtCr",                     R"("<MIFFile 7.0" 0D "5")",            1168},
    {"StopAtLf",                     R"("<MIFFile 7.0" 0A "5")",            1168},
    {"StopAtNumberSign",             R"("<MIFFile 7.0#5")",                 1168},
    {"StopAtGreaterSign",            R"("<MIFFile 7.0>5")",                 1168},
    {"OtherBytesAreNoStop",          R"("<MIFFile " 00 09 1A FF "<!5")",    1131},
    {"FileEndsBehindTheDigit",       R"("<MIFFile 4")",                     1130},
    {"FarAwayDigit",                 R"("<MIFFile" " "*5000 "6")",          1166},
    // clang-format on
};

class ProbeMif : public testing::TestWithParam<ProbeCase> {};

// Not through FIAnswerOf: reads that fail look like the end of the file, and over those the routine never comes back.
TEST_P(ProbeMif, Answers) {
    for (const std::uint32_t bytesPerRead : {testNever, std::uint32_t{1}}) {
        const auto handle = FIMakeTestHandle(FIBytes(GetParam().bytes));
        handle->bytesPerRead = bytesPerRead;
        handle->lineFeedAfterEmptyReads = 65536;  // so that a mistake comes back
        EXPECT_EQ(FIAnswerOver(FIProbeMif, *handle, behindMifWord), GetParam().answer);
        EXPECT_LE(handle->emptyReads, 1U) << "more than the byte behind the digit was looked for";
    }
}

INSTANTIATE_TEST_SUITE_P(Mif, ProbeMif, testing::ValuesIn(mifCases), FICaseName);

// Quirk: the routine has no test for the end of the file, and reads on until the handle delivers something else.
TEST(Mif, ReadsOnAtTheEndOfTheFileUntilTheHandleDeliversALineEnd) {
    const auto handle = FIMakeTestHandle("<MIFFile Jp 7.00");
    constexpr std::uint32_t emptyReads = 1000;
    handle->lineFeedAfterEmptyReads = emptyReads;
    EXPECT_EQ(FIAnswerOver(FIProbeMif, *handle, behindMifWord), 1168U);
    EXPECT_EQ(handle->reads, 1 + emptyReads + 1) << "the text, the end of the file, and the line end";
}

TEST(Mif, ComesBackOverAPlatformHandleThanksToTheRunawayGuard) {
    const char* const unended[] = {"<MIFFile", "<MIFFile ", "<MIFFile 7.00", "<MIFFile Jp"};
    for (const char* const text : unended) {
        const std::string bytes = text;
        const IOMemorySpec memory = {bytes.data(), bytes.size(), "page.mif"};
        HIOFILE handle = nullptr;
        ASSERT_EQ(IOOpen(&handle, IOSpecMemory, &memory, IOOpenRead), 0);
        FIReader* const reader = FIReaderNew(handle);
        EXPECT_EQ(FIReaderSeek(*reader, behindMifWord), 0);
        EXPECT_EQ(FIProbeMif(*reader), 1168U) << text;
        EXPECT_EQ(FIReaderFree(*reader), handle);
        EXPECT_EQ(handle->operations.IOClose(handle), 0);
    }
}

// ---- PDF -----------------------------------------------------------------------------------------------------------

const ProbeCase pdfCases[] = {
    // clang-format off
    {"EmptyFile",                          R"()",                                 0},
    {"HeaderAtOnce",                       R"("%PDF-1.4" 0A)",                 1557},
    {"HeaderWithoutMinorVersion",          R"("%PDF-1.")",                     1557},
    {"HeaderWithAnyMinorVersion",          R"("%PDF-1.x")",                    1557},
    {"HeaderCutBeforeTheDot",              R"("%PDF-1")",                         0},
    {"MajorVersion2",                      R"("%PDF-2.0")",                       0},
    {"MajorVersion0",                      R"("%PDF-0.9")",                       0},
    {"SmallLetters",                       R"("%pdf-1.4")",                       0},
    {"NoPercentSign",                      R"("PDF-1.4")",                        0},
    {"BehindOtherText",                    R"("some text" 0A "%PDF-1.4")",     1557},
    {"BehindBinaryBytes",                  R"(00 FF 01 FE "%PDF-1.4")",        1557},
    {"BehindAPercentSign",                 R"("%%PDF-1.4")",                   1557},
    {"BehindManyPercentSigns",             R"("%"*500 "PDF-1.4")",             1557},
    {"BehindACutHeader",                   R"("%PDF-%PDF-1.4")",               1557},
    {"BehindAHeaderOfVersion2",            R"("%PDF-2.0 %PDF-1.4")",           1557},
    {"BehindACutHeaderOfSixBytes",         R"("%PDF-1%PDF-1.4")",              1557},
    {"PercentSignsOnly",                   R"("%"*2000)",                         0},
    {"AtOffset1022",                       R"("x"*1022 "%PDF-1.4")",           1557},
    {"AtOffset1023",                       R"("x"*1023 "%PDF-1.4")",           1557},
    {"AtOffset1024",                       R"("x"*1024 "%PDF-1.4")",              0},
    {"AtOffset1023BehindPercentSigns",     R"("%"*1023 "%PDF-1.4")",           1557},
    {"AtOffset1024BehindPercentSigns",     R"("%"*1024 "%PDF-1.4")",              0},
    {"AtOffset1023AndCut",                 R"("x"*1023 "%PDF-1")",                0},
    {"FileOf1023BytesWithoutHeader",       R"("x"*1023)",                         0},
    {"FileOf1024BytesWithoutHeader",       R"("x"*1024)",                         0},
    {"FileOf5000BytesWithoutHeader",       R"("x"*5000)",                         0},
    // clang-format on
};

class ProbePdf : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbePdf, Answers) { EXPECT_EQ(FIAnswerOf(FIProbePdf, FIBytes(GetParam().bytes)), GetParam().answer); }

INSTANTIATE_TEST_SUITE_P(Pdf, ProbePdf, testing::ValuesIn(pdfCases), FICaseName);

TEST(Pdf, OnlyTheSecondRewindCounts) {
    const auto firstFails = FIMakeTestHandle("text %PDF-1.4");
    firstFails->failSeek = 0;
    EXPECT_EQ(FIAnswerOver(FIProbePdf, *firstFails), 1557U);
    for (std::uint32_t failing = 0; failing < 2; ++failing) {
        const auto secondFails = FIMakeTestHandle("text %PDF-1.4");
        secondFails->failSeeksFrom = failing;
        EXPECT_EQ(FIAnswerOver(FIProbePdf, *secondFails), 0U) << failing;
    }
}

// ---- Whole requests ------------------------------------------------------------------------------------------------

const DecidedCase fileCases[] = {
    // clang-format off
    {"Dxf",                          R"("  0" 0D 0A "SECTION" 0D 0A "  2" 0D 0A "HEADER" 0D 0A)",                    1544,  88_row},
    {"DxfInSmallLetters",            R"("0" 0A "section  " 0A "2" 0A "header" 0A)",                                  1544,  88_row},
    {"DxfBehindComments",            R"("999" 0A "by hand" 0A "999" 0A "again" 0A "  0" 0A "SECTION" 0A)",           1544,  88_row},
    {"Mif7",                         R"("<MIFFile 7.00> # by hand" 0A)",                                             1168, 389_row},
    {"MifOfAnUnlistedVersion3",      R"("<MIFFile 3.01> # by hand" 0A)",                                             1129, 389_row},
    {"MifOfAnUnlistedVersion6",      R"("<MIFFile Jp 6.1> # by hand" 0A)",                                           1167, 389_row},
    {"MifOfAListedVersion",          R"("<MIFFile 5.00> # by hand" 0A)",                                             1131, 202_row},
    {"Mif550HasARowOfItsOwn",        R"("<MIFFile 5.50> # by hand" 0A)",                                             1138, 204_row},
    {"MifJapanese550HasNone",        R"("<MIFFile Jp 5.50> # by hand" 0A)",                                          1137, 389_row},
    {"MifWordAlone",                 R"("<MIFFile")",                                                                1168, 389_row},
    {"PdfAtOnce",                    R"("%PDF-1.4" 0A)",                                                             1557, 101_row},
    {"PdfOfVersion2AtOnce",          R"("%PDF-2.0" 0A)",                                                             1557, 101_row},
    {"PdfBehind128Bytes",            R"("x"*128 "%PDF-2.0" 0A)",                                                     1557, 102_row},
    {"PdfBehindText",                R"("some text" 0A "%PDF-1.4" 0A)",                                              1557, 386_row},
    {"PdfAtOffset1023",              R"("x"*1023 "%PDF-1.4" 0A)",                                                    1557, 386_row},
    // clang-format on
};

class DrawingRequest : public testing::TestWithParam<DecidedCase> {};

TEST_P(DrawingRequest, Answers) { FIExpectDecision(GetParam(), FIFlagExtendedText); }

INSTANTIATE_TEST_SUITE_P(Files, DrawingRequest, testing::ValuesIn(fileCases), FICaseName);

TEST(DrawingRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("group code 1", FIBytes(R"("1" 0A "SECTION" 0A)"), 88_row);
    FIExpectRowLetsPass("SECTION X", FIBytes(R"("0" 0A "SECTION X" 0A)"), 88_row);
    FIExpectRowLetsPass("version 2 behind text", FIBytes(R"("some text" 0A "%PDF-2.0" 0A)"), 386_row);
    FIExpectRowLetsPass("offset 1024", FIBytes(R"("x"*1024 "%PDF-1.4" 0A)"), 386_row);
}

}  // namespace
