// Table headers without a magic number: every field of the three headers on both sides of its limits.
#include "sheets/table_headers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "support/decided_case.h"
#include "support/failing_seeks.h"
#include "support/probe_case.h"

namespace {

// A file's bytes with one of them replaced.
std::string FIWithByte(std::string bytes, std::size_t offset, std::uint32_t value) {
    bytes.at(offset) = static_cast<char>(value);
    return bytes;
}

std::string FICutTo(const std::string& bytes, std::size_t size) { return bytes.substr(0, size); }

// ---- 1201: xBase ----------------------------------------------------------------------------------------------------

constexpr std::size_t xBaseVersion = 0;
constexpr std::size_t xBaseMonth = 2;
constexpr std::size_t xBaseDay = 3;
constexpr std::size_t xBaseFieldType = 43;

// The least header that there is: version 03, 12-31, 48 bytes long with its closing byte in the last place.
const char* const leastXBaseHeader = R"(03 5F 0C 1F 00*4 w:48 >43 "C" 00*3 0D)";

const ProbeCase xBaseCases[] = {
    // clang-format off
    {"LeastHeader",                     R"(03 5F 0C 1F 00*4 w:48 >43 "C" 00*3 0D)",              1201},
    {"LeastHeaderOfTheOtherKind",       R"(F5 5F 0C 1F 00*4 w:48 >43 "C" 00*3 0D)",              1202},
    {"Version83",                       R"(83 5F 0C 1F 00*4 w:48 >43 "C" 00*3 0D)",              1201},
    {"Version8B",                       R"(8B 5F 0C 1F 00*4 w:48 >43 "C" 00*3 0D)",              1202},
    {"Version8E",                       R"(8E 5F 0C 1F 00*4 w:48 >43 "C" 00*3 0D)",              1202},
    {"Version63",                       R"(63 5F 0C 1F 00*4 w:48 >43 "C" 00*3 0D)",              1202},
    {"Version02",                       R"(02 5F 0C 1F 00*4 w:48 >43 "C" 00*3 0D)",                 0},
    {"Version04",                       R"(04 5F 0C 1F 00*4 w:48 >43 "C" 00*3 0D)",                 0},
    {"Month13",                         R"(03 5F 0D 1F 00*4 w:48 >43 "C" 00*3 0D)",                 0},
    {"Month0",                          R"(03 5F 00 1F 00*4 w:48 >43 "C" 00*3 0D)",              1201},
    {"Day32",                           R"(03 5F 0C 20 00*4 w:48 >43 "C" 00*3 0D)",                 0},
    {"Day0",                            R"(03 5F 0C 00 00*4 w:48 >43 "C" 00*3 0D)",              1201},
    {"Month0Day0",                      R"(03 5F 00 00 00*4 w:48 >43 "C" 00*3 0D)",              1201},
    {"OtherBytesAreFree",               R"(03 FF 0C 1F FF*4 w:48 FF*33 "C" FF*3 0D)",            1201},
    {"ClosingByteIsNoField",            R"(03 5F 0D 1F 0D*4 w:48 0D*33 "C" 0D*5)",                  0},
    {"HeaderLength47",                  R"(03 5F 0C 1F 00*4 w:47 >43 "C" 0D*5)",                    0},
    {"HeaderLength48",                  R"(03 5F 0C 1F 00*4 w:48 >43 "C" 0D*5)",                 1201},
    {"HeaderLength0",                   R"(03 5F 0C 1F 00*4 w:0 >43 "C" 0D*5)",                     0},
    {"HeaderLength1",                   R"(03 5F 0C 1F 00*4 w:1 >43 "C" 0D*5)",                     0},
    {"HeaderLength49",                  R"(03 5F 0C 1F 00*4 w:49 >43 "C" >48 0D)",               1201},
    {"HeaderLengthIsLittleEndian",      R"(03 5F 0C 1F 00*4 w:0x0130 >43 "C" >302 0D 00*13000)", 1201},
    {"HeaderLengthIsNotBigEndian",      R"(03 5F 0C 1F 00*4 W:0x0130 >43 "C" >302 0D 00*13000)",    0},
    {"HeaderLength32768IsNotNegative",  R"(03 5F 0C 1F 00*4 w:32768 >43 "C" >32766 0D)",         1201},
    {"HeaderLength65535",               R"(03 5F 0C 1F 00*4 w:65535 >43 "C" >65534 0D)",         1201},
    {"HeaderLength65535Unclosed",       R"(03 5F 0C 1F 00*4 w:65535 >43 "C" >65535)",               0},
    {"ClosedInTheLastPlaceButOne",      R"(03 5F 0C 1F 00*4 w:97 >43 "C" >95 0D 41)",            1201},
    {"ClosedThereAtTheEndOfTheFile",    R"(03 5F 0C 1F 00*4 w:97 >43 "C" >95 0D)",               1201},
    {"ClosedInTheLastPlace",            R"(03 5F 0C 1F 00*4 w:97 >43 "C" >95 41 0D)",            1201},
    {"ClosedInBothPlaces",              R"(03 5F 0C 1F 00*4 w:97 >43 "C" >95 0D 0D)",            1201},
    {"ClosedOnePlaceTooEarly",          R"(03 5F 0C 1F 00*4 w:97 >43 "C" >94 0D 00 00 00)",         0},
    {"ClosedOnePlaceTooLate",           R"(03 5F 0C 1F 00*4 w:97 >43 "C" >94 00 00 00 0D)",         0},
    {"ClosedByALineFeed",               R"(03 5F 0C 1F 00*4 w:97 >43 "C" >95 0A 0A)",               0},
    {"FileEndsBeforeThePlace",          R"(03 5F 0C 1F 00*4 w:97 >43 "C" >95)",                     0},
    {"FieldTypeB",                      R"(03 5F 0C 1F 00*4 w:48 >43 "B" 00*3 0D)",                 0},
    {"FieldTypeE",                      R"(03 5F 0C 1F 00*4 w:48 >43 "E" 00*3 0D)",                 0},
    {"FieldTypeG",                      R"(03 5F 0C 1F 00*4 w:48 >43 "G" 00*3 0D)",                 0},
    {"FieldTypeInSmallLetters",         R"(03 5F 0C 1F 00*4 w:48 >43 "c" 00*3 0D)",                 0},
    {"FieldTypeOnePlaceTooEarly",       R"(03 5F 0C 1F 00*4 w:48 >42 "C" 00*4 0D)",                 0},
    {"FieldTypeOnePlaceTooLate",        R"(03 5F 0C 1F 00*4 w:48 >44 "C" 00*2 0D)",                 0},
    {"EmptyFile",                       "",                                                         0},
    // clang-format on
};

class ProbeXBaseTable : public testing::TestWithParam<ProbeCase> {};
TEST_P(ProbeXBaseTable, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeXBaseTable, FIBytes(GetParam().bytes)), GetParam().answer);
}
INSTANTIATE_TEST_SUITE_P(Headers, ProbeXBaseTable, testing::ValuesIn(xBaseCases), FICaseName);

