// The raw fax routine, judged against an encoder and a decoder of the test's own.
//
// The run-length codes below were written down from ITU-T T.4 as strings of bits, apart from the product's tables. A
// stream is a string of '0' and '1' in the order in which a fax machine sends it; StoreLowFirst makes a file of it.
#include "graphics/raw_fax.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "graphics/fax_codes.h"
#include "reader/head.h"
#include "reader/reader.h"
#include "support/case_name.h"
#include "support/decided_case.h"
#include "support/open_file.h"
#include "support/ordinary_files.h"
#include "support/probe_case.h"
#include "support/process_heap.h"

namespace {

using ::PrintTo;

using Bits = std::string;

// ---- ITU-T T.4, tables 2, 3a and 3b --------------------------------------------------------------------------------

enum class Colour : std::uint8_t { White, Black };

constexpr std::size_t codeCount = 104;
constexpr std::size_t terminatingCount = 64;   // runs 0 to 63
constexpr std::size_t ownCodeCount = 64 + 27;  // and make-up codes 64 to 1728; behind them both colours share 13 codes
constexpr std::uint32_t longestMakeUp = 2560;

// clang-format off
constexpr std::string_view whiteBits[ownCodeCount] = {
    "00110101", "000111",   "0111",     "1000",     "1011",     "1100",     "1110",     "1111",      //    0
    "10011",    "10100",    "00111",    "01000",    "001000",   "000011",   "110100",   "110101",    //    8
    "101010",   "101011",   "0100111",  "0001100",  "0001000",  "0010111",  "0000011",  "0000100",   //   16
    "0101000",  "0101011",  "0010011",  "0100100",  "0011000",  "00000010", "00000011", "00011010",  //   24
    "00011011", "00010010", "00010011", "00010100", "00010101", "00010110", "00010111", "00101000",  //   32
    "00101001", "00101010", "00101011", "00101100", "00101101", "00000100", "00000101", "00001010",  //   40
    "00001011", "01010010", "01010011", "01010100", "01010101", "00100100", "00100101", "01011000",  //   48
    "01011001", "01011010", "01011011", "01001010", "01001011", "00110010", "00110011", "00110100",  //   56
    "11011",     "10010",     "010111",    "0110111",                                                //   64
    "00110110",  "00110111",  "01100100",  "01100101",                                               //  320
    "01101000",  "01100111",  "011001100", "011001101",                                              //  576
    "011010010", "011010011", "011010100", "011010101",                                              //  832
    "011010110", "011010111", "011011000", "011011001",                                              // 1088
    "011011010", "011011011", "010011000", "010011001",                                              // 1344
    "010011010", "011000",    "010011011",                                                           // 1600
};
constexpr std::string_view blackBits[ownCodeCount] = {
    "0000110111",   "010",          "11",           "10",            //    0
    "011",          "0011",         "0010",         "00011",         //    4
    "000101",       "000100",       "0000100",      "0000101",       //    8
    "0000111",      "00000100",     "00000111",     "000011000",     //   12
    "0000010111",   "0000011000",   "0000001000",   "00001100111",   //   16
    "00001101000",  "00001101100",  "00000110111",  "00000101000",   //   20
    "00000010111",  "00000011000",  "000011001010", "000011001011",  //   24
    "000011001100", "000011001101", "000001101000", "000001101001",  //   28
    "000001101010", "000001101011", "000011010010", "000011010011",  //   32
    "000011010100", "000011010101", "000011010110", "000011010111",  //   36
    "000001101100", "000001101101", "000011011010", "000011011011",  //   40
    "000001010100", "000001010101", "000001010110", "000001010111",  //   44
    "000001100100", "000001100101", "000001010010", "000001010011",  //   48
    "000000100100", "000000110111", "000000111000", "000000100111",  //   52
    "000000101000", "000001011000", "000001011001", "000000101011",  //   56
    "000000101100", "000001011010", "000001100110", "000001100111",  //   60
    "0000001111",    "000011001000",  "000011001001",  "000001011011",   //   64
    "000000110011",  "000000110100",  "000000110101",  "0000001101100",  //  320
    "0000001101101", "0000001001010", "0000001001011", "0000001001100",  //  576
    "0000001001101", "0000001110010", "0000001110011", "0000001110100",  //  832
    "0000001110101", "0000001110110", "0000001110111", "0000001010010",  // 1088
    "0000001010011", "0000001010100", "0000001010101", "0000001011010",  // 1344
    "0000001011011", "0000001100100", "0000001100101",                   // 1600
};
constexpr std::string_view sharedBits[codeCount - ownCodeCount] = {
    "00000001000",  "00000001100",  "00000001101",                                   // 1792
    "000000010010", "000000010011", "000000010100", "000000010101", "000000010110",  // 1984
    "000000010111", "000000011100", "000000011101", "000000011110", "000000011111",  // 2304
};
// clang-format on

constexpr std::uint32_t pageWidths[] = {1728, 2048, 2432, 3456, 4096, 4864};

// Eleven zeros and a one: the end-of-line mark.
const Bits mark = "000000000001";

std::string_view CodeBits(Colour colour, std::size_t index) {
    if (index >= ownCodeCount) return sharedBits[index - ownCodeCount];
    return colour == Colour::White ? whiteBits[index] : blackBits[index];
}

std::uint32_t RunOf(std::size_t index) {
    return static_cast<std::uint32_t>(index < terminatingCount ? index : (index - terminatingCount + 1) * 64);
}

std::uint32_t NumberOf(std::string_view bits) {
    std::uint32_t number = 0;
    for (const char bit : bits) number = number << 1 | (bit == '1' ? 1U : 0U);
    return number;
}

// ---- The encoder ---------------------------------------------------------------------------------------------------

Bits Zeros(std::size_t count) { return Bits(count, '0'); }

Colour OtherThan(Colour colour) { return colour == Colour::White ? Colour::Black : Colour::White; }

// A run as T.4 has it: make-up codes of 2560, one further make-up code, and a terminating code, which may be that of 0.
Bits EncodeRun(Colour colour, std::uint32_t length) {
    Bits bits;
    for (; length >= longestMakeUp + 64; length -= longestMakeUp) bits += CodeBits(colour, codeCount - 1);
    if (length >= 64) bits += CodeBits(colour, terminatingCount - 1 + length / 64);
    return bits + Bits(CodeBits(colour, length % 64));
}

// A row of runs, white first, the colours taking turns.
Bits EncodeRow(std::initializer_list<std::uint32_t> runs) {
    Bits bits;
    Colour colour = Colour::White;
    for (const std::uint32_t run : runs) {
        bits += EncodeRun(colour, run);
        colour = OtherThan(colour);
    }
    return bits;
}

// An all-white row. Of a width on the list it ends in the code of white 0, which has 8 bits.
Bits Row(std::uint32_t width) { return EncodeRow({width}); }

std::string Store(const Bits& bits, bool lowFirst) {
    std::string bytes((bits.size() + 7) / 8, '\0');
    for (std::size_t index = 0; index < bits.size(); ++index) {
        if (bits[index] == '0') continue;
        const std::size_t place = lowFirst ? index % 8 : 7 - index % 8;
        bytes[index / 8] = static_cast<char>(static_cast<std::uint8_t>(bytes[index / 8]) | 1U << place);
    }
    return bytes;
}

// The file that the routine knows: the first bit of a byte is its least significant one.
std::string StoreLowFirst(const Bits& bits) { return Store(bits, true); }
std::string StoreHighFirst(const Bits& bits) { return Store(bits, false); }

// ---- The code tables -----------------------------------------------------------------------------------------------

void ExpectCodes(Colour colour, const std::uint8_t* codes, const std::uint8_t* lengths) {
    for (std::size_t index = 0; index < codeCount; ++index) {
        const std::string_view bits = CodeBits(colour, index);
        EXPECT_EQ(lengths[index], bits.size()) << "run " << RunOf(index);
        EXPECT_EQ(codes[index], NumberOf(bits)) << "run " << RunOf(index);
    }
}

TEST(FaxCodes, HoldAllWhiteCodes) {
    ASSERT_EQ(std::size(faxWhiteCodes), codeCount);
    ASSERT_EQ(std::size(faxWhiteLengths), codeCount);
    ExpectCodes(Colour::White, std::data(faxWhiteCodes), std::data(faxWhiteLengths));
}

TEST(FaxCodes, HoldAllBlackCodes) {
    ASSERT_EQ(std::size(faxBlackCodes), codeCount);
    ASSERT_EQ(std::size(faxBlackLengths), codeCount);
    ExpectCodes(Colour::Black, std::data(faxBlackCodes), std::data(faxBlackLengths));
}

constexpr std::uint32_t windowBits = 13;                 // of the longest code
constexpr std::uint32_t windowCount = 1U << windowBits;  // values of that many bits
constexpr std::uint32_t windowsWithEightZerosInFront = 32;

// The 13-bit value that a code begins, its further bits being 0.
std::uint32_t FirstWindow(std::uint32_t code, std::uint32_t length) { return code << (windowBits - length); }

void ExpectPrefixFree(const std::uint8_t* codes, const std::uint8_t* lengths) {
    std::uint32_t covered = 0;
    for (std::size_t index = 0; index < codeCount; ++index) {
        ASSERT_GE(lengths[index], 2U);
        ASSERT_LE(lengths[index], windowBits);
        const std::uint32_t first = FirstWindow(codes[index], lengths[index]);
        const std::uint32_t behind = first + FirstWindow(1, lengths[index]);
        covered += behind - first;
        for (std::size_t other = 0; other < codeCount; ++other) {
            if (other == index || lengths[other] < 2 || lengths[other] > windowBits) continue;
            const std::uint32_t otherFirst = FirstWindow(codes[other], lengths[other]);
            EXPECT_TRUE(otherFirst < first || otherFirst >= behind)
                << "the code of run " << RunOf(index) << " begins the code of run " << RunOf(other);
        }
    }
    // Kraft's sum: only the values with eight zeros in front, those of an end-of-line mark, begin no code.
    EXPECT_EQ(covered, windowCount - windowsWithEightZerosInFront);
}

TEST(FaxCodes, WhiteCodesArePrefixFreeAndLeaveOnlyEightZeros) {
    ExpectPrefixFree(std::data(faxWhiteCodes), std::data(faxWhiteLengths));
}

TEST(FaxCodes, BlackCodesArePrefixFreeAndLeaveOnlyEightZeros) {
    ExpectPrefixFree(std::data(faxBlackCodes), std::data(faxBlackLengths));
}

constexpr std::size_t noCode = 0xFF;

// The index of the code that the bits begin with, found by trying all of them.
std::size_t CodeAt(Colour colour, std::string_view bits) {
    for (std::size_t index = 0; index < codeCount; ++index) {
        if (bits.starts_with(CodeBits(colour, index))) return index;
    }
    return noCode;
}

Bits WindowOf(std::uint32_t value) {
    Bits bits;
    for (std::uint32_t place = windowBits; place > 0; --place) bits += (value >> (place - 1) & 1) != 0 ? '1' : '0';
    return bits;
}

TEST(FaxCodes, LookupsHoldTheCodeOfEvery13BitValue) {
    for (std::uint32_t value = 0; value < windowCount; ++value) {
        const Bits bits = WindowOf(value);
        EXPECT_EQ(faxWhiteLookup[value], CodeAt(Colour::White, bits)) << "white " << bits;
        EXPECT_EQ(faxBlackLookup[value], CodeAt(Colour::Black, bits)) << "black " << bits;
    }
}

// ---- One row -------------------------------------------------------------------------------------------------------

// What decoding a row delivers: its width, and how far behind the first bit of the buffer the cursor ends.
struct DecodedRow {
    std::uint16_t width;
    std::size_t end;
};

constexpr std::size_t room = 64;  // zeros behind the data, for fetches that run over its end

DecodedRow DecodeRow(const Bits& bits, std::size_t start, std::int32_t rowBytesLeft) {
    std::string bytes = StoreHighFirst(bits);
    bytes.resize(bytes.size() + room);
    const auto* const buffer = reinterpret_cast<const std::uint8_t*>(bytes.data());
    const std::uint8_t* cursor = buffer + start / 8;
    auto bitPosition = static_cast<std::uint8_t>(start % 8);
    const std::uint16_t width = FIDecodeFaxRow(cursor, faxWhiteLookup, faxBlackLookup, bitPosition, rowBytesLeft);
    EXPECT_LT(bitPosition, 8U);
    return {width, static_cast<std::size_t>(cursor - buffer) * 8 + bitPosition};
}

// The bytes from the one that holds the bit at start to the end of the data.
std::int32_t BytesFrom(const Bits& bits, std::size_t start) {
    return static_cast<std::int32_t>((bits.size() + 7) / 8 - start / 8);
}

DecodedRow DecodeRow(const Bits& bits, std::size_t start = 0) { return DecodeRow(bits, start, BytesFrom(bits, start)); }

// A row of 4864 that holds the code: the run itself, and the rest in the other colour.
Bits RowWithRun(Colour colour, std::uint32_t run) {
    constexpr std::uint32_t width = 4864;
    return colour == Colour::White ? EncodeRow({run, width - run}) : EncodeRow({0, run, width - run});
}

TEST(DecodeFaxRow, KnowsEveryRun) {
    for (std::size_t index = 0; index < codeCount; ++index) {
        const std::uint32_t run = RunOf(index);
        EXPECT_EQ(DecodeRow(RowWithRun(Colour::White, run) + mark + Zeros(16)).width, 4864U) << "white " << run;
        EXPECT_EQ(DecodeRow(RowWithRun(Colour::Black, run) + mark + Zeros(16)).width, 4864U) << "black " << run;
    }
}

TEST(DecodeFaxRow, EndsByTheLastCodesLengthInsideTheMarkThatStoppedIt) {
    const Bits rows[] = {Row(1728), EncodeRow({1726, 2}), EncodeRow({1665, 63}), EncodeRow({0, 1726, 2})};
    const std::size_t lastLengths[] = {8, 2, 12, 4};
    for (std::size_t index = 0; index < std::size(rows); ++index) {
        for (std::size_t start = 0; start < 8; ++start) {
            const DecodedRow row = DecodeRow(Zeros(start) + rows[index] + mark + Zeros(24), start);
            EXPECT_EQ(row.width, 1728U) << index << " from bit " << start;
            EXPECT_EQ(row.end, start + rows[index].size() + lastLengths[index]) << index << " from bit " << start;
        }
    }
}

TEST(DecodeFaxRow, KnowsARowThatTheDataEndWith) { EXPECT_EQ(DecodeRow(Row(1728) + Zeros(7), 0, 3).width, 1728U); }

TEST(DecodeFaxRow, NoBytesAreNoRow) { EXPECT_EQ(DecodeRow(Row(1728) + mark, 0, 0).width, 0U); }

TEST(DecodeFaxRow, KnowsNoWidthButSix) {
    for (std::uint32_t width = 0; width <= 5120; ++width) {
        const bool listed = std::find(std::begin(pageWidths), std::end(pageWidths), width) != std::end(pageWidths);
        EXPECT_EQ(DecodeRow(Row(width) + mark + Zeros(16)).width, listed ? width : 0U) << width;
    }
}

TEST(DecodeFaxRow, MarkOrZerosAtOnceAreNoRow) {
    EXPECT_EQ(DecodeRow(mark + Row(1728)).width, 0U);
    EXPECT_EQ(DecodeRow(Zeros(32)).width, 0U);
}

// ---- A stream ------------------------------------------------------------------------------------------------------

struct StreamCase {
    const char* name;
    Bits bits;
    FIID answer;
};

const Bits rowA = Row(1728);
const Bits rowB = Row(2048);
const Bits invalidRow = Row(1729);

// Ends in the black code of 2, which has two bits, and in that of 63, which has twelve.
const Bits rowEndingIn2Bits = EncodeRow({1726, 2});
const Bits rowEndingIn12Bits = EncodeRow({1665, 63});

// So many zeros in front of a mark that the row ahead, ending in white 0, doesn't hide it.
const Bits fill = Zeros(8);

std::vector<StreamCase> StreamCases() {
    return {
        // clang-format off
        {"NoBytes",                                      "",                                                                         0},
        {"MarkAlone",                                    mark,                                                                       0},
        {"MarkAndFillOnly",                              mark + Zeros(100),                                                          0},
        {"RowsWithoutMarks",                             rowA + rowA + rowA,                                                         0},
        {"ThreeMarksAndRows",                            mark + rowA + mark + rowA + mark + rowA,                                 1505},
        {"NoThirdMark",                                  mark + rowA + mark + rowA,                                                  0},
        {"NoRowBehindTheThirdMark",                      mark + rowA + mark + rowA + mark,                                           0},
        {"SecondRowIsNotLookedAt",                       mark + rowA + mark + rowB + mark + rowA,                                 1505},
        {"SecondRowMayBeInvalid",                        mark + rowA + mark + invalidRow + mark + rowA,                           1505},
        {"ThirdRowOfAnotherWidth",                       mark + rowA + mark + rowA + mark + rowB,                                    0},
        {"ThirdRowInvalid",                              mark + rowA + mark + rowA + mark + invalidRow,                              0},
        {"FillShowsTheSecondMark",                       mark + rowA + Zeros(8) + mark + rowA,                                    1505},
        {"FillTooShortByOneBit",                         mark + rowA + Zeros(7) + mark + rowA,                                       0},
        {"FillShowsItBehindALastCodeOf2Bits",            mark + rowEndingIn2Bits + Zeros(2) + mark + rowA + Zeros(16),            1505},
        {"FillOf1IsTooShortBehindALastCodeOf2Bits",      mark + rowEndingIn2Bits + Zeros(1) + mark + rowA + Zeros(16),               0},
        {"FillShowsItBehindALastCodeOf12Bits",           mark + rowEndingIn12Bits + Zeros(12) + mark + rowA + Zeros(16),          1505},
        {"FillOf11IsTooShortBehindALastCodeOf12Bits",    mark + rowEndingIn12Bits + Zeros(11) + mark + rowA + Zeros(16),             0},
        {"FillInFrontOfTheFirstMark",                    Zeros(333) + mark + rowA + fill + mark + rowA,                           1505},
        {"MuchFillBetweenTheRows",                       mark + rowA + Zeros(1000) + mark + rowA,                                 1505},
        {"OtherBitsInFrontOfTheFirstMark",               "1011010001" + mark + rowA + fill + mark + rowA,                         1505},
        {"TenZerosAreNoMark",                            "1" + mark.substr(1) + rowA + "1" + mark.substr(1) + rowA + "1" + mark.substr(1) + rowA, 0},
        {"DifferenceEndsTheScan",                        mark + rowA + fill + mark + rowB + fill + mark + rowA + fill + mark + rowA, 0},
        {"DifferenceEndsTheScanAlsoWithAnInvalidRow",    mark + rowA + fill + mark + invalidRow + fill + mark + rowA + fill + mark + rowA, 0},
        {"InvalidRowIsPassedOver",                       mark + invalidRow + mark + rowA + fill + mark + rowA,                    1505},
        {"ManyInvalidRowsArePassedOver",                 mark + invalidRow + mark + Row(1727) + mark + Row(64) + mark + rowA + fill + mark + rowA, 1505},
        {"EmptyRowIsPassedOver",                         mark + mark + rowA + fill + mark + rowA,                                 1505},
        {"InvalidRowsOnly",                              mark + invalidRow + fill + mark + invalidRow + fill + mark + invalidRow,    0},
        {"MarkBehindAnInvalidRowNeedsNoFill",            mark + invalidRow + mark + rowA + mark + rowB + mark + rowA,             1505},
        {"RunsOfBothColours",                            mark + EncodeRow({100, 28, 900, 1, 699}) + fill + mark + EncodeRow({0, 1000, 728}) + Zeros(16), 1505},
        {"MakeUpCodesInARow",                            mark + EncodeRow({64, 64, 1600}) + fill + mark + EncodeRow({1600, 64, 64}) + Zeros(16), 1505},
        {"FirstRowRunsToTheEnd",                         mark + rowA,                                                                0},
        {"FirstRowAndFillToTheEnd",                      mark + rowA + Zeros(64),                                                    0},
        {"SecondRowIsCut",                               mark + rowA + fill + mark + rowA.substr(0, 8),                              0},
        // clang-format on
    };
}

class RawFaxStream : public testing::TestWithParam<StreamCase> {};

TEST_P(RawFaxStream, Answers) {
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(GetParam().bits)), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(Streams, RawFaxStream, testing::ValuesIn(StreamCases()), FICaseName);

Bits TwoRows(std::uint32_t width) { return mark + Row(width) + Zeros(16) + mark + Row(width) + Zeros(16); }

TEST(RawFax, KnowsEachWidthOfTheList) {
    for (const std::uint32_t width : pageWidths) {
        EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(TwoRows(width))), 1505U) << width;
    }
}

