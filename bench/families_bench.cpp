// families_bench.cpp - the cost of identifying real files, family by family, beside the least that opening one costs.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
    if (IOOpen(&handle, IOSpecNarrow, path.c_str(), 1) != 0) return;
    const bool storage = handle->operations.IOGetInfo(handle, IOInfoIsStorage, nullptr) == 0;
    FIVerdict verdict = {0, 0};
    FIIdHandleWithRow(handle, FIFlagExtendedText, verdict);
    handle->operations.IOClose(handle);
    families[FamilyOf(storage, verdict.row)].push_back(path);
}

void MeasureFloor(benchmark::State& state, const Paths& paths) {
    char block[4096];
    for (auto _ : state) {
        for (const std::string& path : paths) {
            struct stat status = {};
            const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
            benchmark::DoNotOptimize(fstat(descriptor, &status));
            benchmark::DoNotOptimize(read(descriptor, block, sizeof(block)));
            close(descriptor);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(paths.size()));
}

void MeasureIdentify(benchmark::State& state, const Paths& paths) {
    for (auto _ : state) {
        for (const std::string& path : paths) {
            FIID fiid = 0;
            benchmark::DoNotOptimize(FIIdFile(IOSpecNarrow, path.c_str(), FIFlagExtendedText, &fiid));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(paths.size()));
}

}  // namespace

void RegisterFamilies(const std::vector<std::string>& directories) {
    static std::map<std::string, Paths> families;
    for (const std::string& directory : directories) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
            if (entry.is_regular_file()) AddToFamily(entry.path().string(), families);
        }
    }
    for (const auto& family : families) {
        const Paths& paths = family.second;
        const std::string label = family.first + "/files:" + std::to_string(paths.size());
        benchmark::RegisterBenchmark(("floor/" + label).c_str(), MeasureFloor, paths);
        benchmark::RegisterBenchmark(("identify/" + label).c_str(), MeasureIdentify, paths);
    }
}
