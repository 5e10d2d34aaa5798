// The head of a memo.
#include "text/memo_headers.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "support/failing_seeks.h"
#include "support/ordinary_files.h"
#include "support/probe_case.h"
#include "support/whole_file.h"

namespace {

FIID MemoAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeMemoHeader, bytes); }

class ProbeMemoHeader : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeMemoHeader, Answers) { EXPECT_EQ(MemoAnswer(FIBytes(GetParam().bytes)), GetParam().answer); }

const ProbeCase memoCases[] = {
    // clang-format off
    {"EmptyFile",               "",                                                             0},
    {"FromAndTo",               R"("From: a" 0D 0A "To: b" 0D 0A)",                          1132},
    {"ToAndFrom",               R"("To: b" 0D 0A "From: a" 0D 0A)",                          1132},
    {"TwoFrom",                 R"("From: a" 0D 0A "From: b" 0D 0A)",                        1132},
    {"TwoTo",                   R"("To: a" 0D 0A "To: b" 0D 0A)",                            1132},
    {"OneFrom",                 R"("From: a" 0D 0A "text" 0D 0A)",                              0},
    {"OneTo",                   R"("To: a" 0D 0A "text" 0D 0A)",                                0},
    {"TextBehindThem",          R"("From: a" 0D 0A "To: b" 0D 0A 0D 0A 0C "text")",          1132},
    {"InCapitals",              R"("FROM: a" 0D 0A "TO: b" 0D 0A)",                          1132},
    {"InSmallLetters",          R"("from: a" 0D 0A "to: b" 0D 0A)",                          1132},
    {"InMixedCase",             R"("fRoM: a" 0D 0A "tO: b" 0D 0A)",                          1132},
    {"InOtherMixedCase",        R"("FrOm: a" 0D 0A "To: b" 0D 0A)",                          1132},
    {"NothingBehindTheColons",  R"("From:" 0D 0A "To:" 0D 0A)",                              1132},
    {"BlankInFrontOfTheColons", R"("From : a" 0D 0A "To : b" 0D 0A)",                           0},
    {"NoColons",                R"("From a" 0D 0A "To b" 0D 0A)",                               0},
    {"OtherWords",              R"("Fred: a" 0D 0A "Tom: b" 0D 0A "Froth: c" 0D 0A "Form: d" 0D 0A)", 0},
    {"LongerWords",             R"("Fromage: a" 0D 0A "Too: b" 0D 0A "Total: c" 0D 0A)",        0},
    {"LastLineNotEnded",        R"("From: a" 0D 0A "To: b")",                                   0},
    {"LastLineEndedByCR",       R"("From: a" 0D 0A "To: b" 0D)",                                0},
    {"LastLineEndedByLF",       R"("From: a" 0D 0A "To: b" 0A)",                                0},
    {"FirstLineEndedByCR",      R"("From: a" 0D "To: b" 0D 0A)",                                0},
    {"FirstLineEndedByLF",      R"("From: a" 0A "To: b" 0D 0A)",                                0},
    {"FirstLineEndedByCRCR",    R"("From: a" 0D 0D 0A "To: b" 0D 0A)",                          0},
    {"SubjectFirst",            R"("Subject: x" 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",       1132},
    {"SubjectBetween",          R"("From: a" 0D 0A "Subject: x" 0D 0A "To: b" 0D 0A)",       1132},
    {"EmptyLineFirst",          R"(0D 0A "From: a" 0D 0A "To: b" 0D 0A)",                       0},
    {"EmptyLineBetween",        R"("From: a" 0D 0A 0D 0A "To: b" 0D 0A)",                       0},
    {"BlankLineBetween",        R"("From: a" 0D 0A " " 0D 0A "To: b" 0D 0A)",                1132},
    {"TabLineBetween",          R"("From: a" 0D 0A 09 0D 0A "To: b" 0D 0A)",                 1132},
    {"Indented",                R"("From: a" 0D 0A "  To: b" 0D 0A)",                           0},
    {"IndentedByATab",          R"("From: a" 0D 0A 09 "To: b" 0D 0A)",                          0},
    {"TwiceInOneLine",          R"("From: a To: b" 0D 0A)",                                     0},
    {"BehindALetter",           R"("From: a" 0D 0A "TTo: b" 0D 0A)",                            0},
    {"TabsAreOrdinary",         R"("From:" 09 "a" 09 0D 0A "To:" 09 "b" 0D 0A)",             1132},
    {"HighBitBytesAreOrdinary", R"("From: " 80 9F FF E4 0D 0A FC "x" 0D 0A "To: " FF 0D 0A)", 1132},
    {"Byte7FIsOrdinary",        R"("From: " 7F 0D 0A "To: " 7F 0D 0A)",                      1132},
    {"Byte1FIsNot",             R"("From: " 1F 0D 0A "To: b" 0D 0A)",                           0},
    {"Byte0CIsNot",             R"("From: a" 0C 0D 0A "To: b" 0D 0A)",                          0},
    {"Byte0CFirst",             R"(0C "From: a" 0D 0A "To: b" 0D 0A)",                          0},
    {"Byte0CInAnotherLine",     R"("From: a" 0D 0A "x" 0C 0D 0A "To: b" 0D 0A)",                0},
    {"Byte00IsNot",             R"("From: a" 00 0D 0A "To: b" 0D 0A)",                          0},
    {"Byte08IsNot",             R"("From: a" 08 0D 0A "To: b" 0D 0A)",                          0},
    {"Byte0BIsNot",             R"("From: a" 0B 0D 0A "To: b" 0D 0A)",                          0},
    {"Byte1AIsNot",             R"("From: a" 1A 0D 0A "To: b" 0D 0A)",                          0},
    {"LFAloneIsNot",            R"("From: a" 0D 0A "x" 0A "To: b" 0D 0A)",                      0},
    {"HighBitLetters",          R"("From: a" 0D 0A D4 "o: b" 0D 0A)",                           0},
    {"OtherBytesForLetters",    R"("From: a" 0D 0A "T/: b" 0D 0A 14 "o: b" 0D 0A)",             0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Memos, ProbeMemoHeader, testing::ValuesIn(memoCases), FICaseName);

// Quirk: a byte that is taken where a letter of "From:" or "To:" should stand is not looked at otherwise.
const ProbeCase takenByteCases[] = {
    // clang-format off
    {"FormFeedBehindT",         R"("T" 0C "x" 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",         1132},
    {"FormFeedBehindTo",        R"("To" 0C 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",            1132},
    {"FormFeedBehindF",         R"("F" 0C 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",             1132},
    {"FormFeedBehindFr",        R"("Fr" 0C 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",            1132},
    {"FormFeedBehindFro",       R"("Fro" 0C 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",           1132},
    {"FormFeedBehindFrom",      R"("From" 0C 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",          1132},
    {"FormFeedTwoBehindT",      R"("Tx" 0C 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",               0},
    {"FormFeedBehindToColon",   R"("To:" 0C 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",              0},
    {"FormFeedTwoBehindF",      R"("Fx" 0C 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",               0},
    {"FormFeedBehindAnother",   R"("xT" 0C 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",               0},
    {"LFBehindT",               R"("T" 0A 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",             1132},
    {"LineEndBehindT",          R"("T" 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",                   0},
    {"LineEndBehindTo",         R"("To" 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",                  0},
    {"LineEndBehindF",          R"("F" 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",                   0},
    {"LineEndBehindFr",         R"("Fr" 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",                  0},
    {"LineEndBehindFro",        R"("Fro" 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",                 0},
    {"LineEndBehindFrom",       R"("From" 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",                0},
    {"LineEndBehindTx",         R"("Tx" 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",               1132},
    {"CRBehindTThenLineEnd",    R"("T" 0D 0D 0A "From: a" 0D 0A "To: b" 0D 0A)",             1132},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(TakenBytes, ProbeMemoHeader, testing::ValuesIn(takenByteCases), FICaseName);

TEST(MemoHeader, IsNothingWhenTheFileEndsInside) {
    const std::string file = "From: a\r\nTo: b\r\n";
    EXPECT_EQ(MemoAnswer(file), 1132);
    for (std::size_t size = 0; size < file.size(); ++size) EXPECT_EQ(MemoAnswer(file.substr(0, size)), 0) << size;
}

TEST(MemoHeader, StandsInTheFirst15Lines) {
    const std::string line = "text\r\n";
    EXPECT_EQ(MemoAnswer(FIRepeat(line, 13) + "From: a\r\nTo: b\r\n"), 1132);
    EXPECT_EQ(MemoAnswer(FIRepeat(line, 14) + "From: a\r\nTo: b\r\n"), 0);
    EXPECT_EQ(MemoAnswer("From: a\r\n" + FIRepeat(line, 13) + "To: b\r\n"), 1132);
    EXPECT_EQ(MemoAnswer("From: a\r\n" + FIRepeat(line, 14) + "To: b\r\n"), 0);
    EXPECT_EQ(MemoAnswer("From: a\r\nTo: b\r\n" + FIRepeat(line, 40)), 1132);
}

constexpr std::size_t columns = 1000;  // a line of so many bytes is ended without a line end

TEST(MemoHeader, HasLinesOf1000BytesAtMost) {
    EXPECT_EQ(MemoAnswer(std::string(columns, 'a') + "To: b\r\nFrom: c\r\n"), 1132);
    EXPECT_EQ(MemoAnswer(std::string(columns - 1, 'a') + "To: b\r\nFrom: c\r\n"), 0);
    EXPECT_EQ(MemoAnswer(std::string(columns + 1, 'a') + "To: b\r\nFrom: c\r\n"), 0);
    EXPECT_EQ(MemoAnswer(std::string(2 * columns, 'a') + "To: b\r\nFrom: c\r\n"), 1132);
    EXPECT_EQ(MemoAnswer(std::string(columns, '\t') + "To: b\r\nFrom: c\r\n"), 1132);
    EXPECT_EQ(MemoAnswer(std::string(columns, '\xE4') + "To: b\r\nFrom: c\r\n"), 1132);
}

TEST(MemoHeader, CountsLinesWithoutALineEnd) {
    EXPECT_EQ(MemoAnswer(std::string(13 * columns, 'a') + "To: b\r\nFrom: c\r\n"), 1132);
    EXPECT_EQ(MemoAnswer(std::string(14 * columns, 'a') + "To: b\r\nFrom: c\r\n"), 0);
}

// Quirk: the line end of a line of exactly 1,000 bytes is an empty line.
TEST(MemoHeader, EndsAtTheLineEndOfALineOf1000Bytes) {
    EXPECT_EQ(MemoAnswer(std::string(columns - 1, 'a') + "\r\nTo: b\r\nFrom: c\r\n"), 1132);
    EXPECT_EQ(MemoAnswer(std::string(columns, 'a') + "\r\nTo: b\r\nFrom: c\r\n"), 0);
    EXPECT_EQ(MemoAnswer(std::string(columns + 1, 'a') + "\r\nTo: b\r\nFrom: c\r\n"), 1132);
}

TEST(MemoHeader, EndsTheLineOfAHitAt1000BytesToo) {
    const std::string from = "From:" + std::string(columns - 5, 'a');
    const std::string to = "To:" + std::string(columns - 3, 'b');
    EXPECT_EQ(MemoAnswer(from + to), 1132);
    EXPECT_EQ(MemoAnswer(to + from), 1132);
    EXPECT_EQ(MemoAnswer((from + to).substr(0, 2 * columns - 1)), 0);
    EXPECT_EQ(MemoAnswer((to + from).substr(0, 2 * columns - 1)), 0);
}

// Every byte of a line counts, also the ones that were taken as letters.
TEST(MemoHeader, CountsTheBytesTakenAsLetters) {
    for (const std::string start : {"Tx", "To:", "Tox", "Fx", "Frx", "Frox", "Fromx", "From:", "xT", "xFrom:"}) {
        const bool hit = start.back() == ':' && start.front() != 'x';
        const std::string rest(columns - start.size(), 'a');
        const std::string more = hit ? "To: b\r\n" : "To: b\r\nTo: c\r\n";
        EXPECT_EQ(MemoAnswer(start + rest + more), 1132) << start;
        EXPECT_EQ(MemoAnswer(start + rest.substr(1) + more + "x\r\n"), 0) << start << ", one byte less";
        EXPECT_EQ(MemoAnswer(start + rest + "a" + more + "x\r\n"), 0) << start << ", one byte more";
    }
}

TEST(MemoHeader, TestsItsSeek) {
    FIExpectEverySeekIsTested(FIProbeMemoHeader, "From: a\r\nTo: b\r\n", 1132);
    EXPECT_EQ(FIAnswerOf(FIProbeMemoHeader, "From: a\r\nTo: b\r\n", 9), 1132) << "wherever the reader stands";
}

TEST(MemoHeader, ReadsNoFurtherThan15Lines) {
    const auto handle = FIMakeTestHandle(std::string(100000, 'a'));
    handle->bytesPerRead = 1;
    EXPECT_EQ(FIAnswerOver(FIProbeMemoHeader, *handle), 0);
    EXPECT_LE(handle->bytesDelivered, 15 * columns);
}

// Row 385 takes the memos with both lines; what it leaves comes here.
TEST(MemoHeader, WorksInTheWholeTable) {
    FIExpectWholeFile("From: a\r\nTo: b\r\n", 1132, 385_row);
    FIExpectWholeFile("From: a\r\nFrom: b\r\n", 1132, 395_row);
    FIExpectWholeFile("To: a\r\nTo: b\r\n", 1132, 395_row);
    FIExpectWholeFile("Subject: x\r\nTo: a\r\nTo: b\r\n", 1132, 395_row);
    FIExpectWholeFile("From: a\r\nFrom: b", 1999, 395_row);
    FIExpectWholeFile("From: a\r\n\r\nFrom: b\r\n", 1999, 395_row);
    FIExpectWholeFile("From: a\r\n\r\nTo: b\r\n", 1999, 395_row);
    FIExpectWholeFile("From: a\r\n  To: b\r\n", 1999, 395_row);
    FIExpectWholeFile("From: a\r\nTab\there\r\nFrom: b\r\n", 1132, 395_row);
    FIExpectWholeFile("From: a\nFrom: b\n", 1999, 395_row);
    FIExpectWholeFile(std::string(columns, 'a') + "To: b\r\nFrom: c\r\n", 1132, 395_row);
    FIExpectWholeFile("T\r\nFrom: a\r\nFrom: b\r\n", 1999, 395_row);
    FIExpectWholeFile(FIRepeat("text\r\n", 13) + "From: a\r\nFrom: b\r\n", 1132, 395_row);
    FIExpectWholeFile(FIRepeat("text\r\n", 14) + "From: a\r\nFrom: b\r\n", 1999, 395_row);
}

TEST(MemoHeader, IsInNoOrdinaryFile) {
    for (const std::string& file : FIOrdinaryFiles()) {
        EXPECT_EQ(MemoAnswer(file), 0);
    }
}

}  // namespace