TEST(XBaseTable, SixVersionBytesAreKnown) {
    const std::string header = FIBytes(leastXBaseHeader);
    for (std::uint32_t version = 0; version <= 0xFF; ++version) {
        FIID answer = 0;
        if (version == 0x03 || version == 0x83) answer = 1201;
        if (version == 0x8B || version == 0x8E || version == 0x63 || version == 0xF5) answer = 1202;
        EXPECT_EQ(FIAnswerOf(FIProbeXBaseTable, FIWithByte(header, xBaseVersion, version)), answer) << version;
    }
}

TEST(XBaseTable, MonthsGoTo12AndDaysTo31) {
    const std::string header = FIBytes(leastXBaseHeader);
    for (std::uint32_t value = 0; value <= 0xFF; ++value) {
        const FIID month = value <= 12 ? 1201 : 0;
        const FIID day = value <= 31 ? 1201 : 0;
        EXPECT_EQ(FIAnswerOf(FIProbeXBaseTable, FIWithByte(header, xBaseMonth, value)), month) << "month " << value;
        EXPECT_EQ(FIAnswerOf(FIProbeXBaseTable, FIWithByte(header, xBaseDay, value)), day) << "day " << value;
    }
}

TEST(XBaseTable, TheFirstFieldHasOneOfSixTypes) {
    const std::string header = FIBytes(leastXBaseHeader);
    const std::string types = "CDFLMN";
    for (std::uint32_t type = 0; type <= 0xFF; ++type) {
        const FIID answer = types.find(static_cast<char>(type)) != std::string::npos ? 1201 : 0;
        EXPECT_EQ(FIAnswerOf(FIProbeXBaseTable, FIWithByte(header, xBaseFieldType, type)), answer) << type;
    }
}

