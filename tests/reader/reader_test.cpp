// The reader: buffer, end of file, seeks, words and double words.
#include "reader/reader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>

#include "platform/base_utility.h"
#include "support/bytes.h"
#include "support/process_heap.h"
#include "support/test_handle.h"

namespace {

class Reader : public testing::Test {
 protected:
    ~Reader() override {
        if (reader_ != nullptr) FIReaderFree(*reader_);
    }
    FIReader& Open(std::string bytes) {
        handle_ = FIMakeTestHandle(std::move(bytes));
        reader_ = FIReaderNew(FIFileOf(*handle_));
        return *reader_;
    }
    std::unique_ptr<TestHandle> handle_;
    FIReader* reader_ = nullptr;
};

std::string Counting(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t index = 0; index < size; ++index) bytes[index] = static_cast<char>(index * 7 + index / 256);
    return bytes;
}

TEST_F(Reader, IsNewWithoutTouchingTheFile) {
    const FIReader& reader = Open("abc");
    EXPECT_EQ(reader.bytesLeft, 0);
    EXPECT_EQ(reader.bytesFilled, 0U);
    EXPECT_EQ(reader.bufferPos, 0U);
    EXPECT_EQ(reader.file, FIFileOf(*handle_));
    EXPECT_EQ(reader.self, &reader);
    EXPECT_EQ(handle_->reads + handle_->seeks + handle_->tells, 0U);
}

TEST_F(Reader, IsNullWhenMemoryIsExhausted) {
    const auto handle = FIMakeTestHandle("abc");
    FIFailAllocationsFrom(0);
    EXPECT_EQ(FIReaderNew(FIFileOf(*handle)), nullptr);
    FIHeapNeverFails();
}

TEST_F(Reader, GivesTheHandleBackAndLeavesItOpen) {
    const std::size_t blocks = FIHeapBlocks();
    FIReader& reader = Open("abc");
    EXPECT_EQ(FIHeapBlocks(), blocks + 1);
    EXPECT_EQ(FIReaderFree(reader), FIFileOf(*handle_));
    EXPECT_EQ(FIHeapBlocks(), blocks);
    reader_ = nullptr;
}

TEST_F(Reader, DeliversAllBytesThenTheEnd) {
    const std::string bytes = Counting(5000);
    FIReader& reader = Open(bytes);
    for (const char byte : bytes) ASSERT_EQ(FIReaderGetByte(reader), static_cast<std::uint8_t>(byte));
    EXPECT_EQ(FIReaderGetByte(reader), endOfFile);
}

TEST_F(Reader, StartsAtZeroWhereverTheHandleStands) {
    FIReader& reader = Open("abc");
    handle_->position = 2;
    EXPECT_EQ(FIReaderGetByte(reader), 'a');
}

TEST_F(Reader, EmptyFileDeliversTheEndEachTimeAndReadsEachTime) {
    FIReader& reader = Open("");
    for (std::uint32_t round = 1; round <= 3; ++round) {
        EXPECT_EQ(FIReaderGetByte(reader), endOfFile);
        EXPECT_EQ(reader.bufferPos, 0U);
        EXPECT_EQ(reader.bytesFilled, 0U);
        EXPECT_EQ(reader.bytesLeft, -1);
        EXPECT_EQ(handle_->reads, round);
        EXPECT_EQ(FIReaderTell(reader), 1U) << "one behind the end";
    }
}

TEST_F(Reader, FileOfExactlyOneBufferEndsBehindIt) {
    FIReader& reader = Open(Counting(2048));
    for (std::uint32_t index = 0; index < 2047; ++index) FIReaderGetByte(reader);
    EXPECT_EQ(reader.bytesLeft, 1);
    EXPECT_NE(FIReaderGetByte(reader), endOfFile);
    EXPECT_EQ(reader.bytesLeft, 0);
    EXPECT_EQ(reader.bufferPos, 0U);
    EXPECT_EQ(FIReaderTell(reader), 2048U);
    EXPECT_EQ(handle_->reads, 1U);
    EXPECT_EQ(FIReaderGetByte(reader), endOfFile);
    EXPECT_EQ(reader.bufferPos, 2048U);
    EXPECT_EQ(FIReaderTell(reader), 2049U);
}

TEST_F(Reader, SeekInTheBufferDoesNotTouchTheFile) {
    FIReader& reader = Open(Counting(4000));
    FIReaderGetByte(reader);
    const std::uint32_t seeks = handle_->seeks;
    EXPECT_EQ(FIReaderSeek(reader, 2047), 0);
    EXPECT_EQ(reader.bytesLeft, 1);
    EXPECT_EQ(FIReaderTell(reader), 2047U);
    EXPECT_EQ(FIReaderSeek(reader, 0), 0);
    EXPECT_EQ(reader.bytesLeft, 2048);
    EXPECT_EQ(handle_->seeks, seeks);
    EXPECT_EQ(handle_->reads, 1U);
}

