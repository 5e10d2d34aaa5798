// Trailers and markers: a layout trailer behind a fill of 1A, an escape sequence, codes behind pipe signs, and a
// checksum.
#include "wordproc/trailers.h"

#include <cstddef>
#include <cstdint>
#include <regex>
#include <string>
#include <string_view>

#include "support/failing_seeks.h"
#include "support/ordinary_files.h"
#include "support/probe_case.h"
#include "support/whole_file.h"

namespace {

// Puts bytes into a file at an offset; the file grows with zeros.
void Put(std::string& file, std::size_t offset, std::string_view bytes) {
    if (file.size() < offset + bytes.size()) file.resize(offset + bytes.size());
    file.replace(offset, bytes.size(), bytes);
}

// ---- The layout trailer --------------------------------------------------------------------------------------------

FIID LayoutAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeLayoutTrailer, bytes); }

constexpr std::string_view marker = "\x1A\x1ALAYOUT 000\r\n";
constexpr std::size_t record = 128;

const std::string endOf1020("\0\0\x02", 3);  // the three bytes behind the fill
const std::string endOf1024("\0\0\x03", 3);

// A file of text with the marker at an offset, a fill up to another, and three bytes behind it.
std::string LayoutFile(std::size_t size, std::size_t markerAt, std::size_t fillEnd,
                       const std::string& end = endOf1020) {
    std::string file(size, 'a');
    Put(file, markerAt, marker);
    const std::size_t fillAt = markerAt + marker.size();
    Put(file, fillAt, std::string(fillEnd - fillAt, '\x1A'));
    Put(file, fillEnd, end);
    return file;
}

// The smallest file: the marker in the first record, the three bytes in the second.
std::string SmallLayoutFile(const std::string& end = endOf1020) { return LayoutFile(2 * record, 100, record, end); }

TEST(LayoutTrailer, TellsTwoFormatsByTheThirdByte) {
    for (const std::int32_t third : {0, 1, 2}) {
        EXPECT_EQ(LayoutAnswer(SmallLayoutFile(std::string("xy") + static_cast<char>(third))), 1020) << third;
    }
    for (const std::int32_t third : {3, 4, 26, 127, 128, 255}) {
        EXPECT_EQ(LayoutAnswer(SmallLayoutFile(std::string("xy") + static_cast<char>(third))), 1024) << third;
    }
    EXPECT_EQ(LayoutAnswer(SmallLayoutFile("\x09\x09\x01")), 1020) << "the first two bytes are free";
}

TEST(LayoutTrailer, NeedsThreeBytesBehindTheFill) {
    std::string file = LayoutFile(2 * record, record + 100, 2 * record);
    file.resize(2 * record);
    EXPECT_EQ(LayoutAnswer(file), 0) << "none of them";
    EXPECT_EQ(LayoutAnswer(file + "\x01"), 0) << "one of them";
}

// A size of a multiple of 128, or of one more.
TEST(LayoutTrailer, IsInAFileOfWholeRecords) {
    for (std::size_t more = 0; more <= 2 * record + 1; ++more) {
        const FIID answer = more % record <= 1 ? 1020 : 0;
        EXPECT_EQ(LayoutAnswer(SmallLayoutFile() + std::string(more, 'a')), answer) << more;
    }
}

TEST(LayoutTrailer, DoesNotSearchOtherFiles) {
    for (const std::size_t more : {2U, 64U, 127U}) {
        const auto handle = FIMakeTestHandle(SmallLayoutFile() + std::string(more, 'a'));
        EXPECT_EQ(FIAnswerOver(FIProbeLayoutTrailer, *handle), 0);
        EXPECT_EQ(handle->reads, 0U) << more;
    }
}

TEST(LayoutTrailer, IsNotInFilesWithoutItsMarks) {
    EXPECT_EQ(LayoutAnswer(""), 0);
    EXPECT_EQ(LayoutAnswer("a"), 0);
    EXPECT_EQ(LayoutAnswer(std::string(record, 'a')), 0);
    EXPECT_EQ(LayoutAnswer(std::string(record, '\x1A')), 0);
    EXPECT_EQ(LayoutAnswer(std::string(100 * record, 'a')), 0);
    EXPECT_EQ(LayoutAnswer(std::string(100 * record + 1, '\x1A')), 0);
}

TEST(LayoutTrailer, HasEveryByteOfItsMarker) {
    for (std::size_t index = 0; index < marker.size(); ++index) {
        for (const std::int32_t difference : {0x01, 0x20, 0x80}) {
            std::string file = SmallLayoutFile();
            file[100 + index] = static_cast<char>(file[100 + index] ^ difference);
            EXPECT_EQ(LayoutAnswer(file), 0) << "byte " << index << " differing by " << difference;
        }
    }
}

