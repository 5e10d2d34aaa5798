// Worksheet records: the five records behind the opening one, by type, length and number.
#include "sheets/worksheet_records.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "support/decided_case.h"
#include "support/failing_seeks.h"
#include "support/probe_case.h"

namespace {

// The row of the table has compared the type and the length of the opening record; the routine goes on at its data.
constexpr std::uint32_t start = 4;
constexpr std::uint32_t longestData = 128;

const ProbeCase recordCases[] = {
    // clang-format off
    // Each file: the opening record and five more, "w:type w:length data".
    {"TwoThreeSixAndTwoOthers",          "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:2 00*2 w:100 w:0",             1416},
    {"OthersFirst",                      "w:0 w:2 FF FF w:99 w:2 00*2 w:100 w:0 w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8",             1416},
    {"OthersOf128Bytes",                 "w:0 w:2 FF FF w:99 w:128 00*128 w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:100 w:128 00*128", 1416},
    {"OneOf129Bytes",                    "w:0 w:2 FF FF w:99 w:129 00*129 w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:100 w:128 00*128",   0},
    {"TheLastOf129Bytes",                "w:0 w:2 FF FF w:99 w:128 00*128 w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:100 w:129 00*129",   0},
    {"OneOf256Bytes",                    "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:256 00*256 w:100 w:0",            0},
    {"OneOf65535Bytes",                  "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:0 w:100 w:65535",                 0},
    {"OneOf32768BytesIsNotNegative",     "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:0 w:100 w:32768",                 0},
    {"Six75And150",                      "w:0 w:2 FF FF w:6 w:8 00*8 w:75 w:0 w:150 w:0 w:99 w:0 w:99 w:0",                      1416},
    {"Six75And150Of128Bytes",            "w:0 w:2 FF FF w:6 w:8 00*8 w:75 w:128 00*128 w:150 w:128 00*128 w:99 w:0 w:99 w:0",    1416},
    {"Six75And150Of77And1",              "w:0 w:2 FF FF w:6 w:8 00*8 w:75 w:77 00*77 w:150 w:1 00 w:99 w:0 w:99 w:0",            1416},
    {"Type75Of129Bytes",                 "w:0 w:2 FF FF w:6 w:8 00*8 w:75 w:129 00*129 w:150 w:0 w:99 w:0 w:99 w:0",                0},
    {"Type150Of129Bytes",                "w:0 w:2 FF FF w:6 w:8 00*8 w:75 w:0 w:150 w:129 00*129 w:99 w:0 w:99 w:0",                0},
    {"SixAnd47And3",                     "w:0 w:2 FF FF w:47 w:1 00 w:6 w:8 00*8 w:3 w:1 00 w:99 w:0 w:99 w:0",                  1416},
    {"SixAndOneOther",                   "w:0 w:2 FF FF w:6 w:8 00*8 w:75 w:0 w:99 w:0 w:99 w:0 w:99 w:0",                          0},
    {"SixAlone",                         "w:0 w:2 FF FF w:6 w:8 00*8 w:99 w:0 w:99 w:0 w:99 w:0 w:99 w:0",                          0},
    {"TypeTwoCountsOnce",                "w:0 w:2 FF FF w:2 w:1 00 w:2 w:1 00 w:6 w:8 00*8 w:99 w:0 w:99 w:0",                      0},
    {"Type75CountsOnce",                 "w:0 w:2 FF FF w:75 w:0 w:75 w:1 00 w:75 w:2 00*2 w:75 w:3 00*3 w:6 w:8 00*8",             0},
    {"TypeSixCountsForItselfAlone",      "w:0 w:2 FF FF w:6 w:8 00*8 w:6 w:8 00*8 w:6 w:8 00*8 w:2 w:1 00 w:99 w:0",                0},
    {"AllButSix",                        "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:47 w:1 00 w:75 w:0 w:150 w:0",                      0},
    {"SixAndFourOthers",                 "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:47 w:1 00 w:75 w:0 w:6 w:8 00*8",                1416},
    {"TypeSixOf7Bytes",                  "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:7 00*7 w:99 w:0 w:99 w:0",                      0},
    {"TypeSixOf9Bytes",                  "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:9 00*9 w:99 w:0 w:99 w:0",                      0},
    {"TypeSixOf7BytesAfterAGoodOne",     "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:0 w:6 w:7 00*7",                  0},
    {"TypeTwoOf2BytesAfterAllTheRest",   "w:0 w:2 FF FF w:3 w:1 00 w:47 w:1 00 w:6 w:8 00*8 w:75 w:0 w:2 w:2 00*2",                 0},
    {"TypeTwoOf0Bytes",                  "w:0 w:2 FF FF w:3 w:1 00 w:47 w:1 00 w:6 w:8 00*8 w:75 w:0 w:2 w:0",                      0},
    {"TypeThreeOf2Bytes",                "w:0 w:2 FF FF w:2 w:1 00 w:47 w:1 00 w:6 w:8 00*8 w:75 w:0 w:3 w:2 00*2",                 0},
    {"Type47Of2Bytes",                   "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:75 w:0 w:47 w:2 00*2",                 0},
    {"KnownTypeBehindTheFifth",          "w:0 w:2 FF FF w:2 w:1 00 w:99 w:0 w:99 w:0 w:99 w:0 w:6 w:8 00*8 w:3 w:1 00",             0},
    {"SixBehindTheFifth",                "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:99 w:0 w:99 w:0 w:99 w:0 w:6 w:8 00*8",             0},
    {"WrongLengthBehindTheFifth",        "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:99 w:0 w:99 w:0 w:6 w:8 00*8 w:6 w:7 00*7",      1416},
    {"TypesHave16Bits",                  "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:0x0106 w:7 00*7 w:0x0202 w:0",      1416},
    {"HighByteMakesAnotherType",         "w:0 w:2 FF FF w:0x0102 w:1 00 w:0x0103 w:1 00 w:6 w:8 00*8 w:99 w:0 w:99 w:0",            0},
    {"TypesAndLengthsAreLittleEndian",   "w:0 w:2 FF FF W:2 W:1 00 W:3 W:1 00 W:6 W:8 00*8 W:99 W:0 W:99 W:0",                      0},
    {"OpeningTypeInTheMiddleIsAnyOther", "w:0 w:2 FF FF w:2 w:1 00 w:0 w:2 00*2 w:3 w:1 00 w:0 w:2 00*2 w:6 w:8 00*8",           1416},
    {"Type65535IsAnyOther",              "w:0 w:2 FF FF w:2 w:1 00 w:65535 w:2 00*2 w:3 w:1 00 w:1 w:0 w:6 w:8 00*8",            1416},
    {"FileEndsInTheFifthsData",          "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:99 w:0 w:99 w:0 w:6 w:8 00*3",                   1416},
    {"FileEndsBehindTheFifthsHeader",    "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:99 w:0 w:99 w:0 w:6 w:8",                        1416},
    {"FileEndsInTheFifthsLength",        "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:99 w:0 w:99 w:0 w:6 08",                            0},
    {"FileEndsBehindTheFifthsType",      "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:99 w:0 w:99 w:0 w:6",                               0},
    {"FileEndsBeforeTheFifth",           "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:75 w:0 w:6 w:8 00*8",                               0},
    {"FileEndsInTheFourthsData",         "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:99 w:0 w:6 w:8 00*7",                               0},
    {"FileEndsInTheOpeningRecord",       "w:0 w:2 FF",                                                                              0},
    {"OpeningRecordWithoutData",         "w:0 w:2",                                                                                 0},
    {"OpeningRecordAlone",               "w:0 w:2 FF FF",                                                                           0},
    {"OpeningBytesWereComparedByTheRow", "FF FF FF FF FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:0 w:99 w:0",               1416},
    {"EmptyFile",                        "",                                                                                        0},
    // clang-format on
};

class ProbeWorksheetRecords : public testing::TestWithParam<ProbeCase> {};
TEST_P(ProbeWorksheetRecords, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeWorksheetRecords, FIBytes(GetParam().bytes), start), GetParam().answer);
}
INSTANTIATE_TEST_SUITE_P(Records, ProbeWorksheetRecords, testing::ValuesIn(recordCases), FICaseName);

