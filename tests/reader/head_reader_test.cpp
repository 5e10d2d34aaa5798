// A reader that takes its bytes from the head against one over a host's handle, which has none: the same results for
// every sequence of what readers do.
#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "platform/base_utility.h"
#include "reader/file_end.h"
#include "reader/handle_block.h"
#include "reader/head.h"
#include "reader/reader.h"
#include "support/open_file.h"
#include "support/test_handle.h"

namespace {

constexpr std::size_t sizes[] = {0,    1,    2,    3,    5,    2047, 2048, 2049,  4095,  4096,  4097, 6144,
                                 8190, 8191, 8192, 8193, 8194, 8200, 9999, 10239, 10240, 10241, 40000};

std::string RandomBytes(std::size_t size) {
    std::mt19937 generator(static_cast<std::uint32_t>(size));
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(generator() & 0xFF);
    return bytes;
}

// The two readers over the same bytes.
class TwoReaders {
 public:
    explicit TwoReaders(const std::string& bytes) : file_(bytes), host_(FIMakeTestHandle(bytes)) {
        EXPECT_TRUE(FITakeHead(file_.File(), *head_));
        withHead_ = FIReaderNew(file_.File(), head_.get());
        plain_ = FIReaderNew(FIFileOf(*host_));
        EXPECT_EQ(FIReaderHead(*withHead_), head_.get());
        EXPECT_EQ(FIReaderHead(*plain_), nullptr);
    }
    ~TwoReaders() {
        EXPECT_EQ(FIReaderFree(*withHead_), file_.File());
        EXPECT_EQ(FIReaderFree(*plain_), FIFileOf(*host_));
    }
    TwoReaders(const TwoReaders&) = delete;
    TwoReaders& operator=(const TwoReaders&) = delete;

    // Runs the same over both and compares the results.
    template <typename Run>
    auto Both(Run run) {
        const auto result = run(*withHead_);
        EXPECT_EQ(result, run(*plain_));
        EXPECT_EQ(FIReaderTell(*withHead_), FIReaderTell(*plain_));
        return result;
    }

