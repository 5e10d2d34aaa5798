// families_bench.cpp - the cost of identifying real files, family by family, beside the least that opening one costs.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>

#include "bench/benchmarks.h"
#include "core/driver.h"
#include "platform/base_utility.h"
#include "signatures/table.h"

namespace {

using Paths = std::vector<std::string>;

constexpr std::uint16_t packageRoutine = 1802;
constexpr std::uint16_t markupRoutine = 1190;

std::string FamilyOf(bool storage, std::uint16_t row) {
    if (storage) return "storage";
    if (row == 0) return "text_or_unknown";
    const FIRowResult result = FIFindSignatureRow(row)->result;
    if (result.opcode == FIOpcode::Id) return "signature_row";
    if (result.number == packageRoutine) return "package";
    if (result.number == markupRoutine) return "markup";
    return "other_routine";
}

void AddToFamily(const std::string& path, std::map<std::string, Paths>& families) {
    HIOFILE handle = nullptr;
    if (IOOpen(&handle, IOSpecNarrow, path.c_str(), IOOpenRead) != 0) return;
    const bool storage = handle->operations.IOGetInfo(handle, IOInfoIsStorage, nullptr) == 0;
    FIVerdict verdict = {0, 0};
    FIIdHandleWithRow(handle, FIFlagExtendedText, verdict);
    handle->operations.IOClose(handle);
    families[FamilyOf(storage, verdict.row)].push_back(path);
}

void OpenAndRead(const std::string& path) {
    char block[4096];
    struct stat status = {};
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    benchmark::DoNotOptimize(fstat(descriptor, &status));
    benchmark::DoNotOptimize(read(descriptor, block, sizeof(block)));
    close(descriptor);
}

void Identify(const std::string& path) {
    FIID fiid = 0;
    benchmark::DoNotOptimize(FIIdFile(IOSpecNarrow, path.c_str(), FIFlagExtendedText, &fiid));
}

void MeasureFloor(benchmark::State& state, const Paths& paths) {
    for (auto _ : state) {
        for (const std::string& path : paths) OpenAndRead(path);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(paths.size()));
}

void MeasureIdentify(benchmark::State& state, const Paths& paths) {
    for (auto _ : state) {
        for (const std::string& path : paths) Identify(path);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(paths.size()));
}

// The shortest time of a step over a path in a number of rounds, in nanoseconds.
double ShortestTime(void (*step)(const std::string&), const std::string& path) {
    constexpr int rounds = 40;
    double shortest = 1e18;
    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        step(path);
        const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - start;
        shortest = std::min(shortest, time.count());
    }
    return shortest;
}

std::map<std::string, Paths> SortIntoFamilies(const std::vector<std::string>& directories) {
    std::map<std::string, Paths> families;
    for (const std::string& directory : directories) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
            if (entry.is_regular_file()) AddToFamily(entry.path().string(), families);
        }
    }
    return families;
}

}  // namespace

void PrintFileRatios(const std::vector<std::string>& directories) {
    std::printf("| family | files | median ratio | 90 %% of the files below |\n|---|---|---|---|\n");
    for (const auto& [family, paths] : SortIntoFamilies(directories)) {
        std::vector<double> ratios;
        for (const std::string& path : paths) {
            ratios.push_back(ShortestTime(Identify, path) / ShortestTime(OpenAndRead, path));
        }
        std::sort(ratios.begin(), ratios.end());
        std::printf("| %s | %zu | %.2f | %.2f |\n", family.c_str(), ratios.size(), ratios[ratios.size() / 2],
                    ratios[ratios.size() * 9 / 10]);
    }
}

void RegisterFamilies(const std::vector<std::string>& directories) {
    static const std::map<std::string, Paths> families = SortIntoFamilies(directories);
    for (const auto& family : families) {
        const Paths& paths = family.second;
        const std::string label = family.first + "/files:" + std::to_string(paths.size());
        benchmark::RegisterBenchmark(("floor/" + label).c_str(), MeasureFloor, paths);
        benchmark::RegisterBenchmark(("identify/" + label).c_str(), MeasureIdentify, paths);
    }
}