TEST(LayoutTrailer, HasTheFirstByteOfItsMarkerAlsoWhereTheSearchBegins) {
    std::string file = LayoutFile(2 * record, 0, record);
    EXPECT_EQ(LayoutAnswer(file), 1020);
    Put(file, 0, std::string(marker.substr(1)) + "\x1A");
    EXPECT_EQ(LayoutAnswer(file), 0);
}

TEST(LayoutTrailer, FillsUpToAMultipleOf128) {
    for (const std::size_t markerAt : {0U, 1U, 50U, 112U, 113U}) {
        EXPECT_EQ(LayoutAnswer(LayoutFile(2 * record, markerAt, record)), 1020) << markerAt;
    }
    EXPECT_EQ(LayoutAnswer(LayoutFile(4 * record, 100, record, std::string(3, '\x1A'))), 1024)
        << "a longer fill ends there all the same";
    EXPECT_EQ(LayoutAnswer(LayoutFile(4 * record, 120, 2 * record)), 1020) << "the marker crosses a record";
    std::string file = LayoutFile(4 * record, 30, record);
    file[90] = 'x';
    EXPECT_EQ(LayoutAnswer(file), 0) << "another byte in the fill";
    file[90] = '\x1A';
    EXPECT_EQ(LayoutAnswer(file), 1020);
}

// Quirk: the place is looked at behind a fill byte only, so a marker that ends a record is followed by a record of
// fill.
TEST(LayoutTrailer, FillsAWholeRecordBehindAMarkerThatEndsOne) {
    EXPECT_EQ(LayoutAnswer(LayoutFile(4 * record, record - marker.size(), 2 * record)), 1020);
    EXPECT_EQ(LayoutAnswer(LayoutFile(4 * record, 2 * record - marker.size(), 3 * record)), 1020);
    std::string file = LayoutFile(4 * record, record - marker.size(), record);
    file[3 * record - 1] = '\x1A';
    EXPECT_EQ(LayoutAnswer(file), 0);
    file = LayoutFile(4 * record, record - marker.size(), 2 * record - 1);
    file[3 * record - 1] = '\x1A';
    EXPECT_EQ(LayoutAnswer(file), 0) << "one byte short of a record";
}

// Quirk: a byte that breaks off the marker is not tried as its first one.
TEST(LayoutTrailer, IsFoundBehindTwoBytesOfFillOrThreeMore) {
    for (std::size_t run = 0; run <= 11; ++run) {
        std::string file = SmallLayoutFile();
        Put(file, 100 - 9, "bbbbbbbbbbb");
        Put(file, 102 - run, std::string(run, '\x1A'));
        EXPECT_EQ(LayoutAnswer(file), run % 3 == 2 ? 1020 : 0) << run;
    }
}

TEST(LayoutTrailer, IsFoundBehindAMarkerThatBreaksOff) {
    std::string file = SmallLayoutFile();
    Put(file, 100 - 6, "\x1A\x1ALAYx");
    EXPECT_EQ(LayoutAnswer(file), 1020);
    file = SmallLayoutFile();
    Put(file, 100 - 5, "\x1A\x1ALAY");
    EXPECT_EQ(LayoutAnswer(file), 0) << "the first byte of the marker broke off the earlier one";
    file = SmallLayoutFile();
    Put(file, 100 - 4, "\x1AxxL");
    EXPECT_EQ(LayoutAnswer(file), 1020);
}

TEST(LayoutTrailer, IsFoundBehindAMarkerWithoutItsFill) {
    std::string file = SmallLayoutFile();
    Put(file, 20, std::string(marker) + "\x1A\x1A\x1Ax");
    EXPECT_EQ(LayoutAnswer(file), 1020);
    file = SmallLayoutFile();
    Put(file, 100 - marker.size() - 1, std::string(marker) + "x");
    EXPECT_EQ(LayoutAnswer(file), 1020) << "directly in front of it, with one byte between";
    file = SmallLayoutFile();
    Put(file, 100 - marker.size(), marker);
    EXPECT_EQ(LayoutAnswer(file), 0) << "its first two bytes are fill of the earlier one";
    file = SmallLayoutFile();
    Put(file, 20, std::string(marker) + "\x1A\x1A\x1A");
    Put(file, 37, "x");
    EXPECT_EQ(LayoutAnswer(file), 1020) << "the fill is counted from the later one";
}

TEST(LayoutTrailer, IsNotFoundWhenOnlyFillFollows) {
    std::string file(3 * record, 'a');
    Put(file, record - 1, "\x1A");
    Put(file, 3 * record - marker.size() - 20, std::string(marker) + std::string(20, '\x1A'));
    EXPECT_EQ(LayoutAnswer(file), 0) << "the fill ends with the file";
}

