// MPEG audio: frame headers, the frame length that leads to the second one, and ID3 tags on either end.
//
// The tables of bit rates are those of ISO/IEC 11172-3 (MPEG-1) and ISO/IEC 13818-3 (MPEG-2), written down here a
// second time.
#include "media/mpeg_audio.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "support/case_name.h"
#include "support/decided_case.h"
#include "support/failing_seeks.h"
#include "support/probe_case.h"

namespace {

using ::PrintTo;

// ---- All frames -----------------------------------------------------------------------------------------------------

constexpr std::uint32_t bitRates = 14;

// One version and layer. The second header byte is F, the version bit, two layer bits and the protection bit.
struct FrameForm {
    const char* name;
    std::uint32_t secondByte;  // without protection: bit 0 is 1
    FIID answer;
    bool layerI;
    std::uint32_t hertz[3];            // by sampling index
    std::uint32_t kilobits[bitRates];  // by bit rate index, from 1
};

const FrameForm frameForms[] = {
    // clang-format off
    {"Mpeg1LayerI",   0xFF, 1711, true,  {44100, 48000, 32000}, {32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448}},
    {"Mpeg1LayerII",  0xFD, 1712, false, {44100, 48000, 32000}, {32, 48, 56,  64,  80,  96, 112, 128, 160, 192, 224, 256, 320, 384}},
    {"Mpeg1LayerIII", 0xFB, 1710, false, {44100, 48000, 32000}, {32, 40, 48,  56,  64,  80,  96, 112, 128, 160, 192, 224, 256, 320}},
    // 8,000 stands where the published table has 16,000.
    {"Mpeg2LayerI",   0xF7, 1713, true,  {22050, 24000,  8000}, {32, 48, 56,  64,  80,  96, 112, 128, 144, 160, 176, 192, 224, 256}},
    {"Mpeg2LayerII",  0xF5, 1714, false, {22050, 24000,  8000}, { 8, 16, 24,  32,  40,  48,  56,  64,  80,  96, 112, 128, 144, 160}},
    {"Mpeg2LayerIII", 0xF3, 1715, false, {22050, 24000,  8000}, { 8, 16, 24,  32,  40,  48,  56,  64,  80,  96, 112, 128, 144, 160}},
    // clang-format on
};

// Bytes from a frame's sync to the second header that is looked at, the long way: slots are counted one by one. A slot
// is 4 bytes in Layer I and 1 byte in the others; a second holds bit rate / 8 bytes and hertz / samples frames. Quirk:
// MPEG-2 Layer III counts with 1,152 samples as well, though its frames have 576.
std::uint32_t FICountFrameBytes(const FrameForm& form, std::uint32_t rateIndex, std::uint32_t sampling, bool padded) {
    const std::uint32_t slotBytes = form.layerI ? 4 : 1;
    const std::uint32_t samples = form.layerI ? 384 : 1152;
    const std::uint64_t bits = std::uint64_t{form.kilobits[rateIndex - 1]} * 1000 * samples;  // times hertz
    const std::uint64_t slotBits = std::uint64_t{slotBytes} * 8 * form.hertz[sampling];
    std::uint32_t slots = padded ? 1 : 0;
    for (std::uint64_t filled = slotBits; filled <= bits; filled += slotBits) ++slots;
    return slots * slotBytes;
}

std::string FIMakeHeader(std::uint32_t secondByte, std::uint32_t thirdByte) {
    return {'\xFF', static_cast<char>(secondByte), static_cast<char>(thirdByte), '\x00'};
}

// A file of a header, filler up to an offset, and the first three bytes of another header.
std::string FIMakeFrames(const std::string& header, std::size_t offset, std::uint32_t secondByte) {
    std::string bytes = header;
    bytes.resize(offset, '\x55');
    return bytes + '\xFF' + static_cast<char>(secondByte) + '\x90';
}

class MpegFrames : public testing::TestWithParam<FrameForm> {};

TEST_P(MpegFrames, TheSecondHeaderStandsAtTheFrameLength) {
    const FrameForm& form = GetParam();
    for (std::uint32_t rate = 1; rate <= bitRates; ++rate) {
        for (std::uint32_t sampling = 0; sampling < 3; ++sampling) {
            for (const std::uint32_t padding : {0U, 1U}) {
                const std::uint32_t length = FICountFrameBytes(form, rate, sampling, padding != 0);
                const std::string header = FIMakeHeader(form.secondByte, rate << 4 | sampling << 2 | padding << 1);
                const auto answer = [&](std::uint32_t offset) {
                    return FIAnswerOf(FIProbeMpegAudio, FIMakeFrames(header, offset, form.secondByte) + "\x55");
                };
                EXPECT_EQ(answer(length), form.answer) << rate << ' ' << sampling << ' ' << padding;
                EXPECT_EQ(answer(length - 1), 0) << rate << ' ' << sampling << ' ' << padding;
                EXPECT_EQ(answer(length + 1), 0) << rate << ' ' << sampling << ' ' << padding;
            }
        }
    }
}

TEST_P(MpegFrames, EveryThirdByteOfTheFirstHeader) {
    const FrameForm& form = GetParam();
    // Bit rate 15 and sampling 3 are refused. A second header stands at the frame length, or close behind the first
    // one.
    for (std::uint32_t thirdByte = 0; thirdByte <= 0xFF; ++thirdByte) {
        const std::uint32_t rate = thirdByte >> 4;
        const std::uint32_t sampling = thirdByte >> 2 & 3;
        std::string bytes = FIMakeHeader(form.secondByte, thirdByte);
        std::uint32_t length = 4;
        if (rate >= 1 && rate <= bitRates && sampling < 3) {
            length = FICountFrameBytes(form, rate, sampling, (thirdByte & 2) != 0);
        }
        bytes = FIMakeFrames(bytes, length, form.secondByte);
        const bool refused = rate == 15 || sampling == 3;
        EXPECT_EQ(FIAnswerOf(FIProbeMpegAudio, bytes), refused ? 0 : form.answer) << thirdByte;
    }
}

TEST_P(MpegFrames, FreeFormatNeedsNoSecondHeader) {
    const FrameForm& form = GetParam();
    for (std::uint32_t sampling = 0; sampling < 3; ++sampling) {
        const std::string header = FIMakeHeader(form.secondByte, sampling << 2);
        EXPECT_EQ(FIAnswerOf(FIProbeMpegAudio, header), form.answer);
        EXPECT_EQ(FIAnswerOf(FIProbeMpegAudio, header.substr(0, 3)), form.answer) << "the fourth byte is not used";
        EXPECT_EQ(FIAnswerOf(FIProbeMpegAudio, header + std::string(3000, 'x')), form.answer);
    }
    EXPECT_EQ(FIAnswerOf(FIProbeMpegAudio, FIMakeHeader(form.secondByte, 0x0C)), 0) << "sampling index 3";
}

TEST_P(MpegFrames, TheSecondHeaderHasTheSameVersionAndLayer) {
    const FrameForm& form = GetParam();
    const std::string header = FIMakeHeader(form.secondByte, 0x10);
    const std::uint32_t length = FICountFrameBytes(form, 1, 0, false);
    for (std::uint32_t second = 0; second <= 0xFF; ++second) {
        // Sync, version and layer count; the protection bit does not.
        const bool agrees = (second | 1) == form.secondByte;
        EXPECT_EQ(FIAnswerOf(FIProbeMpegAudio, FIMakeFrames(header, length, second)), agrees ? form.answer : 0)
            << second;
    }
}

TEST_P(MpegFrames, TheThirdByteOfTheSecondHeaderIsFreeButHasToBeThere) {
    const FrameForm& form = GetParam();
    const std::string header = FIMakeHeader(form.secondByte, 0x10);
    std::string bytes = FIMakeFrames(header, FICountFrameBytes(form, 1, 0, false), form.secondByte);
    for (const char third : {'\x00', '\xFF', '\x0C', '\xF0', '\x1C'}) {
        bytes.back() = third;
        EXPECT_EQ(FIAnswerOf(FIProbeMpegAudio, bytes), form.answer) << static_cast<int>(third);
    }
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_EQ(FIAnswerOf(FIProbeMpegAudio, bytes.substr(0, size)), 0) << size;
    }
}

