// scan_limits.h - how much of a scan is under way at the same time.
#pragma once

#include <cstddef>
#include <cstdint>

#include "scan/ordered_work.h"

// What limits depend on.
struct ScanNeeds {
    unsigned jobs = 1;                       // threads that were asked for
    bool oneByOne = false;                   // whoever writes paths waits for the record of one before the next
    bool readsStore = false;                 // each thread has a reader of a store
    std::uint64_t descriptors = UINT64_MAX;  // that the process may have
};

// So many threads, at least one, that their files can all be open at the same time, and so many tasks, that their records
// fit in some 10 MB whatever the number of threads. The weight is in bytes of paths.
OrderedLimits LimitsOfScan(const ScanNeeds& needs);

// How many descriptors the process may have.
std::uint64_t DescriptorsOfProcess();
