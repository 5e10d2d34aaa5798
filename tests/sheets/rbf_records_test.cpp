// Records of the extension RBF: links that lead back to where they came from, and slots with a marker.
#include "sheets/rbf_records.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "reader/reader.h"
#include "support/decided_case.h"
#include "support/failing_seeks.h"
#include "support/probe_case.h"

namespace {

// ---- 1210: linked records -------------------------------------------------------------------------------------------
//
// A link holds an offset plus 1. In the rows below the first record links to 100, and the record there links back.

const ProbeCase linkedRecordCases[] = {
    // clang-format off
    // The record at 100 links on to 200, whose back link at 204 holds 100 plus 1.
    {"BackLinkLeadsToTheRecord",         "d:101 >100 d:201 >204 d:101",                                1210},
    {"BackLinkIsOneTooHigh",             "d:101 >100 d:201 >204 d:102",                                   0},
    {"BackLinkIsOneTooLow",              "d:101 >100 d:201 >204 d:100",                                   0},
    {"BackLinkIsNone",                   "d:101 >100 d:201 >204 d:0",                                     0},
    {"BackLinkStandsOneTooEarly",        "d:101 >100 d:201 >203 d:101 00",                                0},
    {"BackLinkStandsOneTooLate",         "d:101 >100 d:201 >205 d:101",                                   0},
    {"BackLinkLosesItsLastByte",         "d:101 >100 d:201 >204 65 00 00",                                0},
    {"FileEndsBeforeTheBackLink",        "d:101 >100 d:201 >204",                                         0},
    {"LinksAreNotBigEndian",             "D:101 >100 D:201 >204 D:101",                                   0},
    {"LinksHave32Bits",                  "d:70001 >70000 d:131073 >131076 d:70001",                    1210},
    {"TopBitsOfLinkBytesAreNoSigns",     "d:0x8081 >0x8080 d:0x9091 >0x9094 d:0x8081",                 1210},
    // Links to the first record itself, at 0: the offset that the back link leads to has to be above 0.
    {"BackLinkToOffset0IsRefused",       "d:1 d:1",                                                       0},
    {"RecordThatLinksToItselfAt100",     "d:101 >100 d:101 d:101",                                     1210},

    // Without a forward link the first record's continuation behind its name counts.
    {"ContinuationOfTheFirstRecord",     R"(d:0 00*4 w:4 "NAME" d:101 >100 d:201 >204 d:101)",         1210},
    {"NameLengthOf0",                    "d:0 00*4 w:0 d:101 >100 d:201 >204 d:101",                   1210},
    {"NameLengthOf1",                    R"(d:0 00*4 w:1 "N" d:101 >100 d:201 >204 d:101)",            1210},
    {"NameLengthOfMinus4CountsAs4",      R"(d:0 00*4 w:0xFFFC "NAME" d:101 >100 d:201 >204 d:101)",    1210},
    {"NameLengthOfMinus1CountsAs1",      R"(d:0 00*4 w:0xFFFF "N" d:101 >100 d:201 >204 d:101)",       1210},
    {"NameLengthIsLittleEndian",         "d:0 00*4 w:0x0102 >268 d:301 >300 d:401 >404 d:301",         1210},
    {"NameLengthOf32767",                "d:0 00*4 w:32767 >32777 d:40001 >40000 d:40101 >40104 d:40001",  1210},
    {"NameLengthOfMinus32767",           "d:0 00*4 w:0x8001 >32777 d:40001 >40000 d:40101 >40104 d:40001", 1210},
    {"NameLengthOfMinus32768",           "d:0 00*4 w:0x8000 >32778 d:40001 >40000 d:40101 >40104 d:40001", 1210},
    {"NameLengthOneTooShort",            R"(d:0 00*4 w:3 "NAME" d:101 >100 d:201 >204 d:101)",            0},
    {"FirstBackLinkIsFree",              R"(d:0 FF*4 w:4 "NAME" d:101 >100 d:201 >204 d:101)",         1210},
    {"NoLinkAndNoContinuation",          R"(d:0 00*4 w:4 "NAME" d:0)",                                    0},
    {"NoLinkAndNoContinuationLongFile",  R"(d:0 00*4 w:4 "NAME" d:0 >5000)",                              0},
    {"AllZero",                          "00*512",                                                        0},

    // Without a forward link at 100 the continuation there counts, and the record behind it links back to that field:
    // 100 + 10 + 6 is 116.
    {"BackLinkLeadsToTheContinuation",   R"(d:101 >100 d:0 00*4 w:6 "LENGTH" d:301 >304 d:117)",       1210},
    {"BackLinkLeadsToTheRecordInstead",  R"(d:101 >100 d:0 00*4 w:6 "LENGTH" d:301 >304 d:101)",          0},
    {"BackLinkToTheContinuationPlus1",   R"(d:101 >100 d:0 00*4 w:6 "LENGTH" d:301 >304 d:118)",          0},
    {"BackLinkToTheContinuationMinus1",  R"(d:101 >100 d:0 00*4 w:6 "LENGTH" d:301 >304 d:116)",          0},
    {"SecondLengthOfMinus6CountsAs6",    R"(d:101 >100 d:0 00*4 w:0xFFFA "LENGTH" d:301 >304 d:117)",  1210},
    {"SecondLengthOf0",                  "d:101 >100 d:0 00*4 w:0 d:301 >304 d:111",                   1210},
    {"SecondLengthOf32767",              "d:101 >100 d:0 00*4 w:0x7FFF >32877 d:40001 >40004 d:32878", 1210},
    {"SecondLengthOfMinus32768",         "d:101 >100 d:0 00*4 w:0x8000 >32878 d:40001 >40004 d:32879", 1210},
    {"SecondBackLinkIsFree",             R"(d:101 >100 d:0 FF*4 w:6 "LENGTH" d:301 >304 d:117)",       1210},
    {"SecondContinuationIsNone",         R"(d:101 >100 d:0 00*4 w:6 "LENGTH" d:0 >304 d:117)",            0},
    {"BothContinuations",                R"(d:0 00*4 w:4 "NAME" d:101 >100 d:0 00*4 w:6 "LENGTH" d:301 >304 d:117)", 1210},
    // The first record continues in itself: 0 + 10 + 4 is 14, and its own back link at 4 leads there.
    {"RecordThatContinuesInItself",      R"(d:0 d:15 w:4 "NAME" d:1)",                                 1210},
    {"RecordThatContinuesInItselfOff",   R"(d:0 d:16 w:4 "NAME" d:1)",                                    0},

    // Sums wrap in 32 bits: FFFFFFFD plus 3 is 0, and the first link is the back link.
    {"BackLinkOffsetWrapsTo0",           "d:101 >100 d:0xFFFFFFFD",                                    1210},
    {"BackLinkOffsetBelowTheWrap",       "d:101 >100 d:0xFFFFFFFC",                                       0},
    // The end of the file counts as -1 in its byte's place: FD FF FF and the end are FFFFFFFD.
    {"EndOfFileCountsAsMinus1",          "d:101 >100 FD FF FF",                                        1210},
    {"EndOfFileInTwoPlaces",             "d:101 >100 FD FF",                                              0},
    {"EndOfFileInTheFirstLink",          "65 00 00",                                                      0},
    {"EndOfFileInTheFirstLength",        "d:0 00*4 01",                                                   0},
    {"EndOfFileInTheFirstContinuation",  R"(d:0 00*4 w:4 "NAME" 65 00)",                                  0},
    {"EndOfFileBeforeTheSecondRecord",   "d:101",                                                         0},
    {"EndOfFileInTheSecondLength",       "d:101 >100 d:0 00*4 06",                                        0},
    {"EndOfFileInTheSecondContinuation", R"(d:101 >100 d:0 00*4 w:6 "LENGTH" 2D 01)",                     0},
    {"FirstLinkFarBehindTheEnd",         "d:0x80000001 >512",                                             0},
    {"FirstLinkAtTheTop",                "d:0xFFFFFFFF >512",                                             0},
    {"EmptyFile",                        "",                                                              0},
    // clang-format on
};

class ProbeLinkedRecords : public testing::TestWithParam<ProbeCase> {};
TEST_P(ProbeLinkedRecords, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeLinkedRecords, FIBytes(GetParam().bytes)), GetParam().answer);
}
INSTANTIATE_TEST_SUITE_P(Records, ProbeLinkedRecords, testing::ValuesIn(linkedRecordCases), FICaseName);