TEST_P(MpegFrames, TheFirstByteOfTheSecondHeaderIsFF) {
    const FrameForm& form = GetParam();
    const std::uint32_t length = FICountFrameBytes(form, 1, 0, false);
    std::string bytes = FIMakeFrames(FIMakeHeader(form.secondByte, 0x10), length, form.secondByte);
    for (std::uint32_t first = 0; first <= 0xFF; ++first) {
        bytes[length] = static_cast<char>(first);
        EXPECT_EQ(FIAnswerOf(FIProbeMpegAudio, bytes), first == 0xFF ? form.answer : 0) << first;
    }
}

INSTANTIATE_TEST_SUITE_P(Forms, MpegFrames, testing::ValuesIn(frameForms), FICaseName);

TEST(MpegAudio, VersionAndLayerTellTheFormat) {
    // Free format, so that the header decides alone.
    for (std::uint32_t second = 0; second <= 0xFF; ++second) {
        FIID answer = 0;
        for (const FrameForm& form : frameForms) {
            if ((second | 1) == form.secondByte) answer = form.answer;
        }
        EXPECT_EQ(FIAnswerOf(FIProbeMpegAudio, FIMakeHeader(second, 0x00)), answer) << second;
    }
}

// ---- Cases ----------------------------------------------------------------------------------------------------------