// In a file of up to 5,120 bytes the last byte of each record is looked at.
TEST(LayoutTrailer, IsLookedForAtTheEndOfEachRecordOfASmallFile) {
    for (const std::size_t size : {2 * record, 2 * record + 1, 39 * record + 1, 40 * record}) {
        EXPECT_EQ(LayoutAnswer(LayoutFile(size, 100, record)), 1020) << size;
        EXPECT_EQ(LayoutAnswer(LayoutFile(size, 113, record)), 1020) << size << ", one byte of fill";
    }
    EXPECT_EQ(LayoutAnswer(LayoutFile(40 * record, 38 * record + 113, 39 * record)), 1020) << "in the last but one";
}

// Quirk: in a larger file of whole records it is the last but one, from 5,121 bytes before the end of the file on.
TEST(LayoutTrailer, IsLookedForInFrontOfTheEndOfEachRecordOfALargeFile) {
    const std::size_t size = 41 * record;  // looked at are 254, 382, ...
    EXPECT_EQ(LayoutAnswer(LayoutFile(size, 100, record)), 0) << "in the first record";
    EXPECT_EQ(LayoutAnswer(LayoutFile(size, 200, 2 * record)), 1020) << "in the second";
    EXPECT_EQ(LayoutAnswer(LayoutFile(size, 240, 2 * record)), 1020) << "two bytes of fill";
    EXPECT_EQ(LayoutAnswer(LayoutFile(size, 241, 2 * record)), 0) << "one byte of fill";
    EXPECT_EQ(LayoutAnswer(LayoutFile(size, 39 * record + 100, 40 * record)), 1020) << "in the last but one";
    const std::size_t larger = 100 * record;  // looked at are 60 * 128 + 126, 61 * 128 + 126, ...
    EXPECT_EQ(LayoutAnswer(LayoutFile(larger, 59 * record + 100, 60 * record)), 0);
    EXPECT_EQ(LayoutAnswer(LayoutFile(larger, 60 * record + 100, 61 * record)), 1020);
    EXPECT_EQ(LayoutAnswer(LayoutFile(larger, 60 * record + 112, 61 * record)), 1020);
    EXPECT_EQ(LayoutAnswer(LayoutFile(larger, 60 * record + 113, 61 * record)), 0);
    EXPECT_EQ(LayoutAnswer(LayoutFile(larger, 98 * record + 100, 99 * record)), 1020);
}

// Quirk: in a larger file of one byte more it is the first of each record, from 4,993 bytes before the end of the file
// on.
TEST(LayoutTrailer, IsLookedForAtTheStartOfEachRecordOfALargeFileOfOneByteMore) {
    const std::string fillFirst("\x1A\0\x02", 3);
    const std::size_t size = 40 * record + 1;  // looked at are 128, 256, ...
    EXPECT_EQ(LayoutAnswer(LayoutFile(size, 100, record)), 0) << "the byte behind the fill is no fill";
    EXPECT_EQ(LayoutAnswer(LayoutFile(size, 100, record, fillFirst)), 1020);
    EXPECT_EQ(LayoutAnswer(LayoutFile(size, 38 * record + 100, 39 * record, fillFirst)), 1020);
    const std::size_t larger = 100 * record + 1;  // looked at are 61 * 128, 62 * 128, ...
    EXPECT_EQ(LayoutAnswer(LayoutFile(larger, 59 * record + 100, 60 * record, fillFirst)), 0);
    EXPECT_EQ(LayoutAnswer(LayoutFile(larger, 60 * record + 100, 61 * record, fillFirst)), 1020);
    std::string file = LayoutFile(larger, 98 * record + 100, 99 * record);
    EXPECT_EQ(LayoutAnswer(file), 0);
    file.back() = '\x1A';
    EXPECT_EQ(LayoutAnswer(file), 1020) << "the last byte of the file is looked at, too";
}

TEST(LayoutTrailer, IsSearchedForFrom255BytesBeforeTheFirstFillByteFound) {
    const std::size_t size = 100 * record + 1;  // looked at are 61 * 128, 62 * 128, ...
    const std::size_t found = 62 * record;
    std::string file = LayoutFile(size, found - 255, 61 * record);
    file[found] = '\x1A';
    EXPECT_EQ(LayoutAnswer(file), 1020) << "255 bytes before";
    file = LayoutFile(size, found - 256, 61 * record);
    file[found] = '\x1A';
    EXPECT_EQ(LayoutAnswer(file), 0) << "256 bytes before";
    file[61 * record] = '\x1A';
    EXPECT_EQ(LayoutAnswer(file), 1020) << "another byte of fill is found earlier";
}

TEST(LayoutTrailer, IsSearchedForToTheEndOfTheFile) {
    std::string file = LayoutFile(30 * record, 28 * record + 100, 29 * record);
    file[record - 1] = '\x1A';
    EXPECT_EQ(LayoutAnswer(file), 1020);
    file = LayoutFile(100 * record, 98 * record + 112, 99 * record);
    file[60 * record + 126] = '\x1A';
    EXPECT_EQ(LayoutAnswer(file), 1020);
}