TEST(XBaseTable, AFileThatEndsInsideTheHeaderIsNone) {
    const std::string header = FIBytes(leastXBaseHeader);
    ASSERT_EQ(header.size(), 48U);
    for (std::size_t size = 0; size < header.size(); ++size) {
        EXPECT_EQ(FIAnswerOf(FIProbeXBaseTable, FICutTo(header, size)), 0) << size;
    }
}

TEST(XBaseTable, EveryFailedSeekIsANo) {
    const std::string header = FIBytes(R"(03 5F 0C 1F 00*4 w:97 >43 "C" >95 0D 0D)");
    for (std::uint32_t seek = 0; seek < 3; ++seek) {
        EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeXBaseTable, header, seek), 0) << seek;
    }
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeXBaseTable, header, 3), 1201);
}

// ---- 1206: field table ----------------------------------------------------------------------------------------------

constexpr std::size_t fieldTableZero = 32;
constexpr std::size_t fieldTableCount = 33;
constexpr std::size_t fieldTableGeneration = 57;
constexpr std::size_t fieldTableMarks = 62;
constexpr std::size_t earlierList = 88;
constexpr std::size_t laterList = 120;

// One field in the earlier layout, and one in the later.
const char* const earlierTable = ">2 w:2048 >32 00 01 >57 08 >62 1F 0F >88 01 00";
const char* const laterTable = ">2 w:2048 >32 00 01 >57 09 >62 1F 0F >120 01 00";

