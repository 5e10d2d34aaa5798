// A byte without a look at the end of the file.
#include "reader/low_byte.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "support/test_handle.h"

namespace {

TEST(LowByte, DeliversEveryByte) {
    std::string bytes;
    for (std::uint32_t byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    const auto handle = FIMakeTestHandle(bytes);
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    for (std::uint32_t byte = 0; byte < 256; ++byte) EXPECT_EQ(FITakeLowByte(reader), byte);
}

TEST(LowByte, IsFfAtTheEndOfTheFileAsOftenAsItIsAsked) {
    const auto handle = FIMakeTestHandle("a");
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    EXPECT_EQ(FITakeLowByte(reader), 'a');
    for (std::uint32_t round = 0; round < 3; ++round) EXPECT_EQ(FITakeLowByte(reader), 0xFF);
    EXPECT_EQ(handle->emptyReads, 3U);
}

TEST(LowByte, IsFfWhereTheReadFails) {
    const auto handle = FIMakeTestHandle("a");
    handle->failReadsFrom = 0;
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    EXPECT_EQ(FITakeLowByte(reader), 0xFF);
}

}  // namespace