TEST(RawFax, KnowsNoWidthBesideTheList) {
    std::vector<std::uint32_t> widths = {0, 64, 864, 1216, 1600, 1664, 1792, 2560, 2592, 4800, 5120, 6912};
    for (const std::uint32_t width : pageWidths) {
        widths.push_back(width - 1);
        widths.push_back(width + 1);
    }
    for (const std::uint32_t width : widths) {
        EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(TwoRows(width))), 0U) << width;
    }
}

TEST(RawFax, EveryPairOfDifferentWidthsIsRefused) {
    for (const std::uint32_t first : pageWidths) {
        for (const std::uint32_t second : pageWidths) {
            const Bits bits = mark + Row(first) + fill + mark + Row(second) + Zeros(16);
            EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(bits)), first == second ? 1505U : 0U)
                << first << " and " << second;
        }
    }
}

TEST(RawFax, OtherBitOrderIsNotTried) {
    const Bits streams[] = {mark + rowA + mark + rowA + mark + rowA, mark + rowA + fill + mark + rowA};
    for (const Bits& bits : streams) {
        EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(bits)), 1505U);
        EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreHighFirst(bits)), 0U);
    }
}

// ---- Where the data ends -------------------------------------------------------------------------------------------

// Quirk: a row ends with the code in hand as soon as the bytes left are 0, and a code of the register is then still
// undecoded. Of a row that fills the data to the last bit, a code that starts 13 to 6 bits in front of the end is the
// last.
TEST(RawFaxEnd, CodeInTheLastFiveBitsIsLost) {
    const Bits row =
        "010011010"
        "11011"
        "11011";  // white 1600, 64 and 64
    const Bits bits = mark + rowA + Zeros(12) + mark + row;
    ASSERT_EQ(bits.size() % 8, 0U);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(bits)), 0U);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(bits + Zeros(8))), 1505U);
}