// A byte of fill in the first 255 bytes would send the reader in front of the file: it goes to the start instead.
TEST(LayoutTrailer, IsSearchedForFromTheStartWhenTheFillIsNear) {
    EXPECT_EQ(LayoutAnswer(LayoutFile(2 * record, 0, record)), 1020) << "fill at 127";
    EXPECT_EQ(LayoutAnswer(LayoutFile(41 * record, 0, record)), 0) << "fill at 127 is not looked at";
    std::string file = LayoutFile(41 * record, 0, record);
    file[254] = '\x1A';
    EXPECT_EQ(LayoutAnswer(file), 1020) << "fill at 254";
    file = LayoutFile(3 * record, 0, record);
    file[127] = 'x';
    file[255] = '\x1A';
    EXPECT_EQ(LayoutAnswer(file), 0) << "fill at 255, but none at 127";
}

TEST(LayoutTrailer, NeedsTheSizeOfTheFile) {
    const auto noEnd = FIMakeTestHandle(SmallLayoutFile());
    noEnd->failSeekFromEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeLayoutTrailer, *noEnd), 0);
    const auto noTell = FIMakeTestHandle(SmallLayoutFile());
    noTell->failTell = true;
    EXPECT_EQ(FIAnswerOver(FIProbeLayoutTrailer, *noTell), 0);
}

// The seeks: to the end, to the size, to the first place, to the first byte looked at.
TEST(LayoutTrailer, TestsTheSeeksUpToTheFill) {
    for (std::uint32_t failing = 0; failing < 4; ++failing) {
        const auto handle = FIMakeHandleFailingOnce(SmallLayoutFile(), failing);
        EXPECT_EQ(FIAnswerOver(FIProbeLayoutTrailer, *handle), 0) << failing;
        EXPECT_EQ(handle->seeks, failing + 1) << "nothing is tried behind the failure";
    }
}

TEST(LayoutTrailer, TestsTheSeeksOfLaterStrides) {
    const std::string file = LayoutFile(30 * record, 20 * record + 100, 21 * record);
    EXPECT_EQ(LayoutAnswer(file), 1020);
    for (std::uint32_t failing = 4; failing < 4 + 20; ++failing) {
        const auto handle = FIMakeHandleFailingOnce(file, failing);
        handle->bytesPerRead = 1;
        EXPECT_EQ(FIAnswerOver(FIProbeLayoutTrailer, *handle), 0) << failing;
    }
}

TEST(LayoutTrailer, FallsBackToTheStartWhenGoingBackFails) {
    std::string file = LayoutFile(40 * record + 1, 0, record);  // looked at are 128, 256, ...
    file[256] = '\x1A';
    EXPECT_EQ(LayoutAnswer(file), 0) << "the search begins behind the marker's first byte";
    const auto once = FIMakeHandleFailingOnce(file, 4);
    EXPECT_EQ(FIAnswerOver(FIProbeLayoutTrailer, *once), 1020) << "it begins at the start of the file";
    const auto fromThen = FIMakeTestHandle(file);
    fromThen->failSeeksFrom = 4;
    EXPECT_EQ(FIAnswerOver(FIProbeLayoutTrailer, *fromThen), 0) << "going to the start fails, too";
    const auto small = FIMakeHandleFailingOnce(SmallLayoutFile(), 5);  // 4 is the seek in front of the file
    EXPECT_EQ(FIAnswerOver(FIProbeLayoutTrailer, *small), 0);
}

TEST(LayoutTrailer, WorksInTheWholeTable) {
    FIExpectWholeFile(SmallLayoutFile(), 1020, 399_row);
    FIExpectWholeFile(SmallLayoutFile(endOf1024), 1024, 399_row);
    FIExpectWholeFile(SmallLayoutFile() + "a", 1020, 399_row);
    FIExpectWholeFile(SmallLayoutFile() + "aa", 1999, 399_row);
    FIExpectWholeFile(LayoutFile(40 * record, 100, record), 1020, 399_row);
    FIExpectWholeFile(LayoutFile(41 * record, 100, record), 1999, 399_row);
    FIExpectWholeFile(LayoutFile(41 * record, 200, 2 * record), 1020, 399_row);
    FIExpectWholeFile(LayoutFile(100 * record, 98 * record + 100, 99 * record, endOf1024), 1024, 399_row);
    FIExpectWholeFile(LayoutFile(4 * record, record - marker.size(), 2 * record), 1020, 399_row);
    FIExpectWholeFile(std::string(record, 'a'), 1999, 399_row);
    std::string file = SmallLayoutFile();
    Put(file, 99, "\x1A");
    FIExpectWholeFile(file, 1999, 399_row);
    Put(file, 97, "\x1A\x1A\x1A");
    FIExpectWholeFile(file, 1020, 399_row);
}