TEST(LinkedRecords, EveryOffsetOfTheSecondRecordIsFound) {
    // Offsets over two byte borders; the third record follows close behind.
    for (const std::uint32_t offset : {8U, 127U, 128U, 254U, 255U, 256U, 511U, 0x7FFFU, 0x8000U, 0xFFFFU, 0x10000U}) {
        const std::string here = std::to_string(offset + 1);
        const std::string bytes =
            FIBytes("d:" + here + " >" + std::to_string(offset) + " d:" + std::to_string(offset + 5) + " >" +
                    std::to_string(offset + 8) + " d:" + here);
        EXPECT_EQ(FIAnswerOf(FIProbeLinkedRecords, bytes), 1210) << offset;
    }
}

TEST(LinkedRecords, Offset1IsAbove0) {
    // The least record that a back link may lead to. Its link shares three bytes with the first link, so it leads far
    // off.
    const auto handle = FIMakeTestHandle(FIBytes("d:2 01 >16777219 d:2"));
    EXPECT_EQ(FIAnswerOver(FIProbeLinkedRecords, *handle), 1210);
}

TEST(LinkedRecords, EveryBitOfTheBackLinkCounts) {
    const std::string records = FIBytes("d:101 >100 d:201 >204 d:101");
    for (std::uint32_t bit = 0; bit < 32; ++bit) {
        std::string changed = records;
        changed[204 + bit / 8] = static_cast<char>(changed[204 + bit / 8] ^ (1 << bit % 8));
        EXPECT_EQ(FIAnswerOf(FIProbeLinkedRecords, changed), 0) << bit;
    }
}