// Quirk: a fetch of nine bits or more can step over 0, and then the bytes left never are 0 and the last code counts.
TEST(RawFaxEnd, CodeInTheLastFiveBitsCountsBehindALongCode) {
    const Bits row =
        "11011"
        "010011010"
        "11011";  // white 64, 1600 and 64
    const Bits bits = mark + rowA + Zeros(12) + mark + row;
    ASSERT_EQ(bits.size() % 8, 0U);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(bits)), 1505U);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(bits + Zeros(8))), 1505U);
}

// White 1600 is 010011010 and white 1728 is 010011011: one bit missing, and the zero behind the data makes it 1600.
TEST(RawFaxEnd, BytesBehindTheDataCountAsZeros) {
    const Bits row = "010011011";
    const Bits whole = mark + rowA + Zeros(14) + mark + row;
    ASSERT_EQ(whole.size() % 8, 0U);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(whole)), 1505U);
    const Bits cut = mark + rowA + Zeros(15) + mark + row.substr(0, 8);
    ASSERT_EQ(cut.size() % 8, 0U);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(cut)), 0U);
    const Bits zeroAtTheEnd = mark + Row(2048) + Zeros(8) + mark + "00000001001";  // white 2048 is 000000010011
    ASSERT_EQ(zeroAtTheEnd.size() % 8, 7U);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(zeroAtTheEnd)), 0U);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(zeroAtTheEnd + "1")), 1505U);
}