// ---- The escape sequence -------------------------------------------------------------------------------------------

FIID EscapeAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeEscapeHeader, bytes); }

class ProbeEscapeHeader : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeEscapeHeader, Answers) { EXPECT_EQ(EscapeAnswer(FIBytes(GetParam().bytes)), GetParam().answer); }

TEST_P(ProbeEscapeHeader, AnswersInTheWholeTable) {
    FIExpectWholeFile(FIBytes(GetParam().bytes), GetParam().answer == 0 ? 1999 : 1019, 400_row);
}

const ProbeCase escapeCases[] = {
    // clang-format off
    {"EmptyFile",             "",                           0},
    {"NoZeros",               R"(1B "[1$K")",            1019},
    {"OneZero",               R"(1B "[01$K")",           1019},
    {"ThreeZeros",            R"(1B "[0001$K")",         1019},
    {"ManyZeros",             R"(1B "[" "0"*5000 "1$K")", 1019},
    {"TextBehindIt",          R"(1B "[1$K" "text")",     1019},
    {"OtherFirstByte",        R"(1A "[1$K")",               0},
    {"OtherSecondByte",       R"(1B "(1$K")",               0},
    {"Two",                   R"(1B "[2$K")",               0},
    {"TwoBehindZeros",        R"(1B "[0002$K")",            0},
    {"ZeroBehindTheOne",      R"(1B "[10$K")",              0},
    {"NoDollar",              R"(1B "[1K")",                0},
    {"OtherThanDollar",       R"(1B "[1#K")",               0},
    {"PercentForDollar",      R"(1B "[1%K")",               0},
    {"SmallK",                R"(1B "[1$k")",               0},
    {"NulInsteadOfZeros",     R"(1B "[" 00 "1$K")",         0},
    {"BlankInFront",          R"(" " 1B "[1$K")",           0},
    {"EndsBehindEscape",      "1B",                         0},
    {"EndsBehindBracket",     R"(1B "[")",                  0},
    {"EndsBehindZeros",       R"(1B "[000")",               0},
    {"EndsBehindOne",         R"(1B "[1")",                 0},
    {"EndsBehindDollar",      R"(1B "[1$")",                0},
    {"TopBitEscape",          R"(9B "[1$K")",               0},
    {"TopBitK",               R"(1B "[1$" CB)",             0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Sequences, ProbeEscapeHeader, testing::ValuesIn(escapeCases), FICaseName);

TEST(EscapeHeader, TestsItsSeek) {
    FIExpectEverySeekIsTested(FIProbeEscapeHeader, "\x1B[1$K", 1019);
    EXPECT_EQ(FIAnswerOf(FIProbeEscapeHeader, "\x1B[1$K", 2), 1019) << "wherever the reader stands";
}

// ---- Codes behind pipe signs ---------------------------------------------------------------------------------------

FIID ProbePipe1021(FIReader& reader) { return FIProbePipeCodes(reader, 1021); }
FIID ProbePipe1077(FIReader& reader) { return FIProbePipeCodes(reader, 1077); }

constexpr std::size_t pipeStart1021 = 120;
constexpr std::size_t pipeStart1077 = 118;
constexpr std::size_t pipeStretch = 100;

// Codes at the start of the stretch, blanks up to its end.
std::string PipeFile(std::size_t start, std::string codes) {
    codes.resize(pipeStretch, ' ');
    return std::string(start, 'a') + codes;
}

class ProbePipeCodes : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbePipeCodes, Answers) {
    const std::string codes = FIBytes(GetParam().bytes);
    const bool holds = GetParam().answer != 0;
    EXPECT_EQ(FIAnswerOf(ProbePipe1021, PipeFile(pipeStart1021, codes)), holds ? 1021 : 0);
    EXPECT_EQ(FIAnswerOf(ProbePipe1077, PipeFile(pipeStart1077, codes)), holds ? 1077 : 0);
}

const ProbeCase pipeCases[] = {
    // clang-format off
    {"AllCodes",                   R"("|N" 40 "|O")",                        1021},
    {"AllCodesApart",              R"("ab|Ncd" 40 "ef|Ogh")",                1021},
    {"AllCodesAtTheEnd",           R"("a"*95 "|N" 40 "|O")",                 1021},
    {"LastCodeCutOff",             R"("a"*96 "|N" 40 "|O")",                    0},
    {"None",                       R"("some text")",                            0},
    {"PipeTwiceInFrontOfN",        R"("||N" 40 "|O")",                          0},
    {"PipeThreeTimesInFrontOfN",   R"("|||N" 40 "|O")",                      1021},
    {"PipeTwiceAndOnceMore",       R"("||N|N" 40 "|O")",                     1021},
    {"OtherLetterThanN",           R"("|n" 40 "|O")",                           0},
    {"PipeAndLetterApart",         R"("| N" 40 "|O")",                          0},
    {"LetterBehindAnotherLetter",  R"("|MN" 40 "|O")",                          0},
    {"SecondTryForN",              R"("|M|N" 40 "|O")",                      1021},
    {"NoAtSign",                   R"("|N |O")",                                0},
    {"AtSignInFrontOnly",          R"(40 "|N|O")",                              0},
    {"PipesInFrontOfTheAtSign",    R"("|N||M|N" 40 "|O")",                   1021},
    {"TwoAtSigns",                 R"("|N" 40 40 "|O")",                     1021},
    {"PipeTwiceInFrontOfO",        R"("|N" 40 "||O")",                          0},
    {"PipeThreeTimesInFrontOfO",   R"("|N" 40 "|||O")",                      1021},
    {"PipeTwiceAndOnceMoreForO",   R"("|N" 40 "||O|O")",                     1021},
    {"OtherLetterThanO",           R"("|N" 40 "|o")",                           0},
    {"ZeroInsteadOfO",             R"("|N" 40 "|0")",                           0},
    {"SecondTryForO",              R"("|N" 40 "|P|O")",                      1021},
    {"LetterOAlone",               R"("|N" 40 "O")",                            0},
    {"CodesBehindTheLastOne",      R"("|N" 40 "|O" "||N" 40 "|O")",          1021},
    {"TopBitBytes",                R"(FC CE C0 FC CF)",                         0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Codes, ProbePipeCodes, testing::ValuesIn(pipeCases), FICaseName);

// Every sequence of six of the bytes that mean something and one that doesn't, against a pattern told at one stroke:
// a pipe sign takes the byte behind it along, whatever that is.
TEST(PipeCodes, FollowAPattern) {
    const std::regex pattern(R"((?:[^|]|\|[^N])*\|N[^@]*@(?:[^|]|\|[^O])*\|O[^]*)");
    constexpr std::string_view letters = "|N@Ox";
    constexpr std::size_t length = 6;
    std::size_t sequences = 1;
    for (std::size_t index = 0; index < length; ++index) sequences *= letters.size();
    std::size_t accepted = 0;
    for (std::size_t number = 0; number < sequences; ++number) {
        std::string codes;
        for (std::size_t rest = number, index = 0; index < length; ++index, rest /= letters.size()) {
            codes += letters[rest % letters.size()];
        }
        const bool holds = std::regex_match(codes, pattern);
        accepted += holds ? 1U : 0U;
        const auto handle = FIMakeTestHandle(PipeFile(pipeStart1077, codes));
        ASSERT_EQ(FIAnswerOver(ProbePipe1077, *handle), holds ? 1077 : 0) << codes;
    }
    EXPECT_GT(accepted, 0U);
}

TEST(PipeCodes, NeedAHundredBytes) {
    const std::string codes = R"(|N@|O)";
    for (const std::size_t missing : {1U, 40U, 50U, 90U, 95U, 99U, 100U}) {
        const std::string file1021 = PipeFile(pipeStart1021, codes);
        EXPECT_EQ(FIAnswerOf(ProbePipe1021, file1021.substr(0, file1021.size() - missing)), 0) << missing;
        const std::string file1077 = PipeFile(pipeStart1077, codes);
        EXPECT_EQ(FIAnswerOf(ProbePipe1077, file1077.substr(0, file1077.size() - missing)), 0) << missing;
    }
    EXPECT_EQ(FIAnswerOf(ProbePipe1021, PipeFile(pipeStart1021, codes)), 1021);
    EXPECT_EQ(FIAnswerOf(ProbePipe1021, PipeFile(pipeStart1021, codes) + "more"), 1021);
    EXPECT_EQ(FIAnswerOf(ProbePipe1021, ""), 0);
    EXPECT_EQ(FIAnswerOf(ProbePipe1077, ""), 0);
}

TEST(PipeCodes, StartAtTheirOffsets) {
    const std::string at118 = std::string(118, 'a') + "|N@|O" + std::string(200, 'a');
    const std::string at119 = std::string(119, 'a') + "|N@|O" + std::string(200, 'a');
    const std::string at117 = std::string(117, 'a') + "|N@|O" + std::string(200, 'a');
    const std::string at120 = std::string(120, 'a') + "|N@|O" + std::string(200, 'a');
    EXPECT_EQ(FIAnswerOf(ProbePipe1077, at117), 0);
    EXPECT_EQ(FIAnswerOf(ProbePipe1077, at118), 1077);
    EXPECT_EQ(FIAnswerOf(ProbePipe1021, at119), 0);
    EXPECT_EQ(FIAnswerOf(ProbePipe1021, at120), 1021);
    const std::string last1077 = std::string(213, 'a') + "|N@|O";
    const std::string last1021 = std::string(215, 'a') + "|N@|O";
    EXPECT_EQ(FIAnswerOf(ProbePipe1077, last1077), 1077);
    EXPECT_EQ(FIAnswerOf(ProbePipe1077, "a" + last1077), 0);
    EXPECT_EQ(FIAnswerOf(ProbePipe1021, last1021), 1021);
    EXPECT_EQ(FIAnswerOf(ProbePipe1021, "a" + last1021), 0);
}

TEST(PipeCodes, TestTheirSeek) {
    FIExpectEverySeekIsTested(ProbePipe1021, PipeFile(pipeStart1021, "|N@|O"), 1021);
    FIExpectEverySeekIsTested(ProbePipe1077, PipeFile(pipeStart1077, "|N@|O"), 1077);
}

TEST(PipeCodes, WorkInTheWholeTable) {
    std::string file = PipeFile(pipeStart1021, "text|N text @ text|O text");
    Put(file, 0, std::string("t\0", 2));
    Put(file, 118, std::string("@\0", 2));
    FIExpectWholeFile(file, 1021, 367_row);
    FIExpectWholeFile(file.substr(0, file.size() - 1), 1999, 367_row);
    FIExpectWholeFile(PipeFile(pipeStart1077, "|N text @ text|O text"), 1077, 368_row);
    FIExpectWholeFile(PipeFile(pipeStart1077, "|N text @ text||O text"), 1999, 368_row);
    FIExpectWholeFile(PipeFile(pipeStart1077, "|N text @ text|O text").substr(0, 178), 1999, 368_row);
}

// ---- The checksum --------------------------------------------------------------------------------------------------

FIID ChecksumAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeWordChecksum, bytes); }

std::string LittleEndian(std::size_t word) {
    return {static_cast<char>(word & 0xFF), static_cast<char>(word >> 8 & 0xFF)};
}

// The magic and the three words, the first two as they lie in the file.
std::string ChecksumHeader(std::size_t first, std::size_t second, std::size_t check) {
    return FIBytes("53 04 02 01") + LittleEndian(first) + LittleEndian(second) + LittleEndian(check);
}

// A file whose range is these words, from an offset of 32 or more.
std::string ChecksumFile(std::size_t start, std::initializer_list<std::size_t> words, std::size_t check) {
    std::string file = ChecksumHeader(start + 2 * words.size() - 32, start - 32, check);
    file.resize(start, 'a');
    for (const std::size_t word : words) file += LittleEndian(word);
    return file + "behind";
}

TEST(WordChecksum, AndTheWordsAddUpTo0) {
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0, 1}, 0xFFFF)), 1010);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {1, 0}, 0xFFFF)), 1010);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0xFFFF}, 1)), 1010);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(40, {0x1234, 0x4321, 0x0101}, 0x10000 - 0x5656)), 1010);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(40, {0x8000}, 0x8000)), 1010);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0, 1}, 0xFFFE)), 0);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0, 1}, 0)), 0);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0, 1}, 1)), 0);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0, 2}, 0xFFFF)), 0);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0, 0x0100}, 0xFFFF)), 0) << "the low byte comes first";
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0, 0x0100}, 0xFF00)), 1010);
}

