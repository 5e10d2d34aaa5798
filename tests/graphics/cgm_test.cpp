// Computer Graphics Metafiles in the binary encoding of ISO/IEC 8632.
//
// In the cases W:0x... is an element's header: four bits of class, seven of element identifier, five of length. 00 20
// is Begin Metafile without parameters, and 10 22 00 01 is Metafile Version 1.
#include "graphics/cgm.h"

#include <cstdint>
#include <string>

#include "support/decided_case.h"
#include "support/probe_case.h"

namespace {

const ProbeCase cgmCases[] = {
    // clang-format off
    {"EmptyFile",                           R"()",                                                 0},
    {"Version1",                            R"(00 20 10 22 00 01)",                             1528},
    {"Version2",                            R"(00 20 10 22 00 02)",                             1528},
    {"Version3",                            R"(00 20 10 22 00 03)",                             1528},
    {"Version4",                            R"(00 20 10 22 00 04)",                             1528},
    {"Version0",                            R"(00 20 10 22 00 00)",                                0},
    {"Version5",                            R"(00 20 10 22 00 05)",                                0},
    {"Version255",                          R"(00 20 10 22 00 FF)",                                0},
    {"Version257",                          R"(00 20 10 22 01 01)",                                0},
    {"VersionsLengthIsNotLookedAt",         R"(00 20 10 20 00 01)",                             1528},
    {"VersionsLongLengthIsNotLookedAt",     R"(00 20 10 3F 00 01)",                             1528},
    {"VersionIsCut",                        R"(00 20 10 22 00)",                                   0},
    {"VersionIsMissing",                    R"(00 20 10 22)",                                      0},
    {"VersionElementIsCut",                 R"(00 20 10)",                                         0},
    {"BeginMetafileAlone",                  R"(00 20)",                                            0},
    {"BeginMetafileIsCut",                  R"(00)",                                               0},
    {"BytesBehindTheVersion",               R"(00 20 10 22 00 01 FF FF FF)",                    1528},

    {"BeginsWithClass1",                    R"(10 20 10 22 00 01)",                                0},
    {"BeginsWithAFirstByteOf1",             R"(01 20 10 22 00 01)",                                0},
    {"BeginsWithElement0",                  R"(00 00 10 22 00 01)",                                0},
    {"BeginsWithElement2",                  R"(00 40 10 22 00 01)",                                0},
    {"BeginsWithElement3",                  R"(00 60 10 22 00 01)",                                0},
    {"BeginsWithElement4",                  R"(00 80 10 22 00 01)",                                0},
    {"BeginsWithTheVersion",                R"(10 22 00 01)",                                      0},

    // The name of a short Begin Metafile: its count byte and as many bytes as the larger of count and length, less 1.
    {"NameOfTheElementsLength",             R"(00 24 03 "abc" 10 22 00 01)",                    1528},
    {"NameShorterThanTheElement",           R"(00 24 01 "abc" 10 22 00 01)",                    1528},
    {"NameOf0BytesInAnElementOf4",          R"(00 24 00 "abc" 10 22 00 01)",                    1528},
    {"NameLongerThanTheElement",            R"(00 24 0A "abcdefghi" 10 22 00 01)",              1528},
    {"NameLongerThanTheElementIsNotPadded", R"(00 24 0A "abcdefghij" 10 22 00 01)",                0},
    {"NameEqualToTheElementsLength",        R"(00 24 04 "abc" 10 22 00 01)",                    1528},
    {"NameOneLongerThanTheElement",         R"(00 24 05 "abcd" 10 22 00 01)",                   1528},
    {"NameOf255Bytes",                      R"(00 22 FF "n"*254 10 22 00 01)",                  1528},
    {"NameOf127Bytes",                      R"(00 22 7F "n"*126 10 22 00 01)",                  1528},
    {"NameOf128Bytes",                      R"(00 22 80 "n"*127 10 22 00 01)",                  1528},
    {"OddLengthIsPadded",                   R"(00 23 02 "ab" 00 10 22 00 01)",                  1528},
    {"OddLengthWithoutItsPadding",          R"(00 23 02 "ab" 10 22 00 01)",                        0},
    {"Length1IsPadded",                     R"(00 21 00 00 10 22 00 01)",                       1528},
    {"Length30IsTheLongestShortForm",       R"(00 3E 1D "n"*29 10 22 00 01)",                   1528},
    {"LongFormHasNoCountByte",              R"(00 3F 00 04 FF "abc" 10 22 00 01)",              1528},
    {"LongFormOfAnOddLength",               R"(00 3F 00 05 04 "abcd" 00 10 22 00 01)",          1528},
    {"LongFormOfLength0",                   R"(00 3F 00 00 10 22 00 01)",                       1528},
    {"LongFormOfLength258",                 R"(00 3F 01 02 "n"*258 10 22 00 01)",               1528},
    {"LongFormIsCutInTheLength",            R"(00 3F 00)",                                         0},
    {"LongFormIsCutInFrontOfTheLength",     R"(00 3F)",                                            0},
    {"NameIsCut",                           R"(00 24 0A "abc")",                                   0},
    {"NamesCountByteIsMissing",             R"(00 24)",                                            0},

    // Elements between Begin Metafile and Metafile Version.
    {"ElementBetween",                      R"(00 20 W:0x1044 "abcd" 10 22 00 01)",             1528},
    {"ElementOfAnOddLength",                R"(00 20 W:0x1043 "abc" 00 10 22 00 01)",           1528},
    {"ElementOfAnOddLengthNotPadded",       R"(00 20 W:0x1043 "abc" 10 22 00 01)",                 0},
    {"ElementOfTheLongForm",                R"(00 20 W:0x105F W:40 "n"*40 10 22 00 01)",        1528},
    {"ElementOfTheLongFormAndAnOddLength",  R"(00 20 W:0x105F W:41 "n"*41 00 10 22 00 01)",     1528},
    {"ElementIsCut",                        R"(00 20 W:0x1044 "ab")",                              0},
    {"ElementHidesTheVersion",              R"(00 20 W:0x1044 10 22 00 01)",                       0},
    {"ManyElements",                        R"(00 20 (W:0x1042 "ab")*600 10 22 00 01)",         1528},
    {"Class0Element20",                     R"(00 20 W:0x0280 10 22 00 01)",                    1528},
    {"Class0Element21",                     R"(00 20 W:0x02A0 10 22 00 01)",                       0},
    {"Class1Element23",                     R"(00 20 W:0x12E0 10 22 00 01)",                    1528},
    {"Class1Element24",                     R"(00 20 W:0x1300 10 22 00 01)",                       0},
    {"Class2Element0",                      R"(00 20 W:0x2000 10 22 00 01)",                       0},
    {"Class2Element1",                      R"(00 20 W:0x2020 10 22 00 01)",                       0},
    {"Class6Element1",                      R"(00 20 W:0x6020 10 22 00 01)",                    1528},
    {"Class6Element2",                      R"(00 20 W:0x6040 10 22 00 01)",                       0},
    {"Class7Element2",                      R"(00 20 W:0x7040 10 22 00 01)",                    1528},
    {"Class7Element3",                      R"(00 20 W:0x7060 10 22 00 01)",                       0},
    {"SecondBeginMetafile",                 R"(00 20 00 20 10 22 00 01)",                       1528},
    {"SecondBeginMetafileHasNoCountByte",   R"(00 20 00 24 FF "abc" 10 22 00 01)",              1528},

    // 2,576 bytes at most may come before Metafile Version. W:0x007F starts a long element, which makes the count 6.
    {"Count2574",                           R"(00 20 W:0x007F W:2568 00*2568 10 22 00 01)",     1528},
    {"Count2576",                           R"(00 20 W:0x007F W:2570 00*2570 10 22 00 01)",        0},
    {"Count2576ByTheOddLength",             R"(00 20 W:0x007F W:2569 00*2570 10 22 00 01)",        0},
    {"Count2574BehindAName",                R"(00 22 0A "n"*9 W:0x007F W:2558 00*2558 10 22 00 01)",  1528},
    {"Count2576BehindAName",                R"(00 22 0A "n"*9 W:0x007F W:2560 00*2560 10 22 00 01)",     0},
    {"Count2575BehindAnOddName",            R"(00 22 0B "n"*10 W:0x007F W:2558 00*2558 10 22 00 01)", 1528},
    {"Count2577BehindAnOddName",            R"(00 22 0B "n"*10 W:0x007F W:2560 00*2560 10 22 00 01)",    0},
    {"BeginMetafileOf2570Bytes",            R"(00 3F W:2570 00*2570 10 22 00 01)",              1528},
    {"BeginMetafileOf2572Bytes",            R"(00 3F W:2572 00*2572 10 22 00 01)",                 0},
    {"BeginMetafileOf32762Bytes",           R"(00 3F W:32762 00*32762 10 22 00 01)",               0},
    {"ShortElementsToCount2574",            R"(00 20 W:0*1286 10 22 00 01)",                    1528},
    {"ShortElementsToCount2576",            R"(00 20 W:0*1287 10 22 00 01)",                       0},

    // Quirk: length and count are signed 16-bit numbers, and the bytes to skip are the same 16 bits without a sign.
    {"CountWrapsAt32768",                   R"(00 3F W:32764 00*32764 10 22 00 01)",            1528},
    {"CountWrapsAt32768Late",               R"(00 3F W:0x7FFE 00*32766 10 22 00 01)",           1528},
    {"Length7FFFIsRaisedTo8000",            R"(00 3F W:0x7FFF 00*32768 10 22 00 01)",           1528},
    {"Length8000MakesTheCountGoDown",       R"(00 3F W:0x8000 00*32768 10 22 00 01)",           1528},
    {"LengthFFFE",                          R"(00 3F W:0xFFFE 00*65534 10 22 00 01)",           1528},
    {"LengthFFFFIsRaisedTo0",               R"(00 3F W:0xFFFF 10 22 00 01)",                    1528},
    {"LengthFFFFSkipsNothing",              R"(00 3F W:0xFFFF 00*65536 10 22 00 01)",              0},
    {"ElementOfLength8000",                 R"(00 20 W:0x007F W:0x8000 00*32768 10 22 00 01)",  1528},
    {"ElementOfLengthFFFF",                 R"(00 20 W:0x007F W:0xFFFF 10 22 00 01)",           1528},
    {"CountThatWentDownMayGoUpAgain",       R"(00 20 W:0x007F W:0xF000 00*0xF000 W:0x007F W:0x1000 00*0x1000 10 22 00 01)", 1528},
    {"CountThatWentDownMeetsTheLimit",      R"(00 20 W:0x007F W:0xF000 00*0xF000 W:0x007F W:0x1A10 00*0x1A10 10 22 00 01)",    0},
    // clang-format on
};

class ProbeCgm : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeCgm, Answers) { EXPECT_EQ(FIAnswerOf(FIProbeCgm, FIBytes(GetParam().bytes)), GetParam().answer); }

