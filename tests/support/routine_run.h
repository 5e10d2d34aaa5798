// routine_run.h - what a routine does over a host's handle, to set two of them against each other.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

#include "reader/reader.h"
#include "support/random_numbers.h"
#include "support/test_handle.h"

struct RoutineRun {
    FIID answer;
    std::uint32_t place;  // of the reader behind it
    std::uint32_t reads;
    std::uint32_t seeks;
    std::uint32_t tells;
    bool operator==(const RoutineRun&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const RoutineRun& run) {
    return out << run.answer << " at " << run.place << " behind " << run.reads << " reads, " << run.seeks << " seeks, "
               << run.tells << " tells";
}

// How awkward a handle is.
struct RoutineHandle {
    std::uint32_t bytesPerRead = testNever;
    std::uint32_t failReadsFrom = testNever;
    std::uint32_t failSeeksFrom = testNever;
};

inline RoutineHandle FISomeHandle(RandomNumbers& random) {
    RoutineHandle handle;
    if (random.OneIn(3)) handle.bytesPerRead = random.Below(random.OneIn(2) ? 40 : 3000) + 1;
    if (random.OneIn(8)) handle.failReadsFrom = random.Below(8);
    if (random.OneIn(16)) handle.failSeeksFrom = random.Below(4);
    return handle;
}

template <typename Routine>
RoutineRun FIRunOver(Routine routine, const std::string& file, const RoutineHandle& awkward = {}) {
    const auto handle = FIMakeTestHandle(file);
    handle->bytesPerRead = awkward.bytesPerRead;
    handle->failReadsFrom = awkward.failReadsFrom;
    handle->failSeeksFrom = awkward.failSeeksFrom;
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    const FIID answer = routine(reader);
    return {answer, FIReaderTell(reader), handle->reads, handle->seeks, handle->tells};
}
