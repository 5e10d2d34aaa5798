// Text told by its characters: the classes of bytes, the line test, the ratios, and the order of the decision.
#include <cstdint>
#include <string>
#include <vector>

#include "platform/base_utility.h"
#include "reader/reader.h"
#include "support/case_name.h"
#include "support/probe_case.h"

namespace {

using ::PrintTo;

using namespace std::string_literals;

constexpr FIID plainText = 4022;   // text without bytes of 128 and above
constexpr FIID highText = 4005;    // text with them
constexpr FIID atSignText = 1184;  // rich in at-signs
constexpr FIID notText = 1999;

// The entry as a routine; it stores a result in every case and returns 0.
FIID TellText(FIReader& reader) {
    FIID fiid = 0;
    EXPECT_EQ(FIExtTextID(&reader, &fiid), 0);
    return fiid;
}

struct TextCase {
    const char* name;
    std::string bytes;
    FIID answer;
};

class ExtendedText : public testing::TestWithParam<TextCase> {};

TEST_P(ExtendedText, Answers) { EXPECT_EQ(FIAnswerOf(TellText, GetParam().bytes), GetParam().answer); }

// ---- Classes of bytes ---------------------------------------------------------------------------------------------

// A file of three bytes: a control byte withdraws the answer text, which shows the class of its first byte.
TEST(TextBytes, EveryByte) {
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        const bool isWhite = byte == 0x08 || byte == 0x09 || byte == 0x0A || byte == 0x0C || byte == 0x0D;
        const FIID expected = byte >= 0x80 ? highText : byte < 0x20 && !isWhite ? notText : plainText;
        EXPECT_EQ(FIAnswerOf(TellText, static_cast<char>(byte) + "xx"s), expected) << byte;
        EXPECT_EQ(FIAnswerOf(TellText, "x"s + static_cast<char>(byte) + "x"), expected)
            << byte << " in the second place";
    }
}

TEST(TextBytes, OneByteIsNotLookedAt) {
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(FIAnswerOf(TellText, std::string(1, static_cast<char>(byte))), plainText) << byte;
    }
}

TEST(TextBytes, TheLastByteIsNotLookedAt) {
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(FIAnswerOf(TellText, "x"s + static_cast<char>(byte)), plainText) << byte;
        EXPECT_EQ(FIAnswerOf(TellText, "xx"s + static_cast<char>(byte)), plainText) << byte;
    }
}

// A byte's share in the text bytes and in the blanks and at-signs: eleven at-signs, high bytes, and two of the byte.
// Two text bytes besides the at-signs ask for four high bytes.
TEST(TextBytes, WhatCountsAsTextBesidesAtSigns) {
    for (std::uint32_t byte = 1; byte < 256; ++byte) {
        if (byte < 0x20 && byte != 0x08 && byte != 0x09 && byte != 0x0C) continue;  // line ends and control bytes
        const std::string two(2, static_cast<char>(byte));
        const bool isTextBesides = byte < 0x80 && byte != '@';
        EXPECT_EQ(FIAnswerOf(TellText, std::string(11, '@') + std::string(4, '\x80') + two + "."), atSignText) << byte;
        EXPECT_EQ(FIAnswerOf(TellText, std::string(11, '@') + std::string(3, '\x80') + two + "."),
                  isTextBesides ? highText : atSignText)
            << byte;
    }
}

// ---- The line test ------------------------------------------------------------------------------------------------
//
// A control byte in the last place that is looked at makes the line test visible: with it the answer is 4022 when the
// test passes and 1999 when it fails.

enum LineEnd { Lf, Cr, CrLf, CrCrLf };

struct LineEnds {
    LineEnd kind;
    std::uint32_t count;
};

// A file of size bytes with so many line ends of each kind and a control byte in the last place but one.
std::string TextWith(std::size_t size, const std::vector<LineEnds>& lineEnds) {
    static const std::string bytesOf[] = {"\n", "\r", "\r\n", "\r\r\n"};
    std::string bytes;
    for (const LineEnds& ends : lineEnds) {
        for (std::uint32_t index = 0; index < ends.count; ++index) bytes += "xx" + bytesOf[ends.kind];
    }
    bytes += "xx";
    return bytes + std::string(size - bytes.size() - 2, 'x') + "\x01x";
}