TEST(WordChecksum, WrapsItsSum) {
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0xFFFF, 3}, 0xFFFE)), 1010);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0xFFFF, 0xFFFF, 0xFFFF}, 3)), 1010);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0x8000, 0x8000, 0x8000}, 0x8000)), 1010);
}

// Quirk: a sum of 0 would need the check value 65,536.
TEST(WordChecksum, IsNeverThatOfASumOf0) {
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0, 0}, 0)), 0);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {1, 0xFFFF}, 0)), 0);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0x8000, 0x8000}, 0)), 0);
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {}, 0)), 0) << "an empty range";
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(500, {}, 0)), 0) << "an empty range";
    EXPECT_EQ(ChecksumAnswer(ChecksumFile(32, {0, 0}, 0xFFFF)), 0);
}

TEST(WordChecksum, IsOfARangeThatEndsBy2048) {
    std::string file = ChecksumHeader(2016, 2014, 0xFFFF);
    file.resize(2046);
    file += LittleEndian(1);
    EXPECT_EQ(ChecksumAnswer(file), 1010);
    file = ChecksumHeader(2017, 2015, 0xFFFF);
    file.resize(2047);
    file += LittleEndian(1);
    EXPECT_EQ(ChecksumAnswer(file), 0);
    file = ChecksumHeader(2016, 0, 0xFFFF);
    file.resize(2046);
    file += LittleEndian(1);
    EXPECT_EQ(ChecksumAnswer(file), 1010) << "1,008 words";
}

