// routines_bench.cpp - what each special routine adds for a file that it does not claim, and what the whole walk costs.
#include <benchmark/benchmark.h>

#include <random>

#include "bench/benchmarks.h"
#include "core/routines.h"
#include "platform/base_utility.h"
#include "reader/reader.h"
#include "signatures/routine_needs.h"

namespace {

constexpr std::size_t fileBytes = 65536;

// Bytes that no row and no routine claims: printable characters behind a first byte that starts no signature.
const std::string& UnclaimedBytes() {
    static const std::string bytes = [] {
        std::mt19937 random(20260101);
        std::uniform_int_distribution<int> character(0x21, 0x7E);
        std::string text = "\x03";
        while (text.size() < fileBytes) text += static_cast<char>(character(random));
        return text;
    }();
    return bytes;
}

HIOFILE OpenUnclaimed() {
    const IOMemorySpec memory = {UnclaimedBytes().data(), UnclaimedBytes().size(), "file.bin"};
    HIOFILE handle = nullptr;
    IOOpen(&handle, IOSpecMemory, &memory, IOOpenRead);
    return handle;
}

void MeasureRoutine(benchmark::State& state, const FIRoutine* routine) {
    const HIOFILE handle = OpenUnclaimed();
    FIReader* const reader = FIReaderNew(handle);
    for (auto _ : state) {
        FIReaderSeek(*reader, 0);
        benchmark::DoNotOptimize(FIRunRoutine(*routine, *reader, "BIN"));
    }
    FIReaderFree(*reader);
    handle->operations.IOClose(handle);
}

void MeasureWalk(benchmark::State& state) {
    const HIOFILE handle = OpenUnclaimed();
    for (auto _ : state) {
        FIID fiid = 0;
        benchmark::DoNotOptimize(FIIdHandle(handle, FIFlagExtendedText, &fiid));
    }
    handle->operations.IOClose(handle);
}

}  // namespace

void RegisterRoutines() {
    benchmark::RegisterBenchmark("walk/unclaimed", MeasureWalk);
    for (const FIRoutineNeeds& routine : routineNeeds) {
        benchmark::RegisterBenchmark(("routine/" + std::to_string(routine.number)).c_str(), MeasureRoutine,
                                     FIFindRoutine(routine.number));
    }
}
