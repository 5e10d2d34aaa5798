// main.cpp - the benchmark program: fiid_bench [ratios] DIRECTORY... [--benchmark_...]
#include <benchmark/benchmark.h>

#include "bench/benchmarks.h"
#include "fiid.h"

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const std::vector<std::string> directories(argv + 1, argv + argc);
    FIInit(nullptr);
    if (!directories.empty() && directories.front() == "ratios") {
        PrintFileRatios({directories.begin() + 1, directories.end()});
        FIDeInit(nullptr);
        return 0;
    }
    RegisterFamilies(directories);
    RegisterRoutines();
    benchmark::RunSpecifiedBenchmarks();
    FIDeInit(nullptr);
    return 0;
}