struct LineTestCase {
    const char* name;
    std::size_t size;  // L, the ends expected, is size / 302 up to 10; Q, those of other kinds tolerated, is L / 4
    std::vector<LineEnds> lineEnds;
    bool passes;
};

class LineTest : public testing::TestWithParam<LineTestCase> {};

TEST_P(LineTest, Answers) {
    const std::string bytes = TextWith(GetParam().size, GetParam().lineEnds);
    ASSERT_EQ(bytes.size(), GetParam().size);
    EXPECT_EQ(FIAnswerOf(TellText, bytes), GetParam().passes ? plainText : notText);
}

const LineTestCase lineTestCases[] = {
    // clang-format off
    {"Short0Ends",                  100,  {},                                              true},
    {"ShortOnlyLf",                 100,  {{Lf, 3}},                                       true},
    {"ShortOnlyCr",                 100,  {{Cr, 3}},                                       true},
    {"ShortOnlyCrLf",               100,  {{CrLf, 3}},                                     true},
    {"ShortOnlyCrCrLf",             100,  {{CrCrLf, 3}},                                   true},
    {"ShortCrLfAndCrCrLf",          100,  {{CrLf, 1}, {CrCrLf, 1}},                        true},
    {"ShortLfAndCrLf",              100,  {{Lf, 1}, {CrLf, 1}},                            false},
    {"ShortLfAndCrCrLf",            100,  {{Lf, 1}, {CrCrLf, 1}},                          false},
    {"ShortLfAndCr",                100,  {{Lf, 1}, {Cr, 1}},                              false},
    {"ShortCrAndCrLf",              100,  {{Cr, 1}, {CrLf, 1}},                            false},
    {"ShortCrAndCrCrLf",            100,  {{Cr, 1}, {CrCrLf, 1}},                          false},
    {"Size301Expects0",             301,  {},                                              true},
    {"Size301LfAndCrLf",            301,  {{Lf, 1}, {CrLf, 1}},                            false},
    {"Size302Expects1",             302,  {},                                              false},
    {"Size302OneLf",                302,  {{Lf, 1}},                                       true},
    {"Size302OneCr",                302,  {{Cr, 1}},                                       true},
    {"Size302OneCrLf",              302,  {{CrLf, 1}},                                     true},
    {"Size302OneCrCrLf",            302,  {{CrCrLf, 1}},                                   true},
    {"Size302LfAndCr",              302,  {{Lf, 1}, {Cr, 1}},                              false},
    {"Size603OneLf",                603,  {{Lf, 1}},                                       true},
    {"Size604OneLf",                604,  {{Lf, 1}},                                       false},
    {"Size604TwoLf",                604,  {{Lf, 2}},                                       true},
    {"Size604OneCr",                604,  {{Cr, 1}},                                       false},
    {"Size604TwoCr",                604,  {{Cr, 2}},                                       true},
    {"Size604OneCrLf",              604,  {{CrLf, 1}},                                     false},
    {"Size604TwoCrLf",              604,  {{CrLf, 2}},                                     true},
    {"Size604OneCrCrLf",            604,  {{CrCrLf, 1}},                                   false},
    {"Size604TwoCrCrLf",            604,  {{CrCrLf, 2}},                                   true},
    {"Size604CrLfAndCrCrLfDoNotAdd", 604, {{CrLf, 1}, {CrCrLf, 1}},                        false},
    {"Size1207Tolerates0",          1207, {{Lf, 3}},                                       true},
    {"Size1207OneOther",            1207, {{Lf, 3}, {Cr, 1}},                              false},
    {"Size1208Expects4",            1208, {{Lf, 3}},                                       false},
    {"Size1208FourLf",              1208, {{Lf, 4}},                                       true},
    {"Size1208LfOneOfEachOther",    1208, {{Lf, 4}, {Cr, 1}, {CrLf, 1}, {CrCrLf, 1}},      true},
    {"Size1208LfTwoCr",             1208, {{Lf, 4}, {Cr, 2}},                              false},
    {"Size1208LfTwoCrLf",           1208, {{Lf, 4}, {CrLf, 2}},                            false},
    {"Size1208LfTwoCrCrLf",         1208, {{Lf, 4}, {CrCrLf, 2}},                          false},
    {"Size1208CrOneOfEachOther",    1208, {{Cr, 4}, {Lf, 1}, {CrLf, 1}, {CrCrLf, 1}},      true},
    {"Size1208CrTwoLf",             1208, {{Cr, 4}, {Lf, 2}},                              false},
    {"Size1208CrTwoCrLf",           1208, {{Cr, 4}, {CrLf, 2}},                            false},
    {"Size1208CrTwoCrCrLf",         1208, {{Cr, 4}, {CrCrLf, 2}},                          false},
    {"Size1208CrLfOneOfEachOther",  1208, {{CrLf, 4}, {Lf, 1}, {Cr, 1}},                   true},
    {"Size1208CrLfTwoLf",           1208, {{CrLf, 4}, {Lf, 2}},                            false},
    {"Size1208CrLfTwoCr",           1208, {{CrLf, 4}, {Cr, 2}},                            false},
    {"Size1208CrLfAndManyCrCrLf",   1208, {{CrLf, 4}, {CrCrLf, 9}},                        true},
    {"Size1208CrCrLfOneOfEachOther", 1208, {{CrCrLf, 4}, {Lf, 1}, {Cr, 1}},                true},
    {"Size1208CrCrLfTwoLf",         1208, {{CrCrLf, 4}, {Lf, 2}},                          false},
    {"Size1208ThreeAndThree",       1208, {{CrLf, 3}, {CrCrLf, 3}},                        false},
    {"Size2415Tolerates1",          2415, {{Lf, 7}, {Cr, 2}},                              false},
    {"Size2416Tolerates2",          2416, {{Lf, 8}, {Cr, 2}},                              true},
    {"Size2416Expects8",            2416, {{Lf, 7}, {Cr, 2}},                              false},
    {"Size3019Expects9",            3019, {{CrLf, 9}},                                     true},
    {"Size3019EightAreTooFew",      3019, {{CrLf, 8}},                                     false},
    {"Size3020Expects10",           3020, {{CrLf, 10}},                                    true},
    {"Size3020NineAreTooFew",       3020, {{CrLf, 9}},                                     false},
    {"Size3020Tolerates2",          3020, {{CrLf, 10}, {Lf, 2}, {Cr, 2}},                  true},
    {"Size3020DoesNotTolerate3",    3020, {{CrLf, 10}, {Lf, 3}},                           false},
    {"Size3322ExpectsNoMore",       3322, {{Lf, 10}},                                      true},
    {"Size4095Expects10",           4095, {{Lf, 10}},                                      true},
    {"Size4095NineAreTooFew",       4095, {{Lf, 9}},                                       false},
    {"Size4096Expects10",           4096, {{Lf, 10}},                                      true},
    {"Size4096NineAreTooFew",       4096, {{Lf, 9}},                                       false},
    {"Size4096Tolerates2",          4096, {{Lf, 10}, {Cr, 2}, {CrLf, 2}, {CrCrLf, 2}},     true},
    {"Size4096DoesNotTolerate3",    4096, {{Lf, 10}, {Cr, 3}},                             false},
    {"ManyOfTwoKinds",              4096, {{Lf, 100}, {Cr, 100}},                          false},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Text, LineTest, testing::ValuesIn(lineTestCases), FICaseName);

