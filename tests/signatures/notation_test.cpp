// The assembler of the notation: each item and the bytes it becomes, and the checks that find a wrong family of rows.
#include "signatures/notation.h"

#include <gtest/gtest.h>

#include <string>

#include "support/bytes.h"
#include "support/case_name.h"

namespace {

using ::PrintTo;

std::string Assemble(std::string_view signature) {
    FICodeWriter measured;
    FIAssembleSignature(signature, measured);
    std::string bytes(measured.count, '\0');
    FICodeWriter code = {reinterpret_cast<std::uint8_t*>(bytes.data())};
    FIAssembleSignature(signature, code);
    return bytes;
}

struct NotationCase {
    const char* name;
    const char* signature;
    const char* code;  // in the notation of FIBytes
};

const NotationCase notationCases[] = {
    // clang-format off
    {"HexPairs",         "00 7F FE",                       "00 7F FE"},
    {"HexFFIsDoubled",   "FF 01 FF FF",                    "FF FF 01 FF FF FF FF"},
    {"Text",             R"("AbC ")",                      "41 62 43 20"},
    {"TextWithSigns",    R"(">0+[(!" 00)",                 "3E 30 2B 5B 28 21 00"},
    {"Rewind",           ">0",                             "FF 0A"},
    {"Seek",             ">1",                             "FF 01 01 00 00 00"},
    {"SeekFar",          ">67305985",                      "FF 01 01 02 03 04"},
    {"SeekEnd",          ">end-7",                         "FF 0F F9 FF FF FF"},
    {"SeekEnd128",       ">end-128",                       "FF 0F 80 FF FF FF"},
    {"Skip",             "+4",                             "FF 06 04"},
    {"Skip128",          "+128",                           "FF 06 80"},
    {"Range",            "[00-1F]",                        "FF 04 01 00 1F"},
    {"RangeTwice",       "[01-02]*5",                      "FF 04 05 01 02"},
    {"RangeOfFF",        "[00-FF]",                        "FF 04 01 00 FF"},
    {"Either",           "(37/39)",                        "FF 0D 37 39"},
    {"EitherFF",         "(00/FF)",                        "FF 0D 00 FF"},
    {"Not",              "!00",                            "FF 03 00"},
    {"NotFF",            "!FF",                            "FF 03 FF"},
    {"Outside",          "out[0102-0A0B]",                 "FF 05 01 02 01 0B 0A"},
    {"Extension",        R"(ext "TGA")",                   "FF 0E 03 54 47 41"},
    {"ClassId",          "{33221100-5544-7766-8899-AABBCCDDEEFF}",
                         "FF 10 00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF"},
    {"Namespace",        "xmlns H3 /dxl",                  "FF 11 \"http://www.lotus.com/dxl\" 00"},
    {"UnknownCall",      "noop(FF 0C 00)",                 "FF 0C 00"},
    {"Always",           "(always)",                       ""},
    {"Items",            R"(>0 50 +2 "K" !01)",            "FF 0A 50 FF 06 02 4B FF 03 01"},
    // clang-format on
};

class Notation : public testing::TestWithParam<NotationCase> {};

TEST_P(Notation, BecomesBytecode) { EXPECT_EQ(Assemble(GetParam().signature), FIBytes(GetParam().code)); }

INSTANTIATE_TEST_SUITE_P(Items, Notation, testing::ValuesIn(notationCases), FICaseName);

constexpr FISignatureRow goodRows[] = {{7, ">0 FF", Id(1503), ""}, {8, "(always)", Call(1807), ""}};
constexpr FISignatureRow gapRows[] = {{7, ">0 FF", Id(1503), ""}, {9, "(always)", Call(1807), ""}};
constexpr FISignatureRow unknownRows[] = {{7, ">0 01", Id(1503), ""}, {8, ">0 02", Call(1503), ""}};
constexpr FISignatureRow emptyRows[] = {{7, ">0 01", Id(0), ""}};

constexpr FISignatureRow wrongOpcodeRows[] = {{7, ">0 01", {FIOpcode::Skip, 1503}, ""}};

TEST(Notation, RowEndsInItsResultAndTheRowEnd) {
    constexpr auto code = FIAssembleRows<goodRows>();
    EXPECT_EQ(std::string(code.bytes.begin(), code.bytes.end()),
              FIBytes("FF 0A FF FF FF 08 DF 05 FF E0 FF 0C 0F 07 FF E0"));
}

TEST(Notation, AssemblerTellsWhereRowsStart) {
    EXPECT_EQ(FIAssembleRows<goodRows>().starts, (std::array<std::uint16_t, 2>{0, 10}));
    EXPECT_EQ(FIAssembleRows<emptyRows>().starts, (std::array<std::uint16_t, 1>{0}));
}

TEST(Notation, CheckNamesTheFirstRowThatIsNotGood) {
    EXPECT_EQ(FICheckRows<goodRows>(7), 0U);
    EXPECT_EQ(FICheckRows<goodRows>(6), 6U);
    EXPECT_EQ(FICheckRows<gapRows>(7), 8U);
    EXPECT_EQ(FICheckRows<unknownRows>(7), 8U);
    EXPECT_EQ(FICheckRows<emptyRows>(7), 7U);
    EXPECT_EQ(FICheckRows<wrongOpcodeRows>(7), 7U);
}

}  // namespace