// The end is a 32-bit number: it doesn't wrap.
TEST(WordChecksum, IsOfNoRangeThatEndsBehind65535) {
    const std::size_t check = 0x10000 - 0x0453;  // of the word at 0
    EXPECT_EQ(ChecksumAnswer(ChecksumHeader(65506, 65504, check) + std::string(100, '\0')), 0);
    EXPECT_EQ(ChecksumAnswer(ChecksumHeader(65535, 65504, check) + std::string(70000, '\0')), 0);
}

// Quirk: the start is a 16-bit number and wraps, so that a range can hold the header and the check value itself.
TEST(WordChecksum, IsOfARangeWhoseStartWraps) {
    // From 0 to 32: 0453, 0102, 0000, FFE0, the check value FD65 and 0001 add up to 029B, which is 10000 - FD65.
    std::string file = ChecksumHeader(0, 65504, 0xFD65) + LittleEndian(1);
    file.resize(32);
    EXPECT_EQ(ChecksumAnswer(file), 1010);
    file[20] = '\x01';
    EXPECT_EQ(ChecksumAnswer(file), 0);
}

// Quirk: the position wraps in 16 bits while the reader goes on, so a range that starts behind its end is summed up to
// the end's offset 64 KiB further on.
TEST(WordChecksum, IsOfARangeWhosePositionWraps) {
    std::string file = ChecksumHeader(0, 2, 0xFFFF);  // from 34 to 32
    file.resize(65566);
    file += LittleEndian(1);
    EXPECT_EQ(ChecksumAnswer(file), 1010);
    EXPECT_EQ(ChecksumAnswer(file.substr(0, 65567)), 0) << "the file ends inside";
    EXPECT_EQ(ChecksumAnswer(file + "behind"), 1010);
    file[65568 - 2] = '\0';
    EXPECT_EQ(ChecksumAnswer(file + LittleEndian(1)), 0) << "one word too far";
}