TEST_F(Reader, SeekRightBehindTheBufferFlushes) {
    FIReader& reader = Open(Counting(4000));
    FIReaderGetByte(reader);
    const std::uint32_t seeks = handle_->seeks;
    EXPECT_EQ(FIReaderSeek(reader, 2048), 0);
    EXPECT_EQ(handle_->seeks, seeks + 1);
    EXPECT_EQ(reader.bytesFilled, 0U);
    EXPECT_EQ(reader.bytesLeft, 0);
    EXPECT_EQ(reader.bufferPos, 2048U);
    EXPECT_EQ(handle_->reads, 1U) << "nothing is read before the next byte";
    EXPECT_EQ(FIReaderGetByte(reader), static_cast<std::uint8_t>(2048 * 7 + 8));
}

TEST_F(Reader, SeekOnAFreshReaderReallySeeks) {
    FIReader& reader = Open("abc");
    EXPECT_EQ(FIReaderSeek(reader, 0), 0);
    EXPECT_EQ(handle_->seeks, 1U);
}

TEST_F(Reader, SeekFromTheEndOfFileStateFlushesAndReadsAgain) {
    FIReader& reader = Open("abc");
    for (std::uint32_t index = 0; index < 4; ++index) FIReaderGetByte(reader);
    const std::uint32_t reads = handle_->reads;
    EXPECT_EQ(FIReaderSeek(reader, 0), 0);
    EXPECT_EQ(FIReaderGetByte(reader), 'a');
    EXPECT_EQ(handle_->reads, reads + 1);
}

TEST_F(Reader, FailedSeekKeepsTheTargetAndTriesAgain) {
    FIReader& reader = Open("abcdef");
    handle_->failSeeksFrom = 0;
    EXPECT_NE(FIReaderSeek(reader, 3), 0);
    EXPECT_EQ(reader.bufferPos, 3U);
    EXPECT_EQ(FIReaderTell(reader), 3U);
    handle_->failSeeksFrom = testNever;
    EXPECT_EQ(FIReaderGetByte(reader), 'd');
}

TEST_F(Reader, RefillGoesOnFromItsOwnPosition) {
    const std::string bytes = Counting(5000);
    FIReader& reader = Open(bytes);
    FIReaderGetByte(reader);
    handle_->position = 4321;
    for (std::uint32_t index = 1; index < 2048; ++index) {
        ASSERT_EQ(FIReaderGetByte(reader), static_cast<std::uint8_t>(bytes[index]))
            << "the buffer knows nothing of the move";
    }
    EXPECT_EQ(FIReaderGetByte(reader), static_cast<std::uint8_t>(bytes[2048]));
}

TEST_F(Reader, TwoReadersShareAHandleInTurns) {
    const std::string bytes = Counting(5000);
    FIReader& reader = Open(bytes);
    FIReader other;
    FIReaderStart(other, FIFileOf(*handle_));
    for (const char byte : bytes) {
        ASSERT_EQ(FIReaderGetByte(reader), static_cast<std::uint8_t>(byte));
        ASSERT_EQ(FIReaderGetByte(other), static_cast<std::uint8_t>(byte));
    }
}

TEST_F(Reader, FailingTellCountsAsZero) {
    FIReader& reader = Open(Counting(3000));
    handle_->failTell = true;
    for (std::uint32_t index = 0; index < 3000; ++index) ASSERT_NE(FIReaderGetByte(reader), endOfFile);
    EXPECT_EQ(handle_->seeks, 1U) << "only the second refill finds another position than 0";
}

TEST_F(Reader, CountOfAFailedReadIsDropped) {
    FIReader& reader = Open("abc");
    handle_->failReadsFrom = 0;
    EXPECT_EQ(FIReaderGetByte(reader), endOfFile);
    EXPECT_EQ(reader.bytesFilled, 0U);
    handle_->failReadsFrom = testNever;
    EXPECT_EQ(FIReaderGetByte(reader), 'a') << "the end of the file is no lasting state";
}

TEST_F(Reader, ShortReadsDeliverEverything) {
    const std::string bytes = Counting(300);
    FIReader& reader = Open(bytes);
    handle_->bytesPerRead = 7;
    for (const char byte : bytes) ASSERT_EQ(FIReaderGetByte(reader), static_cast<std::uint8_t>(byte));
    EXPECT_EQ(FIReaderGetByte(reader), endOfFile);
}