TEST(RawFaxEnd, MarkMayEndWithTheData) {
    const Bits bits = mark + rowA + Zeros(7) + mark;
    ASSERT_EQ(bits.size() % 8, 0U);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(bits)), 0U);
}

// A long code in front of white 23, 0000100, of which the last two zeros lie behind the data: the decoding ends nine
// bits behind the data, where no mark can stand.
TEST(RawFaxEnd, RowThatEndsBehindTheDataIsTheLast) {
    const Bits row = EncodeRow({100, 5}) + "010011010" + "00001";
    const Bits bits = Zeros(16 - (mark.size() + row.size()) % 8) + mark + row;
    ASSERT_EQ(bits.size() % 8, 0U);
    const DecodedRow decoded = DecodeRow(bits, bits.size() - row.size());
    EXPECT_EQ(decoded.width, 1728U);
    EXPECT_EQ(decoded.end, bits.size() + 9);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(bits)), 0U);
}

constexpr std::size_t blockBits = 2048 * 8;

// A stream whose second row, the code of white 1728 to begin with, ends at the given bit.
Bits StreamToBit(std::size_t end) {
    const Bits tail = mark + rowA + fill + mark + "010011011";
    return Zeros(end - tail.size()) + tail + "00110101" + Zeros(64);
}

TEST(RawFaxEnd, LooksAt2048BytesOnly) {
    const Bits inside = StreamToBit(blockBits);
    const Bits oneBitOver = StreamToBit(blockBits + 1);
    ASSERT_GT(inside.size(), blockBits + 8);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(inside)), 1505U);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(inside.substr(0, blockBits))), 1505U);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(oneBitOver)), 0U);
}

