// What answers stand on: by the row that decided, and by its routine.
#include "core/routine_facts.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "signatures/table.h"
#include "support/row_number.h"

namespace {

TEST(RoutineFacts, AreThereForEachRoutine) {
    std::set<std::uint16_t> numbers;
    for (const FIRoutineFacts& facts : FIAllRoutineFacts()) {
        EXPECT_TRUE(numbers.insert(facts.number).second);
        EXPECT_EQ(std::strncmp(facts.name, "FIProbe", 7), 0) << facts.name;
        EXPECT_NE(facts.looksAt[0], '\0') << facts.name;
        EXPECT_TRUE(facts.basis != FIBasis::None && facts.basis != FIBasis::Extension) << facts.name;
    }
    EXPECT_EQ(numbers.size(), 62U);
}

TEST(RoutineFacts, AreThoseOfTheRoutineThatARowCalls) {
    for (std::uint16_t number = 1; number <= signatureRowCount; ++number) {
        const FISignatureRow& row = *FIFindSignatureRow(number);
        const FIRoutineFacts* const facts = FIFactsOfRow(row);
        EXPECT_EQ(facts != nullptr, row.result.opcode == FIOpcode::Call) << number;
        if (facts == nullptr) continue;
        EXPECT_EQ(facts->number, row.result.number) << number;
    }
}

struct BasisCase {
    const char* name;
    FIVerdict verdict;
    FIBasis basis;
};

const BasisCase basisCases[] = {
    // clang-format off
    {"Nothing",             {0, 0},            FIBasis::None},
    {"NotKnown",            {1999, 0},         FIBasis::None},
    {"NotKnownByARow",      {1999, 150_row},   FIBasis::None},
    {"Text",                {4022, 0},         FIBasis::Text},
    {"ClassIdentifier",     {1165, 1_row},     FIBasis::Storage},
    {"ClassAndRoutine",     {1146, 4_row},     FIBasis::Storage},
    {"Bytes",               {1503, 172_row},   FIBasis::Signature},
    {"Extension",           {1512, 207_row},   FIBasis::Extension},
    {"ExtensionAndBytes",   {1611, 99_row},    FIBasis::Extension},
    {"ExtensionAndRoutine", {1210, 401_row},   FIBasis::Extension},
    {"TextWithTheWordext",  {1179, 61_row},    FIBasis::Signature},
    {"Package",             {1455, 269_row},   FIBasis::Package},
    // clang-format on
};

TEST(Basis, IsThatOfTheRow) {
    for (const BasisCase& test : basisCases) EXPECT_EQ(FIBasisOfVerdict(test.verdict), test.basis) << test.name;
    EXPECT_EQ(FIBasisOfSignature(R"(>0 "text {ext}")", FIBasis::Structure), FIBasis::Structure) << "inside of text";
    EXPECT_EQ(FIBasisOfSignature(R"(>0 "a" ext "X")", FIBasis::Structure), FIBasis::Extension);
}

}  // namespace