// ---- Line ends and the two bytes behind a CR ----------------------------------------------------------------------

const TextCase lineEndCases[] = {
    // clang-format off
    // A control byte seen makes three-byte files 1999; LF beside CR fails the line test of a short file.
    {"CrLfIsOneEnd",                    "\r\n"s,                                 plainText},
    {"CrCrLfIsOneEnd",                  "\r\r\n"s,                               plainText},
    {"CrAtTheEndReadsOn",               "x\r"s,                                  plainText},
    {"CrAndAByte",                      "\r\x01"s,                               plainText},  // only one place is looked at
    {"ControlBehindCrIsReadAgain",      "\r\x01x"s,                              notText},
    {"CrXControlAfterMixedEnds",        "x\nx\rx\x01x"s,                         notText},
    {"CrControlAfterMixedEnds",         "x\nx\r\x01xx"s,                         notText},
    {"CrLfControlAfterMixedEnds",       "x\nx\r\n\x01xx"s,                       notText},
    {"CrCrLfControlAfterMixedEnds",     "x\nx\r\r\n\x01xx"s,                     notText},
    {"CrFromTheSecondSlotLosesNothing", "x\nx\rx\r\x01xxx"s,                     notText},
    {"CrCrLosesTheThirdByte",           "x\nx\r\r\x01xxx"s,                      plainText},
    {"CrCrLosesTheThirdByteOnly",       "x\nx\r\rx\x01xx"s,                      notText},
    {"CrCrCrLosesTheThirdCr",           "x\nx\r\r\r\x01xxxx"s,                   notText},
    {"CrCrLosesAHighByte",              "\r\r\x80xxxxxx"s,                       plainText},
    {"LostBytesComeBackAsTheEnd",       "\r\rx\r\rx"s,                           highText},
    {"OneLostByteLeavesTheEndUnread",   "\r\rxxx"s,                              plainText},
    {"CrLfInTheSlotsIsOneEnd",          "x\rx\r\nx\x01x"s,                       notText},
    {"CrCrLfLaterIsOneEnd",             "\rx\r\r\nx\x01x"s,                      notText},
    {"TwoCrCrLf",                       "\r\r\n\r\r\nx\x01x"s,                   plainText},
    {"ThreeCrAndLf",                    "\r\r\r\nx\x01xx"s,                      notText},
    {"HighByteBehindTheLastCr",         "xx\r\x80"s,                             plainText},
    {"HighByteTwoBehindTheLastCr",      "xx\rx\x80"s,                            plainText},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(LineEnds, ExtendedText, testing::ValuesIn(lineEndCases), FICaseName);

// ---- The decision -------------------------------------------------------------------------------------------------

std::string At(std::size_t count) { return std::string(count, '@'); }
std::string High(std::size_t count) { return std::string(count, '\x80'); }
std::string Blank(std::size_t count) { return std::string(count, ' '); }
std::string Plain(std::size_t count) { return std::string(count, 'x'); }
const std::string mixed =
    "\n\r";  // two ends of two kinds, which fail the line test of a short file; the CR takes no LF

const TextCase decisionCases[] = {
    // clang-format off
    // The last byte of each is not looked at.
    {"EmptyFile",                             "",                                                     plainText},
    {"PlainText",                             "Hello, world.\n",                                      plainText},
    {"OneHighByte",                           "Hello, w\xF6rld.\n",                                   highText},
    {"ManyHighBytes",                         High(100),                                              highText},
    {"NoLineEndsIn1000Bytes",                 Plain(1000),                                            plainText},
    {"NoLineEndsIn1000BytesHigh",             Plain(500) + High(500),                                 highText},
    {"MixedLineEnds",                         "x" + mixed + "xxxx",                                   plainText},
    {"MixedLineEndsHigh",                     "x" + mixed + "xx\x80xx",                               highText},
    // Control bytes.
    {"ControlFirstThenHighBytes",             "\x01" + High(20),                                      plainText},
    {"ControlFirstIn4Bytes",                  "\x01xxx",                                              plainText},
    {"ControlFirstIn3Bytes",                  "\x01xx",                                               notText},
    {"ControlFirstIn2Bytes",                  "\x01x",                                                notText},
    {"ControlIn3BytesHighBefore",             "\x80\x01x",                                            highText},
    {"ControlStopsTheScanAtOnce",             "xx\x01" + High(20),                                    plainText},
    {"ControlHighBefore",                     "x\x80\x01xxx",                                         highText},
    {"ControlInMixedLineEnds",                "x" + mixed + "x\x01xxx",                               notText},
    {"ControlInMixedLineEndsHighBefore",      "x\x80" + mixed + "x\x01xxx",                           highText},
    {"ControlInMixedLineEndsHighBehind",      "x" + mixed + "x\x01\x80\x80\x80",                      notText},
    {"ControlInALongTextWithoutLineEnds",     Plain(400) + "\x01xx",                                  notText},
    {"ControlInALongTextWithLineEnds",        Plain(100) + "\n" + Plain(300) + "\x01xx",              plainText},
    {"DosTextEndsIn1A",                       "one\r\ntwo\r\n\x1A\x1A",                               plainText},
    {"DosTextWith1AIn3Bytes",                 "x\x1A\x1A",                                            notText},
    {"NulByte",                               "xx\0xx"s,                                              plainText},
    {"NulByteInMixedLineEnds",                "x" + mixed + "x\0xx"s,                                 notText},
    // At-signs. The line test passes, there are more of them than blanks.
    {"ElevenAtSigns",                         At(11) + "x",                                           atSignText},
    {"TenAtSigns",                            At(10) + "x",                                           plainText},
    {"TenAtSignsHigh",                        At(10) + High(5) + "x",                                 highText},
    {"ElevenOf118Places",                     At(11) + High(107) + "x",                               atSignText},
    {"ElevenOf119Places",                     At(11) + High(108) + "x",                               highText},
    {"TwelveOf128Places",                     At(12) + High(116) + "x",                               atSignText},
    {"TwelveOf129Places",                     At(12) + High(117) + "x",                               highText},
    {"TwiceTheOtherTextBytes",                At(11) + Plain(5) + High(10) + "x",                     atSignText},
    {"LessThanTwiceTheOtherTextBytes",        At(11) + Plain(5) + High(9) + "x",                      highText},
    {"OneOtherTextByteNoHighByte",            At(20) + Plain(1) + "x",                                plainText},
    {"OneOtherTextByteOneHighByte",           At(20) + Plain(1) + High(1) + "x",                      highText},
    {"OneOtherTextByteTwoHighBytes",          At(20) + Plain(1) + High(2) + "x",                      atSignText},
    {"ALineEndIsATextByte",                   At(20) + "\n" + High(1) + "x",                          highText},
    {"ALineEndIsATextByteOfWhichTwo",         At(20) + "\n" + High(2) + "x",                          atSignText},
    {"CrLfIsOneTextByte",                     At(20) + "\r\n" + High(2) + "x",                        atSignText},
    {"CrCrLfIsOneTextByte",                   At(20) + "\r\r\n" + High(2) + "x",                      atSignText},
    {"CrLfIsATextByte",                       At(20) + "\r\n" + High(1) + "x",                        highText},
    {"CrCrLfIsATextByte",                     At(20) + "\r\r\n" + High(1) + "x",                      highText},
    {"CrIsATextByte",                         At(20) + "\r" + High(1) + "x",                          highText},
    {"CrIsATextByteOfWhichTwo",               At(20) + "\r" + High(2) + "x",                          atSignText},
    {"ABlankIsATextByte",                     At(20) + Blank(1) + High(1) + "x",                      highText},
    {"ABlankIsATextByteOfWhichTwo",           At(20) + Blank(1) + High(2) + "x",                      atSignText},
    {"At500InOtherText",                      At(500) + Plain(3600),                                  plainText},
    {"AtSignsAndAControlByte",                At(20) + "\x01" + Plain(10),                            atSignText},
    {"AtSignsHighAndAControlByte",            At(11) + High(5) + "\x01" + Plain(10),                  atSignText},
    // As many blanks as at-signs: the text test asks for four text bytes for each high byte.
    {"AsManyBlanks",                          At(11) + Blank(11) + High(22) + "x",                    atSignText},
    {"AsManyBlanksTooFewHighBytes",           At(11) + Blank(11) + High(21) + "x",                    highText},
    {"OneBlankMore",                          At(11) + Blank(12) + High(24) + "x",                    atSignText},
    {"OneBlankLess",                          At(11) + Blank(10) + High(20) + "x",                    atSignText},
    {"AsManyBlanksNoHighByte",                At(20) + Blank(20) + "x",                               plainText},
    // The line test fails.
    {"MixedAtSigns",                          At(11) + mixed + High(4) + "x",                         atSignText},
    {"MixedAtSignsTooFewHighBytes",           At(11) + mixed + High(3) + "x",                         highText},
    {"MixedTenAtSigns",                       At(10) + mixed + High(4) + "x",                         highText},
    {"MixedAtSignsNoHighByte",                At(11) + mixed + "xx",                                  plainText},
    {"MixedAtSignsAndAControlByte",           At(11) + mixed + High(4) + "\x01" + Plain(5),           atSignText},
    {"MixedAtSignsATenth",                    At(11) + mixed + High(105) + "x",                       atSignText},
    {"MixedAtSignsBelowATenth",               At(11) + mixed + High(106) + "x",                       highText},
    {"LongAtSignsWithoutLineEnds",            At(400),                                                atSignText},
    {"LongAtSignsWithoutLineEndsHigh",        At(100) + High(300),                                    atSignText},
    {"LongAtSignsAlmostATenth",               At(39) + High(361),                                     highText},
    {"LongAtSignsATenth",                     At(40) + High(360),                                     atSignText},
    // 4,096 bytes at the most.
    {"HighByteAt4094",                        Plain(4094) + "\x80" + Plain(6000),                     highText},
    {"HighByteAt4095",                        Plain(4095) + "\x80" + Plain(6000),                     plainText},
    {"HighByteAt4094Of4096",                  Plain(4094) + "\x80x",                                  highText},
    {"HighByteAt4095Of4096",                  Plain(4095) + "\x80",                                   plainText},
    {"HighByteAt4093Of4095",                  Plain(4093) + "\x80x",                                  highText},
    {"HighByteAt4094Of4095",                  Plain(4094) + "\x80",                                   plainText},
    {"HighByteBehindALostByte",               "\r\rx" + Plain(4092) + "\x80" + Plain(100),            highText},
    {"HighByteBehindALostByteOneFurther",     "\r\rx" + Plain(4093) + "\x80" + Plain(100),            plainText},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Decision, ExtendedText, testing::ValuesIn(decisionCases), FICaseName);

// ---- Handles that fail --------------------------------------------------------------------------------------------

TEST(ExtendedTextHandle, AFailingSeekToTheEndLeavesTheReadersOffset) {
    const std::string bytes = Plain(99) + "\x80" + Plain(100);
    for (const std::uint32_t start : {0U, 1U, 100U, 101U, 150U}) {
        const auto noSeek = FIMakeTestHandle(bytes);
        noSeek->failSeekFromEnd = true;
        EXPECT_EQ(FIAnswerOver(TellText, *noSeek, start), start > 100 ? highText : plainText) << start;
        const auto noTell = FIMakeTestHandle(bytes);
        noTell->failTell = true;
        EXPECT_EQ(FIAnswerOver(TellText, *noTell, start), start > 100 ? highText : plainText) << start;
    }
}

TEST(ExtendedTextHandle, TheReadersOffsetDoesNotMatterOtherwise) {
    const std::string bytes = Plain(99) + "\x80" + Plain(100);
    for (const std::uint32_t start : {0U, 1U, 100U, 200U, 5000U}) {
        EXPECT_EQ(FIAnswerOver(TellText, *FIMakeTestHandle(bytes), start), highText) << start;
    }
}

TEST(ExtendedTextHandle, NoSeekAtAll) {
    const auto handle = FIMakeTestHandle(High(100));
    handle->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(TellText, *handle), plainText) << "a sample of the size 0";
}

