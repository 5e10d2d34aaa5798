// Numbers read without a look at the end of the file.
#include "reader/unchecked_numbers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "support/bytes.h"
#include "support/test_handle.h"

namespace {

// The number that a reader takes from the start of a file, and where the reader then stands.
template <typename Take>
auto FITakeFrom(std::string_view bytes, Take take, std::uint32_t& position) {
    const auto handle = FIMakeTestHandle(FIBytes(bytes));
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    const auto number = take(reader);
    position = FIReaderTell(reader);
    return number;
}

TEST(SumWordBE, CountsTheEndOfTheFileAsMinusOne) {
    std::uint32_t position = 0;
    EXPECT_EQ(FITakeFrom("12 34 56", FISumWordBE, position), 0x1234);
    EXPECT_EQ(position, 2U);
    EXPECT_EQ(FITakeFrom("FF FF", FISumWordBE, position), 0xFFFF);
    EXPECT_EQ(FITakeFrom("12", FISumWordBE, position), 0x11FF);
    EXPECT_EQ(FITakeFrom("00", FISumWordBE, position), 0xFFFF);
    EXPECT_EQ(FITakeFrom("", FISumWordBE, position), 0xFEFF);
}

TEST(SumDWordLE, CountsTheEndOfTheFileAsMinusOne) {
    std::uint32_t position = 0;
    EXPECT_EQ(FITakeFrom("12 34 56 78 9A", FISumDWordLE, position), 0x78563412U);
    EXPECT_EQ(position, 4U);
    EXPECT_EQ(FITakeFrom("FF FF FF FF", FISumDWordLE, position), 0xFFFFFFFFU);
    EXPECT_EQ(FITakeFrom("12 34 56", FISumDWordLE, position), 0xFF563412U);
    EXPECT_EQ(FITakeFrom("00 00 00", FISumDWordLE, position), 0xFF000000U);
    EXPECT_EQ(FITakeFrom("12 34", FISumDWordLE, position), 0xFEFF3412U);
    EXPECT_EQ(FITakeFrom("12", FISumDWordLE, position), 0xFEFEFF12U);
    EXPECT_EQ(FITakeFrom("", FISumDWordLE, position), 0xFEFEFEFFU);
}

TEST(JoinWordLE, CoversTheOtherByteWithTheEndOfTheFile) {
    std::uint32_t position = 0;
    EXPECT_EQ(FITakeFrom("12 34 56", FIJoinWordLE, position), 0x3412);
    EXPECT_EQ(position, 2U);
    EXPECT_EQ(FITakeFrom("FF FF", FIJoinWordLE, position), 0xFFFF);
    EXPECT_EQ(FITakeFrom("12", FIJoinWordLE, position), 0xFF12);
    EXPECT_EQ(FITakeFrom("", FIJoinWordLE, position), 0xFFFF);
}

// The handle delivers a line feed at every second read at the end.
TEST(UncheckedNumbers, TakeAllTheirBytesBehindTheEndOfTheFile) {
    const auto handle = FIMakeTestHandle("");
    handle->lineFeedAfterEmptyReads = 1;
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    EXPECT_EQ(FIJoinWordLE(reader), 0xFFFF) << "the line feed's bits are covered";
    EXPECT_EQ(FISumWordBE(reader), 0xFF0A);
    EXPECT_EQ(FISumDWordLE(reader), 0x09FF09FFU);
}

}  // namespace