const ProbeCase mpegCases[] = {
    // clang-format off
    // 144 * 128000 / 44100 is 417.9, and one more with the padding bit.
    {"LayerIII128kAt44100",              "FF FB 90 00 >417 FF FB 90",                             1710},
    {"NoFirstHeader",                    ">417 FF FB 90",                                            0},
    {"LayerIII128kAt44100At416",         "FF FB 90 00 >416 FF FB 90 00",                             0},
    {"LayerIII128kAt44100At418",         "FF FB 90 00 >418 FF FB 90",                                0},
    {"LayerIIIPadded",                   "FF FB 92 00 >418 FF FB 90",                             1710},
    {"LayerIIIPaddedAt417",              "FF FB 92 00 >417 FF FB 90 00",                             0},
    {"LayerIIIPrivateBit",               "FF FB 91 00 >417 FF FB 90",                             1710},
    {"LayerIIIFourthByteIsFree",         "FF FB 90 FF >417 FF FB 90",                             1710},
    {"SingleFrame",                      "FF FB 90 00 >417",                                         0},
    {"SecondHeaderOfTwoBytes",           "FF FB 90 00 >417 FF FB",                                   0},
    {"SecondHeaderOfOneByte",            "FF FB 90 00 >417 FF",                                      0},
    {"SecondHeaderWithoutProtection",    "FF FA 90 00 >417 FF FB 90",                             1710},
    {"SecondHeaderOfLayerII",            "FF FB 90 00 >417 FF FD 90",                                0},
    {"SecondHeaderOfMpeg2",              "FF FB 90 00 >417 FF F3 90",                                0},
    {"SecondHeaderOfAnotherBitRate",     "FF FB 90 00 >417 FF FB 12",                             1710},
    {"SecondHeaderOfBitRate15",          "FF FB 90 00 >417 FF FB F0",                             1710},
    {"SecondHeaderOfSampling3",          "FF FB 90 00 >417 FF FB 9C",                             1710},
    {"SecondHeaderWithSyncE",            "FF FB 90 00 >417 FF EB 90",                                0},
    {"FirstByteFE",                      "FE FB 90 00 >417 FF FB 90",                                0},
    {"Mpeg25HasSyncE",                   "FF E3 90 00 >417 FF E3 90",                                0},
    {"LayerBitsOf0",                     "FF F9 90 00 >417 FF F9 90",                                0},
    {"LayerBitsOf0FreeFormat",           "FF F9 00 00",                                              0},
    {"BitRate15",                        "FF FB F0 00 >417 FF FB 90",                                0},
    {"Sampling3",                        "FF FB 9C 00 >417 FF FB 90",                                0},
    {"BitRate15AndSampling3",            "FF FB FC 00 >417 FF FB 90",                                0},
    // 144 * 160000 / 44100 is 522.4.
    {"LayerII160kAt44100",               "FF FD 90 00 >522 FF FD 90",                             1712},
    // 144 * 112000 / 48000 is 336.
    {"LayerIII112kAt48000",              "FF FB 84 00 >336 FF FB 90",                             1710},
    // 12 * 32000 / 44100 is 8.7: 8 slots of 4 bytes. The division comes before the slots.
    {"LayerI32kAt44100",                 "FF FF 10 00 >32 FF FF 90",                              1711},
    {"LayerI32kAt44100InBytes",          "FF FF 10 00 >34 FF FF 90",                                 0},
    {"LayerI32kAt44100Padded",           "FF FF 12 00 >36 FF FF 90",                              1711},
    {"LayerI32kAt44100PaddedByAByte",    "FF FF 12 00 >33 FF FF 90",                                 0},
    // 12 * 448000 / 32000 is 168, and the longest frame of Layer II 144 * 384000 / 32000, 1728.
    {"LongestFrameOfLayerI",             "FF FF E8 00 >672 FF FF 90",                             1711},
    {"LongestFrameOfLayerII",            "FF FD E8 00 >1728 FF FD 90",                            1712},
    // Quirk: MPEG-2 sampling index 2 stands for 8,000 Hz, not for the 16,000 of the standard.
    {"Mpeg2Sampling2Is8000",             "FF F5 18 00 >144 FF F5 90",                             1714},
    {"Mpeg2Sampling2IsNot16000",         "FF F5 18 00 >72 FF F5 90",                                 0},
    {"Mpeg2Sampling2Is8000InLayerI",     "FF F7 18 00 >192 FF F7 90",                             1713},
    {"Mpeg2Sampling2IsNot16000InLayerI", "FF F7 18 00 >96 FF F7 90",                                 0},
    {"Mpeg2Sampling2Is8000InLayerIII",   "FF F3 E8 00 >2880 FF F3 90",                            1715},
    {"Mpeg2Sampling2LongestIsNot1440",   "FF F3 E8 00 >1440 FF F3 90",                               0},
    // Quirk: the factor is 144 for MPEG-2 Layer III too, so that two frames are stepped over: 144 * 64000 / 22050 is
    // 417.9, and with the standard's 72 it would be 208.9.
    {"Mpeg2LayerIIIFactor144",           "FF F3 80 00 >417 FF F3 90",                             1715},
    {"Mpeg2LayerIIIFactorIsNot72",       "FF F3 80 00 >208 FF F3 90",                                0},
    {"Mpeg2LayerIIIRealStream",          "FF F3 80 00 >208 FF F3 82 00 >417 FF F3 80 00",         1715},
    {"Mpeg2LayerII",                     "FF F5 80 00 >417 FF F5 90",                             1714},
    // ID3 version 1: the last 128 bytes start with TAG. Only MPEG-1 Layer III is asked for it.
    {"TagAtTheEnd",                      R"(FF FB 90 00 >417 FF FB 90 00 >834 "TAG" >962)",       1706},
    {"TagOneByteTooEarly",               R"(FF FB 90 00 >417 FF FB 90 00 >833 "TAG" >962)",       1710},
    {"TagOneByteTooLate",                R"(FF FB 90 00 >417 FF FB 90 00 >835 "TAG" >962)",       1710},
    {"TagInSmallLetters",                R"(FF FB 90 00 >417 FF FB 90 00 >834 "tag" >962)",       1710},
    {"TagOfTwoLetters",                  R"(FF FB 90 00 >417 FF FB 90 00 >834 "TA" 00 >962)",     1710},
    {"TagWithAnotherThirdLetter",        R"(FF FB 90 00 >417 FF FB 90 00 >834 "TAB" >962)",       1710},
    {"TagWithAnotherSecondLetter",       R"(FF FB 90 00 >417 FF FB 90 00 >834 "TOG" >962)",       1710},
    {"TagWithAnotherFirstLetter",        R"(FF FB 90 00 >417 FF FB 90 00 >834 "BAG" >962)",       1710},
    {"TagFarBehind",                     R"(FF FB 90 00 >417 FF FB 90 00 >9000 "TAG" >9128)",     1706},
    {"TagWithoutASecondHeader",          R"(FF FB 90 00 >834 "TAG" >962)",                           0},
    {"TagOfTheFirstFrame",               R"(FF FB 90 00 >417 FF FB 90 >420)",                     1710},
    {"TagOfLayerII",                     R"(FF FD 90 00 >522 FF FD 90 00 >1044 "TAG" >1172)",     1712},
    {"TagOfLayerI",                      R"(FF FF 10 00 >32 FF FF 10 00 >64 "TAG" >192)",         1711},
    {"TagOfMpeg2LayerIII",               R"(FF F3 80 00 >417 FF F3 80 00 >834 "TAG" >962)",       1715},
    // 144 * 32000 / 48000 is 96: the file is too short for a tag.
    {"ShortFileHasNoTag",                R"(FF FB 14 00 >96 FF FB 90)",                           1710},
    {"FileOf127BytesHasNoTag",           R"(FF FB 14 00 >96 FF FB 90 >127)",                      1710},
    {"FileOf128BytesHasNoTag",           R"(FF FB 14 00 >96 FF FB 90 >128)",                      1710},
    // Free format: version and layer decide, and the tag is still looked for.
    {"FreeFormat",                       "FF FB 00 00",                                           1710},
    {"FreeFormatOfThreeBytes",           "FF FB 00",                                              1710},
    {"FreeFormatOfTwoBytes",             "FF FB",                                                    0},
    {"FreeFormatWithTag",                R"(FF FB 00 00 >1000 "TAG" >1128)",                      1706},
    {"FreeFormatWithTagInTheFourthByte", R"(FF FB 00 "TAG" >131)",                                1706},
    {"FreeFormatOf130Bytes",             R"(FF FB 00 "TAG" >130)",                                1710},
    {"FreeFormatLayerIIWithTag",         R"(FF FD 00 00 >1000 "TAG" >1128)",                      1712},
    {"FreeFormatMpeg2",                  R"(FF F3 00 00 >1000 "TAG" >1128)",                      1715},
    {"OneByte",                          "FF",                                                       0},
    {"EmptyFile",                        "",                                                         0},
    // clang-format on
};

