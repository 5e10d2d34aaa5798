// The bytecode machine: each operation on both sides of its limits, and the rules around unknown numbers.
#include "core/interpreter.h"

#include <gtest/gtest.h>

#include "package/xml_namespace.h"
#include "reader/reader.h"
#include "support/bytes.h"
#include "support/case_name.h"
#include "support/test_handle.h"

namespace {

using ::PrintTo;

// A row that ends in this identifier has matched.
constexpr const char* matched = " FF 08 61 1E";
constexpr FIID match = 7777;

struct Machine {
    std::string extension;
    bool hasClassId = false;
    std::string classId = std::string(16, '\0');
    std::uint16_t xmlNamespace[xmlNamespaceUnits] = {xmlNamespaceNotScanned};

    FIRequest Request() const {
        FIRequest request = {};
        extension.copy(request.extension, extensionLength);
        request.hasClassId = hasClassId;
        std::copy_n(classId.begin(), classIdSize, request.classId);
        std::copy(std::begin(xmlNamespace), std::end(xmlNamespace), request.xmlNamespace);
        return request;
    }

    FIID Run(const std::string& code, TestHandle& handle) {
        // Zero bytes behind the row, which would compare as literals, stand for what follows in the table.
        const std::string bytes = FIBytes(code) + std::string(300, '\0');
        FIReader* const reader = FIReaderNew(FIFileOf(handle));
        FIRequest request = Request();
        const FIID result = FIRunSignature(reinterpret_cast<const std::uint8_t*>(bytes.data()), *reader, request);
        std::copy(std::begin(request.xmlNamespace), std::end(request.xmlNamespace), xmlNamespace);
        FIReaderFree(*reader);
        return result;
    }
    FIID Run(const std::string& code, const std::string& file) {
        const auto handle = FIMakeTestHandle(FIBytes(file));
        return Run(code, *handle);
    }
};

struct RowCase {
    const char* name;
    const char* code;  // without the result
    const char* file;
    bool matches;
};

const RowCase rowCases[] = {
    // clang-format off
    {"NoItems",                        "",                                 "",             true},
    {"Literal",                        "41 42",                            "41 42",        true},
    {"LiteralDiffers",                 "41 42",                            "41 43",        false},
    {"LiteralAtTheEnd",                "41 42",                            "41",           false},
    {"LiteralFF",                      "FF FF",                            "FF",           true},
    {"LiteralFFDiffers",               "FF FF",                            "FE",           false},
    {"LiteralFFAtTheEnd",              "FF FF",                            "",             false},
    {"LiteralZeroAtTheEnd",            "00",                               "",             false},
    {"Seek",                           "FF 01 02 00 00 00 43",             "41 42 43",     true},
    {"SeekReadsAllFourBytes",          "FF 01 01 01 00 00 43",             ">257 43",      true},
    {"SeekBehindTheEndIsNoFailure",    "FF 01 09 00 00 00",                "41",           true},
    {"SeekBehindTheEndThenLiteral",    "FF 01 09 00 00 00 00",             "41",           false},
    {"Rewind",                         "41 FF 0A 41",                      "41",           true},
    {"Not",                            "FF 03 41 43",                      "42 43",        true},
    {"NotEquals",                      "FF 03 41",                         "41",           false},
    {"NotAtTheEnd",                    "FF 03 41",                         "",             false},
    {"NotFFAtTheEnd",                  "FF 03 FF",                         "",             false},
    {"NotFFOtherByte",                 "FF 03 FF",                         "FE",           true},
    {"RangeLow",                       "FF 04 01 10 20",                   "10",           true},
    {"RangeHigh",                      "FF 04 01 10 20",                   "20",           true},
    {"RangeBelow",                     "FF 04 01 10 20",                   "0F",           false},
    {"RangeAbove",                     "FF 04 01 10 20",                   "21",           false},
    {"RangeIsUnsigned",                "FF 04 01 7F 81",                   "80",           true},
    {"RangeToFF",                      "FF 04 01 00 FF",                   "FF",           true},
    {"RangeToFFAtTheEnd",              "FF 04 01 00 FF",                   "",             false},
    {"RangeOfThree",                   "FF 04 03 10 20 41",                "10 15 20 41",  true},
    {"RangeOfThreeThirdOff",           "FF 04 03 10 20",                   "10 15 21",     false},
    {"RangeOfThreeTooShort",           "FF 04 03 10 20",                   "10 15",        false},
    {"RangeOfNone",                    "FF 04 00 10 20 41",                "41",           true},
    {"RangeUpsideDown",                "FF 04 01 20 10",                   "18",           false},
    {"OutsideAbove",                   "FF 05 01 00 00 06 00 41",          "07 00 41",     true},
    {"OutsideAtHigh",                  "FF 05 01 00 00 06 00",             "06 00",        false},
    {"OutsideAtLow",                   "FF 05 01 02 01 06 01",             "02 01",        false},
    {"OutsideBelow",                   "FF 05 01 02 01 06 01",             "01 01",        true},
    {"OutsideFFFE",                    "FF 05 01 00 00 06 00",             "FE FF",        true},
    {"OutsideFFFF",                    "FF 05 01 00 00 06 00",             "FF FF",        false},
    {"OutsideHalfAWordIsFF00",         "FF 05 01 00 00 06 00",             "03",           true},
    {"OutsideHalfAWordInRange",        "FF 05 01 00 FF 10 FF",             "03",           false},
    {"OutsideHalfAWordBehindRange",    "FF 05 01 00 FF 10 FF",             "11",           true},
    {"OutsideHalfAWordFF",             "FF 05 01 00 00 06 00",             "FF",           false},
    {"OutsideAtTheEnd",                "FF 05 01 00 00 06 00",             "",             false},
    {"OutsideTwice",                   "FF 05 02 00 00 06 00",             "07 00 08 00",  true},
    {"OutsideTwiceSecondIn",           "FF 05 02 00 00 06 00",             "07 00 06 00",  false},
    {"OutsideOfNone",                  "FF 05 00 00 00 06 00 01",          "01",           true},
    {"Skip",                           "FF 06 02 43",                      "41 42 43",     true},
    {"SkipToTheEnd",                   "FF 06 02",                         "41 42",        true},
    {"SkipOverTheEnd",                 "FF 06 03",                         "41 42",        false},
    {"SkipNone",                       "FF 06 00 41",                      "41",           true},
    {"EitherFirst",                    "FF 0D 41 42",                      "41",           true},
    {"EitherSecond",                   "FF 0D 41 42",                      "42",           true},
    {"EitherNeither",                  "FF 0D 41 42",                      "43",           false},
    {"EitherFFAtTheEnd",               "FF 0D 00 FF",                      "",             false},
    {"SeekEnd",                        "FF 0F FE FF FF FF 42",             "41 42 43",     true},
    {"SeekEndToTheStart",              "FF 0F FD FF FF FF 41",             "41 42 43",     true},
    {"SeekEndBeforeTheStart",          "FF 0F FC FF FF FF",                "41 42 43",     false},
    {"RowEndIsANoop",                  "41 FF E0 42",                      "41 42",        true},
    {"TableEndIsANoop",                "41 FF E1 42",                      "41 42",        true},
    {"Opcode00IsANoop",                "FF 00 41",                         "41",           true},
    {"Opcode02IsANoop",                "FF 02 41",                         "41",           true},
    {"Opcode07IsANoop",                "FF 07 41",                         "41",           true},
    {"Opcode09IsANoop",                "FF 09 41",                         "41",           true},
    {"Opcode0BIsANoop",                "FF 0B 41",                         "41",           true},
    {"Opcode12IsANoop",                "FF 12 41",                         "41",           true},
    {"OpcodeFEIsANoop",                "FF FE 41",                         "41",           true},
    {"CallUnknownResumesAtHighByte",   "FF 0C 34 12",                      "12",           true},
    {"CallUnknownHighByteIsCompared",  "FF 0C 34 12",                      "13",           false},
    {"CallUnknownFF00ThenNothing",     "41 FF 0C 00",                      "41",           true},
    // clang-format on
};

class InterpreterRow : public testing::TestWithParam<RowCase> {};

TEST_P(InterpreterRow, Answers) {
    const auto handle = FIMakeTestHandle(FIBytes(GetParam().file));
    EXPECT_EQ(Machine().Run(GetParam().code + std::string(matched), *handle), GetParam().matches ? match : 0);
    handle->bytesPerRead = 1;
    EXPECT_EQ(Machine().Run(GetParam().code + std::string(matched), *handle), GetParam().matches ? match : 0);
}

INSTANTIATE_TEST_SUITE_P(Opcodes, InterpreterRow, testing::ValuesIn(rowCases), FICaseName);

TEST(Interpreter, WorkedRowTellsPdf) {
    const std::string row = "FF 0A 25 50 44 46 2D FF 06 01 2E FF 08 15 06 FF E0";
    EXPECT_EQ(Machine().Run(row, R"("%PDF-1.7")"), 1557);
    EXPECT_EQ(Machine().Run(row, R"("%PDF-17")"), 0);
}

TEST(Interpreter, IdOfZeroIsAFailedRow) { EXPECT_EQ(Machine().Run("41 FF 08 00 00", "41"), 0); }

TEST(Interpreter, FailedSeekFailsTheRow) {
    const auto handle = FIMakeTestHandle("abc");
    handle->failSeeksFrom = 0;
    EXPECT_EQ(Machine().Run(std::string("FF 0A") + matched, *handle), 0);
    EXPECT_EQ(Machine().Run(std::string("FF 01 01 00 00 00") + matched, *handle), 0);
}

TEST(Interpreter, SeekEndFailsWhenTheTellFails) {
    const auto handle = FIMakeTestHandle("abc");
    handle->failTell = true;
    EXPECT_EQ(Machine().Run(std::string("FF 0F FF FF FF FF") + matched, *handle), 0);
}

TEST(Interpreter, SeekEndInsideTheBufferMovesOnlyTheCursor) {
    const auto handle = FIMakeTestHandle("abc");
    EXPECT_EQ(Machine().Run(R"(FF 0A "a" FF 0F FF FF FF FF "c")" + std::string(matched), *handle), match);
    EXPECT_EQ(handle->reads, 1U);
}

// ---- Extensions -----------------------------------------------------------------------------------------------------

FIID RunWithExtension(const std::string& code, const std::string& extension) {
    Machine machine;
    machine.extension = extension;
    return machine.Run(code + matched, "");
}

TEST(Interpreter, ExtensionIsComparedAsAPrefix) {
    const std::string code = R"(FF 0E 02 "AI")";
    EXPECT_EQ(RunWithExtension(code, "AI"), match);
    EXPECT_EQ(RunWithExtension(code, "AIFF"), match);
    EXPECT_EQ(RunWithExtension(code, "A"), 0);
    EXPECT_EQ(RunWithExtension(code, ""), 0);
    EXPECT_EQ(RunWithExtension(code, "BI"), 0);
}

TEST(Interpreter, SecondExtensionItemGoesOnBehindTheFirst) {
    EXPECT_EQ(RunWithExtension(R"(FF 0E 02 "AI" FF 0E 02 "FF")", "AIFF"), match);
    EXPECT_EQ(RunWithExtension(R"(FF 0E 02 "AI" FF 0E 02 "AI")", "AIFF"), 0);
}

TEST(Interpreter, ExtensionReadsNothingOfTheFile) {
    const auto handle = FIMakeTestHandle("abc");
    Machine machine;
    machine.extension = "TGA";
    EXPECT_EQ(machine.Run(R"(FF 0E 03 "TGA")" + std::string(matched), *handle), match);
    EXPECT_EQ(handle->reads + handle->seeks, 0U);
}

// ---- Class identifiers ----------------------------------------------------------------------------------------------

TEST(Interpreter, ClassIdIsComparedByteByByte) {
    Machine machine;
    machine.hasClassId = true;
    machine.classId = FIBytes("00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F");
    const std::string code = std::string("FF 10 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F") + matched;
    EXPECT_EQ(machine.Run(code, ""), match);
    machine.classId.back() = '\x10';
    EXPECT_EQ(machine.Run(code, ""), 0);
    machine.classId = FIBytes("01 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F");
    EXPECT_EQ(machine.Run(code, ""), 0);
}

TEST(Interpreter, ClassIdFailsAtOnceForAPlainFile) {
    const auto handle = FIMakeTestHandle("abc");
    EXPECT_EQ(Machine().Run(std::string("FF 10 00*16") + matched, *handle), 0);
    EXPECT_EQ(handle->reads + handle->seeks, 0U);
}

// ---- XML namespaces -------------------------------------------------------------------------------------------------

void SetNamespace(Machine& machine, const std::string& text) {
    for (std::size_t index = 0; index < text.size(); ++index) {
        machine.xmlNamespace[index] = static_cast<std::uint8_t>(text[index]);
    }
    if (text.size() < xmlNamespaceUnits) machine.xmlNamespace[text.size()] = 0;
}

FIID RunWithNamespace(const std::string& operand, const std::string& text) {
    Machine machine;
    SetNamespace(machine, text);
    return machine.Run("FF 11 " + operand + matched, "");
}

TEST(Interpreter, NamespaceIsComparedForEquality) {
    EXPECT_EQ(RunWithNamespace(R"("urn:a" 00)", "urn:a"), match);
    EXPECT_EQ(RunWithNamespace(R"("urn:a" 00)", "urn:ab"), 0);
    EXPECT_EQ(RunWithNamespace(R"("urn:a" 00)", "urn:"), 0);
    EXPECT_EQ(RunWithNamespace(R"("urn:a" 00)", "urn:b"), 0);
    EXPECT_EQ(RunWithNamespace(R"("urn:a" 00)", ""), 0);
    EXPECT_EQ(RunWithNamespace("00", ""), match);
}

TEST(Interpreter, NamespaceUnitsAreComparedIn16Bits) {
    Machine machine;
    machine.xmlNamespace[0] = 0x0141;
    machine.xmlNamespace[1] = 0;
    EXPECT_EQ(machine.Run(std::string("FF 11 41 00") + matched, ""), 0);
}

TEST(Interpreter, NamespaceOf255UnitsWithoutAnEndMatches) {
    EXPECT_EQ(RunWithNamespace("41*254 00", std::string(254, 'A')), match);
    EXPECT_EQ(RunWithNamespace("41*255", std::string(255, 'A')), match) << "goes on behind the 255th byte";
    EXPECT_EQ(RunWithNamespace("41*255 00", std::string(255, 'A')), 0) << "whose NUL is a literal then";
}

TEST(Interpreter, NamespaceNotFoundFailsWithoutAScan) {
    const auto handle = FIMakeTestHandle("abc");
    Machine machine;
    machine.xmlNamespace[0] = xmlNamespaceNotFound;
    EXPECT_EQ(machine.Run(std::string("FF 11 41 00") + matched, *handle), 0);
    EXPECT_EQ(handle->reads + handle->seeks, 0U);
}

TEST(Interpreter, NamespaceIsScannedOnce) {
    const auto handle = FIMakeTestHandle("<?xml version='1.0'?><a xmlns='urn:a'/>");
    Machine machine;
    EXPECT_EQ(machine.Run(R"(FF 11 "urn:b" 00)" + std::string(matched), *handle), 0);
    const std::uint32_t reads = handle->reads;
    EXPECT_EQ(machine.Run(R"(FF 11 "urn:a" 00)" + std::string(matched), *handle), match);
    EXPECT_EQ(handle->reads, reads);
}

// ---- Calls ----------------------------------------------------------------------------------------------------------

TEST(Interpreter, CallEndsTheRowWithTheRoutinesResult) {
    // 1141, vCards; what stands behind the call is never run.
    EXPECT_EQ(Machine().Run("FF 0C 75 04 FF 08 61 1E", R"("BEGIN:VCARD")"), 1141);
    EXPECT_EQ(Machine().Run("FF 0C 75 04 FF 08 61 1E", R"("BEGIN:X")"), 0);
}

TEST(Interpreter, CallReachesARoutineThatNoRowHas) {
    EXPECT_EQ(Machine().Run("FF 0C 21 04", R"("[ver]" 0D 0A "4" 0D 0A "[sty]" 0D 0A)"), 1057);
}

TEST(Interpreter, CallOfARoutineWithTheExtensionPassesIt) {
    Machine machine;
    machine.extension = "NWS";
    EXPECT_EQ(machine.Run("FF 0C A3 04", R"("Newsgroups: a" 0A "Message-ID: b" 0A)"), 1194);
    machine.extension = "";
    EXPECT_EQ(machine.Run("FF 0C A3 04", R"("Newsgroups: a" 0A "Message-ID: b" 0A)"), 1193);
}

}  // namespace
