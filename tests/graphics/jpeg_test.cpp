// JPEG.
#include "graphics/jpeg.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include "support/decided_case.h"
#include "support/probe_case.h"

namespace {

constexpr std::uint32_t behindJpegMagic = 3;  // FF D8 FF, which the signature row has compared
constexpr FIID failedSeek = 0xFFFF;

const ProbeCase jpegCases[] = {
    // clang-format off
    {"ScanBehindTheFirstSegment",             R"(FF D8 FF E0 W:16 00*14 FF DA)",                          1535},
    {"ProgressiveFrameBehindTheFirstSegment", R"(FF D8 FF E0 W:16 00*14 FF C2)",                          1599},
    {"ArithmeticProgressiveFrame",            R"(FF D8 FF E0 W:16 00*14 FF CA)",                          1599},
    {"BaselineFrameThenScan",                 R"(FF D8 FF DB W:4 00*2 FF C0 W:4 00*2 FF DA)",             1535},
    {"ScanEndsTheWalk",                       R"(FF D8 FF DB W:4 00*2 FF DA W:4 00*2 FF C2)",             1535},
    {"ProgressiveFrameAfterManySegments",     R"(FF D8 FF E0 W:4 00*2 (FF E1 W:6 00*4)*50 FF C2)",        1599},
    {"FrameC1IsNotProgressive",               R"(FF D8 FF E0 W:2 FF C1 W:2 FF DA)",                       1535},
    {"FrameC6IsNotProgressive",               R"(FF D8 FF E0 W:2 FF C6 W:2 FF DA)",                       1535},
    {"FrameC9IsNotProgressive",               R"(FF D8 FF E0 W:2 FF C9 W:2 FF DA)",                       1535},
    {"MarkerFFIsAMarker",                     R"(FF D8 FF E0 W:2 FF FF W:2 FF C2)",                       1599},
    {"Marker00IsAMarker",                     R"(FF D8 FF E0 W:2 FF 00 W:2 FF C2)",                       1599},
    {"BrokenChain",                           R"(FF D8 FF E0 W:16 00*14 00 C2)",                          1535},
    {"ChainLeadsToTheEnd",                    R"(FF D8 FF E0 W:16 00*14)",                                1535},
    {"ChainLeadsBehindTheEnd",                R"(FF D8 FF E0 W:16 00*3)",                                 1535},
    {"ChainEndsBehindFF",                     R"(FF D8 FF E0 W:16 00*14 FF)",                             1535},
    {"FileEndsBehindTheMarker",               R"(FF D8 FF E0)",                                           1535},
    {"FileEndsInTheLength",                   R"(FF D8 FF E0 00)",                                        1535},
    {"FileEndsInALaterLength",                R"(FF D8 FF E0 W:2 FF E1 00)",                              1535},
    {"Length2IsAnEmptySegment",               R"(FF D8 FF E0 W:2 FF C2)",                                 1599},
    {"Length1LeadsIntoTheLength",             R"(FF D8 FF E0 W:1 FF C2)",                                 1535},
    {"Length0LeadsToTheLength",               R"(FF D8 FF E0 W:0 FF C2)",                                 1535},
    {"Length255LowByteIsNoMarker",            R"(FF D8 FF E0 W:255 00*253 FF C2)",                        1599},
    {"LengthIsMostSignificantByteFirst",      R"(FF D8 FF E0 01 02 00*256 FF C2)",                        1599},
    {"LengthIsUnsigned",                      R"(FF D8 FF E0 W:0x8000 00*32766 FF C2)",                   1599},
    {"LengthOf65535",                         R"(FF D8 FF E0 W:0xFFFF 00*65533 FF C2)",                   1599},
    {"SegmentsOf65535",                       R"(FF D8 FF E0 W:0xFFFF 00*65533 FF E1 W:0xFFFF 00*65533 FF CA)", 1599},
    {"NothingBehindTheMagic",                 R"(FF D8 FF)",                                                 0},
    {"FirstMarkerDA",                         R"(FF D8 FF DA W:2 FF C2)",                                    0},
    {"FirstMarkerC0",                         R"(FF D8 FF C0 W:2 FF C2)",                                    0},
    {"FirstMarkerC2",                         R"(FF D8 FF C2 W:2 FF C2)",                                    0},
    {"FirstMarkerFF",                         R"(FF D8 FF FF W:2 FF C2)",                                    0},
    // clang-format on
};

class ProbeJpeg : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeJpeg, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeJpeg, FIBytes(GetParam().bytes), behindJpegMagic), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(Jpeg, ProbeJpeg, testing::ValuesIn(jpegCases), FICaseName);

