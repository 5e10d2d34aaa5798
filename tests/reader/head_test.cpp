// The head: which handles hand it out and what it tells, and the walks over its masks.
#include "reader/head.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <random>
#include <vector>

#include "platform/base_utility.h"
#include "support/open_file.h"
#include "support/open_handle.h"
#include "support/storage_writer.h"
#include "support/test_handle.h"
#include "support/zip_writer.h"

namespace {

constexpr std::size_t sizes[] = {0, 1, 63, 64, 65, 127, 128, 2048, 8191, 8192, 8193, 20000};

std::string RandomBytes(std::size_t size, std::uint32_t values = 256) {
    std::mt19937 generator(static_cast<std::uint32_t>(size) + values);
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(generator() % values);
    return bytes;
}

// The head of a handle, which must have one, against the bytes that reads deliver.
void ExpectHead(HIOFILE file, const std::string& bytes) {
    ASSERT_EQ(file->operations.IOSeek(file, IOOriginStart, 5), 0);
    const auto head = std::make_unique<FIHead>();
    ASSERT_TRUE(FITakeHead(file, *head));
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(head->bytes), head->size), bytes.substr(0, 8192));
    EXPECT_EQ(head->fileSize, bytes.size());
    EXPECT_EQ(FIHeadIsWhole(*head), bytes.size() <= 8192);
    EXPECT_EQ(head->maskedBytes, 0U);
    std::uint32_t position = 0;
    EXPECT_EQ(file->operations.IOTell(file, &position), 0);
    EXPECT_EQ(position, 5U) << "the handle was moved";
}

void ExpectNoHead(HIOFILE file) {
    ASSERT_NE(file, nullptr);
    const auto head = std::make_unique<FIHead>();
    EXPECT_FALSE(FITakeHead(file, *head));
}

TEST(Head, OfAMemoryHandle) {
    for (const std::size_t size : sizes) {
        SCOPED_TRACE(size);
        const OpenFile file(RandomBytes(size));
        ExpectHead(file.File(), RandomBytes(size));
    }
}

TEST(Head, OfAPathAndOfADescriptor) {
    const std::string path = testing::TempDir() + "fiid-head-" + std::to_string(getpid());
    for (const std::size_t size : sizes) {
        SCOPED_TRACE(size);
        std::ofstream(path, std::ios::binary) << RandomBytes(size);
        HIOFILE file = nullptr;
        ASSERT_EQ(IOOpen(&file, IOSpecNarrow, path.c_str(), IOOpenRead), 0);
        ExpectHead(file, RandomBytes(size));
        FICloseFile(file);

        std::FILE* const stream = std::fopen(path.c_str(), "rb");
        const IODescriptorSpec specification = {fileno(stream), nullptr};
        ASSERT_EQ(IOOpen(&file, IOSpecDescriptor, &specification, IOOpenRead), 0);
        ExpectHead(file, RandomBytes(size));
        FICloseFile(file);
        std::fclose(stream);
        std::remove(path.c_str());
    }
}

TEST(Head, IsTheSameBehindReads) {
    const OpenFile file(RandomBytes(9000));
    EXPECT_EQ(FIReadAll(file.File()).bytes, RandomBytes(9000));
    ExpectHead(file.File(), RandomBytes(9000));
}

TEST(NoHead, OfAHostsHandleOrOneOpenedOverIt) {
    const auto host = FIMakeTestHandle(RandomBytes(100));
    ExpectNoHead(FIFileOf(*host));
    EXPECT_EQ(host->reads + host->seeks + host->tells + host->infos, 0U);
    const OpenHandle over = FIOpenOver(*host);
    ExpectNoHead(over.File());
}

TEST(NoHead, OfNothing) {
    const auto head = std::make_unique<FIHead>();
    EXPECT_FALSE(FITakeHead(nullptr, *head));
}

