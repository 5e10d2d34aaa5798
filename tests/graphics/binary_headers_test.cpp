// Binary graphics headers: EPS previews, icons and cursors, JPEG, X Window Dump, CorelDRAW RIFF and class records.
#include "graphics/binary_headers.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include "file_case.h"
#include "first_seek.h"
#include "support/probe_case.h"

namespace {

// The answer over a handle whose seeks fail from the given one on, and which delivers few bytes a read if told so.
FIID AnswerWhenSeeksFailFrom(FIProbe probe, const char* notation, std::uint32_t failing,
                             std::uint32_t bytesPerRead = testNever) {
    const auto handle = FIMakeTestHandle(FIBytes(notation));
    handle->failSeeksFrom = failing;
    handle->bytesPerRead = bytesPerRead;
    return FIAnswerOver(probe, *handle);
}

FIID AnswerWhenTheFirstSeekFails(FIProbe probe, const char* notation) {
    const auto handle = FIMakeTestHandle(FIBytes(notation));
    FIFailFirstSeek(*handle);
    return FIAnswerOver(probe, *handle);
}

// ---- Encapsulated PostScript with a preview
// ----------------------------------------------------------------------------

const ProbeCase epsPreviewCases[] = {
    // clang-format off
    {"EmptyFile",                        R"()",                                     0},
    {"TiffPreview",                      R"(C5 D0 D3 C6 00*16 d:30 d:0 FF FF)",  1504},
    {"LowestByteNotZero",                R"(C5 D0 D3 C6 00*16 01 00 00 00)",     1504},
    {"SecondByteNotZero",                R"(C5 D0 D3 C6 00*16 00 01 00 00)",     1504},
    {"ThirdByteNotZero",                 R"(C5 D0 D3 C6 00*16 00 00 01 00)",     1504},
    {"HighestByteNotZero",               R"(C5 D0 D3 C6 00*16 00 00 00 80)",     1504},
    {"NoPreview",                        R"(C5 D0 D3 C6 FF*16 00 00 00 00)",        0},
    {"NoPreviewAndBytesBehind",          R"(C5 D0 D3 C6 FF*16 00 00 00 00 FF)",     0},
    {"FirstMagicByteDiffers",            R"(C4 D0 D3 C6 00*16 d:30)",               0},
    {"SecondMagicByteDiffers",           R"(C5 D1 D3 C6 00*16 d:30)",               0},
    {"ThirdMagicByteDiffers",            R"(C5 D0 D2 C6 00*16 d:30)",               0},
    {"FourthMagicByteDiffers",           R"(C5 D0 D3 C7 00*16 d:30)",               0},
    {"ThreeBytes",                       R"(C5 D0 D3)",                             0},
    {"FileEndsBehindTheMagic",           R"(C5 D0 D3 C6)",                       1504},
    {"FileEndsInFrontOfTheField",        R"(C5 D0 D3 C6 00*15)",                 1504},
    {"FileOf20Bytes",                    R"(C5 D0 D3 C6 00*16)",                 1504},
    {"FileEndsInTheField",               R"(C5 D0 D3 C6 00*16 00 00 00)",        1504},
    {"FileEndsBehindTheField",           R"(C5 D0 D3 C6 00*16 00 00 00 00)",        0},
    // clang-format on
};

class ProbeEpsPreview : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeEpsPreview, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeEpsPreview, FIBytes(GetParam().bytes)), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(EpsPreview, ProbeEpsPreview, testing::ValuesIn(epsPreviewCases), FICaseName);

TEST(EpsPreview, FailingRewindIsNoAnswer) {
    EXPECT_EQ(AnswerWhenSeeksFailFrom(FIProbeEpsPreview, "C5 D0 D3 C6 00*16 d:30", 0), 0U);
}

// ---- Icons and cursors
// -------------------------------------------------------------------------------------------------

