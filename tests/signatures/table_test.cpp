// The table: its bytes against those written out by hand, and what lies behind it.
#include "signatures/table.h"

#include <gtest/gtest.h>

#include <set>

#include "signatures/bytecode.h"
#include "signatures/character_classes.h"
#include "signatures/routine_needs.h"
#include "support/bytes.h"
#include "support/golden.h"
#include "support/row_number.h"

namespace {

std::string HexOf(const std::uint8_t* begin, const std::uint8_t* end) {
    std::string text;
    for (const std::uint8_t* byte = begin; byte != end; ++byte) {
        char pair[4] = {};
        std::snprintf(pair, sizeof(pair), "%02X ", *byte);
        text += pair;
    }
    if (!text.empty()) text.pop_back();
    return text;
}

// The entries of the table from start to start, each with its end mark.
std::vector<std::string> SplitTable() {
    std::vector<std::string> rows;
    for (std::uint16_t number = 1; number < signatureEntryCount; ++number) {
        rows.push_back(HexOf(FISignatureEntry(number), FISignatureEntry(static_cast<std::uint16_t>(number + 1))));
    }
    rows.push_back(HexOf(FISignatureEntry(signatureEntryCount), FISignatureTable() + FISignatureTableSize()));
    return rows;
}

// The expected bytes are no output of the assembler: a slip in it or in the notation shows here.
TEST(Table, HasTheBytesThatAreWrittenOutByHand) {
    const std::vector<std::string> expected = FIReadGolden("rows.hex");
    const std::vector<std::string> rows = SplitTable();
    ASSERT_EQ(rows.size(), signatureEntryCount);
    ASSERT_EQ(expected.size(), signatureEntryCount);
    for (std::size_t index = 0; index < rows.size(); ++index) {
        ASSERT_EQ(std::to_string(index + 1) + "\t" + rows[index], expected[index])
            << "row " << index + 1 << " is the first that differs";
    }
}

TEST(Table, IsFollowedByNineZeroBytes) {
    const std::uint8_t* const end = FISignatureTable() + FISignatureTableSize();
    EXPECT_EQ(HexOf(end - 2, end + zeroBytesBehindTable), "FF E1 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(end[zeroBytesBehindTable], 0xFF) << "the class tables begin right behind";
}

TEST(Table, RowsAreFoundByTheirNumbers) {
    EXPECT_EQ(FIFindSignatureRow(0), nullptr);
    EXPECT_EQ(FIFindSignatureRow(signatureRowCount + 1), nullptr);
    EXPECT_EQ(FIFindSignatureRow(0xFFFF), nullptr);
    for (std::uint16_t number = 1; number <= signatureRowCount; ++number) {
        ASSERT_NE(FIFindSignatureRow(number), nullptr) << number;
        EXPECT_EQ(FIFindSignatureRow(number)->row, number);
    }
}

TEST(Table, CallsEveryRoutineButOne) {
    std::set<std::uint16_t> uncalled;
    for (const FIRoutineNeeds& routine : routineNeeds) uncalled.insert(routine.number);
    for (std::uint16_t number = 1; number <= signatureRowCount; ++number) {
        const FIRowResult result = FIFindSignatureRow(number)->result;
        if (result.opcode == FIOpcode::Call) uncalled.erase(result.number);
    }
    EXPECT_EQ(uncalled, std::set<std::uint16_t>{1057});
}

TEST(Table, ThreePictRowsKeepTheCallOfAnUnknownRoutine) {
    for (const std::uint16_t number : {177_row, 178_row, 179_row}) {
        EXPECT_NE(SplitTable()[number - 1].find("00 11 02 FF 0C 00 FF 08"), std::string::npos) << number;
    }
}

// What the table's shape promises: rows that are equal, and the pair of rows that share a class identifier.
TEST(Table, RepeatsOneRowAndOneClassIdentifier) {
    const std::vector<std::string> rows = SplitTable();
    EXPECT_EQ(rows[354_row - 1], rows[355_row - 1]);
    EXPECT_EQ(FIFindSignatureRow(21_row)->signature, FIFindSignatureRow(25_row)->signature);
    EXPECT_EQ(FIFindSignatureRow(401_row)->signature, FIFindSignatureRow(402_row)->signature);
}

// ---- The class tables behind the table ------------------------------------------------------------------------------

constexpr std::uint8_t highestValue = 63;

std::string Members(std::uint8_t (*lookUp)(char), std::uint32_t first, std::uint32_t last) {
    std::string members;
    for (std::uint32_t byte = first; byte <= last; ++byte) {
        if (lookUp(static_cast<char>(byte)) <= highestValue) members += static_cast<char>(byte);
    }
    return members;
}

TEST(CharacterClasses, HoldTheirAlphabets) {
    EXPECT_EQ(Members(FIBinHexClass, 0, 127), "!\"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr");
    EXPECT_EQ(Members(FIXxClass, 0, 127), "+-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    std::string uu;
    for (char byte = 32; byte <= 96; ++byte) uu += byte;
    EXPECT_EQ(Members(FIUuClass, 0, 127), uu);
}

TEST(CharacterClasses, GiveValuesInTheOrderOfTheAlphabet) {
    EXPECT_EQ(FIBinHexClass('!'), 0);
    EXPECT_EQ(FIBinHexClass('r'), 63);
    EXPECT_EQ(FIUuClass(' '), 0);
    EXPECT_EQ(FIUuClass('M'), 45);
    EXPECT_EQ(FIUuClass('_'), 63);
    EXPECT_EQ(FIUuClass('`'), 0);
    EXPECT_EQ(FIXxClass('+'), 0);
    EXPECT_EQ(FIXxClass('h'), 45);
    EXPECT_EQ(FIXxClass('z'), 63);
    EXPECT_EQ(FIXxClass('*'), 0xFF);
}

TEST(CharacterClasses, ReadInFrontOfTheirTablesForHighBytes) {
    EXPECT_EQ(Members(FIUuClass, 128, 255), "");
    std::string xx;
    for (std::uint32_t byte = 0xA0; byte <= 0xE0; ++byte) xx += static_cast<char>(byte);
    EXPECT_EQ(Members(FIXxClass, 128, 255), xx);
    EXPECT_EQ(FIBinHexClass(static_cast<char>(0x80)), 0xFF);
    EXPECT_EQ(FIBinHexClass(static_cast<char>(0x81)), 0x08);
    EXPECT_EQ(FIBinHexClass(static_cast<char>(0xFF)), 0x00);
    EXPECT_EQ(Members(FIBinHexClass, 128, 255),
              FIBytes("81 82 83 87 89 8D 92 93 97 98 9A 9B 9C A0 A9 AB AF B1 B5 B7 BB BD C1 C2 C7 C9 CD CE D3 D5 D9 DB "
                      "DF E5 E6 E7 E9 EA EC ED EE F0 F1 F2 F7 F8 F9 FA FB FC FD FE FF"));
}

}  // namespace