TEST(RawFaxEnd, MarkBehind2048BytesIsNotSeen) {
    const Bits rows = mark + rowA + fill;
    const Bits inside = Zeros(blockBits - 17 - mark.size() - rows.size()) + rows + mark + rowA;
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(inside)), 1505U);
    const Bits markOver = Zeros(blockBits - 11 - rows.size()) + rows + mark + rowA;
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeRawFax, StoreLowFirst(markOver)), 0U);
}

// ---- The handle ----------------------------------------------------------------------------------------------------

TEST(RawFaxHandle, ReadsOnceFromTheStartWhereverTheReaderStands) {
    const auto handle = FIMakeTestHandle(StoreLowFirst(mark + rowA + fill + mark + rowA + Zeros(40000)));
    EXPECT_EQ(FIAnswerOver(FIProbeRawFax, *handle, 7), 1505U);
    EXPECT_EQ(handle->reads, 1U);
    EXPECT_EQ(handle->bytesDelivered, 2048U);
    EXPECT_EQ(handle->position, 2048U);
}

TEST(RawFaxHandle, ShortReadIsScannedAsItIs) {
    const std::string twoRows = StoreLowFirst(mark + rowA + fill + mark + rowA);
    const auto enough = FIMakeTestHandle(twoRows + std::string(100, '\0'));
    enough->bytesPerRead = static_cast<std::uint32_t>(twoRows.size());
    EXPECT_EQ(FIAnswerOver(FIProbeRawFax, *enough), 1505U);
    EXPECT_EQ(enough->reads, 1U);
    const auto tooFew = FIMakeTestHandle(twoRows + std::string(100, '\0'));
    tooFew->bytesPerRead = static_cast<std::uint32_t>(twoRows.size() - 3);
    EXPECT_EQ(FIAnswerOver(FIProbeRawFax, *tooFew), 0U);
}