class ProbeMpegAudio : public testing::TestWithParam<ProbeCase> {};
TEST_P(ProbeMpegAudio, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeMpegAudio, FIBytes(GetParam().bytes)), GetParam().answer);
}
INSTANTIATE_TEST_SUITE_P(Streams, ProbeMpegAudio, testing::ValuesIn(mpegCases), FICaseName);

// ---- Failures -------------------------------------------------------------------------------------------------------

// Two frames of MPEG-1 Layer III and a tag far behind them.
const char* const taggedStream = R"(FF FB 90 00 >417 FF FB 90 00 >9000 "TAG" >9128)";

TEST(MpegAudio, FailedSeeks) {
    const std::string bytes = FIBytes(taggedStream);
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeMpegAudio, bytes, 0), 0) << "to the start";
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeMpegAudio, bytes, 1), 0) << "to the second header";
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeMpegAudio, bytes, 2), 1710) << "from the end to the tag";
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeMpegAudio, bytes, 3), 1710) << "of the reader to the tag";
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeMpegAudio, bytes, 4), 1706);
}

TEST(MpegAudio, ATagThatCantBeLookedForIsNone) {
    const auto noSeekFromEnd = FIMakeTestHandle(FIBytes(taggedStream));
    noSeekFromEnd->failSeekFromEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeMpegAudio, *noSeekFromEnd), 1710);
    const auto noTell = FIMakeTestHandle(FIBytes(taggedStream));
    noTell->failTell = true;
    EXPECT_EQ(FIAnswerOver(FIProbeMpegAudio, *noTell), 1710);
    const auto whole = FIMakeTestHandle(FIBytes(taggedStream));
    EXPECT_EQ(FIAnswerOver(FIProbeMpegAudio, *whole), 1706);
}