TEST(WordChecksum, IsOfNoRangeOfOddLength) {
    std::string file = ChecksumHeader(3, 0, 0xFFFF);
    file.resize(32);
    file += LittleEndian(1);
    EXPECT_EQ(ChecksumAnswer(file), 0);
    file.resize(200000);
    EXPECT_EQ(ChecksumAnswer(file), 0);
    file = ChecksumHeader(3, 1, 0xFFFF);
    file.resize(33);
    file += LittleEndian(1);
    EXPECT_EQ(ChecksumAnswer(file), 1010) << "an odd start does no harm";
}

TEST(WordChecksum, IsNothingWhenTheFileEnds) {
    const std::string file = ChecksumFile(32, {5, 1}, 0xFFFA);
    EXPECT_EQ(ChecksumAnswer(file), 1010);
    for (std::size_t size = 0; size < 36; ++size) EXPECT_EQ(ChecksumAnswer(file.substr(0, size)), 0) << size;
    EXPECT_EQ(ChecksumAnswer(file.substr(0, 36)), 1010);
}

TEST(WordChecksum, TestsEverySeek) {
    FIExpectEverySeekIsTested(FIProbeWordChecksum, ChecksumFile(40, {5, 1}, 0xFFFA), 1010);
}

TEST(WordChecksum, LeavesTheMagicToTheTable) {
    std::string file = ChecksumFile(32, {0, 1}, 0xFFFF);
    Put(file, 0, "none");
    EXPECT_EQ(ChecksumAnswer(file), 1010);
    FIExpectWholeFile(file, 1999, 160_row);
}

TEST(WordChecksum, WorksInTheWholeTable) {
    FIExpectWholeFile(ChecksumFile(32, {0, 1}, 0xFFFF), 1010, 160_row);
    FIExpectWholeFile(ChecksumFile(32, {0, 1}, 0xFFFE), 1999, 160_row);
    FIExpectWholeFile(ChecksumFile(32, {1, 0xFFFF}, 0), 1999, 160_row);
    FIExpectWholeFile(ChecksumFile(32, {}, 0), 1999, 160_row);
    std::string file = ChecksumHeader(2017, 2015, 0xFFFF);
    file.resize(2047, 'a');
    FIExpectWholeFile(file + LittleEndian(1), 1999, 160_row);
}

// ---- Ordinary files ------------------------------------------------------------------------------------------------

TEST(Trailers, AreInNoOrdinaryFile) {
    for (const std::string& file : FIOrdinaryFiles()) {
        EXPECT_EQ(LayoutAnswer(file), 0);
        EXPECT_EQ(EscapeAnswer(file), 0);
        EXPECT_EQ(FIAnswerOf(ProbePipe1021, file), 0);
        EXPECT_EQ(FIAnswerOf(ProbePipe1077, file), 0);
        EXPECT_EQ(ChecksumAnswer(file), 0);
    }
}

}  // namespace