INSTANTIATE_TEST_SUITE_P(Cgm, ProbeCgm, testing::ValuesIn(cgmCases), FICaseName);

std::string HeaderOf(std::uint32_t elementClass, std::uint32_t element, std::uint32_t length) {
    const std::uint32_t header = elementClass << 12 | element << 5 | length;
    return {static_cast<char>(header >> 8), static_cast<char>(header & 0xFF)};
}

// The highest element identifier that a class may have in front of Metafile Version, or -1.
std::int32_t HighestElement(std::uint32_t elementClass) {
    switch (elementClass) {
        case 0:
            return 20;
        case 1:
            return 23;
        case 6:
            return 1;
        case 7:
            return 2;
        default:
            return -1;
    }
}

TEST(Cgm, TakesTheElementsOfFourClasses) {
    constexpr std::uint32_t versionClass = 1;
    constexpr std::uint32_t versionElement = 1;
    for (std::uint32_t elementClass = 0; elementClass < 16; ++elementClass) {
        for (std::uint32_t element = 0; element < 128; ++element) {
            const bool isVersion = elementClass == versionClass && element == versionElement;
            const bool accepted = !isVersion && static_cast<std::int32_t>(element) <= HighestElement(elementClass);
            const std::string bytes = FIBytes("00 20") + HeaderOf(elementClass, element, 0) + FIBytes("10 22 00 01");
            const auto handle = FIMakeTestHandle(bytes);
            EXPECT_EQ(FIAnswerOver(FIProbeCgm, *handle), accepted ? 1528U : 0U) << elementClass << ", " << element;
        }
    }
}

