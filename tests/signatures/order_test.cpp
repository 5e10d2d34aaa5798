// Where the order of the rows decides, and other rules of the table, told through whole identifications.
#include <gtest/gtest.h>

#include "catalogue/format_not_known.h"
#include "core/driver.h"
#include "support/case_name.h"
#include "support/probe_case.h"
#include "support/skeleton.h"

namespace {

using ::PrintTo;

struct TableCase {
    const char* name;
    const char* bytes;
    const char* fileName;
    FIID answer;
    std::uint16_t row;
};

const TableCase tableCases[] = {
    // clang-format off
    // A file that fits two rows goes to the earlier, narrower one.
    {"MacPowerPointWithItsDataFork",   R"(00 >65 "SLD3PPT3" >128 0B AD DE ED 00 00 00 03)",  "", 1566,  59_row},
    {"MacPowerPointWithAnotherFork",   R"(00 >65 "SLD3PPT3" >128 0B AD DE ED 00 00 00 04)",  "", 1567,  60_row},
    {"PdfWithTheExtensionAi",          R"("%PDF-1.4")",                                 "a.ai", 1611,  99_row},
    {"PdfWithAnotherExtension",        R"("%PDF-1.4")",                                "a.pdf", 1557, 101_row},
    {"TagWrdPcWithVersion200",         R"(01 >640 06 "WRD PC" 00 00 "2.00")",                "", 1013, 116_row},
    {"TagWrdPcWithAnotherVersion",     R"(01 >640 06 "WRD PC" 00 00 "2.01")",                "", 1012, 118_row},
    {"TagType2WithVersion200",         R"(01 >640 06 "TYPE 2" 00 00 "2.00")",                "", 1013, 117_row},
    {"TagGerbilDoc3",                  R"(01 >8 0C "GERBILDOC3")",                           "", 1058, 122_row},
    {"TagGerbilDoc",                   R"(01 >8 0C "GERBILDOC2")",                           "", 1017, 123_row},
    {"JapaneseRtf",                    R"("{\rtf1\jis")",                                    "", 1091, 133_row},
    {"OtherRtf",                       R"("{\rtf1\ansi")",                                   "", 1028, 134_row},
    {"RtfInCapitals",                  R"("{\RTF1")",                                        "", 1028, 134_row},
    {"JapaneseRtfInAnyCase",           R"("{\rTf1\JiS")",                                    "", 1091, 133_row},
    {"LongerMacWordHeader",            R"(FE 37 00 23 >20 00 00 01 00)",                     "", 1073, 138_row},
    {"ShorterMacWordHeader",           R"(FE 37 00 23 >20 00 00 03 00)",                     "", 1030, 140_row},
    {"VersionTextWithTheExtensionPwp", R"("[ver]" 0D 0A)",                             "a.pwp", 1061, 147_row},
    {"VersionText",                    R"("[ver]" 0D 0A)",                             "a.sam", 1057, 148_row},
    {"EncryptText",                    R"("[encrypt]" 0D 0A)",                         "a.pwp", 1057, 149_row},
    {"WpcByteAt12",                    R"(FF "WPC" 00*4 01 0A 00 00 01)",                    "", 1078,  71_row},
    {"WpcByteAt13",                    R"(FF "WPC" 00*4 01 0A 00 00 00 01)",                 "", 1078,  72_row},
    {"WpcByteAt12GoesBeforeProducts",  R"(FF "WPC" 00*4 01 2C 03 00 01 00)",                 "", 1078,  71_row},
    {"WpcProduct25GoesBeforeByte12",   R"(FF "WPC" 00*4 25 0A 01 00 01)",                    "", 1106,  70_row},
    {"WpcDocument",                    R"(FF "WPC" 00*4 01 0A 00 00 00 00 00 00)",           "", 1005,  73_row},
    {"WpcGraphicVersion2",             R"(FF "WPC" 00*4 01 16 02 00 00 00)",                 "", 1527, 174_row},
    {"WpcGraphic",                     R"(FF "WPC" 00*4 01 16 01 00 00 00)",                 "", 1507, 175_row},
    {"WpcAnyOther",                    R"(FF "WPC" 00*4 77 77 77 77 00 00)",                 "", 1095, 176_row},
    {"DebrWithTag123G",                R"(00 01 00 00 "DEBR" 00 00 04 00 01 00 00*12 "123G")", "", 1430, 216_row},
    {"DebrWithTagGrph",                R"(00 01 00 00 "DEBR" 00 00 04 00 01 00 00*12 "GRPH")", "", 1431, 217_row},
    {"DebrWithAnotherTag",             R"(00 01 00 00 "DEBR" 00 00 04 00 01 00 00*12 "YYYY")", "", 1526, 218_row},
    {"WorksZeroAt12",                  R"(00 00 02 00 04 04 05 54 02 00 00 00)",             "", 1407, 284_row},
    {"WorksLetterAt11",                R"(00 00 02 00 04 04 05 54 02 00 00 44)",             "", 1418, 285_row},
    {"WksWithF3",                      R"(00 00 02 00 04 04 F3 00 02 00 FF 00)",             "", 1408, 289_row},
    {"WksPlain",                       R"(00 00 02 00 04 04 05 54 02 00 00 43)",             "", 1401, 290_row},
    {"Excel4ZeroInFront",              R"(09 04 06 00 00 00 00 01)",                         "", 1440, 317_row},
    {"Excel4OtherVersionByte",         R"(09 04 06 00 00 01 00 01)",                         "", 1442, 322_row},
    {"CdabWithLetter",                 R"(81 CD AB 00 00 41)",                               "", 1074, 327_row},
    {"CdabWithout",                    R"(81 CD AB 00 00 47)",                               "", 1046, 328_row},
    {"MifOfAListedVersion",            R"("<MIFFile 5.00>")",                                "", 1131, 202_row},
    {"MifOfAnotherVersion",            R"("<MIFFile 7.00>")",                                "", 1168, 389_row},
    {"Ac1015",                         R"("AC1015")",                                        "", 1612,  96_row},
    {"AcOfOtherDigits",                R"("AC1019")",                                        "", 1585, 394_row},
    // Zero at 96 and at 116, and their neighbours.
    {"WriteZeroAt116",                 R"(31 BE 00 00 00 AB 00 >96 00 >116 00)",             "", 1000,  46_row},
    {"WriteFiveAt116",                 R"(31 BE 00 00 00 AB 00 >96 00 >116 05)",             "", 1001,  47_row},
    {"WriteEightAt116",                R"(31 BE 00 00 00 AB 00 >96 00 >116 08)",             "", 1076,  48_row},
    {"WriteByteAt96",                  R"(32 BE 00 00 00 AB 00 >96 01 >116 00)",             "", 1047,  53_row},
    // MacBinary: one of the two rows for Word tests no first byte.
    {"MacWordWithAFirstByte",          R"(01 >65 "WDBNMSWD" >128 FE 37 00 23 >148 00 00 01 00)", "", 1073, 139_row},
    {"MacWord4WithZeroFirst",          R"(00 >65 "WDBNMSWD" >128 FE 37 00 24 >148 00 00 01 00)", "", 1030, 141_row},
    // XML namespaces go before markup.
    {"DxlNamespace",                   R"("<?xml version='1.0'?><d xmlns='http://www.lotus.com/dxl'/>")", "", 2007, 110_row},
    // PICT opcodes: the place with no header first.
    {"PictAt10AndAt522",               R"(01 >10 00 11 02 >522 00 11 02)",                   "", 5004, 177_row},
    {"PictAt522",                      R"(01 >522 00 11 02)",                                "", 1506, 178_row},
    {"PictAt650",                      R"(01 >650 00 11 02)",                                "", 1506, 179_row},
    // The extension alone, with not a byte read.
    {"EmptyPgl",                       "",                                             "a.pgl", 1522, 208_row},
    {"EmptyTga",                       "",                                             "a.tga", 1512, 207_row},
    {"EmptyTgax",                      "",                                            "a.tgax", 1512, 207_row},
    // ZIP by its first entry and by the extension.
    {"OdtByItsFirstEntry",             R"("PK" 03 04 >30 "mimetypeapplication/vnd.oasis.opendocument.text")", "", 1309, 256_row},
    {"SxwByItsExtension",              R"("PK" 03 04)",                                "a.sxw", 1188, 257_row},
    {"SpannedZip",                     R"("PK" 07 08 "PK" 03 04)",                           "", 1802, 270_row},
    {"TemporarySpannedZip",            R"("PK00PK" 03 04)",                                  "", 1802, 271_row},
    // An executable, when it is no self-extractor.
    {"Executable",                     R"("MZ" >100)",                                       "", 1800, 275_row},
    {"TrailerOf7Bytes",                R"(30 02 FE FC FE 01 00)",                            "", 1063, 396_row},
    {"TrailerOf6BytesIsNone",          R"(02 FE FC FE 01 00)",                               "", 1999,   0},
    {"LastTrueRow",                    R"(FF FF 18 00*4 00)",                                "", 1565, 404_row},
    // clang-format on
};

class TableRow : public testing::TestWithParam<TableCase> {};

TEST_P(TableRow, Decides) {
    std::uint16_t row = 0;
    EXPECT_EQ(FIIdentifyBytes(FIBytes(GetParam().bytes), GetParam().fileName, 0, &row), GetParam().answer);
    EXPECT_EQ(row, GetParam().row);
}

INSTANTIATE_TEST_SUITE_P(Order, TableRow, testing::ValuesIn(tableCases), FICaseName);

TEST(TableRow, AllOffsetsOfTheFirst2048BytesCostOneRead) {
    const auto handle = FIMakeTestHandle(FIBytes("31 BE 00 00 00 AB 00 >96 00 >116 05"));
    FIVerdict verdict = {0, 0};
    ASSERT_EQ(FIIdHandleWithRow(FIFileOf(*handle), 0, verdict), 0);
    EXPECT_EQ(verdict.fiid, 1001);
    EXPECT_EQ(handle->reads, 1U);
}

TEST(TableRow, ClassRowsCostAPlainFileNothing) {
    // Row 46 is the first that reads.
    const auto handle = FIMakeTestHandle(FIBytes("31 BE 00 00 00 AB 00 >96 00 >116 00"));
    FIVerdict verdict = {0, 0};
    ASSERT_EQ(FIIdHandleWithRow(FIFileOf(*handle), 0, verdict), 0);
    EXPECT_EQ(verdict.row, 46_row);
    EXPECT_EQ(handle->reads, 1U);
}

TEST(TableRow, StorageOfTheNotebookClassIsToldByTheSecondRowOfItsClass) {
    auto handle = FIMakeTestHandle("bytes");
    handle->isStorage = true;
    handle->classId = FIBytes("00 B4 02 00 00 00 00 00 C0 00 00 00 00 00 00 46");
    FIVerdict verdict = {0, 0};
    ASSERT_EQ(FIIdHandleWithRow(FIFileOf(*handle), 0, verdict), 0);
    EXPECT_EQ(verdict.fiid, 1433);
    EXPECT_EQ(verdict.row, 25_row);
    handle->streams["NativeContent_MAIN"] = FIBytes("01 00 0E 00 51 50 57 39");
    ASSERT_EQ(FIIdHandleWithRow(FIFileOf(*handle), 0, verdict), 0);
    EXPECT_EQ(verdict.fiid, 1445);
    EXPECT_EQ(verdict.row, 21_row);
}

TEST(TableRow, StorageWhoseClassIdentifierFailsIsAPlainFile) {
    auto handle = FIMakeTestHandle("bytes");
    handle->isStorage = true;
    handle->hasClassId = false;
    handle->classId = FIBytes("10 8D 81 64 9B 4F CF 11 86 EA 00 AA 00 B9 29 E8");
    FIVerdict verdict = {0, 0};
    ASSERT_EQ(FIIdHandleWithRow(FIFileOf(*handle), 0, verdict), 0);
    EXPECT_EQ(verdict.fiid, formatNotKnown);
}

}  // namespace