 private:
    OpenFile file_;
    std::unique_ptr<TestHandle> host_;
    std::unique_ptr<FIHead> head_ = std::make_unique<FIHead>();
    FIReader* withHead_ = nullptr;
    FIReader* plain_ = nullptr;
};

// A place at or near one of the limits, or anywhere.
std::uint32_t NextTarget(std::mt19937& generator, std::size_t size) {
    const auto end = static_cast<std::uint32_t>(size);
    const std::uint32_t limits[] = {0, 2, 2048, 4096, 6144, 8192, 10240, end, end, end / 2, 0x7FFFFFFF, 0xFFFFFFFC};
    const std::size_t kind = generator() % (std::size(limits) + 4);
    const auto random = static_cast<std::uint32_t>(generator());
    if (kind >= std::size(limits)) return random % (end + 100);
    return limits[kind] + random % 7 - 3;  // the one below 0 is the one above all
}

// One operation over both readers. Returns whether it took a byte that may be put back.
bool RunOperation(TwoReaders& readers, std::mt19937& generator, std::size_t size, bool mayPutBack) {
    const std::uint32_t target = NextTarget(generator, size);
    switch (generator() % 14) {
        case 0:
        case 1:
        case 2:
            readers.Both([](FIReader& reader) { return FIReaderGetByte(reader); });
            return true;
        case 3:
            if (!mayPutBack) return false;
            readers.Both([](FIReader& reader) {
                FIReaderPutBack(reader);
                return FIReaderTell(reader);
            });
            return false;
        case 4:
        case 5:
        case 6:
            // Behind a seek that fails, as to places from 2 GiB on that a file does not have, the next bytes are those
            // at which the handle happens to stand: no routine looks at them. Each goes on with a seek that works.
            if (readers.Both([=](FIReader& reader) { return FIReaderSeek(reader, target); }) != 0) {
                const auto place = static_cast<std::uint32_t>(target % (size + 1));
                readers.Both([=](FIReader& reader) { return FIReaderSeek(reader, place); });
            }
            return false;
        case 7: {
            const auto count = static_cast<std::uint16_t>(generator() % (generator() % 2 == 0 ? 9 : 9000));
            readers.Both([=](FIReader& reader) { return FIReaderSkip(count, reader); });
            return false;
        }
        case 8:
            readers.Both([](FIReader& reader) { return FIReadWordBE(reader); });
            return false;
        case 9:
            readers.Both([](FIReader& reader) { return FIReadWordLE(reader); });
            return false;
        case 10:
        case 11: {
            const bool bigEndian = generator() % 2 == 0;
            std::uint32_t values[2] = {77, 77};
            std::size_t number = 0;
            readers.Both([&](FIReader& reader) {
                std::uint32_t& value = values[number++];
                return bigEndian ? FIReadDWordBE(reader, value) : FIReadDWordLE(reader, value);
            });
            EXPECT_EQ(values[0], values[1]);
            return false;
        }
        case 12:  // somebody moves the handle and reads
            readers.Both([=](FIReader& reader) {
                char bytes[16] = "";
                std::uint32_t count = 0;
                const HIOFILE file = reader.file;
                if (file->operations.IOSeek(file, IOOriginStart, static_cast<std::int32_t>(target)) != 0)
                    return std::string("-");
                EXPECT_EQ(file->operations.IORead(file, bytes, sizeof(bytes), &count), 0);
                return std::string(bytes, count);
            });
            return mayPutBack;
        default:
            readers.Both([=](FIReader& reader) {
                std::uint32_t position = 77;
                const auto back = -static_cast<std::int32_t>(target % 9000);
                if (target % 2 == 0) return FIGoToEnd(reader);
                return FITellFromEnd(reader.file, back, position) ? position : 99;
            });
            return target % 2 != 0 && mayPutBack;
    }
}

TEST(HeadReader, DeliversWhatTheHandleWould) {
    std::mt19937 generator(8192);
    for (const std::size_t size : sizes) {
        const std::string bytes = RandomBytes(size);
        for (std::uint32_t round = 0; round < 60; ++round) {
            SCOPED_TRACE(testing::Message() << size << " round " << round);
            TwoReaders readers(bytes);
            bool mayPutBack = false;
            for (std::uint32_t step = 0; step < 120; ++step) {
                mayPutBack = RunOperation(readers, generator, size, mayPutBack);
                ASSERT_FALSE(testing::Test::HasFailure()) << "step " << step;
            }
        }
    }
}

TEST(HeadReader, DeliversAllBytesThenTheEnd) {
    for (const std::size_t size : sizes) {
        SCOPED_TRACE(size);
        const std::string bytes = RandomBytes(size);
        TwoReaders readers(bytes);
        for (std::size_t taken = 0; taken < size + 3; ++taken) {
            const std::uint16_t expected = taken < size ? static_cast<std::uint8_t>(bytes[taken]) : endOfFile;
            ASSERT_EQ(readers.Both([](FIReader& reader) { return FIReaderGetByte(reader); }), expected) << taken;
        }
    }
}

// In the head nothing is asked of the handle.
TEST(HeadReader, LeavesTheHandleAloneInTheHead) {
    const std::string bytes = RandomBytes(9000);
    const auto host = FIMakeTestHandle(bytes);
    const auto head = std::make_unique<FIHead>();
    head->bytes = reinterpret_cast<const std::uint8_t*>(bytes.data());
    head->size = largestHead;
    head->fileSize = bytes.size();
    FIReader* const reader = FIReaderNew(FIFileOf(*host), head.get());
    for (std::uint32_t taken = 0; taken < largestHead; ++taken) EXPECT_NE(FIReaderGetByte(*reader), endOfFile);
    EXPECT_EQ(FIReaderSeek(*reader, 8191), 0);
    EXPECT_EQ(FIReaderSeek(*reader, 0), 0);
    EXPECT_EQ(FIReaderSkip(8192, *reader), 0);
    EXPECT_EQ(host->reads + host->seeks + host->tells, 0U);
    EXPECT_EQ(FIReaderGetByte(*reader), static_cast<std::uint8_t>(bytes[8192]));
    EXPECT_EQ(host->reads, 1U);
    EXPECT_EQ(FIReaderSeek(*reader, 8191), 0);
    EXPECT_EQ(FIReaderTell(*reader), 8191U);
    EXPECT_EQ(host->reads, 1U);
    EXPECT_EQ(host->seeks, 1U);
    FIReaderFree(*reader);
}

// FICopyHead against the seek and the read that it stands in for.
TEST(CopyHead, DeliversWhatABlockWould) {
    for (const std::size_t size : sizes) {
        const std::string bytes = RandomBytes(size);
        const OpenFile file(bytes);
        const auto head = std::make_unique<FIHead>();
        ASSERT_TRUE(FITakeHead(file.File(), *head));
        FIReader* const reader = FIReaderNew(file.File(), head.get());
        for (const std::uint32_t wanted : {0U, 1U, 512U, 2048U, 4096U, 8191U, 8192U, 8193U, 20000U}) {
            SCOPED_TRACE(testing::Message() << size << " " << wanted);
            std::string block(20000, '#');
            std::string expected = block;
            std::uint32_t count = 77;
            std::uint32_t expectedCount = 77;
            const bool copied = FICopyHead(*reader, block.data(), wanted, count);
            EXPECT_EQ(copied, wanted <= 8192 || size <= 8192) << "a part of the head, or all of the file";
            if (!copied) continue;
            EXPECT_EQ(FIRewindHandle(*reader), 0);
            EXPECT_EQ(FIReadBlock(*reader, expected.data(), wanted, expectedCount), 0);
            EXPECT_EQ(count, expectedCount);
            EXPECT_EQ(block, expected);
        }
        FIReaderFree(*reader);
        FIReader plain = {};
        FIReaderStart(plain, file.File());
        char byte = 0;
        std::uint32_t count = 0;
        EXPECT_FALSE(FICopyHead(plain, &byte, 1, count));
    }
}

}  // namespace