TEST(LinkedRecords, AFileThatEndsEarlierIsNone) {
    for (const char* const notation :
         {"d:101 >100 d:201 >204 d:101", R"(d:0 00*4 w:4 "NAME" d:101 >100 d:0 00*4 w:6 "LENGTH" d:301 >304 d:117)"}) {
        const std::string records = FIBytes(notation);
        for (std::size_t size = 0; size < records.size(); ++size) {
            EXPECT_EQ(FIAnswerOf(FIProbeLinkedRecords, records.substr(0, size)), 0) << size;
        }
    }
}

TEST(LinkedRecords, EveryFailedSeekIsANo) {
    struct Road {
        const char* bytes;
        std::uint32_t seeks;
    };
    const Road roads[] = {
        {"d:101 >100 d:201 >204 d:101", 3},
        {R"(d:0 00*4 w:4 "NAME" d:101 >100 d:201 >204 d:101)", 5},
        {R"(d:101 >100 d:0 00*4 w:6 "LENGTH" d:301 >304 d:117)", 5},
        {R"(d:0 00*4 w:4 "NAME" d:101 >100 d:0 00*4 w:6 "LENGTH" d:301 >304 d:117)", 7},
    };
    for (const Road& road : roads) {
        for (std::uint32_t seek = 0; seek < road.seeks; ++seek) {
            EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeLinkedRecords, FIBytes(road.bytes), seek), 0) << seek;
        }
        EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeLinkedRecords, FIBytes(road.bytes), road.seeks), 1210) << road.bytes;
    }
}

// ---- 1213: slot marker ----------------------------------------------------------------------------------------------

constexpr std::size_t slotSize = 12;
constexpr std::size_t lastSlot = 492;
const std::string slotMarker = "\xFF\xFF\xFF\x7F";

// A file of this many zero bytes with the marker at an offset.
std::string FIMakeSlots(std::size_t size, std::size_t offset) {
    return std::string(size, '\0').replace(offset, slotMarker.size(), slotMarker);
}