TEST(MpegAudio, OtherFormatsDontLookForATag) {
    const auto handle = FIMakeTestHandle(FIBytes(R"(FF FD 90 00 >522 FF FD 90 00 >9000 "TAG" >9128)"));
    handle->failSeekFromEnd = true;
    handle->failTell = true;
    EXPECT_EQ(FIAnswerOver(FIProbeMpegAudio, *handle), 1712);
}

TEST(MpegAudio, AHandleThatRefusesToSeekBehindTheEnd) {
    const auto handle = FIMakeTestHandle(FIBytes("FF FB 90 00 >100"));
    handle->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeMpegAudio, *handle), 0);
}

// ---- 1709: ID3 version 2 --------------------------------------------------------------------------------------------

const ProbeCase headerCases[] = {
    // clang-format off
    {"Size0WithAudioBehind",       R"("ID3" 03 00 00 00 00 00 00 FF FB)",                   1707},
    {"Size0WithProtectedAudio",    R"("ID3" 03 00 00 00 00 00 00 FF FA)",                   1709},
    {"Size0WithLayerII",           R"("ID3" 03 00 00 00 00 00 00 FF FD)",                   1709},
    {"Size0WithMpeg2",             R"("ID3" 03 00 00 00 00 00 00 FF F3)",                   1709},
    {"Size0WithFC",                R"("ID3" 03 00 00 00 00 00 00 FF FC)",                   1709},
    {"Size0WithFE",                R"("ID3" 03 00 00 00 00 00 00 FE FB)",                   1709},
    {"BytesTheOtherWayRound",      R"("ID3" 03 00 00 00 00 00 00 FB FF)",                   1709},
    {"AudioOneByteTooEarly",       R"("ID3" 03 00 00 00 00 00 01 FF FB 00)",                1709},
    {"Size1",                      R"("ID3" 03 00 00 00 00 00 01 00 FF FB)",                1707},
    {"AudioOneByteTooLate",        R"("ID3" 03 00 00 00 00 00 01 00 00 FF FB)",             1709},
    {"Size127",                    R"("ID3" 03 00 00 00 00 00 7F >137 FF FB)",              1707},
    {"Size128",                    R"("ID3" 03 00 00 00 00 01 00 >138 FF FB)",              1707},
    {"Size16383",                  R"("ID3" 03 00 00 00 00 7F 7F >16393 FF FB)",            1707},
    {"Size16384",                  R"("ID3" 03 00 00 00 01 00 00 >16394 FF FB)",            1707},
    {"Size2097151",                R"("ID3" 03 00 00 00 7F 7F 7F >2097161 FF FB)",          1707},
    {"Size2097152",                R"("ID3" 03 00 00 01 00 00 00 >2097162 FF FB)",          1707},
    {"SizeOf4Bytes",               R"("ID3" 03 00 00 01 02 03 04 >2130318 FF FB)",          1707},
    {"HighBitsOfTheSizeAreFree",   R"("ID3" 03 00 00 80 80 80 80 FF FB)",                   1707},
    {"HighBitsOfAnySize",          R"("ID3" 03 00 00 80 80 81 FF >265 FF FB)",              1707},
    {"VersionAndFlagsAreFree",     R"("ID3" FF FF FF 00 00 00 00 FF FB)",                   1707},
    {"LargestSizeLeadsBehindTheEnd", R"("ID3" 03 00 00 7F 7F 7F 7F FF FB)",                 1709},
    {"SizeLeadsToTheEnd",          R"("ID3" 03 00 00 00 00 00 02 FF FB)",                   1709},
    {"OneByteOfAudio",             R"("ID3" 03 00 00 00 00 00 00 FF)",                      1709},
    {"OneOtherByte",               R"("ID3" 03 00 00 00 00 00 00 FB)",                      1709},
    {"HeaderAlone",                R"("ID3" 03 00 00 00 00 00 00)",                         1709},
    {"FileEndsInTheSize",          R"("ID3" 03 00 00 00 00)",                               1709},
    {"MarkAlone",                  R"("ID3")",                                              1709},
    {"MarkIsTheRowsBusiness",      R"("XYZ" 03 00 00 00 00 00 00 FF FB)",                   1707},
    {"EmptyFile",                  "",                                                      1709},
    // clang-format on
};

