// QuickTime movies: the types of the first two atoms, and the "wide" atom that may stand in front of either.
#include "media/quicktime.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>

#include "reader/reader.h"
#include "support/case_name.h"
#include "support/decided_case.h"
#include "support/failing_seeks.h"
#include "support/probe_case.h"

namespace {

using ::PrintTo;

const char* const knownTypes[] = {"free", "skip", "mdat", "pnot", "moov"};

const ProbeCase movieCases[] = {
    // clang-format off
    {"MoovThenFree",                   R"(D:16 "moov" 00*8 D:8 "free")",                       1705},
    {"MdatThenMoov",                   R"(D:1000 "mdat" >1000 D:8 "moov")",                    1705},
    {"SecondAtomBehindTheBuffer",      R"(D:70000 "mdat" >70000 D:8 "moov")",                  1705},
    {"SecondAtomsSizeIsFree",          R"(D:16 "moov" 00*8 D:0xFFFFFFFF "free")",              1705},
    {"SizeIsBigEndian",                R"(d:16 "moov" 00*8 D:8 "free")",                          0},
    {"SizeOneTooLow",                  R"(D:15 "moov" 00*8 D:8 "free" 00)",                       0},
    {"SizeOneTooHigh",                 R"(D:17 "moov" 00*8 D:8 "free" 00)",                       0},
    {"SizeBehindTheEnd",               R"(D:5000 "moov" 00*8 D:8 "free")",                        0},
    {"SizeToTheEnd",                   R"(D:24 "moov" 00*8 D:8 "free")",                          0},
    {"SizeOf2GiB",                     R"(D:0x80000000 "moov" 00*8 D:8 "free")",                  0},
    {"SizeOfJustBelow2GiB",            R"(D:0x7FFFFFFF "moov" 00*8 D:8 "free")",                  0},
    {"SizeThatWrapsToTheStart",        R"(D:0xFFFFFFFC "moov" 00*8 D:8 "free")",                  0},
    {"SizeOfAllBits",                  R"(D:0xFFFFFFFF "moov" 00*8 D:8 "free")",                  0},
    // An atom of no size is followed by itself.
    {"SizeOf0",                        R"(D:0 "moov")",                                        1705},
    {"SizeOf1",                        R"(D:1 "moov" 00*8)",                                      0},
    {"SizeOf4",                        R"(D:4 "moovfree")",                                    1705},
    {"SizeOf8",                        R"(D:8 "skip" D:8 "pnot")",                             1705},
    {"FtypFirst",                      R"(D:16 "ftyp" 00*8 D:8 "moov")",                          0},
    {"FtypSecond",                     R"(D:16 "moov" 00*8 D:8 "ftyp")",                          0},
    {"UnknownFirst",                   R"(D:16 "abcd" 00*8 D:8 "free")",                          0},
    {"UnknownSecond",                  R"(D:16 "moov" 00*8 D:8 "abcd")",                          0},
    {"TypeInCapitals",                 R"(D:16 "MOOV" 00*8 D:8 "free")",                          0},
    {"FirstTypeEndsAfterThreeBytes",   R"(D:16 "moo")",                                           0},
    {"FirstTypeMissing",               "D:16",                                                    0},
    {"SizeEndsAfterThreeBytes",        "00 00 00",                                                0},
    {"SecondTypeEndsAfterThreeBytes",  R"(D:16 "moov" 00*8 D:8 "fre")",                           0},
    {"SecondTypeMissing",              R"(D:16 "moov" 00*8 D:8)",                                 0},
    {"FirstAtomAlone",                 R"(D:16 "moov" 00*8)",                                     0},
    // A "wide" atom has 8 bytes; the atom that may use its place follows. The first atom's size still counts from 0.
    {"WideThenMdatThenMoov",           R"(D:8 "wide" D:100 "mdat" >108 D:8 "moov")",           1705},
    {"WideThenMdat",                   R"(D:8 "wide" D:100 "mdat")",                           1705},
    {"WideOf16ThenMdatThenMoov",       R"(D:16 "wide" D:8 "mdat" D:8 "moov")",                 1705},
    {"WidesSizeCountsNotTheMdats",     R"(D:40 "wide" D:16 "mdat" >24 D:8 "moov" >44 "moov")", 1705},
    {"MdatsSizeDoesNotCount",          R"(D:40 "wide" D:16 "mdat" >24 D:8 "moov" >48)",           0},
    {"WideSizeFieldIsFree",            R"(D:8 "wide" FF FF FF FF "mdat")",                     1705},
    {"WideThenUnknown",                R"(D:8 "wide" D:100 "abcd" >108 D:8 "moov")",              0},
    {"WideTwice",                      R"(D:8 "wide" D:8 "wide" D:8 "mdat" D:8 "moov")",          0},
    {"WideFileEndsInTheSize",          R"(D:8 "wide" 00 00)",                                     0},
    {"WideFileEndsInTheType",          R"(D:8 "wide" D:8 "mda")",                                 0},
    {"WideFileEndsBeforeTheType",      R"(D:8 "wide" D:8)",                                       0},
    {"WideAlone",                      R"(D:8 "wide")",                                           0},
    {"WideInCapitals",                 R"(D:8 "WIDE" D:8 "mdat")",                                0},
    {"WideSecond",                     R"(D:16 "moov" 00*8 D:8 "wide" D:100 "mdat")",          1705},
    {"WideSecondThenUnknown",          R"(D:16 "moov" 00*8 D:8 "wide" D:100 "abcd")",             0},
    {"WideSecondTwice",                R"(D:16 "moov" 00*8 D:8 "wide" D:8 "wide" D:8 "mdat")",    0},
    {"WideSecondAlone",                R"(D:16 "moov" 00*8 D:8 "wide")",                          0},
    {"WideFirstAndSecond",             R"(D:32 "wide" D:24 "mdat" >32 D:8 "wide" D:8 "moov")", 1705},
    {"EmptyFile",                      "",                                                        0},
    // clang-format on
};

class ProbeQuickTime : public testing::TestWithParam<ProbeCase> {};
TEST_P(ProbeQuickTime, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeQuickTime, FIBytes(GetParam().bytes)), GetParam().answer);
}
INSTANTIATE_TEST_SUITE_P(Movies, ProbeQuickTime, testing::ValuesIn(movieCases), FICaseName);