// Seek 0 is the one to the end. The reader's seeks to the size and back to 0 fail then, and the handle stays at the
// end.
TEST(ExtendedTextHandle, FailingSeeksBehindTheFirst) {
    for (const std::uint32_t failing : {1U, 2U}) {
        const auto handle = FIMakeTestHandle(Plain(100));
        handle->failSeeksFrom = failing;
        EXPECT_EQ(FIAnswerOver(TellText, *handle), highText) << failing;
    }
}

TEST(ExtendedTextHandle, AnUnreadableFileIsAllHighBytes) {
    const struct {
        std::size_t size;
        FIID answer;
    } cases[] = {{0, plainText},  {1, plainText},  {2, highText},   {3, highText},
                 {301, highText}, {302, highText}, {5000, highText}};
    for (const auto& unreadable : cases) {
        const auto handle = FIMakeTestHandle(Plain(unreadable.size));
        handle->failReadsFrom = 0;
        EXPECT_EQ(FIAnswerOver(TellText, *handle), unreadable.answer) << unreadable.size;
    }
}

TEST(ExtendedTextHandle, ATornFileIsHighBytesFromThereOn) {
    const auto plain = FIMakeTestHandle(Plain(4096));
    plain->failReadsFrom = 1;  // the first 2,048 bytes can be read
    EXPECT_EQ(FIAnswerOver(TellText, *plain), highText);

    const auto atSigns = FIMakeTestHandle(At(4096));
    atSigns->failReadsFrom = 1;
    EXPECT_EQ(FIAnswerOver(TellText, *atSigns), atSignText);

    const auto short2048 = FIMakeTestHandle(Plain(2048));
    short2048->failReadsFrom = 1;
    EXPECT_EQ(FIAnswerOver(TellText, *short2048), plainText) << "the end is not read";
}