const ProbeCase fieldTableCases[] = {
    // clang-format off
    {"Generation8SizeWord2048",         ">2 w:2048 >32 00 01 >57 08 >62 1F 0F >88 01 00",            1207},
    {"Generation0SizeWord2048",         ">2 w:2048 >32 00 01 >57 00 >62 1F 0F >88 01 00",            1207},
    {"SizeWord2047",                    ">2 w:2047 >32 00 01 >57 08 >62 1F 0F >88 01 00",            1206},
    {"SizeWord2049",                    ">2 w:2049 >32 00 01 >57 08 >62 1F 0F >88 01 00",            1206},
    {"SizeWord0",                       ">2 w:0 >32 00 01 >57 08 >62 1F 0F >88 01 00",               1206},
    {"SizeWord65535",                   ">2 w:65535 >32 00 01 >57 08 >62 1F 0F >88 01 00",           1206},
    {"SizeWordIsLittleEndian",          ">2 W:2048 >32 00 01 >57 08 >62 1F 0F >88 01 00",            1206},
    {"Generation9",                     ">2 w:2048 >32 00 01 >57 09 >62 1F 0F >120 01 00",           1217},
    {"Generation9AnySizeWord",          ">2 w:4096 >32 00 01 >57 09 >62 1F 0F >120 01 00",           1217},
    {"Generation255",                   ">2 w:2048 >32 00 01 >57 FF >62 1F 0F >120 01 00",           1217},
    {"Generation128IsNotNegative",      ">2 w:2048 >32 00 01 >57 80 >62 1F 0F >120 01 00",           1217},
    {"EarlierListInTheLaterPlace",      ">2 w:2048 >32 00 01 >57 08 >62 1F 0F >120 01 00",              0},
    {"LaterListInTheEarlierPlace",      ">2 w:2048 >32 00 01 >57 09 >62 1F 0F >88 01 00 >120 07 00",    0},
    {"Byte32IsNotZero",                 ">2 w:2048 >32 01 01 >57 08 >62 1F 0F >88 01 00",               0},
    {"NoFields",                        ">2 w:2048 >32 00 00 >57 08 >62 1F 0F >88 01 00",               0},
    {"FirstMark1E",                     ">2 w:2048 >32 00 01 >57 08 >62 1E 0F >88 01 00",               0},
    {"FirstMark20",                     ">2 w:2048 >32 00 01 >57 08 >62 20 0F >88 01 00",               0},
    {"SecondMark0E",                    ">2 w:2048 >32 00 01 >57 08 >62 1F 0E >88 01 00",               0},
    {"SecondMark10",                    ">2 w:2048 >32 00 01 >57 08 >62 1F 10 >88 01 00",               0},
    {"MarksTheOtherWayRound",           ">2 w:2048 >32 00 01 >57 08 >62 0F 1F >88 01 00",               0},
    {"FieldType0",                      ">2 w:2048 >32 00 01 >57 08 >62 1F 0F >88 00 00",               0},
    {"FieldType7",                      ">2 w:2048 >32 00 01 >57 08 >62 1F 0F >88 07 00",               0},
    {"FieldType8",                      ">2 w:2048 >32 00 01 >57 08 >62 1F 0F >88 08 00",               0},
    {"FieldType10",                     ">2 w:2048 >32 00 01 >57 08 >62 1F 0F >88 0A 00",               0},
    {"FieldType11",                     ">2 w:2048 >32 00 01 >57 08 >62 1F 0F >88 0B 00",               0},
    {"FieldType17",                     ">2 w:2048 >32 00 01 >57 08 >62 1F 0F >88 11 00",               0},
    {"EveryFieldType",                  ">2 w:2048 >32 00 0C >57 08 >62 1F 0F >88 01 00 02 00 03 00 04 00 05 00 06 00 09 00 0C 00 0D 00 0E 00 0F 00 10 00", 1207},
    {"LastFieldOfThreeIsWrong",         ">2 w:2048 >32 00 03 >57 08 >62 1F 0F >88 01 00 02 00 07 00",   0},
    {"FieldBehindTheCountIsFree",       ">2 w:2048 >32 00 02 >57 08 >62 1F 0F >88 01 00 02 00 07 00",1207},
    {"SecondByteOfAFieldIsFree",        ">2 w:2048 >32 00 02 >57 08 >62 1F 0F >88 01 07 02 FF",      1207},
    {"FileEndsBehindTheLastType",       ">2 w:2048 >32 00 02 >57 08 >62 1F 0F >88 01 07 02",         1207},
    {"FileEndsBeforeTheLastType",       ">2 w:2048 >32 00 02 >57 08 >62 1F 0F >88 01 07",               0},
    {"Fields255",                       ">2 w:2048 >32 00 FF >57 08 >62 1F 0F >88 (01 00)*255",      1207},
    {"Fields255TheLastIsWrong",         ">2 w:2048 >32 00 FF >57 08 >62 1F 0F >88 (01 00)*254 07 00",   0},
    {"Fields255FileEndsInTheList",      ">2 w:2048 >32 00 FF >57 08 >62 1F 0F >88 (01 00)*254",         0},
    {"Fields255InTheLaterLayout",       ">2 w:2048 >32 00 FF >57 09 >62 1F 0F >120 (10 FF)*255",     1217},
    {"Fields255LaterFileEndsInTheList", ">2 w:2048 >32 00 FF >57 09 >62 1F 0F >120 (10 FF)*254",        0},
    {"OtherBytesAreFree",               "FF FF w:2048 FF*28 00 01 FF*23 08 FF*4 1F 0F FF*24 01 FF",  1207},
    {"FileEndsBehindByte32",            ">33",                                                          0},
    {"EmptyFile",                       "",                                                             0},
    // clang-format on
};