std::string FIMakeRecord(std::uint32_t type, std::uint32_t length) {
    return FIBytes("w:" + std::to_string(type) + " w:" + std::to_string(length)) + std::string(length, '\0');
}

FIID FIAnswerOnce(const std::string& records) {
    const auto handle = FIMakeTestHandle(FIBytes("w:0 w:2 FF FF") + records);
    return FIAnswerOver(FIProbeWorksheetRecords, *handle, start);
}

TEST(WorksheetRecords, EveryLengthOfEveryKnownType) {
    struct Type {
        std::uint32_t number;
        std::uint32_t only;  // the length it must have; longestData + 1 for any
    };
    const Type types[] = {{2, 1}, {3, 1}, {6, 8}, {47, 1}, {75, 129}, {150, 129}, {1, 129}, {5, 129}, {7, 129}};
    const std::string enough = FIMakeRecord(6, 8) + FIMakeRecord(2, 1) + FIMakeRecord(3, 1) + FIMakeRecord(75, 0);
    for (const Type& type : types) {
        for (std::uint32_t length = 0; length <= 300; ++length) {
            const bool fits = length <= longestData && (type.only > longestData || length == type.only);
            const std::string record = FIMakeRecord(type.number, length);
            EXPECT_EQ(FIAnswerOnce(record + enough), fits ? 1416 : 0) << type.number << " of " << length;
            EXPECT_EQ(FIAnswerOnce(enough + record), fits ? 1416 : 0) << type.number << " of " << length;
        }
    }
}