const ProbeCase iconCases[] = {
    // clang-format off
    {"EmptyFile",                     R"()",                                               0},
    {"Icon",                          R"(00 00 01 00 01 00 00*12 d:22 d:40 00*36)",     1515},
    {"Cursor",                        R"(00 00 02 00 01 00 00*12 d:22 d:40 00*36)",     1516},
    {"Type0",                         R"(00 00 00 00 01 00 00*12 d:22 d:40)",              0},
    {"Type3",                         R"(00 00 03 00 01 00 00*12 d:22 d:40)",              0},
    {"Byte0NotZero",                  R"(01 00 01 00 01 00 00*12 d:22 d:40)",              0},
    {"Byte1NotZero",                  R"(00 01 01 00 01 00 00*12 d:22 d:40)",              0},
    {"Byte3NotZero",                  R"(00 00 01 01 01 00 00*12 d:22 d:40)",              0},
    {"CountOf0IsNotLookedAt",         R"(00 00 01 00 00 00 00*12 d:22 d:40)",           1515},
    {"CountOf65535IsNotLookedAt",     R"(00 00 01 00 FF FF FF*12 d:22 d:40)",           1515},
    {"Size39",                        R"(00 00 01 00 01 00 00*12 d:22 d:39)",              0},
    {"Size41",                        R"(00 00 01 00 01 00 00*12 d:22 d:41)",              0},
    {"SizeWithSecondByte",            R"(00 00 01 00 01 00 00*12 d:22 28 01 00 00)",       0},
    {"SizeWithThirdByte",             R"(00 00 01 00 01 00 00*12 d:22 28 00 01 00)",       0},
    {"SizeWithFourthByte",            R"(00 00 01 00 01 00 00*12 d:22 28 00 00 01)",       0},
    {"SizeMostSignificantByteFirst",  R"(00 00 01 00 01 00 00*12 d:22 D:40)",              0},
    {"ImageFarAway",                  R"(00 00 01 00 01 00 00*12 d:70000 >70000 d:40)", 1515},
    {"ImageInTheHeader",              R"(00 00 01 00 28 00 00 00 00*10 d:4)",           1515},
    {"ImageIsAPng",                   R"(00 00 01 00 01 00 00*12 d:22 89 "PNG" 0D 0A 1A 0A)", 0},
    {"ImageBehindTheEnd",             R"(00 00 01 00 01 00 00*12 d:1000 d:40)",            0},
    {"ImageAt2GiB",                   R"(00 00 01 00 01 00 00*12 d:0x80000000 d:40)",      0},
    {"FileEndsInTheMagic",            R"(00 00 01)",                                       0},
    {"FileEndsBehindTheMagic",        R"(00 00 01 00)",                                    0},
    {"FileEndsInFrontOfTheOffset",    R"(00 00 01 00 01 00 00*12)",                        0},
    {"FileEndsInTheOffset",           R"(00 00 01 00 01 00 00*12 16 00 00)",               0},
    {"FileEndsInFrontOfTheSize",      R"(00 00 01 00 01 00 00*12 d:22)",                   0},
    {"FileEndsBehindSizeByte1",       R"(00 00 01 00 01 00 00*12 d:22 28)",                0},
    {"FileEndsBehindSizeByte2",       R"(00 00 01 00 01 00 00*12 d:22 28 00)",             0},
    {"FileEndsBehindSizeByte3",       R"(00 00 01 00 01 00 00*12 d:22 28 00 00)",          0},
    {"FileEndsBehindTheSize",         R"(00 00 01 00 01 00 00*12 d:22 28 00 00 00)",    1515},
    // clang-format on
};

class ProbeIconFile : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeIconFile, Answers) { EXPECT_EQ(FIAnswerOf(FIProbeIconFile, FIBytes(GetParam().bytes)), GetParam().answer); }

INSTANTIATE_TEST_SUITE_P(Icons, ProbeIconFile, testing::ValuesIn(iconCases), FICaseName);