// What is opened in a handle has none, though the handle has one.
TEST(NoHead, OfStreamsAndStoragesInAStorage) {
    StorageWriter writer;
    writer.AddStream(u"stream", std::string(5000, 's'));
    writer.AddStorage(u"storage");
    const std::string bytes = writer.Write().bytes;
    const OpenHandle file = FIOpenBytes(bytes);
    ExpectHead(file.File(), bytes);
    ExpectNoHead(file.Stream("stream").File());
    ExpectNoHead(file.Storage("storage").File());
}

TEST(NoHead, OfAStretch) {
    const std::string bytes = RandomBytes(3000);
    const OpenHandle file = FIOpenBytes(bytes);
    const IOSubRangeSpec specification = {file.File(), 0, 2000};
    HIOFILE stretch = nullptr;
    ASSERT_EQ(file.File()->operations.IOOpenSub(&stretch, IOSUB_RANGE, &specification, IOSubOpenRead), 0);
    ExpectNoHead(stretch);
    FICloseFile(stretch);
}

TEST(NoHead, OfAnArchiveAndItsMembers) {
    const OpenFile file(FIWriteZip({{.name = "member", .bytes = RandomBytes(500)}}));
    const HIOFILE archive = FIOpenArchive(file.File());
    ExpectNoHead(archive);
    const HIOFILE member = FIOpenMember(archive, "member");
    ExpectNoHead(member);
    FICloseFile(member);
    FICloseFile(archive);
}

// ---- Masks ----------------------------------------------------------------------------------------------------------

// A head over bytes, which must outlive it.
std::unique_ptr<FIHead> HeadOf(const std::string& bytes, std::uint64_t fileSize) {
    auto head = std::make_unique<FIHead>();
    std::memset(&head->masks, 0x55, sizeof(head->masks));
    head->bytes = reinterpret_cast<const std::uint8_t*>(bytes.data());
    head->size = static_cast<std::uint32_t>(bytes.size());
    head->fileSize = fileSize;
    head->maskedBytes = 0;
    return head;
}

bool IsHigh(char byte) { return static_cast<std::uint8_t>(byte) >= 0x80; }

bool IsHardControl(char byte) {
    const auto value = static_cast<std::uint8_t>(byte);
    return value < 0x20 && (value < 0x08 || value > 0x0D);
}

TEST(Head, IsWholeWhenTheFileIsNoLarger) {
    const std::string bytes(100, 'x');
    EXPECT_TRUE(FIHeadIsWhole(*HeadOf(bytes, 100)));
    EXPECT_FALSE(FIHeadIsWhole(*HeadOf(bytes, 101)));
    EXPECT_FALSE(FIHeadIsWhole(*HeadOf(bytes, UINT64_MAX)));
}

TEST(HeadMasks, AreMadeOnceAndAsFarAsIsAsked) {
    const std::string bytes(200, '\n');
    const auto head = HeadOf(bytes, bytes.size());
    constexpr std::uint32_t asked[][2] = {{0, 0},   {1, 64},    {64, 64},   {65, 128},
                                          {2, 128}, {129, 192}, {200, 256}, {9999, 256}};
    for (const auto& [count, masked] : asked) {
        FIMaskHead(*head, count);
        EXPECT_EQ(head->maskedBytes, masked) << count;
    }
    for (std::uint32_t block = 0; block < 3; ++block) EXPECT_EQ(head->masks[block].lf, ~std::uint64_t{0});
    EXPECT_EQ(head->masks[4].lf, 0x5555555555555555U) << "behind the head";
    head->masks[0].lf = 77;
    FIMaskHead(*head, 9999);
    EXPECT_EQ(head->masks[0].lf, 77U);
}

