// failing_seeks.h - answers over handles of which seeks fail, to see which failures a routine heeds.
//
// A seek that fails once leaves the reader with its target, and the next refill seeks there again. So a routine that
// overlooked the status sees the same bytes as ever, and its answer shows it. At one byte per read nearly every seek
// reaches the handle, in the routine's own order.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "support/probe_case.h"

// A handle over bytes whose seek with the number failing, counted from 0, fails, and no other.
inline std::unique_ptr<TestHandle> FIMakeHandleFailingOnce(std::string_view bytes, std::uint32_t failing) {
    auto handle = FIMakeTestHandle(std::string(bytes));
    handle->failSeek = failing;
    return handle;
}

// The answer of a routine when one seek fails, its reads delivering one byte each. The seek that places the reader at a
// start above 0 is number 0.
inline FIID FIAnswerWithFailedSeek(FIProbe probe, std::string_view bytes, std::uint32_t failing,
                                   std::uint32_t start = 0) {
    const auto handle = FIMakeHandleFailingOnce(bytes, failing);
    handle->bytesPerRead = 1;
    return FIAnswerOver(probe, *handle, start);
}

// The answer of a routine when seeks fail from one on.
inline FIID FIAnswerWhenSeeksFailFrom(FIProbe probe, std::string_view bytes, std::uint32_t failing,
                                      std::uint32_t bytesPerRead = testNever) {
    const auto handle = FIMakeTestHandle(std::string(bytes));
    handle->failSeeksFrom = failing;
    handle->bytesPerRead = bytesPerRead;
    return FIAnswerOver(probe, *handle);
}

// The routine answers with the identifier, and with 0 when any one of its seeks fails, alone or with all later ones.
// Reads deliver one byte each.
inline void FIExpectEverySeekIsTested(FIProbe probe, std::string_view bytes, FIID answer) {
    const auto working = FIMakeTestHandle(std::string(bytes));
    working->bytesPerRead = 1;
    EXPECT_EQ(FIAnswerOver(probe, *working), answer);
    EXPECT_GT(working->seeks, 0U);
    for (std::uint32_t failing = 0; failing < working->seeks; ++failing) {
        EXPECT_EQ(FIAnswerWithFailedSeek(probe, bytes, failing), 0) << "seek " << failing << " alone fails";
        EXPECT_EQ(FIAnswerWhenSeeksFailFrom(probe, bytes, failing, 1), 0) << "seeks fail from " << failing;
    }
}