TEST(WorksheetRecords, EveryFiveOfTheTypes) {
    // The six known types and one other, in every order. A set of five tells by counting.
    constexpr std::array<std::uint32_t, 7> types = {2, 3, 6, 47, 75, 150, 99};
    constexpr std::array<std::uint32_t, 7> lengths = {1, 1, 8, 1, 5, 0, 3};
    std::array<std::uint32_t, 5> places = {};
    for (std::uint32_t number = 0; number < 7 * 7 * 7 * 7 * 7; ++number) {
        std::uint32_t rest = number;
        for (std::uint32_t& place : places) {
            place = rest % 7;
            rest /= 7;
        }
        std::string records;
        for (const std::uint32_t place : places) records += FIMakeRecord(types[place], lengths[place]);
        const auto holds = [&](std::uint32_t type) {
            return std::ranges::any_of(places, [&](std::uint32_t place) { return types[place] == type; });
        };
        const std::uint32_t others = (holds(2) ? 1U : 0U) + (holds(3) ? 1U : 0U) + (holds(47) ? 1U : 0U) +
                                     (holds(75) ? 1U : 0U) + (holds(150) ? 1U : 0U);
        ASSERT_EQ(FIAnswerOnce(records), holds(6) && others >= 2 ? 1416 : 0) << number;
    }
}

TEST(WorksheetRecords, AnyOtherTypeIsPassedOver) {
    const std::string enough = FIMakeRecord(6, 8) + FIMakeRecord(2, 1) + FIMakeRecord(3, 1) + FIMakeRecord(75, 0);
    const std::string short6And2 = FIMakeRecord(6, 8) + FIMakeRecord(2, 1) + FIMakeRecord(99, 0) + FIMakeRecord(99, 0);
    for (std::uint32_t type = 0; type <= 0xFFFF; type += type < 512 ? 1 : 251) {
        const bool fixedLength = type == 2 || type == 3 || type == 6 || type == 47;
        const bool second = type == 75 || type == 150;  // with type 2 the second flag that is needed
        EXPECT_EQ(FIAnswerOnce(enough + FIMakeRecord(type, 20)), fixedLength ? 0 : 1416) << type;
        EXPECT_EQ(FIAnswerOnce(short6And2 + FIMakeRecord(type, 20)), second ? 1416 : 0) << type;
    }
}

TEST(WorksheetRecords, AFileThatEndsBeforeTheFifthHeaderIsNone) {
    const std::string records = FIBytes("w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:75 w:3 00*3 w:47 w:1 00");
    for (std::size_t size = 0; size < records.size() - 1; ++size) {
        EXPECT_EQ(FIAnswerOf(FIProbeWorksheetRecords, records.substr(0, size), start), 0) << size;
    }
    EXPECT_EQ(FIAnswerOf(FIProbeWorksheetRecords, records.substr(0, records.size() - 1), start), 1416);
}

TEST(WorksheetRecords, AHandleThatRefusesToSeekBehindTheEnd) {
    // The fifth record's data may end with the file, not behind it.
    const std::string records = FIBytes("w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:99 w:0 w:99 w:0 w:6 w:8 00*8");
    const auto whole = FIMakeTestHandle(records);
    whole->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeWorksheetRecords, *whole, start), 1416);
    const auto cut = FIMakeTestHandle(records.substr(0, records.size() - 1));
    cut->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeWorksheetRecords, *cut, start), 0);
}