TEST(IconFile, EachFailingSeekIsNoAnswer) {
    // Four bytes a read, so that each of the three seeks reaches the handle.
    const char* const icon = "00 00 01 00 01 00 00*12 d:22 d:40";
    for (std::uint32_t failing = 0; failing < 3; ++failing) {
        EXPECT_EQ(AnswerWhenSeeksFailFrom(FIProbeIconFile, icon, failing, 4), 0U) << failing;
    }
    EXPECT_EQ(AnswerWhenSeeksFailFrom(FIProbeIconFile, icon, 3, 4), 1515U);
}

// ---- JPEG
// --------------------------------------------------------------------------------------------------------------

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

// ---- X Window Dump
// -----------------------------------------------------------------------------------------------------

const ProbeCase xwdCases[] = {
    // clang-format off
    {"EmptyFile",                    R"()",                                            0},
    {"ZPixmap",                      R"(>7 07 >11 02 >15 08 >35 20 >55 03)",        1575},
    {"XyBitmap",                     R"(>7 07 >11 00 >15 08 >35 20 >55 03)",        1575},
    {"XyPixmap",                     R"(>7 07 >11 01 >15 08 >35 20 >55 03)",        1575},
    {"Format3",                      R"(>7 07 >11 03 >15 08 >35 20 >55 03)",           0},
    {"Format80IsNotBelow0",          R"(>7 07 >11 80 >15 08 >35 20 >55 03)",           0},
    {"FormatFFIsNotTheEndOfTheFile", R"(>7 07 >11 FF >15 08 >35 20 >55 03)",           0},
    {"Version6",                     R"(>7 06 >11 02 >15 08 >35 20 >55 03)",           0},
    {"Version8",                     R"(>7 08 >11 02 >15 08 >35 20 >55 03)",           0},
    {"Depth24",                      R"(>7 07 >11 02 >15 18 >35 20 >55 03)",        1575},
    {"Depth1",                       R"(>7 07 >11 02 >15 01 >35 20 >55 03)",           0},
    {"Depth7",                       R"(>7 07 >11 02 >15 07 >35 20 >55 03)",           0},
    {"Depth9",                       R"(>7 07 >11 02 >15 09 >35 20 >55 03)",           0},
    {"Depth16",                      R"(>7 07 >11 02 >15 10 >35 20 >55 03)",           0},
    {"Depth23",                      R"(>7 07 >11 02 >15 17 >35 20 >55 03)",           0},
    {"Depth25",                      R"(>7 07 >11 02 >15 19 >35 20 >55 03)",           0},
    {"Depth32",                      R"(>7 07 >11 02 >15 20 >35 20 >55 03)",           0},
    {"Unit8",                        R"(>7 07 >11 02 >15 08 >35 08 >55 03)",        1575},
    {"Unit16",                       R"(>7 07 >11 02 >15 08 >35 10 >55 03)",        1575},
    {"Unit7",                        R"(>7 07 >11 02 >15 08 >35 07 >55 03)",           0},
    {"Unit9",                        R"(>7 07 >11 02 >15 08 >35 09 >55 03)",           0},
    {"Unit24",                       R"(>7 07 >11 02 >15 08 >35 18 >55 03)",           0},
    {"Unit64",                       R"(>7 07 >11 02 >15 08 >35 40 >55 03)",           0},
    {"Visual0",                      R"(>7 07 >11 02 >15 08 >35 20 >55 00)",        1575},
    {"Visual1",                      R"(>7 07 >11 02 >15 08 >35 20 >55 01)",           0},
    {"Visual2",                      R"(>7 07 >11 02 >15 08 >35 20 >55 02)",           0},
    {"Visual4",                      R"(>7 07 >11 02 >15 08 >35 20 >55 04)",        1575},
    {"Visual5",                      R"(>7 07 >11 02 >15 08 >35 20 >55 05)",           0},
    {"OtherBytesAreNotLookedAt",     R"(FF*7 07 FF*3 02 FF*3 18 FF*19 10 FF*19 04)", 1575},
    {"FileEndsInFrontOfTheVersion",  R"(>7)",                                          0},
    {"FileEndsBehindTheVersion",     R"(>7 07)",                                       0},
    {"FileEndsBehindTheFormat",      R"(>7 07 >11 02)",                                0},
    {"FileEndsBehindTheDepth",       R"(>7 07 >11 02 >15 08)",                         0},
    {"FileEndsBehindTheUnit",        R"(>7 07 >11 02 >15 08 >35 20)",                  0},
    {"FileEndsInFrontOfTheVisual",   R"(>7 07 >11 02 >15 08 >35 20 >55)",              0},
    // clang-format on
};

