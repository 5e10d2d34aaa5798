// The gates of the routines, over every file at hand: where one is closed, its routine answers 0. What each gate looks
// at is tested beside its routine.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core/routines.h"
#include "reader/head.h"
#include "reader/reader.h"
#include "signatures/table.h"
#include "support/open_file.h"
#include "support/ordinary_files.h"
#include "support/skeleton.h"

namespace {

constexpr std::size_t mostBytes = 30000;

// Samples, the files that fuzzing starts from, skeletons, and files of no format.
std::vector<std::string> ReadFiles() {
    std::vector<std::string> files;
    for (const char* const directory : {FIID_SAMPLES_DIR, FIID_SAMPLES_DIR "/../fuzz/seeds"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
            if (!entry.is_regular_file()) continue;
            std::ifstream file(entry.path(), std::ios::binary);
            files.push_back(std::string(std::istreambuf_iterator<char>(file), {}).substr(0, mostBytes));
        }
    }
    for (std::uint16_t row = 1; row <= signatureRowCount; ++row) {
        files.push_back(FIMakeSkeleton(FIFindSignatureRow(row)->signature).bytes);
    }
    for (const std::string& bytes : FIOrdinaryFiles()) files.push_back(bytes.substr(0, mostBytes));
    std::sort(files.begin(), files.end());
    return files;
}

const std::vector<std::string>& Files() {
    static const std::vector<std::string> files = ReadFiles();
    return files;
}

std::string Lengthen(const std::string& bytes, std::size_t size) {
    std::string longer;
    while (!bytes.empty() && longer.size() < size) longer += bytes;
    longer.resize(std::min(longer.size(), size));
    return longer;
}

struct GateCounts {
    std::uint32_t open;
    std::uint32_t closed;
};

// Asks every gate about a file, and runs the routines of those that are closed.
void CheckGates(const std::string& bytes, std::map<std::uint16_t, GateCounts>& counts) {
    const OpenFile file(bytes);
    const auto head = std::make_unique<FIHead>();
    ASSERT_TRUE(FITakeHead(file.File(), *head));
    for (const FIRoutine& routine : FIAllRoutines()) {
        if (routine.gate == nullptr) continue;
        const bool isOpen = routine.gate(*head);
        ++(isOpen ? counts[routine.number].open : counts[routine.number].closed);
        if (isOpen) continue;
        for (const char* const extension : {"", "EML", "TXT"}) {
            FIReader* const reader = FIReaderNew(file.File());
            EXPECT_EQ(FIRunRoutine(routine, *reader, extension), 0)
                << routine.number << " over " << bytes.size() << " bytes";
            FIReaderFree(*reader);
            if (routine.probeWithExtension == nullptr) break;
        }
    }
}

TEST(Gates, AreClosedOnlyWhereTheRoutineAnswers0) {
    std::map<std::uint16_t, GateCounts> counts;
    std::mt19937 generator(64);
    for (std::size_t number = 0; number < Files().size(); ++number) {
        const std::string& bytes = Files()[number];
        CheckGates(bytes, counts);
        for (const std::size_t size : {std::size_t{8191}, std::size_t{8192}, std::size_t{8193}, std::size_t{20000}}) {
            CheckGates(Lengthen(bytes, size), counts);
        }
        for (std::uint32_t round = 0; round < 6 && !bytes.empty(); ++round) {
            std::string damaged = bytes.substr(0, 1 + generator() % bytes.size());
            damaged[generator() % damaged.size()] = static_cast<char>(generator() & 0xFF);
            CheckGates(damaged, counts);
        }
        ASSERT_FALSE(testing::Test::HasFailure()) << "file " << number;
    }
    for (const auto& [number, count] : counts) {
        EXPECT_GT(count.open, 0U) << number;
        EXPECT_GT(count.closed, 0U) << number;
    }
}

}  // namespace
