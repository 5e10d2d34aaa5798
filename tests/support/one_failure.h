// one_failure.h - a test handle of which one seek or one read fails, to see which failures a routine heeds.
//
// A reader whose seek failed tries again at its next refill, and that seek works here. So a routine that overlooks the
// status goes on as if nothing had happened, and its answer shows it. At one byte per read nearly every seek reaches
// the handle, in the routine's own order.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/probe_case.h"
#include "support/test_handle.h"

// Which call fails, and the operations that work. One handle at a time.
struct OneFailure {
    static inline std::uint32_t number = testNever;
    static inline decltype(IOOperations::IOSeek) seek = nullptr;
    static inline decltype(IOOperations::IORead) read = nullptr;
};

inline std::int32_t FISeekOrFail(HIOFILE file, std::uint16_t origin, std::int32_t offset) {
    TestHandle& handle = *reinterpret_cast<TestHandle*>(file);  // a TestHandle starts with its IOFile
    if (handle.seeks != OneFailure::number) return OneFailure::seek(file, origin, offset);
    ++handle.seeks;
    return -1;
}

inline std::int32_t FIReadOrFail(HIOFILE file, void* destination, std::uint32_t size, std::uint32_t* count) {
    TestHandle& handle = *reinterpret_cast<TestHandle*>(file);
    if (handle.reads != OneFailure::number) return OneFailure::read(file, destination, size, count);
    ++handle.reads;
    *count = 0;
    return -1;
}

// The handle's seek with this number, counted from 0, fails, and no other.
inline void FIFailOneSeek(TestHandle& handle, std::uint32_t number) {
    OneFailure::number = number;
    OneFailure::seek = handle.file.operations.IOSeek;
    handle.file.operations.IOSeek = FISeekOrFail;
}

// The same for its reads.
inline void FIFailOneRead(TestHandle& handle, std::uint32_t number) {
    OneFailure::number = number;
    OneFailure::read = handle.file.operations.IORead;
    handle.file.operations.IORead = FIReadOrFail;
}

// The answer of a routine when one seek fails, its reads delivering one byte each. The seek that places the reader at a
// start above 0 is number 0.
inline FIID FIAnswerWithFailedSeek(FIProbe probe, std::string_view bytes, std::uint32_t number,
                                   std::uint32_t start = 0) {
    const auto handle = FIMakeTestHandle(std::string(bytes));
    handle->bytesPerRead = 1;
    FIFailOneSeek(*handle, number);
    return FIAnswerOver(probe, *handle, start);
}
