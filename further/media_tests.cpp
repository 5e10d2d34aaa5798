// media_tests.cpp - sound and video that a pattern can't tell.
#include "further/media_tests.h"

#include <array>

#include "further/look_numbers.h"
#include "further/searches.h"

namespace {

// ---- AC-3 ----------------------------------------------------------------------------------------------------------

// kbit/s of the frame size codes, two codes for each.
constexpr std::array<std::uint16_t, 19> ac3Rates = {32,  40,  48,  56,  64,  80,  96,  112, 128, 160,
                                                    192, 224, 256, 320, 384, 448, 512, 576, 640};

// 16-bit words of a frame; 0 for a header that is none.
std::uint32_t FIAc3FrameWords(std::uint8_t rateAndSize) {
    const std::uint32_t sampleRate = rateAndSize >> 6U;
    const std::uint32_t code = rateAndSize & 63U;
    if (code / 2 >= ac3Rates.size()) return 0;
    const std::uint32_t rate = ac3Rates[code / 2];
    switch (sampleRate) {
        case 0:  // 48 kHz
            return 2 * rate;
        case 1:  // 44.1 kHz
            return 320 * rate / 147 + (code & 1U);
        case 2:  // 32 kHz
            return 3 * rate;
        default:
            return 0;
    }
}

// Whether the mark of a frame stands at an offset; what lies behind the head is not asked for.
bool FINextFrameFits(FILook& look, std::size_t offset) {
    const FIBytes bytes = FIBytesUpTo(look, offset + 2);
    return offset + 2 > bytes.size() || FIWordBE(bytes, offset) == 0x0B77;
}

// ---- ADTS ----------------------------------------------------------------------------------------------------------

constexpr std::size_t adtsHeaderBytes = 6;  // as far as the frame's length is told

// The length of the frame at an offset; 0 when no frame begins there.
std::uint32_t FIAdtsFrameBytes(FIBytes frame) {
    constexpr std::uint32_t largestRateIndex = 12;
    constexpr std::uint32_t shortestFrame = 7;
    if (frame[0] != 0xFF || (frame[1] & 0xF6) != 0xF0 || (frame[2] >> 2 & 15U) > largestRateIndex) return 0;
    const std::uint32_t length =
        (frame[3] & 3U) << 11 | static_cast<std::uint32_t>(frame[4]) << 3 | static_cast<std::uint32_t>(frame[5]) >> 5;
    return length >= shortestFrame ? length : 0;
}

// ---- Files that begin with their length ----------------------------------------------------------------------------

bool FIBeginsWithLength(const FILook& look) {
    constexpr std::uint32_t headerBytes = 128;
    const FIBytes bytes = FILookAtStart(look);
    if (bytes.size() < 4) return false;
    const std::uint32_t length = FIDWordLE(bytes, 0);
    return length >= headerBytes && length <= look.size;
}

constexpr std::string_view videoStreamGuid("\xC0\xEF\x19\xBC\x4D\x5B\xCF\x11\xA8\xFD\x00\x80\x5F\x5C\x44\x2B", 16);
constexpr std::string_view audioStreamGuid("\x40\x9E\x69\xF8\x4D\x5B\xCF\x11\xA8\xFD\x00\x80\x5F\x5C\x44\x2B", 16);
constexpr std::uint32_t firstStreamObject = 30;
constexpr std::uint32_t lastStreamObject = 8192;

// The identifier if it holds, or 0.
FIID FIIf(bool holds, FIID identifier) { return holds ? identifier : FIID{0}; }

}  // namespace

FIID FITellWebM(FILook& look) { return FIIf(FIHeadHolds(look, 4, 64, "\x42\x82\x84webm"), 20083); }

FIID FITellMatroska(FILook& look) { return FIIf(FIHeadHolds(look, 4, 64, "\x42\x82\x88matroska"), 20084); }

FIID FITellAc3(FILook& look) {
    constexpr std::size_t leastSize = 8;
    constexpr std::uint32_t lastStreamVersion = 10;
    const FIBytes bytes = FILookAtStart(look);
    if (bytes.size() < leastSize || bytes[5] >> 3 > lastStreamVersion) return 0;
    const std::uint32_t words = FIAc3FrameWords(bytes[4]);
    return FIIf(words != 0 && FINextFrameFits(look, std::size_t{2} * words), 20101);
}

FIID FITellEnhancedAc3(FILook& look) {
    constexpr std::size_t headerBytes = 6;
    constexpr std::uint32_t firstStreamVersion = 11;
    constexpr std::uint32_t lastStreamVersion = 16;
    const FIBytes bytes = FILookAtStart(look);
    if (bytes.size() < headerBytes) return 0;
    const std::uint32_t version = bytes[5] >> 3;
    if (version < firstStreamVersion || version > lastStreamVersion) return 0;
    const std::size_t words = ((bytes[2] & 7U) << 8 | bytes[3]) + 1U;
    return FIIf(FINextFrameFits(look, 2 * words), 20102);
}

FIID FITellAdts(FILook& look) {
    constexpr int framesInARow = 3;
    std::size_t offset = 0;
    for (int frame = 0; frame < framesInARow; ++frame) {
        const FIBytes bytes = FIBytesUpTo(look, offset + adtsHeaderBytes);
        if (offset + adtsHeaderBytes > bytes.size()) return FIIf(frame > 0, 20103);
        const std::uint32_t length = FIAdtsFrameBytes(bytes.subspan(offset));
        if (length == 0 || (frame == 0 && length > look.size)) return 0;
        offset += length;
    }
    return 20103;
}

FIID FITellWindowsMediaVideo(FILook& look) {
    return FIIf(FIHeadHolds(look, firstStreamObject, lastStreamObject, videoStreamGuid), 20108);
}

FIID FITellWindowsMediaAudio(FILook& look) {
    return FIIf(FIHeadHolds(look, firstStreamObject, lastStreamObject, audioStreamGuid), 20109);
}

FIID FITellMpeg2Video(FILook& look) {
    constexpr std::string_view sequenceExtension("\x00\x00\x01\xB5", 4);
    return FIIf(FIHeadHolds(look, 8, 160, sequenceExtension), 20116);
}

FIID FITellFlc(FILook& look) { return FIIf(FIBeginsWithLength(look), 20122); }

FIID FITellFli(FILook& look) { return FIIf(FIBeginsWithLength(look), 20123); }