TEST(ExtendedTextHandle, AReaderOfTheHostsOwn) {
    const auto handle = FIMakeTestHandle("x\x80x");
    FIReader reader;
    reader.bytesLeft = 0;
    reader.bytesFilled = 0;
    reader.bufferPos = 0;
    reader.file = FIFileOf(*handle);
    FIID fiid = 0;
    EXPECT_EQ(FIExtTextID(&reader, &fiid), 0);
    EXPECT_EQ(fiid, highText);
}

TEST(ExtendedTextCost, ReadsNoMoreThan4096BytesOfALongFile) {
    const auto handle = FIMakeTestHandle(Plain(100000));
    EXPECT_EQ(FIAnswerOver(TellText, *handle), plainText);
    EXPECT_EQ(handle->bytesDelivered, 4096U);
}

// ---- Through the whole system: no row matches ---------------------------------------------------------------------

class IdentifyText : public testing::TestWithParam<TextCase> {};

TEST_P(IdentifyText, Answers) {
    std::uint16_t row = 1;
    EXPECT_EQ(FIIdentifyBytes(GetParam().bytes, "a.txt", FIFlagExtendedText, &row), GetParam().answer);
    EXPECT_EQ(row, 0);
    EXPECT_EQ(FIIdentifyBytes(GetParam().bytes, "a.txt", 0, &row), notText) << "text identification is not asked for";
    EXPECT_EQ(row, 0);
}