TEST_F(Reader, EndsWhereItsOffsetsEnd) {
    // A file of 5 GiB, of which the reader reaches the first 4.
    const std::string path = testing::TempDir() + "fiid-reader-" + std::to_string(getpid());
    std::ofstream(path) << "head";
    ASSERT_EQ(truncate(path.c_str(), 5LL << 30), 0);
    HIOFILE handle = nullptr;
    ASSERT_EQ(IOOpen(&handle, IOSpecNarrow, path.c_str(), IOOpenRead), 0);
    std::remove(path.c_str());
    FIReader reader;
    FIReaderStart(reader, handle);
    ASSERT_EQ(FIReaderSeek(reader, 0xFFFFF000), 0);
    for (std::uint32_t index = 0; index < 2048; ++index) ASSERT_EQ(FIReaderGetByte(reader), 0);
    for (std::uint32_t index = 0; index < 2048; ++index) ASSERT_EQ(FIReaderGetByte(reader), 0);
    for (std::uint32_t index = 0; index < 10; ++index) ASSERT_EQ(FIReaderGetByte(reader), endOfFile);
    ASSERT_EQ(FIReaderSeek(reader, 1), 0);
    EXPECT_EQ(FIReaderGetByte(reader), 'e');
    handle->operations.IOClose(handle);
}

TEST_F(Reader, PutBackGivesTheByteAgain) {
    FIReader& reader = Open("ab");
    EXPECT_EQ(FIReaderGetByte(reader), 'a');
    FIReaderPutBack(reader);
    EXPECT_EQ(FIReaderTell(reader), 0U);
    EXPECT_EQ(FIReaderGetByte(reader), 'a');
    EXPECT_EQ(FIReaderGetByte(reader), 'b');
    EXPECT_EQ(FIReaderGetByte(reader), endOfFile);
    FIReaderPutBack(reader);
    EXPECT_EQ(FIReaderGetByte(reader), endOfFile);
    EXPECT_EQ(FIReaderTell(reader), 3U);
}

TEST_F(Reader, SkipPassesOverBytes) {
    FIReader& reader = Open("abc");
    EXPECT_EQ(FIReaderSkip(0, reader), 0);
    EXPECT_EQ(handle_->reads, 0U) << "a count of 0 takes nothing";
    EXPECT_EQ(FIReaderSkip(2, reader), 0);
    EXPECT_EQ(FIReaderGetByte(reader), 'c');
    EXPECT_EQ(FIReaderSkip(1, reader), -1);
}

TEST_F(Reader, SkipReachesTheLastByteAndNotBeyond) {
    FIReader& reader = Open(Counting(65535));
    EXPECT_EQ(FIReaderSkip(65535, reader), 0);
    EXPECT_EQ(FIReaderSeek(reader, 1), 0);
    EXPECT_EQ(FIReaderSkip(65535, reader), -1);
}

TEST_F(Reader, ReadsWordsInBothOrders) {
    FIReader& reader = Open(FIBytes("12 34 FF FF 00 80"));
    EXPECT_EQ(FIReadWordBE(reader), 0x1234);
    EXPECT_EQ(FIReadWordBE(reader), 0xFFFF);
    EXPECT_EQ(FIReadWordBE(reader), 0x0080);
    FIReaderSeek(reader, 0);
    EXPECT_EQ(FIReadWordLE(reader), 0x3412);
    EXPECT_EQ(FIReadWordLE(reader), 0xFFFF);
    EXPECT_EQ(FIReadWordLE(reader), 0x8000);
}

TEST_F(Reader, ReadsDoubleWordsInBothOrders) {
    FIReader& reader = Open(FIBytes("12 34 56 F8"));
    std::uint32_t value = 0;
    EXPECT_EQ(FIReadDWordBE(reader, value), 0);
    EXPECT_EQ(value, 0x123456F8U);
    FIReaderSeek(reader, 0);
    EXPECT_EQ(FIReadDWordLE(reader, value), 0);
    EXPECT_EQ(value, 0xF8563412U);
}

TEST_F(Reader, WordAtTheEndTakesBothBytesAndADoubleWordOne) {
    FIReader& reader = Open("");
    EXPECT_EQ(FIReadWordLE(reader), -1);
    EXPECT_EQ(handle_->reads, 2U);
    EXPECT_EQ(FIReadWordBE(reader), -1);
    EXPECT_EQ(handle_->reads, 4U);
    std::uint32_t value = 77;
    EXPECT_EQ(FIReadDWordLE(reader, value), -1);
    EXPECT_EQ(handle_->reads, 5U);
    EXPECT_EQ(FIReadDWordBE(reader, value), -1);
    EXPECT_EQ(handle_->reads, 6U);
    EXPECT_EQ(value, 77U) << "not written";
}

TEST_F(Reader, HalfAWordIsTheEnd) {
    FIReader& reader = Open("a");
    EXPECT_EQ(FIReadWordLE(reader), -1);
    FIReaderSeek(reader, 0);
    EXPECT_EQ(FIReadWordBE(reader), -1);
}

TEST_F(Reader, ThreeBytesAreNoDoubleWord) {
    FIReader& reader = Open("abc");
    std::uint32_t value = 77;
    EXPECT_EQ(FIReadDWordLE(reader, value), -1);
    EXPECT_EQ(value, 77U);
    EXPECT_EQ(FIReaderTell(reader), 4U);
}

}  // namespace
