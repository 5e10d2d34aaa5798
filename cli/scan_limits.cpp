// scan_limits.cpp - weighs threads against descriptors, and tasks against memory.
#include "cli/scan_limits.h"

#include <sys/resource.h>

#include <algorithm>

namespace {

constexpr std::size_t batchTasks = 64;
// A task with its record and what is written of it takes some 1.5 KB.
constexpr std::size_t tasksUnderWay = 8192;
// Far down in a tree paths are of a megabyte each, and what is written of one takes up to eight times that.
constexpr std::size_t pathBytesUnderWay = std::size_t{2} << 20;

// Standard input, output and error, both ends of the pipe for signals, a list of paths, a temporary file.
constexpr std::uint64_t descriptorsOfProgram = 7;
constexpr std::uint64_t descriptorsOfStore = 4;   // the store, its log and index, the lock
constexpr std::uint64_t descriptorsOfThread = 2;  // a stream and its copy
constexpr std::uint64_t descriptorsOfReader = 2;  // the store and its log

// Half of all is for the directories of the walk.
std::uint64_t ThreadsWithin(const ScanNeeds& needs) {
    const std::uint64_t taken = descriptorsOfProgram + (needs.readsStore ? descriptorsOfStore : 0);
    const std::uint64_t ofEach = descriptorsOfThread + (needs.readsStore ? descriptorsOfReader : 0);
    const std::uint64_t left = needs.descriptors - needs.descriptors / 2;
    return left > taken ? (left - taken) / ofEach : 0;
}

}  // namespace

OrderedLimits LimitsOfScan(const ScanNeeds& needs) {
    OrderedLimits limits;
    limits.threads = static_cast<unsigned>(std::clamp<std::uint64_t>(ThreadsWithin(needs), 1, needs.jobs));
    limits.batches = 4 * std::size_t{limits.threads} + 2;
    limits.batchTasks = needs.oneByOne ? 1 : std::clamp<std::size_t>(tasksUnderWay / limits.batches, 1, batchTasks);
    limits.weight = pathBytesUnderWay;
    return limits;
}

std::uint64_t DescriptorsOfProcess() {
    rlimit limit = {};
    return getrlimit(RLIMIT_NOFILE, &limit) == 0 ? std::uint64_t{limit.rlim_cur} : UINT64_MAX;
}