// The high bytes are 85, which no row looks for and which is no code of the word processors that are told by codes.
const TextCase identifyCases[] = {
    // clang-format off
    {"EmptyFile",                   "",                                                                plainText},
    {"OneByte",                     "x",                                                               plainText},
    {"OneControlByte",              "\x01",                                                            plainText},
    {"OneNulByte",                  "\0"s,                                                             plainText},
    {"OneHighByte",                 "\x85",                                                            plainText},
    {"TwoBytes",                    "x\x85",                                                           plainText},
    {"ThreeBytesOneControl",        "x\x01x",                                                          notText},
    {"FourBytesOneControl",         "x\x01xx",                                                         plainText},
    {"PlainText",                   "Dear reader,\nthis is plain.\n",                                  plainText},
    {"PlainTextCrLf",               "Dear reader,\r\nthis is plain.\r\n",                              plainText},
    {"HighText",                    "Dear reader,\nthis \x85 is not plain.\n",                         highText},
    {"LongLines",                   Plain(1000),                                                       plainText},
    {"DosTextEndsIn1A",             "one line\r\nand two\r\n\x1A\x1A",                                 plainText},
    {"ControlInMixedLineEnds",      "one\ntwo\rthree \x01 four",                                       notText},
    {"ControlInMixedLineEndsHigh",  "one\ntwo\rthr\x85" "ee \x01 four",                                highText},
    {"ControlInALongLine",          Plain(400) + "\x01xx",                                             notText},
    {"AtSigns",                     At(40) + "x",                                                      atSignText},
    {"AtSignsAndHighBytes",         At(20) + Plain(2) + std::string(4, '\x85') + "x",                  atSignText},
    {"At500InOtherText",            At(500) + Plain(3600),                                             plainText},
    {"HighByteAt4094",              Plain(4094) + "\x85" + Plain(6000),                                highText},
    {"HighByteAt4095",              Plain(4095) + "\x85" + Plain(6000),                                plainText},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Text, IdentifyText, testing::ValuesIn(identifyCases), FICaseName);

TEST(IdentifyTextOption, TheGlobalOptionAllowsIt) {
    ASSERT_EQ(FIInit(nullptr), 0);
    const std::uint32_t on = 1;
    ASSERT_EQ(UTSetOption(UTGetGlobalOptionSet(), UTOptionTextIdentification, &on, sizeof(on)), 0);
    EXPECT_EQ(FIIdentifyBytes("plain text\n", "", 0), plainText);
    const std::uint32_t otherBits = 0xFFFFFFFE;
    ASSERT_EQ(UTSetOption(UTGetGlobalOptionSet(), UTOptionTextIdentification, &otherBits, sizeof(otherBits)), 0);
    EXPECT_EQ(FIIdentifyBytes("plain text\n", "", 0), notText);
    EXPECT_EQ(FIIdentifyBytes("plain text\n", "", FIFlagExtendedText), plainText);
    EXPECT_EQ(FIDeInit(nullptr), 0);
}

}  // namespace