class ProbeXwd : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeXwd, Answers) { EXPECT_EQ(FIAnswerOf(FIProbeXwd, FIBytes(GetParam().bytes)), GetParam().answer); }

INSTANTIATE_TEST_SUITE_P(Xwd, ProbeXwd, testing::ValuesIn(xwdCases), FICaseName);

TEST(Xwd, EachFailingSeekIsNoAnswer) {
    // One byte a read, so that each of the five seeks reaches the handle.
    const char* const dump = ">7 07 >11 02 >15 08 >35 20 >55 03";
    for (std::uint32_t failing = 0; failing < 5; ++failing) {
        EXPECT_EQ(AnswerWhenSeeksFailFrom(FIProbeXwd, dump, failing, 1), 0U) << failing;
    }
    EXPECT_EQ(AnswerWhenSeeksFailFrom(FIProbeXwd, dump, 5, 1), 1575U);
}

// ---- CorelDRAW
// ---------------------------------------------------------------------------------------------------------

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
    EXPECT_EQ(AnswerWhenTheFirstSeekFails(FIProbeCorelRiff, drawing), 1541U);
    EXPECT_EQ(AnswerWhenSeeksFailFrom(FIProbeCorelRiff, drawing, 0), 0U);
    EXPECT_EQ(AnswerWhenSeeksFailFrom(FIProbeCorelRiff, drawing, 1), 0U);
    EXPECT_EQ(AnswerWhenSeeksFailFrom(FIProbeCorelRiff, drawing, 2), 1541U) << "offset 8 is in the buffer";
    EXPECT_EQ(AnswerWhenSeeksFailFrom(FIProbeCorelRiff, drawing, 2, 4), 0U) << "offset 8 is not in the buffer";
}

// ---- Class records
// -----------------------------------------------------------------------------------------------------

