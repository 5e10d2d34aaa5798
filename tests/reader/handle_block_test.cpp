// Blocks of a handle: what it tells of the count is believed up to the size asked for.
#include "reader/handle_block.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "reader/reader.h"
#include "support/test_handle.h"

namespace {

// Takes the place of a handle's read: delivers two bytes and claims another count.
std::uint32_t claimedCount = 0;
std::int32_t claimedStatus = 0;

std::int32_t ClaimingRead(HIOFILE, void* destination, std::uint32_t, std::uint32_t* count) {
    static_cast<char*>(destination)[0] = 'a';
    static_cast<char*>(destination)[1] = 'b';
    *count = claimedCount;
    return claimedStatus;
}

std::int32_t SilentRead(HIOFILE, void*, std::uint32_t, std::uint32_t*) { return -1; }

TEST(ReadHandle, BelievesACountUpToTheSize) {
    const auto handle = FIMakeTestHandle("");
    handle->file.operations.IORead = ClaimingRead;
    for (const std::int32_t status : {0, -1, 5}) {
        claimedStatus = status;
        for (const std::uint32_t claim : {0U, 1U, 15U, 16U, 17U, 0x10000U, 0xFFFFFFFFU}) {
            claimedCount = claim;
            char bytes[16] = "";
            std::uint32_t count = 77;
            EXPECT_EQ(FIReadHandle(FIFileOf(*handle), bytes, sizeof(bytes), count), status);
            EXPECT_EQ(count, claim < 16 ? claim : 16U);
            EXPECT_STREQ(bytes, "ab");
        }
    }
}

TEST(ReadHandle, LeavesTheCountOfAHandleThatSetsNone) {
    const auto handle = FIMakeTestHandle("");
    handle->file.operations.IORead = SilentRead;
    char bytes[16] = "";
    std::uint32_t count = 7;
    EXPECT_EQ(FIReadHandle(FIFileOf(*handle), bytes, sizeof(bytes), count), -1);
    EXPECT_EQ(count, 7U);
}

TEST(ReadBlock, Has0WhereTheHandleSetsNoCount) {
    const auto handle = FIMakeTestHandle("");
    handle->file.operations.IORead = SilentRead;
    FIReader reader = {};
    FIReaderStart(reader, FIFileOf(*handle));
    char bytes[16] = "";
    std::uint32_t count = 7;
    EXPECT_EQ(FIReadBlock(reader, bytes, sizeof(bytes), count), -1);
    EXPECT_EQ(count, 0U);
}

TEST(Reader, DeliversNoMoreThanItsBufferHolds) {
    claimedStatus = 0;
    for (const std::uint32_t claim : {2047U, 2048U, 2049U, 0x8000U, 0x8001U, 0x10000U, 0xFFFFFFFFU}) {
        claimedCount = claim;
        const auto handle = FIMakeTestHandle("");
        handle->file.operations.IORead = ClaimingRead;
        FIReader reader = {};
        FIReaderStart(reader, FIFileOf(*handle));
        EXPECT_EQ(FIReaderGetByte(reader), 'a') << claim;
        EXPECT_EQ(FIReaderGetByte(reader), 'b') << claim;
        EXPECT_EQ(reader.bytesFilled, std::min(claim, std::uint32_t{FIReaderBufferSize}));
        EXPECT_EQ(reader.bytesLeft, static_cast<std::int16_t>(reader.bytesFilled - 2));
    }
}

}  // namespace