std::string FIMakeMovie(const std::string& first, const std::string& second) {
    return FIBytes("D:16") + first + FIBytes("00*8 D:8") + second;
}

TEST(QuickTime, AnyOfFiveTypesInEitherPlace) {
    for (const std::string first : knownTypes) {
        for (const std::string second : knownTypes) {
            EXPECT_EQ(FIAnswerOf(FIProbeQuickTime, FIMakeMovie(first, second)), 1705) << first << ' ' << second;
        }
    }
}

TEST(QuickTime, EveryLetterOfAType) {
    for (const std::string type : knownTypes) {
        for (std::size_t place = 0; place < type.size(); ++place) {
            for (std::uint32_t value = 0; value <= 0xFF; ++value) {
                std::string changed = type;
                changed[place] = static_cast<char>(value);
                const FIID answer = changed == type ? 1705 : 0;
                EXPECT_EQ(FIAnswerOf(FIProbeQuickTime, FIMakeMovie(changed, "moov")), answer) << changed;
                EXPECT_EQ(FIAnswerOf(FIProbeQuickTime, FIMakeMovie("moov", changed)), answer) << changed;
            }
        }
    }
}

TEST(QuickTime, AFileThatEndsBeforeTheSecondTypeIsNone) {
    for (const std::string& movie : {FIMakeMovie("moov", "free"), FIBytes(R"(D:8 "wide" D:100 "mdat")"),
                                     FIBytes(R"(D:16 "moov" 00*8 D:8 "wide" D:100 "mdat")")}) {
        for (std::size_t size = 0; size < movie.size(); ++size) {
            EXPECT_EQ(FIAnswerOf(FIProbeQuickTime, movie.substr(0, size)), 0) << size;
        }
        EXPECT_EQ(FIAnswerOf(FIProbeQuickTime, movie), 1705);
    }
}

TEST(QuickTime, EveryFailedSeekIsANo) {
    struct Movie {
        const char* bytes;
        std::uint32_t seeks;  // to the start, to the second atom, and over the size behind each "wide"
    };
    const Movie movies[] = {
        {R"(D:16 "moov" 00*8 D:8 "free")", 2},
        {R"(D:24 "wide" D:16 "mdat" 00*8 D:8 "moov")", 3},
        {R"(D:16 "moov" 00*8 D:8 "wide" D:100 "mdat")", 3},
        {R"(D:32 "wide" D:24 "mdat" >32 D:8 "wide" D:8 "moov")", 4},
    };
    for (const Movie& movie : movies) {
        for (std::uint32_t seek = 0; seek < movie.seeks; ++seek) {
            EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeQuickTime, FIBytes(movie.bytes), seek), 0) << seek;
        }
        EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeQuickTime, FIBytes(movie.bytes), movie.seeks), 1705) << movie.bytes;
    }
}

TEST(QuickTime, LooksAtTheStartWhereverTheReaderStands) {
    EXPECT_EQ(FIAnswerOf(FIProbeQuickTime, FIMakeMovie("moov", "free") + std::string(5000, 'x'), 4000), 1705);
}

// ---- One atom -------------------------------------------------------------------------------------------------------