TEST(RawFaxHandle, FailingSeekOrReadIsNoFax) {
    const std::string bytes = StoreLowFirst(mark + rowA + fill + mark + rowA);
    const auto noSeek = FIMakeTestHandle(bytes);
    noSeek->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeRawFax, *noSeek), 0U);
    EXPECT_EQ(noSeek->reads, 0U);
    const auto noRead = FIMakeTestHandle(bytes);
    noRead->failReadsFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeRawFax, *noRead), 0U);
}

TEST(RawFaxHandle, ShortMemoryLeaksNothing) {
    const std::string bytes = StoreLowFirst(mark + rowA + fill + mark + rowA);
    for (std::uint32_t failing = 0; failing < 3; ++failing) {
        const auto handle = FIMakeTestHandle(bytes);
        FIReader reader;
        FIReaderStart(reader, FIFileOf(*handle));
        const std::size_t blocks = FIHeapBlocks();
        FIFailAllocationsFrom(failing);
        const FIID answer = FIProbeRawFax(reader);
        FIHeapNeverFails();
        EXPECT_TRUE(answer == 0 || answer == 1505) << answer;
        EXPECT_EQ(FIHeapBlocks(), blocks);
    }
}

// ---- The scan, against a slow and obvious one ----------------------------------------------------------------------

constexpr std::size_t bufferRoom = 4096;