class ProbeId3Header : public testing::TestWithParam<ProbeCase> {};
TEST_P(ProbeId3Header, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeId3Header, FIBytes(GetParam().bytes)), GetParam().answer);
}
INSTANTIATE_TEST_SUITE_P(Tags, ProbeId3Header, testing::ValuesIn(headerCases), FICaseName);

TEST(Id3Header, EveryBitOfTheSize) {
    for (std::uint32_t bit = 0; bit < 21; ++bit) {  // sizes up to a megabyte
        std::string bytes = FIBytes(R"("ID3" 04 00 00 00 00 00 00)");
        const std::size_t place = 9 - bit / 7;
        bytes[place] = static_cast<char>(1 << bit % 7);
        bytes.resize((std::size_t{1} << bit) + 10, '\x55');
        const auto handle = FIMakeTestHandle(bytes + "\xFF\xFB");
        EXPECT_EQ(FIAnswerOver(FIProbeId3Header, *handle), 1707) << bit;
    }
}

TEST(Id3Header, FailedSeeks) {
    const std::string bytes = FIBytes(R"("ID3" 03 00 00 00 00 00 01 00 FF FB)");
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeId3Header, bytes, 0), 1707) << "the first of two to the start";
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeId3Header, bytes, 1), 0) << "the second to the start";
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeId3Header, bytes, 2), 0) << "behind the tag";
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeId3Header, bytes, 3), 1707);
}