class ProbeFieldTable : public testing::TestWithParam<ProbeCase> {};
TEST_P(ProbeFieldTable, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeFieldTable, FIBytes(GetParam().bytes)), GetParam().answer);
}
INSTANTIATE_TEST_SUITE_P(Headers, ProbeFieldTable, testing::ValuesIn(fieldTableCases), FICaseName);

bool FIIsFieldType(std::uint32_t type) { return (type >= 1 && type <= 6) || (type >= 12 && type <= 16) || type == 9; }

TEST(FieldTable, TwelveFieldTypesAreKnownInEitherLayout) {
    const std::string earlier = FIBytes(earlierTable);
    const std::string later = FIBytes(laterTable);
    for (std::uint32_t type = 0; type <= 0xFF; ++type) {
        const bool known = FIIsFieldType(type);
        EXPECT_EQ(FIAnswerOf(FIProbeFieldTable, FIWithByte(earlier, earlierList, type)), known ? 1207 : 0) << type;
        EXPECT_EQ(FIAnswerOf(FIProbeFieldTable, FIWithByte(later, laterList, type)), known ? 1217 : 0) << type;
    }
}

TEST(FieldTable, FixedBytesAndGenerations) {
    // A table that is right in both layouts.
    const std::string table = FIBytes(">2 w:2048 >32 00 01 >57 08 >62 1F 0F >88 01 00 >120 01 00");
    for (std::uint32_t value = 0; value <= 0xFF; ++value) {
        const FIID zero = value == 0 ? 1207 : 0;
        const FIID generation = value > 8 ? 1217 : 1207;
        const FIID firstMark = value == 0x1F ? 1207 : 0;
        const FIID secondMark = value == 0x0F ? 1207 : 0;
        EXPECT_EQ(FIAnswerOf(FIProbeFieldTable, FIWithByte(table, fieldTableZero, value)), zero) << value;
        EXPECT_EQ(FIAnswerOf(FIProbeFieldTable, FIWithByte(table, fieldTableGeneration, value)), generation) << value;
        EXPECT_EQ(FIAnswerOf(FIProbeFieldTable, FIWithByte(table, fieldTableMarks, value)), firstMark) << value;
        EXPECT_EQ(FIAnswerOf(FIProbeFieldTable, FIWithByte(table, fieldTableMarks + 1, value)), secondMark) << value;
    }
}

TEST(FieldTable, AsManyFieldsAreTestedAsAreCounted) {
    // Ten good fields, then a wrong one.
    const std::string table = FIBytes(">2 w:2048 >33 01 >57 08 >62 1F 0F >88 (0C 00)*10 11 00");
    for (std::uint32_t count = 0; count <= 20; ++count) {
        const FIID answer = count >= 1 && count <= 10 ? 1207 : 0;
        EXPECT_EQ(FIAnswerOf(FIProbeFieldTable, FIWithByte(table, fieldTableCount, count)), answer) << count;
    }
}

TEST(FieldTable, AFileThatEndsBeforeTheLastTypeIsNone) {
    const std::string earlier = FIBytes(earlierTable);
    for (std::size_t size = 0; size <= earlierList; ++size) {
        EXPECT_EQ(FIAnswerOf(FIProbeFieldTable, FICutTo(earlier, size)), 0) << size;
    }
    EXPECT_EQ(FIAnswerOf(FIProbeFieldTable, FICutTo(earlier, earlierList + 1)), 1207);
    const std::string later = FIBytes(laterTable);
    for (std::size_t size = 0; size <= laterList; ++size) {
        EXPECT_EQ(FIAnswerOf(FIProbeFieldTable, FICutTo(later, size)), 0) << size;
    }
    EXPECT_EQ(FIAnswerOf(FIProbeFieldTable, FICutTo(later, laterList + 1)), 1217);
}

TEST(FieldTable, EveryFailedSeekIsANo) {
    for (const char* const notation : {earlierTable, laterTable}) {
        const std::string table = FIBytes(notation);
        for (std::uint32_t seek = 0; seek < 5; ++seek) {
            EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeFieldTable, table, seek), 0) << seek;
        }
        EXPECT_NE(FIAnswerWithFailedSeek(FIProbeFieldTable, table, 5), 0);
    }
}