struct AtomCase {
    const char* name;
    const char* bytes;  // from the type on
    bool known;
    const char* type;  // what comes back; empty for not compared
};

const AtomCase atomCases[] = {
    // clang-format off
    {"Free",          R"("free")",                         true,  "free"},
    {"Skip",          R"("skip")",                         true,  "skip"},
    {"Mdat",          R"("mdat")",                         true,  "mdat"},
    {"Pnot",          R"("pnot")",                         true,  "pnot"},
    {"Moov",          R"("moov")",                         true,  "moov"},
    {"Ftyp",          R"("ftyp")",                         false, "ftyp"},
    {"Zeros",         "00 00 00 00 00",                    false, ""},
    {"ThreeBytes",    R"("moo")",                          false, ""},
    {"NoBytes",       "",                                  false, ""},
    {"WideMdat",      R"("wide" D:8 "mdat")",              true,  "mdat"},
    {"WideAnySize",   R"("wide" FF FF FF FF "moov")",      true,  "moov"},
    {"WideUnknown",   R"("wide" D:8 "abcd")",              false, "abcd"},
    {"WideWide",      R"("wide" D:8 "wide" D:8 "mdat")",   false, "wide"},
    {"WideCut",       R"("wide" D:8 "mda")",               false, ""},
    {"WideAlone",     R"("wide")",                         false, ""},
    // clang-format on
};

class QuickTimeAtom : public testing::TestWithParam<AtomCase> {};

TEST_P(QuickTimeAtom, IsKnownByItsType) {
    // Where the atom stands in the file does not matter, nor whether it goes over the reader's buffer.
    for (const std::uint32_t place : {0U, 1U, 4U, 2046U, 5000U}) {
        const auto handle = FIMakeTestHandle(std::string(place, 'x') + FIBytes(GetParam().bytes));
        FIReader* const reader = FIReaderNew(FIFileOf(*handle));
        for (std::uint32_t passed = 0; passed < place; ++passed) FIReaderGetByte(*reader);
        std::uint16_t tag1 = 0;
        std::uint16_t tag2 = 0;
        std::uint16_t tag3 = 0;
        std::uint16_t tag4 = 0;
        EXPECT_EQ(FIIsQuickTimeAtom(*reader, tag1, tag2, tag3, tag4), GetParam().known) << place;
        const std::string type = GetParam().type;
        if (!type.empty()) {
            const std::array<std::uint16_t, 4> tags = {tag1, tag2, tag3, tag4};
            const std::string told(tags.begin(), tags.end());
            EXPECT_EQ(told, type) << place;
        }
        if (GetParam().known) {
            EXPECT_EQ(FIReaderTell(*reader), place + FIBytes(GetParam().bytes).size());
        }
        FIReaderFree(*reader);
    }
}

INSTANTIATE_TEST_SUITE_P(Types, QuickTimeAtom, testing::ValuesIn(atomCases), FICaseName);

// ---- The whole system -----------------------------------------------------------------------------------------------

const DecidedCase wholeCases[] = {
    // clang-format off
    {"MoovThenFree",         R"(D:16 "moov" 00*8 D:8 "free")",                   1705, 243_row, "a.mov"},
    {"WithoutAName",         R"(D:16 "moov" 00*8 D:8 "free")",                   1705, 243_row},
    {"MdatThenMoov",         R"(D:1000 "mdat" >1000 D:8 "moov")",                1705, 243_row},
    {"WideThenMdat",         R"(D:8 "wide" D:100 "mdat")",                       1705, 243_row},
    {"WideThenMdatThenMoov", R"(D:8 "wide" D:100 "mdat" >108 D:8 "moov")",       1705, 243_row},
    {"SizeBehindTheEnd",     R"(D:5000 "moov" 00*8 D:8 "free")",                 1999,   0},
    {"UnknownSecond",        R"(D:16 "moov" 00*8 D:8 "abcd")",                   1999,   0},
    // A file type atom has a row of its own, in front: 32 bytes long and of a brand that starts with "qt".
    {"FtypOfQuickTime",      R"(D:32 "ftypqt  " 00*20 D:8 "moov")",              1705, 242_row},
    {"FtypOfAnotherSize",    R"(D:24 "ftypqt  " 00*12 D:8 "moov")",              1999,   0},
    {"FtypOfAnotherBrand",   R"(D:32 "ftypmp42" 00*20 D:8 "moov")",              1999,   0},
    // clang-format on
};

class QuickTimeRows : public testing::TestWithParam<DecidedCase> {};
TEST_P(QuickTimeRows, AreToldByTheirRow) { FIExpectDecision(GetParam()); }
INSTANTIATE_TEST_SUITE_P(WholeSystem, QuickTimeRows, testing::ValuesIn(wholeCases), FICaseName);

}  // namespace
