// Places told from the end of the file: what the handle is asked, and what its failures do.
#include "reader/file_end.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

#include "reader/reader.h"
#include "support/test_handle.h"

namespace {

TEST(TellFromEnd, TellsThePositionAndLeavesTheHandleThere) {
    const auto handle = FIMakeTestHandle("0123456789");
    for (const std::int32_t offset : {0, -1, -9, -10}) {
        std::uint32_t position = 77;
        EXPECT_TRUE(FITellFromEnd(FIFileOf(*handle), offset, position));
        EXPECT_EQ(position, static_cast<std::uint32_t>(10 + offset));
        EXPECT_EQ(handle->position, position);
    }
    EXPECT_EQ(handle->seeks, 4U);
    EXPECT_EQ(handle->tells, 4U);
    EXPECT_EQ(handle->reads, 0U);
}

TEST(TellFromEnd, FailsInFrontOfTheFile) {
    const auto handle = FIMakeTestHandle("0123456789");
    std::uint32_t position = 77;
    EXPECT_FALSE(FITellFromEnd(FIFileOf(*handle), -11, position));
    EXPECT_EQ(position, 77U);
}

TEST(TellFromEnd, DoesNotAskWhereASeekFailed) {
    const auto handle = FIMakeTestHandle("0123456789");
    handle->failSeekFromEnd = true;
    std::uint32_t position = 77;
    EXPECT_FALSE(FITellFromEnd(FIFileOf(*handle), 0, position));
    EXPECT_EQ(position, 77U);
    EXPECT_EQ(handle->tells, 0U);
}

TEST(TellFromEnd, FailsWithTheTell) {
    const auto handle = FIMakeTestHandle("0123456789");
    handle->failTell = true;
    std::uint32_t position = 77;
    EXPECT_FALSE(FITellFromEnd(FIFileOf(*handle), 0, position));
    EXPECT_EQ(handle->seeks, 1U);
}

class GoToEnd : public testing::Test {
 protected:
    // A reader over ten bytes that stands behind the first of them, its buffer filled with what one read delivers.
    FIReader& Open(std::uint32_t bytesPerRead) {
        handle_->bytesPerRead = bytesPerRead;
        FIReaderStart(reader_, FIFileOf(*handle_));
        EXPECT_EQ(FIReaderGetByte(reader_), '0');
        handle_->seeks = handle_->tells = handle_->reads = 0;
        return reader_;
    }
    std::unique_ptr<TestHandle> handle_ = FIMakeTestHandle("0123456789");
    FIReader reader_;
};

TEST_F(GoToEnd, MovesTheReaderBehindTheLastByte) {
    FIReader& reader = Open(testNever);
    EXPECT_EQ(FIGoToEnd(reader), 10U);
    EXPECT_EQ(FIReaderTell(reader), 10U);
    EXPECT_EQ(handle_->seeks, 2U) << "from the end, and the reader's own";
    EXPECT_EQ(handle_->tells, 1U);
    EXPECT_EQ(handle_->reads, 0U);
    EXPECT_EQ(FIReaderGetByte(reader), endOfFile);
}

TEST_F(GoToEnd, IsZeroForAnEmptyFile) {
    handle_->bytes.clear();
    FIReaderStart(reader_, FIFileOf(*handle_));
    EXPECT_EQ(FIGoToEnd(reader_), 0U);
}

TEST_F(GoToEnd, LeavesTheReaderWhenTheSeekFails) {
    FIReader& reader = Open(testNever);
    handle_->failSeekFromEnd = true;
    EXPECT_EQ(FIGoToEnd(reader), 1U);
    EXPECT_EQ(handle_->seeks, 1U);
    EXPECT_EQ(handle_->tells, 0U);
    EXPECT_EQ(FIReaderGetByte(reader), '1');
}

TEST_F(GoToEnd, LeavesTheReaderWhenTheTellFails) {
    FIReader& reader = Open(testNever);
    handle_->failTell = true;
    EXPECT_EQ(FIGoToEnd(reader), 1U);
    EXPECT_EQ(handle_->seeks, 1U);
    EXPECT_EQ(FIReaderGetByte(reader), '1');
}

TEST_F(GoToEnd, TellsTheSizeAlsoWhenTheReadersOwnSeekFails) {
    FIReader& reader = Open(1);
    handle_->failSeeksFrom = 1;
    EXPECT_EQ(FIGoToEnd(reader), 10U);
    EXPECT_EQ(handle_->seeks, 2U);
}

}  // namespace