const ProbeCase slotMarkerCases[] = {
    // clang-format off
    {"MarkerInTheThirdSlot",         ">24 FF FF FF 7F >1024",                  1213},
    {"MarkerInNoSlotsPlace",         ">26 FF FF FF 7F >1024",                     0},
    {"MarkerAt23",                   ">23 FF FF FF 7F >1024",                     0},
    {"MarkerAt25",                   ">25 FF FF FF 7F >1024",                     0},
    {"MarkerInTheFirstSlot",         "FF FF FF 7F >512",                       1213},
    {"MarkerInTheLastSlot",          ">492 FF FF FF 7F >512",                  1213},
    {"MarkerBehindTheLastSlot",      ">504 FF FF FF 7F >512",                     0},
    {"MarkerBehindItInALongFile",    ">504 FF FF FF 7F >1024",                    0},
    {"MarkerAt516",                  ">516 FF FF FF 7F >1024",                    0},
    {"TwoMarkers",                   ">24 FF FF FF 7F >36 FF FF FF 7F >512",   1213},
    {"MarkerBehindAnAlmostMarker",   ">24 FF FF FF 7E >36 FF FF FF 7F >512",   1213},
    {"OtherBytesAreFree",            "FE*24 FF FF FF 7F FF*484",               1213},
    {"FirstByteFE",                  ">24 FE FF FF 7F >512",                      0},
    {"SecondByteFE",                 ">24 FF FE FF 7F >512",                      0},
    {"ThirdByteFE",                  ">24 FF FF FE 7F >512",                      0},
    {"FourthByte7E",                 ">24 FF FF FF 7E >512",                      0},
    {"FourthByte80",                 ">24 FF FF FF 80 >512",                      0},
    {"FourthByteFF",                 ">24 FF FF FF FF >512",                      0},
    {"BytesTheOtherWayRound",        ">24 7F FF FF FF >512",                      0},
    {"Size511",                      ">24 FF FF FF 7F >511",                      0},
    {"Size512",                      ">24 FF FF FF 7F >512",                   1213},
    {"Size513",                      ">24 FF FF FF 7F >513",                      0},
    {"Size768",                      ">24 FF FF FF 7F >768",                      0},
    {"Size1000",                     ">24 FF FF FF 7F >1000",                     0},
    {"Size1536",                     ">24 FF FF FF 7F >1536",                  1213},
    {"Size65536",                    ">24 FF FF FF 7F >65536",                 1213},
    {"Size65537",                    ">24 FF FF FF 7F >65537",                    0},
    {"NoMarker",                     ">512",                                      0},
    {"EmptyFile",                    "",                                          0},
    // clang-format on
};

class ProbeSlotMarker : public testing::TestWithParam<ProbeCase> {};
TEST_P(ProbeSlotMarker, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeSlotMarker, FIBytes(GetParam().bytes)), GetParam().answer);
}
INSTANTIATE_TEST_SUITE_P(Slots, ProbeSlotMarker, testing::ValuesIn(slotMarkerCases), FICaseName);

TEST(SlotMarker, StandsAtTheStartOfOneOf42Slots) {
    std::uint32_t slots = 0;
    for (std::size_t offset = 0; offset + slotMarker.size() <= 1024; ++offset) {
        const bool counts = offset % slotSize == 0 && offset <= lastSlot;
        slots += counts ? 1 : 0;
        EXPECT_EQ(FIAnswerOf(FIProbeSlotMarker, FIMakeSlots(1024, offset)), counts ? 1213 : 0) << offset;
    }
    EXPECT_EQ(slots, 42U);
}

TEST(SlotMarker, ReadsOnlyTheFirstBlocks) {
    const auto handle = FIMakeTestHandle(std::string(1 << 20, '\0'));
    EXPECT_EQ(FIAnswerOver(FIProbeSlotMarker, *handle), 0);
    EXPECT_LE(handle->bytesDelivered, 2U * 2048U);
}

TEST(SlotMarker, ASizeThatCantBeHadIsTakenAsGood) {
    const auto noSeekFromEnd = FIMakeTestHandle(FIMakeSlots(1000, 24));
    noSeekFromEnd->failSeekFromEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeSlotMarker, *noSeekFromEnd), 1213);

    const auto noTell = FIMakeTestHandle(FIMakeSlots(1000, 24));
    noTell->failTell = true;
    EXPECT_EQ(FIAnswerOver(FIProbeSlotMarker, *noTell), 1213);

    // Seek 0 goes to the end, seek 1 is the reader's to the size.
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeSlotMarker, FIMakeSlots(1000, 24), 0), 1213);
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeSlotMarker, FIMakeSlots(1000, 24), 1), 1213);
}

TEST(SlotMarker, ASlotThatTheFileEndsInHoldsNoMarker) {
    for (const std::size_t size : {28U, 40U, 1000U}) {
        const auto whole = FIMakeTestHandle(FIMakeSlots(size, 24));
        whole->failTell = true;
        EXPECT_EQ(FIAnswerOver(FIProbeSlotMarker, *whole), 1213) << size;
    }
    for (const std::size_t size : {24U, 25U, 26U, 27U}) {
        const auto cut = FIMakeTestHandle(FIMakeSlots(28, 24).substr(0, size));
        cut->failTell = true;
        EXPECT_EQ(FIAnswerOver(FIProbeSlotMarker, *cut), 0) << size;
    }
    const auto empty = FIMakeTestHandle("");
    empty->failTell = true;
    EXPECT_EQ(FIAnswerOver(FIProbeSlotMarker, *empty), 0);
}

