// Looks at files of which a part of the start can't be read.
#include "further/look.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "fiid/detect.h"
#include "support/bytes.h"
#include "support/process_heap.h"

namespace {

// A source whose bytes from an offset on can't be read: never, or only at the first try.
struct CutSource {
    std::string bytes;
    std::size_t failFrom;
    bool failsOnce = false;
    bool failed = false;
};

std::int32_t ReadCut(void* context, std::uint64_t offset, void* buffer, std::uint32_t size, std::uint32_t* count) {
    auto& source = *static_cast<CutSource*>(context);
    const bool fails = !source.failsOnce || !source.failed;
    const std::size_t end = fails ? source.failFrom : source.bytes.size();
    if (offset >= end) {
        source.failed = true;
        return 5;
    }
    *count = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, end - offset));
    std::memcpy(buffer, source.bytes.data() + offset, *count);
    return 0;
}

fiid_result DetectCut(CutSource source) {
    const fiid_source told = {&source, ReadCut, source.bytes.size(), nullptr, 0, 0};
    fiid_result result;
    EXPECT_EQ(fiid_detect_source(&told, nullptr, &result), FIID_OK);
    EXPECT_EQ(result.size, source.bytes.size());
    EXPECT_EQ(result.source_error, 5);
    return result;
}

TEST(CutStart, IsToldByWhatStandsInFront) {
    const std::string binary = FIBytes("01 02 00 03") + std::string(20000, 'x');
    const std::string archive = FIBytes("37 7A BC AF 27 1C 00 04") + std::string(20000, 'x');
    for (const std::size_t failFrom : {8U, 100U, 5000U, 8191U}) {
        EXPECT_EQ(DetectCut({binary, failFrom}).further, 20339) << failFrom;
        EXPECT_EQ(DetectCut({archive, failFrom}).further, 20128) << failFrom;
        EXPECT_EQ(DetectCut({std::string(20000, 'x'), failFrom}).further, 0) << failFrom;
    }
    EXPECT_NE(DetectCut({archive, 5}).further, 20128) << "the mark can't be read";
}

TEST(CutStart, TellsNoVersion) {
    const std::string rtf = "{\\rtf1\\ansi\\ansicpg1252 text}" + std::string(20000, ' ');
    const fiid_result result = DetectCut({rtf, 11});
    EXPECT_EQ(result.fiid, 1028);
    EXPECT_STREQ(result.version, "") << "what tells the revision may stand behind";
}

TEST(CutStart, OfAnyLengthHasAnAnswer) {
    const std::string starts[] = {FIBytes("FF FE 41 00 42 00"),
                                  "WEBVTT",
                                  FIBytes("00 01 00 00 00 08"),
                                  FIBytes("0B 77 00 00 00 40"),
                                  FIBytes("FF F1 50 80 02 00"),
                                  FIBytes("5D 00 00 80 00"),
                                  FIBytes("C7 71"),
                                  "{\"a\":1}",
                                  "#!/bin/sh"};
    for (const std::string& start : starts) {
        for (std::size_t failFrom = 1; failFrom < 32; ++failFrom) {
            for (const bool failsOnce : {false, true}) {
                DetectCut({start + std::string(20000, 'x'), failFrom, failsOnce});
            }
        }
    }
}

TEST(CutStart, LosesNoMemoryWhereItIsExhausted) {
    for (std::uint32_t allocation = 0; allocation < 6; ++allocation) {
        CutSource source = {FIBytes("37 7A BC AF 27 1C 00 04") + std::string(20000, 'x'), 5000};
        const fiid_source told = {&source, ReadCut, source.bytes.size(), nullptr, 0, 0};
        fiid_result result;
        const std::size_t blocks = FIHeapBlocks();
        FIFailAllocationsFrom(allocation);
        fiid_detect_source(&told, nullptr, &result);
        FIHeapNeverFails();
        EXPECT_EQ(FIHeapBlocks(), blocks) << allocation;
    }
}

}  // namespace