// Behind the head nothing is read, and the bits there are of no class.
TEST(HeadMasks, OfTheLastBlockEndWithTheHead) {
    for (std::uint32_t size = 0; size <= 130; ++size) {
        const std::string longer(200, '\xFF');
        for (const char byte : {'\0', '\n', '\r', '\x1F', '\xFF'}) {
            std::string bytes = longer;
            std::fill_n(bytes.begin(), size, byte);
            const auto head = HeadOf(bytes, size);
            head->size = size;
            FIMaskHead(*head, size);
            const std::uint32_t block = size / byteMaskSpan;
            if (size % byteMaskSpan == 0) continue;
            const std::uint64_t all = (std::uint64_t{1} << size % byteMaskSpan) - 1;
            const FIByteMasks& masks = head->masks[block];
            EXPECT_EQ(masks.low, byte != '\xFF' ? all : 0) << size;
            EXPECT_EQ(masks.soft, byte == '\n' || byte == '\r' ? all : 0) << size;
            EXPECT_EQ(masks.lf, byte == '\n' ? all : 0) << size;
            EXPECT_EQ(masks.cr, byte == '\r' ? all : 0) << size;
            EXPECT_EQ(masks.high, byte == '\xFF' ? all : 0) << size;
        }
    }
}

// The walks against a step for each byte, at both sides of each limit.
TEST(HeadWalks, TellWhatAStepForEachByteTells) {
    for (const std::size_t size : {0, 1, 63, 64, 65, 127, 128, 129, 8191, 8192}) {
        for (const std::uint32_t rareness : {1U, 50U, 3000U, 1000000U}) {
            std::mt19937 generator(static_cast<std::uint32_t>(size) * 7 + rareness);
            std::string bytes(size, ' ');
            for (char& byte : bytes) {
                if (generator() % rareness == 0) byte = static_cast<char>(generator() & 0xFF);
            }
            for (const std::uint32_t asked :
                 {0U, 1U, 62U, 63U, 64U, 65U, 128U, 8190U, 8191U, 8192U, 8193U, UINT32_MAX}) {
                SCOPED_TRACE(testing::Message() << size << " " << rareness << " " << asked);
                const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(asked, size));
                const auto head = HeadOf(bytes, size);
                const auto countHigh = static_cast<std::uint32_t>(std::count_if(bytes.begin(), end, IsHigh));
                const auto firstHigh =
                    static_cast<std::uint32_t>(std::find_if(bytes.begin(), end, IsHigh) - bytes.begin());
                EXPECT_EQ(FICountInHead(*head, asked, FIHighBytes), countHigh);
                EXPECT_EQ(FIFirstInHead(*head, asked, FIHighBytes), firstHigh);
                EXPECT_EQ(FIAnyInHead(*head, asked, FIHighBytes), countHigh > 0);
                EXPECT_EQ(FICountInHead(*head, asked, FIHardControls),
                          std::count_if(bytes.begin(), end, IsHardControl));
                const auto every = [](const FIByteMasks&) { return ~std::uint64_t{0}; };
                EXPECT_EQ(FICountInHead(*head, asked, every), end - bytes.begin()) << "no more than was asked for";
            }
        }
    }
}

TEST(HeadWalks, EndWhenTheVisitSaysSo) {
    const std::string bytes(300, '\n');
    const auto head = HeadOf(bytes, bytes.size());
    std::vector<std::uint32_t> starts;
    const auto pick = [](const FIByteMasks& masks) { return masks.lf; };
    EXPECT_TRUE(FIVisitHead(*head, 300, pick, [&](std::uint64_t bits, std::uint32_t start) {
        EXPECT_EQ(bits, ~std::uint64_t{0});
        starts.push_back(start);
        return start == 128;
    }));
    EXPECT_EQ(starts, (std::vector<std::uint32_t>{0, 64, 128}));
    EXPECT_FALSE(FIVisitHead(*head, 300, pick, [](std::uint64_t, std::uint32_t) { return false; }));
    EXPECT_FALSE(FIVisitHead(*head, 0, pick, [](std::uint64_t, std::uint32_t) { return true; }));
}

}  // namespace