// ---- 1212: repeated name --------------------------------------------------------------------------------------------

const ProbeCase repeatedNameCases[] = {
    // clang-format off
    {"NameStandsAgainBehindTheWord",    R"(37 FF >14 w:1009 >34 "CUSTOMER" >1024 "CUSTOMER")",               1212},
    {"Word1008IsTooLow",                R"(37 FF >14 w:1008 >34 "CUSTOMER" >1023 "CUSTOMER" >1065 "CUSTOMER")", 0},
    {"Word1009IsEnough",                R"(37 FF >14 w:1009 >34 "CUSTOMER" >1024 "CUSTOMER" >1066 "CUSTOMER")", 1212},
    {"Word0",                           R"(37 FF >14 w:0 >34 "CUSTOMER" >57 "CUSTOMER")",                       0},
    {"WordIsLittleEndian",              R"(37 FF >14 w:0x0405 >34 "CUSTOMER" >1044 "CUSTOMER")",             1212},
    {"WordIsNotBigEndian",              R"(37 FF >14 W:0x0405 >34 "CUSTOMER" >1044 "CUSTOMER" >3000)",          0},
    {"Word32768IsNotNegative",          R"(37 FF >14 w:32768 >34 "CUSTOMER" >32783 "CUSTOMER")",             1212},
    {"Word65535DoesNotWrap",            R"(37 FF >14 w:65535 >34 "CUSTOMER" >65550 "CUSTOMER")",             1212},
    {"Word65535InTheFurtherPlace",      R"(37 FF >14 w:65535 >34 "CUSTOMER" >65592 "CUSTOMER")",             1212},
    {"FurtherPlaceAlone",               R"(37 FF >14 w:1009 >34 "CUSTOMER" >1024 "SUPPLIER" >1066 "CUSTOMER")", 1212},
    {"FurtherPlaceOneTooEarly",         R"(37 FF >14 w:1009 >34 "CUSTOMER" >1065 "CUSTOMER" 00)",               0},
    {"FurtherPlaceOneTooLate",          R"(37 FF >14 w:1009 >34 "CUSTOMER" >1067 "CUSTOMER")",                  0},
    {"NearPlaceOneTooEarly",            R"(37 FF >14 w:1009 >34 "CUSTOMER" >1023 "CUSTOMER" >1100)",            0},
    {"NearPlaceOneTooLate",             R"(37 FF >14 w:1009 >34 "CUSTOMER" >1025 "CUSTOMER" >1100)",            0},
    {"EighthByteDiffersInBothPlaces",   R"(37 FF >14 w:1009 >34 "CUSTOMER" >1024 "CUSTOMEN" >1066 "CUSTOMEN")", 0},
    {"FirstByteDiffersInBothPlaces",    R"(37 FF >14 w:1009 >34 "CUSTOMER" >1024 "KUSTOMER" >1066 "KUSTOMER")", 0},
    {"EighthByteDiffersInTheNearPlace", R"(37 FF >14 w:1009 >34 "CUSTOMER" >1024 "CUSTOMEN" >1066 "CUSTOMER")", 1212},
    {"NinthByteIsFree",                 R"(37 FF >14 w:1009 >34 "CUSTOMER" 41 >1024 "CUSTOMER" 42)",         1212},
    {"CaseCounts",                      R"(37 FF >14 w:1009 >34 "CUSTOMER" >1024 "customer" >1066 "customer")", 0},
    {"NameOfZeros",                     "37 FF >14 w:1009 >1032",                                            1212},
    {"NameOfZerosFileEndsInTheCopy",    "37 FF >14 w:1009 >1031",                                               0},
    {"FileEndsInTheNearCopy",           R"(37 FF >14 w:1009 >34 "CUSTOMER" >1024 "CUSTOME")",                   0},
    {"FileEndsInTheFurtherCopy",        R"(37 FF >14 w:1009 >34 "CUSTOMER" >1066 "CUSTOME")",                   0},
    {"FirstByteDiffersFromTheMark",     R"(36 FF >14 w:1009 >34 "CUSTOMER" >1024 "CUSTOMER")",                  0},
    {"SecondByteDiffersFromTheMark",    R"(37 FE >14 w:1009 >34 "CUSTOMER" >1024 "CUSTOMER")",                  0},
    {"MarkTheOtherWayRound",            R"(FF 37 >14 w:1009 >34 "CUSTOMER" >1024 "CUSTOMER")",                  0},
    {"MarkAlone",                       "37 FF",                                                                0},
    {"HalfAMark",                       "37",                                                                   0},
    {"EmptyFile",                       "",                                                                     0},
    {"SixteenBytesCompareTheEndWithItself", "37 FF >14 w:1009",                                              1212},
    {"SixteenBytesWord1008",            "37 FF >14 w:1008",                                                     0},
    {"FifteenBytesHaveNoWord",          "37 FF >14 FF",                                                         0},
    {"FourteenBytesHaveNoWord",         "37 FF >14",                                                            0},
    {"ThirtyFourBytesHaveNoNameByte",   "37 FF >14 w:1009 FF*18",                                            1212},
    {"ThirtyFiveBytesHaveANameByte",    "37 FF >14 w:1009 FF*19",                                               0},
    {"NameOfFFIsNotTheEndOfTheFile",    "37 FF >14 w:1009 >34 FF*8",                                            0},
    {"SevenOfNameAndTheEnd",            R"(37 FF >14 w:1009 >34 "CUSTOME")",                                    0},
    // clang-format on
};

