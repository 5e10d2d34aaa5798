// Text headers: the sections of a version text, the head of a memo, and the first line of a vCard or vCalendar.
#include "wordproc/text_headers.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "failing_seeks.h"
#include "ordinary_files.h"
#include "reader/reader.h"
#include "support/probe_case.h"

namespace {

void ExpectWholeFile(const std::string& file, FIID answer, std::uint16_t decidingRow) {
    std::uint16_t row = 0;
    EXPECT_EQ(FIIdentifyBytes(file, "LETTER", 0, &row), answer);
    if (answer != 1999) {
        EXPECT_EQ(row, decidingRow);
    }
}

// ---- Version sections ----------------------------------------------------------------------------------------------

FIID SectionsAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeVersionSections, bytes); }

class ProbeVersionSections : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeVersionSections, Answers) { EXPECT_EQ(SectionsAnswer(FIBytes(GetParam().bytes)), GetParam().answer); }

const ProbeCase sectionCases[] = {
    // clang-format off
    {"EmptyFile",             "",                                                       0},
    {"Version4",              R"("[ver]" 0D 0A "4" 0D 0A "[sty]" 0D 0A)",            1057},
    {"Version3",              R"("[ver]" 0D 0A "3" 0D 0A "[sty]" 0D 0A)",            1056},
    {"Version5",              R"("[ver]" 0D 0A "5" 0D 0A "[sty]" 0D 0A)",            1056},
    {"Version0",              R"("[ver]" 0D 0A "0" 0D 0A "[sty]" 0D 0A)",            1056},
    {"Version9",              R"("[ver]" 0D 0A "9" 0D 0A "[sty]" 0D 0A)",            1056},
    {"LastDigitIs2",          R"("[ver]" 0D 0A "1.4.2" 0D 0A "[sty]" 0D 0A)",        1056},
    {"LastDigitIs4",          R"("[ver]" 0D 0A "1.2.4" 0D 0A "[sty]" 0D 0A)",        1057},
    {"LastDigitIs0",          R"("[ver]" 0D 0A "40" 0D 0A "[sty]" 0D 0A)",           1056},
    {"LastDigitIs9",          R"("[ver]" 0D 0A "49" 0D 0A "[sty]" 0D 0A)",           1056},
    {"FirstDigitIs0",         R"("[ver]" 0D 0A "04" 0D 0A "[sty]" 0D 0A)",           1057},
    {"TextBehindTheDigit",    R"("[ver]" 0D 0A 09 "4 alpha/:" 0D 0A "[sty]" 0D 0A)", 1057},
    {"OtherBytesBehind",      R"("[ver]" 0D 0A "4" 00 0A FF B4 1A 0D 0A "[sty]" 0D 0A)", 1057},
    {"NoDigit",               R"("[ver]" 0D 0A "four" 0D 0A "[sty]" 0D 0A)",         1056},
    {"EmptyLine",             R"("[ver]" 0D 0A 0D 0A "[sty]" 0D 0A)",                1056},
    {"TopBitDigit",           R"("[ver]" 0D 0A B4 0D 0A "[sty]" 0D 0A)",             1056},
    {"LongLine",              R"("[ver]" 0D 0A "x"*9000 "4" 0D 0A "[sty]" 0D 0A)",   1057},
    {"TextBehindIt",          R"("[ver]" 0D 0A "4" 0D 0A "[sty]" 0D 0A "text")",     1057},
    {"FirstLineEndsInLF",     R"("[ver]" 0A "4" 0D 0A "[sty]" 0D 0A)",                  0},
    {"FirstLineEndsInCR",     R"("[ver]" 0D "4" 0D 0A "[sty]" 0D 0A)",                  0},
    {"VersionEndsInCR",       R"("[ver]" 0D 0A "4" 0D "[sty]" 0D 0A)",                  0},
    {"VersionEndsInCRCR",     R"("[ver]" 0D 0A "4" 0D 0D 0A "[sty]" 0D 0A)",            0},
    {"VersionEndsInLF",       R"("[ver]" 0D 0A "4" 0A "[sty]" 0D 0A)",                  0},
    {"FirstHeadInCapitals",   R"("[VER]" 0D 0A "4" 0D 0A "[sty]" 0D 0A)",               0},
    {"SecondHeadInCapitals",  R"("[ver]" 0D 0A "4" 0D 0A "[STY]" 0D 0A)",               0},
    {"SecondHeadInMixedCase", R"("[ver]" 0D 0A "4" 0D 0A "[Sty]" 0D 0A)",               0},
    {"OtherSecondHead",       R"("[ver]" 0D 0A "4" 0D 0A "[tag]" 0D 0A)",               0},
    {"SecondHeadLater",       R"("[ver]" 0D 0A "4" 0D 0A 0D 0A "[sty]" 0D 0A)",         0},
    {"SecondHeadEndsInLF",    R"("[ver]" 0D 0A "4" 0D 0A "[sty]" 0A)",                  0},
    {"LineInFront",           R"(0D 0A "[ver]" 0D 0A "4" 0D 0A "[sty]" 0D 0A)",         0},
    {"BlankInFront",          R"(" [ver]" 0D 0A "4" 0D 0A "[sty]" 0D 0A)",              0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Sections, ProbeVersionSections, testing::ValuesIn(sectionCases), FICaseName);

const std::string versionFile = "[ver]\r\n1.4\r\n[sty]\r\n";

TEST(VersionSections, HaveEveryByteOfTheirHeads) {
    for (std::size_t index = 0; index < versionFile.size(); ++index) {
        if (index >= 7 && index < 10) continue;  // the version
        std::string file = versionFile;
        file[index] = static_cast<char>(file[index] ^ 0x20);
        EXPECT_EQ(SectionsAnswer(file), 0) << index;
    }
}

TEST(VersionSections, AreNothingWhenTheFileEndsInside) {
    for (std::size_t size = 0; size < versionFile.size(); ++size) {
        EXPECT_EQ(SectionsAnswer(versionFile.substr(0, size)), 0) << size;
    }
}

TEST(VersionSections, TestTheirSeek) {
    FIExpectEverySeekIsTested(FIProbeVersionSections, versionFile, 1057);
    EXPECT_EQ(FIAnswerOf(FIProbeVersionSections, versionFile, 5), 1057) << "wherever the reader stands";
}

// The rows decide by the first head alone.
TEST(VersionSections, AreNotCalledByTheTable) {
    ExpectWholeFile(versionFile, 1057, 148);
    ExpectWholeFile("[ver]\r\n1.2\r\n[sty]\r\n", 1057, 148);
    ExpectWholeFile("[ver]\r\n", 1057, 148);
    ExpectWholeFile("[ver]\n4\r\n[sty]\r\n", 1999, 148);
}

// ---- Memos ---------------------------------------------------------------------------------------------------------

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

std::string Repeated(std::string_view item, std::size_t times) {
    std::string text;
    for (std::size_t count = 0; count < times; ++count) text += item;
    return text;
}

TEST(MemoHeader, IsNothingWhenTheFileEndsInside) {
    const std::string file = "From: a\r\nTo: b\r\n";
    EXPECT_EQ(MemoAnswer(file), 1132);
    for (std::size_t size = 0; size < file.size(); ++size) EXPECT_EQ(MemoAnswer(file.substr(0, size)), 0) << size;
}

TEST(MemoHeader, StandsInTheFirst15Lines) {
    const std::string line = "text\r\n";
    EXPECT_EQ(MemoAnswer(Repeated(line, 13) + "From: a\r\nTo: b\r\n"), 1132);
    EXPECT_EQ(MemoAnswer(Repeated(line, 14) + "From: a\r\nTo: b\r\n"), 0);
    EXPECT_EQ(MemoAnswer("From: a\r\n" + Repeated(line, 13) + "To: b\r\n"), 1132);
    EXPECT_EQ(MemoAnswer("From: a\r\n" + Repeated(line, 14) + "To: b\r\n"), 0);
    EXPECT_EQ(MemoAnswer("From: a\r\nTo: b\r\n" + Repeated(line, 40)), 1132);
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
    ExpectWholeFile("From: a\r\nTo: b\r\n", 1132, 385);
    ExpectWholeFile("From: a\r\nFrom: b\r\n", 1132, 395);
    ExpectWholeFile("To: a\r\nTo: b\r\n", 1132, 395);
    ExpectWholeFile("Subject: x\r\nTo: a\r\nTo: b\r\n", 1132, 395);
    ExpectWholeFile("From: a\r\nFrom: b", 1999, 395);
    ExpectWholeFile("From: a\r\n\r\nFrom: b\r\n", 1999, 395);
    ExpectWholeFile("From: a\r\n\r\nTo: b\r\n", 1999, 395);
    ExpectWholeFile("From: a\r\n  To: b\r\n", 1999, 395);
    ExpectWholeFile("From: a\r\nTab\there\r\nFrom: b\r\n", 1132, 395);
    ExpectWholeFile("From: a\nFrom: b\n", 1999, 395);
    ExpectWholeFile(std::string(columns, 'a') + "To: b\r\nFrom: c\r\n", 1132, 395);
    ExpectWholeFile("T\r\nFrom: a\r\nFrom: b\r\n", 1999, 395);
    ExpectWholeFile(Repeated("text\r\n", 13) + "From: a\r\nFrom: b\r\n", 1132, 395);
    ExpectWholeFile(Repeated("text\r\n", 14) + "From: a\r\nFrom: b\r\n", 1999, 395);
}

// ---- vCard and vCalendar -------------------------------------------------------------------------------------------

FIID CardAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeVCard, bytes); }