TEST(Cgm, BeginsWithTopBits001) {
    for (std::uint32_t second = 0; second < 256; ++second) {
        const std::uint32_t length = second & 0x1F;
        std::string bytes = {'\0', static_cast<char>(second)};
        if (length == 31) {
            bytes += FIBytes("00 00");
        } else {
            bytes += std::string(length + length % 2, '\0');  // the count byte is one of these
        }
        bytes += FIBytes("10 22 00 01");
        EXPECT_EQ(FIAnswerOf(FIProbeCgm, bytes), second >> 5 == 1 ? 1528U : 0U) << second;
    }
}

TEST(Cgm, RewindsTheReader) {
    EXPECT_EQ(FIAnswerOf(FIProbeCgm, FIBytes("00 20 10 22 00 01"), 4), 1528U);
    const auto handle = FIMakeTestHandle(FIBytes("00 20 10 22 00 01"));
    handle->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeCgm, *handle), 0U);
}

// ---- Whole requests ------------------------------------------------------------------------------------------------

const DecidedCase fileCases[] = {
    // clang-format off
    {"SmallestMetafile",    R"(00 20 10 22 00 01)",                                                      1528, 381_row},
    {"MetafileWithAName",   R"(00 29 08 "drawing." 00 10 22 00 01 10 A6 00 01 00 0A 00 01)",             1528, 381_row},
    {"MetafileOfVersion4",  R"(00 2C 0B "drawing.cgm" W:0x1044 03 "abc" 10 22 00 04 00 40)",             1528, 381_row},
    // clang-format on
};

class CgmRequest : public testing::TestWithParam<DecidedCase> {};

TEST_P(CgmRequest, Answers) { FIExpectDecision(GetParam(), FIFlagExtendedText); }

INSTANTIATE_TEST_SUITE_P(Files, CgmRequest, testing::ValuesIn(fileCases), FICaseName);

TEST(CgmRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("version 5", FIBytes("00 20 10 22 00 05"), 381_row);
    FIExpectRowLetsPass("class 2", FIBytes("00 20 20 20 10 22 00 01"), 381_row);
    FIExpectRowLetsPass("an empty file", "", 381_row);
}

}  // namespace