class ProbeRepeatedName : public testing::TestWithParam<ProbeCase> {};
TEST_P(ProbeRepeatedName, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeRepeatedName, FIBytes(GetParam().bytes)), GetParam().answer);
}
INSTANTIATE_TEST_SUITE_P(Headers, ProbeRepeatedName, testing::ValuesIn(repeatedNameCases), FICaseName);

TEST(RepeatedName, AllEightBytesCount) {
    const std::string table = FIBytes(R"(37 FF >14 w:1009 >34 "CUSTOMER" >1024 "CUSTOMER" >1074)");
    for (std::size_t place = 0; place < 8; ++place) {
        EXPECT_EQ(FIAnswerOf(FIProbeRepeatedName, FIWithByte(table, 1024 + place, '#')), 0) << place;
        EXPECT_EQ(FIAnswerOf(FIProbeRepeatedName, FIWithByte(table, 34 + place, '#')), 0) << place;
    }
}

TEST(RepeatedName, ShortFilesNeedAHandleThatSeeksBehindTheEnd) {
    for (std::size_t size = 16; size <= 34; ++size) {
        const std::string table = FIBytes("37 FF >14 w:1009") + std::string(size - 16, 'x');
        EXPECT_EQ(FIAnswerOf(FIProbeRepeatedName, table), 1212) << size;
        const auto handle = FIMakeTestHandle(table);
        handle->refuseSeekBehindEnd = true;
        EXPECT_EQ(FIAnswerOver(FIProbeRepeatedName, *handle), 0) << size;
    }
}

TEST(RepeatedName, EveryFailedSeekIsANo) {
    const std::string near = FIBytes(R"(37 FF >14 w:1009 >34 "CUSTOMER" >1024 "CUSTOMER")");
    for (std::uint32_t seek = 0; seek < 4; ++seek) {
        EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeRepeatedName, near, seek), 0) << seek;
    }
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeRepeatedName, near, 4), 1212);
    const std::string further = FIBytes(R"(37 FF >14 w:1009 >34 "CUSTOMER" >1066 "CUSTOMER")");
    for (std::uint32_t seek = 0; seek < 5; ++seek) {
        EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeRepeatedName, further, seek), 0) << seek;
    }
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeRepeatedName, further, 5), 1212);
}

// ---- The whole system -----------------------------------------------------------------------------------------------

