// The sections of a version text.
#include "wordproc/version_sections.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "support/failing_seeks.h"
#include "support/ordinary_files.h"
#include "support/probe_case.h"
#include "support/whole_file.h"

namespace {

FIID SectionsAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeVersionSections, bytes); }

class ProbeVersionSections : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeVersionSections, Answers) { EXPECT_EQ(SectionsAnswer(FIBytes(GetParam().bytes)), GetParam().answer); }

const ProbeCase sectionCases[] = {
    // clang-format off
    {"EmptyFile",             "",                                                       0},
    {"Version4",              R"("[ver]" 0D 0A "4" 0D 0A "[sty]" 0D 0A)",            1057},
    {"Version3",              R"("[ver]" 0D 0A "3" 0D 0A "[sty]" 0D 0A)",            1056},
    {"Version5",              R"("[ver]" 0D 0A "5" 0D 0A "[sty]" 0D 0A)",            1056},
    {"Version0",              R"("[ver]" 0D 0A "0" 0D 0A "[sty]" 0D 0A)",            1056},
    {"Version9",              R"("[ver]" 0D 0A "9" 0D 0A "[sty]" 0D 0A)",            1056},
    {"LastDigitIs2",          R"("[ver]" 0D 0A "1.4.2" 0D 0A "[sty]" 0D 0A)",        1056},
    {"LastDigitIs4",          R"("[ver]" 0D 0A "1.2.4" 0D 0A "[sty]" 0D 0A)",        1057},
    {"LastDigitIs0",          R"("[ver]" 0D 0A "40" 0D 0A "[sty]" 0D 0A)",           1056},
    {"LastDigitIs9",          R"("[ver]" 0D 0A "49" 0D 0A "[sty]" 0D 0A)",           1056},
    {"FirstDigitIs0",         R"("[ver]" 0D 0A "04" 0D 0A "[sty]" 0D 0A)",           1057},
    {"TextBehindTheDigit",    R"("[ver]" 0D 0A 09 "4 alpha/:" 0D 0A "[sty]" 0D 0A)", 1057},
    {"OtherBytesBehind",      R"("[ver]" 0D 0A "4" 00 0A FF B4 1A 0D 0A "[sty]" 0D 0A)", 1057},
    {"NoDigit",               R"("[ver]" 0D 0A "four" 0D 0A "[sty]" 0D 0A)",         1056},
    {"EmptyLine",             R"("[ver]" 0D 0A 0D 0A "[sty]" 0D 0A)",                1056},
    {"TopBitDigit",           R"("[ver]" 0D 0A B4 0D 0A "[sty]" 0D 0A)",             1056},
    {"LongLine",              R"("[ver]" 0D 0A "x"*9000 "4" 0D 0A "[sty]" 0D 0A)",   1057},
    {"TextBehindIt",          R"("[ver]" 0D 0A "4" 0D 0A "[sty]" 0D 0A "text")",     1057},
    {"FirstLineEndsInLF",     R"("[ver]" 0A "4" 0D 0A "[sty]" 0D 0A)",                  0},
    {"FirstLineEndsInCR",     R"("[ver]" 0D "4" 0D 0A "[sty]" 0D 0A)",                  0},
    {"VersionEndsInCR",       R"("[ver]" 0D 0A "4" 0D "[sty]" 0D 0A)",                  0},
    {"VersionEndsInCRCR",     R"("[ver]" 0D 0A "4" 0D 0D 0A "[sty]" 0D 0A)",            0},
    {"VersionEndsInLF",       R"("[ver]" 0D 0A "4" 0A "[sty]" 0D 0A)",                  0},
    {"FirstHeadInCapitals",   R"("[VER]" 0D 0A "4" 0D 0A "[sty]" 0D 0A)",               0},
    {"SecondHeadInCapitals",  R"("[ver]" 0D 0A "4" 0D 0A "[STY]" 0D 0A)",               0},
    {"SecondHeadInMixedCase", R"("[ver]" 0D 0A "4" 0D 0A "[Sty]" 0D 0A)",               0},
    {"OtherSecondHead",       R"("[ver]" 0D 0A "4" 0D 0A "[tag]" 0D 0A)",               0},
    {"SecondHeadLater",       R"("[ver]" 0D 0A "4" 0D 0A 0D 0A "[sty]" 0D 0A)",         0},
    {"SecondHeadEndsInLF",    R"("[ver]" 0D 0A "4" 0D 0A "[sty]" 0A)",                  0},
    {"LineInFront",           R"(0D 0A "[ver]" 0D 0A "4" 0D 0A "[sty]" 0D 0A)",         0},
    {"BlankInFront",          R"(" [ver]" 0D 0A "4" 0D 0A "[sty]" 0D 0A)",              0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Sections, ProbeVersionSections, testing::ValuesIn(sectionCases), FICaseName);

const std::string versionFile = "[ver]\r\n1.4\r\n[sty]\r\n";

TEST(VersionSections, HaveEveryByteOfTheirHeads) {
    for (std::size_t index = 0; index < versionFile.size(); ++index) {
        if (index >= 7 && index < 10) continue;  // the version
        std::string file = versionFile;
        file[index] = static_cast<char>(file[index] ^ 0x20);
        EXPECT_EQ(SectionsAnswer(file), 0) << index;
    }
}

TEST(VersionSections, AreNothingWhenTheFileEndsInside) {
    for (std::size_t size = 0; size < versionFile.size(); ++size) {
        EXPECT_EQ(SectionsAnswer(versionFile.substr(0, size)), 0) << size;
    }
}

TEST(VersionSections, TestTheirSeek) {
    FIExpectEverySeekIsTested(FIProbeVersionSections, versionFile, 1057);
    EXPECT_EQ(FIAnswerOf(FIProbeVersionSections, versionFile, 5), 1057) << "wherever the reader stands";
}

// The rows decide by the first head alone.
TEST(VersionSections, AreNotCalledByTheTable) {
    FIExpectWholeFile(versionFile, 1057, 148_row);
    FIExpectWholeFile("[ver]\r\n1.2\r\n[sty]\r\n", 1057, 148_row);
    FIExpectWholeFile("[ver]\r\n", 1057, 148_row);
    FIExpectWholeFile("[ver]\n4\r\n[sty]\r\n", 1999, 148_row);
}

TEST(VersionSections, AreInNoOrdinaryFile) {
    for (const std::string& file : FIOrdinaryFiles()) {
        EXPECT_EQ(SectionsAnswer(file), 0);
    }
}

}  // namespace