TEST(Jpeg, TakesDBToFEAndC4C8CCAsFirstMarker) {
    for (std::uint32_t marker = 0; marker < 256; ++marker) {
        const bool accepted = (marker >= 0xDB && marker <= 0xFE) || marker == 0xC4 || marker == 0xC8 || marker == 0xCC;
        std::string bytes = FIBytes("FF D8 FF 00 W:2 FF C2");
        bytes[behindJpegMagic] = static_cast<char>(marker);
        EXPECT_EQ(FIAnswerOf(FIProbeJpeg, bytes, behindJpegMagic), accepted ? 1599U : 0U) << marker;
    }
}

TEST(Jpeg, EndsAtThreeMarkersOnly) {
    constexpr std::size_t secondMarker = 7;
    for (std::uint32_t marker = 0; marker < 256; ++marker) {
        const bool progressive = marker == 0xC2 || marker == 0xCA;
        std::string thenScan = FIBytes("FF D8 FF E0 W:2 FF 00 W:2 FF DA");
        thenScan[secondMarker] = static_cast<char>(marker);
        EXPECT_EQ(FIAnswerOf(FIProbeJpeg, thenScan, behindJpegMagic), progressive ? 1599U : 1535U) << marker;
        std::string thenProgressive = FIBytes("FF D8 FF E0 W:2 FF 00 W:2 FF C2");
        thenProgressive[secondMarker] = static_cast<char>(marker);
        EXPECT_EQ(FIAnswerOf(FIProbeJpeg, thenProgressive, behindJpegMagic), marker == 0xDA ? 1535U : 1599U) << marker;
    }
}

// Quirk: a failing seek is the answer 0xFFFF, which is no format and not 0 either.
TEST(Jpeg, FailingSeekIsTheAnswer0xFFFF) {
    const char* const behindTheEnd[] = {
        "FF D8 FF E0 W:16 00*3",  // the segment leads behind the end
        "FF D8 FF E0",            // no length: two ends of the file make a length of 65,279
        "FF D8 FF E0 00",         // half a length
        "FF D8 FF E0 W:2 FF E1 W:900",
    };
    for (const char* const notation : behindTheEnd) {
        const auto handle = FIMakeTestHandle(FIBytes(notation));
        handle->refuseSeekBehindEnd = true;
        EXPECT_EQ(FIAnswerOver(FIProbeJpeg, *handle, behindJpegMagic), failedSeek) << notation;
    }
}

TEST(Jpeg, SeekToTheEndIsNoFailingSeek) {
    const auto handle = FIMakeTestHandle(FIBytes("FF D8 FF E0 W:16 00*14"));
    handle->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeJpeg, *handle, behindJpegMagic), 1535U);
}

TEST(Jpeg, FailingSeekOutOfTheBufferIsTheAnswer0xFFFF) {
    const auto handle = FIMakeTestHandle(FIBytes("FF D8 FF E0 W:4000 00*3998 FF C2"));
    handle->failSeeksFrom = 1;  // the first one brings the reader to offset 3
    EXPECT_EQ(FIAnswerOver(FIProbeJpeg, *handle, behindJpegMagic), failedSeek);
}

TEST(Jpeg, FailingSeekIsTheAnswerOfTheWholeRequest) {
    const auto handle = FIMakeTestHandle(FIBytes("FF D8 FF E0 W:16 00*3"));
    handle->refuseSeekBehindEnd = true;
    FIID answer = 0;
    EXPECT_EQ(FIIdHandle(FIFileOf(*handle), FIFlagExtendedText, &answer), 0);
    EXPECT_EQ(answer, failedSeek);
}

// ---- Whole requests ------------------------------------------------------------------------------------------------

const DecidedCase fileCases[] = {
    // clang-format off
    {"Jpeg",                       R"(FF D8 FF E0 W:16 "JFIF" 00 01 01 00 00 01 00 01 00 00 FF DB W:4 00 00 FF DA)", 1535, 166_row},
    {"ProgressiveJpeg",            R"(FF D8 FF E0 W:16 "JFIF" 00 01 01 00 00 01 00 01 00 00 FF DB W:4 00 00 FF C2)", 1599, 166_row},
    {"JpegCutBehindItsMarker",     R"(FF D8 FF E1)",                                                                1535, 166_row},
    // clang-format on
};

class JpegRequest : public testing::TestWithParam<DecidedCase> {};

TEST_P(JpegRequest, Answers) { FIExpectDecision(GetParam(), FIFlagExtendedText); }

INSTANTIATE_TEST_SUITE_P(Files, JpegRequest, testing::ValuesIn(fileCases), FICaseName);

TEST(JpegRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("FF D8 FF DA", FIBytes("FF D8 FF DA 00 08 01 01 00 00 3F 00"), 166_row);
    FIExpectRowLetsPass("FF D8 FF C0", FIBytes("FF D8 FF C0 00 08 01 01 00 00 3F 00"), 166_row);
}

}  // namespace