const DecidedCase wholeCases[] = {
    // clang-format off
    {"XBase",                      R"(03 5F 0C 1F 00*4 w:48 >43 "C" 00*3 0D)",                1201, 363_row},
    {"XBaseWithMemo",              R"(83 5F 0C 1F 00*4 w:48 >43 "M" 00*3 0D)",                1201, 363_row},
    {"XBaseOfTheOtherKind",        R"(F5 5F 0C 1F 00*4 w:48 >43 "C" 00*3 0D)",                1202, 363_row},
    {"XBaseMonth13",               R"(03 5F 0D 1F 00*4 w:48 >43 "C" 00*3 0D)",                1999,   0},
    {"XBaseDay32",                 R"(03 5F 0C 20 00*4 w:48 >43 "C" 00*3 0D)",                1999,   0},
    {"XBaseMonth0Day0",            R"(03 5F 00 00 00*4 w:48 >43 "C" 00*3 0D)",                1201, 363_row},
    {"XBaseClosedBeforeTheEnd",    R"(03 5F 0C 1F 00*4 w:97 >43 "N" >95 0D 41)",              1201, 363_row},
    {"XBaseClosedTooEarly",        R"(03 5F 0C 1F 00*4 w:97 >43 "N" >94 0D 41 41)",           1999,   0},
    {"XBaseFieldTypeB",            R"(03 5F 0C 1F 00*4 w:48 >43 "B" 00*3 0D)",                1999,   0},
    {"XBaseFieldTypeE",            R"(03 5F 0C 1F 00*4 w:48 >43 "E" 00*3 0D)",                1999,   0},
    {"XBaseFieldTypeG",            R"(03 5F 0C 1F 00*4 w:48 >43 "G" 00*3 0D)",                1999,   0},
    {"FieldTable",                 "06 9A w:4096 >33 01 >57 08 >62 1F 0F >88 01 00",          1206, 357_row},
    {"FieldTableGeneration8",      "06 9A w:2048 >33 01 >57 08 >62 1F 0F >88 01 00",          1207, 357_row},
    {"FieldTableGeneration9",      "06 9A w:2048 >33 01 >57 09 >62 1F 0F >120 01 00",         1217, 357_row},
    {"FieldTableType7",            "06 9A w:2048 >33 01 >57 08 >62 1F 0F >88 07 00",          1999,   0},
    {"FieldTableType17",           "06 9A w:2048 >33 01 >57 08 >62 1F 0F >88 11 00",          1999,   0},
    {"FieldTable255Fields",        "06 9A w:2048 >33 FF >57 08 >62 1F 0F >88 (01 00)*255",    1207, 357_row},
    {"FieldTable255FieldsCut",     "06 9A w:2048 >33 FF >57 08 >62 1F 0F >88 (01 00)*254",    1999,   0},
    {"RepeatedName",               R"(37 FF >14 w:1009 >34 "CUSTOMER" >1024 "CUSTOMER")",     1212, 370_row},
    {"RepeatedNameWord1008",       R"(37 FF >14 w:1008 >34 "CUSTOMER" >1023 "CUSTOMER")",     1999,   0},
    {"RepeatedNameFurtherOn",      R"(37 FF >14 w:1009 >34 "CUSTOMER" >1066 "CUSTOMER")",     1212, 370_row},
    {"RepeatedNameOfSixteenBytes", "37 FF >14 w:1009",                                        1212, 370_row},
    {"RepeatedNameOfFifteenBytes", "37 FF >14 FF",                                            1999,   0},
    // A file that fits both headers is told by the row that stands first.
    {"FieldTableBeforeXBase",      "03 5F 0C 1F 00*4 w:48 >32 00 01 >43 43 >46 0D 0D >57 08 >62 1F 0F >88 01 00", 1206, 357_row},
    // clang-format on
};

class TableHeaders : public testing::TestWithParam<DecidedCase> {};
TEST_P(TableHeaders, AreToldByTheirRow) { FIExpectDecision(GetParam()); }
INSTANTIATE_TEST_SUITE_P(WholeSystem, TableHeaders, testing::ValuesIn(wholeCases), FICaseName);

}  // namespace