const ProbeCase classRecordCases[] = {
    // clang-format off
    {"EmptyFile",                            R"()",                                                             0},
    {"Classes8And9And10",                    R"(w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 w:0)",                    1601},
    {"Classes8And10And9",                    R"(w:0x0800 w:0 w:0x0A00 w:0 w:0x0900 w:0)",                    1601},
    {"Classes9And8And10",                    R"(w:0x0900 w:0 w:0x0800 w:0 w:0x0A00 w:0)",                    1601},
    {"Classes9And10And8",                    R"(w:0x0900 w:0 w:0x0A00 w:0 w:0x0800 w:0)",                    1601},
    {"Classes10And8And9",                    R"(w:0x0A00 w:0 w:0x0800 w:0 w:0x0900 w:0)",                    1601},
    {"Classes10And9And8",                    R"(w:0x0A00 w:0 w:0x0900 w:0 w:0x0800 w:0)",                    1601},
    {"TopBitAndLowByteAreNotLookedAt",       R"(w:0x8A00 w:0 w:0x0901 w:0 w:0x8800 w:0)",                    1601},
    {"AllLowBytes",                          R"(w:0x88FF w:0 w:0x897F w:0 w:0x8A80 w:0)",                    1601},
    {"Class8Twice",                          R"(w:0x0800 w:0 w:0x0800 w:0 w:0x0900 w:0)",                       0},
    {"Class9Twice",                          R"(w:0x0900 w:0 w:0x0A00 w:0 w:0x0900 w:0)",                       0},
    {"Class10Twice",                         R"(w:0x0A00 w:0 w:0x0800 w:0 w:0x8A00 w:0)",                       0},
    {"Class8Twice9And10",                    R"(w:0x0800 w:0 w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 w:0)",          0},
    {"Class7",                               R"(w:0x0700 w:0 w:0x0900 w:0 w:0x0A00 w:0)",                       0},
    {"Class11",                              R"(w:0x0800 w:0 w:0x0900 w:0 w:0x0B00 w:0)",                       0},
    {"Class0InTheMiddle",                    R"(w:0x0800 w:0 w:0x0000 w:0 w:0x0A00 w:0)",                       0},
    {"Class48IsNotClass8",                   R"(w:0x4800 w:0 w:0x0900 w:0 w:0x0A00 w:0)",                       0},
    {"ClassInTheLowByte",                    R"(W:0x0800 w:0 W:0x0900 w:0 W:0x0A00 w:0)",                       0},
    {"LengthsCount16BitUnits",               R"(w:0x0800 w:1 FF*2 w:0x0900 w:3 FF*6 w:0x0A00 w:2 FF*4)",     1601},
    {"LengthsAreNoBytes",                    R"(w:0x0800 w:2 FF*2 w:0x0900 w:0 w:0x0A00 w:0)",                  0},
    {"LengthIsLeastSignificantByteFirst",    R"(w:0x0800 w:258 FF*516 w:0x0900 w:0 w:0x0A00 w:0)",           1601},
    {"LengthOf65535",                        R"(w:0x0800 w:0xFFFF FF*131070 w:0x0900 w:0 w:0x0A00 w:0)",     1601},
    {"LengthOf32768",                        R"(w:0x0800 w:0 w:0x0900 w:0x8000 FF*65536 w:0x0A00 w:0)",      1601},
    {"LastRecordsDataMayBeMissing",          R"(w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 w:0xFFFF)",               1601},
    {"SecondRecordsDataIsMissing",           R"(w:0x0800 w:0 w:0x0900 w:9 w:0x0A00 w:0)",                       0},
    {"FileEndsInTheFirstType",               R"(00)",                                                           0},
    {"FileEndsBehindTheFirstType",           R"(w:0x0800)",                                                     0},
    {"FileEndsInTheFirstLength",             R"(w:0x0800 00)",                                                  0},
    {"FileEndsBehindTheFirstRecord",         R"(w:0x0800 w:0)",                                                 0},
    {"FileEndsInTheSecondType",              R"(w:0x0800 w:0 00)",                                              0},
    {"FileEndsBehindTheSecondType",          R"(w:0x0800 w:0 w:0x0900)",                                        0},
    {"FileEndsBehindTheSecondRecord",        R"(w:0x0800 w:0 w:0x0900 w:0)",                                    0},
    {"FileEndsBehindTheThirdType",           R"(w:0x0800 w:0 w:0x0900 w:0 w:0x0A00)",                           0},
    {"FileEndsInTheThirdLength",             R"(w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 00)",                        0},
    // clang-format on
};

class ProbeClassRecords : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeClassRecords, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeClassRecords, FIBytes(GetParam().bytes)), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(ClassRecords, ProbeClassRecords, testing::ValuesIn(classRecordCases), FICaseName);

TEST(ClassRecords, OnlyTheSecondRewindCounts) {
    const char* const records = "w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 w:1";
    EXPECT_EQ(AnswerWhenTheFirstSeekFails(FIProbeClassRecords, records), 1601U);
    EXPECT_EQ(AnswerWhenSeeksFailFrom(FIProbeClassRecords, records, 0), 0U);
    EXPECT_EQ(AnswerWhenSeeksFailFrom(FIProbeClassRecords, records, 1), 0U);
    EXPECT_EQ(AnswerWhenSeeksFailFrom(FIProbeClassRecords, records, 2), 1601U) << "the seek behind a record may fail";
}