TEST(SlotMarker, AFailedSeekToASlotIsANo) {
    const std::string slots = FIMakeSlots(1024, 24);
    for (std::uint32_t slot = 0; slot <= 2; ++slot) {
        EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeSlotMarker, slots, 2 + slot), 0) << slot;
    }
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeSlotMarker, slots, 5), 1213);
}

TEST(SlotMarker, ALaterSeekThatFailsInAShortFileIsANo) {
    // The handle refuses positions behind the end, so the slot behind the last byte ends the search.
    const auto handle = FIMakeTestHandle(FIMakeSlots(20, 0));
    handle->failTell = true;
    handle->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeSlotMarker, *handle), 1213);
    const auto noMarker = FIMakeTestHandle(std::string(20, '\0'));
    noMarker->failTell = true;
    noMarker->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeSlotMarker, *noMarker), 0);
}

TEST(SlotMarker, BuffersThatAreThereAlreadyDoNotMatter) {
    // The reader holds the file's first bytes, and the size lies just behind them.
    for (const std::size_t size : {1000U, 1024U}) {
        const auto handle = FIMakeTestHandle(FIMakeSlots(size, 24));
        FIReader* const reader = FIReaderNew(FIFileOf(*handle));
        EXPECT_EQ(FIReaderGetByte(*reader), 0);
        EXPECT_EQ(FIProbeSlotMarker(*reader), size == 1024 ? 1213 : 0) << size;
        FIReaderFree(*reader);
    }
}

// ---- The whole system -----------------------------------------------------------------------------------------------

const DecidedCase wholeCases[] = {
    // clang-format off
    {"Links",                        "d:101 >100 d:201 >204 d:101",                          1210, 401_row, "orders.rbf"},
    {"LinksInCapitals",              "d:101 >100 d:201 >204 d:101",                          1210, 401_row, "ORDERS.RBF"},
    {"LinksOfALongerExtension",      "d:101 >100 d:201 >204 d:101",                          1210, 401_row, "orders.rbf2"},
    {"LinksOfAnotherExtension",      "d:101 >100 d:201 >204 d:101",                          1999,   0, "orders.rbd"},
    {"LinksOfAShorterExtension",     "d:101 >100 d:201 >204 d:101",                          1999,   0, "orders.rb"},
    {"LinksWithoutAName",            "d:101 >100 d:201 >204 d:101",                          1999,   0},
    {"BackLinkIsOff",                "d:101 >100 d:201 >204 d:102",                          1999,   0, "orders.rbf"},
    {"BackLinkToOffset0",            "d:1 d:1",                                              1999,   0, "orders.rbf"},
    {"NegativeNameLength",           R"(d:0 00*4 w:0xFFFC "NAME" d:101 >100 d:201 >204 d:101)", 1210, 401_row, "orders.rbf"},
    {"Continuation",                 R"(d:101 >100 d:0 00*4 w:6 "LENGTH" d:301 >304 d:117)", 1210, 401_row, "orders.rbf"},
    {"Slots",                        ">24 FF FF FF 7F >1024",                                1213, 402_row, "orders.rbf"},
    {"SlotsOfAnotherExtension",      ">24 FF FF FF 7F >1024",                                1999,   0, "orders.dat"},
    {"MarkerInNoSlotsPlace",         ">26 FF FF FF 7F >1024",                                1999,   0, "orders.rbf"},
    {"MarkerInTheLastSlot",          ">492 FF FF FF 7F >512",                                1213, 402_row, "orders.rbf"},
    {"MarkerBehindTheLastSlot",      ">504 FF FF FF 7F >512",                                1999,   0, "orders.rbf"},
    {"SlotsInAFileOf1000Bytes",      ">24 FF FF FF 7F >1000",                                1999,   0, "orders.rbf"},
    {"LinksAndSlotsAreLinks",        "d:101 >24 FF FF FF 7F >100 d:201 >204 d:101 >512",     1210, 401_row, "orders.rbf"},
    {"WrongLinksAndSlotsAreSlots",   "d:101 >24 FF FF FF 7F >100 d:201 >204 d:102 >512",     1213, 402_row, "orders.rbf"},
    {"EmptyFile",                    "",                                                     1999,   0, "orders.rbf"},
    // clang-format on
};

class RbfRecords : public testing::TestWithParam<DecidedCase> {};
TEST_P(RbfRecords, AreToldByTheirRow) { FIExpectDecision(GetParam()); }
INSTANTIATE_TEST_SUITE_P(WholeSystem, RbfRecords, testing::ValuesIn(wholeCases), FICaseName);

}  // namespace