TEST(Id3Header, AHandleThatRefusesToSeekBehindTheEnd) {
    const auto behind = FIMakeTestHandle(FIBytes(R"("ID3" 03 00 00 00 00 00 02 00)"));
    behind->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeId3Header, *behind), 0);
    const auto atTheEnd = FIMakeTestHandle(FIBytes(R"("ID3" 03 00 00 00 00 00 01 00)"));
    atTheEnd->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeId3Header, *atTheEnd), 1709);
}

// ---- 1708: ID3 version 1 --------------------------------------------------------------------------------------------

const ProbeCase trailerCases[] = {
    // clang-format off
    {"Audio",                      "FF FB",                  1706},
    {"AudioAndMore",               R"(FF FB 90 00 "TAG")",   1706},
    {"ProtectedAudio",             "FF FA 90 00",            1708},
    {"LayerII",                    "FF FD 90 00",            1708},
    {"Mpeg2",                      "FF F3 90 00",            1708},
    {"FirstByteFE",                "FE FB 90 00",            1708},
    {"SecondByteFC",               "FF FC 90 00",            1708},
    {"AudioOneByteTooLate",        "00 FF FB 90",            1708},
    {"OneByte",                    "FF",                     1708},
    {"EmptyFile",                  "",                       1708},
    // clang-format on
};

class ProbeId3Trailer : public testing::TestWithParam<ProbeCase> {};
TEST_P(ProbeId3Trailer, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeId3Trailer, FIBytes(GetParam().bytes)), GetParam().answer);
}
INSTANTIATE_TEST_SUITE_P(Tags, ProbeId3Trailer, testing::ValuesIn(trailerCases), FICaseName);

TEST(Id3Trailer, FailedSeeks) {
    for (const char* const notation : {"FF FB 90 00", "00 00 00 00"}) {
        const std::string bytes = FIBytes(notation);
        const FIID answer = bytes[0] == '\xFF' ? 1706 : 1708;
        EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeId3Trailer, bytes, 0), answer) << "the first of two to the start";
        EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeId3Trailer, bytes, 1), 0) << "the second to the start";
        EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeId3Trailer, bytes, 2), answer);
    }
}

TEST(Id3Trailer, LooksAtTheStartWhereverTheReaderStands) {
    EXPECT_EQ(FIAnswerOf(FIProbeId3Trailer, FIBytes("FF FB >5000"), 4000), 1706);
    EXPECT_EQ(FIAnswerOf(FIProbeId3Trailer, FIBytes(">4000 FF FB >5000"), 4000), 1708);
    EXPECT_EQ(FIAnswerOf(FIProbeId3Header, FIBytes(R"("ID3" 03 00 00 00 00 00 00 FF FB >5000)"), 4000), 1707);
    EXPECT_EQ(FIAnswerOf(FIProbeMpegAudio, FIBytes("FF FB 90 00 >417 FF FB 90 >5000"), 4000), 1710);
}