std::uint16_t ScanBytes(const std::string& bytes) {
    std::vector<std::uint8_t> buffer(bufferRoom, 0);
    std::copy(bytes.begin(), bytes.end(), buffer.begin());
    return FIScanFaxBuffer(buffer.data(), static_cast<std::uint16_t>(bytes.size()));
}

TEST(ScanFaxBuffer, ReversesTheBitsOfItsBytes) {
    std::vector<std::uint8_t> buffer(bufferRoom, 0);
    for (std::uint32_t value = 0; value < 256; ++value) buffer[value] = static_cast<std::uint8_t>(value);
    static_cast<void>(FIScanFaxBuffer(buffer.data(), 256));
    for (std::uint32_t value = 0; value < 256; ++value) {
        std::uint32_t reversed = 0;
        for (std::uint32_t place = 0; place < 8; ++place) reversed |= (value >> place & 1) << (7 - place);
        EXPECT_EQ(buffer[value], reversed) << value;
    }
}

TEST(ScanFaxBuffer, NoBytesHoldNoRows) { EXPECT_EQ(ScanBytes(""), 0U); }

// The bit behind the next mark at or behind a place, or npos.
std::size_t BehindMark(const Bits& data, std::size_t from) {
    const std::size_t found = data.find(mark, from);
    return found == Bits::npos ? Bits::npos : found + mark.size();
}

// A row's width, or 0, and the bit where its decoding ends, told in offsets into the data: the window is 13 bits wide
// and begins at each code in turn; a byte is used up when the window has passed its last bit.
std::uint32_t PlainRow(const Bits& data, std::size_t start, std::size_t& end) {
    const Bits bits = data + Zeros(100000);
    std::size_t place = start;
    std::size_t lastLength = windowBits;
    std::uint32_t total = 0;
    Colour colour = Colour::White;
    end = start;
    if (start / 8 == data.size() / 8) return 0;
    while (true) {
        const std::size_t index = CodeAt(colour, std::string_view(bits).substr(place, windowBits));
        if (index == noCode) {
            end = place + lastLength;
            break;
        }
        lastLength = CodeBits(colour, index).size();
        total += RunOf(index);
        if (index < terminatingCount) colour = OtherThan(colour);
        const bool allBytesUsed = (place + windowBits) / 8 == data.size() / 8;
        place += lastLength;
        end = place;
        if (allBytesUsed) break;
    }
    const bool listed = std::find(std::begin(pageWidths), std::end(pageWidths), total) != std::end(pageWidths);
    return listed ? total : 0;
}

bool PlainScan(const Bits& data) {
    std::size_t from = 0;
    while (true) {
        from = BehindMark(data, from);
        if (from == Bits::npos) return false;
        std::size_t end = 0;
        const std::uint32_t width = PlainRow(data, from, end);
        if (width == 0) continue;
        const std::size_t second = BehindMark(data, std::min(end, data.size()));
        if (second == Bits::npos) return false;
        return PlainRow(data, second, end) == width;
    }
}

// Random streams of rows, marks, fill and noise, cut anywhere.
class StreamMaker {
 public:
    std::string MakeBytes() {
        Bits bits = Zeros(Below(20));
        for (std::uint32_t rows = 1 + Below(6); rows > 0; --rows) bits += MakePiece();
        std::string bytes = StoreLowFirst(bits);
        if (Below(2) == 0) bytes.resize(bytes.size() - std::min<std::size_t>(bytes.size(), Below(6)));
        return bytes;
    }

 private:
    std::uint32_t Below(std::uint32_t bound) { return static_cast<std::uint32_t>(engine_() % bound); }

    Bits MakePiece() {
        if (Below(12) == 0) return MakeNoise();
        Bits piece = Below(3) != 0 ? Zeros(Below(16)) : Bits();
        if (Below(12) != 0) piece += mark;
        const std::uint32_t width = pageWidths[Below(3) == 0 ? Below(6) : 0];
        return piece + MakeRow(Below(8) == 0 ? width + 1 : width);
    }

    Bits MakeRow(std::uint32_t width) {
        Bits row;
        Colour colour = Colour::White;
        while (width > 0) {
            const std::uint32_t run = Below(3) == 0 ? width : std::min(width, Below(400));
            row += EncodeRun(colour, run);
            colour = OtherThan(colour);
            width -= run;
        }
        return row;
    }

    Bits MakeNoise() {
        Bits noise;
        for (std::uint32_t count = Below(40); count > 0; --count) noise += Below(3) == 0 ? '1' : '0';
        return noise;
    }

    std::mt19937 engine_{20240229};
};

Bits BitsOf(const std::string& bytes) {
    Bits bits;
    for (const char byte : bytes) {
        for (std::uint32_t place = 0; place < 8; ++place) {
            bits += (static_cast<std::uint8_t>(byte) >> place & 1) != 0 ? '1' : '0';
        }
    }
    return bits;
}

