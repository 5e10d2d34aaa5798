// failing_seeks.h - shows that a routine looks at the status of each of its seeks.
//
// A seek that fails once leaves the reader with its target, and the next refill seeks there again. So a routine that
// did not look at the status would see the same bytes as ever and answer as ever.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "support/probe_case.h"

// The seek of a test handle, but for the one with the number failSeeksFrom, which alone fails.
inline std::int32_t FISeekFailingOnce(HIOFILE file, std::uint16_t origin, std::int32_t offset) {
    static const auto plainSeek = FIMakeTestHandle("")->file.operations.IOSeek;
    TestHandle& handle = *reinterpret_cast<TestHandle*>(file);  // file is its first member
    if (handle.seeks == handle.failSeeksFrom) {
        ++handle.seeks;
        return -1;
    }
    const std::uint32_t failing = std::exchange(handle.failSeeksFrom, testNever);
    const std::int32_t status = plainSeek(file, origin, offset);
    handle.failSeeksFrom = failing;
    return status;
}

// A handle over bytes whose seek with the number failing, counted from 0, fails, and no other.
inline std::unique_ptr<TestHandle> FIMakeHandleFailingOnce(std::string_view bytes, std::uint32_t failing) {
    auto handle = FIMakeTestHandle(std::string(bytes));
    handle->file.operations.IOSeek = FISeekFailingOnce;
    handle->failSeeksFrom = failing;
    return handle;
}

// The routine answers with the identifier, and with 0 when any one of its seeks fails, alone or with all later ones.
// Reads deliver one byte each, so that every seek of the routine reaches the handle.
inline void FIExpectEverySeekIsTested(FIProbe probe, std::string_view bytes, FIID answer) {
    const auto working = FIMakeTestHandle(std::string(bytes));
    working->bytesPerRead = 1;
    EXPECT_EQ(FIAnswerOver(probe, *working), answer);
    EXPECT_GT(working->seeks, 0U);
    for (std::uint32_t failing = 0; failing < working->seeks; ++failing) {
        const auto failingOnce = FIMakeHandleFailingOnce(bytes, failing);
        failingOnce->bytesPerRead = 1;
        EXPECT_EQ(FIAnswerOver(probe, *failingOnce), 0) << "seek " << failing << " alone fails";
        const auto failingOn = FIMakeTestHandle(std::string(bytes));
        failingOn->bytesPerRead = 1;
        failingOn->failSeeksFrom = failing;
        EXPECT_EQ(FIAnswerOver(probe, *failingOn), 0) << "seeks fail from " << failing;
    }
}