TEST(ClassRecords, SeekBehindTheLastRecordMayBeRefused) {
    const auto handle = FIMakeTestHandle(FIBytes("w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 w:9"));
    handle->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeClassRecords, *handle), 1601U);
}

// ---- Whole requests
// ----------------------------------------------------------------------------------------------------

const FileCase fileCases[] = {
    // clang-format off
    {"EpsWithPreview",             R"(C5 D0 D3 C6 d:30 d:4 d:0 d:0 d:34 d:4 FF FF "%!PSII*" 00)",                   1504, 173},
    {"EpsOf20Bytes",               R"(C5 D0 D3 C6 d:30 d:4 d:0 d:0)",                                               1504, 173},
    {"EpsWithoutPreviewIsPostScript", R"(C5 D0 D3 C6 d:30 d:4 d:0 d:0 d:0 d:0 FF FF "%!PS")",                       1580, 387},
    {"Icon",                       R"(00 00 01 00 01 00 10 10 10 00 00 00 00 00 d:296 d:22 d:40 d:16 d:32 00*284)", 1515, 171},
    {"Cursor",                     R"(00 00 02 00 01 00 10 10 10 00 00 00 00 00 d:296 d:22 d:40 d:16 d:32 00*284)", 1516, 171},
    {"Jpeg",                       R"(FF D8 FF E0 W:16 "JFIF" 00 01 01 00 00 01 00 01 00 00 FF DB W:4 00 00 FF DA)", 1535, 166},
    {"ProgressiveJpeg",            R"(FF D8 FF E0 W:16 "JFIF" 00 01 01 00 00 01 00 01 00 00 FF DB W:4 00 00 FF C2)", 1599, 166},
    {"JpegCutBehindItsMarker",     R"(FF D8 FF E1)",                                                                1535, 166},
    {"Xwd",                        R"(D:101 D:7 D:2 D:8 D:1 D:1 D:0 D:1 D:32 D:1 D:32 D:8 D:4 D:3 00*44)",          1575, 247},
    {"CorelDraw9",                 R"("RIFF" d:100 "CDR9vrsn")",                                                    1598, 222},
    {"CorelDraw11",                R"("RIFF" d:100 "CDRBvrsn")",                                                    1630, 222},
    {"CorelDrawBlank",             R"("RIFF" d:100 "CDR vrsn")",                                                    1521, 222},
    {"ClassRecords",               R"(w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 w:0)",                                     1601, 113},
    {"ClassRecordsWithTopBits",    R"(w:0x8A00 w:0 w:0x0901 w:0 w:0x8800 w:0)",                                     1601, 113},
    // clang-format on
};

class BinaryHeaderRequest : public testing::TestWithParam<FileCase> {};

TEST_P(BinaryHeaderRequest, Answers) { FIExpectFileCase(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Files, BinaryHeaderRequest, testing::ValuesIn(fileCases), FIFileCaseName);

TEST(BinaryHeaderRequest, RefusedFilesGoOnInTheTable) {
    FIExpectRowLetsPass("icon of a PNG", FIBytes(R"(00 00 01 00 01 00 00*12 d:22 89 "PNG" 0D 0A 1A 0A)"), 171);
    FIExpectRowLetsPass("FF D8 FF DA", FIBytes("FF D8 FF DA 00 08 01 01 00 00 3F 00"), 166);
    FIExpectRowLetsPass("FF D8 FF C0", FIBytes("FF D8 FF C0 00 08 01 01 00 00 3F 00"), 166);
    FIExpectRowLetsPass("CorelDRAW 3", FIBytes(R"("RIFF" d:100 "CDR3vrsn")"), 222);
    FIExpectRowLetsPass("class 8 twice", FIBytes("w:0x0800 w:0 w:0x0800 w:0 w:0x0900 w:0"), 113);
    FIExpectRowLetsPass("a dump of depth 16", FIBytes("D:101 D:7 D:2 D:16 D:1 D:1 D:0 D:1 D:32 D:1 D:32 D:8 D:4 D:3"),
                        247);
}

}  // namespace
