// The walk by the file's head and the plain one, over every file at hand and every kind of handle: one answer, one row.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "platform/base_utility.h"
#include "platform/handle.h"
#include "signatures/table.h"
#include "support/open_file.h"
#include "support/ordinary_files.h"
#include "support/probe_case.h"
#include "support/skeleton.h"
#include "support/storage_writer.h"

namespace {

// Samples and the files that fuzzing starts from.
std::vector<std::string> Paths() {
    std::vector<std::string> paths;
    for (const char* const directory : {FIID_SAMPLES_DIR, FIID_SAMPLES_DIR "/../fuzz/seeds"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
            if (entry.is_regular_file()) paths.push_back(entry.path().string());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

HIOFILE Open(std::uint32_t type, const void* specification) {
    HIOFILE file = nullptr;
    EXPECT_EQ(IOOpen(&file, type, specification, IOOpenRead), 0);
    return file;
}

void ExpectSame(const FIVerdict& verdict, const FIVerdict& expected, const std::string& what) {
    EXPECT_EQ(verdict.fiid, expected.fiid) << what;
    EXPECT_EQ(verdict.row, expected.row) << what;
}

// Over memory both ways, and over a host's handle, which has no head.
FIVerdict IdentifyEverywhere(const std::string& bytes, const std::string& name, const std::string& what) {
    SCOPED_TRACE(what);
    FIVerdict verdict = {0, 0};
    verdict.fiid = FIIdentifyBytes(bytes, name.c_str(), FIFlagExtendedText, &verdict.row);
    const auto host = FIMakeTestHandle(bytes, name);
    const HIOFILE over = Open(IOSpecHandle, FIFileOf(*host));
    ExpectSame(FIIdentifyBothWays(over), verdict, "over a host's handle");
    FICloseFile(over);
    return verdict;
}

TEST(Walks, AreOneOverEveryFile) {
    const std::vector<std::string> paths = Paths();
    ASSERT_GT(paths.size(), 600U);
    for (const std::string& path : paths) {
        const FIVerdict verdict =
            IdentifyEverywhere(ReadFile(path), std::filesystem::path(path).filename().string(), path);
        const HIOFILE file = Open(IOSpecNarrow, path.c_str());
        ExpectSame(FIIdentifyBothWays(file), verdict, path + " as a file");
        FICloseFile(file);
    }
}

// Cut at both sides of the sizes that the reader, the blocks and the head have.
TEST(Walks, AreOneOverFilesCutAnywhere) {
    constexpr std::size_t sizes[] = {0,   1,   2,    3,    4,    5,    63,   64,   65,  511,
                                     512, 513, 2047, 2048, 2049, 4096, 8191, 8192, 8193};
    for (const std::string& path : Paths()) {
        const std::string bytes = ReadFile(path);
        for (const std::size_t size : sizes) {
            if (size >= bytes.size()) break;
            static_cast<void>(FIIdentifyBytes(bytes.substr(0, size), path.c_str()));
            ASSERT_FALSE(testing::Test::HasFailure()) << path << " cut to " << size;
        }
    }
}

// Over and over, so that the file goes on behind its head.
TEST(Walks, AreOneOverFilesLongerThanTheirHead) {
    for (const std::string& path : Paths()) {
        const std::string bytes = ReadFile(path).substr(0, 30000);
        std::string longer;
        while (!bytes.empty() && longer.size() < 25000) longer += bytes;
        for (const std::size_t size : {std::size_t{8191}, std::size_t{8192}, std::size_t{8193}, std::size_t{25000}}) {
            static_cast<void>(FIIdentifyBytes(longer.substr(0, size), path.c_str()));
            ASSERT_FALSE(testing::Test::HasFailure()) << path << " for " << size << " bytes";
        }
    }
}

// Skeletons as plain files and, of those of storages, in a storage with their class identifier.
TEST(Walks, AreOneOverSkeletons) {
    for (std::uint16_t row = 1; row <= signatureRowCount; ++row) {
        const Skeleton skeleton = FIMakeSkeleton(FIFindSignatureRow(row)->signature);
        std::string bytes = skeleton.bytes;
        if (skeleton.isStorage) {
            StorageWriter writer;
            writer.SetClassId(skeleton.classId);
            writer.AddStream(u"Contents", "contents");
            bytes = writer.Write().bytes;
        }
        for (const char* const tail : {"", "\n", "x"}) {
            static_cast<void>(IdentifyEverywhere(bytes + tail, skeleton.name, "row " + std::to_string(row)));
        }
    }
}

// A few bytes of a file are others: a good part of the rows and routines is then met without fitting.
TEST(Walks, AreOneOverDamagedFiles) {
    std::mt19937 generator(404);
    std::vector<std::string> files;
    for (const std::string& path : Paths()) files.push_back(ReadFile(path).substr(0, 20000));
    for (std::uint16_t row = 1; row <= signatureRowCount; ++row) {
        files.push_back(FIMakeSkeleton(FIFindSignatureRow(row)->signature).bytes);
    }
    for (const std::string& bytes : FIOrdinaryFiles()) files.push_back(bytes.substr(0, 10000));
    for (std::size_t number = 0; number < files.size(); ++number) {
        for (std::uint32_t round = 0; round < 6; ++round) {
            std::string bytes = files[number];
            const std::size_t start = std::min<std::size_t>(bytes.size(), round % 2 == 0 ? 16 : 9000);
            for (std::uint32_t change = 0; change < 1 + round && start > 0; ++change) {
                bytes[generator() % start] = static_cast<char>(generator() & 0xFF);
            }
            static_cast<void>(FIIdentifyBytes(bytes));
            ASSERT_FALSE(testing::Test::HasFailure()) << "file " << number << " round " << round;
        }
    }
}

TEST(Walks, AreOneOverRandomBytesOfEverySize) {
    std::mt19937 generator(8192);
    for (const std::uint32_t values : {256U, 128U, 32U, 3U}) {
        for (std::uint32_t round = 0; round < 200; ++round) {
            std::string bytes(round < 100 ? round : generator() % 20000, '\0');
            for (char& byte : bytes) byte = static_cast<char>(generator() % values);
            static_cast<void>(FIIdentifyBytes(bytes));
            ASSERT_FALSE(testing::Test::HasFailure()) << values << " values, " << bytes.size() << " bytes";
        }
    }
}

// A handle of the platform layer delivers a line feed behind very many reads in vain in a row. What comes from the head
// is no read of the handle's, so that in one walk those of all routines add up: they have to stay far below.
TEST(Walks, AskInVainBySmallNumbers) {
    constexpr std::uint32_t most = 1000;  // of 65,536
    for (const std::string& path : Paths()) {
        if (ReadFile(path).starts_with("<MIFFile")) continue;  // its routine has no test for the end
        const HIOFILE file = Open(IOSpecNarrow, path.c_str());
        FIVerdict verdict = {0, 0};
        EXPECT_EQ(FIIdHandleWithRow(file, FIFlagExtendedText, verdict), 0);
        EXPECT_LT(UTFindHandle(file)->vainReads, most) << path;
        FICloseFile(file);
    }
}

}  // namespace