bool GateIsOpen(const std::string& bytes) {
    const OpenFile file(bytes);
    FIHead head;
    EXPECT_TRUE(FITakeHead(file.File(), head));
    return FIMayBeRawFax(head);
}

TEST(ScanFaxBuffer, AgreesWithAPlainScanOverRandomStreams) {
    StreamMaker maker;
    std::uint32_t accepted = 0;
    std::uint32_t refused = 0;
    std::uint32_t closed = 0;
    for (std::uint32_t round = 0; round < 1500; ++round) {
        const std::string bytes = maker.MakeBytes();
        const bool expected = PlainScan(BitsOf(bytes));
        (expected ? accepted : refused) += 1;
        ASSERT_EQ(ScanBytes(bytes) != 0, expected) << "round " << round << ": " << BitsOf(bytes);
        const bool open = GateIsOpen(bytes);
        ASSERT_TRUE(open || !expected) << "round " << round << ": " << BitsOf(bytes);
        closed += open ? 0 : 1;
    }
    EXPECT_GT(accepted, 100U);
    EXPECT_GT(refused, 100U);
    EXPECT_GT(closed, 300U);
}

// The gate takes the bits as they lie in the file: it agrees with the routine wherever they come from.
TEST(RawFaxGate, IsClosedOnlyWhereTheScanFindsNothing) {
    std::mt19937 engine(4864);
    const auto below = [&engine](std::size_t limit) { return static_cast<std::size_t>(engine()) % limit; };
    std::uint32_t open = 0;
    for (std::uint32_t round = 0; round < 6000; ++round) {
        std::string bytes;
        for (const std::size_t size = below(8) == 0 ? 2040 + below(16) : below(120); bytes.size() < size;) {
            const char byte = static_cast<char>(engine());
            bytes.append(below(3) == 0 ? below(40) : 1, below(3) == 0 ? char{0} : below(3) == 0 ? '\xFF' : byte);
        }
        const bool isOpen = GateIsOpen(bytes);
        open += isOpen ? 1 : 0;
        ASSERT_TRUE(isOpen || ScanBytes(bytes.substr(0, 2048)) == 0) << round;
    }
    EXPECT_LT(open, 600U);
    EXPECT_FALSE(GateIsOpen(FIEnglishText("\n")));
    EXPECT_FALSE(GateIsOpen(FIEnglishText("\r\n")));
}

// Ones are white runs of 7 and black runs of 2 in turn: 192 of each are 1,728 pixels. Some stand elsewhere in a row.
TEST(ScanFaxBuffer, StretchesOfOnesAreRunsLikeAnyOthers) {
    const auto rowOf = [](std::size_t ones) { return mark + Bits(ones, '1') + fill; };
    EXPECT_EQ(ScanBytes(StoreLowFirst(rowOf(1152) + rowOf(1152) + mark)), 1U);
    EXPECT_EQ(ScanBytes(StoreLowFirst(rowOf(1152) + rowOf(1158) + mark)), 0U);
    std::mt19937 engine(1728);
    for (std::uint32_t round = 0; round < 400; ++round) {
        Bits bits = Zeros(engine() % 20);
        for (std::uint32_t row = 0; row < 3; ++row) {
            bits +=
                mark + (engine() % 2 == 0 ? EncodeRun(Colour::White, static_cast<std::uint32_t>(engine() % 300)) : "");
            bits += Bits(engine() % 8 == 0 ? 1152 : engine() % 1400, '1') + Zeros(engine() % 10);
        }
        const std::string bytes = StoreLowFirst(bits);
        const bool expected = PlainScan(BitsOf(bytes));
        ASSERT_EQ(ScanBytes(bytes) != 0, expected) << "round " << round;
        ASSERT_TRUE(GateIsOpen(bytes) || !expected) << "round " << round;
    }
}

// ---- Whole requests ------------------------------------------------------------------------------------------------

constexpr std::uint16_t rawFaxRow = 374_row;

TEST(RawFaxRequest, StreamOfThreeRowsIsFax) {
    std::uint16_t row = 0;
    const std::string bytes = StoreLowFirst(mark + rowA + mark + rowA + mark + rowA);
    EXPECT_EQ(FIIdentifyBytes(bytes, "page.fax", FIFlagExtendedText, &row), 1505U);
    EXPECT_EQ(row, rawFaxRow);
}

TEST(RawFaxRequest, RefusedStreamsGoOnInTheTable) {
    FIExpectRowLetsPass("no third mark", StoreLowFirst(mark + rowA + mark + rowA), rawFaxRow);
    FIExpectRowLetsPass("the other bit order", StoreHighFirst(mark + rowA + fill + mark + rowA), rawFaxRow);
    FIExpectRowLetsPass("different widths", StoreLowFirst(mark + rowA + fill + mark + rowB), rawFaxRow);
    FIExpectRowLetsPass("an empty file", "", rawFaxRow);
}

}  // namespace
