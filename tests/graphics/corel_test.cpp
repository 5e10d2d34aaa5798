// CorelDRAW in a RIFF form.
#include "graphics/corel.h"

#include <cstdint>
#include <string>

#include "support/decided_case.h"
#include "support/failing_seeks.h"
#include "support/probe_case.h"

namespace {

const ProbeCase corelRiffCases[] = {
    // clang-format off
    {"EmptyFile",                 R"()",                       0},
    {"Blank",                     R"("RIFF" d:0 "CDR ")",   1521},
    {"Version3",                  R"("RIFF" d:0 "CDR3")",      0},
    {"Version4",                  R"("RIFF" d:0 "CDR4")",   1537},
    {"Version5",                  R"("RIFF" d:0 "CDR5")",   1541},
    {"Version6",                  R"("RIFF" d:0 "CDR6")",   1582},
    {"Version7",                  R"("RIFF" d:0 "CDR7")",   1583},
    {"Version8",                  R"("RIFF" d:0 "CDR8")",   1596},
    {"Version9",                  R"("RIFF" d:0 "CDR9")",   1598},
    {"VersionA",                  R"("RIFF" d:0 "CDRA")",   1629},
    {"VersionB",                  R"("RIFF" d:0 "CDRB")",   1630},
    {"VersionC",                  R"("RIFF" d:0 "CDRC")",      0},
    {"SizeIsNotLookedAt",         R"("RIFF" FF*4 "CDR5vrsn")", 1541},
    {"FileEndsInFrontOfVersion",  R"("RIFF" d:0 "CDR")",       0},
    {"FileEndsInTheForm",         R"("RIFF" d:0 "CD")",        0},
    {"FileEndsInFrontOfTheForm",  R"("RIFF" d:0)",             0},
    {"FileEndsInTheMagic",        R"("RIF")",                  0},
    {"MagicRIFX",                 R"("RIFX" d:0 "CDR5")",      0},
    {"MagicInSmallLetters",       R"("riff" d:0 "CDR5")",      0},
    {"FormXDR",                   R"("RIFF" d:0 "XDR5")",      0},
    {"FormCXR",                   R"("RIFF" d:0 "CXR5")",      0},
    {"FormCDX",                   R"("RIFF" d:0 "CDX5")",      0},
    // clang-format on
};

class ProbeCorelRiff : public testing::TestWithParam<ProbeCase> {};

// From the start, and from behind "CDR", where the signature row leaves the reader.
TEST_P(ProbeCorelRiff, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeCorelRiff, FIBytes(GetParam().bytes)), GetParam().answer);
    EXPECT_EQ(FIAnswerOf(FIProbeCorelRiff, FIBytes(GetParam().bytes), 11), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(CorelRiff, ProbeCorelRiff, testing::ValuesIn(corelRiffCases), FICaseName);

struct CorelVersion {
    std::uint32_t version;
    FIID answer;
};

constexpr CorelVersion corelVersions[] = {
    {32, 1521}, {52, 1537}, {53, 1541}, {54, 1582}, {55, 1583}, {56, 1596}, {57, 1598}, {65, 1629}, {66, 1630},
};

TEST(CorelRiff, KnowsNineVersionBytes) {
    for (std::uint32_t version = 0; version < 256; ++version) {
        FIID expected = 0;
        for (const CorelVersion& known : corelVersions) {
            if (known.version == version) expected = known.answer;
        }
        const std::string bytes = FIBytes(R"("RIFF" d:0 "CDR")") + static_cast<char>(version);
        EXPECT_EQ(FIAnswerOf(FIProbeCorelRiff, bytes), expected) << version;
    }
}

TEST(CorelRiff, OnlyTheSecondRewindCounts) {
    const char* const drawing = R"("RIFF" d:0 "CDR5")";
    EXPECT_EQ(FIAnswerOver(FIProbeCorelRiff, *FIMakeHandleFailingOnce(FIBytes(drawing), 0)), 1541U);
    EXPECT_EQ(FIAnswerWhenSeeksFailFrom(FIProbeCorelRiff, FIBytes(drawing), 0), 0U);
    EXPECT_EQ(FIAnswerWhenSeeksFailFrom(FIProbeCorelRiff, FIBytes(drawing), 1), 0U);
    EXPECT_EQ(FIAnswerWhenSeeksFailFrom(FIProbeCorelRiff, FIBytes(drawing), 2), 1541U) << "offset 8 is in the buffer";
    EXPECT_EQ(FIAnswerWhenSeeksFailFrom(FIProbeCorelRiff, FIBytes(drawing), 2, 4), 0U)
        << "offset 8 is not in the buffer";
}

// ---- Whole requests ------------------------------------------------------------------------------------------------

const DecidedCase fileCases[] = {
    // clang-format off
    {"CorelDraw9",                 R"("RIFF" d:100 "CDR9vrsn")",                                                    1598, 222_row},
    {"CorelDraw11",                R"("RIFF" d:100 "CDRBvrsn")",                                                    1630, 222_row},
    {"CorelDrawBlank",             R"("RIFF" d:100 "CDR vrsn")",                                                    1521, 222_row},
    // clang-format on
};

class CorelRequest : public testing::TestWithParam<DecidedCase> {};

TEST_P(CorelRequest, Answers) { FIExpectDecision(GetParam(), FIFlagExtendedText); }

INSTANTIATE_TEST_SUITE_P(Files, CorelRequest, testing::ValuesIn(fileCases), FICaseName);

TEST(CorelRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("CorelDRAW 3", FIBytes(R"("RIFF" d:100 "CDR3vrsn")"), 222_row);
}

}  // namespace