TEST(WorksheetRecords, EveryFailedSeekIsANo) {
    // Seek 0 places the reader; then comes one seek for each record.
    const std::string records = FIBytes("w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:4 00*4 w:99 w:0");
    for (std::uint32_t seek = 1; seek <= 5; ++seek) {
        EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeWorksheetRecords, records, seek, start), 0) << seek;
    }
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeWorksheetRecords, records, 6, start), 1416);
}

TEST(WorksheetRecords, GoesOnWhereTheReaderStands) {
    const std::string records = FIBytes("FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:4 00*4 w:99 w:0");
    for (const std::uint32_t place : {1U, 4U, 5U, 100U, 2040U, 2048U, 70000U}) {
        EXPECT_EQ(FIAnswerOf(FIProbeWorksheetRecords, std::string(place, '\xEE') + records, place), 1416) << place;
        EXPECT_EQ(FIAnswerOf(FIProbeWorksheetRecords, std::string(place, '\xEE') + records, place + 1), 0) << place;
    }
}

const DecidedCase wholeCases[] = {
    // clang-format off
    {"FiveRecords",             "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:2 00*2 w:100 w:0",  1416, 334_row},
    {"Six75And150",             "w:0 w:2 FF FF w:6 w:8 00*8 w:75 w:128 00*128 w:150 w:0 w:99 w:0 w:99 w:0",  1416, 334_row},
    {"SixAndOneOther",          "w:0 w:2 FF FF w:6 w:8 00*8 w:75 w:0 w:99 w:0 w:99 w:0 w:99 w:0",            1999,   0},
    {"TypeTwoCountsOnce",       "w:0 w:2 FF FF w:2 w:1 00 w:2 w:1 00 w:6 w:8 00*8 w:99 w:0 w:99 w:0",        1999,   0},
    {"TypeSixOf7Bytes",         "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:7 00*7 w:99 w:0 w:99 w:0",        1999,   0},
    {"KnownTypeBehindTheFifth", "w:0 w:2 FF FF w:2 w:1 00 w:99 w:0 w:99 w:0 w:99 w:0 w:6 w:8 00*8 w:3 w:1 00", 1999, 0},
    {"TypeTwoOf2BytesAtTheEnd", "w:0 w:2 FF FF w:3 w:1 00 w:47 w:1 00 w:6 w:8 00*8 w:75 w:0 w:2 w:2 00*2",    1999,  0},
    {"OneOf129Bytes",           "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:129 00*129 w:99 w:0", 1999, 0},
    {"OneOf128Bytes",           "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:128 00*128 w:99 w:0", 1416, 334_row},
    {"EndsInTheFifthsData",     "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:99 w:0 w:99 w:0 w:6 w:8 00*3",        1416, 334_row},
    {"EndsBeforeTheFifth",      "w:0 w:2 FF FF w:2 w:1 00 w:3 w:1 00 w:75 w:0 w:6 w:8 00*8",                 1999,   0},
    {"OpeningRecordOfLength3",  "w:0 w:3 FF FF w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:2 00*2 w:100 w:0",  1999,   0},
    // Version words that an earlier row of the family takes.
    {"Version0404",             "w:0 w:2 04 04 w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:2 00*2 w:100 w:0",  1401, 290_row},
    {"Version0405",             "w:0 w:2 05 04 w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:2 00*2 w:100 w:0",  1400, 296_row},
    {"Version0406",             "w:0 w:2 06 04 w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:2 00*2 w:100 w:0",  1402, 291_row},
    {"Version0407",             "w:0 w:2 07 04 w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:2 00*2 w:100 w:0",  1416, 334_row},
    {"Version2207",             "w:0 w:2 07 22 w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:2 00*2 w:100 w:0",  1409, 299_row},
    {"Version1001",             "w:0 w:2 01 10 w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:2 00*2 w:100 w:0",  1420, 300_row},
    {"Version5120",             "w:0 w:2 20 51 w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:99 w:2 00*2 w:100 w:0",  1411, 302_row},
    // clang-format on
};

class WorksheetRows : public testing::TestWithParam<DecidedCase> {};
TEST_P(WorksheetRows, AreToldInTableOrder) { FIExpectDecision(GetParam()); }
INSTANTIATE_TEST_SUITE_P(WholeSystem, WorksheetRows, testing::ValuesIn(wholeCases), FICaseName);

}  // namespace
