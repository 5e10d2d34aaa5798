// seek_failures.h - answers over handles whose seeks fail: from one on, or the first one alone.
#pragma once

#include <cstdint>

#include "first_seek.h"
#include "support/probe_case.h"

// The answer over a handle whose seeks fail from the given one on, and which delivers few bytes a read if told so.
inline FIID FIAnswerWhenSeeksFailFrom(FIProbe probe, const char* notation, std::uint32_t failing,
                                      std::uint32_t bytesPerRead = testNever) {
    const auto handle = FIMakeTestHandle(FIBytes(notation));
    handle->failSeeksFrom = failing;
    handle->bytesPerRead = bytesPerRead;
    return FIAnswerOver(probe, *handle);
}

inline FIID FIAnswerWhenTheFirstSeekFails(FIProbe probe, const char* notation) {
    const auto handle = FIMakeTestHandle(FIBytes(notation));
    FIFailFirstSeek(*handle);
    return FIAnswerOver(probe, *handle);
}