// ---- The whole system -----------------------------------------------------------------------------------------------

const DecidedCase wholeCases[] = {
    // clang-format off
    {"Mpeg1LayerI",           "FF FF 10 00 >32 FF FF 10 00 >64",                             1711, 264_row, "a.mp1"},
    {"Mpeg1LayerII",          "FF FD 90 00 >522 FF FD 90 00 >1044",                          1712, 264_row, "a.mp2"},
    {"Mpeg1LayerIII",         "FF FB 90 00 >417 FF FB 90 00 >834",                           1710, 264_row, "a.mp3"},
    {"Mpeg1LayerIIIPadded",   "FF FB 92 00 >418 FF FB 90 00 >834",                           1710, 264_row},
    {"Mpeg2LayerI",           "FF F7 10 00 >68 FF F7 10 00 >136",                            1713, 264_row},
    {"Mpeg2LayerII",          "FF F5 80 00 >417 FF F5 80 00 >834",                           1714, 264_row},
    {"Mpeg2LayerIII",         "FF F3 80 00 >417 FF F3 80 00 >834",                           1715, 264_row},
    {"Mpeg2At8000",           "FF F5 18 00 >144 FF F5 18 00 >288",                           1714, 264_row},
    {"Mpeg25",                "FF E3 90 00 >417 FF E3 90 00 >834",                           1999,   0, "a.mp3"},
    {"SingleFrame",           "FF FB 90 00 >417",                                            1999,   0, "a.mp3"},
    {"BitRate15",             "FF FB F0 00 >417 FF FB F0 00 >834",                           1999,   0},
    {"Sampling3",             "FF FB 9C 00 >417 FF FB 9C 00 >834",                           1999,   0},
    {"TagAtTheEnd",           R"(FF FB 90 00 >417 FF FB 90 00 >834 "TAG" >962)",             1706, 264_row},
    {"FreeFormat",            "FF FB 00 00 >1000",                                           1710, 264_row},
    {"FreeFormatWithTag",     R"(FF FB 00 00 >1000 "TAG" >1128)",                            1706, 264_row},
    {"TagV2WithAudio",        R"("ID3" 03 00 00 00 00 00 00 FF FB 90 00)",                   1707, 263_row},
    {"TagV2WithOtherAudio",   R"("ID3" 03 00 00 00 00 00 00 FF FA 90 00)",                   1709, 263_row},
    {"TagV2Alone",            R"("ID3")",                                                    1709, 263_row},
    {"TagV2AndTagV1",         R"("ID3" 03 00 00 00 00 00 00 FF FB >1000 "TAG" >1128)",       1707, 263_row},
    // No second header: the tag at the end tells the file, whatever it is.
    {"TagV1AndASingleFrame",  R"(FF FB 90 00 >834 "TAG" >962)",                              1706, 397_row},
    {"TagV1AndOtherAudio",    R"(FF FA 90 00 >834 "TAG" >962)",                              1708, 397_row},
    {"TagV1AndNoAudio",       R"("ogle" 81 82 83 84 >834 "TAG" >962)",                       1708, 397_row},
    {"TagV1Alone",            R"("TAG" "a song" >128)",                                      1708, 397_row},
    {"TagV1OneByteTooShort",  R"("TAG" "a song" >127)",                                      1999,   0},
    {"TagV1OneByteTooLong",   R"("TAG" "a song" >129)",                                      1999,   0},
    // clang-format on
};

class MpegRows : public testing::TestWithParam<DecidedCase> {};
TEST_P(MpegRows, AreToldByTheirRow) { FIExpectDecision(GetParam()); }
INSTANTIATE_TEST_SUITE_P(WholeSystem, MpegRows, testing::ValuesIn(wholeCases), FICaseName);

}  // namespace