class ProbeVCard : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeVCard, Answers) { EXPECT_EQ(CardAnswer(FIBytes(GetParam().bytes)), GetParam().answer); }

TEST_P(ProbeVCard, AnswersInTheWholeTable) {
    ExpectWholeFile(FIBytes(GetParam().bytes), GetParam().answer == 0 ? FIID{1999} : GetParam().answer, 354);
}

const ProbeCase cardCases[] = {
    // clang-format off
    {"EmptyFile",               "",                                          0},
    {"Card",                    R"("BEGIN:VCARD" 0D 0A)",                 1141},
    {"CardAlone",               R"("BEGIN:VCARD")",                       1141},
    {"CardInSmallLetters",      R"("begin:vcard" 0A)",                    1141},
    {"CardInMixedCase",         R"("bEgIn:VcArD" 0A)",                    1141},
    {"CardWithBlanks",          R"("begin : vCard")",                     1141},
    {"CardWithManyBlanks",      R"("Begin" 20 09 09 20 ":" 09 20 20 "vCard" 0A)", 1141},
    {"CardBehindLongBlanks",    R"("Begin" 20*3000 ":" 09*3000 "vCard" 0A)", 1141},
    {"Cards",                   R"("BEGIN:VCARDS" 0A)",                   1141},
    {"CardAndAnything",         R"("BEGIN:VCARD" 00 FF "x")",             1141},
    {"Calendar",                R"("BEGIN:VCALENDAR" 0D 0A)",             1196},
    {"CalendarAlone",           R"("BEGIN:VCALENDAR")",                   1196},
    {"CalendarInMixedCase",     R"("bEGIN:vcAlenDar" 0D 0A)",             1196},
    {"CalendarWithBlanks",      R"("begin :" 09 "Vcalendar")",            1196},
    {"Calendarx",               R"("BEGIN:VCALENDARX")",                  1196},
    {"Calenda",                 R"("BEGIN:VCALENDA")",                       0},
    {"CalendaAndALineEnd",      R"("BEGIN:VCALENDA" 0D 0A)",                 0},
    {"CalendaAndANul",          R"("BEGIN:VCALENDA" 00)",                    0},
    {"Calender",                R"("BEGIN:VCALENDER" 0D 0A)",                0},
    {"Car",                     R"("BEGIN:VCAR")",                           0},
    {"CarAndALineEnd",          R"("BEGIN:VCAR" 0D 0A)",                     0},
    {"CarAndALineEndMore",      R"("BEGIN:VCAR" 0D 0A "text")",              0},
    {"Cart",                    R"("BEGIN:VCART" 0D 0A)",                    0},
    {"CaldOnly",                R"("BEGIN:VCALD" 0D 0A)",                    0},
    {"Event",                   R"("BEGIN:VEVENT" 0D 0A)",                   0},
    {"NothingBehindV",          R"("BEGIN:V")",                              0},
    {"NoV",                     R"("BEGIN:CARD" 0D 0A)",                     0},
    {"BlankBehindV",            R"("BEGIN:V CARD" 0D 0A)",                   0},
    {"TwoV",                    R"("BEGIN:VVCARD" 0D 0A)",                   0},
    {"NoColon",                 R"("BEGIN VCARD" 0D 0A)",                    0},
    {"TwoColons",               R"("BEGIN::VCARD" 0D 0A)",                   0},
    {"Equals",                  R"("BEGIN=VCARD" 0D 0A)",                    0},
    {"LineEndInFrontOfColon",   R"("BEGIN" 0D 0A ":VCARD" 0D 0A)",           0},
    {"LineEndBehindColon",      R"("BEGIN:" 0D 0A "VCARD" 0D 0A)",           0},
    {"NulBehindColon",          R"("BEGIN:" 00 "VCARD" 0D 0A)",              0},
    {"BlankInFront",            R"(" BEGIN:VCARD" 0D 0A)",                   0},
    {"LineEndInFront",          R"(0D 0A "BEGIN:VCARD" 0D 0A)",              0},
    {"BlankInBegin",            R"("BE GIN:VCARD" 0D 0A)",                   0},
    {"LongerBegin",             R"("BEGINS:VCARD" 0D 0A)",                   0},
    {"ShorterBegin",            R"("BEGI:VCARD" 0D 0A)",                     0},
    {"End",                     R"("END:VCARD" 0D 0A)",                      0},
    {"TopBitBegin",             R"(C2 "EGIN:VCARD" 0D 0A)",                  0},
    {"TopBitV",                 R"("BEGIN:" D6 "CARD" 0D 0A)",               0},
    {"TopBitCard",              R"("BEGIN:VCAR" C4 0D 0A)",                  0},
    {"TopBitCalendar",          R"("BEGIN:VCALENDA" D2)",                    0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(FirstLines, ProbeVCard, testing::ValuesIn(cardCases), FICaseName);

TEST(VCard, HasEveryLetter) {
    for (const std::string_view file :
         {"BEGIN:VCARD\r\n", "begin:vcard\r\n", "BEGIN:VCALENDAR\r\n", "begin:vcalendar\r\n"}) {
        const FIID answer = file.size() == 13 ? 1141 : 1196;
        for (std::size_t index = 0; index + 2 < file.size(); ++index) {
            std::string changed(file);
            changed[index] = static_cast<char>(changed[index] ^ 0x20);
            EXPECT_EQ(CardAnswer(changed), file[index] == ':' ? 0 : answer)
                << file << " in the other case at " << index;
            for (const std::int32_t difference : {0x01, 0x40, 0x60, 0x80, 0xA0}) {
                changed = file;
                changed[index] = static_cast<char>(changed[index] ^ difference);
                EXPECT_EQ(CardAnswer(changed), 0) << file << " at " << index << " differing by " << difference;
            }
        }
    }
}

TEST(VCard, IsNothingWhenTheFileEndsInFrontOfItsLastLetter) {
    for (const std::string_view file : {"begin : vcard", "begin : vcalendar"}) {
        for (std::size_t size = 0; size < file.size(); ++size) EXPECT_EQ(CardAnswer(file.substr(0, size)), 0) << size;
        EXPECT_NE(CardAnswer(file), 0);
    }
}

TEST(VCard, TestsItsSeek) {
    FIExpectEverySeekIsTested(FIProbeVCard, "BEGIN:VCARD\r\n", 1141);
    EXPECT_EQ(FIAnswerOf(FIProbeVCard, "BEGIN:VCARD\r\n", 6), 1141) << "wherever the reader stands";
}

// ---- Ordinary files ------------------------------------------------------------------------------------------------

TEST(TextHeaders, AreInNoOrdinaryFile) {
    for (const std::string& file : {FIEnglishText("\n"), FIEnglishText("\r\n"), FIProgramSource(), FIRandomBytes()}) {
        EXPECT_EQ(SectionsAnswer(file), 0);
        EXPECT_EQ(MemoAnswer(file), 0);
        EXPECT_EQ(CardAnswer(file), 0);
    }
}

}  // namespace
